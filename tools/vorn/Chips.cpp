// The chip types by name and number, and the pairs of chip type and variant that a table has.
#include "Chips.h"

#include "Error.h"
#include "Suggest.h"
#include "Text.h"
#include "Values.h"

#include <Hardware/ChipType.h>
#include <Hardware/Registry.h>

#include <algorithm>
#include <sstream>
#include <utility>

namespace Vorn {

namespace {

std::vector<Chip> namedChips() {
   std::vector<Chip> chips;
   for( unsigned number = 0; number < 256; ++number ) {
      std::ostringstream out;
      out << static_cast<Hardware::ChipType>( number );
      if( !out.str().starts_with( "ChipType(" ) ) {
         chips.push_back( { static_cast<U8>( number ), out.str() } );
      }
   }
   return chips;
}

std::vector<U32> allNumbers() {
   std::vector<U32> numbers;
   for( const Chip& chip : allChips() ) {
      numbers.push_back( chip.number );
   }
   return numbers;
}

[[noreturn]] void unknownNumber( const std::string& given ) {
   throw Error( "unknown chip " + given + "; allowed: " + listOfChips( allNumbers() ) );
}

bool sameVariants( const ChipVariants& left, const ChipVariants& right ) {
   return left.any == right.any && ( left.any || left.variants == right.variants );
}

} // namespace

const std::vector<Chip>& allChips() {
   static const std::vector<Chip> chips = namedChips();
   return chips;
}

const Chip& chipOf( std::string_view nameOrNumber ) {
   for( const Chip& chip : allChips() ) {
      if( chip.name == nameOrNumber ) {
         return chip;
      }
   }
   const auto first = nameOrNumber.substr( 0, 1 );
   if( first == "-" || ( first >= "0" && first <= "9" ) ) {
      const auto number = numberIn( nameOrNumber );
      if( !number ) {
         unknownNumber( inQuotes( nameOrNumber ) );
      }
      if( number->bits > 64 ) {
         unknownNumber( shown( nameOrNumber ) );
      }
      return chipOf( number->words[0] );
   }
   std::vector<std::string_view> names;
   for( const Chip& chip : allChips() ) {
      names.push_back( chip.name );
   }
   throw Error( "unknown chip " + inQuotes( nameOrNumber ) + suggestion( nameOrNumber, names ) );
}

const Chip& chipOf( U64 number ) {
   for( const Chip& chip : allChips() ) {
      if( chip.number == number ) {
         return chip;
      }
   }
   unknownNumber( std::to_string( number ) );
}

std::string listOfChips( const std::vector<U32>& numbers ) {
   std::string result;
   for( const U32 number : numbers ) {
      result.append( result.empty() ? "" : ", " ).append( chipOf( U64( number ) ).name );
      result.append( " (" ).append( std::to_string( number ) ).append( ")" );
   }
   return result;
}

std::string ChipVariants::text() const { return any ? "any" : rangesOf( variants ); }

std::optional<ChipVariants> variantsOn( std::string_view table, U32 chip ) {
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

std::vector<ChipVariants> pairsOf( std::string_view table ) {
   std::vector<ChipVariants> pairs;
   for( const Chip& chip : allChips() ) {
      if( auto variants = variantsOn( table, chip.number ) ) {
         pairs.push_back( std::move( *variants ) );
      }
   }
   return pairs;
}

std::vector<ChipVariants> pairsWithField( std::string_view table, U32 fieldId ) {
   std::vector<ChipVariants> pairs = pairsOf( table );
   for( ChipVariants& pair : pairs ) {
      const auto chip = static_cast<Hardware::ChipType>( pair.chip );
      std::erase_if( pair.variants, [&]( U32 variant ) {
         return !Hardware::stringObj( table, chip, static_cast<U8>( variant ) )
                    ->isFieldValid( fieldId );
      } );
   }
   std::erase_if( pairs, []( const ChipVariants& pair ) { return pair.variants.empty(); } );
   return pairs;
}

std::string textOf( const std::vector<ChipVariants>& pairs ) {
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
