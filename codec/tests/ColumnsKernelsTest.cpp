// The columns' kernels, for every processor: runs of any place and width between images and columns
// to the byte, against a naive bit loop.
#include "../src/ColumnsKernels.h"

#include "Guarded.h"

#include "support/Bits.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Testing::bitOf;
using Testing::Bits;
using Testing::bitsAt;
using Testing::Guarded;
using Testing::Image;
using Vorn::Kernels::Routines;
using Vorn::Kernels::Transfer;

struct Place {
   unsigned offset;
   unsigned width;
   unsigned elementBytes;
   unsigned step;
};

// Images and columns that end with their pages.
class Data {
public:
   Data( std::size_t imageBytes, std::size_t gap, std::size_t rows, std::vector<Place> places,
         std::mt19937& random )
      : places_( std::move( places ) ), stride_( imageBytes + gap ), rows_( rows ),
        images_( rows == 0 ? 0 : ( rows - 1 ) * stride_ + imageBytes ), transfer_( imageBytes ) {
      fill( images_, random );
      for( const Place& place : places_ ) {
         columns_.push_back( std::make_unique<Guarded>( rows * place.step * place.elementBytes ) );
         fill( *columns_.back(), random );
         transfer_.add( place.offset, place.width, columns_.back()->data(), place.elementBytes,
                        place.step );
      }
   }

   void expectDecodes( const Routines& routines, bool large ) {
      std::vector<Image> expected;
      for( std::size_t number = 0; number < places_.size(); ++number ) {
         const Place& place = places_[number];
         Image column = columns_[number]->bytes();
         for( std::size_t row = 0; row < rows_; ++row ) {
            const Image one = image( images_.bytes(), row );
            Testing::bitsAtAre( column, elementBit( place, row ), 8 * place.elementBytes,
                                bitsAt( one, place.offset, place.width ) );
         }
         expected.push_back( column );
      }
      routines.decode( transfer_, { images_.data(), stride_, rows_ }, large );
      for( std::size_t number = 0; number < places_.size(); ++number ) {
         EXPECT_EQ( columns_[number]->bytes(), expected[number] ) << text( places_[number] );
      }
   }

   // Of values that contradict each other the later ones hold.
   void expectEncodes( const Routines& routines, bool large ) {
      Image expected = images_.bytes();
      for( std::size_t number = 0; number < places_.size(); ++number ) {
         const Place& place = places_[number];
         const Image column = columns_[number]->bytes();
         for( std::size_t row = 0; row < rows_; ++row ) {
            const auto at = static_cast<unsigned>( 8 * row * stride_ );
            Testing::bitsAtAre( expected, at + place.offset, place.width,
                                bitsAt( column, elementBit( place, row ), place.width ) );
         }
      }
      routines.encode( transfer_, { images_.data(), stride_, rows_ }, large );
      EXPECT_EQ( images_.bytes(), expected );
   }

   // Values fit until one has a bit too many.
   void expectFits( const Routines& routines, std::mt19937& random ) {
      for( std::size_t number = 0; number < places_.size(); ++number ) {
         const Place& place = places_[number];
         for( std::size_t row = 0; row < rows_; ++row ) {
            U64 value = 0;
            std::memcpy( &value, element( number, row ), place.elementBytes );
            value &= ~U64{ 0 } >> ( 64 - place.width );
            std::memcpy( element( number, row ), &value, place.elementBytes );
         }
      }
      EXPECT_TRUE( routines.fit( transfer_, rows_ ) );
      for( std::size_t number = 0; number < places_.size() && rows_ != 0; ++number ) {
         const Place& place = places_[number];
         const unsigned free = 8 * place.elementBytes - place.width;
         if( free != 0 ) {
            const unsigned bit = place.width + static_cast<unsigned>( random() ) % free;
            U8* const at = element( number, random() % rows_ );
            at[bit / 8] = static_cast<U8>( at[bit / 8] ^ 1u << bit % 8 );
            EXPECT_FALSE( routines.fit( transfer_, rows_ ) ) << text( place );
            at[bit / 8] = static_cast<U8>( at[bit / 8] ^ 1u << bit % 8 );
         }
      }
   }

private:
   static void fill( Guarded& bytes, std::mt19937& random ) {
      const Image image = Testing::randomImage( bytes.size(), random );
      std::copy( image.begin(), image.end(), bytes.data() );
   }
   static unsigned elementBit( const Place& place, std::size_t row ) {
      return static_cast<unsigned>( 8 * row * place.step * place.elementBytes );
   }
   static std::string text( const Place& place ) {
      return std::to_string( place.width ) + " bits at " + std::to_string( place.offset ) + " as " +
             std::to_string( place.elementBytes ) + " bytes";
   }

