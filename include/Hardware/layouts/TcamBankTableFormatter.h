// The IPv6 destination key: address, VRF and, on the newer chip types, two IP qualifiers.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/TcamBankTableFormatter.def>

namespace Hardware::Layouts::TcamBankTableFormatter {

#include <Hardware/detail/FieldNumbers.inc>

// The width is far more than the fields need, on purpose: it sets the storage.
// clang-format off
inline constexpr auto older = chips( range( 2, 8 ) );
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { older, newer }, {
         { vrf,                            { at( 128, 10 ), at( 0, 16 ) } },
         { ipv6Dip,                        { at( 0, 128 ),  at( 26, 128 ) } },
         { ipQualifierAdditionalHeader2Nd, { absent,        at( 16, 5 ) } },
         { ipQualifierAdditionalHeader1St, { absent,        at( 21, 5 ) } },
      } ) ),
   dimensions( {
      // chip types variants       width entries     arrayElements instanceCount
      { older,     variants( 0 ), 20,   4294967295, 1,            1 },
      { newer,     variants( 0 ), 20,   4294967295, 1,            1 },
   } ),
   fieldCounts( {
      { older, variants( 0 ), 2 },
      { newer, variants( 0 ), 4 },
   } ),
   addresses( {
      //                                     step of     by identifier
      // chip types      variants       base entry array { accessType, destBlock }
      { chips( 2, 3 ),   variants( 0 ), 0x0, 1,    0,    { { 0, 61 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x0, 1,    0,    { { 0, 118 } } },
      { chips( 6, 7 ),   variants( 0 ), 0x0, 1,    0,    { { 0, 120 } } },
      { chips( 8 ),      variants( 0 ), 0x0, 1,    0,    { { 0, 115 } } },
      { chips( 10, 12 ), variants( 0 ), 0x0, 1,    0,    { { 10, 1 } } },
      { chips( 13 ),     variants( 0 ), 0x0, 1,    0,    { { 4, 5 } } },
      { chips( 14 ),     variants( 0 ), 0x0, 1,    0,    { { 28, 12 } } },
      { chips( 15, 16 ), variants( 0 ), 0x0, 1,    0,    { { 16, 15 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::TcamBankTableFormatter

#undef HARDWARE_FIELDS
