// The one register: a single field of 128 bits, in one or two instances.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/FheiIveSizeReg.def>

namespace Hardware::Layouts::FheiIveSizeReg {

#include <Hardware/detail/FieldNumbers.inc>

// A stated maxIdentifier of 0 beside an instanceCount of 2 is right: addresses go by the latter.
// clang-format off
inline constexpr auto older = chips( range( 2, 8 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { older }, {
         { pphFheiIveSize, { at( 0, 128 ) } },
      } ) ),
   dimensions( {
      //                                                  array    instance max        addr
      // chip types          variants       width entries elements count    identifier stride
      { chips( 2, 3, 6, 7 ), variants( 0 ), 4,    1,      1,       1,       0,         1 },
      { chips( 4, 5, 8 ),    variants( 0 ), 4,    1,      1,       2,       0,         1 },
   } ),
   fieldCounts( {
      { older, variants( 0 ), 1 },
   } ),
   addresses( {
      //                                     step of     by identifier
      // chip types    variants       base   entry array { accessType, destBlock }
      { chips( 2, 3 ), variants( 0 ), 0x1ea, 0,    0,    { { 0, 53 } } },
      { chips( 4, 5 ), variants( 0 ), 0x1e8, 0,    0,    { { 0, 60 }, { 0, 61 } } },
      { chips( 6, 7 ), variants( 0 ), 0x1eb, 0,    0,    { { 0, 60 } } },
      { chips( 8 ),    variants( 0 ), 0x1eb, 0,    0,    { { 0, 64 }, { 0, 65 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::FheiIveSizeReg

#undef HARDWARE_FIELDS
