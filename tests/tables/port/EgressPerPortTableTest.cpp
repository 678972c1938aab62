// EgressPerPortTable: the VLAN domain and the exact-match command of a port on the egress side.
#include "support/Contract.h"

#include <Hardware/EgressPerPortTable.h>

#include <algorithm>

namespace {

using View = Hardware::EgressPerPortTable;

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

} // namespace
