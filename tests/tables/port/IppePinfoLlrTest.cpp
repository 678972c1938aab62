// IppePinfoLlr: the VLAN classification of a port on the ingress side, two fields far apart.
#include "support/Contract.h"

#include <Hardware/IppePinfoLlr.h>

#include <algorithm>

namespace {

using View = Hardware::IppePinfoLlr;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IppePinfoLlr" );
   expected.storageBytes = 12;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, ignoreIncomingVid, IgnoreIncomingVid, 166, "IGNORE_INCOMING_VID" ),
      NARROW_FIELD( U8, vlanClassificationProfile, VlanClassificationProfile, 350,
                    "VLAN_CLASSIFICATION_PROFILE" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12-16" }, {
         { "vlanClassificationProfile", { "0:4" } },
         { "ignoreIncomingVid",         { "21:1" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 3, 256,  1, 2, 2, 1 },
      { "13,15,16", "0", 3, 1024, 1, 2, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x600000, 1, 0, { { 16, 2 }, { 30, 9 } } },
      { "13",    "0", 0x600000, 1, 0, { { 4, 10 } } },
      { "14",    "0", 0x600000, 1, 0, { { 0, 14 }, { 0, 26 } } },
      { "15,16", "0", 0x600000, 1, 0, { { 16, 17 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( IppePinfoLlr, expectation() )

TEST( IppePinfoLlr, SettersLeaveTheBitsBetweenTheFieldsAsTheyWere ) {
   for( const U8 pattern : { U8{ 0 }, U8{ 0xff }, U8{ 0xa5 } } ) {
      U8 buffer[12];
      std::fill( std::begin( buffer ), std::end( buffer ), pattern );
      View view( Hardware::BCM88690_B0, buffer, 12, false, 0 );
      view.ignoreIncomingVidIs( 0 );
      view.ignoreIncomingVidIs( 1 );
      view.vlanClassificationProfileIs( 0 );
      view.vlanClassificationProfileIs( 9 );
      EXPECT_EQ( buffer[0], ( pattern & 0xf0 ) | 9 );
      EXPECT_EQ( buffer[1], pattern );
      EXPECT_EQ( buffer[2], pattern | 0x20 );
      EXPECT_TRUE(
         std::all_of( buffer + 3, buffer + 12, [pattern]( U8 byte ) { return byte == pattern; } ) );
   }
}

} // namespace
