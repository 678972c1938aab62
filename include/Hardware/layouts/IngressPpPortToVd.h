// The ingress VLAN domain of each port.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/IngressPpPortToVd.def>

namespace Hardware::Layouts::IngressPpPortToVd {

#include <Hardware/detail/FieldNumbers.inc>

// Chip type 14 goes with 10 and 12 here; its VLAN domain on the egress side is wider.
// clang-format off
inline constexpr auto like10 = chips( 10, 12, 14 );
inline constexpr auto like13 = chips( 13, 15, 16 );
inline constexpr auto newer = chips( like10, like13 );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { like10, like13 }, {
         { vlanDomain, { at( 0, 9 ), at( 0, 11 ) } },
      } ) ),
   dimensions( {
      // chip types variants       width entries arrayElements instanceCount
      { like10,    variants( 0 ), 1,    256,    1,            2 },
      { like13,    variants( 0 ), 1,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 1 },
   } ),
   addresses( {
      //                                          step of     by identifier
      // chip types      variants       base      entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x650000, 1,    0,    { { 16, 2 }, { 30, 9 } } },
      { chips( 13 ),     variants( 0 ), 0x650000, 1,    0,    { { 4, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x650000, 1,    0,    { { 0, 14 }, { 0, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x650000, 1,    0,    { { 16, 17 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::IngressPpPortToVd

#undef HARDWARE_FIELDS
