// IsemMgmtReq: a register on chip types 2 to 8, tagged key formats in three memories on later ones.
#include "support/Contract.h"

#include <Hardware/IsemMgmtReq.h>

namespace {

using View = Hardware::IsemMgmtReq;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IsemMgmtReq" );
   expected.storageBytes = 24;
   expected.discriminator = View::isIsemMgmtReq;
   expected.fields = {
      NARROW_FIELD( U32, ipv4Dip, Ipv4Dip, 183, "IPV4_DIP" ),
      NARROW_FIELD( U16, isaPayload, IsaPayload, 195, "ISA_PAYLOAD" ),
      NARROW_FIELD( U16, isemKeyInAcVd, IsemKeyInAcVd, 205, "ISEM_KEY_IN_AC_VD" ),
      WIDE_FIELD( Raw128, ipv6, Ipv6, 182, "IPV6" ),
      NARROW_FIELD( U32, fodoVsi, FodoVsi, 147, "FODO_VSI" ),
      NARROW_FIELD( U16, nextLayerNetworkDomain, NextLayerNetworkDomain, 252,
                    "NEXT_LAYER_NETWORK_DOMAIN" ),
      NARROW_FIELD( U32, mplsLabel, MplsLabel, 248, "MPLS_LABEL" ),
      NARROW_FIELD( U64, isemKey, IsemKey, 202, "ISEM_KEY" ),
      NARROW_FIELD( U8, found, Found, 151, "FOUND" ),
      READ_ONLY_FIELD( U8, tid, Tid, 338, "TID" ),
      NARROW_FIELD( U8, ipv4TunnelType, Ipv4TunnelType, 186, "IPV4_TUNNEL_TYPE" ),
      NARROW_FIELD( U8, directExtractionPdResultType, DirectExtractionPdResultType, 69,
                    "DIRECT_EXTRACTION_PD_RESULT_TYPE" ),
      NARROW_FIELD( U32, isemPayload, IsemPayload, 210, "ISEM_PAYLOAD" ),
      NARROW_FIELD( U16, cVid, CVid, 51, "C_VID" ),
      NARROW_FIELD( U8, isaStamp, IsaStamp, 199, "ISA_STAMP" ),
      NARROW_FIELD( U16, zeroPadding, ZeroPadding, 368, "ZERO_PADDING" ),
      NARROW_FIELD( U8, isemReservedLow, IsemReservedLow, 212, "ISEM_RESERVED_LOW" ),
      NARROW_FIELD( U32, inLif, InLif, 173, "IN_LIF" ),
      NARROW_FIELD( U8, isemStamp, IsemStamp, 214, "ISEM_STAMP" ),
      NARROW_FIELD( U16, isemKeyInAcVid, IsemKeyInAcVid, 206, "ISEM_KEY_IN_AC_VID" ),
      NARROW_FIELD( U8, fodoPdResultType, FodoPdResultType, 146, "FODO_PD_RESULT_TYPE" ),
      NARROW_FIELD( U8, wayIndex, WayIndex, 367, "WAY_INDEX" ),
      NARROW_FIELD( U16, sVid, SVid, 322, "S_VID" ),
      NARROW_FIELD( U8, isemKeyInAcInnerOrOuter, IsemKeyInAcInnerOrOuter, 203,
                    "ISEM_KEY_IN_AC_INNER_OR_OUTER" ),
      NARROW_FIELD( U8, isemType, IsemType, 215, "ISEM_TYPE" ),
      NARROW_FIELD( U8, isaSelf, IsaSelf, 198, "ISA_SELF" ),
      NARROW_FIELD( U16, vrf, Vrf, 362, "VRF" ),
      NARROW_FIELD( U8, isaType, IsaType, 200, "ISA_TYPE" ),
      NARROW_FIELD( U32, payload, Payload, 277, "PAYLOAD" ),
      NARROW_FIELD( U64, isaKey, IsaKey, 194, "ISA_KEY" ),
      NARROW_FIELD( U16, isemKeyInAcInnerVid, IsemKeyInAcInnerVid, 204,
                    "ISEM_KEY_IN_AC_INNER_VID" ),
      NARROW_FIELD( U16, ipv6AddressMsbsId, Ipv6AddressMsbsId, 187, "IPV6_ADDRESS_MSBS_ID" ),
      READ_ONLY_FIELD( U8, entryType, EntryType, 111, "ENTRY_TYPE" ),
      NARROW_FIELD( U32, vni, Vni, 361, "VNI" ),
      NARROW_FIELD( U8, isemRefreshedByDsp, IsemRefreshedByDsp, 211, "ISEM_REFRESHED_BY_DSP" ),
      NARROW_FIELD( U16, command, Command, 47, "COMMAND" ),
      WIDE_FIELD( Raw256, entry, Entry, 94, "ENTRY" ),
      NARROW_FIELD( U8, isaReservedLow, IsaReservedLow, 197, "ISA_RESERVED_LOW" ),
      NARROW_FIELD( U16, isemKeyTcamSharingVid, IsemKeyTcamSharingVid, 208,
                    "ISEM_KEY_TCAM_SHARING_VID" ),
      NARROW_FIELD( U8, hits, Hits, 165, "HITS" ),
      NARROW_FIELD( U8, mplsBos, MplsBos, 247, "MPLS_BOS" ),
      NARROW_FIELD( U8, isemSelf, IsemSelf, 213, "ISEM_SELF" ),
      NARROW_FIELD( U8, prefixNum, PrefixNum, 285, "PREFIX_NUM" ),
      NARROW_FIELD( U16, isemKeyTcamSharingVd, IsemKeyTcamSharingVd, 207,
                    "ISEM_KEY_TCAM_SHARING_VD" ),
      NARROW_FIELD( U16, vidOuterVlan, VidOuterVlan, 347, "VID_OUTER_VLAN" ),
      NARROW_FIELD( U8, isaRefreshedByDsp, IsaRefreshedByDsp, 196, "ISA_REFRESHED_BY_DSP" ),
      NARROW_FIELD( U32, ipv6MpTunnelIdx, Ipv6MpTunnelIdx, 189, "IPV6_MP_TUNNEL_IDX" ),
      NARROW_FIELD( U8, isaAgeStatus, IsaAgeStatus, 193, "ISA_AGE_STATUS" ),
      NARROW_FIELD( U16, vlanDomain, VlanDomain, 351, "VLAN_DOMAIN" ),
      WIDE_FIELD( Raw128, key, Key, 227, "KEY" ),
      NARROW_FIELD( U32, address, Address, 27, "ADDRESS" ),
      READ_ONLY_FIELD( U8, vmv, Vmv, 360, "VMV" ),
      NARROW_FIELD( U8, isemAgeStatus, IsemAgeStatus, 201, "ISEM_AGE_STATUS" ),
      NARROW_FIELD( U8, isemKeyTunnelType, IsemKeyTunnelType, 209, "ISEM_KEY_TUNNEL_TYPE" ),
      NARROW_FIELD( U32, ipv4Sip, Ipv4Sip, 184, "IPV4_SIP" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      // Chip types 2 to 8: the register.
      { "0", { "2,3", "4,5,8", "6,7" }, {
         { "isaType",                 { "0:3",   "-",     "-"     } },
         { "isemType",                { "0:3",   "0:3",   "0:3"   } },
         { "isaStamp",                { "3:8",   "-",     "-"     } },
         { "isemStamp",               { "-",     "3:8",   "3:8"   } },
         { "isaKey",                  { "11:41", "-",     "-"     } },
         { "isemKey",                 { "11:41", "11:50", "11:50" } },
         { "isemKeyInAcVd",           { "11:8",  "11:9",  "11:9"  } },
         { "isemKeyTcamSharingVd",    { "11:8",  "11:9",  "11:9"  } },
         { "isemKeyTcamSharingVid",   { "19:12", "20:12", "20:12" } },
         { "isemKeyInAcInnerOrOuter", { "19:2",  "20:2",  "20:2"  } },
         { "isemKeyInAcVid",          { "21:12", "22:12", "22:12" } },
         { "isemKeyInAcInnerVid",     { "33:12", "34:12", "34:12" } },
         { "isemKeyTunnelType",       { "48:4",  "55:6",  "55:6"  } },
         { "isaPayload",              { "52:16", "-",     "-"     } },
         { "isemPayload",             { "52:16", "61:17", "61:16" } },
         { "isaReservedLow",          { "68:4",  "-",     "-"     } },
         { "isaAgeStatus",            { "68:2",  "-",     "-"     } },
         { "isaSelf",                 { "70:1",  "-",     "-"     } },
         { "isaRefreshedByDsp",       { "71:1",  "-",     "-"     } },
         { "isemReservedLow",         { "-",     "78:5",  "77:5"  } },
         { "isemAgeStatus",           { "-",     "78:3",  "77:3"  } },
         { "isemSelf",                { "-",     "81:1",  "80:1"  } },
         { "isemRefreshedByDsp",      { "-",     "82:1",  "81:1"  } },
      } },
      // The frame of the key formats in memory A, then in memories B and C.
      { "0,11,14", { "10,12,13", "14", "15,16" }, {
         { "command",   { "0:9",    "0:9",    "0:9"    } },
         { "entry",     { "9:137",  "9:137",  "9:136"  } },
         { "wayIndex",  { "146:5",  "146:3",  "145:5"  } },
         { "prefixNum", { "151:2",  "149:2",  "150:2"  } },
         { "address",   { "153:17", "151:17", "152:16" } },
         { "entryType", { "170:3",  "168:3",  "168:3"  } },
         { "tid",       { "173:6",  "171:6",  "171:6"  } },
         { "hits",      { "179:4",  "177:4",  "177:4"  } },
         { "found",     { "183:1",  "181:1",  "181:1"  } },
      } },
      { "1-10,12,13,15-20", { "10,12-14", "15,16" }, {
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
      { "0", { "10,12,14", "13", "15,16" }, {
         { "key",        { "9:21",  "9:23",  "9:23"  } },
         { "vlanDomain", { "9:9",   "9:11",  "9:11"  } },
         { "sVid",       { "18:12", "20:12", "20:12" } },
         { "inLif",      { "64:20", "64:20", "63:20" } },
         { "payload",    { "64:20", "64:20", "63:20" } },
         { "vmv",        { "84:2",  "84:2",  "83:2"  } },
      } },
      { "1,2", { "10,12-14", "15,16" }, {
         { "key",       { "9:21",  "9:21"  } },
         { "mplsLabel", { "9:20",  "9:20"  } },
         { "mplsBos",   { "29:1",  "29:1"  } },
         { "inLif",     { "64:20", "63:20" } },
         { "payload",   { "64:20", "63:20" } },
         { "vmv",       { "84:2",  "83:2"  } },
      } },
      { "3,4", { "10,13", "12,14", "15,16" }, {
         { "key",            { "9:60",   "9:60",   "9:60"   } },
         { "ipv4TunnelType", { "9:4",    "17:4",   "9:4"    } },
         { "ipv4Dip",        { "13:32",  "21:32",  "13:32"  } },
         { "vrf",            { "45:16",  "53:16",  "45:16"  } },
         { "zeroPadding",    { "61:8",   "9:8",    "61:8"   } },
         { "inLif",          { "124:20", "124:20", "123:20" } },
         { "payload",        { "124:20", "124:20", "123:20" } },
         { "vmv",            { "144:2",  "144:2",  "143:2"  } },
      } },
      { "5,6", { "10", "12,14", "13", "15,16" }, {
         { "key",                          { "9:33",  "9:33",  "9:35",  "9:35"  } },
         { "vni",                          { "9:24",  "9:24",  "9:24",  "9:24"  } },
         { "nextLayerNetworkDomain",       { "33:9",  "33:9",  "33:11", "33:11" } },
         { "payload",                      { "63:21", "63:21", "63:21", "62:21" } },
         { "fodoVsi",                      { "63:18", "63:18", "63:18", "62:18" } },
         { "directExtractionPdResultType", { "81:3",  "-",     "81:3",  "80:3"  } },
         { "fodoPdResultType",             { "-",     "81:3",  "-",     "-"     } },
         { "vmv",                          { "84:2",  "84:2",  "84:2",  "83:2"  } },
      } },
      { "7,8", { "10,13", "12,14", "15,16" }, {
         { "ipv4Sip", { "9:32",  "-", "9:32"  } },
         { "key",     { "9:32",  "-", "9:32"  } },
         { "inLif",   { "64:20", "-", "63:20" } },
         { "payload", { "64:20", "-", "63:20" } },
         { "vmv",     { "84:2",  "-", "83:2"  } },
      } },
      { "9,10", { "10,12,14", "13", "15,16" }, {
         { "key",         { "9:20",  "9:22",  "9:22"  } },
         { "vlanDomain",  { "9:9",   "9:11",  "9:11"  } },
         { "zeroPadding", { "18:11", "20:11", "20:11" } },
         { "inLif",       { "64:20", "64:20", "63:20" } },
         { "payload",     { "64:20", "64:20", "63:20" } },
         { "vmv",         { "84:2",  "84:2",  "83:2"  } },
      } },
      { "11", { "10,12,14", "13", "15,16" }, {
         { "key",         { "9:20",  "9:22",  "9:22"  } },
         { "zeroPadding", { "9:11",  "9:11",  "9:11"  } },
         { "vlanDomain",  { "20:9",  "20:11", "20:11" } },
         { "inLif",       { "64:20", "64:20", "63:20" } },
         { "payload",     { "64:20", "64:20", "63:20" } },
         { "vmv",         { "84:2",  "84:2",  "83:2"  } },
      } },
      { "12,13", { "10,12-14", "15,16" }, {
         { "key",            { "9:84",   "9:84"   } },
         { "ipv4TunnelType", { "9:4",    "9:4"    } },
         { "ipv4Dip",        { "13:32",  "13:32"  } },
         { "ipv4Sip",        { "45:32",  "45:32"  } },
         { "vrf",            { "77:16",  "77:16"  } },
         { "inLif",          { "124:20", "123:20" } },
         { "payload",        { "124:20", "123:20" } },
         { "vmv",            { "144:2",  "143:2"  } },
      } },
      { "14", { "10,12,14", "13", "15,16" }, {
         { "key",        { "9:33",  "9:35",  "9:35"  } },
         { "vlanDomain", { "9:9",   "9:11",  "9:11"  } },
         { "sVid",       { "18:12", "20:12", "20:12" } },
         { "cVid",       { "30:12", "32:12", "32:12" } },
         { "inLif",      { "64:20", "64:20", "63:20" } },
         { "payload",    { "64:20", "64:20", "63:20" } },
         { "vmv",        { "84:2",  "84:2",  "83:2"  } },
      } },
      { "15,16", { "10,12-14", "15,16" }, {
         { "ipv6",              { "9:80",   "9:80"   } },
         { "key",               { "9:80",   "9:80"   } },
         { "ipv6AddressMsbsId", { "128:16", "127:16" } },
         { "payload",           { "128:16", "127:16" } },
         { "vmv",               { "144:2",  "143:2"  } },
      } },
      { "17,18", { "10,12-14", "15,16" }, {
         { "key",               { "9:84",   "9:84"   } },
         { "ipv6MpTunnelIdx",   { "9:20",   "9:20"   } },
         { "ipv6",              { "29:48",  "29:48"  } },
         { "ipv6AddressMsbsId", { "77:16",  "77:16"  } },
         { "inLif",             { "124:20", "123:20" } },
         { "payload",           { "124:20", "123:20" } },
         { "vmv",               { "144:2",  "143:2"  } },
      } },
      { "19,20", { "10,13", "12,14", "15,16" }, {
         { "key",          { "9:76",   "-", "9:76"   } },
         { "vidOuterVlan", { "9:12",   "-", "9:12"   } },
         { "ipv4Dip",      { "21:32",  "-", "21:32"  } },
         { "ipv4Sip",      { "53:32",  "-", "53:32"  } },
         { "inLif",        { "124:20", "-", "123:20" } },
         { "payload",      { "124:20", "-", "123:20" } },
         { "vmv",          { "144:2",  "-", "143:2"  } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3",         "0",             3, 1,    1, 18, 1, 1 },
      { "4,5,8",       "0",             3, 1,    1, 15, 2, 1 },
      { "6,7",         "0",             3, 1,    1, 15, 1, 1 },
      { "10,12-16",    "0-2,9-11",      6, 1024, 1, 15, 1, 21 },
      { "10,12-16",    "3,4,12,13",     6, 1024, 1, 17, 1, 21 },
      { "10,12-16",    "5,6,14,17,18",  6, 1024, 1, 16, 1, 21 },
      { "10,13,15,16", "19,20",         6, 1024, 1, 16, 1, 21 },
      { "10,13,15,16", "7,8",           6, 1024, 1, 14, 1, 21 },
      { "10,12-16",    "15,16",         6, 1024, 1, 14, 1, 21 },
      { "12,14",       "7,8,19,20",     6, 1024, 1, 9,  1, 21 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   const Testing::Literal memoryA = "0,11,14";
   const Testing::Literal memoryB = "1,3,5,7,9,12,15,17,19";
   const Testing::Literal memoryC = "2,4,6,8,10,13,16,18,20";
   expected.addresses = {
      { "2,3",   "0",     0x480000,  1, 0, { { 0, 52 } } },
      { "4,5",   "0",     0x1000000, 1, 0, { { 0, 60 }, { 0, 61 } } },
      { "6,7",   "0",     0x1000000, 1, 0, { { 0, 64 } } },
      { "8",     "0",     0x1000000, 1, 0, { { 0, 64 }, { 0, 65 } } },
      { "10,12", memoryA, 0x5000,    1, 0, { { 2, 5 } } },
      { "10,12", memoryB, 0x11000,   1, 0, { { 2, 5 } } },
      { "10,12", memoryC, 0x17000,   1, 0, { { 2, 5 } } },
      { "13",    memoryA, 0x4000,    1, 0, { { 0, 12 } } },
      { "13",    memoryB, 0x9000,    1, 0, { { 0, 12 } } },
      { "13",    memoryC, 0x14000,   1, 0, { { 0, 12 } } },
      { "14",    memoryA, 0x4000,    1, 0, { { 24, 36 } } },
      { "14",    memoryB, 0x9000,    1, 0, { { 24, 36 } } },
      { "14",    memoryC, 0x14000,   1, 0, { { 24, 36 } } },
      { "15,16", memoryA, 0x4000,    1, 0, { { 8, 20 } } },
      { "15,16", memoryB, 0x9000,    1, 0, { { 8, 20 } } },
      { "15,16", memoryC, 0x14000,   1, 0, { { 8, 20 } } },
   };
   const auto tag = []( Testing::Literal chips, Testing::Literal variants, unsigned tid,
                        unsigned entryType, unsigned vmv ) {
      return Testing::TagRow{ chips, variants,
                              { { "tid", tid }, { "entryType", entryType }, { "vmv", vmv } } };
   };
   expected.tags = {
      tag( "10,12-16",    "0",     1, 1, 1 ),
      tag( "10,12-16",    "1,2",   27, 1, 2 ),
      tag( "10,12-16",    "3,4",   7, 0, 3 ),
      tag( "10,12-16",    "5,6",   10, 1, 2 ),
      tag( "10,13,15,16", "7,8",   61, 1, 2 ),
      tag( "10,12-16",    "9,10",  20, 1, 2 ),
      tag( "10,12-16",    "11",    19, 1, 1 ),
      tag( "10,12-16",    "12,13", 8, 0, 3 ),
      tag( "10,12-16",    "14",    3, 1, 1 ),
      tag( "10,12-16",    "15,16", 17, 0, 3 ),
      tag( "10,12-16",    "17,18", 15, 0, 3 ),
      tag( "10,13,15,16", "19,20", 62, 0, 3 ),
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( IsemMgmtReq, expectation() )

TEST( IsemMgmtReq, KeyOfTheRegisterHasTwoReadings ) {
   View::WithStorage view( Hardware::BCM88375_A0, 0 );
   view.isemKeyTcamSharingVdIs( 0x5a );
   view.isemKeyTcamSharingVidIs( 0xabc );
   EXPECT_EQ( view.isemKey(), 0x15785au );
   EXPECT_EQ( view.isemKeyInAcVd(), 0x5a );
   EXPECT_EQ( view.isemKeyInAcInnerOrOuter(), 0 );
   EXPECT_EQ( view.isemKeyInAcVid(), 0x2af );
}

} // namespace
