// The VLAN classification of each port: one layout on all chip types.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/IppePinfoLlr.def>

namespace Hardware::Layouts::IppePinfoLlr {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { newer }, {
         { vlanClassificationProfile, { at( 0, 4 ) } },
         { ignoreIncomingVid,         { at( 21, 1 ) } },
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
      //                                          step of     by identifier
      // chip types      variants       base      entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x600000, 1,    0,    { { 16, 2 }, { 30, 9 } } },
      { chips( 13 ),     variants( 0 ), 0x600000, 1,    0,    { { 4, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x600000, 1,    0,    { { 0, 14 }, { 0, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x600000, 1,    0,    { { 16, 17 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::IppePinfoLlr

#undef HARDWARE_FIELDS
