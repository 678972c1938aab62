// The 128 egress VLAN edit commands: one layout on all chip types.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EvecFormatTable.def>

namespace Hardware::Layouts::EvecFormatTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { newer }, {
         { tagsToRemove,      { at( 0, 2 ) } },
         { outerVidSource,    { at( 2, 3 ) } },
         { innerVidSource,    { at( 5, 3 ) } },
         { outerTpidIndex,    { at( 8, 4 ) } },
         { innerTpidIndex,    { at( 12, 4 ) } },
         { outerPcpDeiSource, { at( 16, 2 ) } },
         { innerPcpDeiSource, { at( 18, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,    128,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,    128,    1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 7 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x1830000, 1,    0,    { { 30, 2 }, { 12, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x1830000, 1,    0,    { { 8, 4 } } },
      { chips( 14 ),     variants( 0 ), 0x1830000, 1,    0,    { { 30, 13 }, { 30, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1830000, 1,    0,    { { 24, 9 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EvecFormatTable

#undef HARDWARE_FIELDS
