// EsemMgmtReq: one or two registers on chip types 2 to 8, tagged key formats in one memory later.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Parts.h"

#include <Hardware/EsemMgmtReq.h>
#include <Hardware/Registry.h>

#include <set>

namespace {

using View = Hardware::EsemMgmtReq;
using Testing::Address;
using Testing::Bits;
using Testing::bitsAt;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::Image;
using Testing::lowOnes;
using Testing::widthOf;

Testing::Expectation stated() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EsemMgmtReq" );
   expected.storageBytes = 24;
   expected.discriminator = View::isEsemMgmtReq;
   expected.fields = {
      NARROW_FIELD( U16, esemKeyCvid, EsemKeyCvid, 130, "ESEM_KEY_CVID" ),
      NARROW_FIELD( U8, found, Found, 151, "FOUND" ),
      NARROW_FIELD( U16, vlanEditVid1, VlanEditVid1, 355, "VLAN_EDIT_VID_1" ),
      NARROW_FIELD( U16, vlanEditVid2, VlanEditVid2, 356, "VLAN_EDIT_VID_2" ),
      NARROW_FIELD( U32, esem1Payload, Esem1Payload, 122, "ESEM_1_PAYLOAD" ),
      NARROW_FIELD( U8, esem1RefreshedByDsp, Esem1RefreshedByDsp, 123, "ESEM_1_REFRESHED_BY_DSP" ),
      NARROW_FIELD( U8, esemStamp, EsemStamp, 138, "ESEM_STAMP" ),
      NARROW_FIELD( U32, statObjectId, StatObjectId, 303, "STAT_OBJECT_ID" ),
      NARROW_FIELD( U8, esemKeyDbId, EsemKeyDbId, 131, "ESEM_KEY_DB_ID" ),
      READ_ONLY_FIELD( U8, tid, Tid, 338, "TID" ),
      NARROW_FIELD( U8, esem0Type, Esem0Type, 119, "ESEM_0_TYPE" ),
      NARROW_FIELD( U8, outLifProfile, OutLifProfile, 271, "OUT_LIF_PROFILE" ),
      NARROW_FIELD( U8, esem1ReservedLow, Esem1ReservedLow, 124, "ESEM_1_RESERVED_LOW" ),
      NARROW_FIELD( U16, cVid, CVid, 51, "C_VID" ),
      NARROW_FIELD( U16, nwkQosIdx, NwkQosIdx, 255, "NWK_QOS_IDX" ),
      NARROW_FIELD( U16, esemKeyVsi, EsemKeyVsi, 133, "ESEM_KEY_VSI" ),
      NARROW_FIELD( U64, esemKey, EsemKey, 129, "ESEM_KEY" ),
      NARROW_FIELD( U8, wayIndex, WayIndex, 367, "WAY_INDEX" ),
      NARROW_FIELD( U8, esemRefreshedByDsp, EsemRefreshedByDsp, 135, "ESEM_REFRESHED_BY_DSP" ),
      NARROW_FIELD( U8, esem0RefreshedByDsp, Esem0RefreshedByDsp, 115, "ESEM_0_REFRESHED_BY_DSP" ),
      NARROW_FIELD( U8, zeroPadding, ZeroPadding, 368, "ZERO_PADDING" ),
      NARROW_FIELD( U64, esem0Key, Esem0Key, 113, "ESEM_0_KEY" ),
      NARROW_FIELD( U8, esem1Stamp, Esem1Stamp, 126, "ESEM_1_STAMP" ),
      NARROW_FIELD( U16, esemKeyVd, EsemKeyVd, 132, "ESEM_KEY_VD" ),
      NARROW_FIELD( U8, encapQosModel, EncapQosModel, 93, "ENCAP_QOS_MODEL" ),
      WIDE_FIELD( Raw128, payload, Payload, 277, "PAYLOAD" ),
      NARROW_FIELD( U8, esem1AgeStatus, Esem1AgeStatus, 120, "ESEM_1_AGE_STATUS" ),
      NARROW_FIELD( U8, esemReservedLow, EsemReservedLow, 136, "ESEM_RESERVED_LOW" ),
      NARROW_FIELD( U8, esemAgeStatus, EsemAgeStatus, 128, "ESEM_AGE_STATUS" ),
      NARROW_FIELD( U8, vlanEditProfile, VlanEditProfile, 354, "VLAN_EDIT_PROFILE" ),
      NARROW_FIELD( U32, encapDestination, EncapDestination, 92, "ENCAP_DESTINATION" ),
      NARROW_FIELD( U8, esem0ReservedLow, Esem0ReservedLow, 116, "ESEM_0_RESERVED_LOW" ),
      NARROW_FIELD( U64, esem1Key, Esem1Key, 121, "ESEM_1_KEY" ),
      READ_ONLY_FIELD( U8, entryType, EntryType, 111, "ENTRY_TYPE" ),
      NARROW_FIELD( U8, actionProfile, ActionProfile, 4, "ACTION_PROFILE" ),
      NARROW_FIELD( U8, esemSelf, EsemSelf, 137, "ESEM_SELF" ),
      NARROW_FIELD( U16, command, Command, 47, "COMMAND" ),
      NARROW_FIELD( U8, esem0AgeStatus, Esem0AgeStatus, 112, "ESEM_0_AGE_STATUS" ),
      NARROW_FIELD( U8, esem1Type, Esem1Type, 127, "ESEM_1_TYPE" ),
      WIDE_FIELD( Raw256, entry, Entry, 94, "ENTRY" ),
      NARROW_FIELD( U32, esem0Payload, Esem0Payload, 114, "ESEM_0_PAYLOAD" ),
      NARROW_FIELD( U8, remarkProfile, RemarkProfile, 293, "REMARK_PROFILE" ),
      NARROW_FIELD( U8, hits, Hits, 165, "HITS" ),
      NARROW_FIELD( U8, esem0Stamp, Esem0Stamp, 118, "ESEM_0_STAMP" ),
      NARROW_FIELD( U8, prefixNum, PrefixNum, 285, "PREFIX_NUM" ),
      NARROW_FIELD( U32, esemPayload, EsemPayload, 134, "ESEM_PAYLOAD" ),
      NARROW_FIELD( U8, esem0Self, Esem0Self, 117, "ESEM_0_SELF" ),
      READ_ONLY_FIELD( U8, resultType, ResultType, 296, "RESULT_TYPE" ),
      NARROW_FIELD( U32, fodo, Fodo, 144, "FODO" ),
      NARROW_FIELD( U8, esemType, EsemType, 139, "ESEM_TYPE" ),
      NARROW_FIELD( U16, vlanDomain, VlanDomain, 351, "VLAN_DOMAIN" ),
      NARROW_FIELD( U64, key, Key, 227, "KEY" ),
      NARROW_FIELD( U32, address, Address, 27, "ADDRESS" ),
      READ_ONLY_FIELD( U8, vmv, Vmv, 360, "VMV" ),
      NARROW_FIELD( U8, egressLastLayer, EgressLastLayer, 86, "EGRESS_LAST_LAYER" ),
      NARROW_FIELD( U8, statObjectCmd, StatObjectCmd, 302, "STAT_OBJECT_CMD" ),
      NARROW_FIELD( U8, esem1Self, Esem1Self, 125, "ESEM_1_SELF" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      // The registers of chip types 2 to 8.
      { "0", { "2,3", "4-7", "8" }, {
         { "esem0Type",           { "-",     "-",     "0:3"   } },
         { "esemType",            { "0:3",   "0:3",   "0:3"   } },
         { "esem0Stamp",          { "-",     "-",     "3:8"   } },
         { "esemStamp",           { "3:8",   "3:8",   "-"     } },
         { "esem0Key",            { "-",     "-",     "11:40" } },
         { "esemKey",             { "11:37", "11:40", "11:40" } },
         { "esemKeyCvid",         { "11:12", "11:12", "11:12" } },
         { "esemKeyVsi",          { "23:16", "23:16", "23:16" } },
         { "esemKeyVd",           { "39:8",  "39:9",  "39:9"  } },
         { "esemKeyDbId",         { "47:1",  "48:1",  "48:1"  } },
         { "esemPayload",         { "48:16", "51:17", "51:17" } },
         { "esem0Payload",        { "-",     "-",     "51:17" } },
         { "esemReservedLow",     { "64:4",  "68:5",  "-"     } },
         { "esemAgeStatus",       { "64:2",  "68:3",  "-"     } },
         { "esemSelf",            { "66:1",  "71:1",  "-"     } },
         { "esemRefreshedByDsp",  { "67:1",  "72:1",  "-"     } },
         { "esem0ReservedLow",    { "-",     "-",     "68:5"  } },
         { "esem0AgeStatus",      { "-",     "-",     "68:3"  } },
         { "esem0Self",           { "-",     "-",     "71:1"  } },
         { "esem0RefreshedByDsp", { "-",     "-",     "72:1"  } },
      } },
      { "1", { "8" }, {
         { "esem1Type",           { "0:3"   } },
         { "esemType",            { "0:3"   } },
         { "esem1Stamp",          { "3:8"   } },
         { "esem1Key",            { "11:40" } },
         { "esemKey",             { "11:40" } },
         { "esemKeyCvid",         { "11:12" } },
         { "esemKeyVsi",          { "23:16" } },
         { "esemKeyVd",           { "39:9"  } },
         { "esemKeyDbId",         { "48:1"  } },
         { "esem1Payload",        { "51:17" } },
         { "esemPayload",         { "51:17" } },
         { "esem1ReservedLow",    { "68:5"  } },
         { "esem1AgeStatus",      { "68:3"  } },
         { "esem1Self",           { "71:1"  } },
         { "esem1RefreshedByDsp", { "72:1"  } },
      } },
      // The frame of the key formats.
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
      // Inside the frame.
      { "0", { "10,12,13", "14", "15,16" }, {
         { "key",              { "9:24",   "9:24",   "9:24"   } },
         { "fodo",             { "9:18",   "9:18",   "9:18"   } },
         { "zeroPadding",      { "27:6",   "27:6",   "27:6"   } },
         { "payload",          { "59:86",  "58:87",  "58:86"  } },
         { "egressLastLayer",  { "59:1",   "58:1",   "58:1"   } },
         { "statObjectId",     { "60:17",  "59:17",  "59:17"  } },
         { "statObjectCmd",    { "77:5",   "76:5",   "76:5"   } },
         { "outLifProfile",    { "82:6",   "81:6",   "81:6"   } },
         { "encapQosModel",    { "88:3",   "87:3",   "87:3"   } },
         { "remarkProfile",    { "91:5",   "90:5",   "90:5"   } },
         { "nwkQosIdx",        { "96:11",  "95:11",  "95:11"  } },
         { "vlanEditProfile",  { "107:6",  "106:6",  "106:6"  } },
         { "actionProfile",    { "113:2",  "112:2",  "112:2"  } },
         { "encapDestination", { "115:24", "114:24", "114:24" } },
         { "resultType",       { "139:6",  "138:7",  "138:6"  } },
         { "vmv",              { "145:1",  "145:1",  "144:1"  } },
      } },
      { "1", { "10,12", "13", "14", "15,16" }, {
         { "key",             { "9:40",   "9:41",   "9:41",   "9:41"   } },
         { "cVid",            { "9:12",   "9:12",   "9:12",   "9:12"   } },
         { "vlanDomain",      { "21:9",   "21:11",  "21:11",  "21:11"  } },
         { "fodo",            { "30:18",  "32:18",  "32:18",  "32:18"  } },
         { "zeroPadding",     { "48:1",   "-",      "-",      "-"      } },
         { "payload",         { "59:86",  "59:86",  "58:87",  "58:86"  } },
         { "egressLastLayer", { "59:1",   "59:1",   "58:1",   "58:1"   } },
         { "statObjectId",    { "60:17",  "60:17",  "59:17",  "59:17"  } },
         { "statObjectCmd",   { "77:5",   "77:5",   "76:5",   "76:5"   } },
         { "outLifProfile",   { "82:6",   "82:6",   "81:6",   "81:6"   } },
         { "encapQosModel",   { "88:3",   "88:3",   "87:3",   "87:3"   } },
         { "remarkProfile",   { "91:5",   "91:5",   "90:5",   "90:5"   } },
         { "nwkQosIdx",       { "96:11",  "96:11",  "95:11",  "95:11"  } },
         { "vlanEditProfile", { "107:6",  "107:6",  "106:6",  "106:6"  } },
         { "actionProfile",   { "113:2",  "113:2",  "112:2",  "112:2"  } },
         { "vlanEditVid1",    { "115:12", "115:12", "114:12", "114:12" } },
         { "vlanEditVid2",    { "127:12", "127:12", "126:12", "126:12" } },
         { "resultType",      { "139:6",  "139:6",  "138:7",  "138:6"  } },
         { "vmv",             { "145:1",  "145:1",  "145:1",  "144:1"  } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2-7",      "0",   3, 1,    1, 12, 1, 1 },
      { "8",        "0,1", 3, 1,    1, 15, 1, 2 },
      { "10,12-16", "0",   6, 1024, 1, 25, 1, 2 },
      { "10,12",    "1",   6, 1024, 1, 28, 1, 2 },
      { "13-16",    "1",   6, 1024, 1, 27, 1, 2 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0",   0x7a0000, 1, 0, { { 0, 3 } } },
      { "4-7",   "0",   0x7a0000, 1, 0, { { 0, 52 } } },
      { "8",     "0",   0x7a0000, 1, 0, { { 0, 56 } } },
      { "8",     "1",   0x7c0000, 1, 0, { { 0, 56 } } },
      { "10,12", "0,1", 0x75000,  1, 0, { { 2, 5 } } },
      { "13",    "0,1", 0x63000,  1, 0, { { 0, 12 } } },
      { "14",    "0,1", 0x63000,  1, 0, { { 24, 36 } } },
      { "15,16", "0,1", 0x63000,  1, 0, { { 8, 20 } } },
   };
   expected.tags = {
      { "10,12-16", "0", { { "vmv", 1 }, { "tid", 4 }, { "entryType", 0 }, { "resultType", 9 } } },
      { "10,12-16", "1", { { "vmv", 1 }, { "tid", 2 }, { "entryType", 0 }, { "resultType", 9 } } },
   };
   // clang-format on
   return expected;
}

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( EsemMgmtReq, expectation() )

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

View over( unsigned chipType, unsigned variant, Image& image, bool existingEntry = false ) {
   return View( chip( chipType ), image.data(), static_cast<U16>( image.size() ), existingEntry,
                static_cast<U8>( variant ) );
}

bool passes( unsigned chipType, unsigned variant, const Image& image ) {
   return View::isEsemMgmtReq( chip( chipType ), image.data(), static_cast<U16>( image.size() ),
                               static_cast<U8>( variant ) );
}

// A buffer of `fill` with the tag of the pair.
Image stamped( unsigned chipType, unsigned variant, std::size_t size, U8 fill = 0 ) {
   Image image( size, fill );
   over( chipType, variant, image );
   return image;
}

const std::vector<unsigned> formatChips{ 10, 12, 13, 14, 15, 16 };

Address addressOf( unsigned chipType, unsigned variant, U32 tableEntry, unsigned identifier = 0 ) {
   return Testing::addressOf<View>( chip( chipType ), variant, identifier, tableEntry );
}

// What a key format has inside `entry`: `key` from bit 9, `payload`, and `vmv` on top of it.
struct Format {
   std::vector<unsigned> chips;
   unsigned variant;
   std::vector<Testing::Part> key;
   unsigned payloadOffset;
   std::vector<Testing::Part> payload;
   unsigned vmvOffset;
};

// `payload` up to its result type, which ends it.
std::vector<Testing::Part> payloadWith( const std::vector<Testing::Part>& target,
                                        unsigned resultTypeBits ) {
   std::vector<Testing::Part> parts{ { "egressLastLayer", 1 }, { "statObjectId", 17 },
                                     { "statObjectCmd", 5 },   { "outLifProfile", 6 },
                                     { "encapQosModel", 3 },   { "remarkProfile", 5 },
                                     { "nwkQosIdx", 11 },      { "vlanEditProfile", 6 },
                                     { "actionProfile", 2 } };
   parts.insert( parts.end(), target.begin(), target.end() );
   parts.push_back( { "resultType", resultTypeBits } );
   return parts;
}

const std::vector<Testing::Part> destination{ { "encapDestination", 24 } };
const std::vector<Testing::Part> vlans{ { "vlanEditVid1", 12 }, { "vlanEditVid2", 12 } };

// clang-format off
const std::vector<Format> formats{
   { { 10, 12, 13 }, 0, { { "fodo", 18 }, { "zeroPadding", 6 } },
                        59, payloadWith( destination, 6 ), 145 },
   { { 14 },         0, { { "fodo", 18 }, { "zeroPadding", 6 } },
                        58, payloadWith( destination, 7 ), 145 },
   { { 15, 16 },     0, { { "fodo", 18 }, { "zeroPadding", 6 } },
                        58, payloadWith( destination, 6 ), 144 },
   { { 10, 12 },     1, { { "cVid", 12 }, { "vlanDomain", 9 }, { "fodo", 18 },
                          { "zeroPadding", 1 } },
                        59, payloadWith( vlans, 6 ), 145 },
   { { 13 },         1, { { "cVid", 12 }, { "vlanDomain", 11 }, { "fodo", 18 } },
                        59, payloadWith( vlans, 6 ), 145 },
   { { 14 },         1, { { "cVid", 12 }, { "vlanDomain", 11 }, { "fodo", 18 } },
                        58, payloadWith( vlans, 7 ), 145 },
   { { 15, 16 },     1, { { "cVid", 12 }, { "vlanDomain", 11 }, { "fodo", 18 } },
                        58, payloadWith( vlans, 6 ), 144 },
};
// clang-format on

// Each pair with a key format, once.
void forEachFormat( const std::function<void( unsigned, unsigned, const Format& )>& visit ) {
   std::set<std::pair<unsigned, unsigned>> seen;
   for( const Format& format : formats ) {
      for( const unsigned chipType : format.chips ) {
         EXPECT_TRUE( seen.emplace( chipType, format.variant ).second ) << chipType;
         visit( chipType, format.variant, format );
      }
   }
   EXPECT_EQ( seen.size(), 6u * 2 );
}

// The tag of a pair, in place, and the bits it covers.
struct Tag {
   Bits value;
   Bits places;
};

Tag tagOf( unsigned chipType, unsigned variant ) {
   const unsigned tid = variant == 0 ? 4 : 2;
   if( chipType >= 15 ) {
      return { Bits( 1 ) << 144 | Bits( tid ) << 170 | Bits( 9 ) << 138,
               lowOnes( 1 ) << 144 | lowOnes( 6 ) << 170 | lowOnes( 3 ) << 167 |
                  lowOnes( 6 ) << 138 };
   }
   if( chipType == 14 ) {
      return { Bits( 1 ) << 145 | Bits( tid ) << 172 | Bits( 9 ) << 138,
               lowOnes( 1 ) << 145 | lowOnes( 6 ) << 172 | lowOnes( 3 ) << 169 |
                  lowOnes( 7 ) << 138 };
   }
   return { Bits( 1 ) << 145 | Bits( tid ) << 172 | Bits( 9 ) << 139,
            lowOnes( 1 ) << 145 | lowOnes( 6 ) << 172 | lowOnes( 3 ) << 169 | lowOnes( 6 ) << 139 };
}

TEST( EsemMgmtReq, KeyAndPayloadAreTiledOnEveryPairThatHasThem ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& format ) {
      Testing::expectParts( expectation(), chipType, variant, "key", 9, format.key );
      Testing::expectParts( expectation(), chipType, variant, "payload", format.payloadOffset,
                            format.payload );
      EXPECT_EQ( widthOf( format.key ), variant == 0 ? 24u : chipType <= 12 ? 40u : 41u );
      EXPECT_EQ( widthOf( format.payload ), chipType == 14 ? 87u : 86u );
   } );
}

TEST( EsemMgmtReq, EntryAloneReachesTheBitsBetweenKeyAndPayload ) {
   const std::set<std::string> frame{ "command", "entry", "wayIndex", "prefixNum",
                                      "address", "hits",  "found" };
   forEachFormat( [&]( unsigned chipType, unsigned variant, const Format& format ) {
      SCOPED_TRACE( std::to_string( chipType ) + ", " + std::to_string( variant ) );
      Image image( 24 );
      View view = over( chipType, variant, image );
      for( const Testing::FieldUnderTest& field : expectation().fields ) {
         if( field.valid( view ) && !field.readOnly && frame.count( field.name ) == 0 ) {
            field.mask( view );
         }
      }
      // `payload` ends directly under `vmv`, and `vmv` ends `entry`.
      const unsigned entryEnd = chipType >= 15 ? 145 : 146;
      EXPECT_EQ( format.payloadOffset + widthOf( format.payload ), format.vmvOffset );
      EXPECT_EQ( format.vmvOffset + 1, entryEnd );
      EXPECT_EQ( bitsAt( image, 0, entryEnd ),
                 lowOnes( widthOf( format.key ) ) << 9 | lowOnes( widthOf( format.payload ) + 1 )
                                                            << format.payloadOffset );
      view.entryMask();
      EXPECT_EQ( bitsAt( image, 0, entryEnd ), lowOnes( entryEnd - 9 ) << 9 );
      EXPECT_EQ( view.command(), 0 );
      EXPECT_EQ( view.wayIndex(), 0 );
      view.commandMask();
      view.wayIndexMask();
      EXPECT_EQ( bitsAt( image, 0, entryEnd + 4 ), lowOnes( entryEnd + 4 ) );
      EXPECT_EQ( view.prefixNum(), 0 );
   } );
}

TEST( EsemMgmtReq, KeyOfTheRegisterIsTiledUpToTwoBitsWithoutName ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      Testing::expectParts( expectation(), chipType, 0, "esemKey", 11,
                            { { "esemKeyCvid", 12 },
                              { "esemKeyVsi", 16 },
                              { "esemKeyVd", 8 },
                              { "esemKeyDbId", 1 } } );
   }
   const auto expectUnnamed = []( unsigned chipType, U8 variant ) {
      View::WithStorage view( chip( chipType ), variant );
      view.esemKeyMask();
      EXPECT_EQ( view.esemKey(), 0xffffffffffu );
      view.esemKeyCvidIs( 0 );
      view.esemKeyVsiIs( 0 );
      view.esemKeyVdIs( 0 );
      view.esemKeyDbIdIs( 0 );
      EXPECT_EQ( view.esemKey(), 0xc000000000u );
      EXPECT_EQ( view.buf()[6], 0x06 ); // bits 49 and 50
      view.esemKeyIs( 0 );
      view.esemKeyCvidIs( 0xabc );
      view.esemKeyVsiIs( 0x1234 );
      view.esemKeyVdIs( 0x155 );
      view.esemKeyDbIdIs( 1 );
      EXPECT_EQ( view.esemKey(), 0x3551234abcu );
   };
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      expectUnnamed( chipType, 0 );
   }
   expectUnnamed( 8, 1 );
}

TEST( EsemMgmtReq, ReservedLowIsTheUnionOfTheThreeFlags ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      Testing::expectParts(
         expectation(), chipType, 0, "esemReservedLow", 64,
         { { "esemAgeStatus", 2 }, { "esemSelf", 1 }, { "esemRefreshedByDsp", 1 } } );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u } ) {
      Testing::expectParts(
         expectation(), chipType, 0, "esemReservedLow", 68,
         { { "esemAgeStatus", 3 }, { "esemSelf", 1 }, { "esemRefreshedByDsp", 1 } } );
   }
   Testing::expectParts(
      expectation(), 8, 0, "esem0ReservedLow", 68,
      { { "esem0AgeStatus", 3 }, { "esem0Self", 1 }, { "esem0RefreshedByDsp", 1 } } );
   Testing::expectParts(
      expectation(), 8, 1, "esem1ReservedLow", 68,
      { { "esem1AgeStatus", 3 }, { "esem1Self", 1 }, { "esem1RefreshedByDsp", 1 } } );
}

