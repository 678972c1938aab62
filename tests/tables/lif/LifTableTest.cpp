// LifTable: 83 fields in 114 formats, overlapping readings, a hole at variant 5, tags, Software.
#include "support/Chips.h"
#include "support/Contract.h"
#include "tables/lif/LifTableRows.h"

#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

#include <algorithm>

namespace {

using View = Hardware::LifTable;
using Testing::expressionOf;
using Testing::Image;

Testing::Expectation stated() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "LifTable" );
   expected.storageBytes = 80;
   expected.fields = Testing::lifTableFields();
   expected.layout = Testing::rowsOf( Testing::lifTableLayouts() );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   // clang-format off
   expected.metadata = {
      { "2,3",         "0",  4,  16384,      4, 16, 1, 6 },
      { "2,3",         "1",  4,  16384,      4, 17, 1, 6 },
      { "2,3",         "2",  4,  16384,      4, 18, 1, 6 },
      { "2,3",         "3",  4,  16384,      4, 24, 1, 6 },
      { "2,3",         "4",  4,  16384,      4, 26, 1, 6 },
      { "2",           "6",  4,  16384,      4, 16, 1, 6 },
      { "3",           "6",  4,  16384,      4, 18, 1, 6 },
      { "4,5,8",       "0",  4,  16384,      8, 17, 1, 7 },
      { "4,5,8",       "1",  4,  16384,      8, 18, 1, 7 },
      { "4,5,8",       "2",  4,  16384,      8, 20, 1, 7 },
      { "4,5,8",       "3",  4,  16384,      8, 22, 1, 7 },
      { "4,5,8",       "4",  4,  16384,      8, 24, 1, 7 },
      { "4,5,8",       "5",  4,  16384,      8,  4, 1, 7 },
      { "4,5,8",       "6",  4,  16384,      8, 21, 1, 7 },
      { "6,7",         "0",  4,  32768,      2, 17, 1, 7 },
      { "6,7",         "1",  4,  32768,      2, 18, 1, 7 },
      { "6,7",         "2",  4,  32768,      2, 20, 1, 7 },
      { "6,7",         "3",  4,  32768,      2, 22, 1, 7 },
      { "6,7",         "4",  4,  32768,      2, 25, 1, 7 },
      { "6,7",         "5",  4,  32768,      2,  4, 1, 7 },
      { "6,7",         "6",  4,  32768,      2, 21, 1, 7 },
      { "10,12-16",    "0",  20, 4294967295, 1, 23, 1, 11 },
      { "10,12-16",    "1",  20, 4294967295, 1, 20, 1, 11 },
      { "10,12-16",    "2",  20, 4294967295, 1, 23, 1, 11 },
      { "10,12-16",    "3",  20, 4294967295, 1, 22, 1, 11 },
      { "10,13,15,16", "4",  20, 4294967295, 1, 18, 1, 11 },
      { "12,14",       "4",  20, 4294967295, 1, 19, 1, 11 },
      { "10,12-16",    "6",  20, 4294967295, 1, 18, 1, 11 },
      { "10,12-16",    "7",  20, 4294967295, 1, 11, 1, 11 },
      { "10,12-16",    "8",  20, 4294967295, 1,  6, 1, 11 },
      { "10,13,15,16", "9",  20, 4294967295, 1, 15, 1, 11 },
      { "12,14",       "9",  20, 4294967295, 1, 13, 1, 11 },
      { "10,12-16",    "10", 20, 4294967295, 1, 17, 1, 11 },
      { "10,12-16",    "11", 20, 4294967295, 1, 20, 1, 11 },
      { "21",          "0",  6,  1,          1, 22, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock }; none for Software
   expected.addresses = {
      { "2,3",   "0-4,6",      0x1070000, 1, 16384, { {  0, 52 } } },
      { "4,5",   "0-6",        0x2000000, 1, 16384, { {  0, 64 } } },
      { "6,7",   "0-6",        0x680000,  1, 32768, { {  0, 58 } } },
      { "8",     "0-6",        0x2000000, 1, 16384, { {  0, 71 } } },
      { "10,12", "0-4,6-11",   0x0,       1, 0,     { { 10,  1 } } },
      { "13",    "0-4,6-11",   0x0,       1, 0,     { {  4,  5 } } },
      { "14",    "0-4,6-11",   0x0,       1, 0,     { { 28, 12 } } },
      { "15,16", "0-4,6-11",   0x0,       1, 0,     { { 16, 15 } } },
   };
   expected.tags = {
      { "10,12-16", "0,2", { { "resultType", 58 } } },
      { "10,12-16", "1",   { { "resultType",  2 } } },
      { "10,12-16", "3",   { { "resultType", 37 } } },
      { "10,12-16", "4",   { { "resultType", 33 } } },
      { "10,12-16", "6",   { { "resultType", 47 } } },
      { "10,12-16", "7",   { { "resultType", 40 } } },
      { "10,12-16", "8",   { { "resultType", 42 } } },
      { "10,12-16", "9",   { { "resultType", 49 } } },
      { "10,12-16", "10",  { { "resultType", 48 } } },
      { "10,12-16", "11",  { { "resultType", 52 } } },
   };
   // clang-format on
   expected.discriminator = View::isLifTable;
   return expected;
}

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( LifTable, expectation() )

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

