// The CPU command word of a TCAM bank, with its data of 164 or 328 bits.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/TcamBankTable.def>

namespace Hardware::Layouts::TcamBankTable {

#include <Hardware/detail/FieldNumbers.inc>

// On chip types 2 and 3 the command is one bit narrower than elsewhere, so all fields after it lie
// one bit lower. Their 26880 entries are no slip, either.
// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 2, 3 ), chips( range( 4, 8 ) ), newer }, {
         { tcamCpuCmdWr,       { at( 0, 1 ),   at( 0, 2 ),    at( 0, 2 ) } },
         { tcamCpuCmdRd,       { at( 1, 1 ),   at( 2, 1 ),    at( 2, 1 ) } },
         { tcamCpuCmdCmp,      { at( 2, 1 ),   at( 3, 1 ),    at( 3, 1 ) } },
         { tcamCpuCmdDi,       { at( 3, 164 ), at( 4, 164 ),  at( 4, 328 ) } },
         { tcamCpuCmdValid,    { at( 167, 2 ), at( 168, 2 ),  at( 332, 2 ) } },
         { tcamCpuCmdReserved, { at( 169, 9 ), at( 170, 10 ), absent } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 2, 3 ),       variants( 0 ), 6,    26880,  1,            1 },
      { chips( 4, 5, 8 ),    variants( 0 ), 6,    65536,  1,            1 },
      { chips( 6, 7 ),       variants( 0 ), 6,    32768,  1,            1 },
      { chips( 10, 12, 14 ), variants( 0 ), 11,   65536,  1,            2 },
      { chips( 13 ),         variants( 0 ), 11,   65536,  1,            1 },
      { chips( 15, 16 ),     variants( 0 ), 11,   32768,  1,            1 },
   } ),
   fieldCounts( {
      { chips( range( 2, 8 ) ), variants( 0 ), 6 },
      { newer,                  variants( 0 ), 5 },
   } ),
   addresses( {
      //                                            step of     by identifier
      // chip types      variants       base        entry array { accessType, destBlock }
      { chips( 2, 3 ),   variants( 0 ), 0x1800000,  1,    0,    { { 0, 53 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x1a000000, 1,    0,    { { 0, 63 } } },
      { chips( 6, 7 ),   variants( 0 ), 0x1a000000, 1,    0,    { { 0, 63 } } },
      { chips( 8 ),      variants( 0 ), 0x1a000000, 1,    0,    { { 0, 70 } } },
      { chips( 10, 12 ), variants( 0 ), 0x1000000,  1,    0,    { { 4, 6 }, { 6, 6 } } },
      { chips( 13 ),     variants( 0 ), 0x1000000,  1,    0,    { { 28, 12 } } },
      { chips( 14 ),     variants( 0 ), 0x1000000,  1,    0,    { { 16, 36 }, { 18, 36 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1000000,  1,    0,    { { 0, 19 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::TcamBankTable

#undef HARDWARE_FIELDS
