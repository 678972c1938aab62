// EvecMappingTable: 4096 selections of an egress VLAN edit command.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>
#include <Hardware/EvecMappingTable.h>
#include <Hardware/IvecTable.h>

namespace {

using View = Hardware::EvecMappingTable;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EvecMappingTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, vlanMembership,        VlanMembership,        357, "VLAN_MEMBERSHIP" ),
      NARROW_FIELD( U8, vlanMirror,            VlanMirror,            358, "VLAN_MIRROR" ),
      NARROW_FIELD( U8, egressVlanEditCommand, EgressVlanEditCommand, 89,
                    "EGRESS_VLAN_EDIT_COMMAND" ),
      NARROW_FIELD( U8, removeTxTag,           RemoveTxTag,           294, "REMOVE_TX_TAG" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12-16" }, {
         { "egressVlanEditCommand", { "0:7" } },
         { "removeTxTag",           { "7:1" } },
         { "vlanMirror",            { "8:2" } },
         { "vlanMembership",        { "10:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 1, 4096, 1, 4, 2, 1 },
      { "13,15,16", "0", 1, 4096, 1, 4, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x1820000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "13",    "0", 0x1820000, 1, 0, { { 8, 4 } } },
      { "14",    "0", 0x1820000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "15,16", "0", 0x1820000, 1, 0, { { 24, 9 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( EvecMappingTable, expectation() )

constexpr Hardware::ChipType chips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                         Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                         Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( EvecMappingTable, FieldsFillTheLowTwelveBits ) {
   for( const auto chipType : chips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::egressVlanEditCommandMask, &View::removeTxTagMask,
                            &View::vlanMirrorMask, &View::vlanMembershipMask },
                          0, 12 );
      std::fill( view.buf(), view.buf() + 4, U8{ 0xff } );
      EXPECT_EQ( view.getAllFields(), 0xfffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 0 ).word( 0 ), 0xfffu );
   }
}

TEST( EvecMappingTable, CommandNumbersEveryFormatAndNoMore ) {
   using Formats = Hardware::EvecFormatTable;
   for( const auto chipType : chips ) {
      View::WithStorage view( chipType, 0 );
      view.egressVlanEditCommandIs( 0x7f );
      EXPECT_EQ( view.getAllFields(), 0x7fu );
      EXPECT_EQ( expressionOf( [&] { addressOf<Formats>( chipType, 0, 0, 0x7f ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view.egressVlanEditCommandIs( 0x80 ); } ),
                 "egressVlanEditCommand <= 0x7f" );
      EXPECT_EQ( expressionOf( [&] { addressOf<Formats>( chipType, 0, 0, 0x80 ); } ),
                 "tableEntry < 128" );
      Hardware::EvecEncapTable::WithStorage encap( chipType, 0 );
      encap.vlanEditCommandIs( 0xff );
      EXPECT_EQ( encap.vlanEditCommand(), 0xff );
   }
}

TEST( EvecMappingTable, BoundsAndLengthTests ) {
   U8 buffer[3] = {};
   const auto view = [&]( U16 len ) {
      return View( Hardware::BCM88800_A0, buffer, len, false, 0 );
   };
   EXPECT_EQ( expressionOf( [&] { view( 0 ).egressVlanEditCommand(); } ), "len_ >= 1" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).removeTxTag(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).vlanMembership(); } ), "len_ >= 2" );
   EXPECT_EQ( expressionOf( [&] { view( 2 ).vlanMembership(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 3 ).getAllFields(); } ), "len_ >= 4" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).removeTxTagIs( 2 ); } ), "removeTxTag <= 0x1" );
   EXPECT_EQ( expressionOf( [&] { view( 2 ).vlanMirrorIs( 4 ); } ), "vlanMirror <= 0x3" );
}

TEST( EvecMappingTable, SharesIdentifiersAtOtherPlaces ) {
   View::WithStorage mapping( Hardware::BCM88690_B0, 0 );
   Hardware::EvecEncapTable::WithStorage encap( Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( mapping.fieldOffset( 357 ), 10 );
   EXPECT_EQ( encap.fieldOffset( 357 ), 11 );
   EXPECT_EQ( mapping.fieldOffset( 358 ), 8 );
   EXPECT_EQ( encap.fieldOffset( 358 ), 9 );
   // The tag flags and the commands are fields of their own.
   EXPECT_EQ( expressionOf( [&] { mapping.fieldWidth( 359 ); } ), "false" );
   EXPECT_EQ( expressionOf( [&] { encap.fieldWidth( 294 ); } ), "false" );
   EXPECT_EQ( expressionOf( [&] { mapping.fieldWidth( 352 ); } ), "false" );
   EXPECT_EQ( expressionOf( [&] { encap.fieldWidth( 89 ); } ), "false" );
}

TEST( EvecMappingTable, RefusesEarlyChipsAndOtherVariants ) {
   EXPECT_FALSE( View::chipTypeVariantValid( Hardware::BCM88680_A0, 0 ) );
   const auto early = failureOf( [] { View::WithStorage view( Hardware::BCM88680_A0, 0 ); } );
   ASSERT_TRUE( early );
   EXPECT_EQ( early->message,
              "chipType: BCM88680_A0 variant: 0 not in metainfo for EvecMappingTable!" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88680_A0, 0 ) );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88800_A0, 1 ) );
   EXPECT_EQ( expressionOf( [] { View::entries( 13, 1 ); } ), "variant == 0" );
}

TEST( EvecMappingTable, AddressesOfItsBounds ) {
   for( const auto chipType : chips ) {
      EXPECT_EQ( addressOf<View>( chipType, 0, 0, 4095 ).address, 0x1820fffu );
      EXPECT_EQ( expressionOf( [&] { addressOf<View>( chipType, 0, 0, 4096 ); } ),
                 "tableEntry < 4096" );
   }
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 0 ), ( Address{ 0x1820000, 12, 10 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88480_B0, 0, 0, 0 ), ( Address{ 0x1820000, 24, 9 } ) );
}

TEST( EvecMappingTable, FourTablesLieInOneBlock ) {
   const auto expectOneBlock = []( Hardware::ChipType chipType, unsigned identifier ) {
      const auto block = blockOf<View>( chipType, 0, identifier );
      EXPECT_EQ( blockOf<Hardware::EvecFormatTable>( chipType, 0, identifier ), block );
      EXPECT_EQ( blockOf<Hardware::EvecEncapTable>( chipType, 1, identifier ), block );
      EXPECT_EQ( blockOf<Hardware::IvecTable>( chipType, 1, identifier ), block );
   };
   for( const auto chipType : chips ) {
      expectOneBlock( chipType, 0 );
   }
   for( const auto chipType :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88850_A0 } ) {
      expectOneBlock( chipType, 1 );
   }
}

} // namespace
