// EvecEncapTable: an egress VLAN edit command in one entry, in two copies of the table.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/EvecEncapTable.h>

namespace {

using View = Hardware::EvecEncapTable;
using Testing::Address;
using Testing::addressOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EvecEncapTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, vlanMembership,    VlanMembership,    357, "VLAN_MEMBERSHIP" ),
      NARROW_FIELD( U8, outerVidSource,    OuterVidSource,    262, "OUTER_VID_SOURCE" ),
      NARROW_FIELD( U8, innerPcpDeiSource, InnerPcpDeiSource, 168, "INNER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, vlanMirror,        VlanMirror,        358, "VLAN_MIRROR" ),
      NARROW_FIELD( U8, innerVidSource,    InnerVidSource,    171, "INNER_VID_SOURCE" ),
      NARROW_FIELD( U8, outerPcpDeiSource, OuterPcpDeiSource, 259, "OUTER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, vlanTxTag,         VlanTxTag,         359, "VLAN_TX_TAG" ),
      NARROW_FIELD( U8, innerTpidIndex,    InnerTpidIndex,    170, "INNER_TPID_INDEX" ),
      NARROW_FIELD( U8, outerTpidIndex,    OuterTpidIndex,    261, "OUTER_TPID_INDEX" ),
      NARROW_FIELD( U8, vlanEditCommand,   VlanEditCommand,   352, "VLAN_EDIT_COMMAND" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,1", { "10,12-16" }, {
         { "vlanEditCommand",   { "0:8" } },
         { "vlanTxTag",         { "8:1" } },
         { "vlanMirror",        { "9:2" } },
         { "vlanMembership",    { "11:2" } },
         { "outerVidSource",    { "13:3" } },
         { "innerVidSource",    { "16:3" } },
         { "outerTpidIndex",    { "19:4" } },
         { "innerTpidIndex",    { "23:4" } },
         { "outerPcpDeiSource", { "27:2" } },
         { "innerPcpDeiSource", { "29:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0,1", 1, 64, 1, 10, 2, 2 },
      { "13,15,16", "0,1", 1, 64, 1, 10, 1, 2 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x1b0000,  1, 0, { { 28, 2 }, { 10, 10 } } },
      { "10,12", "1", 0x2720000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "13",    "0", 0x1b0000,  1, 0, { { 2, 9 } } },
      { "13",    "1", 0x2720000, 1, 0, { { 8, 4 } } },
      { "14",    "0", 0x1b0000,  1, 0, { { 28, 13 }, { 28, 25 } } },
      { "14",    "1", 0x2720000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "15,16", "0", 0x1b0000,  1, 0, { { 16, 9 } } },
      { "15,16", "1", 0x2720000, 1, 0, { { 24, 9 } } },
   };
   // clang-format on
   expected.discriminator = View::isEvecEncapTable;
   return expected;
}

CONTRACT_TESTS( EvecEncapTable, expectation() )

constexpr Hardware::ChipType chips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                         Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                         Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( EvecEncapTable, FieldsFillAllBitsButTheTop ) {
   for( const auto chipType : chips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chipType, variant );
         expectTiling<View>( view,
                             { &View::vlanEditCommandMask, &View::vlanTxTagMask,
                               &View::vlanMirrorMask, &View::vlanMembershipMask,
                               &View::outerVidSourceMask, &View::innerVidSourceMask,
                               &View::outerTpidIndexMask, &View::innerTpidIndexMask,
                               &View::outerPcpDeiSourceMask, &View::innerPcpDeiSourceMask },
                             0, 31 );
         std::fill( view.buf(), view.buf() + 4, U8{ 0xff } );
         EXPECT_EQ( view.getAllFields(), 0x7fffffffu );
         EXPECT_EQ( View::allFieldsMask( chipType, variant ).word( 0 ), 0x7fffffffu );
      }
   }
}

TEST( EvecEncapTable, AllFieldsButTheCommandHaveBounds ) {
   for( const auto chipType : chips ) {
      View::WithStorage view( chipType, 1 );
      EXPECT_EQ( expressionOf( [&] { view.outerTpidIndexIs( 0x10 ); } ), "outerTpidIndex <= 0xf" );
      EXPECT_EQ( expressionOf( [&] { view.innerTpidIndexIs( 0x10 ); } ), "innerTpidIndex <= 0xf" );
      EXPECT_EQ( expressionOf( [&] { view.vlanTxTagIs( 2 ); } ), "vlanTxTag <= 0x1" );
      EXPECT_EQ( expressionOf( [&] { view.vlanMirrorIs( 4 ); } ), "vlanMirror <= 0x3" );
      EXPECT_EQ( expressionOf( [&] { view.vlanMembershipIs( 4 ); } ), "vlanMembership <= 0x3" );
      EXPECT_EQ( expressionOf( [&] { view.outerVidSourceIs( 8 ); } ), "outerVidSource <= 0x7" );
      EXPECT_EQ( expressionOf( [&] { view.innerVidSourceIs( 8 ); } ), "innerVidSource <= 0x7" );
      EXPECT_EQ( expressionOf( [&] { view.outerPcpDeiSourceIs( 4 ); } ),
                 "outerPcpDeiSource <= 0x3" );
      EXPECT_EQ( expressionOf( [&] { view.innerPcpDeiSourceIs( 4 ); } ),
                 "innerPcpDeiSource <= 0x3" );
      EXPECT_EQ( view.getAllFields(), 0u );
      view.vlanEditCommandIs( 0xff );
      EXPECT_EQ( view.getAllFields(), 0xffu );
      view.setField64( 352, 0x1a5 );
      EXPECT_EQ( view.getAllFields(), 0xa5u );
   }
}

