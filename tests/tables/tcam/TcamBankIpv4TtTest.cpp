// TcamBankIpv4Tt: an IPv4 tunnel termination key, one layout on all its chip types.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/TcamBankIpv4Tt.h>

namespace {

using View = Hardware::TcamBankIpv4Tt;
using Testing::Address;
using Testing::addressOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::lowOnes;
using Testing::toBits;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamBankIpv4Tt" );
   expected.storageBytes = 80;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U32, ipv4Dip,           Ipv4Dip,           183, "IPV4_DIP" ),
      NARROW_FIELD( U32, ipv4Sip,           Ipv4Sip,           184, "IPV4_SIP" ),
      NARROW_FIELD( U8,  ipv4Tos,           Ipv4Tos,           185, "IPV4_TOS" ),
      NARROW_FIELD( U8,  ipv4TunnelType,    Ipv4TunnelType,    186, "IPV4_TUNNEL_TYPE" ),
      NARROW_FIELD( U8,  ipProtocol,        IpProtocol,        190, "IP_PROTOCOL" ),
      NARROW_FIELD( U8,  layerType,         LayerType,         229, "LAYER_TYPE" ),
      NARROW_FIELD( U16, vrf,               Vrf,               362, "VRF" ),
      NARROW_FIELD( U8,  vrfSelectionLabel, VrfSelectionLabel, 363, "VRF_SELECTION_LABEL" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12-16" }, {
         { "layerType",         { "0:5" } },
         { "ipv4TunnelType",    { "5:4" } },
         { "ipv4Sip",           { "9:32" } },
         { "ipv4Dip",           { "41:32" } },
         { "vrf",               { "73:16" } },
         { "vrfSelectionLabel", { "89:8" } },
         { "ipProtocol",        { "97:8" } },
         { "ipv4Tos",           { "105:8" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12-16", "0", 20, 4294967295, 1, 8, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x0, 1, 0, { { 10, 1 } } },
      { "13",    "0", 0x0, 1, 0, { { 4, 5 } } },
      { "14",    "0", 0x0, 1, 0, { { 28, 12 } } },
      { "15,16", "0", 0x0, 1, 0, { { 16, 15 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( TcamBankIpv4Tt, expectation() )

constexpr Hardware::ChipType chips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                         Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                         Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( TcamBankIpv4Tt, FieldsFillTheKeyFromBitZero ) {
   for( const auto chipType : chips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::layerTypeMask, &View::ipv4TunnelTypeMask, &View::ipv4SipMask,
                            &View::ipv4DipMask, &View::vrfMask, &View::vrfSelectionLabelMask,
                            &View::ipProtocolMask, &View::ipv4TosMask },
                          0, 113 );
      std::fill( view.buf(), view.buf() + 80, U8{ 0xff } );
      EXPECT_EQ( toBits( view.getAllFields() ), lowOnes( 113 ) );
   }
}

TEST( TcamBankIpv4Tt, RefusesTheEarlyChips ) {
   const auto failure = failureOf( [] { View::WithStorage view( Hardware::BCM88680_A0, 0 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message,
              "chipType: BCM88680_A0 variant: 0 not in metainfo for TcamBankIpv4Tt!" );
}

TEST( TcamBankIpv4Tt, SourceStraddlesFiveBytesAndLeavesItsNeighbours ) {
   U8 zeros[7] = {};
   View( Hardware::BCM88690_B0, zeros, 7, false, 0 ).ipv4SipIs( 0xffffffff );
   const U8 written[7] = { 0x00, 0xfe, 0xff, 0xff, 0xff, 0x01, 0x00 };
   EXPECT_TRUE( std::equal( std::begin( zeros ), std::end( zeros ), std::begin( written ) ) );

   U8 ones[7] = { 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff };
   View( Hardware::BCM88690_B0, ones, 7, false, 0 ).ipv4SipIs( 0 );
   const U8 cleared[7] = { 0xff, 0x01, 0x00, 0x00, 0x00, 0xfe, 0xff };
   EXPECT_TRUE( std::equal( std::begin( ones ), std::end( ones ), std::begin( cleared ) ) );

   // 0x12345678 shifted left by one, from byte 1 on.
   U8 address[7] = {};
   View view( Hardware::BCM88690_B0, address, 7, false, 0 );
   view.ipv4SipIs( 0x12345678 );
   const U8 shifted[7] = { 0x00, 0xf0, 0xac, 0x68, 0x24, 0x00, 0x00 };
   EXPECT_TRUE( std::equal( std::begin( address ), std::end( address ), std::begin( shifted ) ) );
   EXPECT_EQ( view.ipv4Sip(), 0x12345678u );
}

TEST( TcamBankIpv4Tt, TwoFieldsAloneHaveBounds ) {
   for( const auto chipType : chips ) {
      View::WithStorage view( chipType, 0 );
      EXPECT_EQ( expressionOf( [&] { view.layerTypeIs( 0x20 ); } ), "layerType <= 0x1f" );
      view.layerTypeIs( 0x1f );
      EXPECT_EQ( expressionOf( [&] { view.ipv4TunnelTypeIs( 0x10 ); } ), "ipv4TunnelType <= 0xf" );
      view.ipv4TunnelTypeIs( 0xf );
      view.ipv4SipIs( 0xffffffff );
      view.ipv4DipIs( 0xffffffff );
      view.vrfIs( 0xffff );
      view.vrfSelectionLabelIs( 0xff );
      view.ipProtocolIs( 0xff );
      view.ipv4TosIs( 0xff );
      EXPECT_EQ( view.ipv4Tos(), 0xff );
      EXPECT_EQ( toBits( view.getAllFields() ), lowOnes( 113 ) );
   }
}

TEST( TcamBankIpv4Tt, FieldsWithoutBoundLoseWhatIsAboveThemSilently ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   view.stringFieldIs( "vrf", 0x12345 );
   EXPECT_EQ( view.vrf(), 0x2345 );
   view.setField64( 362, 0x56789 );
   EXPECT_EQ( view.vrf(), 0x6789 );
   view.setField64( 183, 0x1c0000201 + 0xff00000000 );
   EXPECT_EQ( view.ipv4Dip(), 0xc0000201u );
   view.setField64( 185, 0x1a5 );
   EXPECT_EQ( view.ipv4Tos(), 0xa5 );
   EXPECT_EQ( view.vrfSelectionLabel(), 0 );
   EXPECT_EQ( view.ipv4Sip(), 0u );
}

TEST( TcamBankIpv4Tt, LengthTestsFromOneByteToFifteen ) {
   U8 buffer[79] = {};
   const auto view = [&]( U16 len ) {
      return View( Hardware::BCM88480_A0, buffer, len, false, 0 );
   };
   EXPECT_EQ( expressionOf( [&] { view( 0 ).layerType(); } ), "len_ >= 1" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).layerType(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 1 ).ipv4TunnelType(); } ), "len_ >= 2" );
   EXPECT_EQ( expressionOf( [&] { view( 5 ).ipv4Sip(); } ), "len_ >= 6" );
   EXPECT_EQ( expressionOf( [&] { view( 14 ).ipv4Tos(); } ), "len_ >= 15" );
   EXPECT_EQ( expressionOf( [&] { view( 15 ).ipv4Tos(); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { view( 15 ).getAllFields(); } ), "len_ >= 80" );
   EXPECT_EQ( expressionOf( [&] { view( 79 ).getAllFields(); } ), "len_ >= 80" );
}

TEST( TcamBankIpv4Tt, AddressIsTheEntry ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_V6_B0, 0, 0, 4294967294 ),
              ( Address{ 4294967294, 10, 1 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88480_B0, 0, 0, 7 ), ( Address{ 7, 16, 15 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88690_B0, 0, 0, 4294967295 ); } ),
              "tableEntry < 4294967295" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88690_B0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   EXPECT_TRUE( Testing::hasNoAddress<View>( Hardware::BCM88680_A0, 0 ) );
   EXPECT_TRUE( Testing::hasNoAddress<View>( Hardware::BCM88690_B0, 1 ) );
}

} // namespace
