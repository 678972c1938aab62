// The 512 forwarding action profiles.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/FwdActProfileTable.def>

namespace Hardware::Layouts::FwdActProfileTable {

#include <Hardware/detail/FieldNumbers.inc>

// Bits 0 to 232 are the same everywhere; newer flags take from the low end of `reserved`, which
// always ends at bit 248. Layouts, dimensions and bases each group the chip types in their own way.
// `forwardingLayerAdditionalInfovalue` has its small v from the hardware.
// clang-format off
inline constexpr auto like10 = chips( 10, 12, 13 );
inline constexpr auto like15 = chips( 15, 16 );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { like10, chips( 14 ), like15 }, {
         { trap,                                   { at( 0, 1 ),    at( 0, 1 ),    at( 0, 1 ) } },
         { fwdDestinationValid,                    { at( 1, 1 ),    at( 1, 1 ),    at( 1, 1 ) } },
         { destinationValue,                       { at( 2, 21 ),   at( 2, 21 ),   at( 2, 21 ) } },
         { destinationOverwrite,                   { at( 23, 1 ),   at( 23, 1 ),   at( 23, 1 ) } },
         { admitProfileOverwrite,                  { at( 24, 1 ),   at( 24, 1 ),   at( 24, 1 ) } },
         { admitProfileValue,                      { at( 25, 3 ),   at( 25, 3 ),   at( 25, 3 ) } },
         { fwdStrengthOverwrite,                   { at( 28, 1 ),   at( 28, 1 ),   at( 28, 1 ) } },
         { fwdStrengthValue,                       { at( 29, 4 ),   at( 29, 4 ),   at( 29, 4 ) } },
         { bytesToRemoveOverwrite,                 { at( 33, 1 ),   at( 33, 1 ),   at( 33, 1 ) } },
         { outLifOverwrite,                        { at( 34, 1 ),   at( 34, 1 ),   at( 34, 1 ) } },
         { outLif0Value,                           { at( 35, 22 ),  at( 35, 22 ),  at( 35, 22 ) } },
         { outLif1Value,                           { at( 57, 22 ),  at( 57, 22 ),  at( 57, 22 ) } },
         { eeiValue,                               { at( 79, 24 ),  at( 79, 24 ),  at( 79, 24 ) } },
         { eeiOverwrite,                           { at( 103, 1 ),  at( 103, 1 ),  at( 103, 1 ) } },
         { destinationAddVsi,                      { at( 104, 1 ),  at( 104, 1 ),  at( 104, 1 ) } },
         { destinationAddVsiShift,                 { at( 105, 2 ),  at( 105, 2 ),  at( 105, 2 ) } },
         { trafficClassValue,                      { at( 107, 3 ),  at( 107, 3 ),  at( 107, 3 ) } },
         { trafficClassOverwrite,                  { at( 110, 1 ),  at( 110, 1 ),  at( 110, 1 ) } },
         { dropPrecedenceValue,                    { at( 111, 2 ),  at( 111, 2 ),  at( 111, 2 ) } },
         { dropPrecedenceOverwrite,                { at( 113, 1 ),  at( 113, 1 ),  at( 113, 1 ) } },
         { statObjValidClear,                      { at( 114, 10 ), at( 114, 10 ), at( 114, 10 ) } },
         { statObjOverwrite0,                      { at( 124, 1 ),  at( 124, 1 ),  at( 124, 1 ) } },
         { statObjIndexToOverwrite0,               { at( 125, 4 ),  at( 125, 4 ),  at( 125, 4 ) } },
         { statObjValue0,                          { at( 129, 20 ), at( 129, 20 ), at( 129, 20 ) } },
         { statObjOffsetByQualifier0,              { at( 149, 1 ),  at( 149, 1 ),  at( 149, 1 ) } },
         { statObjType0,                           { at( 150, 2 ),  at( 150, 2 ),  at( 150, 2 ) } },
         { statObjIsMeter0,                        { at( 152, 1 ),  at( 152, 1 ),  at( 152, 1 ) } },
         { statObjOverwrite1,                      { at( 153, 1 ),  at( 153, 1 ),  at( 153, 1 ) } },
         { statObjIndexToOverwrite1,               { at( 154, 4 ),  at( 154, 4 ),  at( 154, 4 ) } },
         { statObjValue1,                          { at( 158, 20 ), at( 158, 20 ), at( 158, 20 ) } },
         { statObjOffsetByQualifier1,              { at( 178, 1 ),  at( 178, 1 ),  at( 178, 1 ) } },
         { statObjType1,                           { at( 179, 2 ),  at( 179, 2 ),  at( 179, 2 ) } },
         { statObjIsMeter1,                        { at( 181, 1 ),  at( 181, 1 ),  at( 181, 1 ) } },
         { statObjLmReadIndexClear,                { at( 182, 1 ),  at( 182, 1 ),  at( 182, 1 ) } },
         { statisticMetaData,                      { at( 183, 16 ), at( 183, 16 ), at( 183, 16 ) } },
         { dropPrecedenceMeterCommandValue,        { at( 199, 4 ),  at( 199, 4 ),  at( 199, 4 ) } },
         { dropPrecedenceMeterCommandOverwrite,    { at( 203, 1 ),  at( 203, 1 ),  at( 203, 1 ) } },
         { egressParsingIndexValue,                { at( 204, 3 ),  at( 204, 3 ),  at( 204, 3 ) } },
         { egressParsingIndexOverwrite,            { at( 207, 1 ),  at( 207, 1 ),  at( 207, 1 ) } },
         { fwdLayerIndexValue,                     { at( 208, 3 ),  at( 208, 3 ),  at( 208, 3 ) } },
         { fwdLayerIndexOverwrite,                 { at( 211, 1 ),  at( 211, 1 ),  at( 211, 1 ) } },
         { stVsqPointerOverwrite,                  { at( 212, 1 ),  at( 212, 1 ),  at( 212, 1 ) } },
         { stVsqPointerValue,                      { at( 213, 8 ),  at( 213, 8 ),  at( 213, 8 ) } },
         { latencyFlowIdOverwrite,                 { at( 221, 1 ),  at( 221, 1 ),  at( 221, 1 ) } },
         { packetIsBierInvalid,                    { at( 222, 1 ),  at( 222, 1 ),  at( 222, 1 ) } },
         { forwardingLayerAdditionalInfoOverwrite, { at( 223, 1 ),  at( 223, 1 ),  at( 223, 1 ) } },
         { forwardingLayerAdditionalInfovalue,     { at( 224, 4 ),  at( 224, 4 ),  at( 224, 4 ) } },
         { visibilityOverwrite,                    { at( 228, 1 ),  at( 228, 1 ),  at( 228, 1 ) } },
         { visibilityValue,                        { at( 229, 1 ),  at( 229, 1 ),  at( 229, 1 ) } },
         { learnDisable,                           { at( 230, 1 ),  at( 230, 1 ),  at( 230, 1 ) } },
         { bypassFiltering,                        { at( 231, 1 ),  at( 231, 1 ),  at( 231, 1 ) } },
         { destinationOffsetByQualifier,           { at( 232, 1 ),  at( 232, 1 ),  at( 232, 1 ) } },
         { snoopCodeClear,                         { absent,        at( 233, 1 ),  at( 233, 1 ) } },
         { mirrorCodeClear,                        { absent,        at( 234, 1 ),  at( 234, 1 ) } },
         { statisticalSamplingCodeClear,           { absent,        at( 235, 1 ),  at( 235, 1 ) } },
         { nwkHeaderTruncateSizeClear,             { absent,        at( 236, 1 ),  absent } },
         { useOamOffset,                           { absent,        at( 237, 1 ),  absent } },
         { adjustOamOffset,                        { absent,        at( 238, 1 ),  absent } },
         { tcProfileClear,                         { absent,        at( 239, 1 ),  absent } },
         { reserved,                               { at( 233, 16 ), at( 240, 9 ),  at( 236, 13 ) } },
      } ) ),
   dimensions( {
      // chip types      variants       width entries arrayElements instanceCount
      { chips( 10, 12 ), variants( 0 ), 9,    512,    1,            2 },
      { chips( 13 ),     variants( 0 ), 9,    512,    1,            1 },
      { chips( 14 ),     variants( 0 ), 9,    512,    1,            2 },
      { like15,          variants( 0 ), 9,    512,    1,            1 },
   } ),
   fieldCounts( {
      { like10,      variants( 0 ), 53 },
      { chips( 14 ), variants( 0 ), 60 },
      { like15,      variants( 0 ), 56 },
   } ),
   addresses( {
      //                                           step of     by identifier
      // chip types      variants       base       entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x20e0000, 1,    0,    { { 14, 2 }, { 28, 9 } } },
      { chips( 13 ),     variants( 0 ), 0x20e0000, 1,    0,    { { 8, 9 } } },
      { chips( 14 ),     variants( 0 ), 0x20f0000, 1,    0,    { { 10, 14 }, { 10, 26 } } },
      { like15,          variants( 0 ), 0x20f0000, 1,    0,    { { 2, 18 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::FwdActProfileTable

#undef HARDWARE_FIELDS
