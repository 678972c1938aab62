// FwdActProfileTable: 249 bits of flags and values, whose last ones differ by chip.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/FwdActProfileTable.h>

#include <algorithm>

namespace {

using View = Hardware::FwdActProfileTable;
using Testing::Address;
using Testing::addressOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

constexpr Hardware::ChipType chips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                         Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                         Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

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

using Mask = void ( View::* )();

// The fields that stand in the same places on every chip, from bit 0 to bit 232.
const std::vector<Mask>& commonMasks() {
   static const std::vector<Mask> masks = {
      &View::trapMask,
      &View::fwdDestinationValidMask,
      &View::destinationValueMask,
      &View::destinationOverwriteMask,
      &View::admitProfileOverwriteMask,
      &View::admitProfileValueMask,
      &View::fwdStrengthOverwriteMask,
      &View::fwdStrengthValueMask,
      &View::bytesToRemoveOverwriteMask,
      &View::outLifOverwriteMask,
      &View::outLif0ValueMask,
      &View::outLif1ValueMask,
      &View::eeiValueMask,
      &View::eeiOverwriteMask,
      &View::destinationAddVsiMask,
      &View::destinationAddVsiShiftMask,
      &View::trafficClassValueMask,
      &View::trafficClassOverwriteMask,
      &View::dropPrecedenceValueMask,
      &View::dropPrecedenceOverwriteMask,
      &View::statObjValidClearMask,
      &View::statObjOverwrite0Mask,
      &View::statObjIndexToOverwrite0Mask,
      &View::statObjValue0Mask,
      &View::statObjOffsetByQualifier0Mask,
      &View::statObjType0Mask,
      &View::statObjIsMeter0Mask,
      &View::statObjOverwrite1Mask,
      &View::statObjIndexToOverwrite1Mask,
      &View::statObjValue1Mask,
      &View::statObjOffsetByQualifier1Mask,
      &View::statObjType1Mask,
      &View::statObjIsMeter1Mask,
      &View::statObjLmReadIndexClearMask,
      &View::statisticMetaDataMask,
      &View::dropPrecedenceMeterCommandValueMask,
      &View::dropPrecedenceMeterCommandOverwriteMask,
      &View::egressParsingIndexValueMask,
      &View::egressParsingIndexOverwriteMask,
      &View::fwdLayerIndexValueMask,
      &View::fwdLayerIndexOverwriteMask,
      &View::stVsqPointerOverwriteMask,
      &View::stVsqPointerValueMask,
      &View::latencyFlowIdOverwriteMask,
      &View::packetIsBierInvalidMask,
      &View::forwardingLayerAdditionalInfoOverwriteMask,
      &View::forwardingLayerAdditionalInfovalueMask,
      &View::visibilityOverwriteMask,
      &View::visibilityValueMask,
      &View::learnDisableMask,
      &View::bypassFilteringMask,
      &View::destinationOffsetByQualifierMask,
   };
   return masks;
}

TEST( FwdActProfileTable, FieldsTileBits0To248OnEveryChip ) {
   ASSERT_EQ( commonMasks().size(), 52u );
   const std::vector<Mask> flags = { &View::snoopCodeClearMask, &View::mirrorCodeClearMask,
                                     &View::statisticalSamplingCodeClearMask };
   const std::vector<Mask> flagsOf14 = { &View::nwkHeaderTruncateSizeClearMask,
                                         &View::useOamOffsetMask, &View::adjustOamOffsetMask,
                                         &View::tcProfileClearMask };
   struct Row {
      Hardware::ChipType chip;
      bool hasFlags, hasFlagsOf14;
      unsigned fieldCount;
   };
   for( const Row& row : { Row{ Hardware::BCM88690_B0, false, false, 53 },
                           Row{ Hardware::BCM88690_V6_B0, false, false, 53 },
                           Row{ Hardware::BCM88800_A0, false, false, 53 },
                           Row{ Hardware::BCM88850_A0, true, true, 60 },
                           Row{ Hardware::BCM88480_A0, true, false, 56 },
                           Row{ Hardware::BCM88480_B0, true, false, 56 } } ) {
      SCOPED_TRACE( row.chip );
      std::vector<Mask> masks = commonMasks();
      if( row.hasFlags ) {
         masks.insert( masks.end(), flags.begin(), flags.end() );
      }
      if( row.hasFlagsOf14 ) {
         masks.insert( masks.end(), flagsOf14.begin(), flagsOf14.end() );
      }
      masks.push_back( &View::reservedMask );
      EXPECT_EQ( masks.size(), row.fieldCount );
      View::WithStorage view( row.chip, 0 );
      EXPECT_EQ( view.fieldCount(), row.fieldCount );
      expectTiling<View>( view, masks, 0, 249 );

      const Raw4096 mask = View::allFieldsMask( row.chip, 0 );
      EXPECT_EQ( mask.word( 0 ), 0xffffffffffffffffu );
      EXPECT_EQ( mask.word( 1 ), 0xffffffffffffffffu );
      EXPECT_EQ( mask.word( 2 ), 0xffffffffffffffffu );
      EXPECT_EQ( mask.word( 3 ), 0x1ffffffffffffffu );
      EXPECT_EQ( mask.word( 4 ), 0u );
   }
}

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

TEST( FwdActProfileTable, ReservedIsAnOrdinaryFieldInThreePlaces ) {
   // The only set bit of the entry, counted from bit 192.
   const auto lastWord = []( Hardware::ChipType chip ) {
      View::WithStorage view( chip, 0 );
      view.reservedIs( 0x200 );
      EXPECT_EQ( view.reserved(), 0x200 );
      EXPECT_EQ( view.stringField( "reserved", 0 ), 0x200u );
      const Raw512 entry = view.getAllFields();
      EXPECT_EQ( entry, ( Raw512{ { 0, 0, 0, entry.word( 3 ), 0, 0, 0, 0 } } ) );
      return entry.word( 3 );
   };
   for( const auto chip :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88800_A0 } ) {
      EXPECT_EQ( lastWord( chip ), U64{ 1 } << ( 242 - 192 ) );
      View::WithStorage view( chip, 0 );
      view.setField64( 295, 0x1ffff ); // 16 bits fill the argument: the rest is cut off
      EXPECT_EQ( view.reserved(), 0xffff );
   }
   for( const auto chip : { Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      EXPECT_EQ( lastWord( chip ), U64{ 1 } << ( 245 - 192 ) );
      View::WithStorage view( chip, 0 );
      EXPECT_EQ( expressionOf( [&] { view.reservedIs( 0x2000 ); } ), "reserved <= 0x1fff" );
   }
   View::WithStorage fourteen( Hardware::BCM88850_A0, 0 );
   EXPECT_EQ( expressionOf( [&] { fourteen.reservedIs( 0x200 ); } ), "reserved <= 0x1ff" );
   EXPECT_EQ( fourteen.getAllFields(), Raw512{} );
   fourteen.reservedMask();
   EXPECT_EQ( fourteen.getAllFields(),
              ( Raw512{ { 0, 0, 0, U64{ 0x1ff } << ( 240 - 192 ), 0, 0, 0, 0 } } ) );
}

TEST( FwdActProfileTable, FlagsStandBesideTheirValues ) {
   using Reader = U16 ( View::* )() const;
   struct Row {
      const char* attribute;
      Reader first;
      Reader firstLen;
      Reader second;
   };
#define VALUE_THEN_FLAG( attribute )                                                               \
   Row {                                                                                           \
#attribute, &View::attribute##ValueOffset, &View::attribute##ValueLen,                       \
         &View::attribute##OverwriteOffset                                                         \
   }
#define FLAG_THEN_VALUE( attribute )                                                               \
   Row {                                                                                           \
#attribute, &View::attribute##OverwriteOffset, &View::attribute##OverwriteLen,               \
         &View::attribute##ValueOffset                                                             \
   }
   const Row rows[] = {
      VALUE_THEN_FLAG( destination ),
      FLAG_THEN_VALUE( admitProfile ),
      FLAG_THEN_VALUE( fwdStrength ),
      { "outLif", &View::outLifOverwriteOffset, &View::outLifOverwriteLen,
        &View::outLif0ValueOffset },
      { "outLif", &View::outLif0ValueOffset, &View::outLif0ValueLen, &View::outLif1ValueOffset },
      VALUE_THEN_FLAG( eei ),
      VALUE_THEN_FLAG( trafficClass ),
      VALUE_THEN_FLAG( dropPrecedence ),
      VALUE_THEN_FLAG( dropPrecedenceMeterCommand ),
      VALUE_THEN_FLAG( egressParsingIndex ),
      VALUE_THEN_FLAG( fwdLayerIndex ),
      FLAG_THEN_VALUE( stVsqPointer ),
      { "forwardingLayerAdditionalInfo", &View::forwardingLayerAdditionalInfoOverwriteOffset,
        &View::forwardingLayerAdditionalInfoOverwriteLen,
        &View::forwardingLayerAdditionalInfovalueOffset },
      FLAG_THEN_VALUE( visibility ),
   };
#undef VALUE_THEN_FLAG
#undef FLAG_THEN_VALUE
   for( const auto chip : chips ) {
      const View::WithStorage view( chip, 0 );
      for( const Row& row : rows ) {
         EXPECT_EQ( ( view.*row.first )() + ( view.*row.firstLen )(), ( view.*row.second )() )
            << chip << " " << row.attribute;
      }
      EXPECT_EQ( view.outLif0ValueLen(), 22 );
      EXPECT_EQ( view.outLif1ValueLen(), 22 );
      EXPECT_EQ( view.fwdDestinationValidOffset(), 1 );
      EXPECT_EQ( view.destinationOffsetByQualifierOffset(), 232 );
   }
}

TEST( FwdActProfileTable, StatisticsObjectsFollowAtAStrideOf29Bits ) {
   for( const auto chip : chips ) {
      const View::WithStorage view( chip, 0 );
      EXPECT_EQ( view.statObjOverwrite0Offset(), 124 );
#define EXPECT_TWINS( field )                                                                      \
   EXPECT_EQ( view.field##1Offset(), view.field##0Offset() + 29 );                                 \
   EXPECT_EQ( view.field##1Len(), view.field##0Len() )
      EXPECT_TWINS( statObjOverwrite );
      EXPECT_TWINS( statObjIndexToOverwrite );
      EXPECT_TWINS( statObjValue );
      EXPECT_TWINS( statObjOffsetByQualifier );
      EXPECT_TWINS( statObjType );
      EXPECT_TWINS( statObjIsMeter );
#undef EXPECT_TWINS
      EXPECT_EQ( view.statObjIsMeter1Offset(), 181 );
      EXPECT_EQ( view.statObjValidClearLen(), 10 );
      EXPECT_EQ( view.statObjLmReadIndexClearLen(), 1 );
      EXPECT_EQ( view.statisticMetaDataLen(), 16 );
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

TEST( FwdActProfileTable, AbsentFlagOfChipType10 ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_FALSE( view.isSnoopCodeClearValid() );
   const auto failure = failureOf( [&] { view.snoopCodeClearLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "BCM88690_B0 does not have field SNOOP_CODE_CLEAR" );
   EXPECT_EQ( expressionOf( [&] { view.snoopCodeClear(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { view.snoopCodeClearIs( 1 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { view.snoopCodeClearMask(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { view.snoopCodeClearOffset(); } ), "0" );
}

TEST( FwdActProfileTable, RefusesAbsentAndForeignIdentifiersDifferently ) {
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   const auto absent = failureOf( [&] { ten.setField64( 254, 1 ); } );
   ASSERT_TRUE( absent );
   EXPECT_EQ( absent->expression, "0" );
   EXPECT_EQ( absent->function,
              "void Hardware::FwdActProfileTable::nwkHeaderTruncateSizeClearIs(U8)" );
   const auto foreign = failureOf( [&] { ten.setField64( 31, 1 ); } );
   ASSERT_TRUE( foreign );
   EXPECT_EQ( foreign->expression, "false" );
   EXPECT_EQ( foreign->function,
              "virtual void Hardware::FwdActProfileTable::setField64(U32, U64)" );
   View::WithStorage fourteen( Hardware::BCM88850_A0, 0 );
   fourteen.setField64( 254, 1 );
   EXPECT_EQ( fourteen.nwkHeaderTruncateSizeClear(), 1 );
}

TEST( FwdActProfileTable, BoundsOfSomeValues ) {
   for( const auto chip : chips ) {
      View::WithStorage view( chip, 0 );
      EXPECT_EQ( expressionOf( [&] { view.destinationValueIs( 0x200000 ); } ),
                 "destinationValue <= 0x1fffff" );
      EXPECT_EQ( expressionOf( [&] { view.statObjValidClearIs( 0x400 ); } ),
                 "statObjValidClear <= 0x3ff" );
      // Exactly 16 and 8 bits: no bound, what the type can't hold is cut off.
      view.setField64( 301, 0x12345 );
      EXPECT_EQ( view.statisticMetaData(), 0x2345 );
      view.setField64( 320, 0x1ff );
      EXPECT_EQ( view.stVsqPointerValue(), 0xff );
   }
}

TEST( FwdActProfileTable, BaseFollowsNeitherLayoutNorInstances ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 0, 511 ),
              ( Address{ 0x20f01ff, 10, 14 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 511 ),
              ( Address{ 0x20f01ff, 10, 26 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_V6_B0, 0, 1, 0 ),
              ( Address{ 0x20e0000, 28, 9 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88800_A0, 0, 0, 0 ), ( Address{ 0x20e0000, 8, 9 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88480_B0, 0, 0, 0 ), ( Address{ 0x20f0000, 2, 18 } ) );
   for( const auto chip : chips ) {
      EXPECT_EQ( expressionOf( [chip] { addressOf<View>( chip, 0, 0, 512 ); } ),
                 "tableEntry < 512" );
   }
}

TEST( FwdActProfileTable, RefusesTheSecondInstanceAfterWritingTheAddress ) {
   for( const auto chip :
        { Hardware::BCM88800_A0, Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      U32 address = 7;
      U8 accessType = 8;
      U8 destBlock = 9;
      EXPECT_EQ( expressionOf( [&] {
                    View::getSchanAddress( chip, 0, address, accessType, destBlock, 1, 3, 0 );
                 } ),
                 "identifier <= 0" );
      EXPECT_EQ( address, chip == Hardware::BCM88800_A0 ? 0x20e0003u : 0x20f0003u );
      EXPECT_EQ( accessType, 8 );
      EXPECT_EQ( destBlock, 9 );
   }
}

TEST( FwdActProfileTable, VariantOneHasNoAddressAndNoWidth ) {
   for( const auto chip : chips ) {
      EXPECT_TRUE( hasNoAddress<View>( chip, 1 ) );
      EXPECT_EQ( expressionOf( [chip] { View::width( chip, 1 ); } ), "variant == 0" );
   }
}

TEST( FwdActProfileTable, NothingChangesTheBitsBehindTheFields ) {
   for( const auto chip : chips ) {
      U8 buffer[36];
      std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xa4 } );
      View view( chip, buffer, 36, false, 0 );
      for( const auto& field : expectation().fields ) {
         if( field.valid( view ) ) {
            field.mask( view );
         }
      }
      EXPECT_TRUE( std::all_of( buffer, buffer + 31, []( U8 byte ) { return byte == 0xff; } ) );
      EXPECT_EQ( buffer[31], 0xa5 );
      EXPECT_TRUE(
         std::all_of( buffer + 32, buffer + 36, []( U8 byte ) { return byte == 0xa4; } ) );
      EXPECT_EQ( view.getAllFields(),
                 ( Raw512{ { ~U64{ 0 }, ~U64{ 0 }, ~U64{ 0 }, 0x1ffffffffffffff, 0, 0, 0, 0 } } ) );
   }
}

TEST( FwdActProfileTable, ThirtyTwoBytesServeEveryFieldButNotTheEntry ) {
   for( const auto chip : chips ) {
      U8 buffer[32] = {};
      View view( chip, buffer, 32, false, 0 );
      for( const auto& field : expectation().fields ) {
         if( field.valid( view ) ) {
            EXPECT_EQ( expressionOf( [&] { field.mask( view ); } ), "none" ) << field.name;
            EXPECT_EQ( field.get( view ), Testing::lowOnes( field.len( view ) ) ) << field.name;
         }
      }
      EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 36" );
      View shorter( chip, buffer, 31, false, 0 );
      EXPECT_EQ( expressionOf( [&] { shorter.reserved(); } ), "len_ >= 32" );
      View shortest( chip, buffer, 24, false, 0 );
      EXPECT_EQ( expressionOf( [&] { shortest.statisticMetaData(); } ), "len_ >= 25" );
   }
}

} // namespace