View::WithStorage entryOf( unsigned chipType, unsigned variant ) {
   return View::WithStorage( chip( chipType ), static_cast<U8>( variant ) );
}

bool pairValid( unsigned chipType, unsigned variant ) {
   return View::chipTypeVariantValid( chip( chipType ), static_cast<U8>( variant ) );
}

std::string where( unsigned chipType, unsigned variant ) {
   return "(" + std::to_string( chipType ) + ", " + std::to_string( variant ) + ")";
}

Image imageOf( const View& view ) { return Image( view.buf(), view.buf() + view.len() ); }

// The first bytes of the entry; the rest must be zero.
Image headOf( const View& view, std::size_t size ) {
   EXPECT_TRUE( std::all_of( view.buf() + size, view.buf() + view.len(),
                             []( U8 byte ) { return byte == 0; } ) );
   return Image( view.buf(), view.buf() + size );
}

Image onesAt( unsigned size, unsigned offset, unsigned width ) {
   Image image( size, 0 );
   Testing::bitsAtAre( image, offset, width, Testing::lowOnes( width ) );
   return image;
}

TEST( LifTable, TheVariantCountIsNotTheHighestVariantPlusOne ) {
   struct Loop {
      unsigned chipType;
      unsigned count;
      unsigned holes;  // below the count
      unsigned missed; // the last valid variant
   };
   const auto view = entryOf( 10, 0 );
   for( const Loop& loop : { Loop{ 2, 6, 1, 6 }, Loop{ 3, 6, 1, 6 }, Loop{ 10, 11, 1, 11 },
                             Loop{ 14, 11, 1, 11 }, Loop{ 16, 11, 1, 11 } } ) {
      EXPECT_EQ( view.tableVariantCount( loop.chipType, 0 ), loop.count );
      EXPECT_EQ( view.tableVariantCount( loop.chipType, static_cast<U8>( loop.missed ) ),
                 loop.count );
      unsigned holes = 0;
      for( unsigned variant = 0; variant < loop.count; ++variant ) {
         holes += !pairValid( loop.chipType, variant );
      }
      EXPECT_EQ( holes, loop.holes );
      EXPECT_TRUE( pairValid( loop.chipType, loop.missed ) );
      EXPECT_FALSE( pairValid( loop.chipType, loop.missed + 1 ) );
   }
   EXPECT_EQ( view.tableVariantCount( 4, 5 ), 7u );
   EXPECT_EQ( view.tableVariantCount( 21, 0 ), 1u );
}

TEST( LifTable, MplsVcLabelIsTheLowPartOfOutLifOrLabel ) {
   auto view = entryOf( 4, 2 );
   view.outLifOrLabelIs( 0xa12345 );
   EXPECT_EQ( view.mplsVcLabel(), 0x12345u );
   EXPECT_EQ( view.mplsPushProfile(), 0xa );
   view.mplsVcLabelIs( 0x6789a );
   EXPECT_EQ( view.outLifOrLabel(), 0xa6789au );
   view.mplsPushProfileIs( 0x5 );
   EXPECT_EQ( view.outLifOrLabel(), 0x56789au );
   EXPECT_EQ( view.mplsVcLabel(), 0x6789au );
   view.eeiIsLabelIs( 1 );
   EXPECT_EQ( view.eeiOrOutLifType(), 1 );
   EXPECT_EQ( view.outLifOrLabel(), 0x56789au );

   // On chip types 2 and 3 the label and the profile are twins of two fields.
   auto two = entryOf( 2, 2 );
   two.mplsVcLabelIs( 0x6789a );
   two.mplsPushProfileIs( 0x5 );
   EXPECT_EQ( two.eeiOrOutLif(), 0x6789au );
   EXPECT_EQ( two.eeiOrOutLifIdentifier(), 0x5 );
   EXPECT_FALSE( two.isOutLifOrLabelValid() );
}

