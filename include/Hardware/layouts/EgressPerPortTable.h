// The egress VLAN domain and exact-match command of each port.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EgressPerPortTable.def>

namespace Hardware::Layouts::EgressPerPortTable {

#include <Hardware/detail/FieldNumbers.inc>

// Chip type 14 goes with 13, 15 and 16 in the layout but with 10 and 12 in the dimensions; its VLAN
// domain on the ingress side is narrower.
// clang-format off
inline constexpr auto like10 = chips( 10, 12 );
inline constexpr auto like13 = chips( range( 13, 16 ) );
inline constexpr auto newer = chips( like10, like13 );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { like10, like13 }, {
         { vlanDomain,   { at( 6, 9 ),  at( 6, 11 ) } },
         { portEmAccCmd, { at( 41, 6 ), at( 41, 6 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 3,    256,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 3,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 2 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { like10,          variants( 0 ), 0x2210000, 1,    0,    { { 26, 2 }, { 8, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x2210000, 1,    0,    { { 20, 5 } } },
      { chips( 14 ),     variants( 0 ), 0x2210000, 1,    0,    { { 26, 13 }, { 26, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x2210000, 1,    0,    { { 8, 8 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EgressPerPortTable

#undef HARDWARE_FIELDS
