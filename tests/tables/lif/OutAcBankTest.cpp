// OutAcBank: a bank row read raw, as two AC halves or as a link-layer entry; one tagged entry on
// the later chip types.
#include "support/Contract.h"

#include <Hardware/OutAcBank.h>
#include <Hardware/Registry.h>

#include <algorithm>

namespace {

using View = Hardware::OutAcBank;
using Testing::Bits;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::Image;

Testing::Expectation stated() {
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

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( OutAcBank, expectation() )

constexpr unsigned olderChips[] = { 2, 3, 4, 5, 6, 7, 8 };
constexpr unsigned taggedChips[] = { 10, 12, 13, 14, 15, 16 };

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

U32 addressOf( U32 chipType, U8 variant, U32 tableEntry, U16 arrayIndex ) {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   EXPECT_TRUE( View::getSchanAddress( chipType, variant, address, accessType, destBlock, 0,
                                       tableEntry, arrayIndex ) );
   return address;
}

TEST( OutAcBank, ElementsOfSiblingsLieApart ) {
   EXPECT_EQ( addressOf( 4, 0, 0, 1 ), 0x101000u );
   EXPECT_EQ( addressOf( 4, 1, 0, 1 ), 0x100800u );
   EXPECT_EQ( addressOf( 4, 2, 0, 1 ), 0x100800u );
   EXPECT_EQ( addressOf( 5, 0, 0, 1 ), 0x101000u );
   EXPECT_EQ( expressionOf( [] { addressOf( 5, 1, 0, 1 ); } ), "arrayIndex == 0" );
   EXPECT_EQ( expressionOf( [] { addressOf( 5, 2, 0, 1 ); } ), "arrayIndex == 0" );
   for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 2 } } ) {
      // In the first element there is no difference.
      EXPECT_EQ( addressOf( 4, variant, 2047, 0 ), 0x1007ffu );
      EXPECT_EQ( addressOf( 5, variant, 4095, 0 ), 0x100fffu );
      EXPECT_EQ( addressOf( 6, variant, 4095, 17 ), 0x111fffu );
      EXPECT_EQ( addressOf( 8, variant, 4095, 25 ), 0x119fffu );
      EXPECT_EQ( addressOf( 2, variant, 2047, 15 ), 0x147fffu );
   }
   EXPECT_EQ( addressOf( 4, 0, 2048, 0 ), 0x100800u );
   EXPECT_EQ( expressionOf( [] { addressOf( 4, 1, 2048, 0 ); } ), "tableEntry < 2048" );
   EXPECT_EQ( expressionOf( [] { addressOf( 4, 2, 0, 22 ); } ), "arrayIndex < 22" );
   EXPECT_EQ( expressionOf( [] { addressOf( 7, 1, 0, 18 ); } ), "arrayIndex < 18" );
   EXPECT_EQ( expressionOf( [] { addressOf( 8, 1, 0, 26 ); } ), "arrayIndex < 26" );
}

TEST( OutAcBank, OneEntryIsOutOfReachOnTheTaggedChips ) {
   for( const unsigned chipType : taggedChips ) {
      EXPECT_EQ( addressOf( chipType, 0, 4294967294, 0 ), 0xfffffffeu );
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 4294967295, 0 ); } ),
                 "tableEntry < 4294967295" );
   }
}

TEST( OutAcBank, HalvesExchangeTheirVids ) {
   for( const unsigned chipType : olderChips ) {
      View::WithStorage view( chip( chipType ), 1 );
      EXPECT_EQ( view.ac0ActionVid1Offset(), chipType <= 5 ? 4 : 16 );
      EXPECT_EQ( view.ac0ActionVid2Offset(), chipType <= 5 ? 16 : 4 );
   }
   U8 buffer[11] = {};
   View five( Hardware::BCM88375_B0, buffer, sizeof buffer, false, 1 );
   View six( Hardware::BCM88470_A0, buffer, sizeof buffer, false, 1 );
   five.ac0ActionVid1Is( 0x123 );
   five.ac0ActionVid2Is( 0x456 );
   five.ac1ActionVid1Is( 0x789 );
   five.ac1ActionVid2Is( 0xabc );
   EXPECT_EQ( six.ac0ActionVid1(), 0x456 );
   EXPECT_EQ( six.ac0ActionVid2(), 0x123 );
   EXPECT_EQ( six.ac1ActionVid1(), 0xabc );
   EXPECT_EQ( six.ac1ActionVid2(), 0x789 );
}

