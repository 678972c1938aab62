// EvecTable: two egress VLAN edit commands an entry, on chip types without variants.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Parts.h"
#include "support/Tiling.h"
#include "support/Traces.h"

#include <Hardware/EpniIsidTable.h>
#include <Hardware/EvecTable.h>
#include <Hardware/IvecTable.h>

namespace {

using View = Hardware::EvecTable;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

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

constexpr Hardware::ChipType shortChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                              Hardware::BCM88375_A0, Hardware::BCM88375_B0 };
constexpr Hardware::ChipType longChips[] = { Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                             Hardware::BCM88680_A0 };
constexpr Hardware::ChipType allChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                            Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                            Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                            Hardware::BCM88680_A0 };

TEST( EvecTable, EveryVariantIsValidOnItsChipsAndNoneElsewhere ) {
   View::WithStorage view( Hardware::BCM88650_B0, 0 );
   for( unsigned number = 0; number < 256; ++number ) {
      const U8 variant = static_cast<U8>( number );
      for( const auto chipType : allChips ) {
         EXPECT_TRUE( View::chipTypeVariantValid( chipType, variant ) );
         EXPECT_EQ( view.tableVariantCount( chipType, variant ), 0u );
      }
      for( const unsigned chipType : { 1u, 9u, 10u, 16u, 21u } ) {
         EXPECT_FALSE(
            View::chipTypeVariantValid( static_cast<Hardware::ChipType>( chipType ), variant ) );
         EXPECT_EQ( expressionOf( [&] { view.tableVariantCount( chipType, variant ); } ), "0" );
      }
   }
}

TEST( EvecTable, EveryVariantWorksLikeVariantZero ) {
   for( unsigned number = 0; number < 256; ++number ) {
      const U8 variant = static_cast<U8>( number );
      for( const auto chipType : allChips ) {
         View::WithStorage view( chipType, variant );
         EXPECT_EQ( view.variant(), number );
         view.entry1NTagsToRemoveIs( 2 );
         EXPECT_EQ( view.entry1NTagsToRemove(), 2 );
         EXPECT_EQ( view.entry1NTagsToRemoveLen(), 2 );
         EXPECT_TRUE( view.isEvecTableDataValid() );
         EXPECT_EQ( view.evecTableData(), view.getAllFields() );
         EXPECT_EQ( view.allFieldsMask(), View::allFieldsMask( chipType, 0 ) );
         EXPECT_EQ( addressOf<View>( chipType, number, 0, 200 ),
                    addressOf<View>( chipType, 0, 0, 200 ) );
         EXPECT_EQ( View::width( chipType, variant ), 2 );
         EXPECT_EQ( View::tableWidth( chipType, variant ), 2 );
         EXPECT_EQ( View::arrayElements( chipType, variant ), 1u );
         EXPECT_EQ( View::arrayIndex_min( chipType, variant ), 0u );
         EXPECT_EQ( View::index_min( chipType, variant ), 0u );
         EXPECT_EQ( View::entries( chipType, variant ), View::entries( chipType, 0 ) );
         EXPECT_EQ( View::fieldCount( chipType, variant ), View::fieldCount( chipType, 0 ) );
         EXPECT_EQ( View::instanceCount( chipType, variant ), View::instanceCount( chipType, 0 ) );
      }
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 200, 0, 9 ), ( Address{ 0x280009, 0, 3 } ) );
}

TEST( EvecTable, VariantIsSeenInTracesAlone ) {
   EXPECT_EQ( Testing::tracesOf( 8, [] { View::WithStorage view( Hardware::BCM88650_B0, 200 ); } ),
              std::vector<std::string>{ "EvecTable chipType: BCM88650_B0 variant: None" } );
   View::WithStorage view( Hardware::BCM88650_B0, 200 );
   EXPECT_EQ( Testing::tracesOf( 8, [&] { view.evecTableData(); } ),
              std::vector<std::string>{
                 "U64 Hardware::EvecTable::evecTableData() const chipType: 2 variant: 200" } );
}

