// EpniIsidTable: one ISID in a word without variants, or two tagged formats of a request.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Traces.h"

#include <Hardware/EpniIsidTable.h>
#include <Hardware/EsemMgmtReq.h>
#include <Hardware/Registry.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

using View = Hardware::EpniIsidTable;
using Testing::Address;
using Testing::addressOf;
using Testing::Bits;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::Image;

Testing::Expectation stated() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EpniIsidTable" );
   expected.storageBytes = 24;
   expected.discriminator = View::isEpniIsidTable;
   expected.fields = {
      NARROW_FIELD( U8, found, Found, 151, "FOUND" ),
      READ_ONLY_FIELD( U8, tid, Tid, 338, "TID" ),
      NARROW_FIELD( U8, wayIndex, WayIndex, 367, "WAY_INDEX" ),
      NARROW_FIELD( U8, zeroPadding, ZeroPadding, 368, "ZERO_PADDING" ),
      NARROW_FIELD( U32, isid, Isid, 216, "ISID" ),
      NARROW_FIELD( U64, payload, Payload, 277, "PAYLOAD" ),
      NARROW_FIELD( U8, vlanEditProfile, VlanEditProfile, 354, "VLAN_EDIT_PROFILE" ),
      NARROW_FIELD( U16, encapDestination, EncapDestination, 92, "ENCAP_DESTINATION" ),
      NARROW_FIELD( U32, key, Key, 227, "KEY" ),
      NARROW_FIELD( U32, fwdDomainNwkName, FwdDomainNwkName, 156, "FWD_DOMAIN_NWK_NAME" ),
      READ_ONLY_FIELD( U8, entryType, EntryType, 111, "ENTRY_TYPE" ),
      NARROW_FIELD( U8, actionProfile, ActionProfile, 4, "ACTION_PROFILE" ),
      NARROW_FIELD( U16, encap1Destination, Encap1Destination, 90, "ENCAP_1_DESTINATION" ),
      NARROW_FIELD( U16, command, Command, 47, "COMMAND" ),
      NARROW_FIELD( U8, outLifProfile, OutLifProfile, 271, "OUT_LIF_PROFILE" ),
      NARROW_FIELD( U8, remarkProfile, RemarkProfile, 293, "REMARK_PROFILE" ),
      NARROW_FIELD( U8, hits, Hits, 165, "HITS" ),
      NARROW_FIELD( U8, prefixNum, PrefixNum, 285, "PREFIX_NUM" ),
      NARROW_FIELD( U32, fodo, Fodo, 144, "FODO" ),
      NARROW_FIELD( U8, encapQosModel, EncapQosModel, 93, "ENCAP_QOS_MODEL" ),
      WIDE_FIELD( Raw256, entry, Entry, 94, "ENTRY" ),
      NARROW_FIELD( U32, address, Address, 27, "ADDRESS" ),
      READ_ONLY_FIELD( U8, vmv, Vmv, 360, "VMV" ),
      NARROW_FIELD( U8, encap1QosModel, Encap1QosModel, 91, "ENCAP_1_QOS_MODEL" ),
      NARROW_FIELD( U8, egressLastLayer, EgressLastLayer, 86, "EGRESS_LAST_LAYER" ),
      READ_ONLY_FIELD( U8, resultType, ResultType, 296, "RESULT_TYPE" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      { "any", { "2-8" }, { { "isid", { "0:24" } } } },
      { "0,1", { "10,12-14", "15,16" }, {
         { "command",   { "0:9",    "0:9"    } },
         { "entry",     { "9:137",  "9:136"  } },
         { "wayIndex",  { "146:4",  "145:4"  } },
         { "prefixNum", { "150:2",  "149:2"  } },
         { "address",   { "152:17", "151:16" } },
         { "entryType", { "169:3",  "167:3"  } },
         { "tid",       { "172:6",  "170:6"  } },
         { "hits",      { "178:4",  "176:4"  } },
         { "found",     { "182:1",  "180:1"  } },
      } },
      { "0", { "10,12", "13", "14", "15,16" }, {
         { "key",               { "9:24",   "9:24",   "9:24",   "9:24"   } },
         { "fodo",              { "9:18",   "9:18",   "9:18",   "9:18"   } },
         { "zeroPadding",       { "27:6",   "27:6",   "27:6",   "27:6"   } },
         { "payload",           { "88:57",  "89:56",  "88:57",  "88:56"  } },
         { "outLifProfile",     { "88:3",   "89:3",   "88:3",   "88:3"   } },
         { "encap1QosModel",    { "91:3",   "92:3",   "91:3",   "91:3"   } },
         { "remarkProfile",     { "94:1",   "-",      "-",      "-"      } },
         { "actionProfile",     { "95:2",   "95:2",   "94:2",   "94:2"   } },
         { "encap1Destination", { "97:12",  "97:12",  "96:12",  "96:12"  } },
         { "vlanEditProfile",   { "109:6",  "109:6",  "108:6",  "108:6"  } },
         { "fwdDomainNwkName",  { "115:24", "115:24", "114:24", "114:24" } },
         { "resultType",        { "139:6",  "139:6",  "138:7",  "138:6"  } },
         { "vmv",               { "145:1",  "145:1",  "145:1",  "144:1"  } },
      } },
      { "1", { "10,12,13", "14", "15,16" }, {
         { "key",              { "9:24",  "9:24",  "9:24"  } },
         { "fodo",             { "9:18",  "9:18",  "9:18"  } },
         { "zeroPadding",      { "27:6",  "27:6",  "27:6"  } },
         { "payload",          { "44:40", "43:41", "43:40" } },
         { "egressLastLayer",  { "44:1",  "43:1",  "43:1"  } },
         { "outLifProfile",    { "45:6",  "44:6",  "44:6"  } },
         { "encapQosModel",    { "51:2",  "50:2",  "50:2"  } },
         { "remarkProfile",    { "53:5",  "52:5",  "52:5"  } },
         { "vlanEditProfile",  { "58:6",  "57:6",  "57:6"  } },
         { "actionProfile",    { "64:2",  "63:2",  "63:2"  } },
         { "encapDestination", { "66:12", "65:12", "65:12" } },
         { "resultType",       { "78:6",  "77:7",  "77:6"  } },
         { "vmv",              { "84:2",  "84:2",  "83:2"  } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3",      "any", 1, 4096,  1, 1,  1, 0 },
      { "4,5,8",    "any", 1, 32768, 1, 1,  2, 0 },
      { "6,7",      "any", 1, 32768, 1, 1,  1, 0 },
      { "10,12",    "0",   6, 1024,  1, 22, 1, 2 },
      { "10,12-16", "1",   6, 1024,  1, 22, 1, 2 },
      { "13-16",    "0",   6, 1024,  1, 21, 1, 2 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "any", 0x130000, 1, 0, { { 0, 3 } } },
      { "4,5",   "any", 0x150000, 1, 0, { { 0, 48 }, { 0, 49 } } },
      { "6,7",   "any", 0x200000, 1, 0, { { 0, 48 } } },
      { "8",     "any", 0x170000, 1, 0, { { 0, 52 }, { 0, 53 } } },
      { "10,12", "0,1", 0x75000,  1, 0, { { 2, 5 } } },
      { "13",    "0,1", 0x63000,  1, 0, { { 0, 12 } } },
      { "14",    "0,1", 0x63000,  1, 0, { { 24, 36 } } },
      { "15,16", "0,1", 0x63000,  1, 0, { { 8, 20 } } },
   };
   expected.tags = {
      { "10,12-16", "0",
        { { "vmv", 1 }, { "tid", 4 }, { "entryType", 0 }, { "resultType", 33 } } },
      { "10,12-16", "1",
        { { "vmv", 1 }, { "tid", 4 }, { "entryType", 1 }, { "resultType", 11 } } },
   };
   // clang-format on
   return expected;
}

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( EpniIsidTable, expectation() )

constexpr unsigned isidChips[] = { 2, 3, 4, 5, 6, 7, 8 };
constexpr unsigned requestChips[] = { 10, 12, 13, 14, 15, 16 };

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

// Offset and width of a field.
using Place = std::pair<int, int>;

// Chip types 2 to 8.

TEST( EpniIsidTable, EveryVariantIsOneAndTheSame ) {
   for( const unsigned chipType : isidChips ) {
      const unsigned entries = chipType <= 3 ? 4096 : 32768;
      const bool twice = chipType == 4 || chipType == 5 || chipType == 8;
      for( unsigned number = 0; number < 256; ++number ) {
         const auto variant = static_cast<U8>( number );
         EXPECT_TRUE( View::chipTypeVariantValid( chip( chipType ), variant ) );
         EXPECT_EQ( View::width( chipType, variant ), 1 );
         EXPECT_EQ( View::tableWidth( chipType, variant ), 1 );
         EXPECT_EQ( View::entries( chipType, variant ), entries );
         EXPECT_EQ( View::arrayElements( chipType, variant ), 1u );
         EXPECT_EQ( View::arrayIndex_min( chipType, variant ), 0u );
         EXPECT_EQ( View::index_min( chipType, variant ), 0u );
         EXPECT_EQ( View::fieldCount( chipType, variant ), 1 );
         EXPECT_EQ( View::instanceCount( chipType, variant ), twice ? 2 : 1 );
         EXPECT_EQ( View::allFieldsMask( chipType, variant ).word( 0 ), 0xffffffu );
         EXPECT_EQ( addressOf<View>( chip( chipType ), variant, 0, 5 ),
                    addressOf<View>( chip( chipType ), 0, 0, 5 ) );

         for( const bool existingEntry : { false, true } ) {
            U8 buffer[4] = { 0x12, 0x34, 0x56, 0x78 };
            View view( chip( chipType ), buffer, sizeof buffer, existingEntry, variant );
            EXPECT_EQ( view.variant(), variant );
            EXPECT_EQ( view.isid(), 0x563412u );
            EXPECT_EQ( view.stringField( "isid", 3 ), 0x563412u );
            EXPECT_EQ( Place( view.isidOffset(), view.isidLen() ), Place( 0, 24 ) );
            EXPECT_EQ( Place( view.fieldOffset( 216 ), view.fieldWidth( 216 ) ), Place( 0, 24 ) );
            EXPECT_TRUE( view.isIsidValid() );
            EXPECT_TRUE( view.isFieldValid( 216 ) );
            EXPECT_FALSE( view.isFieldValid( 94 ) );
            EXPECT_EQ( view.fieldWidth( 94 ), 0 );
            EXPECT_EQ( view.tableVariantCount(), 0u );
            EXPECT_EQ( view.tableVariantCount( chipType, variant ), 0u );
            view.isidIs( 0xabcdef );
            EXPECT_EQ( view.isid(), 0xabcdefu );
            view.setField64( 216, 0x1000000fedcba );
            EXPECT_EQ( view.isid(), 0xfedcbau );
            EXPECT_EQ( expressionOf( [&] { view.isidIs( 0x1000000 ); } ), "isid <= 0xffffff" );
            view.isidMask();
            EXPECT_EQ( view.isid(), 0xffffffu );
            // The upper bits of the word have no field.
            EXPECT_EQ( buffer[3], 0x78 );
         }
      }
   }
}

TEST( EpniIsidTable, TracesNoVariantWhereThereIsNone ) {
   for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 200 }, U8{ 255 } } ) {
      const auto construct = [&] { View::WithStorage view( Hardware::BCM88375_A0, variant ); };
      EXPECT_EQ( Testing::tracesOf( 8, construct ),
                 std::vector<std::string>{ "EpniIsidTable chipType: BCM88375_A0 variant: None" } );
   }
   EXPECT_EQ( Testing::tracesOf( 8, [] { View::WithStorage view( Hardware::BCM88690_B0, 1 ); } ),
              std::vector<std::string>{ "EpniIsidTable chipType: BCM88690_B0 variant: 1" } );
}

