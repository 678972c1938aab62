// EvecTable: two egress VLAN edit commands an entry, on chip types without variants.
#include "support/Contract.h"

#include <Hardware/EvecTable.h>

namespace {

using View = Hardware::EvecTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EvecTable" );
   expected.storageBytes = 8;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8,  entry1NTagsToRemove,       Entry1NTagsToRemove, 107,
                    "ENTRY_1_N_TAGS_TO_REMOVE" ),
      NARROW_FIELD( U8,  entry0MembershipCheckType, Entry0MembershipCheckType, 98,
                    "ENTRY_0_MEMBERSHIP_CHECK_TYPE" ),
      NARROW_FIELD( U8,  entry1InnerVidSrc,         Entry1InnerVidSrc, 105,
                    "ENTRY_1_INNER_VID_SRC" ),
      NARROW_FIELD( U8,  entry1MembershipCheckType, Entry1MembershipCheckType, 106,
                    "ENTRY_1_MEMBERSHIP_CHECK_TYPE" ),
      NARROW_FIELD( U8,  entry0OuterPcpDeiSrc,      Entry0OuterPcpDeiSrc, 100,
                    "ENTRY_0_OUTER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8,  entry0NTagsToRemove,       Entry0NTagsToRemove, 99,
                    "ENTRY_0_N_TAGS_TO_REMOVE" ),
      NARROW_FIELD( U8,  entry0OuterVidSrc,         Entry0OuterVidSrc, 102,
                    "ENTRY_0_OUTER_VID_SRC" ),
      NARROW_FIELD( U8,  entry1InnerPcpDeiSrc,      Entry1InnerPcpDeiSrc, 103,
                    "ENTRY_1_INNER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8,  entry0InnerTpidIdx,        Entry0InnerTpidIdx, 96,
                    "ENTRY_0_INNER_TPID_IDX" ),
      NARROW_FIELD( U64, evecTableData,             EvecTableData, 140,
                    "EVEC_TABLE_DATA" ),
      NARROW_FIELD( U8,  entry1OuterPcpDeiSrc,      Entry1OuterPcpDeiSrc, 108,
                    "ENTRY_1_OUTER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8,  entry1OuterVidSrc,         Entry1OuterVidSrc, 110,
                    "ENTRY_1_OUTER_VID_SRC" ),
      NARROW_FIELD( U8,  entry1InnerTpidIdx,        Entry1InnerTpidIdx, 104,
                    "ENTRY_1_INNER_TPID_IDX" ),
      NARROW_FIELD( U8,  entry0OuterTpidIdx,        Entry0OuterTpidIdx, 101,
                    "ENTRY_0_OUTER_TPID_IDX" ),
      NARROW_FIELD( U8,  entry1OuterTpidIdx,        Entry1OuterTpidIdx, 109,
                    "ENTRY_1_OUTER_TPID_IDX" ),
      NARROW_FIELD( U8,  entry0InnerPcpDeiSrc,      Entry0InnerPcpDeiSrc, 95,
                    "ENTRY_0_INNER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8,  entry0InnerVidSrc,         Entry0InnerVidSrc, 97,
                    "ENTRY_0_INNER_VID_SRC" ),
   };
   expected.layout = Testing::rowsOf( {
      { "any", { "2-5", "6-8" }, {
         { "entry0NTagsToRemove",       { "0:2",  "0:2" } },
         { "entry0InnerPcpDeiSrc",      { "2:2",  "2:2" } },
         { "entry0OuterPcpDeiSrc",      { "4:2",  "4:2" } },
         { "entry0InnerVidSrc",         { "6:3",  "6:3" } },
         { "entry0OuterVidSrc",         { "9:3",  "9:3" } },
         { "entry0InnerTpidIdx",        { "12:2", "12:3" } },
         { "entry0OuterTpidIdx",        { "14:2", "15:3" } },
         { "entry0MembershipCheckType", { "-",    "18:1" } },
         { "entry1NTagsToRemove",       { "16:2", "19:2" } },
         { "entry1InnerPcpDeiSrc",      { "18:2", "21:2" } },
         { "entry1OuterPcpDeiSrc",      { "20:2", "23:2" } },
         { "entry1InnerVidSrc",         { "22:3", "25:3" } },
         { "entry1OuterVidSrc",         { "25:3", "28:3" } },
         { "entry1InnerTpidIdx",        { "28:2", "31:3" } },
         { "entry1OuterTpidIdx",        { "30:2", "34:3" } },
         { "entry1MembershipCheckType", { "-",    "37:1" } },
         { "evecTableData",             { "0:32", "0:38" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3", "any", 2, 256, 1, 15, 1, 0 },
      { "4,5", "any", 2, 512, 1, 15, 2, 0 },
      { "6,7", "any", 2, 512, 1, 17, 1, 0 },
      { "8",   "any", 2, 512, 1, 17, 2, 0 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3", "any", 0x280000, 1, 0, { { 0, 3 } } },
      { "4,5", "any", 0x260000, 1, 0, { { 0, 48 }, { 0, 49 } } },
      { "6,7", "any", 0x250000, 1, 0, { { 0, 48 } } },
      { "8",   "any", 0x1c0000, 1, 0, { { 0, 52 }, { 0, 53 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( EvecTable, expectation() )

TEST( EvecTable, SecondCommandStartsWhereTheChipHasIt ) {
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   two.evecTableDataIs( 0x20000 );
   EXPECT_EQ( two.entry1NTagsToRemove(), 2 );
   View::WithStorage six( Hardware::BCM88470_A0, 0 );
   six.evecTableDataIs( 0x100000 );
   EXPECT_EQ( six.entry1NTagsToRemove(), 2 );
}

} // namespace
