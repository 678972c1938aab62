// The egress VLAN edit table with command and edit in one entry: one layout in two copies.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EvecEncapTable.def>

namespace Hardware::Layouts::EvecEncapTable {

#include <Hardware/detail/FieldNumbers.inc>

// The base goes by the variant alone, accessType and destBlock by both.
// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0, 1 ), { newer }, {
         { vlanEditCommand,   { at( 0, 8 ) } },
         { vlanTxTag,         { at( 8, 1 ) } },
         { vlanMirror,        { at( 9, 2 ) } },
         { vlanMembership,    { at( 11, 2 ) } },
         { outerVidSource,    { at( 13, 3 ) } },
         { innerVidSource,    { at( 16, 3 ) } },
         { outerTpidIndex,    { at( 19, 4 ) } },
         { innerTpidIndex,    { at( 23, 4 ) } },
         { outerPcpDeiSource, { at( 27, 2 ) } },
         { innerPcpDeiSource, { at( 29, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants          width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0, 1 ), 1,    64,     1,            2 },
      { chips( 13, 15, 16 ), variants( 0, 1 ), 1,    64,     1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0, 1 ), 10 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x1b0000,  1,    0,    { { 28, 2 }, { 10, 10 } } },
      { chips( 10, 12 ), variants( 1 ), 0x2720000, 1,    0,    { { 30, 2 }, { 12, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x1b0000,  1,    0,    { { 2, 9 } } },
      { chips( 13 ),     variants( 1 ), 0x2720000, 1,    0,    { { 8, 4 } } },
      { chips( 14 ),     variants( 0 ), 0x1b0000,  1,    0,    { { 28, 13 }, { 28, 25 } } },
      { chips( 14 ),     variants( 1 ), 0x2720000, 1,    0,    { { 30, 13 }, { 30, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1b0000,  1,    0,    { { 16, 9 } } },
      { chips( 15, 16 ), variants( 1 ), 0x2720000, 1,    0,    { { 24, 9 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EvecEncapTable

#undef HARDWARE_FIELDS