TEST( EpniIsidTable, RequestFieldsAreRefusedWithoutARequest ) {
   for( const unsigned chipType : isidChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 255 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         EXPECT_EQ( expressionOf( [&] { view.entry(); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { view.command(); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { view.remarkProfileIs( 0 ); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { view.encapDestination(); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { view.encap1DestinationOffset(); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { view.resultType(); } ), "0" );
         const auto failure = failureOf( [&] { view.tidLen(); } );
         ASSERT_TRUE( failure );
         EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
         EXPECT_TRUE( failure->message &&
                      failure->message->ends_with( " does not have field TID" ) );
      }
   }
}

TEST( EpniIsidTable, AddressesOfTheIsids ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 0, 0, 4095 ), ( Address{ 0x130fff, 0, 3 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88650_B0, 0, 0, 4096 ); } ),
              "tableEntry < 4096" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88660_A0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   // Two instances are at one address, in neighbouring blocks.
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 0, 5 ), ( Address{ 0x150005, 0, 48 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 1, 5 ), ( Address{ 0x150005, 0, 49 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_B0, 255, 1, 32767 ),
              ( Address{ 0x157fff, 0, 49 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 9, 0, 32767 ),
              ( Address{ 0x177fff, 0, 52 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 9, 1, 32767 ),
              ( Address{ 0x177fff, 0, 53 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88680_A0, 0, 2, 0 ); } ),
              "identifier <= 1" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88680_A0, 0, 0, 32768 ); } ),
              "tableEntry < 32768" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88470_A0, 0, 0, 32767 ),
              ( Address{ 0x207fff, 0, 48 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88470_B0, 0, 1, 0 ); } ),
              "identifier <= 0" );
}

