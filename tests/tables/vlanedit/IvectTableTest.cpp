// IvectTable: numbers of VLAN edit command profiles, one an entry or eight.
#include "support/Contract.h"

#include <Hardware/IvectTable.h>

namespace {

using View = Hardware::IvectTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IvectTable" );
   expected.storageBytes = 8;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, ivec6, Ivec6, 224, "IVEC_6" ),
      NARROW_FIELD( U8, ivec,  Ivec,  217, "IVEC" ),
      NARROW_FIELD( U8, ivec4, Ivec4, 222, "IVEC_4" ),
      NARROW_FIELD( U8, ivec5, Ivec5, 223, "IVEC_5" ),
      NARROW_FIELD( U8, ivec3, Ivec3, 221, "IVEC_3" ),
      NARROW_FIELD( U8, ivec0, Ivec0, 218, "IVEC_0" ),
      NARROW_FIELD( U8, ivec1, Ivec1, 219, "IVEC_1" ),
      NARROW_FIELD( U8, ivec7, Ivec7, 225, "IVEC_7" ),
      NARROW_FIELD( U8, ivec2, Ivec2, 220, "IVEC_2" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2-8" }, {
         { "ivec",  { "0:6" } },
      } },
      { "0,1", { "10,12-16" }, {
         { "ivec0", { "0:7" } },
         { "ivec1", { "7:7" } },
         { "ivec2", { "14:7" } },
         { "ivec3", { "21:7" } },
         { "ivec4", { "28:7" } },
         { "ivec5", { "35:7" } },
         { "ivec6", { "42:7" } },
         { "ivec7", { "49:7" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3,6,7",  "0",   1, 256, 1, 1, 1, 1 },
      { "4,5,8",    "0",   1, 256, 1, 1, 2, 1 },
      { "10,12,14", "0,1", 2, 512, 1, 8, 2, 2 },
      { "13,15,16", "0,1", 2, 512, 1, 8, 1, 2 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x1150000, 1, 0, { { 0, 52 } } },
      { "4,5",   "0", 0x430000,  1, 0, { { 0, 58 }, { 0, 59 } } },
      { "6,7",   "0", 0x430000,  1, 0, { { 0, 58 } } },
      { "8",     "0", 0x430000,  1, 0, { { 0, 62 }, { 0, 63 } } },
      { "10,12", "0", 0x7f0000,  1, 0, { { 18, 2 }, { 0, 10 } } },
      { "10,12", "1", 0x7c0000,  1, 0, { { 8, 2 }, { 22, 9 } } },
      { "13",    "0", 0x7f0000,  1, 0, { { 6, 10 } } },
      { "13",    "1", 0x7c0000,  1, 0, { { 8, 10 } } },
      { "14",    "0", 0x7f0000,  1, 0, { { 2, 14 }, { 2, 26 } } },
      { "14",    "1", 0x7c0000,  1, 0, { { 4, 14 }, { 4, 26 } } },
      { "15,16", "0", 0x7f0000,  1, 0, { { 24, 12 } } },
      { "15,16", "1", 0x7c0000,  1, 0, { { 8, 17 } } },
   };
   // clang-format on
   expected.discriminator = View::isIvectTable;
   return expected;
}

CONTRACT_TESTS( IvectTable, expectation() )

TEST( IvectTable, EightSlotsAreOneNumber ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   view.ivec0Is( 0x01 );
   view.ivec1Is( 0x02 );
   view.ivec2Is( 0x04 );
   view.ivec3Is( 0x08 );
   view.ivec4Is( 0x10 );
   view.ivec5Is( 0x20 );
   view.ivec6Is( 0x40 );
   view.ivec7Is( 0x7f );
   EXPECT_EQ( view.getAllFields(), U64{ 0x01 } | U64{ 0x02 } << 7 | U64{ 0x04 } << 14 |
                                      U64{ 0x08 } << 21 | U64{ 0x10 } << 28 | U64{ 0x20 } << 35 |
                                      U64{ 0x40 } << 42 | U64{ 0x7f } << 49 );
}

} // namespace
