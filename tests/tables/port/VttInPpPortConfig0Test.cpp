// VttInPpPortConfig0: three fields of a port that touch each other without a gap.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/IvectTable.h>
#include <Hardware/LifProfileAttributes.h>
#include <Hardware/VttInPpPortConfig0.h>

#include <algorithm>

namespace {

using View = Hardware::VttInPpPortConfig0;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::hasNoAddress;

constexpr Hardware::ChipType twoInstances[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                                Hardware::BCM88850_A0 };
constexpr Hardware::ChipType oneInstance[] = { Hardware::BCM88800_A0, Hardware::BCM88480_A0,
                                               Hardware::BCM88480_B0 };

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

TEST( VttInPpPortConfig0, FieldsTouchWithoutAGap ) {
   for( const auto chip : twoInstances ) {
      View::WithStorage view( chip, 0 );
      expectTiling<View>(
         view, { &View::mappedPpPortMask, &View::portKeyGenVarMask, &View::defaultPortLifMask }, 0,
         61 );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x1fffffffffffffffu );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 1 ), 0u );
   }
   for( const auto chip : oneInstance ) {
      View::WithStorage view( chip, 0 );
      expectTiling<View>(
         view, { &View::mappedPpPortMask, &View::portKeyGenVarMask, &View::defaultPortLifMask }, 0,
         62 );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 0 ), 0x3fffffffffffffffu );
      EXPECT_EQ( View::allFieldsMask( chip, 0 ).word( 1 ), 0u );
   }
}

// A wider port number moves the other two fields up and leaves their widths alone.
TEST( VttInPpPortConfig0, PortNumberPushesTheOthersOneBitUp ) {
   const View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   const View::WithStorage fifteen( Hardware::BCM88480_A0, 0 );
   EXPECT_EQ( ten.mappedPpPortLen(), 9 );
   EXPECT_EQ( fifteen.mappedPpPortLen(), 10 );
   EXPECT_EQ( ten.portKeyGenVarOffset(), 9 );
   EXPECT_EQ( fifteen.portKeyGenVarOffset(), 10 );
   EXPECT_EQ( ten.defaultPortLifOffset(), 41 );
   EXPECT_EQ( fifteen.defaultPortLifOffset(), 42 );
   EXPECT_EQ( ten.portKeyGenVarLen(), 32 );
   EXPECT_EQ( fifteen.portKeyGenVarLen(), 32 );
   EXPECT_EQ( ten.defaultPortLifLen(), 20 );
   EXPECT_EQ( fifteen.defaultPortLifLen(), 20 );
}

TEST( VttInPpPortConfig0, PortNumbersAreAsManyAsAllInstancesHaveEntries ) {
   for( const auto chip : twoInstances ) {
      View::WithStorage view( chip, 0 );
      EXPECT_EQ( view.entries() * view.instanceCount(), 512u );
      view.mappedPpPortIs( 511 );
      EXPECT_EQ( expressionOf( [&] { view.mappedPpPortIs( 0x200 ); } ), "mappedPpPort <= 0x1ff" );
      EXPECT_EQ( view.mappedPpPort(), 511 );
   }
   for( const auto chip : oneInstance ) {
      View::WithStorage view( chip, 0 );
      EXPECT_EQ( view.entries() * view.instanceCount(), 1024u );
      view.mappedPpPortIs( 0x200 );
      EXPECT_EQ( view.mappedPpPort(), 0x200 );
      view.mappedPpPortIs( 1023 );
      EXPECT_EQ( expressionOf( [&] { view.mappedPpPortIs( 0x400 ); } ), "mappedPpPort <= 0x3ff" );
      EXPECT_EQ( view.mappedPpPort(), 1023 );
   }
}