TEST( OutAcBank, EntryFormatsMakeRoomForTheDataBits ) {
   for( const unsigned chipType : olderChips ) {
      View::WithStorage view( chip( chipType ), 1 );
      EXPECT_EQ( view.isAc0EntryFormatValid(), chipType <= 5 );
      EXPECT_EQ( view.isAc1EntryFormatValid(), chipType <= 5 );
      EXPECT_EQ( view.isAcPlusDataEntryValid(), chipType >= 6 );
      EXPECT_EQ( view.isAc0ActionUseAsDataBitValid(), chipType >= 3 && chipType <= 5 );
      EXPECT_EQ( view.isAc1ActionUseAsDataBitValid(), chipType >= 3 && chipType <= 5 );
   }
   U8 buffer[10] = {};
   View two( Hardware::BCM88650_B0, buffer, sizeof buffer, false, 1 );
   View three( Hardware::BCM88660_A0, buffer, sizeof buffer, false, 1 );
   two.ac0EntryFormatIs( 5 );
   two.ac1EntryFormatIs( 6 );
   EXPECT_EQ( three.ac0EntryFormat(), 2 );
   EXPECT_EQ( three.ac0ActionUseAsDataBit(), 1 );
   EXPECT_EQ( three.ac1EntryFormat(), 3 );
   EXPECT_EQ( three.ac1ActionUseAsDataBit(), 0 );
   EXPECT_EQ( expressionOf( [&] { two.ac0EntryFormatIs( 8 ); } ), "ac0EntryFormat <= 0x7" );
   EXPECT_EQ( expressionOf( [&] { three.ac0EntryFormatIs( 4 ); } ), "ac0EntryFormat <= 0x3" );

   // The halves are not alike on these two.
   for( const unsigned chipType : { 4u, 5u } ) {
      View::WithStorage view( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { view.ac0EntryFormatIs( 4 ); } ), "ac0EntryFormat <= 0x3" );
      EXPECT_EQ( expressionOf( [&] { view.ac1EntryFormatIs( 16 ); } ), "ac1EntryFormat <= 0xf" );
   }
}

TEST( OutAcBank, NativeLinkLayerTakesAReservedBit ) {
   U8 buffer[11] = {};
   View six( Hardware::BCM88470_A0, buffer, sizeof buffer, false, 2 );
   six.arpLlActionReservedIs( 1 );
   for( const unsigned chipType : { 7u, 8u } ) {
      View view( chip( chipType ), buffer, sizeof buffer, false, 2 );
      EXPECT_EQ( view.arpLlActionNativeLl(), 1 );
      EXPECT_EQ( view.arpLlActionReserved(), 0 );
      view.arpLlActionReservedIs( 1 );
      EXPECT_EQ( six.arpLlActionReserved(), 3 );
      view.arpLlActionReservedIs( 0 );
   }
   EXPECT_FALSE( six.isArpLlActionNativeLlValid() );
   EXPECT_EQ( expressionOf( [&] { six.arpLlActionNativeLl(); } ), "0" );
}

