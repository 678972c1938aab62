// TcamActionTable: one field of 20, 24 or 32 bits in an array of 24 elements.
#include "support/Contract.h"

#include <Hardware/Registry.h>
#include <Hardware/TcamActionTable.h>

namespace {

using View = Hardware::TcamActionTable;
using Testing::expressionOf;
using Testing::failureOf;

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

struct Address {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   bool operator==( const Address& ) const = default;
};

Address addressOf( U32 chipType, U16 identifier, U32 tableEntry, U16 arrayIndex ) {
   Address found;
   EXPECT_TRUE( View::getSchanAddress( chipType, 0, found.address, found.accessType,
                                       found.destBlock, identifier, tableEntry, arrayIndex ) );
   return found;
}

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

TEST( TcamActionTable, ShortBufferServesLengthAndOffsetAlone ) {
   U8 buffer[2] = { 0xff, 0xff };
   View view( Hardware::BCM88650_B0, buffer, sizeof buffer, false, 0 );
   EXPECT_EQ( expressionOf( [&] { view.action(); } ), "len_ >= 3" );
   EXPECT_EQ( view.actionOffset(), 0 );
   EXPECT_EQ( view.actionLen(), 20 );

   U8 three[3] = { 0x11, 0x22, 0x33 };
   EXPECT_EQ( View( Hardware::BCM88650_B0, three, sizeof three, false, 0 ).action(), 0x32211u );
   EXPECT_EQ( View( Hardware::BCM88680_A0, three, sizeof three, false, 0 ).action(), 0x332211u );
   EXPECT_EQ( expressionOf(
                 [&] { View( Hardware::BCM88480_B0, three, sizeof three, false, 0 ).action(); } ),
              "len_ >= 4" );
}

TEST( TcamActionTable, UnknownChipHasNoField ) {
   struct Probe : View::WithStorage {
      using View::WithStorage::WithStorage;
      void chipTypeIs( U8 chipType ) { chipType_ = chipType; }
   };
   Probe view( Hardware::BCM88650_B0, 0 );
   EXPECT_TRUE( view.isActionValid() );
   view.chipTypeIs( 9 );
   EXPECT_FALSE( view.isActionValid() );
   EXPECT_EQ( expressionOf( [&] { view.action(); } ), "0" );
   const auto failure = failureOf( [&] { view.actionLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "ChipType(9) does not have field ACTION" );
   EXPECT_EQ( failure->function, "U16 Hardware::TcamActionTable::actionLen() const" );
}

TEST( TcamActionTable, AllOnesEntryIsMasked ) {
   U8 buffer[8];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   EXPECT_EQ( View( Hardware::BCM88650_B0, buffer, 8, false, 0 ).getAllFields(), 0xfffffu );
   EXPECT_EQ( View( Hardware::BCM88375_B0, buffer, 8, false, 0 ).getAllFields(), 0xffffffu );
   EXPECT_EQ( View( Hardware::BCM88690_B0, buffer, 8, false, 0 ).getAllFields(), 0xffffffffu );
   // A buffer of the entry's own width is too short for the class-wide size.
   EXPECT_EQ(
      expressionOf( [&] { View( Hardware::BCM88650_B0, buffer, 4, false, 0 ).getAllFields(); } ),
      "len_ >= 8" );
}

TEST( TcamActionTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf( 10, 1, 5, 2 ), ( Address{ 0x1101005, 6, 6 } ) );
   EXPECT_EQ( addressOf( 2, 0, 1023, 23 ), ( Address{ 0x1815fff, 0, 53 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf( 2, 0, 1024, 0 ); } ), "tableEntry < 1024" );
   EXPECT_EQ( expressionOf( [] { addressOf( 2, 0, 0, 24 ); } ), "arrayIndex < 24" );
   EXPECT_EQ( expressionOf( [] { addressOf( 10, 2, 0, 0 ); } ), "identifier <= 1" );
}

TEST( TcamActionTable, WritesTheAddressBeforeItRefusesTheIdentifier ) {
   U32 address = 7;
   U8 accessType = 8;
   U8 destBlock = 9;
   const auto ask = [&]( U8 variant, U16 identifier ) {
      return View::getSchanAddress( 2, variant, address, accessType, destBlock, identifier, 3, 1 );
   };
   EXPECT_FALSE( ask( 1, 0 ) );
   EXPECT_EQ( address, 7u );
   EXPECT_EQ( accessType, 8 );
   EXPECT_EQ( destBlock, 9 );
   EXPECT_EQ( expressionOf( [&] { ask( 0, 1 ); } ), "identifier <= 0" );
   EXPECT_EQ( address, 0x1810000u + 1024 + 3 );
   EXPECT_EQ( accessType, 8 );
   EXPECT_EQ( destBlock, 9 );
}

TEST( TcamActionTable, AnswersToOneIdentifierAlone ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_TRUE( view.isFieldValid( 3 ) );
   EXPECT_FALSE( view.isFieldValid( 0 ) );
   EXPECT_FALSE( view.isFieldValid( 46 ) );
   EXPECT_EQ( expressionOf( [&] { view.fieldWidth( 4 ); } ), "false" );
}

TEST( TcamActionTable, ByNameIgnoresTheIndexAndCutsTheValue ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   view.stringFieldIs( "action", 0x1ffffffff );
   EXPECT_EQ( view.action(), 0xffffffffu );
   EXPECT_EQ( view.stringField( "action", 7 ), 0xffffffffu );
}

TEST( TcamActionTable, RefusesOtherChips ) {
   for( const unsigned chipType : { 9u, 21u } ) {
      const auto failure = failureOf(
         [&] { View::WithStorage view( static_cast<Hardware::ChipType>( chipType ), 0 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
      EXPECT_EQ( failure->function,
                 "Hardware::TcamActionTable::TcamActionTable(Hardware::ChipType, "
                 "U8*, U16, bool, U8)" );
      EXPECT_EQ( failure->message, std::string( "chipType: " ) +
                                      ( chipType == 9 ? "ChipType(9)" : "Software" ) +
                                      " variant: 0 not in metainfo for TcamActionTable!" );
   }
}

TEST( TcamActionTable, FromTheRegistry ) {
   const auto view = Hardware::stringObj( "TcamActionTable", Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( view->width(), 1 );
   EXPECT_EQ( view->entries(), 1024u );
   EXPECT_EQ( view->len(), 8 );
   EXPECT_TRUE( std::all_of( view->buf(), view->buf() + 8, []( U8 byte ) { return byte == 0; } ) );
}

} // namespace