TEST( EvecEncapTable, LengthTestsFromOneByteToFour ) {
   U8 buffer[4] = {};
   const auto view = [&]( U16 len ) {
      return View( Hardware::BCM88690_B0, buffer, len, false, 0 );
   };
   EXPECT_EQ( expressionOf( [&] { view( 0 ).vlanEditCommand(); } ), "len_ >= 1" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).vlanEditCommand(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 3 ).innerPcpDeiSource(); } ), "len_ >= 4" );
   EXPECT_EQ( expressionOf( [&] { view( 4 ).innerPcpDeiSource(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 3 ).getAllFields(); } ), "len_ >= 4" );
}

TEST( EvecEncapTable, VariantOutOfRangeIsAPlainZero ) {
   View::WithStorage owner( Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( owner.tableVariantCount( 10, 0 ), 2u );
   EXPECT_EQ( owner.tableVariantCount( 10, 1 ), 2u );
   EXPECT_EQ( expressionOf( [&] { owner.tableVariantCount( 10, 2 ); } ), "0" );
   EXPECT_EQ( expressionOf( [] { View::entries( 16, 2 ); } ), "0" );
   Testing::Probe<View> view( Hardware::BCM88690_B0, nullptr, 0, false, 0 );
   view.pairIs( 10, 2 );
   EXPECT_EQ( expressionOf( [&] { view.vlanMirror(); } ), "0" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88690_B0, 2 ) );
   const auto failure = failureOf( [] { View::WithStorage bad( Hardware::BCM88690_B0, 9 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->message,
              "chipType: BCM88690_B0 variant: 9 not in metainfo for EvecEncapTable!" );
}

TEST( EvecEncapTable, DiscriminatorAsksForTheChipAlone ) {
   for( const auto chipType : chips ) {
      EXPECT_TRUE( View::isEvecEncapTable( chipType, nullptr, 0, 9 ) );
      EXPECT_FALSE( View::chipTypeVariantValid( chipType, 9 ) );
   }
   EXPECT_TRUE( View::isEvecEncapTable( Hardware::BCM88480_B0, nullptr, 0, 0 ) );
   const U8 zeros[4] = {};
   for( const unsigned chipType : { 0u, 2u, 8u, 9u, 11u, 17u, 20u, 21u, 255u } ) {
      EXPECT_FALSE(
         View::isEvecEncapTable( static_cast<Hardware::ChipType>( chipType ), zeros, 4, 0 ) )
         << chipType;
   }
}

TEST( EvecEncapTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 1, 0, 63 ),
              ( Address{ 0x272003f, 30, 13 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 1, 1, 63 ),
              ( Address{ 0x272003f, 30, 25 } ) );
   for( const auto chipType : chips ) {
      EXPECT_EQ( addressOf<View>( chipType, 0, 0, 0 ).address, 0x1b0000u );
      EXPECT_EQ( addressOf<View>( chipType, 1, 0, 0 ).address, 0x2720000u );
      EXPECT_EQ( expressionOf( [&] { addressOf<View>( chipType, 1, 0, 64 ); } ),
                 "tableEntry < 64" );
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 0 ), ( Address{ 0x1b0000, 10, 10 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 0, 1, 0 ); } ),
              "identifier <= 0" );
}

TEST( EvecEncapTable, CopiesOfOneBlockAreToldApartByAccessType ) {
   for( const auto chipType : { Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      EXPECT_EQ( addressOf<View>( chipType, 0, 0, 0 ), ( Address{ 0x1b0000, 16, 9 } ) );
      EXPECT_EQ( addressOf<View>( chipType, 1, 0, 0 ), ( Address{ 0x2720000, 24, 9 } ) );
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88800_A0, 0, 0, 0 ), ( Address{ 0x1b0000, 2, 9 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88800_A0, 1, 0, 0 ), ( Address{ 0x2720000, 8, 4 } ) );
}

} // namespace