TEST( OutAcBank, BoundsFollowTheWidthOfTheChip ) {
   for( const unsigned chipType : olderChips ) {
      View::WithStorage ac( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { ac.ac0ActionVlanEditProfileIs( 0x20 ); } ),
                 chipType <= 3 ? "ac0ActionVlanEditProfile <= 0xf"
                               : "ac0ActionVlanEditProfile <= 0x1f" );
      EXPECT_EQ( expressionOf( [&] { ac.ac0ActionVlanEditProfileIs( 0x10 ); } ),
                 chipType <= 3 ? "ac0ActionVlanEditProfile <= 0xf" : "none" );

      View::WithStorage arp( chip( chipType ), 2 );
      arp.arpLlActionVsiIs( 0xffff );
      EXPECT_EQ( arp.arpLlActionVsi(), 0xffff );
      arp.setField64( 41, 0x12345 );
      EXPECT_EQ( arp.arpLlActionVsi(), 0x2345 );
      EXPECT_EQ( arp.arpLlActionVsiValid(), 0 );
      arp.arpLlActionMacIs( 0xffffffffffff );
      EXPECT_EQ( arp.arpLlActionMac(), 0xffffffffffffu );
      EXPECT_EQ( expressionOf( [&] { arp.arpLlActionMacIs( 0x1000000000000 ); } ),
                 "arpLlActionMac <= 0xffffffffffff" );
   }
}

TEST( OutAcBank, FieldsOfAnotherVariantNameTheirOwn ) {
   for( const unsigned chipType : olderChips ) {
      View::WithStorage raw( chip( chipType ), 0 );
      View::WithStorage ac( chip( chipType ), 1 );
      EXPECT_EQ( expressionOf( [&] { raw.ac0ActionVid1(); } ), "variant_ == 1" );
      EXPECT_EQ( expressionOf( [&] { raw.arpLlActionMac(); } ), "variant_ == 2" );
      EXPECT_EQ( expressionOf( [&] { ac.eedbBankData(); } ), "variant_ == 0" );
      EXPECT_EQ( expressionOf( [&] { ac.arpLlActionVsiIs( 1 ); } ), "variant_ == 2" );
      EXPECT_EQ( expressionOf( [&] { raw.mdbEntry(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { raw.resultType(); } ), "0" );
   }
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { ten.ac0ActionVid1(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { ten.eedbBankData(); } ), "0" );
}

// How many fields of the view, `left` aside, hold each bit of an entry of 120 bits.
std::vector<unsigned> coverage( const View& view, unsigned left ) {
   std::vector<unsigned> fields( 120 );
   for( const Testing::FieldUnderTest& field : expectation().fields ) {
      if( field.identifier != left && view.isFieldValid( field.identifier ) ) {
         const unsigned begin = view.fieldOffset( field.identifier );
         const unsigned end = begin + view.fieldWidth( field.identifier );
         for( unsigned bit = begin; bit < end; ++bit ) {
            ++fields.at( bit );
         }
      }
   }
   return fields;
}

// Bits `begin` to `end` in one field each, the others in none.
std::vector<unsigned> onceEach( unsigned begin, unsigned end ) {
   std::vector<unsigned> fields( 120 );
   std::fill( fields.begin() + begin, fields.begin() + end, 1 );
   return fields;
}

TEST( OutAcBank, FormatsAssignEveryBitOfTheRowOnce ) {
   for( const unsigned chipType : olderChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 2 } } ) {
         View::WithStorage view( chip( chipType ), variant );
         EXPECT_EQ( coverage( view, 0 ), onceEach( 0, chipType <= 3 ? 78 : 88 ) )
            << chipType << ", " << unsigned{ variant };
      }
   }
}

TEST( OutAcBank, FormatFieldsLieAtTheTopOfTheRow ) {
   for( const unsigned chipType : olderChips ) {
      const int top = chipType <= 3 ? 78 : 88;
      View::WithStorage raw( chip( chipType ), 0 );
      View::WithStorage ac( chip( chipType ), 1 );
      View::WithStorage arp( chip( chipType ), 2 );
      EXPECT_EQ( raw.eedbBankDataLen(), top );
      EXPECT_EQ( ac.acEntryFormatOffset() + ac.acEntryFormatLen(), top );
      EXPECT_EQ( arp.arpLlEntryFormatOffset() + arp.arpLlEntryFormatLen(), top );
   }
}

