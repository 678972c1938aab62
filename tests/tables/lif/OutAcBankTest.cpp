// OutAcBank: a bank row read raw, as two AC halves or as a link-layer entry; one tagged entry on
// the later chip types.
#include "support/Contract.h"

#include <Hardware/OutAcBank.h>

namespace {

using View = Hardware::OutAcBank;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "OutAcBank" );
   expected.storageBytes = 80;
   expected.discriminator = View::isOutAcBank;
   // clang-format off
   expected.fields = {
      WIDE_FIELD( Raw128, eedbBankData, EedbBankData, 78, "EEDB_BANK_DATA" ),
      NARROW_FIELD( U8, ac0EntryFormat, Ac0EntryFormat, 15, "AC_0_ENTRY_FORMAT" ),
      NARROW_FIELD( U8, arpLlActionNextOutLifLsb, ArpLlActionNextOutLifLsb, 35,
                    "ARP_LL_ACTION_NEXT_OUT_LIF_LSB" ),
      NARROW_FIELD( U16, vlanEditVid1, VlanEditVid1, 355, "VLAN_EDIT_VID_1" ),
      NARROW_FIELD( U16, vlanEditVid2, VlanEditVid2, 356, "VLAN_EDIT_VID_2" ),
      NARROW_FIELD( U8, vlanEditProfile, VlanEditProfile, 354, "VLAN_EDIT_PROFILE" ),
      NARROW_FIELD( U8, arpLlActionNativeLl, ArpLlActionNativeLl, 34,
                    "ARP_LL_ACTION_NATIVE_LL" ),
      NARROW_FIELD( U32, statObjectId, StatObjectId, 303, "STAT_OBJECT_ID" ),
      NARROW_FIELD( U8, arpLlActionVsiValid, ArpLlActionVsiValid, 42,
                    "ARP_LL_ACTION_VSI_VALID" ),
      NARROW_FIELD( U8, arpLlActionDrop, ArpLlActionDrop, 32, "ARP_LL_ACTION_DROP" ),
      NARROW_FIELD( U16, ac0ActionVid2, Ac0ActionVid2, 13, "AC_0_ACTION_VID_2" ),
      NARROW_FIELD( U8, ac0ActionPcpDeiProfile, Ac0ActionPcpDeiProfile, 10,
                    "AC_0_ACTION_PCP_DEI_PROFILE" ),
      NARROW_FIELD( U16, ac0ActionVid1, Ac0ActionVid1, 12, "AC_0_ACTION_VID_1" ),
      NARROW_FIELD( U8, arpLlActionReserved, ArpLlActionReserved, 40,
                    "ARP_LL_ACTION_RESERVED" ),
      NARROW_FIELD( U8, arpLlActionActionIdentifier, ArpLlActionActionIdentifier, 31,
                    "ARP_LL_ACTION_ACTION_IDENTIFIER" ),
      NARROW_FIELD( U8, statObjectCmd, StatObjectCmd, 302, "STAT_OBJECT_CMD" ),
      NARROW_FIELD( U8, arpLlEntryFormat, ArpLlEntryFormat, 43, "ARP_LL_ENTRY_FORMAT" ),
      NARROW_FIELD( U16, arpLlActionVsi, ArpLlActionVsi, 41, "ARP_LL_ACTION_VSI" ),
      NARROW_FIELD( U64, arpLlActionMac, ArpLlActionMac, 33, "ARP_LL_ACTION_MAC" ),
      NARROW_FIELD( U8, arpLlActionOamLifSet, ArpLlActionOamLifSet, 37,
                    "ARP_LL_ACTION_OAM_LIF_SET" ),
      NARROW_FIELD( U8, arpLlActionRemarkProfile, ArpLlActionRemarkProfile, 39,
                    "ARP_LL_ACTION_REMARK_PROFILE" ),
      NARROW_FIELD( U8, ac0ActionDrop, Ac0ActionDrop, 7, "AC_0_ACTION_DROP" ),
      NARROW_FIELD( U8, ac1ActionDrop, Ac1ActionDrop, 16, "AC_1_ACTION_DROP" ),
      NARROW_FIELD( U8, acPlusDataEntry, AcPlusDataEntry, 26, "AC_PLUS_DATA_ENTRY" ),
      NARROW_FIELD( U8, remarkProfile, RemarkProfile, 293, "REMARK_PROFILE" ),
      WIDE_FIELD( Raw128, mdbEntry, MdbEntry, 243, "MDB_ENTRY" ),
      NARROW_FIELD( U16, nwkQosIdx, NwkQosIdx, 255, "NWK_QOS_IDX" ),
      NARROW_FIELD( U8, oamLifSet, OamLifSet, 256, "OAM_LIF_SET" ),
      NARROW_FIELD( U8, acEntryFormat, AcEntryFormat, 25, "AC_ENTRY_FORMAT" ),
      NARROW_FIELD( U8, arpLlActionNextOutLifValid, ArpLlActionNextOutLifValid, 36,
                    "ARP_LL_ACTION_NEXT_OUT_LIF_VALID" ),
      NARROW_FIELD( U16, ac1ActionVid1, Ac1ActionVid1, 21, "AC_1_ACTION_VID_1" ),
      NARROW_FIELD( U8, actionProfile, ActionProfile, 4, "ACTION_PROFILE" ),
      NARROW_FIELD( U16, ac1ActionVid2, Ac1ActionVid2, 22, "AC_1_ACTION_VID_2" ),
      NARROW_FIELD( U8, ac1ActionUseAsDataBit, Ac1ActionUseAsDataBit, 20,
                    "AC_1_ACTION_USE_AS_DATA_BIT" ),
      NARROW_FIELD( U8, ac1ActionOamLifSet, Ac1ActionOamLifSet, 17,
                    "AC_1_ACTION_OAM_LIF_SET" ),
      NARROW_FIELD( U8, ac0ActionOutlifProfile, Ac0ActionOutlifProfile, 9,
                    "AC_0_ACTION_OUTLIF_PROFILE" ),
      NARROW_FIELD( U8, protectionPath, ProtectionPath, 287, "PROTECTION_PATH" ),
      NARROW_FIELD( U8, ac1ActionVlanEditProfile, Ac1ActionVlanEditProfile, 23,
                    "AC_1_ACTION_VLAN_EDIT_PROFILE" ),
      NARROW_FIELD( U8, outLifProfile, OutLifProfile, 271, "OUT_LIF_PROFILE" ),
      NARROW_FIELD( U8, ac1EntryFormat, Ac1EntryFormat, 24, "AC_1_ENTRY_FORMAT" ),
      NARROW_FIELD( U8, ac0ActionOamLifSet, Ac0ActionOamLifSet, 8,
                    "AC_0_ACTION_OAM_LIF_SET" ),
      NARROW_FIELD( U8, ac0ActionUseAsDataBit, Ac0ActionUseAsDataBit, 11,
                    "AC_0_ACTION_USE_AS_DATA_BIT" ),
      NARROW_FIELD( U8, ac0ActionVlanEditProfile, Ac0ActionVlanEditProfile, 14,
                    "AC_0_ACTION_VLAN_EDIT_PROFILE" ),
      NARROW_FIELD( U8, arpLlActionOutlifProfile, ArpLlActionOutlifProfile, 38,
                    "ARP_LL_ACTION_OUTLIF_PROFILE" ),
      NARROW_FIELD( U8, ac1ActionPcpDeiProfile, Ac1ActionPcpDeiProfile, 19,
                    "AC_1_ACTION_PCP_DEI_PROFILE" ),
      NARROW_FIELD( U8, encapQosModel, EncapQosModel, 93, "ENCAP_QOS_MODEL" ),
      NARROW_FIELD( U32, protectionPointer, ProtectionPointer, 288, "PROTECTION_POINTER" ),
      NARROW_FIELD( U8, ac1ActionOutlifProfile, Ac1ActionOutlifProfile, 18,
                    "AC_1_ACTION_OUTLIF_PROFILE" ),
      NARROW_FIELD( U8, egressLastLayer, EgressLastLayer, 86, "EGRESS_LAST_LAYER" ),
      READ_ONLY_FIELD( U8, resultType, ResultType, 296, "RESULT_TYPE" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2,3", "4-8", "10,12,13,15,16", "14" }, {
         { "mdbEntry",          { "-",    "-",    "0:120",  "0:120"  } },
         { "eedbBankData",      { "0:78", "0:88", "-",      "-"      } },
         { "egressLastLayer",   { "-",    "-",    "15:1",   "14:1"   } },
         { "statObjectId",      { "-",    "-",    "16:17",  "15:17"  } },
         { "statObjectCmd",     { "-",    "-",    "33:5",   "32:5"   } },
         { "protectionPointer", { "-",    "-",    "38:17",  "37:17"  } },
         { "protectionPath",    { "-",    "-",    "55:1",   "54:1"   } },
         { "outLifProfile",     { "-",    "-",    "56:6",   "55:6"   } },
         { "oamLifSet",         { "-",    "-",    "62:1",   "61:1"   } },
         { "encapQosModel",     { "-",    "-",    "63:3",   "62:3"   } },
         { "remarkProfile",     { "-",    "-",    "66:5",   "65:5"   } },
         { "nwkQosIdx",         { "-",    "-",    "71:11",  "70:11"  } },
         { "vlanEditProfile",   { "-",    "-",    "82:6",   "81:6"   } },
         { "actionProfile",     { "-",    "-",    "88:2",   "87:2"   } },
         { "vlanEditVid1",      { "-",    "-",    "90:12",  "89:12"  } },
         { "vlanEditVid2",      { "-",    "-",    "102:12", "101:12" } },
         { "resultType",        { "-",    "-",    "114:6",  "113:7"  } },
      } },
      { "1", { "2", "3", "4,5", "6-8" }, {
         { "ac0ActionPcpDeiProfile",   { "0:4",   "0:4",   "0:4",   "0:4"   } },
         { "ac0ActionVid1",            { "4:12",  "4:12",  "4:12",  "16:12" } },
         { "ac0ActionVid2",            { "16:12", "16:12", "16:12", "4:12"  } },
         { "ac0ActionVlanEditProfile", { "28:4",  "28:4",  "28:5",  "28:5"  } },
         { "ac0ActionOamLifSet",       { "32:1",  "32:1",  "33:1",  "33:1"  } },
         { "ac0ActionDrop",            { "33:1",  "33:1",  "37:1",  "40:1"  } },
         { "ac0ActionOutlifProfile",   { "-",     "-",     "34:3",  "34:6"  } },
         { "ac0EntryFormat",           { "34:3",  "35:2",  "39:2",  "-"     } },
         { "ac0ActionUseAsDataBit",    { "-",     "34:1",  "38:1",  "-"     } },
         { "ac1ActionPcpDeiProfile",   { "37:4",  "37:4",  "41:4",  "41:4"  } },
         { "ac1ActionVid1",            { "41:12", "41:12", "45:12", "57:12" } },
         { "ac1ActionVid2",            { "53:12", "53:12", "57:12", "45:12" } },
         { "ac1ActionVlanEditProfile", { "65:4",  "65:4",  "69:5",  "69:5"  } },
         { "ac1ActionOamLifSet",       { "69:1",  "69:1",  "74:1",  "74:1"  } },
         { "ac1ActionDrop",            { "70:1",  "70:1",  "78:1",  "81:1"  } },
         { "ac1EntryFormat",           { "71:3",  "72:2",  "80:4",  "-"     } },
         { "ac1ActionUseAsDataBit",    { "-",     "71:1",  "79:1",  "-"     } },
         { "acEntryFormat",            { "74:4",  "74:4",  "84:4",  "84:4"  } },
         { "ac1ActionOutlifProfile",   { "-",     "-",     "75:3",  "75:6"  } },
         { "acPlusDataEntry",          { "-",     "-",     "-",     "82:2"  } },
      } },
      { "2", { "2,3", "4-6", "7,8" }, {
         { "arpLlActionNextOutLifLsb",    { "0:5",   "0:6",   "0:6"   } },
         { "arpLlActionNextOutLifValid",  { "5:1",   "6:1",   "6:1"   } },
         { "arpLlActionVsi",              { "6:16",  "7:16",  "7:16"  } },
         { "arpLlActionVsiValid",         { "22:1",  "23:1",  "23:1"  } },
         { "arpLlActionMac",              { "23:48", "24:48", "24:48" } },
         { "arpLlActionOamLifSet",        { "71:1",  "75:1",  "75:1"  } },
         { "arpLlActionRemarkProfile",    { "73:2",  "72:3",  "72:3"  } },
         { "arpLlActionDrop",             { "72:1",  "82:1",  "82:1"  } },
         { "arpLlEntryFormat",            { "75:3",  "85:3",  "85:3"  } },
         { "arpLlActionOutlifProfile",    { "-",     "76:5",  "76:5"  } },
         { "arpLlActionActionIdentifier", { "-",     "81:1",  "81:1"  } },
         { "arpLlActionReserved",         { "-",     "83:2",  "84:1"  } },
         { "arpLlActionNativeLl",         { "-",     "-",     "83:1"  } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3",      "0", 3,  2048,       16, 1,  1, 3 },
      { "2",        "1", 3,  2048,       16, 15, 1, 3 },
      { "3",        "1", 3,  2048,       16, 17, 1, 3 },
      { "2,3",      "2", 3,  2048,       16, 9,  1, 3 },
      { "4",        "0", 3,  4096,       22, 1,  1, 3 },
      { "4",        "1", 3,  2048,       22, 19, 1, 3 },
      { "4",        "2", 3,  2048,       22, 12, 1, 3 },
      { "5",        "0", 3,  4096,       22, 1,  1, 3 },
      { "5",        "1", 3,  4096,       1,  19, 1, 3 },
      { "5",        "2", 3,  4096,       1,  12, 1, 3 },
      { "6,7",      "0", 3,  4096,       18, 1,  1, 3 },
      { "6,7",      "1", 3,  4096,       18, 16, 1, 3 },
      { "6",        "2", 3,  4096,       18, 12, 1, 3 },
      { "7",        "2", 3,  4096,       18, 13, 1, 3 },
      { "8",        "0", 3,  4096,       26, 1,  1, 3 },
      { "8",        "1", 3,  4096,       26, 16, 1, 3 },
      { "8",        "2", 3,  4096,       26, 13, 1, 3 },
      { "10,12-16", "0", 20, 4294967295, 1,  16, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0-2", 0x140000, 1, 2048, { { 0,  3  } } },
      { "4,5",   "0",   0x100000, 1, 4096, { { 0,  52 } } },
      { "4",     "1,2", 0x100000, 1, 2048, { { 0,  52 } } },
      { "5",     "1,2", 0x100000, 1, 0,    { { 0,  52 } } },
      { "6,7",   "0-2", 0x100000, 1, 4096, { { 0,  52 } } },
      { "8",     "0-2", 0x100000, 1, 4096, { { 0,  56 } } },
      { "10,12", "0",   0x0,      1, 0,    { { 10, 1  } } },
      { "13",    "0",   0x0,      1, 0,    { { 4,  5  } } },
      { "14",    "0",   0x0,      1, 0,    { { 28, 12 } } },
      { "15,16", "0",   0x0,      1, 0,    { { 16, 15 } } },
   };
   // clang-format on
   expected.tags = {
      { "10,12-16", "0", { { "resultType", 8 } } },
   };
   return expected;
}

CONTRACT_TESTS( OutAcBank, expectation() )

TEST( OutAcBank, HalvesExchangeTheirVids ) {
   U8 buffer[11] = {};
   View five( Hardware::BCM88375_B0, buffer, sizeof buffer, false, 1 );
   View six( Hardware::BCM88470_A0, buffer, sizeof buffer, false, 1 );
   five.ac0ActionVid1Is( 0x123 );
   five.ac0ActionVid2Is( 0x456 );
   EXPECT_EQ( six.ac0ActionVid1(), 0x456 );
   EXPECT_EQ( six.ac0ActionVid2(), 0x123 );
}

} // namespace