TEST( EvecTable, RefusesOtherChipsNamingTheVariant ) {
   const auto failure = failureOf( [] { View::WithStorage view( Hardware::BCM88690_B0, 200 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message,
              "chipType: BCM88690_B0 variant: 200 not in metainfo for EvecTable!" );
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { two.tableVariantCount( 10, 0 ); } ), "0" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88690_B0, 0 ) );

   Testing::Probe<View> view( Hardware::BCM88650_B0, nullptr, 0, false, 0 );
   view.pairIs( 10, 0 );
   EXPECT_EQ( expressionOf( [&] { view.evecTableData(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "0" );
}

TEST( EvecTable, CommandsFillTheEntry ) {
   for( const auto chipType : shortChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::entry0NTagsToRemoveMask, &View::entry0InnerPcpDeiSrcMask,
                            &View::entry0OuterPcpDeiSrcMask, &View::entry0InnerVidSrcMask,
                            &View::entry0OuterVidSrcMask, &View::entry0InnerTpidIdxMask,
                            &View::entry0OuterTpidIdxMask },
                          0, 16 );
      expectTiling<View>( view,
                          { &View::entry1NTagsToRemoveMask, &View::entry1InnerPcpDeiSrcMask,
                            &View::entry1OuterPcpDeiSrcMask, &View::entry1InnerVidSrcMask,
                            &View::entry1OuterVidSrcMask, &View::entry1InnerTpidIdxMask,
                            &View::entry1OuterTpidIdxMask },
                          16, 32 );
      expectTiling<View>( view, { &View::evecTableDataMask }, 0, 32 );
   }
   for( const auto chipType : longChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::entry0NTagsToRemoveMask, &View::entry0InnerPcpDeiSrcMask,
                            &View::entry0OuterPcpDeiSrcMask, &View::entry0InnerVidSrcMask,
                            &View::entry0OuterVidSrcMask, &View::entry0InnerTpidIdxMask,
                            &View::entry0OuterTpidIdxMask, &View::entry0MembershipCheckTypeMask },
                          0, 19 );
      expectTiling<View>( view,
                          { &View::entry1NTagsToRemoveMask, &View::entry1InnerPcpDeiSrcMask,
                            &View::entry1OuterPcpDeiSrcMask, &View::entry1InnerVidSrcMask,
                            &View::entry1OuterVidSrcMask, &View::entry1InnerTpidIdxMask,
                            &View::entry1OuterTpidIdxMask, &View::entry1MembershipCheckTypeMask },
                          19, 38 );
      expectTiling<View>( view, { &View::evecTableDataMask }, 0, 38 );
   }
}

TEST( EvecTable, DataIsBothCommandsAsOneNumber ) {
   const Testing::Expectation expected = expectation();
   for( const auto chipType : shortChips ) {
      Testing::expectParts( expected, chipType, 200, "evecTableData", 0,
                            { { "entry0NTagsToRemove", 2 },
                              { "entry0InnerPcpDeiSrc", 2 },
                              { "entry0OuterPcpDeiSrc", 2 },
                              { "entry0InnerVidSrc", 3 },
                              { "entry0OuterVidSrc", 3 },
                              { "entry0InnerTpidIdx", 2 },
                              { "entry0OuterTpidIdx", 2 },
                              { "entry1NTagsToRemove", 2 },
                              { "entry1InnerPcpDeiSrc", 2 },
                              { "entry1OuterPcpDeiSrc", 2 },
                              { "entry1InnerVidSrc", 3 },
                              { "entry1OuterVidSrc", 3 },
                              { "entry1InnerTpidIdx", 2 },
                              { "entry1OuterTpidIdx", 2 } } );
   }
   for( const auto chipType : longChips ) {
      Testing::expectParts( expected, chipType, 200, "evecTableData", 0,
                            { { "entry0NTagsToRemove", 2 },
                              { "entry0InnerPcpDeiSrc", 2 },
                              { "entry0OuterPcpDeiSrc", 2 },
                              { "entry0InnerVidSrc", 3 },
                              { "entry0OuterVidSrc", 3 },
                              { "entry0InnerTpidIdx", 3 },
                              { "entry0OuterTpidIdx", 3 },
                              { "entry0MembershipCheckType", 1 },
                              { "entry1NTagsToRemove", 2 },
                              { "entry1InnerPcpDeiSrc", 2 },
                              { "entry1OuterPcpDeiSrc", 2 },
                              { "entry1InnerVidSrc", 3 },
                              { "entry1OuterVidSrc", 3 },
                              { "entry1InnerTpidIdx", 3 },
                              { "entry1OuterTpidIdx", 3 },
                              { "entry1MembershipCheckType", 1 } } );
   }
}