TEST( OutAcBank, FieldsTileTheTopOfTheTaggedEntry ) {
   for( const unsigned chipType : taggedChips ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_EQ( coverage( view, 243 ), onceEach( chipType == 14 ? 14 : 15, 120 ) ) << chipType;
      EXPECT_EQ( view.mdbEntryOffset(), 0 );
      EXPECT_EQ( view.mdbEntryLen(), 120 );
      EXPECT_EQ( view.resultTypeOffset() + view.resultTypeLen(), 120 );
   }
}

TEST( OutAcBank, OneChipHasTheFieldsABitLower ) {
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   View::WithStorage fourteen( Hardware::BCM88850_A0, 0 );
   for( const Testing::FieldUnderTest& field : expectation().fields ) {
      if( field.identifier != 243 && ten.isFieldValid( field.identifier ) ) {
         EXPECT_EQ( fourteen.fieldOffset( field.identifier ) + 1,
                    ten.fieldOffset( field.identifier ) )
            << field.name;
         EXPECT_EQ( fourteen.fieldWidth( field.identifier ),
                    ten.fieldWidth( field.identifier ) + ( field.identifier == 296 ? 1 : 0 ) )
            << field.name;
      }
   }
}

TEST( OutAcBank, VariantsReadOneRow ) {
   Image image( 11 );
   for( std::size_t byte = 0; byte < image.size(); ++byte ) {
      image[byte] = static_cast<U8>( 0x10 * byte + byte ); // 0x00, 0x11, 0x22 to 0xaa
   }
   View raw( Hardware::BCM88470_B0, image.data(), 11, true, 0 );
   View ac( Hardware::BCM88470_B0, image.data(), 11, true, 1 );
   View arp( Hardware::BCM88470_B0, image.data(), 11, true, 2 );
   EXPECT_EQ( raw.eedbBankData().word( 0 ), 0x7766554433221100u );
   EXPECT_EQ( raw.eedbBankData().word( 1 ), 0xaa9988u );
   EXPECT_EQ( raw.stringField( "eedbBankData", 1 ), 0xaa9988u );
   EXPECT_EQ( ac.ac0ActionVid1(), 0x322 );
   EXPECT_EQ( ac.acEntryFormat(), 0xa );
   EXPECT_EQ( arp.arpLlActionMac(), 0x887766554433u );
   EXPECT_EQ( arp.arpLlEntryFormat(), 5 );
   raw.eedbBankDataIs( Raw128{} );
   EXPECT_EQ( image, Image( 11 ) );
   arp.arpLlEntryFormatIs( 7 );
   EXPECT_EQ( ac.acEntryFormat(), 0xe );
}

TEST( OutAcBank, FormatOfARowIsNeitherWrittenNorChecked ) {
   for( const unsigned chipType : olderChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 2 } } ) {
         for( const bool existingEntry : { false, true } ) {
            for( const U8 byte : { U8{ 0 }, U8{ 0xff } } ) {
               Image image( 11, byte );
               View view( chip( chipType ), image.data(), 11, existingEntry, variant );
               EXPECT_EQ( image, Image( 11, byte ) );
            }
         }
      }
   }
}

TEST( OutAcBank, FreshEntryHoldsTheTagAlone ) {
   for( const unsigned chipType : taggedChips ) {
      Image image( 80 );
      View view( chip( chipType ), image.data(), 80, false, 0 );
      Image right( 80 );
      right[14] = chipType == 14 ? 0x10 : 0x20;
      EXPECT_EQ( image, right );
      EXPECT_EQ( view.resultType(), 8 );
      EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), image.data(), 80, true, 0 ); } ),
                 "none" );
      EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), image.data(), 14, false, 0 ); } ),
                 "len_ >= 15" );
      Image zeros( 80 );
      EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), zeros.data(), 80, true, 0 ); } ),
                 chipType == 14
                    ? "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 7, 113 ); "
                      "( n == 8 ); })"
                    : "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 6, 114 ); "
                      "( n == 8 ); })" );
      EXPECT_EQ( zeros, Image( 80 ) );
   }
}

