// IsemMgmtReq: a register on chip types 2 to 8, tagged key formats in three memories on later ones.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Parts.h"

#include <Hardware/IsemMgmtReq.h>
#include <Hardware/Registry.h>

#include <set>

namespace {

using View = Hardware::IsemMgmtReq;
using Testing::Address;
using Testing::Bits;
using Testing::bitsAt;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::Image;
using Testing::lowOnes;
using Testing::widthOf;

Testing::Expectation stated() {
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

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( IsemMgmtReq, expectation() )

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

View over( unsigned chipType, unsigned variant, Image& image, bool existingEntry = false ) {
   return View( chip( chipType ), image.data(), static_cast<U16>( image.size() ), existingEntry,
                static_cast<U8>( variant ) );
}

bool passes( unsigned chipType, unsigned variant, const Image& image ) {
   return View::isIsemMgmtReq( chip( chipType ), image.data(), static_cast<U16>( image.size() ),
                               static_cast<U8>( variant ) );
}

// A buffer of `fill` with the tag of the pair.
Image stamped( unsigned chipType, unsigned variant, std::size_t size, U8 fill = 0 ) {
   Image image( size, fill );
   over( chipType, variant, image );
   return image;
}

const std::vector<unsigned> registerChips{ 2, 3, 4, 5, 6, 7, 8 };
const std::vector<unsigned> formatChips{ 10, 12, 13, 14, 15, 16 };

bool inMemoryA( unsigned variant ) { return variant == 0 || variant == 11 || variant == 14; }

bool isReduced( unsigned chipType, unsigned variant ) {
   return ( chipType == 12 || chipType == 14 ) &&
          ( variant == 7 || variant == 8 || variant == 19 || variant == 20 );
}

// The tag by variant: `tid`, `entryType`, `vmv`.
struct Tag {
   U8 tid;
   U8 entryType;
   U8 vmv;
};
constexpr Tag tags[21] = {
   { 1, 1, 1 },  { 27, 1, 2 }, { 27, 1, 2 }, { 7, 0, 3 },  { 7, 0, 3 },  { 10, 1, 2 }, { 10, 1, 2 },
   { 61, 1, 2 }, { 61, 1, 2 }, { 20, 1, 2 }, { 20, 1, 2 }, { 19, 1, 1 }, { 8, 0, 3 },  { 8, 0, 3 },
   { 3, 1, 1 },  { 17, 0, 3 }, { 17, 0, 3 }, { 15, 0, 3 }, { 15, 0, 3 }, { 62, 0, 3 }, { 62, 0, 3 },
};

Address addressOf( unsigned chipType, unsigned variant, U32 tableEntry, unsigned identifier = 0 ) {
   return Testing::addressOf<View>( chip( chipType ), variant, identifier, tableEntry );
}

// What a key format has inside `entry`: `key` from bit 9, `payload`, and `vmv` on top of it.
struct Format {
   std::vector<unsigned> chips;
   std::vector<unsigned> variants;
   std::vector<Testing::Part> key;
   unsigned payloadOffset;
   std::vector<Testing::Part> payload;
   unsigned vmvOffset;
};

// clang-format off
const std::vector<Format> formats{
   { { 10, 12, 14 }, { 0 },
     { { "vlanDomain", 9 }, { "sVid", 12 } },                        64, { { "inLif", 20 } }, 84 },
   { { 13 }, { 0 },
     { { "vlanDomain", 11 }, { "sVid", 12 } },                       64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 0 },
     { { "vlanDomain", 11 }, { "sVid", 12 } },                       63, { { "inLif", 20 } }, 83 },
   { { 10, 12, 13, 14 }, { 1, 2 },
     { { "mplsLabel", 20 }, { "mplsBos", 1 } },                      64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 1, 2 },
     { { "mplsLabel", 20 }, { "mplsBos", 1 } },                      63, { { "inLif", 20 } }, 83 },
   { { 10, 13 }, { 3, 4 },
     { { "ipv4TunnelType", 4 }, { "ipv4Dip", 32 }, { "vrf", 16 }, { "zeroPadding", 8 } },
                                                                    124, { { "inLif", 20 } }, 144 },
   { { 12, 14 }, { 3, 4 },
     { { "zeroPadding", 8 }, { "ipv4TunnelType", 4 }, { "ipv4Dip", 32 }, { "vrf", 16 } },
                                                                    124, { { "inLif", 20 } }, 144 },
   { { 15, 16 }, { 3, 4 },
     { { "ipv4TunnelType", 4 }, { "ipv4Dip", 32 }, { "vrf", 16 }, { "zeroPadding", 8 } },
                                                                    123, { { "inLif", 20 } }, 143 },
   { { 10 }, { 5, 6 },
     { { "vni", 24 }, { "nextLayerNetworkDomain", 9 } },
     63, { { "fodoVsi", 18 }, { "directExtractionPdResultType", 3 } }, 84 },
   { { 12, 14 }, { 5, 6 },
     { { "vni", 24 }, { "nextLayerNetworkDomain", 9 } },
     63, { { "fodoVsi", 18 }, { "fodoPdResultType", 3 } }, 84 },
   { { 13 }, { 5, 6 },
     { { "vni", 24 }, { "nextLayerNetworkDomain", 11 } },
     63, { { "fodoVsi", 18 }, { "directExtractionPdResultType", 3 } }, 84 },
   { { 15, 16 }, { 5, 6 },
     { { "vni", 24 }, { "nextLayerNetworkDomain", 11 } },
     62, { { "fodoVsi", 18 }, { "directExtractionPdResultType", 3 } }, 83 },
   { { 10, 13 }, { 7, 8 },
     { { "ipv4Sip", 32 } },                                          64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 7, 8 },
     { { "ipv4Sip", 32 } },                                          63, { { "inLif", 20 } }, 83 },
   { { 10, 12, 14 }, { 9, 10 },
     { { "vlanDomain", 9 }, { "zeroPadding", 11 } },                 64, { { "inLif", 20 } }, 84 },
   { { 13 }, { 9, 10 },
     { { "vlanDomain", 11 }, { "zeroPadding", 11 } },                64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 9, 10 },
     { { "vlanDomain", 11 }, { "zeroPadding", 11 } },                63, { { "inLif", 20 } }, 83 },
   { { 10, 12, 14 }, { 11 },
     { { "zeroPadding", 11 }, { "vlanDomain", 9 } },                 64, { { "inLif", 20 } }, 84 },
   { { 13 }, { 11 },
     { { "zeroPadding", 11 }, { "vlanDomain", 11 } },                64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 11 },
     { { "zeroPadding", 11 }, { "vlanDomain", 11 } },                63, { { "inLif", 20 } }, 83 },
   { { 10, 12, 13, 14 }, { 12, 13 },
     { { "ipv4TunnelType", 4 }, { "ipv4Dip", 32 }, { "ipv4Sip", 32 }, { "vrf", 16 } },
                                                                    124, { { "inLif", 20 } }, 144 },
   { { 15, 16 }, { 12, 13 },
     { { "ipv4TunnelType", 4 }, { "ipv4Dip", 32 }, { "ipv4Sip", 32 }, { "vrf", 16 } },
                                                                    123, { { "inLif", 20 } }, 143 },
   { { 10, 12, 14 }, { 14 },
     { { "vlanDomain", 9 }, { "sVid", 12 }, { "cVid", 12 } },        64, { { "inLif", 20 } }, 84 },
   { { 13 }, { 14 },
     { { "vlanDomain", 11 }, { "sVid", 12 }, { "cVid", 12 } },       64, { { "inLif", 20 } }, 84 },
   { { 15, 16 }, { 14 },
     { { "vlanDomain", 11 }, { "sVid", 12 }, { "cVid", 12 } },       63, { { "inLif", 20 } }, 83 },
   { { 10, 12, 13, 14 }, { 15, 16 },
     { { "ipv6", 80 } },                                128, { { "ipv6AddressMsbsId", 16 } }, 144 },
   { { 15, 16 }, { 15, 16 },
     { { "ipv6", 80 } },                                127, { { "ipv6AddressMsbsId", 16 } }, 143 },
   { { 10, 12, 13, 14 }, { 17, 18 },
     { { "ipv6MpTunnelIdx", 20 }, { "ipv6", 48 }, { "ipv6AddressMsbsId", 16 } },
                                                                    124, { { "inLif", 20 } }, 144 },
   { { 15, 16 }, { 17, 18 },
     { { "ipv6MpTunnelIdx", 20 }, { "ipv6", 48 }, { "ipv6AddressMsbsId", 16 } },
                                                                    123, { { "inLif", 20 } }, 143 },
   { { 10, 13 }, { 19, 20 },
     { { "vidOuterVlan", 12 }, { "ipv4Dip", 32 }, { "ipv4Sip", 32 } },
                                                                    124, { { "inLif", 20 } }, 144 },
   { { 15, 16 }, { 19, 20 },
     { { "vidOuterVlan", 12 }, { "ipv4Dip", 32 }, { "ipv4Sip", 32 } },
                                                                    123, { { "inLif", 20 } }, 143 },
};
// clang-format on