TEST( EpniIsidTable, OneWordIsTooShortForTheWholeEntry ) {
   U8 buffer[24];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   for( const unsigned chipType : isidChips ) {
      View four( chip( chipType ), buffer, 4, false, 3 );
      EXPECT_EQ( four.isid(), 0xffffffu );
      EXPECT_EQ( expressionOf( [&] { four.getAllFields(); } ), "len_ >= 24" );
      Raw256 masked{};
      masked.wordIs( 0, 0xffffff );
      EXPECT_EQ( View( chip( chipType ), buffer, 24, false, 3 ).getAllFields(), masked );
      View two( chip( chipType ), buffer, 2, false, 3 );
      EXPECT_EQ( expressionOf( [&] { two.isid(); } ), "len_ >= 3" );
   }
}

// Chip types 10, 12 to 16.

TEST( EpniIsidTable, AddressesOfTheRequestAreThoseOfTheEngine ) {
   using Engine = Hardware::EsemMgmtReq;
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         EXPECT_EQ( addressOf<View>( chip( chipType ), variant, 0, 1023 ),
                    addressOf<Engine>( chip( chipType ), 0, 0, 1023 ) );
         EXPECT_EQ( expressionOf( [&] { addressOf<View>( chip( chipType ), variant, 0, 1024 ); } ),
                    "tableEntry < 1024" );
         EXPECT_EQ( expressionOf( [&] { addressOf<View>( chip( chipType ), variant, 1, 0 ); } ),
                    "identifier <= 0" );
      }
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 1, 0, 1023 ), ( Address{ 0x753ff, 2, 5 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 0, 0 ), ( Address{ 0x63000, 24, 36 } ) );
   EXPECT_TRUE( Testing::hasNoAddress<View>( Hardware::BCM88690_B0, 2 ) );
}