TEST( OutAcBank, WholeEntryOverwritesTheTag ) {
   for( const unsigned chipType : taggedChips ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_TRUE( View::isOutAcBank( chip( chipType ), view.buf(), view.len(), 0 ) );
      view.mdbEntryIs( Raw128{} );
      EXPECT_EQ( view.resultType(), 0 );
      EXPECT_FALSE( View::isOutAcBank( chip( chipType ), view.buf(), view.len(), 0 ) );
      view.mdbEntryMask();
      EXPECT_EQ( view.resultType(), chipType == 14 ? 0x7f : 0x3f );
      EXPECT_EQ( view.buf()[14], 0xff );
      EXPECT_EQ( view.buf()[15], 0 );
      EXPECT_EQ( view.mdbEntry().word( 1 ), 0xffffffffffffffu );
   }
}

TEST( OutAcBank, FifteenBytesServeEveryFieldOfTheTaggedEntry ) {
   for( const unsigned chipType : taggedChips ) {
      Image image( 15 );
      View view( chip( chipType ), image.data(), 15, false, 0 );
      view.vlanEditVid2Is( 0xfff );
      view.vlanEditVid1Is( 0x5a5 );
      view.protectionPointerIs( 0x1ffff );
      view.mdbEntryIs( view.mdbEntry() );
      EXPECT_EQ( view.vlanEditVid2(), 0xfff );
      EXPECT_EQ( view.vlanEditVid1(), 0x5a5 );
      EXPECT_EQ( view.protectionPointer(), 0x1ffffu );
      EXPECT_EQ( view.resultType(), 8 );
      EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 80" );
   }
   // The size is the class's, also where an entry has three words.
   Image image( 79 );
   View two( Hardware::BCM88650_B0, image.data(), 79, false, 0 );
   EXPECT_EQ( expressionOf( [&] { two.getAllFields(); } ), "len_ >= 80" );
}

TEST( OutAcBank, DiscriminatorTellsTheTagsOfSiblingsApart ) {
   for( const unsigned chipType : { 10u, 12u, 13u, 15u, 16u } ) {
      View::WithStorage sibling( chip( chipType ), 0 );
      EXPECT_TRUE( View::isOutAcBank( chip( chipType ), sibling.buf(), 80, 0 ) );
      EXPECT_FALSE( View::isOutAcBank( Hardware::BCM88850_A0, sibling.buf(), 80, 0 ) );
      // One bit lower the same bits are another number.
      Image image( sibling.buf(), sibling.buf() + 80 );
      EXPECT_EQ( Testing::bitsAt( image, 113, 7 ), Bits( 16 ) );

      View::WithStorage fourteen( Hardware::BCM88850_A0, 0 );
      EXPECT_TRUE( View::isOutAcBank( Hardware::BCM88850_A0, fourteen.buf(), 80, 0 ) );
      EXPECT_FALSE( View::isOutAcBank( chip( chipType ), fourteen.buf(), 80, 0 ) );
      image.assign( fourteen.buf(), fourteen.buf() + 80 );
      EXPECT_EQ( Testing::bitsAt( image, 114, 6 ), Bits( 4 ) );
   }
}

TEST( OutAcBank, DiscriminatorNeedsFifteenBytes ) {
   for( const unsigned chipType : taggedChips ) {
      View::WithStorage view( chip( chipType ), 0 );
      EXPECT_TRUE( View::isOutAcBank( chip( chipType ), view.buf(), 15, 0 ) );
      EXPECT_FALSE( View::isOutAcBank( chip( chipType ), view.buf(), 14, 0 ) );
      EXPECT_TRUE( View::isOutAcBank( chip( chipType ), view.buf(), 14, 1 ) );
      EXPECT_FALSE( View::isOutAcBank( chip( chipType ), nullptr, 0, 0 ) );
      // Of the tag's own bits each counts, and no other.
      for( unsigned bit = 0; bit < 120; ++bit ) {
         Image image( 15 );
         Testing::bitsAtAre( image, 0, 120, Testing::toBits( view.mdbEntry() ) );
         Testing::bitIs( image, bit, !Testing::bitOf( image, bit ) );
         EXPECT_EQ( View::isOutAcBank( chip( chipType ), image.data(), 15, 0 ),
                    bit < ( chipType == 14 ? 113u : 114u ) )
            << bit;
      }
   }
}