// Each pair with a key format, once.
void forEachFormat( const std::function<void( unsigned, unsigned, const Format& )>& visit ) {
   std::set<std::pair<unsigned, unsigned>> seen;
   for( const Format& format : formats ) {
      for( const unsigned chipType : format.chips ) {
         for( const unsigned variant : format.variants ) {
            EXPECT_TRUE( seen.emplace( chipType, variant ).second ) << chipType << " " << variant;
            visit( chipType, variant, format );
         }
      }
   }
   EXPECT_EQ( seen.size(), 6u * 21 - 2 * 4 );
}

TEST( IsemMgmtReq, KeyAndPayloadAreTiledOnEveryPairThatHasThem ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& format ) {
      Testing::expectParts( expectation(), chipType, variant, "key", 9, format.key );
      Testing::expectParts( expectation(), chipType, variant, "payload", format.payloadOffset,
                            format.payload );
   } );
}

TEST( IsemMgmtReq, EntryAloneReachesTheBitsOutsideKeyPayloadAndVmv ) {
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
      const unsigned entryEnd = chipType >= 15 ? 145 : 146;
      EXPECT_EQ( bitsAt( image, 0, entryEnd ), lowOnes( widthOf( format.key ) ) << 9 |
                                                  lowOnes( widthOf( format.payload ) )
                                                     << format.payloadOffset |
                                                  Bits( tags[variant].vmv ) << format.vmvOffset );

      // `payload` ends directly under `vmv`; `vmv` ends `entry` where the entry is wide.
      EXPECT_EQ( format.payloadOffset + widthOf( format.payload ), format.vmvOffset );
      EXPECT_EQ( view.vmvOffset(), format.vmvOffset );
      EXPECT_EQ( view.vmvLen(), 2 );
      EXPECT_EQ( format.vmvOffset, entryEnd - ( tags[variant].entryType == 0 ? 2 : 62 ) );

      // Those bits are `entry`'s all the same.
      view.entryMask();
      EXPECT_EQ( bitsAt( image, 0, entryEnd ), lowOnes( entryEnd - 9 ) << 9 );
   } );
}

TEST( IsemMgmtReq, EntryFillsTheSpaceBetweenCommandAndWayIndex ) {
   for( const unsigned chipType : formatChips ) {
      for( unsigned variant = 0; variant <= 20; ++variant ) {
         Image image( 24 );
         View view = over( chipType, variant, image );
         view.entryMask();
         EXPECT_EQ( view.command(), 0 );
         EXPECT_EQ( view.wayIndex(), 0 );
         view.commandMask();
         view.wayIndexMask();
         const unsigned wayIndexBits = !inMemoryA( variant ) ? 4 : chipType == 14 ? 3 : 5;
         const unsigned end = ( chipType >= 15 ? 145 : 146 ) + wayIndexBits;
         EXPECT_EQ( bitsAt( image, 0, end ), lowOnes( end ) ) << chipType << ", " << variant;
         EXPECT_EQ( view.prefixNum(), 0 );
      }
   }
}