struct Part {
   const char* name;
   U32 identifier;
};

// Expects that the parts lie in the whole one behind the other, from its low bits to its high ones,
// and that its value is made of theirs.
void expectTiling( unsigned chipType, U8 variant, Part whole, const std::vector<Part>& parts ) {
   std::mt19937 random( chipType );
   Image image = Testing::randomImage( 24, random );
   View view( chip( chipType ), image.data(), 24, false, variant );
   const unsigned begin = view.fieldOffset( whole.identifier );
   unsigned next = begin;
   U64 value = 0;
   for( const Part& part : parts ) {
      EXPECT_EQ( view.fieldOffset( part.identifier ), next ) << chipType << " " << part.name;
      value |= view.stringField( part.name, 0 ) << ( next - begin );
      next += view.fieldWidth( part.identifier );
   }
   EXPECT_EQ( next, begin + view.fieldWidth( whole.identifier ) ) << chipType << " " << whole.name;
   EXPECT_EQ( view.stringField( whole.name, 0 ), value ) << chipType << " " << whole.name;
   // The other way round: what the whole is set to shows in the parts.
   const U64 inverse = ~value & Testing::fromBits<U64>( Testing::lowOnes( next - begin ) );
   view.stringFieldIs( whole.name, inverse );
   for( const Part& part : parts ) {
      const unsigned width = view.fieldWidth( part.identifier );
      const U64 ones = ( U64{ 1 } << width ) - 1;
      EXPECT_EQ( view.stringField( part.name, 0 ),
                 inverse >> ( view.fieldOffset( part.identifier ) - begin ) & ones )
         << chipType << " " << part.name;
   }
}

TEST( EpniIsidTable, FieldsTileTheKey ) {
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         expectTiling( chipType, variant, { "key", 227 },
                       { { "fodo", 144 }, { "zeroPadding", 368 } } );
      }
   }
}

TEST( EpniIsidTable, FieldsTileThePayload ) {
   const Part outLifProfile{ "outLifProfile", 271 };
   const Part encap1QosModel{ "encap1QosModel", 91 };
   const Part remarkProfile{ "remarkProfile", 293 };
   const Part actionProfile{ "actionProfile", 4 };
   const Part encap1Destination{ "encap1Destination", 90 };
   const Part vlanEditProfile{ "vlanEditProfile", 354 };
   const Part fwdDomainNwkName{ "fwdDomainNwkName", 156 };
   const Part resultType{ "resultType", 296 };
   for( const unsigned chipType : { 10u, 12u } ) {
      expectTiling( chipType, 0, { "payload", 277 },
                    { outLifProfile, encap1QosModel, remarkProfile, actionProfile,
                      encap1Destination, vlanEditProfile, fwdDomainNwkName, resultType } );
   }
   for( const unsigned chipType : { 13u, 14u, 15u, 16u } ) {
      expectTiling( chipType, 0, { "payload", 277 },
                    { outLifProfile, encap1QosModel, actionProfile, encap1Destination,
                      vlanEditProfile, fwdDomainNwkName, resultType } );
   }
   for( const unsigned chipType : requestChips ) {
      expectTiling( chipType, 1, { "payload", 277 },
                    { { "egressLastLayer", 86 },
                      outLifProfile,
                      { "encapQosModel", 93 },
                      remarkProfile,
                      vlanEditProfile,
                      actionProfile,
                      { "encapDestination", 92 },
                      resultType } );
   }
}

TEST( EpniIsidTable, FrameTilesTheRequest ) {
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         unsigned next = 0;
         // command, entry, wayIndex, prefixNum, address, entryType, tid, hits, found
         for( const U32 identifier : { 47u, 94u, 367u, 285u, 27u, 111u, 338u, 165u, 151u } ) {
            EXPECT_EQ( view.fieldOffset( identifier ), next ) << chipType << " " << identifier;
            next += view.fieldWidth( identifier );
         }
         EXPECT_EQ( next, chipType <= 14 ? 183u : 181u );
         // The mask is one unbroken run up to there, although gaps inside `entry` have no other
         // name.
         const Raw4096 mask = View::allFieldsMask( chipType, variant );
         EXPECT_EQ( mask.word( 0 ), 0xffffffffffffffffu );
         EXPECT_EQ( mask.word( 1 ), 0xffffffffffffffffu );
         EXPECT_EQ( mask.word( 2 ), chipType <= 14 ? 0x7fffffffffffffu : 0x1fffffffffffffu );
         EXPECT_EQ( mask.word( 3 ), 0u );
      }
   }
}

