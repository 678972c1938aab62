// The numbers of VLAN edit command profiles: one or eight per entry, as wide as the profiles need.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/IvectTable.def>

namespace Hardware::Layouts::IvectTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto older = chips( range( 2, 8 ) );
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { older }, {
         { ivec, { at( 0, 6 ) } },
      } ),
      block( variants( 0, 1 ), { newer }, {
         { ivec0, { at( 0, 7 ) } },
         { ivec1, { at( 7, 7 ) } },
         { ivec2, { at( 14, 7 ) } },
         { ivec3, { at( 21, 7 ) } },
         { ivec4, { at( 28, 7 ) } },
         { ivec5, { at( 35, 7 ) } },
         { ivec6, { at( 42, 7 ) } },
         { ivec7, { at( 49, 7 ) } },
      } ) ),
   dimensions( {
      // chip types          variants          width entries arrayElements instanceCount
      { chips( 2, 3, 6, 7 ), variants( 0 ),    1,    256,    1,            1 },
      { chips( 4, 5, 8 ),    variants( 0 ),    1,    256,    1,            2 },
      { chips( 10, 12, 14 ), variants( 0, 1 ), 2,    512,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0, 1 ), 2,    512,    1,            1 },
   } ),
   fieldCounts( {
      { older, variants( 0 ),    1 },
      { newer, variants( 0, 1 ), 8 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 2, 3 ),   variants( 0 ), 0x1150000, 1,    0,    { { 0, 52 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x430000,  1,    0,    { { 0, 58 }, { 0, 59 } } },
      { chips( 6, 7 ),   variants( 0 ), 0x430000,  1,    0,    { { 0, 58 } } },
      { chips( 8 ),      variants( 0 ), 0x430000,  1,    0,    { { 0, 62 }, { 0, 63 } } },
      { chips( 10, 12 ), variants( 0 ), 0x7f0000,  1,    0,    { { 18, 2 }, { 0, 10 } } },
      { chips( 10, 12 ), variants( 1 ), 0x7c0000,  1,    0,    { { 8, 2 }, { 22, 9 } } },
      { chips( 13 ),     variants( 0 ), 0x7f0000,  1,    0,    { { 6, 10 } } },
      { chips( 13 ),     variants( 1 ), 0x7c0000,  1,    0,    { { 8, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x7f0000,  1,    0,    { { 2, 14 }, { 2, 26 } } },
      { chips( 14 ),     variants( 1 ), 0x7c0000,  1,    0,    { { 4, 14 }, { 4, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x7f0000,  1,    0,    { { 24, 12 } } },
      { chips( 15, 16 ), variants( 1 ), 0x7c0000,  1,    0,    { { 8, 17 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::IvectTable

#undef HARDWARE_FIELDS
