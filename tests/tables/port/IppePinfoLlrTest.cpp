// IppePinfoLlr: the VLAN classification of a port on the ingress side, two fields far apart.
#include "support/Contract.h"

#include <Hardware/IppePinfoLlr.h>

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

} // namespace