TEST( EpniIsidTable, TopOfTheEntryTellsItsSize ) {
   for( const unsigned chipType : requestChips ) {
      // `vmv` ends `entry` in one variant, and in the other `payload` ends under it.
      View::WithStorage full( chip( chipType ), 0 );
      EXPECT_EQ( full.vmvLen(), 1 );
      EXPECT_EQ( full.vmvOffset() + full.vmvLen(), full.entryOffset() + full.entryLen() );
      EXPECT_EQ( full.payloadOffset() + full.payloadLen(), full.vmvOffset() );
      View::WithStorage narrow( chip( chipType ), 1 );
      EXPECT_EQ( Place( narrow.vmvOffset(), narrow.vmvLen() ),
                 Place( chipType <= 14 ? 84 : 83, 2 ) );
      EXPECT_EQ( narrow.payloadOffset() + narrow.payloadLen(), narrow.vmvOffset() );
   }
}

TEST( EpniIsidTable, SmallStepsBetweenSiblings ) {
   const auto view = []( unsigned chipType, U8 variant ) {
      return std::make_unique<View::WithStorage>( chip( chipType ), variant );
   };
   for( const unsigned chipType : { 10u, 12u } ) {
      const auto remark = view( chipType, 0 );
      EXPECT_EQ( Place( remark->remarkProfileOffset(), remark->remarkProfileLen() ),
                 Place( 94, 1 ) );
      EXPECT_EQ( remark->fieldCount(), 22 );
   }
   for( const unsigned chipType : { 13u, 14u, 15u, 16u } ) {
      EXPECT_FALSE( view( chipType, 0 )->isRemarkProfileValid() );
      EXPECT_EQ( view( chipType, 0 )->fieldCount(), 21 );
   }
   for( const unsigned chipType : requestChips ) {
      EXPECT_EQ( view( chipType, 1 )->remarkProfileLen(), 5 );
   }
   // The bit is filled from below on one chip type, and from above on the others.
   EXPECT_EQ( view( 10, 0 )->payloadOffset(), 88 );
   EXPECT_EQ( view( 13, 0 )->payloadOffset(), 89 );
   EXPECT_EQ( view( 13, 0 )->outLifProfileOffset(), 89 );
   EXPECT_EQ( view( 13, 0 )->encap1QosModelOffset(), 92 );
   EXPECT_EQ( view( 13, 0 )->actionProfileOffset(), 95 );
   for( const unsigned chipType : { 14u, 15u, 16u } ) {
      const auto lower = view( chipType, 0 );
      EXPECT_EQ( lower->payloadOffset(), 88 );
      EXPECT_EQ( lower->encap1QosModelOffset(), 91 );
      EXPECT_EQ( lower->actionProfileOffset(), 94 );
      EXPECT_EQ( lower->fwdDomainNwkNameOffset(), 114 );
      EXPECT_EQ( lower->resultTypeLen(), chipType == 14 ? 7 : 6 );
      EXPECT_EQ( lower->vmvOffset(), chipType == 14 ? 145 : 144 );
   }
}

TEST( EpniIsidTable, FreshRequestHoldsTheTagAlone ) {
   for( const unsigned chipType : requestChips ) {
      const bool late = chipType >= 15;
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         EXPECT_EQ( view.vmv(), 1 );
         EXPECT_EQ( view.tid(), 4 );
         EXPECT_EQ( view.entryType(), variant );
         EXPECT_EQ( view.resultType(), variant == 0 ? 33 : 11 );
         Bits right;
         right |= Bits( 1 ) << ( variant == 0 ? ( late ? 144 : 145 ) : ( late ? 83 : 84 ) );
         right |= Bits( 4 ) << ( late ? 170 : 172 );
         right |= Bits( variant ) << ( late ? 167 : 169 );
         const bool lower = chipType >= 14;
         right |=
            variant == 0 ? Bits( 33 ) << ( lower ? 138 : 139 ) : Bits( 11 ) << ( lower ? 77 : 78 );
         EXPECT_EQ( Testing::toBits( view.getAllFields() ), right ) << chipType;
      }
   }
}

