// IvecTable: ingress VLAN edit command profiles, one format and two or three copies of the table.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>
#include <Hardware/EvecTable.h>
#include <Hardware/IvecTable.h>

namespace {

using View = Hardware::IvecTable;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IvecTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, outerVidSrc,    OuterVidSrc,    263, "OUTER_VID_SRC" ),
      NARROW_FIELD( U8, outerPcpDeiSrc, OuterPcpDeiSrc, 260, "OUTER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8, tpidProfile,    TpidProfile,    339, "TPID_PROFILE" ),
      NARROW_FIELD( U8, innerPcpDeiSrc, InnerPcpDeiSrc, 169, "INNER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8, tagsToRemove,   TagsToRemove,   323, "TAGS_TO_REMOVE" ),
      NARROW_FIELD( U8, innerVidSrc,    InnerVidSrc,    172, "INNER_VID_SRC" ),
      NARROW_FIELD( U8, innerTpidIndex, InnerTpidIndex, 170, "INNER_TPID_INDEX" ),
      NARROW_FIELD( U8, outerTpidIndex, OuterTpidIndex, 261, "OUTER_TPID_INDEX" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,1", { "2-8" }, {
         { "tpidProfile",    { "0:3" } },
         { "outerTpidIndex", { "3:2" } },
         { "outerVidSrc",    { "5:3" } },
         { "outerPcpDeiSrc", { "8:3" } },
         { "innerTpidIndex", { "11:2" } },
         { "innerVidSrc",    { "13:3" } },
         { "innerPcpDeiSrc", { "16:3" } },
         { "tagsToRemove",   { "19:2" } },
      } },
      { "0-2", { "10,12-16" }, {
         { "outerTpidIndex", { "0:3" } },
         { "outerVidSrc",    { "3:3" } },
         { "outerPcpDeiSrc", { "6:3" } },
         { "innerTpidIndex", { "9:3" } },
         { "innerVidSrc",    { "12:3" } },
         { "innerPcpDeiSrc", { "15:3" } },
         { "tagsToRemove",   { "18:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3,6,7",  "0,1", 1, 64,  1, 8, 1, 2 },
      { "4,5,8",    "0,1", 1, 64,  1, 8, 2, 2 },
      { "10,12,14", "0-2", 1, 128, 1, 7, 2, 3 },
      { "13,15,16", "0-2", 1, 128, 1, 7, 1, 3 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x2d0000,  1, 0, { { 0, 3 } } },
      { "2,3",   "1", 0x600000,  1, 0, { { 0, 2 } } },
      { "4,5",   "0", 0x2b0000,  1, 0, { { 0, 48 }, { 0, 49 } } },
      { "4,5",   "1", 0x6b0000,  1, 0, { { 0, 46 }, { 0, 47 } } },
      { "6,7",   "0", 0x2e0000,  1, 0, { { 0, 48 } } },
      { "6,7",   "1", 0x760000,  1, 0, { { 0, 46 } } },
      { "8",     "0", 0x250000,  1, 0, { { 0, 52 }, { 0, 53 } } },
      { "8",     "1", 0x6c0000,  1, 0, { { 0, 50 }, { 0, 51 } } },
      { "10,12", "0", 0x2270000, 1, 0, { { 26, 2 }, { 8, 10 } } },
      { "10,12", "1", 0x1810000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "10,12", "2", 0x2f10000, 1, 0, { { 24, 2 }, { 6, 10 } } },
      { "13",    "0", 0x2270000, 1, 0, { { 20, 5 } } },
      { "13",    "1", 0x1810000, 1, 0, { { 8, 4 } } },
      { "13",    "2", 0x2f30000, 1, 0, { { 0, 9 } } },
      { "14",    "0", 0x2270000, 1, 0, { { 26, 13 }, { 26, 25 } } },
      { "14",    "1", 0x1810000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "14",    "2", 0x2f30000, 1, 0, { { 24, 13 }, { 24, 25 } } },
      { "15,16", "0", 0x2270000, 1, 0, { { 8, 8 } } },
      { "15,16", "1", 0x1810000, 1, 0, { { 24, 9 } } },
      { "15,16", "2", 0x2f30000, 1, 0, { { 24, 17 } } },
   };
   // clang-format on
   expected.discriminator = View::isIvecTable;
   return expected;
}

CONTRACT_TESTS( IvecTable, expectation() )

constexpr Hardware::ChipType earlyChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                              Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                              Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                              Hardware::BCM88680_A0 };
constexpr Hardware::ChipType lateChips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                             Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                             Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( IvecTable, FieldsFillTheProfileFromBitZero ) {
   for( const auto chipType : earlyChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chipType, variant );
         expectTiling<View>( view,
                             { &View::tpidProfileMask, &View::outerTpidIndexMask,
                               &View::outerVidSrcMask, &View::outerPcpDeiSrcMask,
                               &View::innerTpidIndexMask, &View::innerVidSrcMask,
                               &View::innerPcpDeiSrcMask, &View::tagsToRemoveMask },
                             0, 21 );
      }
   }
   for( const auto chipType : lateChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 }, U8{ 2 } } ) {
         View::WithStorage view( chipType, variant );
         expectTiling<View>( view,
                             { &View::outerTpidIndexMask, &View::outerVidSrcMask,
                               &View::outerPcpDeiSrcMask, &View::innerTpidIndexMask,
                               &View::innerVidSrcMask, &View::innerPcpDeiSrcMask,
                               &View::tagsToRemoveMask },
                             0, 20 );
      }
   }
}

