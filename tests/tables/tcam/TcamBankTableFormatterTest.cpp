// TcamBankTableFormatter: an IPv6 destination key, laid out in reverse on the late chips.
#include "support/Contract.h"

#include <Hardware/TcamBankTableFormatter.h>

namespace {

using View = Hardware::TcamBankTableFormatter;

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

} // namespace