TEST( LifTable, StampsTheTwoBytesOfItsTag ) {
   struct Stamp {
      unsigned variant;
      U8 byte21;
      U8 byte22;
      U8 resultType;
   };
   const std::vector<Stamp> stamps{
      { 0, 0x80, 0x0e, 0x3a },  { 1, 0x80, 0x00, 0x02 },  { 2, 0x80, 0x0e, 0x3a },
      { 3, 0x40, 0x09, 0x25 },  { 4, 0x40, 0x08, 0x21 },  { 6, 0xc0, 0x0b, 0x2f },
      { 7, 0x00, 0x0a, 0x28 },  { 8, 0x80, 0x0a, 0x2a },  { 9, 0x40, 0x0c, 0x31 },
      { 10, 0x00, 0x0c, 0x30 }, { 11, 0x00, 0x0d, 0x34 },
   };
   for( const unsigned chipType : Testing::newerChips ) {
      for( const Stamp& stamp : stamps ) {
         const auto variant = static_cast<U8>( stamp.variant );
         U8 zeros[80] = {};
         View fresh( chip( chipType ), zeros, sizeof zeros, false, variant );
         Image right( 80, 0 );
         right[21] = stamp.byte21;
         right[22] = stamp.byte22;
         EXPECT_EQ( imageOf( fresh ), right ) << where( chipType, stamp.variant );
         EXPECT_EQ( fresh.resultType(), stamp.resultType );
         EXPECT_EQ( fresh.resultTypeOffset(), 174 );
         EXPECT_EQ( fresh.resultTypeLen(), 6 );

         // Every other bit of the buffer stays as it is, in the least buffer too.
         Image ones( 23, 0xff );
         View full( chip( chipType ), ones.data(), 23, false, variant );
         EXPECT_EQ( ones[21], 0x3f | stamp.byte21 );
         EXPECT_EQ( ones[22], 0xf0 | stamp.byte22 );
         EXPECT_TRUE( std::all_of( ones.begin(), ones.begin() + 21,
                                   []( U8 byte ) { return byte == 0xff; } ) );
         EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), zeros, 22, false, variant ); } ),
                    "len_ >= 23" );
         EXPECT_EQ(
            expressionOf( [&] { View( chip( chipType ), zeros, sizeof zeros, true, variant ); } ),
            "none" );
      }
   }
}

TEST( LifTable, VariantsZeroAndTwoAreOneFormat ) {
   std::mt19937 random( 5 );
   for( const unsigned chipType : Testing::newerChips ) {
      Image image = Testing::randomImage( 80, random );
      View zero( chip( chipType ), image.data(), 80, false, 0 );
      View two( chip( chipType ), image.data(), 80, true, 2 );
      unsigned count = 0;
      for( const auto& field : expectation().fields ) {
         ASSERT_EQ( field.valid( zero ), field.valid( two ) ) << chipType << " " << field.name;
         if( field.valid( zero ) ) {
            EXPECT_EQ( field.get( zero ), field.get( two ) ) << chipType << " " << field.name;
            ++count;
         }
      }
      EXPECT_EQ( count, 23u );
      EXPECT_TRUE( View::isLifTable( chip( chipType ), image.data(), 80, 0 ) );
      EXPECT_TRUE( View::isLifTable( chip( chipType ), image.data(), 80, 2 ) );
   }
}

