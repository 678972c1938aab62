// `vorn field`: in which tables, chip types and variants a field exists, and where it lies there.
#include "Arguments.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/Json.h"

#include <Vorn/Chip.h>
#include <Vorn/Fields.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>

namespace Vorn {

namespace {

struct FieldArguments {
   std::string name;
   std::optional<std::string> chip;
   bool json = false;
};

std::vector<FieldUse> usesFor( const FieldArguments& arguments ) {
   return arguments.chip ? usesOf( arguments.name, chipOf( *arguments.chip ) )
                         : usesOf( arguments.name );
}

// The fields one after another, each with a line of headings and one for each of its places.
std::string fieldLines( std::span<const FieldUse> uses ) {
   constexpr Align columns[] = { Align::left, Align::right, Align::right, Align::left };
   std::string text;
   for( std::size_t i = 0; i < uses.size(); ) {
      const FieldUse& field = uses[i];
      std::vector<std::vector<std::string>> rows{ { "table", "offset", "width",
                                                    "chip types: variants" } };
      for( ; i < uses.size() && uses[i].identifier == field.identifier; ++i ) {
         for( const FieldPlace& place : placesOf( uses[i] ) ) {
            rows.push_back( { std::string( uses[i].table ), std::to_string( place.offset ),
                              std::to_string( place.width ),
                              textOf( place.pairs ) + ( uses[i].readOnly ? " (tag)" : "" ) } );
         }
      }
      text.append( text.empty() ? "" : "\n" ).append( field.name );
      text.append( " (" ).append( field.hardwareName );
      text += ", identifier " + std::to_string( field.identifier ) + ")\n";
      text += tableOf( columns, rows );
   }
   return text;
}

Json pairsJson( std::span<const ChipVariants> pairs ) {
   Json list = Json::array();
   for( const ChipVariants& pair : pairs ) {
      list.push_back( { { "chip", chipOf( U64( pair.chip ) ).name },
                        { "variants", pair.any ? Json() : Json( pair.variants ) } } );
   }
   return list;
}

std::string fieldsJson( std::span<const FieldUse> uses ) {
   std::string text;
   for( const FieldUse& use : uses ) {
      for( const FieldPlace& place : placesOf( use ) ) {
         const Json object{
            { "name", use.name },
            { "hardwareName", use.hardwareName },
            { "identifier", use.identifier },
            { "table", use.table },
            { "readOnly", use.readOnly },
            { "offset", place.offset },
            { "width", place.width },
            { "pairs", pairsJson( place.pairs ) },
         };
         text += jsonText( object ) + '\n';
      }
   }
   return text;
}

} // namespace

VerbRun addField( CLI::App& verb ) {
   const auto arguments = std::make_shared<FieldArguments>();
   verb
      .add_option( "FIELD", arguments->name,
                   "Name, hardware name or identifier; * and ? are wildcards" )
      ->required();
   verb.add_option( "--chip", arguments->chip, "Only on this chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for each table and place" );
   describe( verb,
             "Prints for each field its name, its name in the hardware's documents and its "
             "identifier, then a line for each table and each place there: its first bit, its "
             "width, and the numbers of the chip types with their variants, \"any\" where the "
             "variant is ignored. A field that distinguishes entries from those of other variants "
             "is a \"tag\".\n\n"
             "In a name, * stands for any characters, ? for any one. A name that no field has is "
             "an error, which suggests the nearest ones.\n\n"
             "With --json \"variants\" is null if the variant is ignored.\n\n" +
                chipTypesParagraph(),
             "  vorn field vlanDomain\n"
             "  vorn field 'vlanEdit*' --chip BCM88690_B0" );
   return [arguments]( Output& output ) {
      const auto uses = usesFor( *arguments );
      output.write( arguments->json ? fieldsJson( uses ) : fieldLines( uses ) );
   };
}

} // namespace Vorn
