// TcamActionTable: one field of 20, 24 or 32 bits in an array of 24 elements.
#include "support/Contract.h"

#include <Hardware/TcamActionTable.h>

namespace {

using View = Hardware::TcamActionTable;
using Testing::expressionOf;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamActionTable" );
   expected.storageBytes = 8;
   expected.fields = {
      NARROW_FIELD( U32, action, Action, 3, "ACTION" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2,3", "4-8", "10,12-16" }, { { "action", { "0:20", "0:24", "0:32" } } } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3,6,7", "0", 1, 1024, 24, 1, 1, 1 },  { "4,5,8", "0", 1, 2048, 24, 1, 1, 1 },
      { "10,12,14", "0", 2, 2048, 24, 1, 2, 1 }, { "13", "0", 2, 2048, 24, 1, 1, 1 },
      { "15,16", "0", 2, 1024, 24, 1, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3", "0", 0x1810000, 1, 1024, { { 0, 53 } } },
      { "4,5", "0", 0x1a100000, 1, 2048, { { 0, 63 } } },
      { "6,7", "0", 0x1a100000, 1, 1024, { { 0, 63 } } },
      { "8", "0", 0x1a100000, 1, 2048, { { 0, 70 } } },
      { "10,12", "0", 0x1100000, 1, 2048, { { 4, 6 }, { 6, 6 } } },
      { "13", "0", 0x1100000, 1, 2048, { { 28, 12 } } },
      { "14", "0", 0x1100000, 1, 2048, { { 16, 36 }, { 18, 36 } } },
      { "15,16", "0", 0x1100000, 1, 1024, { { 0, 19 } } },
   };
   return expected;
}

CONTRACT_TESTS( TcamActionTable, expectation() )

TEST( TcamActionTable, BoundFollowsTheWidthOfTheChip ) {
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { two.actionIs( 0x100000 ); } ), "action <= 0xfffff" );
   EXPECT_EQ( two.action(), 0u );
   two.actionIs( 0xfffff );
   EXPECT_EQ( two.action(), 0xfffffu );

   View::WithStorage four( Hardware::BCM88375_A0, 0 );
   four.actionIs( 0x100000 );
   EXPECT_EQ( four.action(), 0x100000u );
   four.actionIs( 0xffffff );
   EXPECT_EQ( four.action(), 0xffffffu );
   EXPECT_EQ( expressionOf( [&] { four.actionIs( 0x1000000 ); } ), "action <= 0xffffff" );
   EXPECT_EQ( four.action(), 0xffffffu );

   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   ten.actionIs( 0xffffffff );
   EXPECT_EQ( ten.action(), 0xffffffffu );
}

} // namespace
