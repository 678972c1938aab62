// LifProfileAttributes: one field of two bits in 256 entries, on some chip types in two instances.
#include "support/Contract.h"

#include <Hardware/LifProfileAttributes.h>

namespace {

using View = Hardware::LifProfileAttributes;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "LifProfileAttributes" );
   expected.storageBytes = 4;
   expected.fields = {
      NARROW_FIELD( U8, daNotFoundDestinationProfile, DaNotFoundDestinationProfile, 52,
                    "DA_NOT_FOUND_DESTINATION_PROFILE" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12-16" }, { { "daNotFoundDestinationProfile", { "0:2" } } } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 1, 256, 1, 1, 2, 1 },
      { "13,15,16", "0", 1, 256, 1, 1, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x820000, 1, 0, { { 18, 2 }, { 0, 10 } } },
      { "13", "0", 0x820000, 1, 0, { { 6, 10 } } },
      { "14", "0", 0x820000, 1, 0, { { 2, 14 }, { 2, 26 } } },
      { "15,16", "0", 0x820000, 1, 0, { { 24, 12 } } },
   };
   return expected;
}

CONTRACT_TESTS( LifProfileAttributes, expectation() )

} // namespace