TEST( EpniIsidTable, ShortRequestIsStampedAsFarAsItGoes ) {
   for( const unsigned chipType : requestChips ) {
      const unsigned whole = chipType <= 14 ? 23 : 22;
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         const unsigned first = variant == 0 ? 19 : 11;
         for( unsigned size = 0; size <= 24; ++size ) {
            Image image( size );
            const auto stamp = [&] {
               View( chip( chipType ), image.data(), static_cast<U16>( size ), false, variant );
            };
            EXPECT_EQ( expressionOf( stamp ), size < first   ? "len_ >= " + std::to_string( first )
                                              : size < whole ? "len_ >= " + std::to_string( whole )
                                                             : "none" );
            EXPECT_EQ(
               std::any_of( image.begin(), image.end(), []( U8 byte ) { return byte != 0; } ),
               size >= first );
            if( size >= first && size < whole ) {
               const unsigned vmv =
                  variant == 0 ? ( chipType <= 14 ? 145 : 144 ) : ( chipType <= 14 ? 84 : 83 );
               EXPECT_EQ( Testing::bitsAt( image, 0, 8 * size ), Bits( 1 ) << vmv );
            }
         }
      }
   }
}

TEST( EpniIsidTable, ExistingRequestIsVerifiedInOrder ) {
   const auto verify = []( const Image& request, unsigned chipType, U8 variant ) {
      Image image = request;
      const std::string expression =
         expressionOf( [&] { View( chip( chipType ), image.data(), 24, true, variant ); } );
      EXPECT_EQ( image, request );
      return expression;
   };
   const auto tagTest = []( const std::string& place, unsigned value ) {
      return "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), " + place +
             " ); ( n == " + std::to_string( value ) + " ); })";
   };
   const auto stamped = []( unsigned chipType, U8 variant ) {
      View::WithStorage view( chip( chipType ), variant );
      return Image( view.buf(), view.buf() + 24 );
   };
   EXPECT_EQ( verify( Image( 24 ), 10, 1 ), tagTest( "2, 84", 1 ) );
   EXPECT_EQ( verify( Image( 24 ), 10, 0 ), tagTest( "1, 145", 1 ) );
   EXPECT_EQ( verify( Image( 24 ), 16, 0 ), tagTest( "1, 144", 1 ) );
   EXPECT_EQ( verify( Image( 24 ), 15, 1 ), tagTest( "2, 83", 1 ) );

   Image request = stamped( 14, 1 );
   EXPECT_EQ( verify( request, 14, 1 ), "none" );
   Testing::bitsAtAre( request, 77, 7, Bits( 10 ) );
   EXPECT_EQ( verify( request, 14, 1 ), tagTest( "7, 77", 11 ) );
   Testing::bitsAtAre( request, 169, 3, Bits( 0 ) );
   EXPECT_EQ( verify( request, 14, 1 ), tagTest( "3, 169", 1 ) );
   Testing::bitsAtAre( request, 172, 6, Bits( 5 ) );
   EXPECT_EQ( verify( request, 14, 1 ), tagTest( "6, 172", 4 ) );
   Testing::bitsAtAre( request, 84, 2, Bits( 2 ) );
   EXPECT_EQ( verify( request, 14, 1 ), tagTest( "2, 84", 1 ) );
}

TEST( EpniIsidTable, TagInsideTheEntryIsNotSafe ) {
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.payloadIs( 0 );
         EXPECT_EQ( view.resultType(), 0 );
         EXPECT_EQ( view.vmv(), 1 );
         view.entryIs( Raw256{} );
         EXPECT_EQ( view.vmv(), 0 );
         EXPECT_FALSE( View::isEpniIsidTable( chip( chipType ), view.buf(), 24, variant ) );
         // No setter reaches the part of the tag above.
         for( const Testing::FieldUnderTest& field : expectation().fields ) {
            if( !field.readOnly && view.isFieldValid( field.identifier ) ) {
               field.set( view, Bits() );
               EXPECT_EQ( view.tid(), 4 ) << field.name;
               EXPECT_EQ( view.entryType(), variant ) << field.name;
               field.mask( view );
               EXPECT_EQ( view.tid(), 4 ) << field.name;
               EXPECT_EQ( view.entryType(), variant ) << field.name;
            }
         }
         EXPECT_EQ( view.vmv(), variant == 0 ? 1 : 3 );
         EXPECT_EQ( view.resultType(), chipType == 14 ? 0x7f : 0x3f );
      }
   }
}