TEST( EvecTable, SecondCommandStartsWhereTheChipHasIt ) {
   for( const auto chipType : shortChips ) {
      View::WithStorage view( chipType, 0 );
      view.evecTableDataIs( 0x20000 );
      EXPECT_EQ( view.entry1NTagsToRemove(), 2 );
      view.evecTableDataIs( 0xfffcffff );
      EXPECT_EQ( view.entry1NTagsToRemove(), 0 );
   }
   for( const auto chipType : longChips ) {
      View::WithStorage view( chipType, 0 );
      view.evecTableDataIs( 0x100000 );
      EXPECT_EQ( view.entry1NTagsToRemove(), 2 );
      view.evecTableDataIs( 0x3fffe7ffff );
      EXPECT_EQ( view.entry1NTagsToRemove(), 0 );
   }
}

TEST( EvecTable, DataOf32BitsLosesTheRestSilently ) {
   for( const auto chipType : shortChips ) {
      View::WithStorage view( chipType, 0 );
      view.evecTableDataIs( 0x1ffffffff );
      EXPECT_EQ( view.evecTableData(), 0xffffffffu );
      EXPECT_EQ( view.buf()[4], 0 );
      view.evecTableDataIs( 0xfedcba9876543210 );
      EXPECT_EQ( view.evecTableData(), 0x76543210u );
      view.setField64( 140, 0x8000000000000001 );
      EXPECT_EQ( view.evecTableData(), 1u );
      view.stringFieldIs( "evecTableData", 0x8000000000000002 );
      EXPECT_EQ( view.evecTableData(), 2u );
   }
}

TEST( EvecTable, DataOf38BitsHasABound ) {
   for( const auto chipType : longChips ) {
      View::WithStorage view( chipType, 0 );
      view.evecTableDataIs( 0x1ffffffff );
      EXPECT_EQ( view.evecTableData(), 0x1ffffffffu );
      view.evecTableDataIs( 0x3fffffffff );
      EXPECT_EQ( view.evecTableData(), 0x3fffffffffu );
      EXPECT_EQ( expressionOf( [&] { view.evecTableDataIs( 0x4000000000 ); } ),
                 "evecTableData <= 0x3fffffffff" );
      EXPECT_EQ( view.evecTableData(), 0x3fffffffffu );
   }
}

TEST( EvecTable, LengthIsTestedBeforeTheBoundOfTheData ) {
   U8 buffer[5] = {};
   const auto set = [&]( Hardware::ChipType chipType, U16 len, U64 value ) {
      return expressionOf(
         [&] { View( chipType, buffer, len, false, 0 ).evecTableDataIs( value ); } );
   };
   for( const auto chipType : shortChips ) {
      EXPECT_EQ( set( chipType, 3, 0x4000000000 ), "len_ >= 4" );
      EXPECT_EQ( set( chipType, 4, 0x4000000000 ), "none" );
   }
   for( const auto chipType : longChips ) {
      EXPECT_EQ( set( chipType, 4, 0x4000000000 ), "len_ >= 5" );
      EXPECT_EQ( set( chipType, 5, 0x4000000000 ), "evecTableData <= 0x3fffffffff" );
      EXPECT_EQ( set( chipType, 5, 0x3fffffffff ), "none" );
   }
}