TEST( IsemMgmtReq, MaskIsOneUnbrokenRun ) {
   const auto expectRun = []( unsigned chipType, unsigned variant, unsigned bits ) {
      Image ones( 24, 0xff );
      const Image mask = [&] {
         const Raw4096 raw = View::allFieldsMask( chipType, static_cast<U8>( variant ) );
         return Image( raw.bytes(), raw.bytes() + 24 );
      }();
      EXPECT_EQ( bitsAt( mask, 0, 192 ), lowOnes( bits ) ) << chipType << ", " << variant;
      View view = over( chipType, variant, ones );
      std::fill( ones.begin(), ones.end(), U8{ 0xff } );
      EXPECT_EQ( Testing::toBits( view.getAllFields() ), lowOnes( bits ) );
   };
   for( const unsigned chipType : { 2u, 3u } ) {
      expectRun( chipType, 0, 72 );
   }
   for( const unsigned chipType : { 4u, 5u, 8u } ) {
      expectRun( chipType, 0, 83 );
   }
   for( const unsigned chipType : { 6u, 7u } ) {
      expectRun( chipType, 0, 82 );
   }
   for( unsigned variant = 0; variant <= 20; ++variant ) {
      for( const unsigned chipType : { 10u, 12u, 13u } ) {
         expectRun( chipType, variant, inMemoryA( variant ) ? 184 : 183 );
      }
      expectRun( 14, variant, inMemoryA( variant ) ? 182 : 183 );
      for( const unsigned chipType : { 15u, 16u } ) {
         expectRun( chipType, variant, inMemoryA( variant ) ? 182 : 181 );
      }
   }
}

TEST( IsemMgmtReq, WholeEntryAsksForTheClassWideSizeOfARegisterToo ) {
   for( const unsigned chipType : registerChips ) {
      Image twelve( 12 );
      EXPECT_EQ( expressionOf( [&] { over( chipType, 0, twelve ).getAllFields(); } ),
                 "len_ >= 24" );
      Image whole( 24 );
      EXPECT_EQ( expressionOf( [&] { over( chipType, 0, whole ).getAllFields(); } ), "none" );
   }
}

TEST( IsemMgmtReq, MetadataRefusesOtherPairs ) {
   for( const unsigned chipType : registerChips ) {
      EXPECT_EQ( expressionOf( [&] { View::entries( chipType, 1 ); } ), "variant == 0" );
   }
   for( const unsigned chipType : formatChips ) {
      EXPECT_EQ( expressionOf( [&] { View::entries( chipType, 21 ); } ), "0" );
   }
   for( const unsigned chipType : { 0u, 1u, 9u, 11u, 17u, 21u } ) {
      EXPECT_EQ( expressionOf( [&] { View::entries( chipType, 0 ); } ), "0" );
   }
}

TEST( IsemMgmtReq, KeyOfTheRegisterHasTwoReadings ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyTcamSharingVdIs( 0x5a );
      view.isemKeyTcamSharingVidIs( 0xabc );
      EXPECT_EQ( view.isemKey(), 0xabc5au );
      EXPECT_EQ( view.isaKey(), 0xabc5au );
      EXPECT_EQ( view.isemKeyInAcVd(), 0x5a );
      EXPECT_EQ( view.isemKeyInAcInnerOrOuter(), 0 );
      EXPECT_EQ( view.isemKeyInAcVid(), 0x2af );
      view.isemKeyIs( 0 );
      view.isemKeyInAcInnerVidMask();
      EXPECT_EQ( view.isemKey(), 0x3ffc00000u );
      EXPECT_EQ( view.isemKeyTcamSharingVid(), 0 );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyTcamSharingVdIs( 0x5a );
      view.isemKeyTcamSharingVidIs( 0xabc );
      EXPECT_EQ( view.isemKey(), 0x15785au );
      EXPECT_EQ( view.isemKeyInAcVd(), 0x5a );
      EXPECT_EQ( view.isemKeyInAcInnerOrOuter(), 0 );
      EXPECT_EQ( view.isemKeyInAcVid(), 0x2af );
      view.isemKeyIs( 0 );
      view.isemKeyInAcInnerVidMask();
      EXPECT_EQ( view.isemKey(), 0x7ff800000u );
      EXPECT_EQ( view.isemKeyTcamSharingVid(), 0 );
   }
}

TEST( IsemMgmtReq, BitsUnderTheTunnelTypeOfTheRegisterHaveNoName ) {
   const auto unnamed = []( unsigned chipType ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyMask();
      view.isemKeyInAcVdIs( 0 );
      view.isemKeyInAcInnerOrOuterIs( 0 );
      view.isemKeyInAcVidIs( 0 );
      view.isemKeyInAcInnerVidIs( 0 );
      view.isemKeyTunnelTypeIs( 0 );
      return view.isemKey();
   };
   const auto tunnelType = []( unsigned chipType ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyTunnelTypeMask();
      return view.isemKey();
   };
   for( const unsigned chipType : { 2u, 3u } ) {
      EXPECT_EQ( unnamed( chipType ), 0x1c00000000u );
      EXPECT_EQ( tunnelType( chipType ), 0x1e000000000u );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      EXPECT_EQ( unnamed( chipType ), 0xff800000000u );
      EXPECT_EQ( tunnelType( chipType ), 0x3f00000000000u );
   }
}

