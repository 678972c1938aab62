// IvectTable: numbers of VLAN edit command profiles, one an entry or eight.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/EvecMappingTable.h>
#include <Hardware/IsemMgmtReq.h>
#include <Hardware/IvecTable.h>
#include <Hardware/IvectTable.h>
#include <Hardware/LifProfileAttributes.h>
#include <Hardware/LifTable.h>
#include <Hardware/VttInPpPortConfig0.h>

namespace {

using View = Hardware::IvectTable;
using Testing::Address;
using Testing::addressOf;
using Testing::blockOf;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

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

constexpr Hardware::ChipType earlyChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                              Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                              Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                              Hardware::BCM88680_A0 };
constexpr Hardware::ChipType lateChips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                             Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                             Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( IvectTable, SlotsFillTheLowSevenBytes ) {
   for( const auto chipType : lateChips ) {
      for( const U8 variant : { U8{ 0 }, U8{ 1 } } ) {
         View::WithStorage view( chipType, variant );
         expectTiling<View>( view,
                             { &View::ivec0Mask, &View::ivec1Mask, &View::ivec2Mask,
                               &View::ivec3Mask, &View::ivec4Mask, &View::ivec5Mask,
                               &View::ivec6Mask, &View::ivec7Mask },
                             0, 56 );
      }
   }
}

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

TEST( IvectTable, OneSlotLeavesItsNeighbours ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   view.ivec3Is( 0x7f );
   EXPECT_EQ( view.getAllFields(), 0x0fe00000u );
   EXPECT_EQ( view.ivec2(), 0 );
   EXPECT_EQ( view.ivec4(), 0 );
   std::fill( view.buf(), view.buf() + 8, U8{ 0xff } );
   view.ivec3Is( 0 );
   EXPECT_EQ( view.getAllFields(), 0x00fffffff01fffffu );
   EXPECT_EQ( view.ivec2(), 0x7f );
   EXPECT_EQ( view.ivec4(), 0x7f );
   EXPECT_EQ( view.buf()[7], 0xff );
}

TEST( IvectTable, FourthSlotStraddlesTheWords ) {
   View::WithStorage view( Hardware::BCM88480_A0, 1 );
   view.ivec4Mask();
   EXPECT_EQ( view.buf()[3], 0xf0 ); // bits 28 to 31
   EXPECT_EQ( view.buf()[4], 0x07 ); // bits 32 to 34
   EXPECT_EQ( view.getAllFields(), 0x7f0000000u );
   view.ivec4Is( 0x55 );
   EXPECT_EQ( view.ivec4(), 0x55 );
   EXPECT_EQ( view.getAllFields(), 0x550000000u );
}

TEST( IvectTable, WholeEntryHoldsTheSlotsAlone ) {
   U8 buffer[8];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   for( const auto chipType : earlyChips ) {
      EXPECT_EQ( View( chipType, buffer, 8, false, 0 ).getAllFields(), 0x3fu );
      EXPECT_EQ( View::allFieldsMask( chipType, 0 ).word( 0 ), 0x3fu );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( View( chipType, buffer, 8, false, 1 ).getAllFields(), 0xffffffffffffffu );
      EXPECT_EQ( View::allFieldsMask( chipType, 1 ).word( 0 ), 0xffffffffffffffu );
   }
}

TEST( IvectTable, EntryOfOneWordServesTheFieldButNotTheWholeEntry ) {
   U8 buffer[4] = {};
   for( const auto chipType : earlyChips ) {
      View view( chipType, buffer, 4, false, 0 );
      view.ivecIs( 0x2a );
      EXPECT_EQ( view.ivec(), 0x2a );
      EXPECT_EQ( view.width(), 1 );
      EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 8" );
      EXPECT_EQ( View::WithStorage( chipType, 0 ).len(), 8 );
   }
}

