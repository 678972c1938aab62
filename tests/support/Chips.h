// The chip types, stated once for all tests, and as messages list them.
#pragma once

#include "Classes.h"
#include "Numbers.h"

#include <Hardware/ChipType.h>

#include <string>

namespace Testing {

struct StatedChip {
   unsigned number;
   Literal name;
};

inline constexpr StatedChip statedChips[] = {
#define CHIP( number, name ) { number, #name },
#include "Chips.def"
};

// Those of a list such as "10,12-16": "BCM88690_B0 (10), BCM88690_V6_B0 (12), ...".
inline std::string chipsListed( const std::string& numbers ) {
   const std::set<unsigned> listed = numbersIn( numbers );
   std::string text;
   for( const StatedChip& chip : statedChips ) {
      if( listed.count( chip.number ) != 0 ) {
         text +=
            ( text.empty() ? "" : ", " ) + chip.name + " (" + std::to_string( chip.number ) + ")";
      }
   }
   return text;
}

inline std::string chipsListedOf( std::string_view table ) {
   return chipsListed( chipsOf( table ) );
}

inline const std::string allChipsListed = chipsListed( "0-255" );

// The same without numbers, for what is neither a number nor near a name.
inline const std::string allChipsNamed = [] {
   std::string text;
   for( const StatedChip& chip : statedChips ) {
      text += ( text.empty() ? "" : ", " ) + std::string( chip.name );
   }
   return text;
}();

} // namespace Testing