TEST( IsemMgmtReq, IsaNamesAreSecondNamesOnTheFirstChipsAlone ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemTypeIs( 5 );
      view.isemKeyIs( 0x123456789ab );
      view.isemPayloadIs( 0xcdef );
      EXPECT_EQ( view.isaType(), 5 );
      EXPECT_EQ( view.isaKey(), 0x123456789abu );
      EXPECT_EQ( view.isaPayload(), 0xcdef );
      view.isaTypeIs( 2 );
      view.isaKeyIs( 0x0fedcba9876 );
      view.isaPayloadIs( 0x4321 );
      EXPECT_EQ( view.isemType(), 2 );
      EXPECT_EQ( view.isemKey(), 0x0fedcba9876u );
      EXPECT_EQ( view.isemPayload(), 0x4321u );

      EXPECT_TRUE( view.isIsaStampValid() );
      EXPECT_TRUE( view.isIsaReservedLowValid() );
      EXPECT_TRUE( view.isIsaAgeStatusValid() );
      EXPECT_TRUE( view.isIsaSelfValid() );
      EXPECT_TRUE( view.isIsaRefreshedByDspValid() );
      EXPECT_EQ( expressionOf( [&] { view.isemStamp(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isemReservedLow(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isemAgeStatus(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isemSelf(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isemRefreshedByDsp(); } ), "0" );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_TRUE( view.isIsemStampValid() );
      EXPECT_TRUE( view.isIsemReservedLowValid() );
      EXPECT_TRUE( view.isIsemAgeStatusValid() );
      EXPECT_TRUE( view.isIsemSelfValid() );
      EXPECT_TRUE( view.isIsemRefreshedByDspValid() );
      EXPECT_EQ( expressionOf( [&] { view.isaType(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaStamp(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaKey(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaPayload(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaReservedLow(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaAgeStatus(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaSelf(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.isaRefreshedByDsp(); } ), "0" );
   }
}

TEST( IsemMgmtReq, ReservedLowIsTheUnionOfTheThreeFlags ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      const std::vector<Testing::Part> flags{ { "isaAgeStatus", 2 },
                                              { "isaSelf", 1 },
                                              { "isaRefreshedByDsp", 1 } };
      Testing::expectParts( expectation(), chipType, 0, "isaReservedLow", 68, flags );
   }
   const std::vector<Testing::Part> flags{ { "isemAgeStatus", 3 },
                                           { "isemSelf", 1 },
                                           { "isemRefreshedByDsp", 1 } };
   for( const unsigned chipType : { 4u, 5u, 8u } ) {
      Testing::expectParts( expectation(), chipType, 0, "isemReservedLow", 78, flags );
   }
   for( const unsigned chipType : { 6u, 7u } ) {
      Testing::expectParts( expectation(), chipType, 0, "isemReservedLow", 77, flags );
   }
}

TEST( IsemMgmtReq, FlagsOfTheRegisterLieOneBitLowerUnderTheNarrowerPayload ) {
   const auto bytes = []( unsigned chipType, void ( View::*mask )() ) {
      Image image( 12 );
      View view = over( chipType, 0, image );
      ( view.*mask )();
      EXPECT_EQ( bitsAt( image, 0, 56 ), Bits() );
      return Image( image.begin() + 7, image.begin() + 12 );
   };
   for( const unsigned chipType : { 4u, 5u, 8u } ) {
      EXPECT_EQ( bytes( chipType, &View::isemPayloadMask ), ( Image{ 0xe0, 0xff, 0x3f, 0, 0 } ) );
      EXPECT_EQ( bytes( chipType, &View::isemReservedLowMask ), ( Image{ 0, 0, 0xc0, 0x07, 0 } ) );
   }
   for( const unsigned chipType : { 6u, 7u } ) {
      EXPECT_EQ( bytes( chipType, &View::isemPayloadMask ), ( Image{ 0xe0, 0xff, 0x1f, 0, 0 } ) );
      EXPECT_EQ( bytes( chipType, &View::isemReservedLowMask ), ( Image{ 0, 0, 0xe0, 0x03, 0 } ) );
   }
}

TEST( IsemMgmtReq, KeyOfTheRegisterAssertsItsBound ) {
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { two.isemKeyIs( 0x20000000000 ); } ), "isemKey <= 0x1ffffffffff" );
   EXPECT_EQ( expressionOf( [&] { two.isaKeyIs( 0x20000000000 ); } ), "isaKey <= 0x1ffffffffff" );
   EXPECT_EQ( two.isemKey(), 0u );
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyIs( 0x3ffffffffffff );
      EXPECT_EQ( expressionOf( [&] { view.isemKeyIs( 0x4000000000000 ); } ),
                 "isemKey <= 0x3ffffffffffff" );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 202, 0x4000000000000 ); } ),
                 "isemKey <= 0x3ffffffffffff" );
      EXPECT_EQ( view.isemKey(), 0x3ffffffffffffu );
   }
}

TEST( IsemMgmtReq, ExactByteWidthsLoseUpperBitsSilently ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemKeyInAcVdIs( 0x1a5 );
      EXPECT_EQ( view.isemKey(), 0xa5u );
      view.isemKeyTcamSharingVdIs( 0xff5a );
      EXPECT_EQ( view.isemKey(), 0x5au );
      view.setField64( 205, 0xffa5 );
      EXPECT_EQ( view.isemKey(), 0xa5u );
   }
   for( const unsigned chipType : { 2u, 3u, 6u, 7u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      view.isemPayloadIs( 0xfff12345 );
      EXPECT_EQ( view.isemPayload(), 0x2345u );
      view.stringFieldIs( "isemPayload", 0x1ffff );
      EXPECT_EQ( view.isemPayload(), 0xffffu );
   }
   for( const unsigned chipType : formatChips ) {
      for( const U8 variant : { U8{ 3 }, U8{ 4 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.zeroPaddingIs( 0x1a5 );
         EXPECT_EQ( view.zeroPadding(), 0xa5 );
         EXPECT_EQ( view.ipv4TunnelType(), 0 );
      }
      for( const U8 variant : { U8{ 15 }, U8{ 16 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.payloadIs( 0xfffffffe );
         EXPECT_EQ( view.payload(), 0xfffeu );
         EXPECT_EQ( view.vmv(), 3 );
      }
   }
   for( const unsigned chipType : { 15u, 16u } ) {
      for( U8 variant = 0; variant <= 20; ++variant ) {
         View::WithStorage view( chip( chipType ), variant );
         view.addressIs( 0xabcd1234 );
         EXPECT_EQ( view.address(), 0x1234u );
         EXPECT_EQ( view.entryType(), tags[variant].entryType );
      }
   }
}

TEST( IsemMgmtReq, OtherWidthsOfTheSameFieldsAssert ) {
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.isemKeyInAcVdIs( 0x200 ); } ), "isemKeyInAcVd <= 0x1ff" );
      EXPECT_EQ( expressionOf( [&] { view.isemKeyTcamSharingVdIs( 0x200 ); } ),
                 "isemKeyTcamSharingVd <= 0x1ff" );
   }
   for( const unsigned chipType : { 4u, 5u, 8u } ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.isemPayloadIs( 0x20000 ); } ), "isemPayload <= 0x1ffff" );
   }
   for( const unsigned chipType : formatChips ) {
      View::WithStorage padded( chip( chipType ), 9 );
      EXPECT_EQ( expressionOf( [&] { padded.zeroPaddingIs( 0x800 ); } ), "zeroPadding <= 0x7ff" );
      EXPECT_EQ( expressionOf( [&] { padded.payloadIs( 0x100000 ); } ), "payload <= 0xfffff" );
      View::WithStorage five( chip( chipType ), 5 );
      EXPECT_EQ( expressionOf( [&] { five.payloadIs( 0x200000 ); } ), "payload <= 0x1fffff" );
   }
   for( const unsigned chipType : { 10u, 12u, 13u, 14u } ) {
      for( U8 variant = 0; variant <= 20; ++variant ) {
         View::WithStorage view( chip( chipType ), variant );
         view.addressIs( 0x1ffff );
         EXPECT_EQ( view.address(), 0x1ffffu );
         EXPECT_EQ( expressionOf( [&] { view.addressIs( 0x20000 ); } ), "address <= 0x1ffff" );
      }
   }
}

