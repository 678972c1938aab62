// VttInPpPortConfig0: three fields of a port that touch each other without a gap.
#include "support/Contract.h"

#include <Hardware/VttInPpPortConfig0.h>

namespace {

using View = Hardware::VttInPpPortConfig0;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "VttInPpPortConfig0" );
   expected.storageBytes = 12;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U32, defaultPortLif, DefaultPortLif, 60,  "DEFAULT_PORT_LIF" ),
      NARROW_FIELD( U32, portKeyGenVar,  PortKeyGenVar,  279, "PORT_KEY_GEN_VAR" ),
      NARROW_FIELD( U16, mappedPpPort,   MappedPpPort,   242, "MAPPED_PP_PORT" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12,14", "13,15,16" }, {
         { "mappedPpPort",   { "0:9",   "0:10" } },
         { "portKeyGenVar",  { "9:32",  "10:32" } },
         { "defaultPortLif", { "41:20", "42:20" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 3, 256,  1, 3, 2, 1 },
      { "13,15,16", "0", 3, 1024, 1, 3, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x760000, 1, 0, { { 18, 2 }, { 0, 10 } } },
      { "13",    "0", 0x760000, 1, 0, { { 6, 10 } } },
      { "14",    "0", 0x760000, 1, 0, { { 2, 14 }, { 2, 26 } } },
      { "15,16", "0", 0x760000, 1, 0, { { 24, 12 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( VttInPpPortConfig0, expectation() )

} // namespace