TEST( EvecTable, TpidIndicesGrowOnTheLongChips ) {
   U8 buffer[3] = {};
   for( const auto chipType : shortChips ) {
      const auto view = [&]( U16 len ) { return View( chipType, buffer, len, false, 0 ); };
      EXPECT_EQ( expressionOf( [&] { view( 1 ).entry0OuterTpidIdx(); } ), "len_ >= 2" );
      EXPECT_EQ( expressionOf( [&] { view( 2 ).entry0OuterTpidIdx(); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view( 2 ).entry0InnerTpidIdxIs( 4 ); } ),
                 "entry0InnerTpidIdx <= 0x3" );
   }
   for( const auto chipType : longChips ) {
      const auto view = [&]( U16 len ) { return View( chipType, buffer, len, false, 0 ); };
      EXPECT_EQ( expressionOf( [&] { view( 2 ).entry0OuterTpidIdx(); } ), "len_ >= 3" );
      EXPECT_EQ( expressionOf( [&] { view( 3 ).entry0OuterTpidIdx(); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view( 2 ).entry0InnerTpidIdxIs( 4 ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view( 2 ).entry0InnerTpidIdxIs( 8 ); } ),
                 "entry0InnerTpidIdx <= 0x7" );
   }
}

TEST( EvecTable, ShortChipsHaveNoMembershipCheck ) {
   for( const auto chipType : shortChips ) {
      View::WithStorage view( chipType, 1 );
      EXPECT_FALSE( view.isEntry0MembershipCheckTypeValid() );
      EXPECT_FALSE( view.isEntry1MembershipCheckTypeValid() );
      EXPECT_EQ( expressionOf( [&] { view.entry0MembershipCheckType(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.entry1MembershipCheckTypeMask(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.entry1MembershipCheckTypeOffset(); } ), "0" );
   }
   View::WithStorage view( Hardware::BCM88375_B0, 0 );
   const auto first = failureOf( [&] { view.entry0MembershipCheckTypeLen(); } );
   ASSERT_TRUE( first );
   EXPECT_EQ( first->message, "BCM88375_B0 does not have field ENTRY_0_MEMBERSHIP_CHECK_TYPE" );
   const auto second = failureOf( [&] { view.entry1MembershipCheckTypeLen(); } );
   ASSERT_TRUE( second );
   EXPECT_EQ( second->message, "BCM88375_B0 does not have field ENTRY_1_MEMBERSHIP_CHECK_TYPE" );
}

TEST( EvecTable, WholeEntryHoldsTheDataAlone ) {
   U8 buffer[8];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   for( const auto chipType : shortChips ) {
      EXPECT_EQ( View( chipType, buffer, 8, false, 3 ).getAllFields(), 0xffffffffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 3 ).word( 0 ), 0xffffffffu );
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 4, false, 3 ).getAllFields(); } ),
                 "len_ >= 8" );
   }
   for( const auto chipType : longChips ) {
      EXPECT_EQ( View( chipType, buffer, 8, false, 3 ).getAllFields(), 0x3fffffffffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 3 ).word( 0 ), 0x3fffffffffu );
   }
}

TEST( EvecTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 0, 0, 255 ), ( Address{ 0x2800ff, 0, 3 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88650_B0, 0, 0, 256 ); } ),
              "tableEntry < 256" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 0, 511 ), ( Address{ 0x2601ff, 0, 48 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 1, 511 ), ( Address{ 0x2601ff, 0, 49 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88470_A0, 0, 0, 0 ), ( Address{ 0x250000, 0, 48 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 0, 1, 0 ), ( Address{ 0x1c0000, 0, 53 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88680_A0, 255, 0, 512 ); } ),
              "tableEntry < 512" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88470_B0, 255, 1, 0 ); } ),
              "identifier <= 0" );
}

TEST( EvecTable, SharesItsBlocksWithItsNeighbours ) {
   for( const auto chipType : allChips ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ), blockOf<Hardware::IvecTable>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ),
                 blockOf<Hardware::EpniIsidTable>( chipType, 0, 0 ) )
         << chipType;
   }
}

} // namespace
