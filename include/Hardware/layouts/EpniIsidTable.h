// The ISID table, on the newer chip types a view of the egress exact-match request.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EpniIsidTable.def>

namespace Hardware::Layouts::EpniIsidTable {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto like15 = chips( 15, 16 );
inline constexpr auto upTo14 = chips( 10, range( 12, 14 ) );
inline constexpr auto older = chips( range( 2, 8 ) );
inline constexpr auto newer = chips( upTo14, like15 );

inline constexpr auto description = describe(
   layout(
      block( anyVariant, { older }, {
         { isid, { at( 0, 24 ) } },
      } ),

      // The frame of chip types 10 and 12 to 16.
      block( variants( 0, 1 ), { upTo14, like15 }, {
         { command,   { at( 0, 9 ),    at( 0, 9 ) } },
         { entry,     { at( 9, 137 ),  at( 9, 136 ) } },
         { wayIndex,  { at( 146, 4 ),  at( 145, 4 ) } },
         { prefixNum, { at( 150, 2 ),  at( 149, 2 ) } },
         { address,   { at( 152, 17 ), at( 151, 16 ) } },
         { entryType, { at( 169, 3 ),  at( 167, 3 ) } },
         { tid,       { at( 172, 6 ),  at( 170, 6 ) } },
         { hits,      { at( 178, 4 ),  at( 176, 4 ) } },
         { found,     { at( 182, 1 ),  at( 180, 1 ) } },
      } ),

      // Key and payload. Only chip types 10 and 12 have the bit of remarkProfile: chip type 13
      // fills it from below, chip types 14 to 16 from above. Chip type 14 widens resultType by one
      // bit.
      block( variants( 0 ), { chips( 10, 12 ), chips( 13 ), chips( 14 ), like15 }, {
         { key,               { at( 9, 24 ),   at( 9, 24 ),   at( 9, 24 ),   at( 9, 24 ) } },
         { fodo,              { at( 9, 18 ),   at( 9, 18 ),   at( 9, 18 ),   at( 9, 18 ) } },
         { zeroPadding,       { at( 27, 6 ),   at( 27, 6 ),   at( 27, 6 ),   at( 27, 6 ) } },
         { payload,           { at( 88, 57 ),  at( 89, 56 ),  at( 88, 57 ),  at( 88, 56 ) } },
         { outLifProfile,     { at( 88, 3 ),   at( 89, 3 ),   at( 88, 3 ),   at( 88, 3 ) } },
         { encap1QosModel,    { at( 91, 3 ),   at( 92, 3 ),   at( 91, 3 ),   at( 91, 3 ) } },
         { remarkProfile,     { at( 94, 1 ),   absent,        absent,        absent } },
         { actionProfile,     { at( 95, 2 ),   at( 95, 2 ),   at( 94, 2 ),   at( 94, 2 ) } },
         { encap1Destination, { at( 97, 12 ),  at( 97, 12 ),  at( 96, 12 ),  at( 96, 12 ) } },
         { vlanEditProfile,   { at( 109, 6 ),  at( 109, 6 ),  at( 108, 6 ),  at( 108, 6 ) } },
         { fwdDomainNwkName,  { at( 115, 24 ), at( 115, 24 ), at( 114, 24 ), at( 114, 24 ) } },
         { resultType,        { at( 139, 6 ),  at( 139, 6 ),  at( 138, 7 ),  at( 138, 6 ) } },
         { vmv,               { at( 145, 1 ),  at( 145, 1 ),  at( 145, 1 ),  at( 144, 1 ) } },
      } ),

      block( variants( 1 ), { chips( 10, 12, 13 ), chips( 14 ), like15 }, {
         { key,              { at( 9, 24 ),  at( 9, 24 ),  at( 9, 24 ) } },
         { fodo,             { at( 9, 18 ),  at( 9, 18 ),  at( 9, 18 ) } },
         { zeroPadding,      { at( 27, 6 ),  at( 27, 6 ),  at( 27, 6 ) } },
         { payload,          { at( 44, 40 ), at( 43, 41 ), at( 43, 40 ) } },
         { egressLastLayer,  { at( 44, 1 ),  at( 43, 1 ),  at( 43, 1 ) } },
         { outLifProfile,    { at( 45, 6 ),  at( 44, 6 ),  at( 44, 6 ) } },
         { encapQosModel,    { at( 51, 2 ),  at( 50, 2 ),  at( 50, 2 ) } },
         { remarkProfile,    { at( 53, 5 ),  at( 52, 5 ),  at( 52, 5 ) } },
         { vlanEditProfile,  { at( 58, 6 ),  at( 57, 6 ),  at( 57, 6 ) } },
         { actionProfile,    { at( 64, 2 ),  at( 63, 2 ),  at( 63, 2 ) } },
         { encapDestination, { at( 66, 12 ), at( 65, 12 ), at( 65, 12 ) } },
         { resultType,       { at( 78, 6 ),  at( 77, 7 ),  at( 77, 6 ) } },
         { vmv,              { at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ) ),
   dimensions( {
      // chip types       variants          width entries arrayElements instanceCount
      { chips( 2, 3 ),    anyVariant,       1,    4096,   1,            1 },
      { chips( 4, 5, 8 ), anyVariant,       1,    32768,  1,            2 },
      { chips( 6, 7 ),    anyVariant,       1,    32768,  1,            1 },
      { newer,            variants( 0, 1 ), 6,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { older,                    anyVariant,    1 },
      { chips( 10, 12 ),          variants( 0 ), 22 },
      { newer,                    variants( 1 ), 22 },
      { chips( range( 13, 16 ) ), variants( 0 ), 21 },
   } ),
   addresses( {
      // chip types      variants          base      entry step array step { accessType, destBlock } by identifier
      { chips( 2, 3 ),   anyVariant,       0x130000, 1,         0,         { { 0, 3 } } },
      { chips( 4, 5 ),   anyVariant,       0x150000, 1,         0,         { { 0, 48 }, { 0, 49 } } },
      { chips( 6, 7 ),   anyVariant,       0x200000, 1,         0,         { { 0, 48 } } },
      { chips( 8 ),      anyVariant,       0x170000, 1,         0,         { { 0, 52 }, { 0, 53 } } },
      { chips( 10, 12 ), variants( 0, 1 ), 0x75000,  1,         0,         { { 2, 5 } } },
      { chips( 13 ),     variants( 0, 1 ), 0x63000,  1,         0,         { { 0, 12 } } },
      { chips( 14 ),     variants( 0, 1 ), 0x63000,  1,         0,         { { 24, 36 } } },
      { like15,          variants( 0, 1 ), 0x63000,  1,         0,         { { 8, 20 } } },
   } ),
   tags( {
      { newer, variants( 0 ), { { vmv, 1 }, { tid, 4 }, { entryType, 0 }, { resultType, 33 } } },
      { newer, variants( 1 ), { { vmv, 1 }, { tid, 4 }, { entryType, 1 }, { resultType, 11 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EpniIsidTable

#undef HARDWARE_FIELDS
