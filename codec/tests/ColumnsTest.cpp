// Columns: every field of every pair against a naive bit loop and single images, and messages.
#include <Vorn/Columns.h>

#include "Guarded.h"
#include "Pairs.h"

#include "support/Bits.h"
#include "support/Traces.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <span>

namespace {

using Testing::bitsAt;
using Testing::bitsAtAre;
using Testing::errorOf;
using Testing::Guarded;
using Testing::Image;
using Vorn::Columns;
using Vorn::Field;
using Vorn::Layout;
using Vorn::Overlap;

// A column that ends with its page, of the narrowest elements or wider ones.
struct Column {
   const Field* field;
   std::size_t elementBytes;
   std::size_t elements;
   Guarded bytes;

   Column( const Field& of, std::size_t rows, bool narrowest )
      : field( &of ), elementBytes( !narrowest || of.width > 32 ? 8
                                    : of.width > 16             ? 4
                                    : of.width > 8              ? 2
                                                                : 1 ),
        elements( rows * ( ( of.width + 63 ) / 64 ) ), bytes( elements * elementBytes ) {}

   unsigned bitOfRow( std::size_t row, std::size_t rows ) const {
      return static_cast<unsigned>( 8 * bytes.size() / rows * row );
   }
};

using ColumnList = std::vector<std::unique_ptr<Column>>;

ColumnList columnsOf( const Layout& layout, std::size_t rows, bool narrowest, bool settable ) {
   ColumnList columns;
   for( const Field& field : layout.fields() ) {
      if( !( settable && field.readOnly ) ) {
         columns.push_back( std::make_unique<Column>( field, rows, narrowest ) );
      }
   }
   return columns;
}

Columns over( const Layout& layout, const ColumnList& list ) {
   Columns columns( layout );
   for( const auto& column : list ) {
      columns.add( column->field->name, static_cast<void*>( column->bytes.data() ),
                   column->elements, column->elementBytes );
   }
   return columns;
}

Image imageAt( const Image& images, std::size_t at, std::size_t bytes ) {
   return { images.begin() + static_cast<long>( at ),
            images.begin() + static_cast<long>( at + bytes ) };
}

// Decodes one dump and encodes what came out of it into another, which has other bits in between.
void expectMoves( const Layout& layout, std::size_t rows, std::size_t stride, bool narrowest,
                  std::mt19937& random ) {
   SCOPED_TRACE( layout.pairText() + ", " + std::to_string( rows ) + " rows " +
                 std::to_string( stride ) + " bytes apart" );
   const std::size_t bytes = ( rows - 1 ) * stride + layout.bytes();
   const Image from = Testing::randomImage( bytes, random );
   Guarded dump( bytes );
   std::copy( from.begin(), from.end(), dump.data() );
   const ColumnList all = columnsOf( layout, rows, narrowest, false );
   over( layout, all ).decode( std::span<const U8>( dump.data(), bytes ), stride );
   for( const auto& column : all ) {
      const Image decoded = column->bytes.bytes();
      for( std::size_t row = 0; row < rows; ++row ) {
         const Field& field = *column->field;
         const Testing::Bits expected =
            bitsAt( from, static_cast<unsigned>( 8 * row * stride ) + field.offset, field.width );
         const auto rowBits = static_cast<unsigned>( 8 * decoded.size() / rows );
         ASSERT_EQ( bitsAt( decoded, column->bitOfRow( row, rows ), rowBits ), expected )
            << field.name << " of row " << row;
         if( row == rows - 1 && field.width <= 64 ) {
            ASSERT_EQ( layout.get( imageAt( from, row * stride, layout.bytes() ), field ),
                       expected.to_ullong() );
         }
      }
   }

   const ColumnList settable = columnsOf( layout, rows, narrowest, true );
   const Columns columns = over( layout, settable );
   columns.decode( std::span<const U8>( dump.data(), bytes ), stride );
   Image expected = Testing::randomImage( bytes, random );
   std::copy( expected.begin(), expected.end(), dump.data() );
   for( const auto& column : settable ) {
      for( std::size_t row = 0; row < rows; ++row ) {
         const unsigned at = static_cast<unsigned>( 8 * row * stride ) + column->field->offset;
         bitsAtAre( expected, at, column->field->width, bitsAt( from, at, column->field->width ) );
      }
   }
   columns.encode( std::span<U8>( dump.data(), bytes ), stride, Overlap::laterHolds );
   ASSERT_EQ( dump.bytes(), expected );
}

TEST( Columns, MoveEveryFieldOfEveryPair ) {
   std::mt19937 random( 1 );
   for( const Layout& layout : Testing::allLayouts() ) {
      expectMoves( layout, 41, layout.bytes(), true, random );
      expectMoves( layout, 3, layout.bytes() + 5, false, random );
      if( HasFatalFailure() ) {
         return;
      }
   }
}

TEST( Columns, TakeAnyNumberOfImagesAnyDistanceApart ) {
   std::mt19937 random( 2 );
   for( const Layout& layout : { Layout( "LifTable", 10 ), Layout( "IsemMgmtReq", 10, 3 ),
                                 Layout( "EvecFormatTable", 10 ) } ) {
      for( const std::size_t rows : { 1u, 2u, 8u, 127u, 128u, 129u, 600u } ) {
         for( const std::size_t gap : { 0u, 1u, 48u } ) {
            expectMoves( layout, rows, layout.bytes() + gap, rows % 2 != 0, random );
         }
      }
   }
}

TEST( Columns, TakeMoreThanACacheHolds ) {
   std::mt19937 random( 3 );
   const Layout lif( "LifTable", 10 );
   constexpr std::size_t rows = 200'003;
   const Image from = Testing::randomImage( rows * lif.bytes(), random );
   std::vector<U16> vsis( rows );
   std::vector<U32> destinations( rows );
   Columns columns( lif );
   columns.add( "vsi", vsis );
   columns.add( "destination", destinations );
   columns.decode( from );
   Image to( from.size() );
   columns.encode( to );
   for( std::size_t row = 0; row < rows; row += row < rows - 1000 ? 617 : 1 ) {
      const Image image = imageAt( from, row * lif.bytes(), lif.bytes() );
      ASSERT_EQ( vsis[row], lif.get( image, "vsi" ) ) << row;
      ASSERT_EQ( destinations[row], lif.get( image, "destination" ) ) << row;
      std::vector<U8> expected( lif.bytes() );
      lif.set( expected, "vsi", vsis[row] );
      lif.set( expected, "destination", destinations[row] );
      ASSERT_EQ( imageAt( to, row * lif.bytes(), lif.bytes() ), expected ) << row;
   }
}

TEST( Columns, TakeVectorsSpansAndArrays ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U8> images = lif.blank();
   lif.set( images, "vsi", 2000 );
   lif.set( images, "globInLif", 5 );
   std::vector<U64> vsi( 1 );
   std::array<U8, 1> globInLif{};
   unsigned long long profile[1] = { 7 };
   U8 tag = 0;
   Columns columns( lif );
   columns.add( "vsi", vsi );
   columns.add( "globInLif", globInLif );
   columns.add( "inLifProfile", std::span( profile ) );
   columns.add( "resultType", std::span( &tag, 1 ) );
   Columns moved = std::move( columns );
   moved.decode( images );
   EXPECT_EQ( vsi[0], 2000u );
   EXPECT_EQ( globInLif[0], 5 );
   EXPECT_EQ( profile[0], 0u );
   EXPECT_EQ( tag, 58 );
   EXPECT_EQ( moved.layout(), lif );

   const std::vector<U16> constant = { 11 };
   Columns reading( lif );
   reading.add( "vsi", constant );
   reading.encode( images );
   EXPECT_EQ( lif.get( images, "vsi" ), 11u );
   EXPECT_EQ( lif.get( images, "globInLif" ), 5u );
}

TEST( Columns, TakeTheWordsOfAWideFieldRowByRow ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U8> images( 2 * lif.bytes() );
   for( U8 number = 0; number < 160; ++number ) {
      images[number] = number;
   }
   std::vector<U64> words( 6 );
   Columns columns( lif );
   columns.add( "mdbEntry", words ); // 180 bits from bit 0 on
   columns.decode( images );
   EXPECT_EQ( words,
              ( std::vector<U64>{ 0x0706050403020100, 0x0f0e0d0c0b0a0908, 0x6151413121110,
                                  0x5756555453525150, 0x5f5e5d5c5b5a5958, 0x6656463626160 } ) );
}

constexpr U64 tagWord = U64{ 58 } << 46; // the highest word of mdbEntry, with nothing but the tag

TEST( Columns, LetLaterValuesHoldIfAsked ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U8> image = lif.blank();
   const std::vector<U64> whole = { ~U64{ 0 }, 0, tagWord };
   const std::vector<U16> vsi = { 0x1234 };
   Columns columns( lif );
   columns.add( "vsi", vsi );
   columns.add( "mdbEntry", whole );
   const std::vector<U8> before = image;
   EXPECT_EQ(
      errorOf( [&] { columns.encode( image ); } ),
      "row 0: fields vsi and mdbEntry of LifTable on BCM88690_B0 variant 0 share the bits 1 "
      "to 15, and their values contradict each other there: 0x1234 and 0x7fff" );
   EXPECT_EQ( image, before );
   columns.encode( image, Overlap::laterHolds );
   EXPECT_EQ( lif.get( image, "vsi" ), 0x7fffu );

   Columns reversed( lif );
   reversed.add( "mdbEntry", whole );
   reversed.add( "vsi", vsi );
   reversed.encode( image, Overlap::laterHolds );
   EXPECT_EQ( lif.get( image, "vsi" ), 0x1234u );
   EXPECT_EQ( lif.get( image, "fodoAssignmentMode" ), 1u );
}

TEST( Columns, RefuseWhatContradictsTheTag ) {
   const Layout lif( "LifTable", 10 );
   const std::vector<U64> words = { 0, 0, tagWord, 0, 0, 0 };
   std::vector<U8> images( 160 );
   Columns columns( lif );
   columns.add( "mdbEntry", words );
   EXPECT_EQ(
      errorOf( [&] { columns.encode( images ); } ),
      "row 1: fields resultType and mdbEntry of LifTable on BCM88690_B0 variant 0 share the "
      "bits 174 to 179, and their values contradict each other there: 0x3a and 0x0" );
   EXPECT_EQ( images, std::vector<U8>( 160 ) );
}

TEST( Columns, RefuseColumnsThatDoNotFit ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U8> bytes( 3 );
   std::vector<U16> shorts( 3 );
   std::vector<U32> words( 3 );
   std::vector<U64> longs( 4 );
   Columns columns( lif );
   const auto refused = [&]( const char* name, auto& column ) {
      return errorOf( [&] { columns.add( name, column ); } );
   };
   EXPECT_EQ( refused( "vis", bytes ),
              "no field \"vis\" in LifTable on BCM88690_B0 variant 0; did you mean vsi?" );
   EXPECT_EQ(
      refused( "vsi", bytes ),
      "the column of field vsi, 15 bits in LifTable on BCM88690_B0 variant 0, has elements of "
      "1 byte; allowed: U16, U32, U64" );
   EXPECT_EQ( refused( "destination", shorts ),
              "the column of field destination, 21 bits in LifTable on BCM88690_B0 variant 0, has "
              "elements of 2 bytes; allowed: U32, U64" );
   EXPECT_EQ( refused( "mdbEntry", words ),
              "the column of field mdbEntry, 180 bits in LifTable on BCM88690_B0 variant 0, has "
              "elements of 4 bytes; allowed: U64" );
   EXPECT_EQ( errorOf( [&] { columns.add( "serviceType", bytes.data(), 1, 3 ); } ),
              "the column of field serviceType, 1 bits in LifTable on BCM88690_B0 variant 0, has "
              "elements of 3 bytes; allowed: U8, U16, U32, U64" );
   EXPECT_EQ(
      errorOf( [&] { columns.add( "vsi", reinterpret_cast<U8*>( words.data() ) + 1, 1, 4 ); } ),
      "the column of field vsi is not aligned to its elements of 4 bytes" );
   EXPECT_EQ( refused( "vsi", shorts ), "none" );
   EXPECT_EQ( refused( "vsi", words ), "field vsi has a column already" );

   const std::vector<U8> images( 240 );
   EXPECT_EQ( errorOf( [&] { columns.decode( images ); } ), "none" );
   EXPECT_EQ( refused( "mdbEntry", longs ), "none" );
   EXPECT_EQ( errorOf( [&] { columns.decode( images ); } ),
              "the column of field mdbEntry has 4 elements; 3 images of LifTable on BCM88690_B0 "
              "variant 0 need 9" );
}

TEST( Columns, RefuseImagesThatAreNotWhole ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U16> vsis = { 1, 2 };
   Columns columns( lif );
   columns.add( "vsi", vsis );
   std::vector<U8> images( 161 );
   const auto decoded = [&]( std::size_t bytes, std::size_t stride ) {
      return errorOf(
         [&] { columns.decode( std::span<const U8>( images.data(), bytes ), stride ); } );
   };
   EXPECT_EQ(
      errorOf( [&] { columns.decode( images ); } ),
      "161 bytes are no whole number of images; an entry of LifTable on BCM88690_B0 variant 0 "
      "has 80" );
   EXPECT_EQ(
      decoded( 160, 100 ),
      "160 bytes are no whole number of images; an entry of LifTable on BCM88690_B0 variant 0 "
      "has 80, and they begin 100 apart" );
   EXPECT_EQ( decoded( 160, 79 ),
              "images that begin 79 bytes apart overlap; an entry of LifTable on "
              "BCM88690_B0 variant 0 has 80" );
   EXPECT_EQ( decoded( 80, 80 ), "the column of field vsi has 2 elements; 1 image of LifTable on "
                                 "BCM88690_B0 variant 0 need 1" );
   EXPECT_EQ( decoded( 161, 81 ), "none" );
   images.resize( 162 );
   vsis = { 1, 2 };
   EXPECT_EQ( decoded( 162, 81 ), "none" );
   EXPECT_EQ( vsis, ( std::vector<U16>{ 0, 0 } ) );
}

TEST( Columns, WriteNothingWhereTheyRefuse ) {
   const Layout lif( "LifTable", 10 );
   std::vector<U16> vsis( 100, 3 );
   std::vector<U8> profiles( 100, 4 );
   std::vector<U8> images( 8000, 0x5a );
   const std::vector<U8> before = images;
   Columns columns( lif );
   columns.add( "inLifProfile", profiles );
   columns.add( "vsi", vsis );
   vsis[99] = 0x8000;
   EXPECT_EQ(
      errorOf( [&] { columns.encode( images ); } ),
      "row 99: value 32768 of field vsi is too large; its 15 bits in LifTable on BCM88690_B0 "
      "variant 0 hold at most 0x7fff" );
   EXPECT_EQ( images, before );

   vsis[99] = 3;
   std::vector<U8> tags( 100 );
   columns.add( "resultType", tags );
   EXPECT_EQ( errorOf( [&] { columns.encode( images ); } ),
              "field resultType of LifTable on BCM88690_B0 variant 0 is read-only: it holds the "
              "entry's tag" );
   EXPECT_EQ( images, before );

   const std::vector<U16> constant( 100, 9 );
   std::vector<U8> first( 100, 1 );
   Columns reading( lif );
   reading.add( "inLifProfile", first );
   reading.add( "vsi", constant );
   EXPECT_EQ( errorOf( [&] { reading.decode( images ); } ),
              "the column of field vsi is constant, and can't be decoded into" );
   EXPECT_EQ( first, std::vector<U8>( 100, 1 ) );
}

TEST( Columns, NeverTrace ) {
   EXPECT_TRUE( Testing::tracesOf( 8, [] {
                   std::vector<U8> image( 80 );
                   std::vector<U16> vsis( 1 );
                   Columns columns( Layout( "LifTable", 10 ) );
                   columns.add( "vsi", vsis );
                   columns.decode( image );
                   columns.encode( image );
                } ).empty() );
}

} // namespace
