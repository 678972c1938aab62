// TcamBankTableFormatter: an IPv6 destination key, laid out in reverse on the late chips.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/TcamBankIpv4Tt.h>
#include <Hardware/TcamBankTable.h>
#include <Hardware/TcamBankTableFormatter.h>

namespace {

using View = Hardware::TcamBankTableFormatter;
using Testing::Address;
using Testing::addressOf;
using Testing::bitsSetBy;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::lowOnes;
using Testing::toBits;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamBankTableFormatter" );
   expected.storageBytes = 80;
   // clang-format off
   expected.fields = {
      WIDE_FIELD(   Raw128, ipv6Dip, Ipv6Dip, 188, "IPV6_DIP" ),
      NARROW_FIELD( U8, ipQualifierAdditionalHeader1St, IpQualifierAdditionalHeader1St, 191,
                    "IP_QUALIFIER_ADDITIONAL_HEADER_1ST" ),
      NARROW_FIELD( U8, ipQualifierAdditionalHeader2Nd, IpQualifierAdditionalHeader2Nd, 192,
                    "IP_QUALIFIER_ADDITIONAL_HEADER_2ND" ),
      NARROW_FIELD( U16, vrf, Vrf, 362, "VRF" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2-8", "10,12-16" }, {
         { "vrf",                            { "128:10", "0:16" } },
         { "ipv6Dip",                        { "0:128",  "26:128" } },
         { "ipQualifierAdditionalHeader2Nd", { "-",      "16:5" } },
         { "ipQualifierAdditionalHeader1St", { "-",      "21:5" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2-8",      "0", 20, 4294967295, 1, 2, 1, 1 },
      { "10,12-16", "0", 20, 4294967295, 1, 4, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x0, 1, 0, { { 0, 61 } } },
      { "4,5",   "0", 0x0, 1, 0, { { 0, 118 } } },
      { "6,7",   "0", 0x0, 1, 0, { { 0, 120 } } },
      { "8",     "0", 0x0, 1, 0, { { 0, 115 } } },
      { "10,12", "0", 0x0, 1, 0, { { 10, 1 } } },
      { "13",    "0", 0x0, 1, 0, { { 4, 5 } } },
      { "14",    "0", 0x0, 1, 0, { { 28, 12 } } },
      { "15,16", "0", 0x0, 1, 0, { { 16, 15 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( TcamBankTableFormatter, expectation() )

constexpr Hardware::ChipType earlyChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                              Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                              Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                              Hardware::BCM88680_A0 };
constexpr Hardware::ChipType lateChips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                             Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                             Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( TcamBankTableFormatter, FieldsFillTheKeyInOppositeOrders ) {
   for( const auto chipType : earlyChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view, { &View::ipv6DipMask, &View::vrfMask }, 0, 138 );
   }
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::vrfMask, &View::ipQualifierAdditionalHeader2NdMask,
                            &View::ipQualifierAdditionalHeader1StMask, &View::ipv6DipMask },
                          0, 154 );
   }
}

TEST( TcamBankTableFormatter, WholeEntryEndsWithTheLastField ) {
   U8 buffer[80];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   for( const auto chipType : earlyChips ) {
      EXPECT_EQ( toBits( View( chipType, buffer, 80, false, 0 ).getAllFields() ), lowOnes( 138 ) );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( toBits( View( chipType, buffer, 80, false, 0 ).getAllFields() ), lowOnes( 154 ) );
   }
}

TEST( TcamBankTableFormatter, BoundOfVrfFollowsItsWidth ) {
   for( const auto chipType : earlyChips ) {
      View::WithStorage view( chipType, 0 );
      view.vrfIs( 0x3ff );
      EXPECT_EQ( expressionOf( [&] { view.vrfIs( 0x400 ); } ), "vrf <= 0x3ff" );
      EXPECT_EQ( view.vrf(), 0x3ff );
      // A value is cut to the argument, 16 bits, before its bound is tested.
      EXPECT_EQ( expressionOf( [&] { view.stringFieldIs( "vrf", 0x10400 ); } ), "vrf <= 0x3ff" );
      view.stringFieldIs( "vrf", 0x10155 );
      EXPECT_EQ( view.vrf(), 0x155 );
   }
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      view.vrfIs( 0x400 );
      EXPECT_EQ( view.vrf(), 0x400 );
      view.vrfIs( 0xffff );
      EXPECT_EQ( view.vrf(), 0xffff );
      view.setField64( 362, 0x12345 );
      EXPECT_EQ( view.vrf(), 0x2345 );
   }
}

TEST( TcamBankTableFormatter, BoundsOfTheQualifiers ) {
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      view.ipQualifierAdditionalHeader2NdIs( 0x1f );
      EXPECT_EQ( expressionOf( [&] { view.ipQualifierAdditionalHeader2NdIs( 0x20 ); } ),
                 "ipQualifierAdditionalHeader2Nd <= 0x1f" );
      EXPECT_EQ( expressionOf( [&] { view.ipQualifierAdditionalHeader1StIs( 0x20 ); } ),
                 "ipQualifierAdditionalHeader1St <= 0x1f" );
      EXPECT_EQ( toBits( view.getAllFields() ), lowOnes( 21 ) ^ lowOnes( 16 ) );
   }
}

TEST( TcamBankTableFormatter, EarlyChipsHaveNoQualifiers ) {
   View::WithStorage view( Hardware::BCM88375_A0, 0 );
   EXPECT_EQ( expressionOf( [&] { view.ipQualifierAdditionalHeader1St(); } ), "0" );
   EXPECT_FALSE( view.isIpQualifierAdditionalHeader1StValid() );
   EXPECT_EQ( expressionOf( [&] { view.ipQualifierAdditionalHeader2Nd(); } ), "0" );
   EXPECT_FALSE( view.isIpQualifierAdditionalHeader2NdValid() );
   const auto first = failureOf( [&] { view.ipQualifierAdditionalHeader1StLen(); } );
   ASSERT_TRUE( first );
   EXPECT_EQ( first->message,
              "BCM88375_A0 does not have field IP_QUALIFIER_ADDITIONAL_HEADER_1ST" );
   const auto second = failureOf( [&] { view.ipQualifierAdditionalHeader2NdLen(); } );
   ASSERT_TRUE( second );
   EXPECT_EQ( second->message,
              "BCM88375_A0 does not have field IP_QUALIFIER_ADDITIONAL_HEADER_2ND" );
}

TEST( TcamBankTableFormatter, MaskOfTheAddressSetsItsBitsAlone ) {
   View::WithStorage thirteen( Hardware::BCM88800_A0, 0 );
   EXPECT_EQ( bitsSetBy( thirteen, &View::ipv6DipMask ), lowOnes( 154 ) ^ lowOnes( 26 ) );
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( bitsSetBy( two, &View::ipv6DipMask ), lowOnes( 128 ) );
}

TEST( TcamBankTableFormatter, AddressIsKnownByIdentifierButNotSetByIt ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_TRUE( view.isFieldValid( 188 ) );
   EXPECT_EQ( view.fieldWidth( 188 ), 128 );
   EXPECT_EQ( view.fieldOffset( 188 ), 26 );
   EXPECT_EQ( expressionOf( [&] { view.setField64( 188, 1 ); } ), "false" );
   const auto failure = failureOf( [&] { view.stringFieldIs( "ipv6Dip", 1 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "false" );
   EXPECT_FALSE( failure->message );

   Raw128 address{};
   address.wordIs( 0, 0x0123456789abcdef );
   address.wordIs( 1, 0x20010db800000042 );
   view.ipv6DipIs( address );
   EXPECT_EQ( view.ipv6Dip(), address );
   EXPECT_EQ( view.stringField( "ipv6Dip", 0 ), 0x0123456789abcdefu );
   EXPECT_EQ( view.stringField( "ipv6Dip", 1 ), 0x20010db800000042u );
   EXPECT_EQ( view.ipQualifierAdditionalHeader1St(), 0 );
   EXPECT_EQ( view.vrf(), 0 );
}

TEST( TcamBankTableFormatter, LengthTestsOfBothGroups ) {
   U8 buffer[20] = {};
   const auto two = [&]( U16 len ) { return View( Hardware::BCM88650_B0, buffer, len, false, 0 ); };
   const auto ten = [&]( U16 len ) { return View( Hardware::BCM88690_B0, buffer, len, false, 0 ); };
   EXPECT_EQ( expressionOf( [&] { two( 17 ).vrf(); } ), "len_ >= 18" );
   EXPECT_EQ( expressionOf( [&] { two( 18 ).vrf(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { two( 15 ).ipv6Dip(); } ), "len_ >= 16" );
   EXPECT_EQ( expressionOf( [&] { two( 16 ).ipv6Dip(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { ten( 1 ).vrf(); } ), "len_ >= 2" );
   EXPECT_EQ( expressionOf( [&] { ten( 2 ).vrf(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { ten( 19 ).ipv6Dip(); } ), "len_ >= 20" );
   EXPECT_EQ( expressionOf( [&] { ten( 20 ).ipv6Dip(); } ), "none" );
}

TEST( TcamBankTableFormatter, TwentyBytesServeTheFieldsButNotTheWholeEntry ) {
   U8 buffer[20] = {};
   View view( Hardware::BCM88690_B0, buffer, 20, false, 0 );
   Raw128 address{};
   address.wordIs( 1, 0x8000000000000000 );
   view.ipv6DipIs( address );
   view.vrfIs( 0xffff );
   view.ipQualifierAdditionalHeader1StIs( 1 );
   view.ipQualifierAdditionalHeader2NdIs( 2 );
   EXPECT_EQ( view.ipv6Dip(), address );
   EXPECT_EQ( view.vrf(), 0xffff );
   EXPECT_EQ( view.ipQualifierAdditionalHeader1St(), 1 );
   EXPECT_EQ( view.ipQualifierAdditionalHeader2Nd(), 2 );
   EXPECT_EQ( buffer[19], 0x02 ); // bit 153
   EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 80" );
}

TEST( TcamBankTableFormatter, AddressIsTheEntry ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 0, 0, 4294967294 ),
              ( Address{ 4294967294, 0, 61 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 0, 4294967294 ),
              ( Address{ 4294967294, 10, 1 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 0, 0, 0 ), ( Address{ 0, 0, 115 } ) );
   for( const auto chipType : { Hardware::BCM88650_B0, Hardware::BCM88480_B0 } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf<View>( chipType, 0, 0, 4294967295 ); } ),
                 "tableEntry < 4294967295" );
      EXPECT_EQ( expressionOf( [&] { addressOf<View>( chipType, 0, 1, 0 ); } ), "identifier <= 0" );
      EXPECT_TRUE( Testing::hasNoAddress<View>( chipType, 1 ) );
   }
}

TEST( TcamBankTableFormatter, LiesWithTheIpv4KeyAndNotInTheBank ) {
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( Testing::blockOf<View>( chipType, 0, 0 ),
                 Testing::blockOf<Hardware::TcamBankIpv4Tt>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_NE( Testing::blockOf<View>( chipType, 0, 0 ),
                 Testing::blockOf<Hardware::TcamBankTable>( chipType, 0, 0 ) )
         << chipType;
   }
   for( const auto chipType : earlyChips ) {
      EXPECT_NE( Testing::blockOf<View>( chipType, 0, 0 ),
                 Testing::blockOf<Hardware::TcamBankTable>( chipType, 0, 0 ) )
         << chipType;
   }
}

} // namespace