TEST( EpniIsidTable, PayloadIsBoundedByItsWidth ) {
   const auto refusal = []( unsigned chipType, U8 variant, U64 value ) {
      View::WithStorage view( chip( chipType ), variant );
      return expressionOf( [&] {
         view.payloadIs( value );
         EXPECT_EQ( view.payload(), value );
      } );
   };
   for( const unsigned chipType : { 10u, 12u, 14u } ) {
      EXPECT_EQ( refusal( chipType, 0, 0x1ffffffffffffff ), "none" );
      EXPECT_EQ( refusal( chipType, 0, 0x200000000000000 ), "payload <= 0x1ffffffffffffff" );
   }
   for( const unsigned chipType : { 13u, 15u, 16u } ) {
      EXPECT_EQ( refusal( chipType, 0, 0xffffffffffffff ), "none" );
      EXPECT_EQ( refusal( chipType, 0, 0x100000000000000 ), "payload <= 0xffffffffffffff" );
   }
   for( const unsigned chipType : { 10u, 12u, 13u, 15u, 16u } ) {
      EXPECT_EQ( refusal( chipType, 1, 0xffffffffff ), "none" );
      EXPECT_EQ( refusal( chipType, 1, 0x10000000000 ), "payload <= 0xffffffffff" );
   }
   EXPECT_EQ( refusal( 14, 1, 0x1ffffffffff ), "none" );
   EXPECT_EQ( refusal( 14, 1, 0x20000000000 ), "payload <= 0x1ffffffffff" );
}

