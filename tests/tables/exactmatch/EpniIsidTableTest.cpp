// EpniIsidTable: one ISID in a word without variants, or two tagged formats of a request.
#include "support/Contract.h"
#include "support/Numbers.h"

#include <Hardware/EpniIsidTable.h>
#include <Hardware/EsemMgmtReq.h>

namespace {

using View = Hardware::EpniIsidTable;
using Testing::Bits;
using Testing::expressionOf;
using Testing::Image;

Testing::Expectation expectation() {
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

CONTRACT_TESTS( EpniIsidTable, expectation() )

// The chip types with variants.
const std::string newer = "10,12-16";

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

TEST( EpniIsidTable, TagInsideTheEntryIsNotSafe ) {
   for( const unsigned chipType : Testing::numbersIn( newer ) ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.payloadIs( 0 );
         EXPECT_EQ( view.resultType(), 0 );
         EXPECT_EQ( view.vmv(), 1 );
         view.entryIs( Raw256{} );
         EXPECT_EQ( view.vmv(), 0 );
         EXPECT_FALSE( View::isEpniIsidTable( chip( chipType ), view.buf(), 24, variant ) );
         // No setter reaches the part of the tag above.
         for( const Testing::FieldUnderTest& field : expectationOfEpniIsidTable().fields ) {
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

TEST( EpniIsidTable, ResultTypeAloneTellsItFromTheEngine ) {
   for( const unsigned chipType : Testing::numbersIn( newer ) ) {
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

} // namespace
