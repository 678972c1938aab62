// FwdActProfileTable: 249 bits of flags and values, whose last ones differ by chip.
#include "support/Contract.h"

#include <Hardware/FwdActProfileTable.h>

namespace {

using View = Hardware::FwdActProfileTable;
using Testing::expressionOf;
using Testing::failureOf;

Testing::Expectation makeExpectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "FwdActProfileTable" );
   expected.storageBytes = 36;
   expected.fields = {
      NARROW_FIELD( U16, statisticMetaData, StatisticMetaData, 301, "STATISTIC_META_DATA" ),
      NARROW_FIELD( U8, statObjIsMeter0, StatObjIsMeter0, 306, "STAT_OBJ_IS_METER_0" ),
      NARROW_FIELD( U8, admitProfileValue, AdmitProfileValue, 30, "ADMIT_PROFILE_VALUE" ),
      NARROW_FIELD( U8, bytesToRemoveOverwrite, BytesToRemoveOverwrite, 45,
                    "BYTES_TO_REMOVE_OVERWRITE" ),
      NARROW_FIELD( U8, stVsqPointerOverwrite, StVsqPointerOverwrite, 319,
                    "ST_VSQ_POINTER_OVERWRITE" ),
      NARROW_FIELD( U8, nwkHeaderTruncateSizeClear, NwkHeaderTruncateSizeClear, 254,
                    "NWK_HEADER_TRUNCATE_SIZE_CLEAR" ),
      NARROW_FIELD( U8, statObjIsMeter1, StatObjIsMeter1, 307, "STAT_OBJ_IS_METER_1" ),
      NARROW_FIELD( U8, useOamOffset, UseOamOffset, 346, "USE_OAM_OFFSET" ),
      NARROW_FIELD( U8, admitProfileOverwrite, AdmitProfileOverwrite, 29,
                    "ADMIT_PROFILE_OVERWRITE" ),
      NARROW_FIELD( U8, dropPrecedenceOverwrite, DropPrecedenceOverwrite, 73,
                    "DROP_PRECEDENCE_OVERWRITE" ),
      NARROW_FIELD( U8, snoopCodeClear, SnoopCodeClear, 299, "SNOOP_CODE_CLEAR" ),
      NARROW_FIELD( U8, destinationOffsetByQualifier, DestinationOffsetByQualifier, 64,
                    "DESTINATION_OFFSET_BY_QUALIFIER" ),
      NARROW_FIELD( U8, dropPrecedenceValue, DropPrecedenceValue, 74, "DROP_PRECEDENCE_VALUE" ),
      NARROW_FIELD( U8, stVsqPointerValue, StVsqPointerValue, 320, "ST_VSQ_POINTER_VALUE" ),
      NARROW_FIELD( U8, eeiOverwrite, EeiOverwrite, 84, "EEI_OVERWRITE" ),
      NARROW_FIELD( U32, statObjValue1, StatObjValue1, 317, "STAT_OBJ_VALUE_1" ),
      NARROW_FIELD( U32, statObjValue0, StatObjValue0, 316, "STAT_OBJ_VALUE_0" ),
      NARROW_FIELD( U8, learnDisable, LearnDisable, 230, "LEARN_DISABLE" ),
      NARROW_FIELD( U8, statObjLmReadIndexClear, StatObjLmReadIndexClear, 308,
                    "STAT_OBJ_LM_READ_INDEX_CLEAR" ),
      NARROW_FIELD( U8, dropPrecedenceMeterCommandValue, DropPrecedenceMeterCommandValue, 72,
                    "DROP_PRECEDENCE_METER_COMMAND_VALUE" ),
      NARROW_FIELD( U8, adjustOamOffset, AdjustOamOffset, 28, "ADJUST_OAM_OFFSET" ),
      NARROW_FIELD( U8, visibilityOverwrite, VisibilityOverwrite, 348, "VISIBILITY_OVERWRITE" ),
      NARROW_FIELD( U32, destinationValue, DestinationValue, 68, "DESTINATION_VALUE" ),
      NARROW_FIELD( U8, fwdLayerIndexOverwrite, FwdLayerIndexOverwrite, 158,
                    "FWD_LAYER_INDEX_OVERWRITE" ),
      NARROW_FIELD( U8, visibilityValue, VisibilityValue, 349, "VISIBILITY_VALUE" ),
      NARROW_FIELD( U8, trap, Trap, 342, "TRAP" ),
      NARROW_FIELD( U8, statObjIndexToOverwrite1, StatObjIndexToOverwrite1, 305,
                    "STAT_OBJ_INDEX_TO_OVERWRITE_1" ),
      NARROW_FIELD( U8, egressParsingIndexValue, EgressParsingIndexValue, 88,
                    "EGRESS_PARSING_INDEX_VALUE" ),
      NARROW_FIELD( U8, forwardingLayerAdditionalInfoOverwrite,
                    ForwardingLayerAdditionalInfoOverwrite, 150,
                    "FORWARDING_LAYER_ADDITIONAL_INFO_OVERWRITE" ),
      NARROW_FIELD( U8, trafficClassValue, TrafficClassValue, 341, "TRAFFIC_CLASS_VALUE" ),
      NARROW_FIELD( U8, destinationOverwrite, DestinationOverwrite, 65, "DESTINATION_OVERWRITE" ),
      NARROW_FIELD( U8, fwdLayerIndexValue, FwdLayerIndexValue, 159, "FWD_LAYER_INDEX_VALUE" ),
      NARROW_FIELD( U32, outLif0Value, OutLif0Value, 265, "OUT_LIF_0_VALUE" ),
      NARROW_FIELD( U8, packetIsBierInvalid, PacketIsBierInvalid, 275, "PACKET_IS_BIER_INVALID" ),
      NARROW_FIELD( U8, latencyFlowIdOverwrite, LatencyFlowIdOverwrite, 228,
                    "LATENCY_FLOW_ID_OVERWRITE" ),
      NARROW_FIELD( U8, mirrorCodeClear, MirrorCodeClear, 244, "MIRROR_CODE_CLEAR" ),
      NARROW_FIELD( U8, forwardingLayerAdditionalInfovalue, ForwardingLayerAdditionalInfovalue, 149,
                    "FORWARDING_LAYER_ADDITIONAL_INFOVALUE" ),
      NARROW_FIELD( U8, destinationAddVsiShift, DestinationAddVsiShift, 63,
                    "DESTINATION_ADD_VSI_SHIFT" ),
      NARROW_FIELD( U8, dropPrecedenceMeterCommandOverwrite, DropPrecedenceMeterCommandOverwrite,
                    71, "DROP_PRECEDENCE_METER_COMMAND_OVERWRITE" ),
      NARROW_FIELD( U8, egressParsingIndexOverwrite, EgressParsingIndexOverwrite, 87,
                    "EGRESS_PARSING_INDEX_OVERWRITE" ),
      NARROW_FIELD( U8, destinationAddVsi, DestinationAddVsi, 62, "DESTINATION_ADD_VSI" ),
      NARROW_FIELD( U8, outLifOverwrite, OutLifOverwrite, 270, "OUT_LIF_OVERWRITE" ),
      NARROW_FIELD( U8, fwdStrengthValue, FwdStrengthValue, 161, "FWD_STRENGTH_VALUE" ),
      NARROW_FIELD( U16, statObjValidClear, StatObjValidClear, 315, "STAT_OBJ_VALID_CLEAR" ),
      NARROW_FIELD( U16, reserved, Reserved, 295, "RESERVED" ),
      NARROW_FIELD( U8, statObjOverwrite1, StatObjOverwrite1, 312, "STAT_OBJ_OVERWRITE_1" ),
      NARROW_FIELD( U8, statObjOverwrite0, StatObjOverwrite0, 311, "STAT_OBJ_OVERWRITE_0" ),
      NARROW_FIELD( U8, fwdDestinationValid, FwdDestinationValid, 155, "FWD_DESTINATION_VALID" ),
      NARROW_FIELD( U8, tcProfileClear, TcProfileClear, 330, "TC_PROFILE_CLEAR" ),
      NARROW_FIELD( U8, fwdStrengthOverwrite, FwdStrengthOverwrite, 160, "FWD_STRENGTH_OVERWRITE" ),
      NARROW_FIELD( U8, bypassFiltering, BypassFiltering, 44, "BYPASS_FILTERING" ),
      NARROW_FIELD( U8, statisticalSamplingCodeClear, StatisticalSamplingCodeClear, 300,
                    "STATISTICAL_SAMPLING_CODE_CLEAR" ),
      NARROW_FIELD( U8, trafficClassOverwrite, TrafficClassOverwrite, 340,
                    "TRAFFIC_CLASS_OVERWRITE" ),
      NARROW_FIELD( U8, statObjOffsetByQualifier0, StatObjOffsetByQualifier0, 309,
                    "STAT_OBJ_OFFSET_BY_QUALIFIER_0" ),
      NARROW_FIELD( U8, statObjOffsetByQualifier1, StatObjOffsetByQualifier1, 310,
                    "STAT_OBJ_OFFSET_BY_QUALIFIER_1" ),
      NARROW_FIELD( U8, statObjIndexToOverwrite0, StatObjIndexToOverwrite0, 304,
                    "STAT_OBJ_INDEX_TO_OVERWRITE_0" ),
      NARROW_FIELD( U8, statObjType1, StatObjType1, 314, "STAT_OBJ_TYPE_1" ),
      NARROW_FIELD( U8, statObjType0, StatObjType0, 313, "STAT_OBJ_TYPE_0" ),
      NARROW_FIELD( U32, outLif1Value, OutLif1Value, 266, "OUT_LIF_1_VALUE" ),
      NARROW_FIELD( U32, eeiValue, EeiValue, 85, "EEI_VALUE" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12,13", "14", "15,16" }, {
         { "trap",                                   { "0:1",    "0:1",    "0:1"    } },
         { "fwdDestinationValid",                    { "1:1",    "1:1",    "1:1"    } },
         { "destinationValue",                       { "2:21",   "2:21",   "2:21"   } },
         { "destinationOverwrite",                   { "23:1",   "23:1",   "23:1"   } },
         { "admitProfileOverwrite",                  { "24:1",   "24:1",   "24:1"   } },
         { "admitProfileValue",                      { "25:3",   "25:3",   "25:3"   } },
         { "fwdStrengthOverwrite",                   { "28:1",   "28:1",   "28:1"   } },
         { "fwdStrengthValue",                       { "29:4",   "29:4",   "29:4"   } },
         { "bytesToRemoveOverwrite",                 { "33:1",   "33:1",   "33:1"   } },
         { "outLifOverwrite",                        { "34:1",   "34:1",   "34:1"   } },
         { "outLif0Value",                           { "35:22",  "35:22",  "35:22"  } },
         { "outLif1Value",                           { "57:22",  "57:22",  "57:22"  } },
         { "eeiValue",                               { "79:24",  "79:24",  "79:24"  } },
         { "eeiOverwrite",                           { "103:1",  "103:1",  "103:1"  } },
         { "destinationAddVsi",                      { "104:1",  "104:1",  "104:1"  } },
         { "destinationAddVsiShift",                 { "105:2",  "105:2",  "105:2"  } },
         { "trafficClassValue",                      { "107:3",  "107:3",  "107:3"  } },
         { "trafficClassOverwrite",                  { "110:1",  "110:1",  "110:1"  } },
         { "dropPrecedenceValue",                    { "111:2",  "111:2",  "111:2"  } },
         { "dropPrecedenceOverwrite",                { "113:1",  "113:1",  "113:1"  } },
         { "statObjValidClear",                      { "114:10", "114:10", "114:10" } },
         { "statObjOverwrite0",                      { "124:1",  "124:1",  "124:1"  } },
         { "statObjIndexToOverwrite0",               { "125:4",  "125:4",  "125:4"  } },
         { "statObjValue0",                          { "129:20", "129:20", "129:20" } },
         { "statObjOffsetByQualifier0",              { "149:1",  "149:1",  "149:1"  } },
         { "statObjType0",                           { "150:2",  "150:2",  "150:2"  } },
         { "statObjIsMeter0",                        { "152:1",  "152:1",  "152:1"  } },
         { "statObjOverwrite1",                      { "153:1",  "153:1",  "153:1"  } },
         { "statObjIndexToOverwrite1",               { "154:4",  "154:4",  "154:4"  } },
         { "statObjValue1",                          { "158:20", "158:20", "158:20" } },
         { "statObjOffsetByQualifier1",              { "178:1",  "178:1",  "178:1"  } },
         { "statObjType1",                           { "179:2",  "179:2",  "179:2"  } },
         { "statObjIsMeter1",                        { "181:1",  "181:1",  "181:1"  } },
         { "statObjLmReadIndexClear",                { "182:1",  "182:1",  "182:1"  } },
         { "statisticMetaData",                      { "183:16", "183:16", "183:16" } },
         { "dropPrecedenceMeterCommandValue",        { "199:4",  "199:4",  "199:4"  } },
         { "dropPrecedenceMeterCommandOverwrite",    { "203:1",  "203:1",  "203:1"  } },
         { "egressParsingIndexValue",                { "204:3",  "204:3",  "204:3"  } },
         { "egressParsingIndexOverwrite",            { "207:1",  "207:1",  "207:1"  } },
         { "fwdLayerIndexValue",                     { "208:3",  "208:3",  "208:3"  } },
         { "fwdLayerIndexOverwrite",                 { "211:1",  "211:1",  "211:1"  } },
         { "stVsqPointerOverwrite",                  { "212:1",  "212:1",  "212:1"  } },
         { "stVsqPointerValue",                      { "213:8",  "213:8",  "213:8"  } },
         { "latencyFlowIdOverwrite",                 { "221:1",  "221:1",  "221:1"  } },
         { "packetIsBierInvalid",                    { "222:1",  "222:1",  "222:1"  } },
         { "forwardingLayerAdditionalInfoOverwrite", { "223:1",  "223:1",  "223:1"  } },
         { "forwardingLayerAdditionalInfovalue",     { "224:4",  "224:4",  "224:4"  } },
         { "visibilityOverwrite",                    { "228:1",  "228:1",  "228:1"  } },
         { "visibilityValue",                        { "229:1",  "229:1",  "229:1"  } },
         { "learnDisable",                           { "230:1",  "230:1",  "230:1"  } },
         { "bypassFiltering",                        { "231:1",  "231:1",  "231:1"  } },
         { "destinationOffsetByQualifier",           { "232:1",  "232:1",  "232:1"  } },
         { "snoopCodeClear",                         { "-",      "233:1",  "233:1"  } },
         { "mirrorCodeClear",                        { "-",      "234:1",  "234:1"  } },
         { "statisticalSamplingCodeClear",           { "-",      "235:1",  "235:1"  } },
         { "nwkHeaderTruncateSizeClear",             { "-",      "236:1",  "-"      } },
         { "useOamOffset",                           { "-",      "237:1",  "-"      } },
         { "adjustOamOffset",                        { "-",      "238:1",  "-"      } },
         { "tcProfileClear",                         { "-",      "239:1",  "-"      } },
         { "reserved",                               { "233:16", "240:9",  "236:13" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12", "0", 9, 512, 1, 53, 2, 1 },
      { "13",    "0", 9, 512, 1, 53, 1, 1 },
      { "14",    "0", 9, 512, 1, 60, 2, 1 },
      { "15,16", "0", 9, 512, 1, 56, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x20e0000, 1, 0, { { 14, 2 }, { 28, 9 } } },
      { "13",    "0", 0x20e0000, 1, 0, { { 8, 9 } } },
      { "14",    "0", 0x20f0000, 1, 0, { { 10, 14 }, { 10, 26 } } },
      { "15,16", "0", 0x20f0000, 1, 0, { { 2, 18 } } },
   };
   // clang-format on
   return expected;
}

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = makeExpectation();
   return expected;
}

CONTRACT_TESTS( FwdActProfileTable, expectation() )

TEST( FwdActProfileTable, NewFlagsAreCarvedOutOfReserved ) {
   struct Row {
      Hardware::ChipType chip;
      unsigned offset, width;
   };
   for( const Row& row :
        { Row{ Hardware::BCM88690_B0, 233, 16 }, Row{ Hardware::BCM88690_V6_B0, 233, 16 },
          Row{ Hardware::BCM88800_A0, 233, 16 }, Row{ Hardware::BCM88850_A0, 240, 9 },
          Row{ Hardware::BCM88480_A0, 236, 13 }, Row{ Hardware::BCM88480_B0, 236, 13 } } ) {
      const View::WithStorage view( row.chip, 0 );
      EXPECT_EQ( view.reservedOffset(), row.offset );
      EXPECT_EQ( view.reservedLen(), row.width );
      EXPECT_EQ( row.offset + row.width, 249u );
      EXPECT_EQ( view.isSnoopCodeClearValid(), row.offset != 233 );
      EXPECT_EQ( view.isMirrorCodeClearValid(), row.offset != 233 );
      EXPECT_EQ( view.isStatisticalSamplingCodeClearValid(), row.offset != 233 );
      EXPECT_EQ( view.isNwkHeaderTruncateSizeClearValid(), row.offset == 240 );
      EXPECT_EQ( view.isUseOamOffsetValid(), row.offset == 240 );
      EXPECT_EQ( view.isAdjustOamOffsetValid(), row.offset == 240 );
      EXPECT_EQ( view.isTcProfileClearValid(), row.offset == 240 );
   }
}

TEST( FwdActProfileTable, OneValueIsSpeltInLowerCaseEverywhere ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   view.forwardingLayerAdditionalInfovalueIs( 0xf );
   EXPECT_EQ( view.stringField( "forwardingLayerAdditionalInfovalue", 0 ), 0xfu );
   view.stringFieldIs( "forwardingLayerAdditionalInfovalue", 5 );
   EXPECT_EQ( view.forwardingLayerAdditionalInfovalue(), 5 );
   EXPECT_TRUE( view.isForwardingLayerAdditionalInfovalueValid() );
   EXPECT_EQ( expressionOf( [&] { view.forwardingLayerAdditionalInfovalueIs( 0x10 ); } ),
              "forwardingLayerAdditionalInfovalue <= 0xf" );
   EXPECT_EQ( expressionOf( [&] { view.stringField( "forwardingLayerAdditionalInfoValue", 0 ); } ),
              "\"false\" == nullptr" );
   EXPECT_EQ(
      expressionOf( [&] { view.stringField( "forwardingLayerAdditionalInfoOverwrite", 0 ); } ),
      "none" );
   U8 buffer[36] = {};
   Testing::Probe<View> probe( Hardware::BCM88690_B0, buffer, U16{ 36 }, false, U8{ 0 } );
   probe.pairIs( 8, 0 );
   const auto failure = failureOf( [&] { probe.forwardingLayerAdditionalInfovalueLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->message,
              "BCM88680_A0 does not have field FORWARDING_LAYER_ADDITIONAL_INFOVALUE" );
}

} // namespace