TEST( IsemMgmtReq, WayIndexHasTheBoundOfItsMemoryAndChip ) {
   for( const unsigned chipType : formatChips ) {
      for( U8 variant = 0; variant <= 20; ++variant ) {
         View::WithStorage view( chip( chipType ), variant );
         const std::string expected = !inMemoryA( variant ) ? "wayIndex <= 0xf"
                                      : chipType == 14      ? "wayIndex <= 0x7"
                                                            : "none";
         EXPECT_EQ( expressionOf( [&] { view.wayIndexIs( 31 ); } ), expected );
         EXPECT_EQ( view.wayIndex(), expected == "none" ? 31 : 0 );
      }
      View::WithStorage a( chip( chipType ), 0 );
      EXPECT_EQ( expressionOf( [&] { a.wayIndexIs( 32 ); } ),
                 chipType == 14 ? "wayIndex <= 0x7" : "wayIndex <= 0x1f" );
   }
}

TEST( IsemMgmtReq, EntryTypeMovesWithTheMemoryAndKeepsItsTag ) {
   struct Row {
      unsigned chipType;
      U8 variant;
      unsigned offset;
   };
   for( const Row& row : { Row{ 10, 0, 170 }, Row{ 10, 1, 169 }, Row{ 12, 0, 170 },
                           Row{ 13, 0, 170 }, Row{ 14, 0, 168 }, Row{ 14, 1, 169 },
                           Row{ 15, 0, 168 }, Row{ 15, 1, 167 }, Row{ 16, 12, 167 } } ) {
      View::WithStorage view( chip( row.chipType ), row.variant );
      EXPECT_EQ( view.entryTypeOffset(), row.offset );
      EXPECT_EQ( view.entryTypeLen(), 3 );
      EXPECT_EQ( view.entryType(), row.variant == 12 ? 0 : 1 );
   }
}

