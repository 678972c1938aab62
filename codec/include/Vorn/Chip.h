// The chip types, by name and by number.
#pragma once

#include <Vorn/Export.h>

#include <Hardware/ChipType.h>
#include <Kelvar/Types.h>

#include <span>
#include <string>
#include <string_view>

namespace Vorn {

struct Chip {
   U8 number;        // 10
   std::string name; // "BCM88690_B0"

   Hardware::ChipType type() const { return static_cast<Hardware::ChipType>( number ); }
};

// Every chip type that has a name, in order of the number.
VORN_API std::span<const Chip> allChips();

// The chip type with this name or number; otherwise an Error. It lives as long as the program.
//
//    Vorn::chipOf( "BCM88690_B0" ).type();         // Hardware::BCM88690_B0
//    Vorn::chipOf( Hardware::BCM88690_B0 ).name;   // "BCM88690_B0"
//    Vorn::chipOf( "10" ).number;                  // 10
VORN_API const Chip& chipOf( std::string_view nameOrNumber );
VORN_API const Chip& chipOf( U64 number );

// The chip types as "BCM88650_B0 (2), BCM88660_A0 (3)".
VORN_API std::string listOfChips( std::span<const U32> numbers );

} // namespace Vorn
