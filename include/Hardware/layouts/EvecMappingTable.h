// The 4096 selections of an egress VLAN edit command: one layout on all chip types.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EvecMappingTable.def>

namespace Hardware::Layouts::EvecMappingTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { newer }, {
         { egressVlanEditCommand, { at( 0, 7 ) } },
         { removeTxTag,           { at( 7, 1 ) } },
         { vlanMirror,            { at( 8, 2 ) } },
         { vlanMembership,        { at( 10, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,    4096,   1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,    4096,   1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 4 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x1820000, 1,    0,    { { 30, 2 }, { 12, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x1820000, 1,    0,    { { 8, 4 } } },
      { chips( 14 ),     variants( 0 ), 0x1820000, 1,    0,    { { 30, 13 }, { 30, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1820000, 1,    0,    { { 24, 9 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EvecMappingTable

#undef HARDWARE_FIELDS
