// The tables, and the pairs of chip type and variant that each of them has.
#include <Vorn/Pairs.h>

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <Hardware/Registry.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <mutex>
#include <utility>

namespace Vorn {

namespace {

std::vector<U32> fieldsOf( std::string_view table, U32 chip, U32 variant ) {
   std::array<Hardware::PairField, 128> fields;
   const std::size_t count =
      Hardware::pairFields( table, chip, static_cast<U8>( variant ), fields.data(), fields.size() );
   std::vector<U32> identifiers;
   std::transform( fields.begin(), fields.begin() + count, std::back_inserter( identifiers ),
                   []( const Hardware::PairField& field ) { return field.identifier; } );
   return identifiers;
}

std::optional<ChipVariants> foundVariants( std::string_view table, U32 chip ) {
   const auto first = Hardware::pairInfo( table, chip, 0 );
   if( first && !first->hasVariants ) {
      return ChipVariants{ chip, { 0 }, true };
   }
   ChipVariants found{ chip, {}, false };
   for( unsigned variant = 0; variant < 256; ++variant ) {
      if( Hardware::pairInfo( table, chip, static_cast<U8>( variant ) ) ) {
         found.variants.push_back( variant );
      }
   }
   return found.variants.empty() ? std::nullopt : std::optional( std::move( found ) );
}

// What is known of a table, looked for once, since the library answers for one variant at a time.
struct Known {
   std::once_flag lookedForPairs;
   std::vector<ChipVariants> pairs; // none if there is no such table
   std::once_flag lookedForFields;
   std::map<std::pair<U32, U32>, std::vector<U32>> fields; // by chip type and variant
};

// With its pairs.
Known& known( std::string_view table ) {
   // Never destroyed: other destructors may run later.
   static auto& all = *new std::vector<Known>( allTables().size() + 1 );
   const auto tables = allTables();
   const auto place = std::find( tables.begin(), tables.end(), table ) - tables.begin();
   Known& one = all[static_cast<std::size_t>( place )];
   std::call_once( one.lookedForPairs, [&] {
      for( const Chip& chip : allChips() ) {
         if( auto variants = foundVariants( table, chip.number ) ) {
            one.pairs.push_back( std::move( *variants ) );
         }
      }
   } );
   return one;
}

bool sameVariants( const ChipVariants& left, const ChipVariants& right ) {
   return left.any == right.any && ( left.any || left.variants == right.variants );
}

} // namespace

std::span<const std::string_view> allTables() {
   // Never destroyed: other destructors may run later.
   static const auto& tables = *new const std::vector<std::string_view>( Hardware::classNames() );
   return tables;
}

std::string_view tableNamed( std::string_view name ) {
   const auto tables = allTables();
   const auto found = std::find( tables.begin(), tables.end(), name );
   if( found == tables.end() ) {
      throw Error( "unknown table " + inQuotes( name ) + suggestion( name, tables ) );
   }
   return *found;
}

std::string ChipVariants::text() const { return any ? "any" : rangesOf( variants ); }

std::optional<ChipVariants> variantsOn( std::string_view table, U32 chip ) {
   const auto& pairs = known( table ).pairs;
   const auto found = std::find_if( pairs.begin(), pairs.end(), [chip]( const ChipVariants& pair ) {
      return pair.chip == chip;
   } );
   return found == pairs.end() ? std::nullopt : std::optional( *found );
}

std::vector<ChipVariants> pairsOf( std::string_view table ) { return known( table ).pairs; }

std::vector<ChipVariants> pairsWithField( std::string_view table, U32 identifier ) {
   Known& one = known( table );
   std::call_once( one.lookedForFields, [&] {
      for( const ChipVariants& pair : one.pairs ) {
         for( const U32 variant : pair.variants ) {
            one.fields[{ pair.chip, variant }] = fieldsOf( table, pair.chip, variant );
         }
      }
   } );
   std::vector<ChipVariants> pairs = one.pairs;
   for( ChipVariants& pair : pairs ) {
      std::erase_if( pair.variants, [&]( U32 variant ) {
         const auto& fields = one.fields.at( { pair.chip, variant } );
         return std::find( fields.begin(), fields.end(), identifier ) == fields.end();
      } );
   }
   std::erase_if( pairs, []( const ChipVariants& pair ) { return pair.variants.empty(); } );
   return pairs;
}

std::string textOf( std::span<const ChipVariants> pairs ) {
   struct Group {
      const ChipVariants* first;
      std::vector<U32> chips;
   };
   std::vector<Group> groups;
   for( const ChipVariants& pair : pairs ) {
      auto group = std::find_if( groups.begin(), groups.end(), [&]( const Group& other ) {
         return sameVariants( *other.first, pair );
      } );
      if( group == groups.end() ) {
         group = groups.insert( group, { &pair, {} } );
      }
      group->chips.push_back( pair.chip );
   }
   std::string result;
   for( const Group& group : groups ) {
      result.append( result.empty() ? "" : "; " );
      result.append( rangesOf( group.chips ) ).append( ": " ).append( group.first->text() );
   }
   return result;
}

} // namespace Vorn
