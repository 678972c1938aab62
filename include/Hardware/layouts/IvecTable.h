// The VLAN edit command profiles: 64 or 128 entries, in two or three copies.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/IvecTable.def>

namespace Hardware::Layouts::IvecTable {

#include <Hardware/detail/FieldNumbers.inc>

// The newer layout is no shifted copy of the older: without `tpidProfile`, the TPID indices are one
// bit wider. Variant 2 has one base on chip types 10 and 12, another on 13 to 16.
// clang-format off
inline constexpr auto older = chips( range( 2, 8 ) );
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0, 1 ), { older }, {
         { tpidProfile,    { at( 0, 3 ) } },
         { outerTpidIndex, { at( 3, 2 ) } },
         { outerVidSrc,    { at( 5, 3 ) } },
         { outerPcpDeiSrc, { at( 8, 3 ) } },
         { innerTpidIndex, { at( 11, 2 ) } },
         { innerVidSrc,    { at( 13, 3 ) } },
         { innerPcpDeiSrc, { at( 16, 3 ) } },
         { tagsToRemove,   { at( 19, 2 ) } },
      } ),
      block( variants( range( 0, 2 ) ), { newer }, {
         { outerTpidIndex, { at( 0, 3 ) } },
         { outerVidSrc,    { at( 3, 3 ) } },
         { outerPcpDeiSrc, { at( 6, 3 ) } },
         { innerTpidIndex, { at( 9, 3 ) } },
         { innerVidSrc,    { at( 12, 3 ) } },
         { innerPcpDeiSrc, { at( 15, 3 ) } },
         { tagsToRemove,   { at( 18, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants                   width entries arrayElements instanceCount
      { chips( 2, 3, 6, 7 ), variants( 0, 1 ),          1,    64,     1,            1 },
      { chips( 4, 5, 8 ),    variants( 0, 1 ),          1,    64,     1,            2 },
      { chips( 10, 12, 14 ), variants( range( 0, 2 ) ), 1,    128,    1,            2 },
      { chips( 13, 15, 16 ), variants( range( 0, 2 ) ), 1,    128,    1,            1 },
   } ),
   fieldCounts( {
      { older, variants( 0, 1 ),          8 },
      { newer, variants( range( 0, 2 ) ), 7 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 2, 3 ),   variants( 0 ), 0x2d0000,  1,    0,    { { 0, 3 } } },
      { chips( 2, 3 ),   variants( 1 ), 0x600000,  1,    0,    { { 0, 2 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x2b0000,  1,    0,    { { 0, 48 }, { 0, 49 } } },
      { chips( 4, 5 ),   variants( 1 ), 0x6b0000,  1,    0,    { { 0, 46 }, { 0, 47 } } },
      { chips( 6, 7 ),   variants( 0 ), 0x2e0000,  1,    0,    { { 0, 48 } } },
      { chips( 6, 7 ),   variants( 1 ), 0x760000,  1,    0,    { { 0, 46 } } },
      { chips( 8 ),      variants( 0 ), 0x250000,  1,    0,    { { 0, 52 }, { 0, 53 } } },
      { chips( 8 ),      variants( 1 ), 0x6c0000,  1,    0,    { { 0, 50 }, { 0, 51 } } },
      { chips( 10, 12 ), variants( 0 ), 0x2270000, 1,    0,    { { 26, 2 }, { 8, 10 } } },
      { chips( 10, 12 ), variants( 1 ), 0x1810000, 1,    0,    { { 30, 2 }, { 12, 10 } } },
      { chips( 10, 12 ), variants( 2 ), 0x2f10000, 1,    0,    { { 24, 2 }, { 6, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x2270000, 1,    0,    { { 20, 5 } } },
      { chips( 13 ),     variants( 1 ), 0x1810000, 1,    0,    { { 8, 4 } } },
      { chips( 13 ),     variants( 2 ), 0x2f30000, 1,    0,    { { 0, 9 } } },
      { chips( 14 ),     variants( 0 ), 0x2270000, 1,    0,    { { 26, 13 }, { 26, 25 } } },
      { chips( 14 ),     variants( 1 ), 0x1810000, 1,    0,    { { 30, 13 }, { 30, 25 } } },
      { chips( 14 ),     variants( 2 ), 0x2f30000, 1,    0,    { { 24, 13 }, { 24, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x2270000, 1,    0,    { { 8, 8 } } },
      { chips( 15, 16 ), variants( 1 ), 0x1810000, 1,    0,    { { 24, 9 } } },
      { chips( 15, 16 ), variants( 2 ), 0x2f30000, 1,    0,    { { 24, 17 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::IvecTable

#undef HARDWARE_FIELDS