TEST( IsemMgmtReq, SameBitsReadDifferentlyOnSiblings ) {
   Image image( 24 );
   Testing::bitsAtAre( image, 13, 32, Bits( 0x0a010203 ) );
   EXPECT_EQ( over( 10, 3, image ).ipv4Dip(), 0x0a010203u );
   EXPECT_EQ( over( 12, 3, image ).ipv4Dip(), 0x000a0102u );
   EXPECT_EQ( over( 12, 3, image ).ipv4TunnelType(), 0 );
   EXPECT_EQ( over( 13, 3, image ).ipv4Dip(), 0x0a010203u );
   EXPECT_EQ( over( 14, 3, image ).ipv4Dip(), 0x000a0102u );
   Testing::bitsAtAre( image, 21, 32, Bits( 0xc0a80001 ) );
   EXPECT_EQ( over( 12, 3, image ).ipv4Dip(), 0xc0a80001u );
   EXPECT_EQ( over( 10, 3, image ).ipv4Dip(), 0xa8000103u );

   // The 3 bits beside `fodoVsi` have another name on chip types 12 and 14.
   for( const unsigned chipType : { 12u, 14u } ) {
      for( const U8 variant : { U8{ 5 }, U8{ 6 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.fodoPdResultTypeIs( 5 );
         EXPECT_EQ( view.payload(), 0x140000u );
         EXPECT_EQ( expressionOf( [&] { view.directExtractionPdResultType(); } ), "0" );
         EXPECT_TRUE( view.isFieldValid( 146 ) );
         EXPECT_FALSE( view.isFieldValid( 69 ) );
      }
   }
   for( const unsigned chipType : { 10u, 13u, 15u, 16u } ) {
      for( const U8 variant : { U8{ 5 }, U8{ 6 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         view.directExtractionPdResultTypeIs( 5 );
         EXPECT_EQ( view.payload(), 0x140000u );
         EXPECT_EQ( expressionOf( [&] { view.fodoPdResultType(); } ), "0" );
         EXPECT_FALSE( view.isFieldValid( 146 ) );
         EXPECT_TRUE( view.isFieldValid( 69 ) );
      }
   }
}

TEST( IsemMgmtReq, KeyAndItsPartsAreOneStorage ) {
   for( const unsigned chipType : formatChips ) {
      View::WithStorage view( chip( chipType ), 12 );
      view.ipv4DipIs( 0x0a010203 );
      EXPECT_TRUE( view.key() == ( Raw128{ { 0xa0102030, 0 } } ) );
      view.keyIs( Raw128{ { 0x123456789abcdef0, 0xfffff } } );
      EXPECT_EQ( view.ipv4TunnelType(), 0 );
      EXPECT_EQ( view.ipv4Dip(), 0x89abcdefu );
      EXPECT_EQ( view.ipv4Sip(), 0xf1234567u );
      EXPECT_EQ( view.vrf(), 0xffff );
   }
}

TEST( IsemMgmtReq, WideFieldsStayWideHoweverFewBitsTheyHave ) {
   View::WithStorage view( Hardware::BCM88690_B0, 9 );
   EXPECT_EQ( view.keyLen(), 20 );
   view.keyIs( Raw128{ { 0xffffffffffabcdef, ~U64{ 0 } } } );
   EXPECT_TRUE( view.key() == ( Raw128{ { 0xbcdef, 0 } } ) );
   for( const unsigned identifier : { 94u, 182u, 227u } ) {
      EXPECT_EQ( expressionOf( [&] { view.setField64( identifier, 0 ); } ), "false" );
   }
   for( const char* const name : { "entry", "ipv6", "key" } ) {
      const auto failure = failureOf( [&] { view.stringFieldIs( name, 0 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "false" );
      EXPECT_FALSE( failure->message );
   }
   EXPECT_EQ( view.stringField( "key", 0 ), 0xbcdefu );
   EXPECT_EQ( view.stringField( "key", 1 ), 0u );

   View::WithStorage wide( Hardware::BCM88690_B0, 12 );
   wide.keyIs( Raw128{ { 0x1111222233334444, 0x56789 } } );
   EXPECT_EQ( wide.stringField( "key", 0 ), 0x1111222233334444u );
   EXPECT_EQ( wide.stringField( "key", 1 ), 0x56789u );
   // Bits 128 to 136 of `entry` hold its top: the upper part of `payload`, and `vmv`.
   EXPECT_EQ( wide.stringField( "entry", 2 ), 0x180u );
}

TEST( IsemMgmtReq, TagFieldsCannotBeSet ) {
   View::WithStorage view( Hardware::BCM88690_B0, 1 );
   for( const unsigned identifier : { 111u, 338u, 360u } ) {
      EXPECT_EQ( expressionOf( [&] { view.setField64( identifier, 0 ); } ), "false" );
      EXPECT_TRUE( view.isFieldValid( identifier ) );
   }
   for( const char* const name : { "tid", "entryType", "vmv" } ) {
      const auto failure = failureOf( [&] { view.stringFieldIs( name, 0 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"false\" == nullptr" );
      EXPECT_EQ( failure->message, "fieldName not found or is const." );
   }
   EXPECT_EQ( view.stringField( "tid", 0 ), 27u );
   EXPECT_EQ( view.stringField( "entryType", 0 ), 1u );
   EXPECT_EQ( view.stringField( "vmv", 0 ), 2u );
}

TEST( IsemMgmtReq, EntryOverwritesVmvAndNothingOverwritesTheRestOfTheTag ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& ) {
      Image image( 24 );
      View view = over( chipType, variant, image );
      view.entryIs( Raw256{} );
      EXPECT_EQ( view.vmv(), 0 );
      EXPECT_EQ( view.tid(), tags[variant].tid );
      EXPECT_EQ( view.entryType(), tags[variant].entryType );
      view.entryMask();
      EXPECT_EQ( view.vmv(), 3 );
      EXPECT_EQ( passes( chipType, variant, image ), tags[variant].vmv == 3 );
      for( const Testing::FieldUnderTest& field : expectation().fields ) {
         if( field.valid( view ) && !field.readOnly ) {
            field.mask( view );
            field.set( view, Bits() );
         }
      }
      EXPECT_EQ( view.tid(), tags[variant].tid );
      EXPECT_EQ( view.entryType(), tags[variant].entryType );
      EXPECT_EQ( view.vmv(), 0 );
   } );
}

TEST( IsemMgmtReq, FreshViewHasTheTagOfItsVariant ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& ) {
      for( const U8 fill : { U8{ 0 }, U8{ 0xff } } ) {
         Image image( 24, fill );
         const View view = over( chipType, variant, image );
         EXPECT_EQ( view.tid(), tags[variant].tid ) << chipType << ", " << variant;
         EXPECT_EQ( view.entryType(), tags[variant].entryType ) << chipType << ", " << variant;
         EXPECT_EQ( view.vmv(), tags[variant].vmv ) << chipType << ", " << variant;
         EXPECT_TRUE( passes( chipType, variant, image ) );
      }
   } );
}

TEST( IsemMgmtReq, StampTouchesTheTagFieldsAlone ) {
   // `tid` 27 at 172:6, `entryType` 1 at 169:3, `vmv` 2 at 84:2.
   Bits tag = Bits( 27 ) << 172 | Bits( 1 ) << 169 | Bits( 2 ) << 84;
   EXPECT_EQ( bitsAt( stamped( 10, 1, 24 ), 0, 192 ), tag );
   const Bits places = lowOnes( 6 ) << 172 | lowOnes( 3 ) << 169 | lowOnes( 2 ) << 84;
   EXPECT_EQ( bitsAt( stamped( 10, 1, 24, 0xff ), 0, 192 ), ( lowOnes( 192 ) & ~places ) | tag );
   // `tid` 3 at 171:6, `entryType` 1 at 168:3, `vmv` 1 at 84:2 and 83:2.
   tag = Bits( 3 ) << 171 | Bits( 1 ) << 168 | Bits( 1 ) << 84;
   EXPECT_EQ( bitsAt( stamped( 14, 14, 24 ), 0, 192 ), tag );
   tag = Bits( 3 ) << 171 | Bits( 1 ) << 168 | Bits( 1 ) << 83;
   EXPECT_EQ( bitsAt( stamped( 15, 14, 24 ), 0, 192 ), tag );
}

TEST( IsemMgmtReq, ShortBufferIsRefusedBeforeTheFirstStamp ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& ) {
      const unsigned bytes = chipType >= 15 && !inMemoryA( variant ) ? 22 : 23;
      Image tooShort( bytes - 1, 0x5a );
      EXPECT_EQ( expressionOf( [&] { over( chipType, variant, tooShort ); } ),
                 bytes == 22 ? "len_ >= 22" : "len_ >= 23" )
         << chipType << ", " << variant;
      EXPECT_EQ( tooShort, Image( bytes - 1, 0x5a ) );
      Image enough( bytes );
      EXPECT_EQ( expressionOf( [&] { over( chipType, variant, enough ); } ), "none" );
      EXPECT_TRUE( passes( chipType, variant, enough ) );
   } );
}

TEST( IsemMgmtReq, ExistingEntryIsTestedInTheOrderTidEntryTypeVmv ) {
   const auto refusal = []( Image image ) {
      const Image before = image;
      const std::string expression = expressionOf( [&] { over( 10, 1, image, true ); } );
      EXPECT_EQ( image, before );
      return expression;
   };
   Image image = stamped( 10, 1, 24, 0x5a );
   EXPECT_EQ( refusal( image ), "none" );
   Testing::bitsAtAre( image, 84, 2, Bits( 1 ) );
   EXPECT_EQ( refusal( image ), "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 2, 84 ); "
                                "( n == 2 ); })" );
   Testing::bitsAtAre( image, 169, 3, Bits( 0 ) );
   EXPECT_EQ( refusal( image ), "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 3, 169 );"
                                " ( n == 1 ); })" );
   Testing::bitsAtAre( image, 172, 6, Bits( 26 ) );
   EXPECT_EQ( refusal( image ), "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 6, 172 );"
                                " ( n == 27 ); })" );
}

TEST( IsemMgmtReq, PartnersInTwoMemoriesDifferInTheirAddressAlone ) {
   const std::vector<std::pair<unsigned, unsigned>> partners{ { 1, 2 },   { 3, 4 },   { 5, 6 },
                                                              { 7, 8 },   { 9, 10 },  { 12, 13 },
                                                              { 15, 16 }, { 17, 18 }, { 19, 20 } };
   for( const unsigned chipType : formatChips ) {
      for( const auto& [lower, higher] : partners ) {
         Image image = stamped( chipType, lower, 24 );
         EXPECT_EQ( image, stamped( chipType, higher, 24 ) );
         EXPECT_EQ(
            expressionOf( [&, variant = higher] { over( chipType, variant, image, true ); } ),
            "none" );
         EXPECT_TRUE( passes( chipType, higher, image ) );
         View one = over( chipType, lower, image );
         View two = over( chipType, higher, image );
         for( const Testing::FieldUnderTest& field : expectation().fields ) {
            EXPECT_EQ( field.valid( one ), field.valid( two ) );
            if( field.valid( one ) ) {
               EXPECT_EQ( field.offset( one ), field.offset( two ) ) << field.name;
               EXPECT_EQ( field.len( one ), field.len( two ) ) << field.name;
            }
         }
         const U32 baseB = chipType <= 12 ? 0x11000 : 0x9000;
         const U32 baseC = chipType <= 12 ? 0x17000 : 0x14000;
         EXPECT_EQ( addressOf( chipType, lower, 5 ).address, baseB + 5 );
         EXPECT_EQ( addressOf( chipType, higher, 5 ).address, baseC + 5 );
      }
   }
}

TEST( IsemMgmtReq, AddressesReachTheLastEntry ) {
   EXPECT_EQ( addressOf( 10, 0, 1023 ), ( Address{ 0x53ff, 2, 5 } ) );
   EXPECT_EQ( addressOf( 12, 1, 1023 ), ( Address{ 0x113ff, 2, 5 } ) );
   EXPECT_EQ( addressOf( 10, 2, 1023 ), ( Address{ 0x173ff, 2, 5 } ) );
   EXPECT_EQ( addressOf( 13, 11, 1023 ), ( Address{ 0x43ff, 0, 12 } ) );
   EXPECT_EQ( addressOf( 13, 12, 1023 ), ( Address{ 0x93ff, 0, 12 } ) );
   EXPECT_EQ( addressOf( 14, 13, 1023 ), ( Address{ 0x143ff, 24, 36 } ) );
   EXPECT_EQ( addressOf( 14, 14, 1023 ), ( Address{ 0x43ff, 24, 36 } ) );
   EXPECT_EQ( addressOf( 15, 15, 1023 ), ( Address{ 0x93ff, 8, 20 } ) );
   EXPECT_EQ( addressOf( 16, 16, 1023 ), ( Address{ 0x143ff, 8, 20 } ) );
   for( const unsigned chipType : formatChips ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 1024 ); } ), "tableEntry < 1024" );
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 1, 0, 1 ); } ), "identifier <= 0" );
   }
   for( const unsigned chipType : registerChips ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 1 ); } ), "tableEntry < 1" );
   }
}