TEST( LifTable, MdbEntryIsThe180BitsOfTheEntry ) {
   for( const unsigned chipType : { 10u, 12u, 13u, 14u, 15u, 16u, 21u } ) {
      auto view = entryOf( chipType, 0 );
      EXPECT_EQ( view.mdbEntryOffset(), 0 );
      EXPECT_EQ( view.mdbEntryLen(), 180 );
      view.mdbEntryMask();
      EXPECT_EQ( headOf( view, 23 ), onesAt( 23, 0, 180 ) );
      EXPECT_EQ( view.resultType(), 0x3f );
      // What lies above bit 179 of the value is dropped.
      Raw256 value{};
      value.wordIs( 0, 0x0123456789abcdef );
      value.wordIs( 1, 0x1122334455667788 );
      value.wordIs( 2, 0xfff000000000000e | U64{ 0x21 } << 46 );
      value.wordIs( 3, ~U64{ 0 } );
      view.mdbEntryIs( value );
      EXPECT_EQ( view.stringField( "mdbEntry", 0 ), 0x0123456789abcdefu );
      EXPECT_EQ( view.stringField( "mdbEntry", 1 ), 0x1122334455667788u );
      EXPECT_EQ( view.stringField( "mdbEntry", 2 ), 0x0008'4000'0000'000eu );
      EXPECT_EQ( view.stringField( "mdbEntry", 3 ), 0u );
      EXPECT_EQ( view.mdbEntry().word( 2 ), 0x0008'4000'0000'000eu );
      EXPECT_EQ( view.mdbEntry().word( 3 ), 0u );
      EXPECT_EQ( view.resultType(), 0x21 );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 243, 0 ); } ), "false" );
      EXPECT_EQ( expressionOf( [&] { view.stringFieldIs( "mdbEntry", 0 ); } ), "false" );
   }
   // The tag of a fresh entry is in the third word.
   EXPECT_EQ( entryOf( 10, 0 ).stringField( "mdbEntry", 2 ), U64{ 58 } << 46 );
   EXPECT_EQ( entryOf( 21, 0 ).stringField( "mdbEntry", 2 ), 0u );
}

TEST( LifTable, VariantElevenIsVariantThreeWithoutGenericData ) {
   for( const unsigned chipType : Testing::newerChips ) {
      const auto three = entryOf( chipType, 3 );
      const auto eleven = entryOf( chipType, 11 );
      for( const auto& field : expectation().fields ) {
         const bool generic = field.name == "lifGenericData0" || field.name == "lifGenericData1";
         EXPECT_EQ( field.valid( eleven ), field.valid( three ) && !generic ) << field.name;
         if( field.valid( eleven ) ) {
            EXPECT_EQ( field.offset( eleven ), field.offset( three ) ) << field.name;
            EXPECT_EQ( field.len( eleven ), field.len( three ) ) << field.name;
         }
      }
      EXPECT_EQ( three.resultType(), 37 );
      EXPECT_EQ( eleven.resultType(), 52 );
   }
}

TEST( LifTable, SoftwareHasNoAddress ) {
   U32 address = 7;
   U8 accessType = 8;
   U8 destBlock = 9;
   const auto ask = [&]( U8 variant ) {
      return View::getSchanAddress( 21, variant, address, accessType, destBlock, 0, 0, 0 );
   };
   EXPECT_EQ( expressionOf( [&] { ask( 0 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] {
                 entryOf( 21, 0 ).getSchanAddress( address, accessType, destBlock, 0, 0, 0 );
              } ),
              "0" );
   EXPECT_FALSE( ask( 1 ) );
   EXPECT_FALSE( ask( 5 ) );
   EXPECT_EQ( address, 7u );
   EXPECT_EQ( accessType, 8 );
   EXPECT_EQ( destBlock, 9 );
}

TEST( LifTable, ComposesAnEntryThroughTheRegistry ) {
   const auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
   view->stringFieldIs( "vsi", 0x1234 );
   view->stringFieldIs( "qosProfile", 0x5a );
   view->setField64( 236, 0xbeef ); // lifGenericData0
   view->setField64( 355, 0xabc );  // vlanEditVid1
   view->stringFieldIs( "eei", 0x123456 );
   view->stringFieldIs( "destination", 0x10f0f1 );
   view->stringFieldIs( "globInLif", 9 );
   const Image right{ 0x68, 0x24, 0xb4, 0x00, 0x00, 0x00, 0xbc, 0xfb, 0x02, 0x00, 0x00, 0x00,
                      0x5e, 0x05, 0x00, 0xc0, 0x8a, 0x46, 0x22, 0x1e, 0x1e, 0xa6, 0x0e };
   EXPECT_EQ( Image( view->buf(), view->buf() + 23 ), right );
   Image read = right;
   EXPECT_TRUE( View::isLifTable( Hardware::BCM88690_B0, read.data(), 23, 2 ) );
   const View existing( Hardware::BCM88690_B0, read.data(), 23, true, 2 );
   EXPECT_EQ( existing.vlanEditVid1(), 0xabc );
   EXPECT_EQ( existing.destination(), 0x10f0f1u );
   EXPECT_EQ( existing.learnEnable(), 0 );
   EXPECT_EQ( read, right );
}

} // namespace