TEST( OutAcBank, DiscriminatorIsNoTestOfValidity ) {
   const Image ones( 80, 0xff );
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      const bool older = chipType >= 2 && chipType <= 8;
      const bool tagged = chipType == 10 || ( chipType >= 12 && chipType <= 16 );
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto number = static_cast<U8>( variant );
         const bool holds = older || ( tagged && variant != 0 );
         EXPECT_EQ( View::isOutAcBank( chip( chipType ), ones.data(), 80, number ), holds )
            << chipType << ", " << variant;
         EXPECT_EQ( View::isOutAcBank( chip( chipType ), nullptr, 0, number ), holds )
            << chipType << ", " << variant;
      }
   }
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88690_B0, 1 ) );
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88650_B0, 3 ) );
}

TEST( OutAcBank, NarrowFieldOfFortyEightBitsIsWrittenByName ) {
   View::WithStorage arp( Hardware::BCM88650_B0, 2 );
   arp.stringFieldIs( "arpLlActionMac", 0xabcdef012345 );
   EXPECT_EQ( arp.arpLlActionMac(), 0xabcdef012345u );
   EXPECT_EQ( arp.stringField( "arpLlActionMac", 5 ), 0xabcdef012345u );
   arp.setField64( 33, 0x543210fedcba );
   EXPECT_EQ( arp.arpLlActionMac(), 0x543210fedcbau );

   View::WithStorage raw( Hardware::BCM88650_B0, 0 );
   const auto wide = failureOf( [&] { raw.stringFieldIs( "eedbBankData", 1 ); } );
   ASSERT_TRUE( wide );
   EXPECT_EQ( wide->expression, "false" );
   EXPECT_EQ( wide->message, std::nullopt );
   EXPECT_EQ( raw.eedbBankData(), Raw128{} );
}

TEST( OutAcBank, RecognisesAllButTheTagForWriting ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   unsigned names = 0;
   std::vector<unsigned> refused;
   for( const Testing::FieldUnderTest& field : expectation().fields ) {
      const auto byName = failureOf( [&] { view.stringFieldIs( field.name, 0 ); } );
      names += !byName || byName->message != "fieldName not found or is const.";
      if( expressionOf( [&] { view.setField64( field.identifier, 0 ); } ) == "false" ) {
         refused.push_back( field.identifier );
      }
   }
   EXPECT_EQ( names, 49u );
   EXPECT_EQ( refused, ( std::vector<unsigned>{ 78, 243, 296 } ) );
   EXPECT_EQ( view.resultType(), 8 );
}

TEST( OutAcBank, FromTheRegistry ) {
   const auto view = Hardware::stringObj( "OutAcBank", Hardware::BCM88800_A0, 0 );
   EXPECT_EQ( view->width(), 20 );
   EXPECT_EQ( view->entries(), 4294967295u );
   EXPECT_EQ( view->len(), 80 );
   EXPECT_EQ( view->stringField( "resultType", 0 ), 8u );
   const auto row = Hardware::stringObj( "OutAcBank", Hardware::BCM88375_B0, 2 );
   EXPECT_EQ( row->width(), 3 );
   EXPECT_EQ( row->len(), 80 );
   EXPECT_EQ( row->tableVariantCount( 5, 2 ), 3u );
   EXPECT_EQ( expressionOf( [&] { row->tableVariantCount( 5, 3 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { row->tableVariantCount( 10, 1 ); } ), "variant == 0" );
}

} // namespace