TEST( IsemMgmtReq, IdentifierOfTheRegisterSelectsTheBlock ) {
   EXPECT_EQ( addressOf( 2, 0, 0 ), ( Address{ 0x480000, 0, 52 } ) );
   EXPECT_EQ( addressOf( 3, 0, 0 ), ( Address{ 0x480000, 0, 52 } ) );
   EXPECT_EQ( addressOf( 4, 0, 0, 0 ), ( Address{ 0x1000000, 0, 60 } ) );
   EXPECT_EQ( addressOf( 5, 0, 0, 1 ), ( Address{ 0x1000000, 0, 61 } ) );
   EXPECT_EQ( addressOf( 7, 0, 0 ), ( Address{ 0x1000000, 0, 64 } ) );
   EXPECT_EQ( addressOf( 8, 0, 0, 0 ), ( Address{ 0x1000000, 0, 64 } ) );
   EXPECT_EQ( addressOf( 8, 0, 0, 1 ), ( Address{ 0x1000000, 0, 65 } ) );
   for( const unsigned chipType : { 2u, 3u, 6u, 7u } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 0, 1 ); } ), "identifier <= 0" );
      EXPECT_EQ( View::instanceCount( chipType, 0 ), 1 );
   }
   for( const unsigned chipType : { 4u, 5u, 8u } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 0, 2 ); } ), "identifier <= 1" );
      EXPECT_EQ( View::instanceCount( chipType, 0 ), 2 );
   }
}

TEST( IsemMgmtReq, ReducedPairsHaveTheFrameAndAnAddressAlone ) {
   const std::set<std::string> frame{ "command",   "entry", "wayIndex", "prefixNum", "address",
                                      "entryType", "tid",   "hits",     "found" };
   for( const unsigned chipType : { 12u, 14u } ) {
      for( const U8 variant : { U8{ 7 }, U8{ 8 }, U8{ 19 }, U8{ 20 } } ) {
         EXPECT_TRUE( View::chipTypeVariantValid( chip( chipType ), variant ) );
         EXPECT_EQ( View::fieldCount( chipType, variant ), 9 );
         // No tag: any buffer is fresh or existing, and is left alone.
         for( const U8 fill : { U8{ 0 }, U8{ 0xff } } ) {
            Image image( 24, fill );
            EXPECT_EQ( expressionOf( [&] { over( chipType, variant, image, true ); } ), "none" );
            const View view = over( chipType, variant, image );
            EXPECT_EQ( image, Image( 24, fill ) );
            std::set<std::string> present;
            for( const Testing::FieldUnderTest& field : expectation().fields ) {
               if( field.valid( view ) ) {
                  present.insert( field.name );
               }
            }
            EXPECT_EQ( present, frame );
            EXPECT_EQ( expressionOf( [&] { view.key(); } ), "0" );
            EXPECT_EQ( expressionOf( [&] { view.payload(); } ), "0" );
            EXPECT_EQ( expressionOf( [&] { view.inLif(); } ), "0" );
            EXPECT_EQ( expressionOf( [&] { view.vmv(); } ), "0" );
            EXPECT_EQ( view.tidOffset(), 172 );
            EXPECT_EQ( view.wayIndexLen(), 4 );
         }
         Image none;
         EXPECT_EQ( expressionOf( [&] { over( chipType, variant, none ); } ), "none" );
         EXPECT_TRUE( View::isIsemMgmtReq( chip( chipType ), nullptr, 0, variant ) );
      }
   }
   EXPECT_EQ( addressOf( 12, 7, 3 ), ( Address{ 0x11003, 2, 5 } ) );
   EXPECT_EQ( addressOf( 12, 20, 3 ), ( Address{ 0x17003, 2, 5 } ) );
   EXPECT_EQ( addressOf( 14, 8, 3 ), ( Address{ 0x14003, 24, 36 } ) );
   EXPECT_EQ( addressOf( 14, 19, 3 ), ( Address{ 0x9003, 24, 36 } ) );
}