   Image image( const Image& all, std::size_t row ) const {
      const auto begin = all.begin() + static_cast<long>( row * stride_ );
      return Image( begin, std::min( all.end(), begin + static_cast<long>( stride_ ) ) );
   }
   U8* element( std::size_t number, std::size_t row ) {
      return columns_[number]->data() + elementBit( places_[number], row ) / 8;
   }

   std::vector<Place> places_;
   std::size_t stride_;
   std::size_t rows_;
   Guarded images_;
   std::vector<std::unique_ptr<Guarded>> columns_;
   Transfer transfer_;
};

std::vector<Place> randomPlaces( std::size_t imageBytes, std::mt19937& random ) {
   std::vector<Place> places( 1 + random() % 12 );
   for( Place& place : places ) {
      const auto bits = static_cast<unsigned>( 8 * imageBytes );
      place.width = 1 + static_cast<unsigned>( random() ) % std::min( bits, 64u );
      place.offset = static_cast<unsigned>( random() ) % ( bits - place.width + 1 );
      do {
         place.elementBytes = 1u << random() % 4;
      } while( 8 * place.elementBytes < place.width );
      place.step = place.elementBytes == 8 ? 1 + static_cast<unsigned>( random() ) % 3 : 1;
   }
   return places;
}

class ColumnsKernels : public testing::TestWithParam<bool> {
protected:
   ColumnsKernels() : routines_( GetParam() ? Vorn::Kernels::avx2() : &Vorn::Kernels::baseline ) {}

   void SetUp() override {
      if( routines_ == nullptr ) {
         GTEST_SKIP() << "not for this processor";
      }
   }

   const Routines* routines_;
   std::mt19937 random_{ 1 };
};

TEST_P( ColumnsKernels, AgreeWithANaiveBitLoop ) {
   constexpr std::size_t rowCounts[] = { 0, 1, 7, 8, 9, 31, 33, 255, 256, 257, 300 };
   for( unsigned round = 0; round < 88; ++round ) {
      const std::size_t imageBytes = 4 * ( 1 + random_() % 24 );
      const std::size_t gap = round % 3 == 0 ? random_() % 20 : 0;
      const std::size_t rows = rowCounts[round % std::size( rowCounts )];
      SCOPED_TRACE( std::to_string( rows ) + " images of " + std::to_string( imageBytes ) +
                    " bytes and " + std::to_string( gap ) );
      Data data( imageBytes, gap, rows, randomPlaces( imageBytes, random_ ), random_ );
      data.expectDecodes( *routines_, round % 2 != 0 );
      data.expectEncodes( *routines_, round % 2 != 0 );
      data.expectFits( *routines_, random_ );
   }
}

TEST_P( ColumnsKernels, TakeLargeImages ) {
   for( const std::size_t imageBytes : { 256u, 512u, 1024u } ) {
      std::vector<Place> places;
      for( unsigned offset = 5; offset + 40 <= 8 * imageBytes; offset += 97 ) {
         places.push_back( { offset, 40, 8, 1 } );
      }
      Data data( imageBytes, 0, 67, places, random_ );
      data.expectDecodes( *routines_, false );
      data.expectEncodes( *routines_, true );
   }
}

TEST_P( ColumnsKernels, TakeEveryWidthAtEveryOffset ) {
   for( unsigned width = 1; width <= 64; ++width ) {
      std::vector<Place> places;
      for( unsigned offset = 0; offset < 32; ++offset ) {
         places.push_back( { offset, width,
                             width <= 8    ? 1u
                             : width <= 16 ? 2u
                             : width <= 32 ? 4u
                                           : 8u,
                             1 } );
      }
      Data data( 12, 0, 40, places, random_ );
      data.expectDecodes( *routines_, width % 2 != 0 );
      data.expectEncodes( *routines_, false );
   }
}

INSTANTIATE_TEST_SUITE_P(, ColumnsKernels, testing::Bool(),
                         []( const auto& with ) { return with.param ? "Avx2" : "Baseline"; } );

} // namespace