TEST( EsemMgmtReq, MaskIsOneUnbrokenRun ) {
   const auto expectRun = []( unsigned chipType, unsigned variant, unsigned bits ) {
      const Raw4096 raw = View::allFieldsMask( chipType, static_cast<U8>( variant ) );
      const Image mask( raw.bytes(), raw.bytes() + 24 );
      EXPECT_EQ( bitsAt( mask, 0, 192 ), lowOnes( bits ) ) << chipType << ", " << variant;
      Image ones( 24 );
      const View view = over( chipType, variant, ones );
      std::fill( ones.begin(), ones.end(), U8{ 0xff } );
      EXPECT_EQ( Testing::toBits( view.getAllFields() ), lowOnes( bits ) );
   };
   for( const unsigned chipType : { 2u, 3u } ) {
      expectRun( chipType, 0, 68 );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      expectRun( chipType, 0, 73 );
   }
   expectRun( 8, 1, 73 );
   for( const unsigned variant : { 0u, 1u } ) {
      for( const unsigned chipType : { 10u, 12u, 13u, 14u } ) {
         expectRun( chipType, variant, 183 );
      }
      for( const unsigned chipType : { 15u, 16u } ) {
         expectRun( chipType, variant, 181 );
      }
   }
}

TEST( EsemMgmtReq, WholeEntryAsksForTheClassWideSizeOfARegisterToo ) {
   for( const unsigned chipType : { 2u, 3u, 4u, 5u, 6u, 7u, 8u } ) {
      Image twelve( 12 );
      EXPECT_EQ( expressionOf( [&] { over( chipType, 0, twelve ).getAllFields(); } ),
                 "len_ >= 24" );
      Image whole( 24 );
      EXPECT_EQ( expressionOf( [&] { over( chipType, 0, whole ).getAllFields(); } ), "none" );
   }
}

