// IngressPpPortToVd: one field of 9 or 11 bits, the VLAN domain of a port on the ingress side.
#include "support/Addresses.h"
#include "support/Contract.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/EsemMgmtReq.h>
#include <Hardware/IngressPpPortToVd.h>
#include <Hardware/IppePinfoLlr.h>
#include <Hardware/IsemMgmtReq.h>

namespace {

using View = Hardware::IngressPpPortToVd;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expressionOf;
using Testing::hasNoAddress;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IngressPpPortToVd" );
   expected.storageBytes = 4;
   expected.fields = {
      NARROW_FIELD( U16, vlanDomain, VlanDomain, 351, "VLAN_DOMAIN" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12,14", "13,15,16" }, {
         { "vlanDomain", { "0:9", "0:11" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 1, 256,  1, 1, 2, 1 },
      { "13,15,16", "0", 1, 1024, 1, 1, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x650000, 1, 0, { { 16, 2 }, { 30, 9 } } },
      { "13",    "0", 0x650000, 1, 0, { { 4, 10 } } },
      { "14",    "0", 0x650000, 1, 0, { { 0, 14 }, { 0, 26 } } },
      { "15,16", "0", 0x650000, 1, 0, { { 16, 17 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( IngressPpPortToVd, expectation() )

TEST( IngressPpPortToVd, VlanDomainIsAsWideAsTheChipHasDomains ) {
   for( const auto chip :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88850_A0 } ) {
      View::WithStorage view( chip, 0 );
      view.vlanDomainIs( 0x1ff );
      EXPECT_EQ( view.vlanDomain(), 0x1ff );
      EXPECT_EQ( expressionOf( [&] { view.vlanDomainIs( 0x200 ); } ), "vlanDomain <= 0x1ff" );
      EXPECT_EQ( view.vlanDomain(), 0x1ff );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x1ffu );
   }
   for( const auto chip :
        { Hardware::BCM88800_A0, Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      View::WithStorage view( chip, 0 );
      view.vlanDomainIs( 0x7ff );
      EXPECT_EQ( view.vlanDomain(), 0x7ff );
      EXPECT_EQ( expressionOf( [&] { view.vlanDomainIs( 0x800 ); } ), "vlanDomain <= 0x7ff" );
      EXPECT_EQ( view.vlanDomain(), 0x7ff );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x7ffu );
   }
}

TEST( IngressPpPortToVd, DiffersFromTheEgressTableOnChipType14Alone ) {
   Hardware::EgressPerPortTable::WithStorage egress( Hardware::BCM88850_A0, 0 );
   egress.vlanDomainIs( 0x7ff );
   EXPECT_EQ( egress.vlanDomain(), 0x7ff );
   View::WithStorage ingress( Hardware::BCM88850_A0, 0 );
   EXPECT_EQ( expressionOf( [&] { ingress.vlanDomainIs( 0x7ff ); } ), "vlanDomain <= 0x1ff" );
   EXPECT_EQ( ingress.vlanDomain(), 0 );

   struct Row {
      Hardware::ChipType chip;
      unsigned ingressWidth, egressWidth;
   };
   for( const Row& row :
        { Row{ Hardware::BCM88690_B0, 9, 9 }, Row{ Hardware::BCM88690_V6_B0, 9, 9 },
          Row{ Hardware::BCM88800_A0, 11, 11 }, Row{ Hardware::BCM88850_A0, 9, 11 },
          Row{ Hardware::BCM88480_A0, 11, 11 }, Row{ Hardware::BCM88480_B0, 11, 11 } } ) {
      EXPECT_EQ( View::WithStorage( row.chip, 0 ).fieldWidth( 351 ), row.ingressWidth );
      EXPECT_EQ( Hardware::EgressPerPortTable::WithStorage( row.chip, 0 ).fieldWidth( 351 ),
                 row.egressWidth );
      // The lookups follow the ports of their side.
      EXPECT_EQ( Hardware::IsemMgmtReq::WithStorage( row.chip, 0 ).fieldWidth( 351 ),
                 row.ingressWidth );
      EXPECT_EQ( Hardware::EsemMgmtReq::WithStorage( row.chip, 1 ).fieldWidth( 351 ),
                 row.egressWidth );
   }
}

TEST( IngressPpPortToVd, LastEntries ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 255 ), ( Address{ 0x6500ff, 30, 9 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 255 ), ( Address{ 0x6500ff, 0, 26 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88800_A0, 0, 0, 1023 ),
              ( Address{ 0x6503ff, 4, 10 } ) );
   // The second instance of chip type 14 doesn't make its entries more than 256.
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88850_A0, 0, 1, 256 ); } ),
              "tableEntry < 256" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88480_B0, 0, 0, 1024 ); } ),
              "tableEntry < 1024" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88690_B0, 0, 2, 0 ); } ),
              "identifier <= 1" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88690_B0, 1 ) );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88680_A0, 0 ) );
}

TEST( IngressPpPortToVd, LiesInTheBlockOfIppePinfoLlr ) {
   for( const auto chip :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88800_A0,
          Hardware::BCM88850_A0, Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      ASSERT_EQ( View::instanceCount( chip, 0 ), Hardware::IppePinfoLlr::instanceCount( chip, 0 ) );
      for( unsigned identifier = 0; identifier < View::instanceCount( chip, 0 ); ++identifier ) {
         EXPECT_EQ( blockOf<View>( chip, 0, identifier ),
                    blockOf<Hardware::IppePinfoLlr>( chip, 0, identifier ) )
            << chip;
      }
   }
}

TEST( IngressPpPortToVd, WholeEntryHidesTheRestOfItsWord ) {
   U8 buffer[4] = { 0xff, 0xff, 0xff, 0xff };
   EXPECT_EQ( View( Hardware::BCM88690_B0, buffer, 4, false, 0 ).getAllFields(), 0x1ffu );
   EXPECT_EQ( View( Hardware::BCM88480_A0, buffer, 4, false, 0 ).getAllFields(), 0x7ffu );
   // Two bytes hold the field, but not the entry.
   View shortView( Hardware::BCM88690_B0, buffer, 2, false, 0 );
   EXPECT_EQ( shortView.vlanDomain(), 0x1ff );
   EXPECT_EQ( expressionOf( [&] { shortView.getAllFields(); } ), "len_ >= 4" );
   shortView.vlanDomainIs( 0x155 );
   EXPECT_EQ( buffer[0], 0x55 );
   EXPECT_EQ( buffer[1], 0xff );
}

} // namespace