TEST( IvecTable, WholeEntryHoldsTheProfileAlone ) {
   U8 buffer[4] = { 0xff, 0xff, 0xff, 0xff };
   for( const auto chipType : earlyChips ) {
      EXPECT_EQ( View( chipType, buffer, 4, false, 1 ).getAllFields(), 0x1fffffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 0 ).word( 0 ), 0x1fffffu );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( View( chipType, buffer, 4, false, 2 ).getAllFields(), 0xfffffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 0 ).word( 0 ), 0xfffffu );
   }
}

TEST( IvecTable, OneProfileIsTwoNumbers ) {
   const auto compose = []( Hardware::ChipType chipType ) {
      View::WithStorage view( chipType, 0 );
      view.outerTpidIndexIs( 3 );
      view.outerVidSrcIs( 1 );
      view.innerTpidIndexIs( 2 );
      view.innerPcpDeiSrcIs( 7 );
      view.tagsToRemoveIs( 2 );
      return view.getAllFields();
   };
   EXPECT_EQ( compose( Hardware::BCM88650_B0 ),
              3u << 3 | 1u << 5 | 2u << 11 | 7u << 16 | 2u << 19 );
   EXPECT_EQ( compose( Hardware::BCM88690_B0 ), 3u | 1u << 3 | 2u << 9 | 7u << 15 | 2u << 18 );
}

TEST( IvecTable, BoundsFollowTheWidthsOfTheChip ) {
   for( const auto chipType : earlyChips ) {
      View::WithStorage view( chipType, 0 );
      view.outerTpidIndexIs( 3 );
      EXPECT_EQ( expressionOf( [&] { view.outerTpidIndexIs( 4 ); } ), "outerTpidIndex <= 0x3" );
      EXPECT_EQ( view.outerTpidIndex(), 3 );
      EXPECT_EQ( expressionOf( [&] { view.innerTpidIndexIs( 4 ); } ), "innerTpidIndex <= 0x3" );
      EXPECT_EQ( expressionOf( [&] { view.tpidProfileIs( 8 ); } ), "tpidProfile <= 0x7" );
      EXPECT_EQ( expressionOf( [&] { view.tagsToRemoveIs( 4 ); } ), "tagsToRemove <= 0x3" );
   }
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      view.outerTpidIndexIs( 4 );
      EXPECT_EQ( view.outerTpidIndex(), 4 );
      EXPECT_EQ( expressionOf( [&] { view.outerTpidIndexIs( 8 ); } ), "outerTpidIndex <= 0x7" );
      EXPECT_EQ( expressionOf( [&] { view.innerTpidIndexIs( 8 ); } ), "innerTpidIndex <= 0x7" );
      EXPECT_EQ( expressionOf( [&] { view.tagsToRemoveIs( 4 ); } ), "tagsToRemove <= 0x3" );
   }
}

