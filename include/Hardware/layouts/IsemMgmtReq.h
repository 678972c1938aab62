// Management requests to the ingress exact-match engine: one request, or many of 21 key formats.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/IsemMgmtReq.def>

namespace Hardware::Layouts::IsemMgmtReq {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
inline constexpr auto like2 = chips( 2, 3 );
inline constexpr auto like4 = chips( 4, 5, 8 );
inline constexpr auto like6 = chips( 6, 7 );
inline constexpr auto like10 = chips( 10, 13 );
inline constexpr auto like12 = chips( 12, 14 );
inline constexpr auto like15 = chips( 15, 16 );
inline constexpr auto except12 = chips( like10, like15 );
inline constexpr auto except13 = chips( 10, like12 );
inline constexpr auto upTo14 = chips( like10, like12 );
inline constexpr auto newer = chips( upTo14, like15 );

// The three request memories of chip types 10 and 12 to 16. The last two have the same formats.
inline constexpr auto memoryA = variants( 0, 11, 14 );
inline constexpr auto memoryB = variants( 1, 3, 5, 7, 9, 12, 15, 17, 19 );
inline constexpr auto memoryC = variants( 2, 4, 6, 8, 10, 13, 16, 18, 20 );
inline constexpr auto memoriesBAndC = variants( range( 1, 10 ), 12, 13, range( 15, 20 ) );

inline constexpr auto description = describe(
   layout(
      // Chip types 2 to 8: one request. The parts of isemKey and of isemReservedLow lie on the same
      // bits. isemPayload is one bit narrower on chip types 6 and 7 than on their siblings.
      block( variants( 0 ), { like2, like4, like6 }, {
         { isaType,                 { at( 0, 3 ),   absent,       absent } },
         { isemType,                { at( 0, 3 ),   at( 0, 3 ),   at( 0, 3 ) } },
         { isaStamp,                { at( 3, 8 ),   absent,       absent } },
         { isemStamp,               { absent,       at( 3, 8 ),   at( 3, 8 ) } },
         { isaKey,                  { at( 11, 41 ), absent,       absent } },
         { isemKey,                 { at( 11, 41 ), at( 11, 50 ), at( 11, 50 ) } },
         { isemKeyInAcVd,           { at( 11, 8 ),  at( 11, 9 ),  at( 11, 9 ) } },
         { isemKeyTcamSharingVd,    { at( 11, 8 ),  at( 11, 9 ),  at( 11, 9 ) } },
         { isemKeyTcamSharingVid,   { at( 19, 12 ), at( 20, 12 ), at( 20, 12 ) } },
         { isemKeyInAcInnerOrOuter, { at( 19, 2 ),  at( 20, 2 ),  at( 20, 2 ) } },
         { isemKeyInAcVid,          { at( 21, 12 ), at( 22, 12 ), at( 22, 12 ) } },
         { isemKeyInAcInnerVid,     { at( 33, 12 ), at( 34, 12 ), at( 34, 12 ) } },
         { isemKeyTunnelType,       { at( 48, 4 ),  at( 55, 6 ),  at( 55, 6 ) } },
         { isaPayload,              { at( 52, 16 ), absent,       absent } },
         { isemPayload,             { at( 52, 16 ), at( 61, 17 ), at( 61, 16 ) } },
         { isaReservedLow,          { at( 68, 4 ),  absent,       absent } },
         { isaAgeStatus,            { at( 68, 2 ),  absent,       absent } },
         { isaSelf,                 { at( 70, 1 ),  absent,       absent } },
         { isaRefreshedByDsp,       { at( 71, 1 ),  absent,       absent } },
         { isemReservedLow,         { absent,       at( 78, 5 ),  at( 77, 5 ) } },
         { isemAgeStatus,           { absent,       at( 78, 3 ),  at( 77, 3 ) } },
         { isemSelf,                { absent,       at( 81, 1 ),  at( 80, 1 ) } },
         { isemRefreshedByDsp,      { absent,       at( 82, 1 ),  at( 81, 1 ) } },
      } ),

      // The frame of chip types 10 and 12 to 16. It is all that variants 7, 8, 19 and 20 have on
      // chip types 12 and 14. In memory A chip type 14 has the narrowest wayIndex.
      block( memoryA, { chips( 10, 12, 13 ), chips( 14 ), like15 }, {
         { command,   { at( 0, 9 ),    at( 0, 9 ),    at( 0, 9 ) } },
         { entry,     { at( 9, 137 ),  at( 9, 137 ),  at( 9, 136 ) } },
         { wayIndex,  { at( 146, 5 ),  at( 146, 3 ),  at( 145, 5 ) } },
         { prefixNum, { at( 151, 2 ),  at( 149, 2 ),  at( 150, 2 ) } },
         { address,   { at( 153, 17 ), at( 151, 17 ), at( 152, 16 ) } },
         { entryType, { at( 170, 3 ),  at( 168, 3 ),  at( 168, 3 ) } },
         { tid,       { at( 173, 6 ),  at( 171, 6 ),  at( 171, 6 ) } },
         { hits,      { at( 179, 4 ),  at( 177, 4 ),  at( 177, 4 ) } },
         { found,     { at( 183, 1 ),  at( 181, 1 ),  at( 181, 1 ) } },
      } ),

      block( memoriesBAndC, { upTo14, like15 }, {
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

      // Keys and payloads. `key` and `payload` are further names of the bits of the fields inside
      // them.
      block( variants( 0 ), { except13, chips( 13 ), like15 }, {
         { key,        { at( 9, 21 ),  at( 9, 23 ),  at( 9, 23 ) } },
         { vlanDomain, { at( 9, 9 ),   at( 9, 11 ),  at( 9, 11 ) } },
         { sVid,       { at( 18, 12 ), at( 20, 12 ), at( 20, 12 ) } },
         { inLif,      { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { payload,    { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { vmv,        { at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      block( variants( 1, 2 ), { upTo14, like15 }, {
         { key,       { at( 9, 21 ),  at( 9, 21 ) } },
         { mplsLabel, { at( 9, 20 ),  at( 9, 20 ) } },
         { mplsBos,   { at( 29, 1 ),  at( 29, 1 ) } },
         { inLif,     { at( 64, 20 ), at( 63, 20 ) } },
         { payload,   { at( 64, 20 ), at( 63, 20 ) } },
         { vmv,       { at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      // Chip types 12 and 14 have the padding at the other end of the key.
      block( variants( 3, 4 ), { like10, like12, like15 }, {
         { key,            { at( 9, 60 ),   at( 9, 60 ),   at( 9, 60 ) } },
         { ipv4TunnelType, { at( 9, 4 ),    at( 17, 4 ),   at( 9, 4 ) } },
         { ipv4Dip,        { at( 13, 32 ),  at( 21, 32 ),  at( 13, 32 ) } },
         { vrf,            { at( 45, 16 ),  at( 53, 16 ),  at( 45, 16 ) } },
         { zeroPadding,    { at( 61, 8 ),   at( 9, 8 ),    at( 61, 8 ) } },
         { inLif,          { at( 124, 20 ), at( 124, 20 ), at( 123, 20 ) } },
         { payload,        { at( 124, 20 ), at( 124, 20 ), at( 123, 20 ) } },
         { vmv,            { at( 144, 2 ),  at( 144, 2 ),  at( 143, 2 ) } },
      } ),

      // On chip types 12 and 14 the field above fodoVsi is another one, with the same bits.
      block( variants( 5, 6 ), { chips( 10 ), like12, chips( 13 ), like15 }, {
         { key,                          { at( 9, 33 ),  at( 9, 33 ),  at( 9, 35 ),  at( 9, 35 ) } },
         { vni,                          { at( 9, 24 ),  at( 9, 24 ),  at( 9, 24 ),  at( 9, 24 ) } },
         { nextLayerNetworkDomain,       { at( 33, 9 ),  at( 33, 9 ),  at( 33, 11 ), at( 33, 11 ) } },
         { payload,                      { at( 63, 21 ), at( 63, 21 ), at( 63, 21 ), at( 62, 21 ) } },
         { fodoVsi,                      { at( 63, 18 ), at( 63, 18 ), at( 63, 18 ), at( 62, 18 ) } },
         { directExtractionPdResultType, { at( 81, 3 ),  absent,       at( 81, 3 ),  at( 80, 3 ) } },
         { fodoPdResultType,             { absent,       at( 81, 3 ),  absent,       absent } },
         { vmv,                          { at( 84, 2 ),  at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      block( variants( 7, 8 ), { like10, like12, like15 }, {
         { ipv4Sip, { at( 9, 32 ),  absent, at( 9, 32 ) } },
         { key,     { at( 9, 32 ),  absent, at( 9, 32 ) } },
         { inLif,   { at( 64, 20 ), absent, at( 63, 20 ) } },
         { payload, { at( 64, 20 ), absent, at( 63, 20 ) } },
         { vmv,     { at( 84, 2 ),  absent, at( 83, 2 ) } },
      } ),

      block( variants( 9, 10 ), { except13, chips( 13 ), like15 }, {
         { key,         { at( 9, 20 ),  at( 9, 22 ),  at( 9, 22 ) } },
         { vlanDomain,  { at( 9, 9 ),   at( 9, 11 ),  at( 9, 11 ) } },
         { zeroPadding, { at( 18, 11 ), at( 20, 11 ), at( 20, 11 ) } },
         { inLif,       { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { payload,     { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { vmv,         { at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      block( variants( 11 ), { except13, chips( 13 ), like15 }, {
         { key,         { at( 9, 20 ),  at( 9, 22 ),  at( 9, 22 ) } },
         { zeroPadding, { at( 9, 11 ),  at( 9, 11 ),  at( 9, 11 ) } },
         { vlanDomain,  { at( 20, 9 ),  at( 20, 11 ), at( 20, 11 ) } },
         { inLif,       { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { payload,     { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { vmv,         { at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      block( variants( 12, 13 ), { upTo14, like15 }, {
         { key,            { at( 9, 84 ),   at( 9, 84 ) } },
         { ipv4TunnelType, { at( 9, 4 ),    at( 9, 4 ) } },
         { ipv4Dip,        { at( 13, 32 ),  at( 13, 32 ) } },
         { ipv4Sip,        { at( 45, 32 ),  at( 45, 32 ) } },
         { vrf,            { at( 77, 16 ),  at( 77, 16 ) } },
         { inLif,          { at( 124, 20 ), at( 123, 20 ) } },
         { payload,        { at( 124, 20 ), at( 123, 20 ) } },
         { vmv,            { at( 144, 2 ),  at( 143, 2 ) } },
      } ),

      block( variants( 14 ), { except13, chips( 13 ), like15 }, {
         { key,        { at( 9, 33 ),  at( 9, 35 ),  at( 9, 35 ) } },
         { vlanDomain, { at( 9, 9 ),   at( 9, 11 ),  at( 9, 11 ) } },
         { sVid,       { at( 18, 12 ), at( 20, 12 ), at( 20, 12 ) } },
         { cVid,       { at( 30, 12 ), at( 32, 12 ), at( 32, 12 ) } },
         { inLif,      { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { payload,    { at( 64, 20 ), at( 64, 20 ), at( 63, 20 ) } },
         { vmv,        { at( 84, 2 ),  at( 84, 2 ),  at( 83, 2 ) } },
      } ),

      block( variants( 15, 16 ), { upTo14, like15 }, {
         { ipv6,              { at( 9, 80 ),   at( 9, 80 ) } },
         { key,               { at( 9, 80 ),   at( 9, 80 ) } },
         { ipv6AddressMsbsId, { at( 128, 16 ), at( 127, 16 ) } },
         { payload,           { at( 128, 16 ), at( 127, 16 ) } },
         { vmv,               { at( 144, 2 ),  at( 143, 2 ) } },
      } ),

      block( variants( 17, 18 ), { upTo14, like15 }, {
         { key,               { at( 9, 84 ),   at( 9, 84 ) } },
         { ipv6MpTunnelIdx,   { at( 9, 20 ),   at( 9, 20 ) } },
         { ipv6,              { at( 29, 48 ),  at( 29, 48 ) } },
         { ipv6AddressMsbsId, { at( 77, 16 ),  at( 77, 16 ) } },
         { inLif,             { at( 124, 20 ), at( 123, 20 ) } },
         { payload,           { at( 124, 20 ), at( 123, 20 ) } },
         { vmv,               { at( 144, 2 ),  at( 143, 2 ) } },
      } ),

      block( variants( 19, 20 ), { like10, like12, like15 }, {
         { key,          { at( 9, 76 ),   absent, at( 9, 76 ) } },
         { vidOuterVlan, { at( 9, 12 ),   absent, at( 9, 12 ) } },
         { ipv4Dip,      { at( 21, 32 ),  absent, at( 21, 32 ) } },
         { ipv4Sip,      { at( 53, 32 ),  absent, at( 53, 32 ) } },
         { inLif,        { at( 124, 20 ), absent, at( 123, 20 ) } },
         { payload,      { at( 124, 20 ), absent, at( 123, 20 ) } },
         { vmv,          { at( 144, 2 ),  absent, at( 143, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants                    width entries arrayElements instanceCount
      { chips( 2, 3, 6, 7 ), variants( 0 ),              3,    1,      1,            1 },
      { like4,               variants( 0 ),              3,    1,      1,            2 },
      { newer,               variants( range( 0, 20 ) ), 6,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { like2,                  variants( 0 ),                             18 },
      { chips( range( 4, 8 ) ), variants( 0 ),                             15 },
      { newer,                  variants( range( 0, 2 ), range( 9, 11 ) ), 15 },
      { newer,                  variants( 3, 4, 12, 13 ),                  17 },
      { newer,                  variants( 5, 6, 14, 17, 18 ),              16 },
      { except12,               variants( 19, 20 ),                        16 },
      { except12,               variants( 7, 8 ),                          14 },
      { newer,                  variants( 15, 16 ),                        14 },
      { like12,                 variants( 7, 8, 19, 20 ),                  9 },
   } ),
   addresses( {
      // chip types      variants       base       entry step array step { accessType, destBlock } by identifier
      { like2,           variants( 0 ), 0x480000,  1,         0,         { { 0, 52 } } },
      { chips( 4, 5 ),   variants( 0 ), 0x1000000, 1,         0,         { { 0, 60 }, { 0, 61 } } },
      { like6,           variants( 0 ), 0x1000000, 1,         0,         { { 0, 64 } } },
      { chips( 8 ),      variants( 0 ), 0x1000000, 1,         0,         { { 0, 64 }, { 0, 65 } } },
      { chips( 10, 12 ), memoryA,       0x5000,    1,         0,         { { 2, 5 } } },
      { chips( 10, 12 ), memoryB,       0x11000,   1,         0,         { { 2, 5 } } },
      { chips( 10, 12 ), memoryC,       0x17000,   1,         0,         { { 2, 5 } } },
      { chips( 13 ),     memoryA,       0x4000,    1,         0,         { { 0, 12 } } },
      { chips( 13 ),     memoryB,       0x9000,    1,         0,         { { 0, 12 } } },
      { chips( 13 ),     memoryC,       0x14000,   1,         0,         { { 0, 12 } } },
      { chips( 14 ),     memoryA,       0x4000,    1,         0,         { { 24, 36 } } },
      { chips( 14 ),     memoryB,       0x9000,    1,         0,         { { 24, 36 } } },
      { chips( 14 ),     memoryC,       0x14000,   1,         0,         { { 24, 36 } } },
      { like15,          memoryA,       0x4000,    1,         0,         { { 8, 20 } } },
      { like15,          memoryB,       0x9000,    1,         0,         { { 8, 20 } } },
      { like15,          memoryC,       0x14000,   1,         0,         { { 8, 20 } } },
   } ),
   // Partners in memories B and C have one tag.
   tags( {
      { newer,    variants( 0 ),      { { tid, 1 },  { entryType, 1 }, { vmv, 1 } } },
      { newer,    variants( 1, 2 ),   { { tid, 27 }, { entryType, 1 }, { vmv, 2 } } },
      { newer,    variants( 3, 4 ),   { { tid, 7 },  { entryType, 0 }, { vmv, 3 } } },
      { newer,    variants( 5, 6 ),   { { tid, 10 }, { entryType, 1 }, { vmv, 2 } } },
      { except12, variants( 7, 8 ),   { { tid, 61 }, { entryType, 1 }, { vmv, 2 } } },
      { newer,    variants( 9, 10 ),  { { tid, 20 }, { entryType, 1 }, { vmv, 2 } } },
      { newer,    variants( 11 ),     { { tid, 19 }, { entryType, 1 }, { vmv, 1 } } },
      { newer,    variants( 12, 13 ), { { tid, 8 },  { entryType, 0 }, { vmv, 3 } } },
      { newer,    variants( 14 ),     { { tid, 3 },  { entryType, 1 }, { vmv, 1 } } },
      { newer,    variants( 15, 16 ), { { tid, 17 }, { entryType, 0 }, { vmv, 3 } } },
      { newer,    variants( 17, 18 ), { { tid, 15 }, { entryType, 0 }, { vmv, 3 } } },
      { except12, variants( 19, 20 ), { { tid, 62 }, { entryType, 0 }, { vmv, 3 } } },
      { like12, variants( 7, 8, 19, 20 ), { untagged } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::IsemMgmtReq

#undef HARDWARE_FIELDS
