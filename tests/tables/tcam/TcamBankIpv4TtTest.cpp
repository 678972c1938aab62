// TcamBankIpv4Tt: an IPv4 tunnel termination key, one layout on all its chip types.
#include "support/Contract.h"

#include <Hardware/TcamBankIpv4Tt.h>

namespace {

using View = Hardware::TcamBankIpv4Tt;

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

} // namespace
