// Layouts: their fields, values in images of every pair against a naive bit loop, and messages.
#include "Pairs.h"

#include "support/Bits.h"
#include "support/Chips.h"
#include "support/Traces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <thread>

namespace {

using Testing::allLayouts;
using Testing::errorOf;
using Vorn::Field;
using Vorn::Layout;

Vorn::Value valueOf( const Testing::Bits& bits ) {
   Vorn::Value::Words words{};
   for( unsigned bit = 0; bit < Vorn::Value::maxBits; ++bit ) {
      words[bit / 64] |= U64( bits[bit] ) << bit % 64;
   }
   return Vorn::Value( words );
}

TEST( Layout, IsNamedByNamesOrNumbers ) {
   const Layout lif( "LifTable", "BCM88690_B0", 3 );
   EXPECT_EQ( lif.table(), "LifTable" );
   EXPECT_EQ( lif.chip().name, "BCM88690_B0" );
   EXPECT_EQ( lif.chip().type(), Hardware::BCM88690_B0 );
   EXPECT_EQ( lif.variant(), 3 );
   EXPECT_EQ( lif.pairText(), "LifTable on BCM88690_B0 variant 3" );
   EXPECT_EQ( lif, Layout( "LifTable", "10", 3 ) );
   EXPECT_EQ( lif, Layout( "LifTable", 10, 3 ) );
   EXPECT_EQ( lif, Layout( "LifTable", Hardware::BCM88690_B0, 3 ) );
   EXPECT_NE( lif, Layout( "LifTable", 10 ) );
   EXPECT_NE( Layout( "LifTable", 2 ), Layout( "LifTable", 3 ) );
   EXPECT_NE( Layout( "IvecTable", 10 ), Layout( "IvectTable", 10 ) );
   EXPECT_EQ( Layout( "TcamActionTable", 2 ).pairText(), "TcamActionTable on BCM88650_B0" );
}

TEST( Layout, HasTheFieldsOfItsPair ) {
   const Layout lif( "LifTable", 10 );
   EXPECT_EQ( lif.bytes(), 80u );
   EXPECT_EQ( lif.info().arrayElements, 1u );
   ASSERT_EQ( lif.fields().size(), 23u );
   EXPECT_EQ( lif.field( "vsi" ), ( Field{ "vsi", "VSI", 364, 1, 15, false } ) );
   EXPECT_EQ( lif.field( 364 ), lif.field( "vsi" ) );
   EXPECT_EQ( lif.field( "resultType" ),
              ( Field{ "resultType", "RESULT_TYPE", 296, 174, 6, true } ) );
   EXPECT_TRUE( lif.has( "mdbEntry" ) );
   EXPECT_FALSE( lif.has( "VSI" ) );
   EXPECT_FALSE( lif.has( "" ) );
}

TEST( Layout, KnowsWhichFieldsShareBits ) {
   const Layout lif( "LifTable", 10 );
   EXPECT_EQ( lif.overlapping( "mdbEntry" ).size(), 22u );
   ASSERT_EQ( lif.overlapping( "vsi" ).size(), 1u );
   EXPECT_EQ( lif.overlapping( "vsi" ).front(), lif.field( "mdbEntry" ) );
   EXPECT_TRUE( Layout( "TcamActionTable", 2 ).overlapping( "action" ).empty() );
}

TEST( Layout, BlankImagesAreZeroButForTheTag ) {
   const Layout lif( "LifTable", 10 );
   ASSERT_EQ( lif.tag().size(), 1u );
   EXPECT_EQ( lif.tag().front().field.name, "resultType" );
   for( const Layout& layout : allLayouts() ) {
      auto image = layout.blank();
      ASSERT_EQ( image.size(), layout.bytes() );
      EXPECT_FALSE( layout.wrongTag( image ) );
      const auto view =
         Hardware::stringObj( layout.table(), layout.chip().type(), layout.variant() );
      EXPECT_TRUE( std::equal( image.begin(), image.end(), view->buf() ) ) << layout.pairText();
      for( const Vorn::TagField& tag : layout.tag() ) {
         EXPECT_TRUE( tag.field.readOnly );
         Testing::bitsAtAre( image, tag.field.offset, tag.field.width, {} );
      }
      EXPECT_EQ( image, std::vector<U8>( layout.bytes() ) ) << layout.pairText();
   }
}

// Every field of every pair, in an image that is a whole entry and in one that ends with the field.
TEST( Layout, ReadsAndWritesWhatANaiveLoopDoes ) {
   std::mt19937 random( 17 );
   std::size_t pairs = 0;
   for( const Layout& layout : allLayouts() ) {
      ++pairs;
      for( const Field& field : layout.fields() ) {
         for( const std::size_t size : { layout.bytes(), std::size_t( field.end() + 7 ) / 8 } ) {
            auto image = Testing::randomImage( size, random );
            const auto found = valueOf( Testing::bitsAt( image, field.offset, field.width ) );
            ASSERT_EQ( layout.value( image, field.name ), found ) << layout.pairText();
            if( field.width <= 64 ) {
               ASSERT_EQ( layout.get( image, field.name ), found.word( 0 ) ) << layout.pairText();
            }
            const auto bits = Testing::randomBits( field.width, random );
            auto expected = image;
            Testing::bitsAtAre( expected, field.offset, field.width, bits );
            layout.set( image, field, valueOf( bits ) );
            ASSERT_EQ( image, expected ) << field.name << " of " << layout.pairText();
         }
      }
   }
   EXPECT_EQ( pairs, Testing::pairCount );
}

// A number of any width at any bit of images of any size: the windows of eight bytes at their ends.
TEST( Layout, ReadsAndWritesAtTheEndsOfAnyImage ) {
   std::mt19937 random( 18 );
   const Layout layout( "LifTable", 10 );
   for( std::size_t size = 1; size <= 12; ++size ) {
      for( U32 offset = 0; offset < 8 * size; ++offset ) {
         for( U32 width = 1; width <= 64 && offset + width <= 8 * size; ++width ) {
            const Field field{ "f", "F", 0, offset, width, false };
            auto image = Testing::randomImage( size, random );
            ASSERT_EQ( layout.get( image, field ),
                       valueOf( Testing::bitsAt( image, offset, width ) ).word( 0 ) )
               << size << ' ' << offset << ' ' << width;
            const auto bits = Testing::randomBits( width, random );
            auto expected = image;
            Testing::bitsAtAre( expected, offset, width, bits );
            layout.set( image, field, valueOf( bits ) );
            ASSERT_EQ( image, expected ) << size << ' ' << offset << ' ' << width;
         }
      }
   }
}

// Every field of every pair, in an image that is a whole entry and in one that ends with the last
// field.
TEST( FieldReader, ReadsWhatANaiveLoopDoes ) {
   std::mt19937 random( 19 );
   for( const Layout& layout : allLayouts() ) {
      U32 end = 0;
      for( const Field& field : layout.fields() ) {
         end = std::max( end, field.end() );
      }
      for( const std::size_t size : { layout.bytes(), std::size_t( end + 7 ) / 8 } ) {
         const auto image = Testing::randomImage( size, random );
         for( const Field& field : layout.fields() ) {
            const auto found = valueOf( Testing::bitsAt( image, field.offset, field.width ) );
            const Vorn::FieldReader reader( layout, field );
            ASSERT_EQ( reader.value( image ), found ) << field.name << layout.pairText();
            ASSERT_EQ( reader.get( image ), found.word( 0 ) ) << field.name << layout.pairText();
         }
      }
   }
}

TEST( Layout, SaysWhereEntriesLie ) {
   const Layout lif( "LifTable", 10 );
   EXPECT_EQ( lif.address( { .entry = 4097 } ), ( Vorn::Address{ 0x1001, 10, 1 } ) );
   const Layout action( "TcamActionTable", 10 );
   EXPECT_EQ( action.address( { 5, 2, 1 } ), ( Vorn::Address{ 0x1101005, 6, 6 } ) );
   EXPECT_FALSE( Layout( "LifTable", Hardware::Software ).address( {} ) );
   std::size_t addressed = 0;
   for( const Layout& layout : allLayouts() ) {
      const auto& info = layout.info();
      const Vorn::EntryIndex last{ info.entries - 1, info.arrayElements - 1,
                                   info.instanceCount - 1u };
      const auto address = layout.address( last );
      ASSERT_EQ( address.has_value(), info.hasAddress );
      if( address ) {
         Vorn::Address seen;
         Hardware::stringObj( layout.table(), layout.chip().type(), layout.variant() )
            ->getSchanAddress( seen.schanAddress, seen.accessType, seen.destBlock,
                               static_cast<U16>( last.identifier ), info.entries - 1,
                               static_cast<U16>( last.array ) );
         EXPECT_EQ( *address, seen ) << layout.pairText();
         ++addressed;
      }
   }
   EXPECT_GT( addressed, 400u );
}

TEST( Layout, RefusesWhatDoesNotExist ) {
   const struct {
      const char* table;
      const char* chip;
      U64 variant;
      std::string message;
   } rows[] = {
      { "LifTabel", "10", 0, "unknown table \"LifTabel\"; did you mean LifTable?" },
      { "LifTable", "BCM88690_B1", 0, "unknown chip \"BCM88690_B1\"; did you mean BCM88690_B0?" },
      { "LifTable", "10", 5, "LifTable has no variant 5 on BCM88690_B0; allowed: 0-4,6-11" },
      { "LifTable", "10", 256, "LifTable has no variant 256 on BCM88690_B0; allowed: 0-4,6-11" },
      { "FheiIveSizeReg", "10", 0,
        "FheiIveSizeReg does not exist on BCM88690_B0; allowed: " +
           Testing::chipsListedOf( "FheiIveSizeReg" ) },
   };
   for( const auto& row : rows ) {
      EXPECT_EQ( errorOf( [&] { Layout( row.table, row.chip, row.variant ); } ), row.message );
   }
   EXPECT_TRUE(
      errorOf( [] { Layout( "LifTable", 9 ); } ).starts_with( "unknown chip 9; allowed: " ) );
}

TEST( Layout, RefusesWhatAFieldCannotTakeAndWritesNothing ) {
   const Layout lif( "LifTable", 10 );
   const auto before = lif.blank();
   auto image = before;
   std::vector<U8> tooShort( 1 );
   const std::string pair = "LifTable on BCM88690_B0 variant 0";
   const struct {
      std::string seen;
      std::string expected;
   } rows[] = {
      { errorOf( [&] { lif.set( image, "vsi", 0x8000 ); } ),
        "value 32768 of field vsi is too large; its 15 bits in " + pair + " hold at most 0x7fff" },
      { errorOf( [&] { lif.set( image, "mdbEntry", Vorn::Value::onesOf( 181 ) ); } ),
        "value 0x1fffffffffffffffffffffffffffffffffffffffffffff of field mdbEntry is too large; "
        "its 180 bits in " +
           pair + " hold at most 2^180 - 1" },
      { errorOf( [&] { lif.set( image, "vsi", -1 ); } ),
        "negative value -1; a value is 0 or more" },
      { errorOf( [&] { lif.set( image, "vis", 1 ); } ),
        "no field \"vis\" in " + pair + "; did you mean vsi?" },
      { errorOf( [&] { lif.set( image, "resultType", 1 ); } ),
        "field resultType of " + pair + " is read-only: it holds the entry's tag" },
      { errorOf( [&] { lif.set( tooShort, "vsi", 1 ); } ),
        "the image has 1 bytes; field vsi of " + pair + " needs 2, a whole entry has 80" },
      { errorOf( [&] { lif.get( tooShort, "vsi" ); } ),
        "the image has 1 bytes; field vsi of " + pair + " needs 2, a whole entry has 80" },
      { errorOf( [&] { lif.value( tooShort, "mdbEntry" ); } ),
        "the image has 1 bytes; field mdbEntry of " + pair + " needs 23, a whole entry has 80" },
      { errorOf( [&] { lif.get( image, "mdbEntry" ); } ),
        "field mdbEntry of " + pair + " has 180 bits; a number holds at most 64, a value any" },
      { errorOf( [&] { lif.field( 9999 ); } ), "no field with identifier 9999 in " + pair },
      { errorOf( [&] { lif.requireFields( tooShort ); } ),
        "the image has 1 bytes; the fields of " + pair + " need 23, a whole entry has 80" },
      { errorOf( [&] { Vorn::FieldReader( lif, lif.field( "vsi" ) ).get( tooShort ); } ),
        "the image has 1 bytes; the fields of " + pair + " need 23, a whole entry has 80" },
      { errorOf( [&] { Vorn::FieldReader( lif, lif.field( "mdbEntry" ) ).value( tooShort ); } ),
        "the image has 1 bytes; the fields of " + pair + " need 23, a whole entry has 80" },
      { errorOf( [&] { lif.requireEntry( tooShort ); } ),
        "the image has 1 bytes; an entry of " + pair + " has 80" },
      { errorOf( [&] { lif.address( { .entry = U64( 1 ) << 32 } ); } ).substr( 0, 35 ),
        "entry 4294967296 is out of range in" },
   };
   for( const auto& row : rows ) {
      EXPECT_EQ( row.seen, row.expected );
   }
   EXPECT_EQ( image, before );
   EXPECT_EQ( tooShort, std::vector<U8>( 1 ) );
}

TEST( Layout, SaysWhichVariantAnImageIsOf ) {
   const Layout zero( "LifTable", 10 );
   const auto image = Layout( "LifTable", 10, 3 ).blank();
   EXPECT_EQ( zero.variantOf( image )->variant(), 3 );
   EXPECT_TRUE(
      errorOf( [&] { zero.requireEntry( image ); } ).ends_with( "; did you mean variant 3?" ) );
   EXPECT_FALSE( zero.variantOf( std::vector<U8>( 79 ) ) );
}

TEST( Layout, NeverTraces ) {
   EXPECT_TRUE( Testing::tracesOf( 8, [] {
                   for( const Layout& layout : allLayouts() ) {
                      auto image = layout.blank();
                      for( const Field& field : layout.fields() ) {
                         layout.set( image, field, layout.value( image, field ) );
                      }
                      layout.address( {} );
                      errorOf( [&] { layout.set( image, "noSuchField", 0 ); } );
                   }
                } ).empty() );
}

TEST( Layout, IsSharedBetweenThreads ) {
   const Layout lif( "LifTable", 10 );
   std::vector<std::thread> threads;
   std::vector<U64> seen( 4 );
   for( std::size_t number = 0; number < seen.size(); ++number ) {
      threads.emplace_back( [&lif, &seen, number] {
         const Layout own = lif;
         auto image = own.blank();
         own.set( image, "vsi", number + 100 );
         seen[number] = Layout( "LifTable", "10" ).get( image, "vsi" );
      } );
   }
   for( std::thread& thread : threads ) {
      thread.join();
   }
   EXPECT_EQ( seen, ( std::vector<U64>{ 100, 101, 102, 103 } ) );
}

} // namespace
