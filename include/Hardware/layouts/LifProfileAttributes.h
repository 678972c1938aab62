// The attributes of the logical interface profiles: 256 rows with one field.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/LifProfileAttributes.def>

namespace Hardware::Layouts::LifProfileAttributes {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { newer }, {
         { daNotFoundDestinationProfile, { at( 0, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,    256,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,    256,    1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 1 },
   } ),
   addresses( {
      // chip types      variants       base      entry step array step { accessType, destBlock } by identifier
      { chips( 10, 12 ), variants( 0 ), 0x820000, 1,         0,         { { 18, 2 }, { 0, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x820000, 1,         0,         { { 6, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x820000, 1,         0,         { { 2, 14 }, { 2, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x820000, 1,         0,         { { 24, 12 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::LifProfileAttributes

#undef HARDWARE_FIELDS