TEST( VttInPpPortConfig0, KeyVariableTakesEveryValueAcrossTheFirstTwoWords ) {
   for( const U32 value : { 0u, 1u, 0x80000000u, 0xdeadbeefu, 0xffffffffu } ) {
      View::WithStorage ten( Hardware::BCM88690_B0, 0 );
      ten.portKeyGenVarIs( value );
      EXPECT_EQ( ten.portKeyGenVar(), value );
      EXPECT_EQ( ten.getAllFields(), ( Raw128{ { U64{ value } << 9, 0 } } ) );
      View::WithStorage thirteen( Hardware::BCM88800_A0, 0 );
      thirteen.portKeyGenVarIs( value );
      EXPECT_EQ( thirteen.portKeyGenVar(), value );
      EXPECT_EQ( thirteen.getAllFields(), ( Raw128{ { U64{ value } << 10, 0 } } ) );
   }
   // It touches bytes 1 to 5 and leaves byte 0 and byte 6 alone.
   U8 buffer[12] = {};
   View( Hardware::BCM88690_B0, buffer, 12, false, 0 ).portKeyGenVarMask();
   const U8 ten[7] = { 0, 0xfe, 0xff, 0xff, 0xff, 0x01, 0 };
   EXPECT_TRUE( std::equal( ten, ten + 7, buffer ) );
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0 } );
   View( Hardware::BCM88800_A0, buffer, 12, false, 0 ).portKeyGenVarMask();
   const U8 thirteen[7] = { 0, 0xfc, 0xff, 0xff, 0xff, 0x03, 0 };
   EXPECT_TRUE( std::equal( thirteen, thirteen + 7, buffer ) );
}

TEST( VttInPpPortConfig0, DefaultLifBoundAndLengths ) {
   U8 buffer[12] = {};
   const auto length = [&]( Hardware::ChipType chip, U16 len, auto read ) {
      const View view( chip, buffer, len, false, 0 );
      return expressionOf( [&] { read( view ); } );
   };
   for( const auto chip : { Hardware::BCM88690_B0, Hardware::BCM88800_A0 } ) {
      View::WithStorage view( chip, 0 );
      view.defaultPortLifIs( 0xfffff );
      EXPECT_EQ( expressionOf( [&] { view.defaultPortLifIs( 0x100000 ); } ),
                 "defaultPortLif <= 0xfffff" );
      EXPECT_EQ( view.defaultPortLif(), 0xfffffu );
      EXPECT_EQ( length( chip, 7, []( const View& one ) { one.defaultPortLif(); } ), "len_ >= 8" );
      EXPECT_EQ( length( chip, 8, []( const View& one ) { one.defaultPortLif(); } ), "none" );
      EXPECT_EQ( length( chip, 5, []( const View& one ) { one.portKeyGenVar(); } ), "len_ >= 6" );
      EXPECT_EQ( length( chip, 6, []( const View& one ) { one.portKeyGenVar(); } ), "none" );
      EXPECT_EQ( length( chip, 11, []( const View& one ) { one.getAllFields(); } ), "len_ >= 12" );
   }
}

TEST( VttInPpPortConfig0, LastEntries ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 255 ), ( Address{ 0x7600ff, 0, 10 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 255 ), ( Address{ 0x7600ff, 2, 26 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88480_A0, 0, 0, 1023 ),
              ( Address{ 0x7603ff, 24, 12 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88850_A0, 0, 1, 256 ); } ),
              "tableEntry < 256" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88480_B0, 0, 0, 1024 ); } ),
              "tableEntry < 1024" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88480_B0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88690_B0, 1 ) );
}

TEST( VttInPpPortConfig0, LiesInTheBlockOfIvectTableAndOfLifProfileAttributes ) {
   const auto expectSameBlocks = []( Hardware::ChipType chip ) {
      using Hardware::IvectTable;
      using Hardware::LifProfileAttributes;
      ASSERT_EQ( View::instanceCount( chip, 0 ), IvectTable::instanceCount( chip, 0 ) );
      ASSERT_EQ( View::instanceCount( chip, 0 ), LifProfileAttributes::instanceCount( chip, 0 ) );
      for( unsigned identifier = 0; identifier < View::instanceCount( chip, 0 ); ++identifier ) {
         const auto block = blockOf<View>( chip, 0, identifier );
         EXPECT_EQ( block, blockOf<IvectTable>( chip, 0, identifier ) ) << chip;
         EXPECT_EQ( block, blockOf<LifProfileAttributes>( chip, 0, identifier ) ) << chip;
      }
   };
   for( const auto chip : twoInstances ) {
      expectSameBlocks( chip );
   }
   for( const auto chip : oneInstance ) {
      expectSameBlocks( chip );
   }
}

} // namespace
