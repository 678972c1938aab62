// EsemMgmtReq: one or two registers on chip types 2 to 8, tagged key formats in one memory later.
#include "support/Contract.h"

#include <Hardware/EsemMgmtReq.h>

namespace {

using View = Hardware::EsemMgmtReq;
using Testing::expressionOf;

Testing::Expectation expectation() {
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

CONTRACT_TESTS( EsemMgmtReq, expectation() )

TEST( EsemMgmtReq, FirstRegisterOfChipType8HasSecondNames ) {
   View::WithStorage view( Hardware::BCM88680_A0, 0 );
   view.esem0TypeIs( 5 );
   view.esem0KeyIs( 0xfedcba9876 );
   EXPECT_EQ( view.esemType(), 5 );
   EXPECT_EQ( view.esemKey(), 0xfedcba9876u );
   EXPECT_EQ( view.esemKeyCvid(), 0x876 );
   EXPECT_EQ( view.esemKeyVsi(), 0xcba9 );
   view.esemPayloadIs( 0x0f00d );
   EXPECT_EQ( view.esem0Payload(), 0x0f00du );
   EXPECT_EQ( expressionOf( [&] { view.esem1Key(); } ), "variant_ == 1" );
}

} // namespace
