// The action memory beside the TCAM banks: 24 array elements of rows with one field.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/TcamActionTable.def>

namespace Hardware::Layouts::TcamActionTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto like2 = chips( 2, 3 );
inline constexpr auto from4 = chips( range( 4, 8 ) );
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { like2, from4, newer }, {
         { action, { at( 0, 20 ), at( 0, 24 ), at( 0, 32 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 2, 3, 6, 7 ), variants( 0 ), 1,    1024,   24,           1 },
      { chips( 4, 5, 8 ),    variants( 0 ), 1,    2048,   24,           1 },
      { chips( 10, 12, 14 ), variants( 0 ), 2,    2048,   24,           2 },
      { chips( 13 ),         variants( 0 ), 2,    2048,   24,           1 },
      { chips( 15, 16 ),     variants( 0 ), 2,    1024,   24,           1 },
   } ),
   fieldCounts( {
      { chips( range( 2, 8 ), 10, range( 12, 16 ) ), variants( 0 ), 1 },
   } ),
   addresses( {
      // chip types      variants       base        entry step array step { accessType, destBlock } by identifier
      { like2,           variants( 0 ), 0x1810000,  1,         1024,      { { 0, 53 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x1a100000, 1,         2048,      { { 0, 63 } } },
      { chips( 6, 7 ),   variants( 0 ), 0x1a100000, 1,         1024,      { { 0, 63 } } },
      { chips( 8 ),      variants( 0 ), 0x1a100000, 1,         2048,      { { 0, 70 } } },
      { chips( 10, 12 ), variants( 0 ), 0x1100000,  1,         2048,      { { 4, 6 }, { 6, 6 } } },
      { chips( 13 ),     variants( 0 ), 0x1100000,  1,         2048,      { { 28, 12 } } },
      { chips( 14 ),     variants( 0 ), 0x1100000,  1,         2048,      { { 16, 36 }, { 18, 36 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1100000,  1,         1024,      { { 0, 19 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::TcamActionTable

#undef HARDWARE_FIELDS
