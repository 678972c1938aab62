// SampleTable: chip types with variants, with holes between them, and without any.
#include "frame/SampleTable.h"

#include "frame/ClassSource.h"

#define HARDWARE_VIEW SampleTable
#define HARDWARE_FIELDS "frame/SampleTable.def"
#define HARDWARE_DISCRIMINATOR isSampleTable

namespace Hardware::Layouts::SampleTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
constexpr auto description = describe(
   layout(
      // A frame of all variants, and each variant's own fields inside it.
      block( variants( 0, 2, 3, 9 ), { chips( 10 ), chips( 12, 13 ) }, {
         { hits,       { at( 0, 3 ),     at( 0, 8 ) } },
         { tid,        { at( 3, 6 ),     at( 8, 6 ) } },
         { resultType, { at( 250, 6 ),   at( 249, 7 ) } },
         { entry,      { at( 20, 240 ),  at( 20, 240 ) } },
      } ),
      block( variants( 0 ), { chips( 10, 12 ) }, {
         { vlanDomain, { at( 57, 12 ) } },
         { payload,    { at( 60, 64 ) } },
      } ),
      block( variants( 2, 3 ), { chips( 10 ), chips( 12 ) }, {
         { vlanDomain, { at( 63, 11 ),  at( 64, 16 ) } },
         { payload,    { at( 33, 57 ),  at( 128, 40 ) } },
         { ipv6,       { at( 96, 128 ), absent } },
      } ),
      block( variants( 3 ), { chips( 10, 12 ) }, {
         { action,     { at( 289, 32 ) } },
      } ),
      block( anyVariant, { chips( 5, 6 ), chips( 7 ) }, {
         { hits,         { at( 7, 2 ),   at( 7, 1 ) } },
         { tcamCpuCmdDi, { at( 9, 512 ), at( 11, 300 ) } },
         { vsi,          { absent,       at( 600, 32 ) } },
      } ),
      block( variants( 1 ), { chips( 21 ) }, {
         { outLif, { at( 784, 16 ) } },
         { hits,   { at( 0, 8 ) } },
      } ) ),
   dimensions( {
      { chips( 10, 12 ), variants( 0, 2, 3, 9 ), 25, 4294967295, 1,     2 },
      { chips( 13 ),     variants( 0, 2, 3, 9 ), 10, 1,          70,    1 },
      // Chip type 6 has other entries than 5, and nothing else: neither may take the other's facts.
      { chips( 5 ),      anyVariant,             20, 4096,       3,     1 },
      { chips( 6 ),      anyVariant,             20, 4097,       3,     1 },
      { chips( 7 ),      anyVariant,             20, 4096,       65535, 2 },
      { chips( 21 ),     variants( 1 ),          25, 7,          1,     1 },
   } ),
   fieldCounts( {
      { chips( 10 ), variants( 0 ), 6 }, { chips( 10 ), variants( 2 ), 7 },
      { chips( 10 ), variants( 3 ), 8 }, { chips( 10 ), variants( 9 ), 4 },
      { chips( 12 ), variants( 0, 2 ), 6 }, { chips( 12 ), variants( 3 ), 7 },
      { chips( 12 ), variants( 9 ), 4 }, { chips( 13 ), variants( 0, 2, 3, 9 ), 4 },
      { chips( 5, 6 ), anyVariant, 2 }, { chips( 7 ), anyVariant, 3 },
      { chips( 21 ), variants( 1 ), 2 },
   } ),
   addresses( {
      { chips( 10 ),   variants( 0, 3 ),       0xfffffff0, 1,  0,     { { 1, 2 }, { 3, 2 } } },
      { chips( 10 ),   variants( 2, 9 ),       0x1000,     2,  0,     { { 4, 5 }, { 4, 6 } } },
      { chips( 12 ),   variants( 0, 2, 3, 9 ), 0x2000,     1,  0,     { { 0, 0 }, { 255, 255 } } },
      // So here, where variant 9 only lies elsewhere,
      { chips( 13 ),   variants( 0, 2, 3 ),    0x30,       0,  7,     { { 0, 9 } } },
      { chips( 13 ),   variants( 9 ),          0x31,       0,  7,     { { 0, 9 } } },
      { chips( 5, 6 ), anyVariant,             0x500000,   16, 65536, { { 0, 1 } } },
      { chips( 7 ),    anyVariant,             0x700000,   1,  4096,  { { 0, 1 }, { 0, 2 } } },
      { chips( 21 ),   variants( 1 ),          noAddress },
   } ),
   tags( {
      { chips( 10, 12 ), variants( 0 ), { { resultType, 33 }, { tid, 7 } } },
      { chips( 10, 12 ), variants( 2, 3 ), { { tid, 63 } } },
      { chips( 10, 12 ), variants( 9 ), { untagged } },
      // and here, where variant 3 only has a tag.
      { chips( 13 ), variants( 3 ), { { tid, 5 } } },
      { chips( 13 ), variants( 0, 2, 9 ), { untagged } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::SampleTable

#include "frame/DefineTable.inc"
