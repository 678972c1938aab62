// LifProfileAttributes: one field of two bits in 256 entries, on some chip types in two instances.
#include "support/Addresses.h"
#include "support/Contract.h"

#include <Hardware/LifProfileAttributes.h>
#include <Hardware/Registry.h>

namespace {

using View = Hardware::LifProfileAttributes;
using Testing::Address;
using Testing::expressionOf;
using Testing::failureOf;

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

constexpr unsigned chipTypes[] = { 10, 12, 13, 14, 15, 16 };

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

Address addressOf( unsigned chipType, unsigned identifier, U32 tableEntry ) {
   return Testing::addressOf<View>( chip( chipType ), 0, identifier, tableEntry );
}

TEST( LifProfileAttributes, IdentifierChoosesTheInstanceAlone ) {
   EXPECT_EQ( addressOf( 10, 0, 255 ), ( Address{ 0x8200ff, 18, 2 } ) );
   EXPECT_EQ( addressOf( 10, 1, 255 ), ( Address{ 0x8200ff, 0, 10 } ) );
   EXPECT_EQ( addressOf( 12, 1, 0 ), ( Address{ 0x820000, 0, 10 } ) );
   EXPECT_EQ( addressOf( 14, 0, 3 ), ( Address{ 0x820003, 2, 14 } ) );
   EXPECT_EQ( addressOf( 14, 1, 3 ), ( Address{ 0x820003, 2, 26 } ) );
   EXPECT_EQ( addressOf( 13, 0, 255 ), ( Address{ 0x8200ff, 6, 10 } ) );
   EXPECT_EQ( addressOf( 16, 0, 255 ), ( Address{ 0x8200ff, 24, 12 } ) );
}

TEST( LifProfileAttributes, RefusesTheSecondInstanceWhereThereIsOne ) {
   for( const unsigned chipType : { 13u, 15u, 16u } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 1, 255 ); } ), "identifier <= 0" );
   }
   for( const unsigned chipType : { 10u, 12u, 14u } ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 2, 255 ); } ), "identifier <= 1" );
   }
}

TEST( LifProfileAttributes, HasEntriesOfEightBitsOfProfile ) {
   for( const unsigned chipType : chipTypes ) {
      EXPECT_EQ( expressionOf( [&] { addressOf( chipType, 0, 256 ); } ), "tableEntry < 256" );
      U32 address = 0;
      U8 accessType = 0;
      U8 destBlock = 0;
      EXPECT_EQ( expressionOf( [&] {
                    View::getSchanAddress( chipType, 0, address, accessType, destBlock, 0, 255, 1 );
                 } ),
                 "arrayIndex == 0" );
   }
}

TEST( LifProfileAttributes, OneByteServesTheFieldButNotTheWholeEntry ) {
   for( const unsigned chipType : chipTypes ) {
      U8 buffer[1] = { 0xf6 };
      View view( chip( chipType ), buffer, sizeof buffer, false, 0 );
      EXPECT_EQ( view.daNotFoundDestinationProfile(), 2 );
      view.daNotFoundDestinationProfileIs( 1 );
      EXPECT_EQ( buffer[0], 0xf5 );
      view.daNotFoundDestinationProfileMask();
      EXPECT_EQ( buffer[0], 0xf7 );
      EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 4" );
      View none( chip( chipType ), buffer, 0, false, 0 );
      EXPECT_EQ( expressionOf( [&] { none.daNotFoundDestinationProfile(); } ), "len_ >= 1" );
   }
}

TEST( LifProfileAttributes, ValueIsCutToItsArgumentBeforeTheBound ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   const std::string bound = "daNotFoundDestinationProfile <= 0x3";
   EXPECT_EQ( expressionOf( [&] { view.daNotFoundDestinationProfileIs( 4 ); } ), bound );
   EXPECT_EQ( expressionOf( [&] { view.setField64( 52, 4 ); } ), bound );
   EXPECT_EQ( expressionOf( [&] { view.setField64( 52, 0x104 ); } ), bound );
   EXPECT_EQ( view.daNotFoundDestinationProfile(), 0 );
   view.setField64( 52, 0x103 );
   EXPECT_EQ( view.daNotFoundDestinationProfile(), 3 );
   view.stringFieldIs( "daNotFoundDestinationProfile", 0x102 );
   EXPECT_EQ( view.daNotFoundDestinationProfile(), 2 );
}

TEST( LifProfileAttributes, MasksAllButItsTwoBits ) {
   for( const unsigned chipType : chipTypes ) {
      U8 buffer[4] = { 0xff, 0xff, 0xff, 0xff };
      EXPECT_EQ( View( chip( chipType ), buffer, 4, false, 0 ).getAllFields(), 3u );
      const Raw4096 mask = View::allFieldsMask( chipType, 0 );
      EXPECT_EQ( mask.word( 0 ), 3u );
      EXPECT_EQ( mask.word( 1 ), 0u );
   }
}

template<class Class>
concept Discriminated = requires {
   Class::isLifProfileAttributes( Hardware::BCM88690_B0, nullptr, U16{}, U8{} );
};

TEST( LifProfileAttributes, HasNoTag ) {
   static_assert( !Discriminated<View> );
   for( const unsigned chipType : chipTypes ) {
      for( const bool existingEntry : { false, true } ) {
         U8 buffer[4] = { 0x5a, 0xff, 0x00, 0xa5 };
         View view( chip( chipType ), buffer, sizeof buffer, existingEntry, 0 );
         EXPECT_EQ( buffer[0], 0x5a );
         EXPECT_EQ( buffer[1], 0xff );
         EXPECT_EQ( buffer[2], 0x00 );
         EXPECT_EQ( buffer[3], 0xa5 );
      }
   }
}

TEST( LifProfileAttributes, RefusesTheOlderChips ) {
   for( const unsigned chipType : { 2u, 8u, 21u } ) {
      EXPECT_FALSE( View::chipTypeVariantValid( chip( chipType ), 0 ) );
      const auto failure = failureOf( [&] { View::WithStorage view( chip( chipType ), 0 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
      EXPECT_EQ( expressionOf( [&] { View::entries( chipType, 0 ); } ), "0" );
   }
   EXPECT_EQ( expressionOf( [] { View::entries( 10, 1 ); } ), "variant == 0" );
}

TEST( LifProfileAttributes, FromTheRegistry ) {
   const auto view = Hardware::stringObj( "LifProfileAttributes", Hardware::BCM88850_A0, 0 );
   EXPECT_EQ( view->width(), 1 );
   EXPECT_EQ( view->entries(), 256u );
   EXPECT_EQ( view->instanceCount(), 2 );
   EXPECT_EQ( view->tableVariantCount( 14, 0 ), 1u );
   EXPECT_EQ( view->len(), 4 );
}

} // namespace