TEST( IvectTable, BoundsAndLengthTests ) {
   U8 buffer[7] = {};
   const auto two = [&]( U16 len ) { return View( Hardware::BCM88650_B0, buffer, len, false, 0 ); };
   const auto ten = [&]( U16 len ) { return View( Hardware::BCM88690_B0, buffer, len, false, 0 ); };
   EXPECT_EQ( expressionOf( [&] { two( 0 ).ivec(); } ), "len_ >= 1" );
   EXPECT_EQ( expressionOf( [&] { two( 1 ).ivecIs( 0x3f ); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { two( 1 ).ivecIs( 0x40 ); } ), "ivec <= 0x3f" );
   EXPECT_EQ( expressionOf( [&] { ten( 0 ).ivec0(); } ), "len_ >= 1" );
   EXPECT_EQ( expressionOf( [&] { ten( 1 ).ivec0Is( 0x7f ); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { ten( 1 ).ivec0Is( 0x80 ); } ), "ivec0 <= 0x7f" );
   EXPECT_EQ( expressionOf( [&] { ten( 6 ).ivec7(); } ), "len_ >= 7" );
   EXPECT_EQ( expressionOf( [&] { ten( 7 ).ivec7Is( 0x7f ); } ), "none" );
   EXPECT_EQ( expressionOf( [&] { ten( 7 ).ivec7Is( 0x80 ); } ), "ivec7 <= 0x7f" );
}

TEST( IvectTable, NoChipHasBothFormats ) {
   View::WithStorage ten( Hardware::BCM88690_B0, 1 );
   EXPECT_EQ( expressionOf( [&] { ten.ivec(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { ten.ivecIs( 0 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { ten.ivecMask(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { ten.ivecOffset(); } ), "0" );
   EXPECT_FALSE( ten.isIvecValid() );
   EXPECT_FALSE( ten.isFieldValid( 217 ) );
   const auto ivecLen = failureOf( [&] { ten.ivecLen(); } );
   ASSERT_TRUE( ivecLen );
   EXPECT_EQ( ivecLen->message, "BCM88690_B0 does not have field IVEC" );

   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( expressionOf( [&] { two.ivec0(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { two.ivec0Is( 0 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { two.ivec0Mask(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { two.ivec0Offset(); } ), "0" );
   EXPECT_FALSE( two.isIvec0Valid() );
   EXPECT_FALSE( two.isFieldValid( 218 ) );
   const auto ivec0Len = failureOf( [&] { two.ivec0Len(); } );
   ASSERT_TRUE( ivec0Len );
   EXPECT_EQ( ivec0Len->message, "BCM88650_B0 does not have field IVEC_0" );
}

TEST( IvectTable, VariantOutOfRange ) {
   EXPECT_EQ( expressionOf( [] { View::entries( 2, 1 ); } ), "variant == 0" );
   EXPECT_EQ( expressionOf( [] { View::entries( 10, 2 ); } ), "0" );
   Testing::Probe<View> view( Hardware::BCM88650_B0, nullptr, 0, false, 0 );
   view.pairIs( 2, 1 );
   EXPECT_EQ( expressionOf( [&] { view.ivec(); } ), "variant_ == 0" );
   view.pairIs( 10, 2 );
   EXPECT_EQ( expressionOf( [&] { view.ivec0(); } ), "0" );
   const auto failure = failureOf( [] { View::WithStorage two( Hardware::BCM88650_B0, 1 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->message,
              "chipType: BCM88650_B0 variant: 1 not in metainfo for IvectTable!" );
}

TEST( IvectTable, DiscriminatorAsksForTheChipAlone ) {
   for( const auto chipType : earlyChips ) {
      EXPECT_TRUE( View::isIvectTable( chipType, nullptr, 0, 1 ) );
      EXPECT_FALSE( View::chipTypeVariantValid( chipType, 1 ) );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_TRUE( View::isIvectTable( chipType, nullptr, 0, 9 ) );
      EXPECT_FALSE( View::chipTypeVariantValid( chipType, 2 ) );
   }
   const U8 zeros[8] = {};
   for( const unsigned chipType : { 0u, 1u, 9u, 11u, 17u, 20u, 21u, 255u } ) {
      EXPECT_FALSE( View::isIvectTable( static_cast<Hardware::ChipType>( chipType ), zeros, 8, 0 ) )
         << chipType;
   }
}

TEST( IvectTable, SlotsReachEveryProfile ) {
   using Profiles = Hardware::IvecTable;
   for( const auto chipType : earlyChips ) {
      View::WithStorage view( chipType, 0 );
      EXPECT_EQ( expressionOf( [&] { addressOf<Profiles>( chipType, 0, 0, 63 ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view.ivecIs( 63 ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { addressOf<Profiles>( chipType, 0, 0, 64 ); } ),
                 "tableEntry < 64" );
      EXPECT_EQ( expressionOf( [&] { view.ivecIs( 64 ); } ), "ivec <= 0x3f" );
      EXPECT_EQ( View::entries( chipType, 0 ), 256u );
   }
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      EXPECT_EQ( expressionOf( [&] { addressOf<Profiles>( chipType, 0, 0, 127 ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { view.ivec5Is( 127 ); } ), "none" );
      EXPECT_EQ( expressionOf( [&] { addressOf<Profiles>( chipType, 0, 0, 128 ); } ),
                 "tableEntry < 128" );
      EXPECT_EQ( expressionOf( [&] { view.ivec5Is( 128 ); } ), "ivec5 <= 0x7f" );
      // As many selections as on the egress side.
      EXPECT_EQ( 8 * View::entries( chipType, 0 ), 4096u );
      EXPECT_EQ( Hardware::EvecMappingTable::entries( chipType, 0 ), 4096u );
   }
}

TEST( IvectTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88800_A0, 1, 0, 511 ), ( Address{ 0x7c01ff, 8, 10 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 1, 0, 512 ); } ),
              "tableEntry < 512" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 0, 1, 255 ), ( Address{ 0x4300ff, 0, 63 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88680_A0, 0, 0, 256 ); } ),
              "tableEntry < 256" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88470_A0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   // The second block of chip types 10 and 12 differs by variant.
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 0 ), ( Address{ 0x7f0000, 0, 10 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 1, 1, 0 ), ( Address{ 0x7c0000, 22, 9 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 1, 1, 0 ), ( Address{ 0x7c0000, 4, 26 } ) );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88650_B0, 1 ) );
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88690_B0, 2 ) );
}

TEST( IvectTable, SharesItsBlocksWithItsNeighbours ) {
   for( const auto chipType : { Hardware::BCM88650_B0, Hardware::BCM88660_A0 } ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ),
                 blockOf<Hardware::IsemMgmtReq>( chipType, 0, 0 ) );
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ), blockOf<Hardware::LifTable>( chipType, 1, 0 ) );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ),
                 blockOf<Hardware::VttInPpPortConfig0>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_EQ( blockOf<View>( chipType, 0, 0 ),
                 blockOf<Hardware::LifProfileAttributes>( chipType, 0, 0 ) )
         << chipType;
      EXPECT_NE( blockOf<View>( chipType, 1, 0 ), blockOf<View>( chipType, 0, 0 ) ) << chipType;
   }
   for( const auto chipType :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88850_A0 } ) {
      EXPECT_EQ( blockOf<View>( chipType, 0, 1 ),
                 blockOf<Hardware::VttInPpPortConfig0>( chipType, 0, 1 ) )
         << chipType;
      EXPECT_EQ( blockOf<View>( chipType, 0, 1 ),
                 blockOf<Hardware::LifProfileAttributes>( chipType, 0, 1 ) )
         << chipType;
   }
}

} // namespace
