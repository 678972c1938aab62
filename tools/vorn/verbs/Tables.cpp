// `vorn tables`: what the registry holds.
#include "Arguments.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/Json.h"

#include <Vorn/Chip.h>
#include <Vorn/Difference.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>
#include <Vorn/Text.h>

#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace Vorn {

namespace {

struct TablesArguments {
   std::optional<std::string> chip;
   bool json = false;
};

std::string listed( const std::set<U32>& numbers ) {
   std::string result;
   for( const U32 number : numbers ) {
      result.append( result.empty() ? "" : "," ).append( std::to_string( number ) );
   }
   return result;
}

Hardware::PairInfo infoOf( std::string_view table, U32 chip, U32 variant ) {
   return *Hardware::pairInfo( table, chip, static_cast<U8>( variant ) );
}

bool isTable( std::string_view table, const std::vector<ChipVariants>& pairs ) {
   return infoOf( table, pairs.front().chip, pairs.front().variants.front() ).isTable;
}

// Its pairs, or those of one chip type.
std::vector<ChipVariants> pairsFor( std::string_view table, const Chip* chip ) {
   if( !chip ) {
      return pairsOf( table );
   }
   std::vector<ChipVariants> pairs;
   if( auto own = variantsOn( table, chip->number ) ) {
      pairs.push_back( std::move( *own ) );
   }
   return pairs;
}

// How many fields the pairs have together.
std::size_t fieldsOf( std::string_view table, const std::vector<ChipVariants>& pairs ) {
   std::set<std::string_view> names;
   for( const ChipVariants& pair : pairs ) {
      for( const U32 variant : pair.variants ) {
         const Layout layout( table, U64( pair.chip ), variant );
         for( const Field& field : layout.fields() ) {
            names.insert( field.name );
         }
      }
   }
   return names.size();
}

std::string tableLines( const Chip* chip ) {
   std::vector<std::vector<std::string>> rows{ { "name", "fields", "words", "instances",
                                                 "entries" } };
   std::vector<std::string> secondLines{ "chip types: variants" };
   for( const auto table : Hardware::classNames() ) {
      const auto pairs = pairsFor( table, chip );
      if( pairs.empty() ) {
         continue;
      }
      std::map<std::string_view, std::set<U32>> numbers;
      for( const ChipVariants& pair : pairs ) {
         for( const U32 variant : pair.variants ) {
            for( const auto& [name, value] : numbersOf( infoOf( table, pair.chip, variant ) ) ) {
               numbers[name].insert( value );
            }
         }
      }
      rows.push_back( { std::string( table ), std::to_string( fieldsOf( table, pairs ) ),
                        listed( numbers["words"] ), listed( numbers["instances"] ),
                        listed( numbers["entries"] ) } );
      secondLines.push_back( textOf( pairs ) + ( isTable( table, pairs ) ? "" : " (register)" ) );
   }
   constexpr std::array columns{ Align::left, Align::right, Align::left, Align::left, Align::left };
   const auto widths = widthsOf( rows );
   std::string text;
   for( std::size_t i = 0; i < rows.size(); ++i ) {
      text += lineOf( columns, widths, rows[i] ) + "   " + secondLines[i] + '\n';
   }
   return text;
}

Json pairJson( std::string_view table, const ChipVariants& pair, U32 variant ) {
   const auto info = infoOf( table, pair.chip, variant );
   Json object;
   object["chip"] = chipOf( U64( pair.chip ) ).name;
   object["variant"] = pair.any ? Json() : Json( variant );
   for( const Number& number : numbersOf( info ) ) {
      object[std::string( number.name )] = number.value;
   }
   object["fields"] = info.fieldCount;
   object["hasAddress"] = info.hasAddress;
   return object;
}

std::string tablesJson( const Chip* chip ) {
   std::string text;
   for( const auto table : Hardware::classNames() ) {
      const auto pairs = pairsFor( table, chip );
      if( pairs.empty() ) {
         continue;
      }
      Json object;
      object["name"] = table;
      object["kind"] = isTable( table, pairs ) ? "table" : "register";
      object["fields"] = fieldsOf( table, pairs );
      auto& list = object["pairs"] = Json::array();
      for( const ChipVariants& pair : pairs ) {
         for( const U32 variant : pair.variants ) {
            list.push_back( pairJson( table, pair, variant ) );
         }
      }
      text += jsonText( object ) + '\n';
   }
   return text;
}

} // namespace

VerbRun addTables( CLI::App& verb ) {
   const auto arguments = std::make_shared<TablesArguments>();
   verb.add_option( "--chip", arguments->chip, "Only what this chip type has, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for each, on a line of its own" );
   describe( verb,
             "Prints two lines for each table or register after two of headings: its name, how "
             "many fields it has, its width in 32-bit words, and its numbers of instances and "
             "entries, each as a list where chip types or variants differ; then the numbers of its "
             "chip types with their variants, \"any\" if the variant is ignored.\n\n"
             "With --chip all numbers are those of that chip type. 4294967295 entries mean that "
             "no number of entries is stated.\n\n"
             "With --json the numbers are given for each pair of chip type and variant; the "
             "variant is null if it is ignored.\n\n" +
                chipTypesParagraph(),
             "  vorn tables\n"
             "  vorn tables --chip BCM88690_B0 --json" );
   return [arguments]( Output& output ) {
      const Chip* const chip = arguments->chip ? &chipOf( *arguments->chip ) : nullptr;
      output.write( arguments->json ? tablesJson( chip ) : tableLines( chip ) );
   };
}

} // namespace Vorn
