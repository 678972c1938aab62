// Management requests to the egress exact-match engine: one request, or many of two key formats.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/EsemMgmtReq.def>

namespace Hardware::Layouts::EsemMgmtReq {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto like15 = chips( 15, 16 );
inline constexpr auto upTo14 = chips( 10, range( 12, 14 ) );
inline constexpr auto newer = chips( upTo14, like15 );

inline constexpr auto description = describe(
   layout(
      // Chip types 2 to 8: one request. The parts of esemKey and of the reserved fields lie on the
      // same bits. Chip type 8 has two requests, each with names of its own beside the common
      // ones.
      block( variants( 0 ), { chips( 2, 3 ), chips( range( 4, 7 ) ), chips( 8 ) }, {
         { esem0Type,           { absent,       absent,       at( 0, 3 ) } },
         { esemType,            { at( 0, 3 ),   at( 0, 3 ),   at( 0, 3 ) } },
         { esem0Stamp,          { absent,       absent,       at( 3, 8 ) } },
         { esemStamp,           { at( 3, 8 ),   at( 3, 8 ),   absent } },
         { esem0Key,            { absent,       absent,       at( 11, 40 ) } },
         { esemKey,             { at( 11, 37 ), at( 11, 40 ), at( 11, 40 ) } },
         { esemKeyCvid,         { at( 11, 12 ), at( 11, 12 ), at( 11, 12 ) } },
         { esemKeyVsi,          { at( 23, 16 ), at( 23, 16 ), at( 23, 16 ) } },
         { esemKeyVd,           { at( 39, 8 ),  at( 39, 9 ),  at( 39, 9 ) } },
         { esemKeyDbId,         { at( 47, 1 ),  at( 48, 1 ),  at( 48, 1 ) } },
         { esemPayload,         { at( 48, 16 ), at( 51, 17 ), at( 51, 17 ) } },
         { esem0Payload,        { absent,       absent,       at( 51, 17 ) } },
         { esemReservedLow,     { at( 64, 4 ),  at( 68, 5 ),  absent } },
         { esemAgeStatus,       { at( 64, 2 ),  at( 68, 3 ),  absent } },
         { esemSelf,            { at( 66, 1 ),  at( 71, 1 ),  absent } },
         { esemRefreshedByDsp,  { at( 67, 1 ),  at( 72, 1 ),  absent } },
         { esem0ReservedLow,    { absent,       absent,       at( 68, 5 ) } },
         { esem0AgeStatus,      { absent,       absent,       at( 68, 3 ) } },
         { esem0Self,           { absent,       absent,       at( 71, 1 ) } },
         { esem0RefreshedByDsp, { absent,       absent,       at( 72, 1 ) } },
      } ),

      block( variants( 1 ), { chips( 8 ) }, {
         { esem1Type,           { at( 0, 3 ) } },
         { esemType,            { at( 0, 3 ) } },
         { esem1Stamp,          { at( 3, 8 ) } },
         { esem1Key,            { at( 11, 40 ) } },
         { esemKey,             { at( 11, 40 ) } },
         { esemKeyCvid,         { at( 11, 12 ) } },
         { esemKeyVsi,          { at( 23, 16 ) } },
         { esemKeyVd,           { at( 39, 9 ) } },
         { esemKeyDbId,         { at( 48, 1 ) } },
         { esem1Payload,        { at( 51, 17 ) } },
         { esemPayload,         { at( 51, 17 ) } },
         { esem1ReservedLow,    { at( 68, 5 ) } },
         { esem1AgeStatus,      { at( 68, 3 ) } },
         { esem1Self,           { at( 71, 1 ) } },
         { esem1RefreshedByDsp, { at( 72, 1 ) } },
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

      // Key and payload. Chip type 14 widens resultType downward, so that the payload below lies
      // one bit lower; chip types 15 and 16 have it there too, and vmv one bit lower as well.
      block( variants( 0 ), { chips( 10, 12, 13 ), chips( 14 ), like15 }, {
         { key,              { at( 9, 24 ),   at( 9, 24 ),   at( 9, 24 ) } },
         { fodo,             { at( 9, 18 ),   at( 9, 18 ),   at( 9, 18 ) } },
         { zeroPadding,      { at( 27, 6 ),   at( 27, 6 ),   at( 27, 6 ) } },
         { payload,          { at( 59, 86 ),  at( 58, 87 ),  at( 58, 86 ) } },
         { egressLastLayer,  { at( 59, 1 ),   at( 58, 1 ),   at( 58, 1 ) } },
         { statObjectId,     { at( 60, 17 ),  at( 59, 17 ),  at( 59, 17 ) } },
         { statObjectCmd,    { at( 77, 5 ),   at( 76, 5 ),   at( 76, 5 ) } },
         { outLifProfile,    { at( 82, 6 ),   at( 81, 6 ),   at( 81, 6 ) } },
         { encapQosModel,    { at( 88, 3 ),   at( 87, 3 ),   at( 87, 3 ) } },
         { remarkProfile,    { at( 91, 5 ),   at( 90, 5 ),   at( 90, 5 ) } },
         { nwkQosIdx,        { at( 96, 11 ),  at( 95, 11 ),  at( 95, 11 ) } },
         { vlanEditProfile,  { at( 107, 6 ),  at( 106, 6 ),  at( 106, 6 ) } },
         { actionProfile,    { at( 113, 2 ),  at( 112, 2 ),  at( 112, 2 ) } },
         { encapDestination, { at( 115, 24 ), at( 114, 24 ), at( 114, 24 ) } },
         { resultType,       { at( 139, 6 ),  at( 138, 7 ),  at( 138, 6 ) } },
         { vmv,              { at( 145, 1 ),  at( 145, 1 ),  at( 144, 1 ) } },
      } ),

      block( variants( 1 ), { chips( 10, 12 ), chips( 13 ), chips( 14 ), like15 }, {
         { key,             { at( 9, 40 ),   at( 9, 41 ),   at( 9, 41 ),   at( 9, 41 ) } },
         { cVid,            { at( 9, 12 ),   at( 9, 12 ),   at( 9, 12 ),   at( 9, 12 ) } },
         { vlanDomain,      { at( 21, 9 ),   at( 21, 11 ),  at( 21, 11 ),  at( 21, 11 ) } },
         { fodo,            { at( 30, 18 ),  at( 32, 18 ),  at( 32, 18 ),  at( 32, 18 ) } },
         { zeroPadding,     { at( 48, 1 ),   absent,        absent,        absent } },
         { payload,         { at( 59, 86 ),  at( 59, 86 ),  at( 58, 87 ),  at( 58, 86 ) } },
         { egressLastLayer, { at( 59, 1 ),   at( 59, 1 ),   at( 58, 1 ),   at( 58, 1 ) } },
         { statObjectId,    { at( 60, 17 ),  at( 60, 17 ),  at( 59, 17 ),  at( 59, 17 ) } },
         { statObjectCmd,   { at( 77, 5 ),   at( 77, 5 ),   at( 76, 5 ),   at( 76, 5 ) } },
         { outLifProfile,   { at( 82, 6 ),   at( 82, 6 ),   at( 81, 6 ),   at( 81, 6 ) } },
         { encapQosModel,   { at( 88, 3 ),   at( 88, 3 ),   at( 87, 3 ),   at( 87, 3 ) } },
         { remarkProfile,   { at( 91, 5 ),   at( 91, 5 ),   at( 90, 5 ),   at( 90, 5 ) } },
         { nwkQosIdx,       { at( 96, 11 ),  at( 96, 11 ),  at( 95, 11 ),  at( 95, 11 ) } },
         { vlanEditProfile, { at( 107, 6 ),  at( 107, 6 ),  at( 106, 6 ),  at( 106, 6 ) } },
         { actionProfile,   { at( 113, 2 ),  at( 113, 2 ),  at( 112, 2 ),  at( 112, 2 ) } },
         { vlanEditVid1,    { at( 115, 12 ), at( 115, 12 ), at( 114, 12 ), at( 114, 12 ) } },
         { vlanEditVid2,    { at( 127, 12 ), at( 127, 12 ), at( 126, 12 ), at( 126, 12 ) } },
         { resultType,      { at( 139, 6 ),  at( 139, 6 ),  at( 138, 7 ),  at( 138, 6 ) } },
         { vmv,             { at( 145, 1 ),  at( 145, 1 ),  at( 145, 1 ),  at( 144, 1 ) } },
      } ) ),
   dimensions( {
      // chip types             variants          width entries arrayElements instanceCount
      { chips( range( 2, 7 ) ), variants( 0 ),    3,    1,      1,            1 },
      { chips( 8 ),             variants( 0, 1 ), 3,    1,      1,            1 },
      { newer,                  variants( 0, 1 ), 6,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { chips( range( 2, 7 ) ),   variants( 0 ),    12 },
      { chips( 8 ),               variants( 0, 1 ), 15 },
      { newer,                    variants( 0 ),    25 },
      { chips( 10, 12 ),          variants( 1 ),    28 },
      { chips( range( 13, 16 ) ), variants( 1 ),    27 },
   } ),
   addresses( {
      // chip types             variants          base      entry step array step { accessType, destBlock }
      { chips( 2, 3 ),          variants( 0 ),    0x7a0000, 1,         0,         { { 0, 3 } } },
      { chips( range( 4, 7 ) ), variants( 0 ),    0x7a0000, 1,         0,         { { 0, 52 } } },
      { chips( 8 ),             variants( 0 ),    0x7a0000, 1,         0,         { { 0, 56 } } },
      { chips( 8 ),             variants( 1 ),    0x7c0000, 1,         0,         { { 0, 56 } } },
      { chips( 10, 12 ),        variants( 0, 1 ), 0x75000,  1,         0,         { { 2, 5 } } },
      { chips( 13 ),            variants( 0, 1 ), 0x63000,  1,         0,         { { 0, 12 } } },
      { chips( 14 ),            variants( 0, 1 ), 0x63000,  1,         0,         { { 24, 36 } } },
      { like15,                 variants( 0, 1 ), 0x63000,  1,         0,         { { 8, 20 } } },
   } ),
   tags( {
      { newer, variants( 0 ), { { vmv, 1 }, { tid, 4 }, { entryType, 0 }, { resultType, 9 } } },
      { newer, variants( 1 ), { { vmv, 1 }, { tid, 2 }, { entryType, 0 }, { resultType, 9 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::EsemMgmtReq

#undef HARDWARE_FIELDS
