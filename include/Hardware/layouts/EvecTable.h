// The egress VLAN edit table: two commands per entry, and the entry once more as one number.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EvecTable.def>

namespace Hardware::Layouts::EvecTable {

#include <Hardware/detail/FieldNumbers.inc>

// Chip types 6 to 8 widen the TPID indices and add the membership checks, so that every field of
// the second command moves. `evecTableData` lies over all other fields on purpose.
// clang-format off
inline constexpr auto upTo5 = chips( range( 2, 5 ) );
inline constexpr auto from6 = chips( range( 6, 8 ) );

inline constexpr auto description = describe(
   layout(
      block( anyVariant, { upTo5, from6 }, {
         { entry0NTagsToRemove,       { at( 0, 2 ),  at( 0, 2 ) } },
         { entry0InnerPcpDeiSrc,      { at( 2, 2 ),  at( 2, 2 ) } },
         { entry0OuterPcpDeiSrc,      { at( 4, 2 ),  at( 4, 2 ) } },
         { entry0InnerVidSrc,         { at( 6, 3 ),  at( 6, 3 ) } },
         { entry0OuterVidSrc,         { at( 9, 3 ),  at( 9, 3 ) } },
         { entry0InnerTpidIdx,        { at( 12, 2 ), at( 12, 3 ) } },
         { entry0OuterTpidIdx,        { at( 14, 2 ), at( 15, 3 ) } },
         { entry0MembershipCheckType, { absent,      at( 18, 1 ) } },
         { entry1NTagsToRemove,       { at( 16, 2 ), at( 19, 2 ) } },
         { entry1InnerPcpDeiSrc,      { at( 18, 2 ), at( 21, 2 ) } },
         { entry1OuterPcpDeiSrc,      { at( 20, 2 ), at( 23, 2 ) } },
         { entry1InnerVidSrc,         { at( 22, 3 ), at( 25, 3 ) } },
         { entry1OuterVidSrc,         { at( 25, 3 ), at( 28, 3 ) } },
         { entry1InnerTpidIdx,        { at( 28, 2 ), at( 31, 3 ) } },
         { entry1OuterTpidIdx,        { at( 30, 2 ), at( 34, 3 ) } },
         { entry1MembershipCheckType, { absent,      at( 37, 1 ) } },
         { evecTableData,             { at( 0, 32 ), at( 0, 38 ) } },
      } ) ),
   dimensions( {
      // chip types    variants    width entries arrayElements instanceCount
      { chips( 2, 3 ), anyVariant, 2,    256,    1,            1 },
      { chips( 4, 5 ), anyVariant, 2,    512,    1,            2 },
      { chips( 6, 7 ), anyVariant, 2,    512,    1,            1 },
      { chips( 8 ),    anyVariant, 2,    512,    1,            2 },
   } ),
   fieldCounts( {
      { upTo5, anyVariant, 15 },
      { from6, anyVariant, 17 },
   } ),
   addresses( {
      //                                     step of     by identifier
      // chip types    variants    base      entry array { accessType, destBlock }
      { chips( 2, 3 ), anyVariant, 0x280000, 1,    0,    { { 0, 3 } } },
      { chips( 4, 5 ), anyVariant, 0x260000, 1,    0,    { { 0, 48 }, { 0, 49 } } },
      { chips( 6, 7 ), anyVariant, 0x250000, 1,    0,    { { 0, 48 } } },
      { chips( 8 ),    anyVariant, 0x1c0000, 1,    0,    { { 0, 52 }, { 0, 53 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EvecTable

#undef HARDWARE_FIELDS