TEST( IvecTable, LengthTests ) {
   U8 buffer[3] = {};
   for( const auto chipType : { Hardware::BCM88650_B0, Hardware::BCM88690_B0 } ) {
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 2, false, 0 ).tagsToRemove(); } ),
                 "len_ >= 3" );
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 3, false, 0 ).tagsToRemove(); } ),
                 "none" );
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 3, false, 0 ).getAllFields(); } ),
                 "len_ >= 4" );
   }
   EXPECT_EQ(
      expressionOf( [&] { View( Hardware::BCM88650_B0, buffer, 0, false, 0 ).tpidProfile(); } ),
      "len_ >= 1" );
   EXPECT_EQ(
      expressionOf( [&] { View( Hardware::BCM88650_B0, buffer, 1, false, 0 ).tpidProfile(); } ),
      "none" );
}

TEST( IvecTable, TpidProfileIsGoneOnTheLateChips ) {
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 2 );
      EXPECT_FALSE( view.isTpidProfileValid() );
      EXPECT_FALSE( view.isFieldValid( 339 ) );
      EXPECT_EQ( view.fieldWidth( 339 ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.tpidProfile(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.tpidProfileIs( 0 ); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.tpidProfileMask(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.tpidProfileOffset(); } ), "0" );
   }
   View::WithStorage view( Hardware::BCM88800_A0, 0 );
   const auto failure = failureOf( [&] { view.tpidProfileLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "BCM88800_A0 does not have field TPID_PROFILE" );
}

TEST( IvecTable, SharesSomeIdentifiersWithTheEgressSideAndNotOthers ) {
   View::WithStorage ingress( Hardware::BCM88690_B0, 0 );
   Hardware::EvecEncapTable::WithStorage encap( Hardware::BCM88690_B0, 0 );
   Hardware::EvecFormatTable::WithStorage format( Hardware::BCM88690_B0, 0 );
   // innerTpidIndex, outerTpidIndex
   for( const U32 identifier : { 170u, 261u } ) {
      EXPECT_EQ( ingress.fieldWidth( identifier ), 3 );
      EXPECT_EQ( encap.fieldWidth( identifier ), 4 );
      EXPECT_EQ( format.fieldWidth( identifier ), 4 );
   }
   // tagsToRemove
   EXPECT_EQ( ingress.fieldWidth( 323 ), 2 );
   EXPECT_EQ( format.fieldWidth( 323 ), 2 );
   EXPECT_EQ( expressionOf( [&] { encap.fieldWidth( 323 ); } ), "false" );
   // innerPcpDeiSrc, innerVidSrc, outerPcpDeiSrc, outerVidSrc
   for( const U32 identifier : { 169u, 172u, 260u, 263u } ) {
      EXPECT_EQ( ingress.fieldWidth( identifier ), 3 );
      EXPECT_EQ( expressionOf( [&] { encap.fieldWidth( identifier ); } ), "false" );
      EXPECT_EQ( expressionOf( [&] { format.fieldWidth( identifier ); } ), "false" );
      EXPECT_FALSE( encap.isFieldValid( identifier ) );
   }
   // innerPcpDeiSource, innerVidSource, outerPcpDeiSource, outerVidSource
   for( const U32 identifier : { 168u, 171u, 259u, 262u } ) {
      EXPECT_FALSE( ingress.isFieldValid( identifier ) );
      EXPECT_EQ( expressionOf( [&] { ingress.fieldWidth( identifier ); } ), "false" );
   }
}

TEST( IvecTable, DiscriminatorAsksForTheChipAlone ) {
   for( const auto chipType : earlyChips ) {
      EXPECT_TRUE( View::isIvecTable( chipType, nullptr, 0, 7 ) );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_TRUE( View::isIvecTable( chipType, nullptr, 0, 255 ) );
   }
   const U8 zeros[4] = {};
   EXPECT_TRUE( View::isIvecTable( Hardware::BCM88650_B0, zeros, 4, 0 ) );
   for( const unsigned chipType : { 0u, 1u, 9u, 11u, 17u, 20u, 21u, 255u } ) {
      EXPECT_FALSE( View::isIvecTable( static_cast<Hardware::ChipType>( chipType ), zeros, 4, 0 ) )
         << chipType;
   }
}