TEST( EpniIsidTable, AddressOfSixteenBitsIsCutSilently ) {
   for( const unsigned chipType : { 15u, 16u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.addressIs( 0xffff2345 );
      EXPECT_EQ( view.address(), 0x2345u );
      view.setField64( 27, 0x1abcd );
      EXPECT_EQ( view.address(), 0xabcdu );
      EXPECT_EQ( view.entryType(), 0 );
      EXPECT_EQ( view.tid(), 4 );
   }
   for( const unsigned chipType : { 10u, 12u, 13u, 14u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.addressIs( 0x12345 );
      EXPECT_EQ( view.address(), 0x12345u );
      EXPECT_EQ( expressionOf( [&] { view.addressIs( 0x20000 ); } ), "address <= 0x1ffff" );
   }
}

TEST( EpniIsidTable, FieldsOfOneVariantNameIt ) {
   for( const unsigned chipType : requestChips ) {
      View::WithStorage full( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { full.encapDestination(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { full.encapQosModelIs( 0 ); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { full.egressLastLayerMask(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { full.remarkProfileOffset(); } ),
                 chipType <= 12 ? "none" : "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { full.isid(); } ), "0" );
      View::WithStorage narrow( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { narrow.fwdDomainNwkName(); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { narrow.encap1DestinationIs( 0 ); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { narrow.encap1QosModelMask(); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { narrow.isid(); } ), "0" );
   }
}

TEST( EpniIsidTable, EntryIsReadByWord ) {
   Image image( 24 );
   for( std::size_t byte = 0; byte < image.size(); ++byte ) {
      image[byte] = static_cast<U8>( byte << 1 );
   }
   // From bit 9 on, byte n of the field is byte n + 1 of the image, shifted by one.
   View view( Hardware::BCM88800_A0, image.data(), 24, false, 0 );
   View::WithStorage right( Hardware::BCM88800_A0, 0 );
   right.entryIs( view.entry() );
   EXPECT_EQ( view.stringField( "entry", 0 ), 0x0807060504030201u );
   EXPECT_EQ( view.stringField( "entry", 3 ), 0u );
   for( U16 word = 0; word < 4; ++word ) {
      EXPECT_EQ( view.stringField( "entry", word ), view.entry().word( word ) );
      EXPECT_EQ( right.stringField( "entry", word ), view.entry().word( word ) );
   }
   const auto failure = failureOf( [&] { view.stringFieldIs( "entry", 1 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "false" );
   EXPECT_EQ( failure->message, std::nullopt );
   EXPECT_EQ( expressionOf( [&] { view.setField64( 94, 1 ); } ), "false" );
}

TEST( EpniIsidTable, ReachesTwentyOneFieldsByIdentifierAndName ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   std::vector<unsigned> byIdentifier;
   std::vector<std::string> byName;
   for( const Testing::FieldUnderTest& field : expectation().fields ) {
      if( expressionOf( [&] { view.setField64( field.identifier, 0 ); } ) == "false" ) {
         byIdentifier.push_back( field.identifier );
      }
      const std::string expression = expressionOf( [&] { view.stringFieldIs( field.name, 0 ); } );
      if( expression == "false" || expression == "\"false\" == nullptr" ) {
         byName.push_back( field.name );
      }
   }
   EXPECT_EQ( byIdentifier, ( std::vector<unsigned>{ 338, 111, 94, 360, 296 } ) );
   EXPECT_EQ( byName,
              ( std::vector<std::string>{ "tid", "entryType", "entry", "vmv", "resultType" } ) );
   EXPECT_EQ( expectation().fields.size(), 26u );
}

// The discriminator.

TEST( EpniIsidTable, DiscriminatorIsNoTestOfValidity ) {
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      const bool plain = chipType >= 2 && chipType <= 8;
      const bool request = chipType == 10 || ( chipType >= 12 && chipType <= 16 );
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const bool holds = plain || ( request && variant > 1 );
         EXPECT_EQ(
            View::isEpniIsidTable( chip( chipType ), nullptr, 0, static_cast<U8>( variant ) ),
            holds )
            << chipType << ", " << variant;
         const Image ones( 24, 0xff );
         EXPECT_EQ(
            View::isEpniIsidTable( chip( chipType ), ones.data(), 24, static_cast<U8>( variant ) ),
            holds )
            << chipType << ", " << variant;
      }
   }
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88690_B0, 2 ) );
}

TEST( EpniIsidTable, DiscriminatorNeedsTheBytesOfTheTag ) {
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         for( unsigned size = 0; size <= 24; ++size ) {
            const Image image( view.buf(), view.buf() + size );
            EXPECT_EQ( View::isEpniIsidTable( chip( chipType ), image.data(),
                                              static_cast<U16>( size ), variant ),
                       size >= ( chipType <= 14 ? 23u : 22u ) )
               << chipType << ", " << size;
         }
         const auto lengthAlone = static_cast<U16>( variant == 0 ? 18 : 10 );
         EXPECT_FALSE( View::isEpniIsidTable( chip( chipType ), nullptr, lengthAlone, variant ) );
      }
   }
}

TEST( EpniIsidTable, DiscriminatorLooksAtTheTagAlone ) {
   for( const unsigned chipType : requestChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         Bits tag;
         const auto add = [&]( unsigned offset, unsigned width ) {
            tag |= Testing::lowOnes( width ) << offset;
         };
         add( view.vmvOffset(), view.vmvLen() );
         add( view.tidOffset(), view.tidLen() );
         add( view.entryTypeOffset(), view.entryTypeLen() );
         add( view.resultTypeOffset(), view.resultTypeLen() );
         EXPECT_EQ( tag.count(),
                    ( variant == 0 ? 1u : 2u ) + 6 + 3 + ( chipType == 14 ? 7u : 6u ) );
         for( unsigned bit = 0; bit < 192; ++bit ) {
            Image image( view.buf(), view.buf() + 24 );
            Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
            EXPECT_EQ( View::isEpniIsidTable( chip( chipType ), image.data(), 24, variant ),
                       !tag[bit] )
               << chipType << ", " << bit;
         }
         // The variants exclude each other.
         EXPECT_FALSE( View::isEpniIsidTable( chip( chipType ), view.buf(), 24,
                                              static_cast<U8>( 1 - variant ) ) );
      }
   }
}

TEST( EpniIsidTable, ResultTypeAloneTellsItFromTheEngine ) {
   for( const unsigned chipType : requestChips ) {
      Hardware::EsemMgmtReq::WithStorage engine( chip( chipType ), 0 );
      EXPECT_FALSE( View::isEpniIsidTable( chip( chipType ), engine.buf(), 24, 0 ) );
      const std::string place = chipType == 14 ? "7, 138" : chipType >= 15 ? "6, 138" : "6, 139";
      EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), engine.buf(), 24, true, 0 ); } ),
                 "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), " + place +
                    " ); ( n == 33 ); })" );
      Image image( engine.buf(), engine.buf() + 24 );
      const unsigned offset = chipType >= 14 ? 138 : 139;
      const unsigned width = chipType == 14 ? 7 : 6;
      EXPECT_EQ( Testing::bitsAt( image, offset, width ), Bits( 9 ) );
      Testing::bitsAtAre( image, offset, width, Bits( 33 ) );
      EXPECT_TRUE( View::isEpniIsidTable( chip( chipType ), image.data(), 24, 0 ) );
      View::WithStorage own( chip( chipType ), 0 );
      EXPECT_EQ( image, Image( own.buf(), own.buf() + 24 ) );
      EXPECT_FALSE( Hardware::EsemMgmtReq::isEsemMgmtReq( chip( chipType ), own.buf(), 24, 0 ) );
   }
}

TEST( EpniIsidTable, FromTheRegistry ) {
   EXPECT_TRUE( Hardware::chipTypeVariantValid( "EpniIsidTable", Hardware::BCM88375_B0, 255 ) );
   const auto plain = Hardware::stringObj( "EpniIsidTable", Hardware::BCM88375_B0, 255 );
   EXPECT_EQ( plain->width(), 1 );
   EXPECT_EQ( plain->len(), 24 );
   EXPECT_EQ( plain->tableVariantCount( 5, 255 ), 0u );
   plain->stringFieldIs( "isid", 0x123456 );
   EXPECT_EQ( plain->stringField( "isid", 0 ), 0x123456u );
   const auto request = Hardware::stringObj( "EpniIsidTable", Hardware::BCM88690_V6_B0, 1 );
   EXPECT_EQ( request->width(), 6 );
   EXPECT_EQ( request->tableVariantCount( 12, 0 ), 2u );
   EXPECT_EQ( request->stringField( "resultType", 0 ), 11u );
   EXPECT_EQ( expressionOf( [&] { request->tableVariantCount( 12, 2 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { View::entries( 12, 2 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { View::entries( 9, 0 ); } ), "0" );
}

} // namespace
