// EvecMappingTable: 4096 selections of an egress VLAN edit command.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Numbers.h"

#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>
#include <Hardware/EvecMappingTable.h>

namespace {

using View = Hardware::EvecMappingTable;
using Testing::addressOf;
using Testing::expressionOf;

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

TEST( EvecMappingTable, CommandNumbersEveryFormatAndNoMore ) {
   using Formats = Hardware::EvecFormatTable;
   for( const unsigned number : Testing::numbersIn( "10,12-16" ) ) {
      const auto chipType = static_cast<Hardware::ChipType>( number );
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

} // namespace