TEST( IvecTable, VariantBehindTheLastIsRefusedThoughDiscriminated ) {
   EXPECT_TRUE( View::isIvecTable( Hardware::BCM88680_A0, nullptr, 0, 2 ) );
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88680_A0, 2 ) );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88680_A0, 2 ) );
   const auto failure = failureOf( [] { View::WithStorage view( Hardware::BCM88680_A0, 2 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "chipType: BCM88680_A0 variant: 2 not in metainfo for IvecTable!" );

   EXPECT_TRUE( View::isIvecTable( Hardware::BCM88650_B0, nullptr, 0, 7 ) );
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88650_B0, 7 ) );
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88690_B0, 3 ) );
   EXPECT_TRUE( View::chipTypeVariantValid( Hardware::BCM88690_B0, 2 ) );
}

TEST( IvecTable, VariantOutOfRangeIsAPlainZero ) {
   EXPECT_EQ( expressionOf( [] { View::entries( 2, 2 ); } ), "0" );
   EXPECT_EQ( expressionOf( [] { View::width( 10, 3 ); } ), "0" );
   Testing::Probe<View> view( Hardware::BCM88650_B0, nullptr, 0, false, 0 );
   view.pairIs( 2, 2 );
   EXPECT_EQ( expressionOf( [&] { view.outerVidSrc(); } ), "0" );
   view.pairIs( 10, 3 );
   EXPECT_EQ( expressionOf( [&] { view.outerVidSrcOffset(); } ), "0" );
}

TEST( IvecTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 1, 0, 63 ), ( Address{ 0x60003f, 0, 2 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88650_B0, 1, 0, 64 ); } ),
              "tableEntry < 64" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 0, 127 ),
              ( Address{ 0x227007f, 26, 2 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88690_B0, 0, 0, 128 ); } ),
              "tableEntry < 128" );
   for( const auto chipType : { Hardware::BCM88470_A0, Hardware::BCM88470_B0 } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf<View>( chipType, 0, 1, 0 ); } ), "identifier <= 0" );
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_B0, 0, 1, 0 ), ( Address{ 0x2b0000, 0, 49 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_B0, 1, 1, 0 ), ( Address{ 0x6b0000, 0, 47 } ) );
}

TEST( IvecTable, SecondInstancesMoveAsTheirChipDoes ) {
   // Both numbers on chip types 10 and 12, the block alone on chip type 14.
   for( const auto chipType : { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0 } ) {
      EXPECT_EQ( addressOf<View>( chipType, 0, 1, 0 ), ( Address{ 0x2270000, 8, 10 } ) );
      EXPECT_EQ( addressOf<View>( chipType, 1, 1, 0 ), ( Address{ 0x1810000, 12, 10 } ) );
      EXPECT_EQ( addressOf<View>( chipType, 2, 1, 0 ), ( Address{ 0x2f10000, 6, 10 } ) );
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 0 ), ( Address{ 0x2270000, 26, 25 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 1, 1, 0 ), ( Address{ 0x1810000, 30, 25 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 2, 1, 0 ), ( Address{ 0x2f30000, 24, 25 } ) );
}

TEST( IvecTable, SharesItsBlocksWithItsNeighbours ) {
   for( const auto chipType : earlyChips ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ), blockOf<Hardware::EvecTable>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_NE( blockOf<View>( chipType, 1, 0 ), blockOf<Hardware::EvecTable>( chipType, 0, 0 ) )
         << chipType;
   }
   for( const auto chipType :
        { Hardware::BCM88375_A0, Hardware::BCM88375_B0, Hardware::BCM88680_A0 } ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 1 ), blockOf<Hardware::EvecTable>( chipType, 0, 1 ) )
         << chipType;
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ),
                 blockOf<Hardware::EgressPerPortTable>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_EQ( blockOf<View>( chipType, 1, 0 ),
                 blockOf<Hardware::EvecFormatTable>( chipType, 0, 0 ) )
         << chipType;
   }
   for( const auto chipType :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88850_A0 } ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 1 ),
                 blockOf<Hardware::EgressPerPortTable>( chipType, 0, 1 ) )
         << chipType;
   }
}

} // namespace
