// The chip types, by name and by number.
#include <Vorn/Chip.h>

#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <sstream>
#include <vector>

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

} // namespace

std::span<const Chip> allChips() {
   // Never destroyed: other destructors may run later.
   static const auto& chips = *new const std::vector<Chip>( namedChips() );
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
      if( !number && nameOrNumber.find_first_not_of( "0123456789" ) == nameOrNumber.npos ) {
         parseNumber( nameOrNumber, "chip" ); // which says how to write it
      }
      if( !number ) {
         unknownNumber( inQuotes( nameOrNumber ) );
      }
      if( number->bits() > 64 ) {
         unknownNumber( shown( nameOrNumber ) );
      }
      return chipOf( number->word( 0 ) );
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

std::string listOfChips( std::span<const U32> numbers ) {
   std::string result;
   for( const U32 number : numbers ) {
      result.append( result.empty() ? "" : ", " ).append( chipOf( U64( number ) ).name );
      result.append( " (" ).append( std::to_string( number ) ).append( ")" );
   }
   return result;
}

} // namespace Vorn
