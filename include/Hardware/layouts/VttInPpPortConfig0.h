// The port mapping, key variable and default logical interface of each port.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/VttInPpPortConfig0.def>

namespace Hardware::Layouts::VttInPpPortConfig0 {

#include <Hardware/detail/FieldNumbers.inc>

// A mapped port is one bit wider where one instance holds all the ports, and moves what follows.
// clang-format off
inline constexpr auto like10 = chips( 10, 12, 14 );
inline constexpr auto like13 = chips( 13, 15, 16 );
inline constexpr auto newer = chips( like10, like13 );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { like10, like13 }, {
         { mappedPpPort,   { at( 0, 9 ),   at( 0, 10 ) } },
         { portKeyGenVar,  { at( 9, 32 ),  at( 10, 32 ) } },
         { defaultPortLif, { at( 41, 20 ), at( 42, 20 ) } },
      } ) ),
   dimensions( {
      // chip types variants       width entries arrayElements instanceCount
      { like10,    variants( 0 ), 3,    256,    1,            2 },
      { like13,    variants( 0 ), 3,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 3 },
   } ),
   addresses( {
      //                                          step of     by identifier
      // chip types      variants       base      entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x760000, 1,    0,    { { 18, 2 }, { 0, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x760000, 1,    0,    { { 6, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x760000, 1,    0,    { { 2, 14 }, { 2, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x760000, 1,    0,    { { 24, 12 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::VttInPpPortConfig0

#undef HARDWARE_FIELDS