TEST( IsemMgmtReq, CVidNamesItsOnlyVariant ) {
   for( const unsigned chipType : formatChips ) {
      for( U8 variant = 0; variant <= 20; ++variant ) {
         View::WithStorage view( chip( chipType ), variant );
         const std::string expected = variant == 14 ? "none" : "variant_ == 14";
         EXPECT_EQ( expressionOf( [&] { view.cVid(); } ), expected );
         EXPECT_EQ( expressionOf( [&] { view.cVidIs( 1 ); } ), expected );
         EXPECT_EQ( expressionOf( [&] { view.cVidMask(); } ), expected );
         EXPECT_EQ( expressionOf( [&] { view.cVidOffset(); } ), expected );
         EXPECT_EQ( expressionOf( [&] { view.fieldOffset( 51 ); } ), expected );
         EXPECT_EQ( view.fieldWidth( 51 ), variant == 14 ? 12 : 0 );
         // A field of two variants names neither.
         EXPECT_EQ( expressionOf( [&] { view.sVid(); } ),
                    variant == 0 || variant == 14 ? "none" : "0" );
      }
   }
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   const auto failure = failureOf( [&] { view.cVidLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "BCM88690_B0 does not have field C_VID" );
   View::WithStorage old( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { old.cVid(); } ), "0" );
}

TEST( IsemMgmtReq, DiscriminatorRefusesOtherChips ) {
   Image image = stamped( 10, 1, 24 );
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      if( chipType <= 1 || chipType == 9 || chipType == 11 || chipType > 16 ) {
         EXPECT_FALSE( passes( chipType, 1, image ) ) << chipType;
         EXPECT_FALSE( View::isIsemMgmtReq( chip( chipType ), nullptr, 0, 255 ) ) << chipType;
      }
   }
}

TEST( IsemMgmtReq, DiscriminatorPassesWhatHasNoTag ) {
   for( unsigned variant = 0; variant < 256; ++variant ) {
      const U8 number = static_cast<U8>( variant );
      for( const unsigned chipType : registerChips ) {
         EXPECT_TRUE( View::isIsemMgmtReq( chip( chipType ), nullptr, 0, number ) );
      }
      for( const unsigned chipType : formatChips ) {
         // Without reading: a null buffer may claim any length.
         const bool untagged = variant > 20 || isReduced( chipType, variant );
         EXPECT_EQ( View::isIsemMgmtReq( chip( chipType ), nullptr, 0, number ), untagged )
            << chipType << ", " << variant;
         if( untagged ) {
            EXPECT_TRUE( View::isIsemMgmtReq( chip( chipType ), nullptr, 24, number ) );
         }
      }
   }
}

TEST( IsemMgmtReq, DiscriminatorDoesNotReadAShortBuffer ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& ) {
      const unsigned bytes = chipType >= 15 && !inMemoryA( variant ) ? 22 : 23;
      const U8 number = static_cast<U8>( variant );
      for( unsigned len = 0; len < bytes; ++len ) {
         EXPECT_FALSE(
            View::isIsemMgmtReq( chip( chipType ), nullptr, static_cast<U16>( len ), number ) );
      }
      Image image = stamped( chipType, variant, 24 );
      for( unsigned len = 0; len <= 24; ++len ) {
         EXPECT_EQ(
            View::isIsemMgmtReq( chip( chipType ), image.data(), static_cast<U16>( len ), number ),
            len >= bytes )
            << chipType << ", " << variant << ", " << len;
      }
   } );
   // Zeros have no tag.
   EXPECT_FALSE( passes( 10, 7, Image( 24 ) ) );
   EXPECT_FALSE( passes( 10, 7, Image() ) );
   EXPECT_FALSE( View::isIsemMgmtReq( chip( 10 ), stamped( 10, 7, 24 ).data(), 22, 7 ) );
   EXPECT_TRUE( passes( 12, 7, Image() ) );
}

TEST( IsemMgmtReq, DiscriminatorComparesAllOfTheTagAndNothingElse ) {
   forEachFormat( []( unsigned chipType, unsigned variant, const Format& format ) {
      unsigned tid = chipType >= 15 ? 170 : 172;
      if( inMemoryA( variant ) ) {
         tid = chipType >= 14 ? 171 : 173;
      }
      const Bits places =
         lowOnes( 6 ) << tid | lowOnes( 3 ) << ( tid - 3 ) | lowOnes( 2 ) << format.vmvOffset;
      const Image entry = stamped( chipType, variant, 24, 0x5a );
      for( unsigned bit = 0; bit < 192; ++bit ) {
         Image image = entry;
         Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
         EXPECT_EQ( passes( chipType, variant, image ), !places[bit] )
            << chipType << ", " << variant << " bit " << bit;
      }
   } );
}

TEST( IsemMgmtReq, DiscriminatorTellsTheVariantsOfOneMemoryApart ) {
   for( const unsigned chipType : formatChips ) {
      for( unsigned from = 0; from <= 20; ++from ) {
         if( isReduced( chipType, from ) ) {
            continue;
         }
         Image image = stamped( chipType, from, 24, 0xa5 );
         for( unsigned variant = 0; variant <= 20; ++variant ) {
            if( !isReduced( chipType, variant ) && inMemoryA( from ) == inMemoryA( variant ) ) {
               const bool same = tags[from].tid == tags[variant].tid;
               EXPECT_EQ( passes( chipType, variant, image ), same )
                  << chipType << ", " << from << " as " << variant;
               EXPECT_EQ( expressionOf( [&] { over( chipType, variant, image, true ); } ) == "none",
                          same );
            }
         }
      }
   }
}

TEST( IsemMgmtReq, FromTheRegistry ) {
   const auto view = Hardware::stringObj( "IsemMgmtReq", Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( view->len(), 24 );
   EXPECT_EQ( view->width(), 3 );
   EXPECT_EQ( view->entries(), 1u );
   const auto format = Hardware::stringObj( "IsemMgmtReq", Hardware::BCM88850_A0, 20 );
   EXPECT_EQ( format->width(), 6 );
   EXPECT_EQ( format->entries(), 1024u );
   EXPECT_FALSE( Hardware::chipTypeVariantValid( "IsemMgmtReq", Hardware::BCM88850_A0, 21 ) );
}

} // namespace
