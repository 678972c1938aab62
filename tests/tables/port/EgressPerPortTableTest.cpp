// EgressPerPortTable: the VLAN domain and the exact-match command of a port on the egress side.
#include "support/Addresses.h"
#include "support/Contract.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/IvecTable.h>

#include <algorithm>

namespace {

using View = Hardware::EgressPerPortTable;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expressionOf;
using Testing::hasNoAddress;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EgressPerPortTable" );
   expected.storageBytes = 12;
   expected.fields = {
      NARROW_FIELD( U16, vlanDomain, VlanDomain, 351, "VLAN_DOMAIN" ),
      NARROW_FIELD( U8, portEmAccCmd, PortEmAccCmd, 278, "PORT_EM_ACC_CMD" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12", "13-16" }, {
         { "vlanDomain",   { "6:9",  "6:11" } },
         { "portEmAccCmd", { "41:6", "41:6" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 3, 256,  1, 2, 2, 1 },
      { "13,15,16", "0", 3, 1024, 1, 2, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x2210000, 1, 0, { { 26, 2 }, { 8, 10 } } },
      { "13",    "0", 0x2210000, 1, 0, { { 20, 5 } } },
      { "14",    "0", 0x2210000, 1, 0, { { 26, 13 }, { 26, 25 } } },
      { "15,16", "0", 0x2210000, 1, 0, { { 8, 8 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( EgressPerPortTable, expectation() )

TEST( EgressPerPortTable, VlanDomainIsNarrowOnChipTypes10And12Alone ) {
   for( const auto chip : { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0 } ) {
      View::WithStorage view( chip, 0 );
      view.vlanDomainIs( 0x1ff );
      EXPECT_EQ( view.vlanDomain(), 0x1ff );
      EXPECT_EQ( expressionOf( [&] { view.vlanDomainIs( 0x200 ); } ), "vlanDomain <= 0x1ff" );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x7e0000007fc0u );
   }
   for( const auto chip : { Hardware::BCM88800_A0, Hardware::BCM88850_A0, Hardware::BCM88480_A0,
                            Hardware::BCM88480_B0 } ) {
      View::WithStorage view( chip, 0 );
      view.vlanDomainIs( 0x7ff );
      EXPECT_EQ( view.vlanDomain(), 0x7ff );
      EXPECT_EQ( expressionOf( [&] { view.vlanDomainIs( 0x800 ); } ), "vlanDomain <= 0x7ff" );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x7e000001ffc0u );
   }
}

TEST( EgressPerPortTable, MaskOfChipType10ByWords ) {
   U8 buffer[12];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   const Raw128 entry = View( Hardware::BCM88690_B0, buffer, 12, false, 0 ).getAllFields();
   U32 words[4];
   std::memcpy( words, &entry, sizeof words );
   EXPECT_EQ( words[0], 0x00007fc0u );
   EXPECT_EQ( words[1], 0x00007e00u );
   EXPECT_EQ( words[2], 0u );
   EXPECT_EQ( words[3], 0u );
}

TEST( EgressPerPortTable, ExactMatchCommandHasSixBits ) {
   for( const auto chip : { Hardware::BCM88690_B0, Hardware::BCM88850_A0 } ) {
      View::WithStorage view( chip, 0 );
      view.portEmAccCmdIs( 0x3f );
      EXPECT_EQ( view.portEmAccCmd(), 0x3f );
      EXPECT_EQ( expressionOf( [&] { view.portEmAccCmdIs( 0x40 ); } ), "portEmAccCmd <= 0x3f" );
      EXPECT_EQ( view.getAllFields(), ( Raw128{ { 0x7e0000000000, 0 } } ) );
   }
}

TEST( EgressPerPortTable, LengthTests ) {
   U8 buffer[12] = {};
   const auto length = [&]( Hardware::ChipType chip, U16 len, auto read ) {
      const View view( chip, buffer, len, false, 0 );
      return expressionOf( [&] { read( view ); } );
   };
   const auto vlanDomain = []( const View& view ) { view.vlanDomain(); };
   const auto portEmAccCmd = []( const View& view ) { view.portEmAccCmd(); };
   const auto getAllFields = []( const View& view ) { view.getAllFields(); };
   for( const auto chip : { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0 } ) {
      EXPECT_EQ( length( chip, 1, vlanDomain ), "len_ >= 2" );
      EXPECT_EQ( length( chip, 2, vlanDomain ), "none" );
      EXPECT_EQ( length( chip, 5, portEmAccCmd ), "len_ >= 6" );
   }
   for( const auto chip : { Hardware::BCM88800_A0, Hardware::BCM88850_A0, Hardware::BCM88480_A0,
                            Hardware::BCM88480_B0 } ) {
      EXPECT_EQ( length( chip, 2, vlanDomain ), "len_ >= 3" );
      EXPECT_EQ( length( chip, 3, vlanDomain ), "none" );
      EXPECT_EQ( length( chip, 5, portEmAccCmd ), "len_ >= 6" );
      EXPECT_EQ( length( chip, 6, portEmAccCmd ), "none" );
      EXPECT_EQ( length( chip, 11, getAllFields ), "len_ >= 12" );
   }
}

TEST( EgressPerPortTable, SettersLeaveTheUncoveredBitsAsTheyWere ) {
   U8 buffer[12];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xa5 } );
   View view( Hardware::BCM88800_A0, buffer, 12, false, 0 );
   view.vlanDomainIs( 0x7ff );
   view.portEmAccCmdIs( 0 );
   // Bits 6 to 16 are ones, 41 to 46 zeros; all others are those of the pattern.
   const U8 right[12] = { 0xe5, 0xff, 0xa5, 0xa5, 0xa5, 0x81, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5, 0xa5 };
   EXPECT_TRUE( std::equal( std::begin( buffer ), std::end( buffer ), std::begin( right ) ) );
}

TEST( EgressPerPortTable, LastEntries ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 255 ),
              ( Address{ 0x22100ff, 8, 10 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 255 ),
              ( Address{ 0x22100ff, 26, 25 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88480_B0, 0, 0, 1023 ),
              ( Address{ 0x22103ff, 8, 8 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88850_A0, 0, 1, 256 ); } ),
              "tableEntry < 256" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 0, 0, 1024 ); } ),
              "tableEntry < 1024" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 0, 1, 1023 ); } ),
              "identifier <= 0" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88850_A0, 1 ) );
}

TEST( EgressPerPortTable, LiesInTheBlockOfTheFirstIvecTable ) {
   for( const auto chip :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88800_A0,
          Hardware::BCM88850_A0, Hardware::BCM88480_A0, Hardware::BCM88480_B0 } ) {
      ASSERT_EQ( View::instanceCount( chip, 0 ), Hardware::IvecTable::instanceCount( chip, 0 ) );
      for( unsigned identifier = 0; identifier < View::instanceCount( chip, 0 ); ++identifier ) {
         EXPECT_EQ( blockOf<View>( chip, 0, identifier ),
                    blockOf<Hardware::IvecTable>( chip, 0, identifier ) )
            << chip;
      }
   }
}

} // namespace
