// IngressPpPortToVd: one field of 9 or 11 bits, the VLAN domain of a port on the ingress side.
#include "support/Contract.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/EsemMgmtReq.h>
#include <Hardware/IngressPpPortToVd.h>
#include <Hardware/IsemMgmtReq.h>

namespace {

using View = Hardware::IngressPpPortToVd;

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

TEST( IngressPpPortToVd, DiffersFromTheEgressTableOnChipType14Alone ) {
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

} // namespace