TEST( EsemMgmtReq, MetadataRefusesOtherPairs ) {
   for( const unsigned chipType : { 2u, 3u, 4u, 5u, 6u, 7u } ) {
      EXPECT_EQ( expressionOf( [&] { View::fieldCount( chipType, 1 ); } ), "variant == 0" );
   }
   for( const unsigned chipType : { 8u, 10u, 12u, 13u, 14u, 15u, 16u } ) {
      EXPECT_EQ( expressionOf( [&] { View::fieldCount( chipType, 2 ); } ), "0" );
   }
   for( const unsigned chipType : { 0u, 1u, 9u, 11u, 17u, 21u } ) {
      EXPECT_EQ( expressionOf( [&] { View::fieldCount( chipType, 0 ); } ), "0" );
   }
}

TEST( EsemMgmtReq, FirstRegisterOfChipType8HasSecondNames ) {
   View::WithStorage view( Hardware::BCM88680_A0, 0 );
   // Nothing is stamped: the caller sets the type.
   EXPECT_EQ( Image( view.buf(), view.buf() + 24 ), Image( 24 ) );
   EXPECT_EQ( view.esem0Type(), 0 );
   view.esem0TypeIs( 5 );
   view.esem0KeyIs( 0xfedcba9876 );
   view.esem0PayloadIs( 0x1cdef );
   EXPECT_EQ( view.esemType(), 5 );
   EXPECT_EQ( view.esemKey(), 0xfedcba9876u );
   EXPECT_EQ( view.esemKeyCvid(), 0x876 );
   EXPECT_EQ( view.esemKeyVsi(), 0xcba9 );
   EXPECT_EQ( view.esemPayload(), 0x1cdefu );
   view.esemTypeIs( 2 );
   view.esemKeyIs( 0x123456789a );
   view.esemPayloadIs( 0x0f00d );
   EXPECT_EQ( view.esem0Type(), 2 );
   EXPECT_EQ( view.esem0Key(), 0x123456789au );
   EXPECT_EQ( view.esem0Payload(), 0x0f00du );
   view.esem0StampIs( 0xa5 );
   EXPECT_EQ( view.esem0Stamp(), 0xa5 );

   EXPECT_EQ( expressionOf( [&] { view.esem1Type(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1StampIs( 0 ); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1Key(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1PayloadMask(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1ReservedLowOffset(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1AgeStatus(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1Self(); } ), "variant_ == 1" );
   EXPECT_EQ( expressionOf( [&] { view.esem1RefreshedByDsp(); } ), "variant_ == 1" );
}

TEST( EsemMgmtReq, SecondRegisterOfChipType8HasSecondNames ) {
   View::WithStorage view( Hardware::BCM88680_A0, 1 );
   EXPECT_EQ( Image( view.buf(), view.buf() + 24 ), Image( 24 ) );
   view.esem1TypeIs( 5 );
   view.esem1KeyIs( 0xfedcba9876 );
   view.esem1PayloadIs( 0x1cdef );
   EXPECT_EQ( view.esemType(), 5 );
   EXPECT_EQ( view.esemKey(), 0xfedcba9876u );
   EXPECT_EQ( view.esemPayload(), 0x1cdefu );
   view.esemTypeIs( 2 );
   view.esemKeyIs( 0x123456789a );
   view.esemPayloadIs( 0x0f00d );
   EXPECT_EQ( view.esem1Type(), 2 );
   EXPECT_EQ( view.esem1Key(), 0x123456789au );
   EXPECT_EQ( view.esem1Payload(), 0x0f00du );
   view.esem1StampIs( 0xa5 );
   EXPECT_EQ( view.esem1Stamp(), 0xa5 );

   EXPECT_EQ( expressionOf( [&] { view.esem0Type(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0StampIs( 0 ); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0Key(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0PayloadMask(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0ReservedLowOffset(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0AgeStatus(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0Self(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { view.esem0RefreshedByDsp(); } ), "variant_ == 0" );
}

TEST( EsemMgmtReq, CommonNamesOfChipType8EndAtThePayload ) {
   const std::set<std::string> common{ "esemType",  "esemKey",     "esemKeyCvid", "esemKeyVsi",
                                       "esemKeyVd", "esemKeyDbId", "esemPayload" };
   for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
      View::WithStorage view( Hardware::BCM88680_A0, variant );
      const std::string prefix = variant == 0 ? "esem0" : "esem1";
      std::set<std::string> present = common;
      for( const char* const name : { "Type", "Stamp", "Key", "Payload", "ReservedLow", "AgeStatus",
                                      "Self", "RefreshedByDsp" } ) {
         present.insert( prefix + name );
      }
      for( const Testing::FieldUnderTest& field : expectation().fields ) {
         EXPECT_EQ( field.valid( view ), present.count( field.name ) == 1 ) << field.name;
      }
      EXPECT_EQ( expressionOf( [&] { view.esemStamp(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.esemReservedLow(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.esemAgeStatus(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.esemSelf(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.esemRefreshedByDsp(); } ), "0" );
   }
   for( const unsigned chipType : { 2u, 3u, 4u, 5u, 6u, 7u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_TRUE( view.isEsemStampValid() );
      EXPECT_TRUE( view.isEsemReservedLowValid() );
      EXPECT_TRUE( view.isEsemAgeStatusValid() );
      EXPECT_TRUE( view.isEsemSelfValid() );
      EXPECT_TRUE( view.isEsemRefreshedByDspValid() );
      EXPECT_EQ( expressionOf( [&] { view.esem0Type(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.esem1Type(); } ), "0" );
   }
}

TEST( EsemMgmtReq, FieldsOfOneVariantNameIt ) {
   for( const unsigned chipType : formatChips ) {
      View::WithStorage zero( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { zero.cVid(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { zero.vlanDomainIs( 0 ); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { zero.vlanEditVid1Mask(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { zero.vlanEditVid2Offset(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { zero.fieldOffset( 51 ); } ), "variant_ == 1" );
      EXPECT_EQ( zero.fieldWidth( 51 ), 0 );
      const auto failure = failureOf( [&] { zero.vlanEditVid1Len(); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
      EXPECT_TRUE( failure->message &&
                   failure->message->ends_with( " does not have field VLAN_EDIT_VID_1" ) );

      View::WithStorage one( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { one.encapDestination(); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { one.encapDestinationIs( 0 ); } ), "variant_ == 0" );
      // All other fields that the pair lacks fail with "0".
      EXPECT_EQ( expressionOf( [&] { one.esemType(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { zero.esem0Type(); } ), "0" );
   }
   // `zeroPadding` is in both variants of chip types 10 and 12.
   for( const unsigned chipType : { 10u, 12u } ) {
      View::WithStorage one( chip( chipType ), 1 );
      one.zeroPaddingIs( 1 );
      EXPECT_EQ( one.key(), 0x8000000000u );
      EXPECT_EQ( expressionOf( [&] { one.zeroPaddingIs( 2 ); } ), "zeroPadding <= 0x1" );
   }
   for( const unsigned chipType : { 13u, 14u, 15u, 16u } ) {
      View::WithStorage one( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { one.zeroPadding(); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { one.zeroPaddingIs( 0 ); } ), "variant_ == 0" );
   }
   View::WithStorage old( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { old.cVid(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { old.encapDestination(); } ), "0" );
}

TEST( EsemMgmtReq, KeysAssertTheirBound ) {
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { two.esemKeyIs( 0x2000000000 ); } ), "esemKey <= 0x1fffffffff" );
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.esemKeyIs( 0x10000000000 ); } ),
                 "esemKey <= 0xffffffffff" );
   }
   View::WithStorage first( Hardware::BCM88680_A0, 0 );
   EXPECT_EQ( expressionOf( [&] { first.esem0KeyIs( 0x10000000000 ); } ),
              "esem0Key <= 0xffffffffff" );
   View::WithStorage second( Hardware::BCM88680_A0, 1 );
   EXPECT_EQ( expressionOf( [&] { second.setField64( 121, 0x10000000000 ); } ),
              "esem1Key <= 0xffffffffff" );
   for( const unsigned chipType : formatChips ) {
      View::WithStorage zero( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { zero.keyIs( 0x1000000 ); } ), "key <= 0xffffff" );
      View::WithStorage one( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { one.keyIs( 0x20000000000 ); } ),
                 chipType <= 12 ? "key <= 0xffffffffff" : "key <= 0x1ffffffffff" );
   }
}

TEST( EsemMgmtReq, ExactByteWidthsLoseUpperBitsSilently ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.esemKeyVdIs( 0x1ff );
      EXPECT_EQ( view.esemKeyVd(), 0xff );
      EXPECT_EQ( view.esemKeyDbId(), 0 );
      view.setField64( 132, 0xab12 );
      EXPECT_EQ( view.esemKeyVd(), 0x12 );
      view.esemPayloadIs( 0xfff12345 );
      EXPECT_EQ( view.esemPayload(), 0x2345u );
      EXPECT_EQ( view.esemReservedLow(), 0 );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.esemKeyVdIs( 0x1ff );
      EXPECT_EQ( view.esemKeyVd(), 0x1ff );
      EXPECT_EQ( expressionOf( [&] { view.esemKeyVdIs( 0x200 ); } ), "esemKeyVd <= 0x1ff" );
      EXPECT_EQ( expressionOf( [&] { view.esemPayloadIs( 0x20000 ); } ), "esemPayload <= 0x1ffff" );
   }
   for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
      for( const unsigned chipType : { 15u, 16u } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.addressIs( 0xabcd1234 );
         EXPECT_EQ( view.address(), 0x1234u );
         EXPECT_EQ( view.entryType(), 0 );
      }
      for( const unsigned chipType : { 10u, 12u, 13u, 14u } ) {
         View::WithStorage view( chip( chipType ), variant );
         EXPECT_EQ( expressionOf( [&] { view.addressIs( 0x20000 ); } ), "address <= 0x1ffff" );
      }
   }
}

TEST( EsemMgmtReq, PayloadStepsByOneBitBetweenSiblings ) {
   struct Row {
      unsigned chipType;
      unsigned statObjectId;
      unsigned resultType;
      unsigned resultTypeBits;
      unsigned vmv;
   };
   for( const Row& row :
        { Row{ 10, 60, 139, 6, 145 }, Row{ 12, 60, 139, 6, 145 }, Row{ 13, 60, 139, 6, 145 },
          Row{ 14, 59, 138, 7, 145 }, Row{ 15, 59, 138, 6, 144 }, Row{ 16, 59, 138, 6, 144 } } ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         const View::WithStorage view( chip( row.chipType ), variant );
         EXPECT_EQ( view.statObjectIdOffset(), row.statObjectId );
         EXPECT_EQ( view.statObjectIdLen(), 17 );
         EXPECT_EQ( view.resultTypeOffset(), row.resultType );
         EXPECT_EQ( view.resultTypeLen(), row.resultTypeBits );
         EXPECT_EQ( view.vmvOffset(), row.vmv );
         EXPECT_EQ( view.vmvLen(), 1 );
      }
   }
   // Chip types 10 and 14 share the frame, and read the same bits differently inside it.
   Image image( 24 );
   Testing::bitsAtAre( image, 60, 17, Bits( 0x1abcd ) );
   EXPECT_EQ( over( 10, 0, image ).statObjectId(), 0x1abcdu );
   EXPECT_EQ( over( 14, 0, image ).statObjectId(), 0x1579au );
   EXPECT_EQ( over( 14, 0, image ).statObjectCmd(), 1 );
   EXPECT_EQ( over( 10, 0, image ).tidOffset(), 172 );
   EXPECT_EQ( over( 14, 0, image ).tidOffset(), 172 );
   EXPECT_EQ( over( 15, 0, image ).tidOffset(), 170 );
}

TEST( EsemMgmtReq, WideFieldsAreReadByWord ) {
   for( const unsigned chipType : formatChips ) {
      View::WithStorage view( chip( chipType ), 0 );
      for( const unsigned identifier : { 94u, 277u } ) {
         EXPECT_EQ( expressionOf( [&] { view.setField64( identifier, 0 ); } ), "false" );
      }
      for( const char* const name : { "entry", "payload" } ) {
         const auto failure = failureOf( [&] { view.stringFieldIs( name, 0 ); } );
         ASSERT_TRUE( failure );
         EXPECT_EQ( failure->expression, "false" );
         EXPECT_FALSE( failure->message );
      }
      view.payloadIs( Raw128{ { 0x1111222233334444, ~U64{ 0 } } } );
      EXPECT_EQ( view.stringField( "payload", 0 ), 0x1111222233334444u );
      EXPECT_EQ( view.stringField( "payload", 1 ), chipType == 14 ? 0x7fffffu : 0x3fffffu );
      EXPECT_EQ( view.vmv(), 1 );
   }
}

TEST( EsemMgmtReq, TagFieldsCannotBeSet ) {
   View::WithStorage view( Hardware::BCM88690_B0, 1 );
   for( const unsigned identifier : { 111u, 296u, 338u, 360u } ) {
      EXPECT_EQ( expressionOf( [&] { view.setField64( identifier, 0 ); } ), "false" );
      EXPECT_TRUE( view.isFieldValid( identifier ) );
   }
   for( const char* const name : { "tid", "entryType", "vmv", "resultType" } ) {
      const auto failure = failureOf( [&] { view.stringFieldIs( name, 0 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"false\" == nullptr" );
      EXPECT_EQ( failure->message, "fieldName not found or is const." );
   }
   EXPECT_EQ( view.stringField( "vmv", 0 ), 1u );
   EXPECT_EQ( view.stringField( "tid", 0 ), 2u );
   EXPECT_EQ( view.stringField( "entryType", 0 ), 0u );
   EXPECT_EQ( view.stringField( "resultType", 0 ), 9u );
}

TEST( EsemMgmtReq, EntryAndPayloadOverwriteTheTagInsideThem ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& ) {
      const U8 tid = variant == 0 ? 4 : 2;
      View::WithStorage view( chip( chipType ), static_cast<U8>( variant ) );
      view.payloadIs( Raw128{} );
      EXPECT_EQ( view.resultType(), 0 );
      EXPECT_EQ( view.vmv(), 1 );
      view.payloadMask();
      EXPECT_EQ( view.resultType(), chipType == 14 ? 0x7f : 0x3f );
      EXPECT_EQ( view.vmv(), 1 );
      view.entryIs( Raw256{} );
      EXPECT_EQ( view.resultType(), 0 );
      EXPECT_EQ( view.vmv(), 0 );
      view.entryMask();
      EXPECT_EQ( view.resultType(), chipType == 14 ? 0x7f : 0x3f );
      EXPECT_EQ( view.vmv(), 1 );
      // No setter reaches the two above `entry`.
      for( const Testing::FieldUnderTest& field : expectation().fields ) {
         if( field.valid( view ) && !field.readOnly ) {
            field.mask( view );
            EXPECT_EQ( view.tid(), tid ) << field.name;
            EXPECT_EQ( view.entryType(), 0 ) << field.name;
            field.set( view, Bits() );
            EXPECT_EQ( view.tid(), tid ) << field.name;
         }
      }
   } );
}

TEST( EsemMgmtReq, StampTouchesTheTagFieldsAlone ) {
   for( const unsigned chipType : formatChips ) {
      for( const unsigned variant : { 0u, 1u } ) {
         SCOPED_TRACE( std::to_string( chipType ) + ", " + std::to_string( variant ) );
         const Tag tag = tagOf( chipType, variant );
         EXPECT_EQ( bitsAt( stamped( chipType, variant, 24 ), 0, 192 ), tag.value );
         EXPECT_EQ( bitsAt( stamped( chipType, variant, 24, 0xff ), 0, 192 ),
                    ( lowOnes( 192 ) & ~tag.places ) | tag.value );
         Image image( 24, 0xff );
         const View view = over( chipType, variant, image );
         EXPECT_EQ( view.vmv(), 1 );
         EXPECT_EQ( view.tid(), variant == 0 ? 4 : 2 );
         EXPECT_EQ( view.entryType(), 0 );
         EXPECT_EQ( view.resultType(), 9 );
      }
      // The variants differ in `tid` alone.
      const unsigned tid = chipType >= 15 ? 170 : 172;
      EXPECT_EQ( bitsAt( stamped( chipType, 0, 24 ), 0, 192 ) ^
                    bitsAt( stamped( chipType, 1, 24 ), 0, 192 ),
                 Bits( 4 ^ 2 ) << tid );
   }
}

TEST( EsemMgmtReq, ShortBufferIsRefusedBeforeTheStampThatDoesNotFit ) {
   for( const unsigned chipType : formatChips ) {
      const unsigned whole = chipType >= 15 ? 22 : 23;
      for( const unsigned variant : { 0u, 1u } ) {
         for( unsigned len = 0; len <= 24; ++len ) {
            Image image( len, 0x00 );
            const std::string expression =
               expressionOf( [&] { over( chipType, variant, image ); } );
            if( len < 19 ) {
               EXPECT_EQ( expression, "len_ >= 19" );
               EXPECT_EQ( image, Image( len ) );
            } else if( len < whole ) {
               EXPECT_EQ( expression, whole == 22 ? "len_ >= 22" : "len_ >= 23" );
               // `vmv` is written already, and nothing else.
               Image right( len );
               right[18] = chipType >= 15 ? 0x01 : 0x02;
               EXPECT_EQ( image, right ) << chipType << ", " << len;
            } else {
               EXPECT_EQ( expression, "none" );
            }
         }
      }
   }
}

TEST( EsemMgmtReq, ExistingEntryIsTestedInTheOrderOfTheStamps ) {
   const auto refusal = []( unsigned chipType, Image image ) {
      const Image before = image;
      const std::string expression = expressionOf( [&] { over( chipType, 0, image, true ); } );
      EXPECT_EQ( image, before );
      return expression;
   };
   const std::string head = "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), ";
   Image image = stamped( 10, 0, 24, 0x5a );
   EXPECT_EQ( refusal( 10, image ), "none" );
   Testing::bitsAtAre( image, 139, 6, Bits( 8 ) );
   EXPECT_EQ( refusal( 10, image ), head + "6, 139 ); ( n == 9 ); })" );
   Testing::bitsAtAre( image, 169, 3, Bits( 1 ) );
   EXPECT_EQ( refusal( 10, image ), head + "3, 169 ); ( n == 0 ); })" );
   Testing::bitsAtAre( image, 172, 6, Bits( 2 ) );
   EXPECT_EQ( refusal( 10, image ), head + "6, 172 ); ( n == 4 ); })" );
   Testing::bitsAtAre( image, 145, 1, Bits( 0 ) );
   EXPECT_EQ( refusal( 10, image ), head + "1, 145 ); ( n == 1 ); })" );

   image = stamped( 14, 0, 24, 0x5a );
   EXPECT_EQ( refusal( 14, image ), "none" );
   Testing::bitsAtAre( image, 138, 7, Bits( 0x49 ) );
   EXPECT_EQ( refusal( 14, image ), head + "7, 138 ); ( n == 9 ); })" );

   image = stamped( 15, 0, 24, 0x5a );
   EXPECT_EQ( refusal( 15, image ), "none" );
   Testing::bitsAtAre( image, 138, 6, Bits( 0 ) );
   EXPECT_EQ( refusal( 15, image ), head + "6, 138 ); ( n == 9 ); })" );
   Testing::bitsAtAre( image, 167, 3, Bits( 7 ) );
   EXPECT_EQ( refusal( 15, image ), head + "3, 167 ); ( n == 0 ); })" );
   Testing::bitsAtAre( image, 170, 6, Bits( 5 ) );
   EXPECT_EQ( refusal( 15, image ), head + "6, 170 ); ( n == 4 ); })" );
   Testing::bitsAtAre( image, 144, 1, Bits( 0 ) );
   EXPECT_EQ( refusal( 15, image ), head + "1, 144 ); ( n == 1 ); })" );
}

TEST( EsemMgmtReq, AddressesTellRegistersApartAndNotKeyFormats ) {
   EXPECT_EQ( addressOf( 2, 0, 0 ), ( Address{ 0x7a0000, 0, 3 } ) );
   EXPECT_EQ( addressOf( 7, 0, 0 ), ( Address{ 0x7a0000, 0, 52 } ) );
   EXPECT_EQ( addressOf( 8, 0, 0 ), ( Address{ 0x7a0000, 0, 56 } ) );
   EXPECT_EQ( addressOf( 8, 1, 0 ), ( Address{ 0x7c0000, 0, 56 } ) );
   for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
      EXPECT_EQ( addressOf( 10, variant, 1023 ), ( Address{ 0x753ff, 2, 5 } ) );
      EXPECT_EQ( addressOf( 12, variant, 0 ), ( Address{ 0x75000, 2, 5 } ) );
      EXPECT_EQ( addressOf( 13, variant, 1023 ), ( Address{ 0x633ff, 0, 12 } ) );
      EXPECT_EQ( addressOf( 14, variant, 1023 ), ( Address{ 0x633ff, 24, 36 } ) );
      EXPECT_EQ( addressOf( 15, variant, 1023 ), ( Address{ 0x633ff, 8, 20 } ) );
      EXPECT_EQ( addressOf( 16, variant, 1 ), ( Address{ 0x63001, 8, 20 } ) );
      EXPECT_EQ( expressionOf( [&] { addressOf( 8, variant, 1 ); } ), "tableEntry < 1" );
      EXPECT_EQ( expressionOf( [&] { addressOf( 8, variant, 0, 1 ); } ), "identifier <= 0" );
      EXPECT_EQ( expressionOf( [&] { addressOf( 14, variant, 1024 ); } ), "tableEntry < 1024" );
      EXPECT_EQ( expressionOf( [&] { addressOf( 14, variant, 0, 1 ); } ), "identifier <= 0" );
   }
}

TEST( EsemMgmtReq, DiscriminatorRefusesOtherChips ) {
   const Image image = stamped( 10, 1, 24 );
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      if( chipType <= 1 || chipType == 9 || chipType == 11 || chipType > 16 ) {
         EXPECT_FALSE( passes( chipType, 1, image ) ) << chipType;
         EXPECT_FALSE( View::isEsemMgmtReq( chip( chipType ), nullptr, 0, 255 ) ) << chipType;
      }
   }
}

TEST( EsemMgmtReq, DiscriminatorPassesWhatHasNoTag ) {
   for( unsigned variant = 0; variant < 256; ++variant ) {
      const U8 number = static_cast<U8>( variant );
      for( const unsigned chipType : { 2u, 3u, 4u, 5u, 6u, 7u, 8u } ) {
         EXPECT_TRUE( View::isEsemMgmtReq( chip( chipType ), nullptr, 0, number ) );
         EXPECT_TRUE( View::isEsemMgmtReq( chip( chipType ), nullptr, 24, number ) );
      }
      for( const unsigned chipType : formatChips ) {
         // Without reading: a null buffer may claim any length.
         EXPECT_EQ( View::isEsemMgmtReq( chip( chipType ), nullptr, 0, number ), variant > 1 );
         if( variant > 1 ) {
            EXPECT_TRUE( View::isEsemMgmtReq( chip( chipType ), nullptr, 24, number ) );
         }
      }
   }
}

TEST( EsemMgmtReq, DiscriminatorStopsWhereTheBufferEnds ) {
   for( const unsigned chipType : formatChips ) {
      const unsigned whole = chipType >= 15 ? 22 : 23;
      for( const unsigned variant : { 0u, 1u } ) {
         const U8 number = static_cast<U8>( variant );
         // Below 19 bytes nothing is read.
         for( U16 len = 0; len < 19; ++len ) {
            EXPECT_FALSE( View::isEsemMgmtReq( chip( chipType ), nullptr, len, number ) );
         }
         // From 19 on `vmv` is; the rest when there is room for `tid`.
         const Image entry = stamped( chipType, variant, 24 );
         for( unsigned len = 0; len <= 24; ++len ) {
            const Image image( entry.begin(), entry.begin() + len );
            EXPECT_EQ( passes( chipType, variant, image ), len >= whole )
               << chipType << ", " << variant << ", " << len;
            if( len >= 19 ) {
               Image wrong = image;
               wrong[18] ^= chipType >= 15 ? 0x01 : 0x02;
               EXPECT_FALSE( passes( chipType, variant, wrong ) );
            }
         }
      }
   }
   EXPECT_TRUE( passes( 15, 0, stamped( 15, 0, 22 ) ) );
   EXPECT_FALSE( passes( 10, 0, Image( 22 ) ) );
}

TEST( EsemMgmtReq, DiscriminatorComparesAllOfTheTagAndNothingElse ) {
   for( const unsigned chipType : formatChips ) {
      for( const unsigned variant : { 0u, 1u } ) {
         const Image entry = stamped( chipType, variant, 24, 0x5a );
         const Bits places = tagOf( chipType, variant ).places;
         for( unsigned bit = 0; bit < 192; ++bit ) {
            Image image = entry;
            Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
            EXPECT_EQ( passes( chipType, variant, image ), !places[bit] )
               << chipType << ", " << variant << " bit " << bit;
         }
         EXPECT_FALSE( passes( chipType, 1 - variant, entry ) );
         EXPECT_TRUE( passes( chipType, 2, entry ) );
      }
   }
}

TEST( EsemMgmtReq, FromTheRegistry ) {
   const auto view = Hardware::stringObj( "EsemMgmtReq", Hardware::BCM88680_A0, 1 );
   EXPECT_EQ( view->len(), 24 );
   EXPECT_EQ( view->width(), 3 );
   EXPECT_EQ( view->entries(), 1u );
   EXPECT_FALSE( Hardware::chipTypeVariantValid( "EsemMgmtReq", Hardware::BCM88470_B0, 1 ) );
   EXPECT_TRUE( Hardware::chipTypeVariantValid( "EsemMgmtReq", Hardware::BCM88480_B0, 1 ) );
}

} // namespace
