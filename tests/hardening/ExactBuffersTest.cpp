// Every accessor on buffers that end with the field or soon after it: nothing after a buffer's end
// is touched, and one byte too few is refused. The address sanitizer reports a slip.
#include "support/Assertions.h"
#include "support/Classes.h"
#include "support/EveryClass.h"

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Testing::Bits;
using Testing::bitsAt;
using Testing::bitsAtAre;
using Testing::ClassAccessors;
using Testing::everyClass;
using Testing::expressionOf;
using Testing::FieldAccessors;
using Testing::Image;

// A buffer on the heap of exactly this many bytes.
class Buffer {
public:
   explicit Buffer( const Image& image, std::size_t size ) : bytes_( new U8[size] ), size_( size ) {
      std::copy_n( image.begin(), size, bytes_.get() );
   }

   U8* data() { return bytes_.get(); }
   U16 size() const { return static_cast<U16>( size_ ); }
   Image image() const { return Image( bytes_.get(), bytes_.get() + size_ ); }

private:
   std::unique_ptr<U8[]> bytes_;
   std::size_t size_;
};

U64 wordOf( const Bits& bits, unsigned index ) {
   return ( bits >> 64 * index & Testing::lowOnes( 64 ) ).to_ullong();
}

// One field of a view and its place on the view's pair.
class Walk {
public:
   Walk( const ClassAccessors& of, Kelvar::AsicBase& view, const FieldAccessors& field )
      : class_( of ), view_( view ), field_( field ),
        offset_( view.fieldOffset( field.identifier ) ),
        width_( view.fieldWidth( field.identifier ) ) {}

   // The bytes up to the field's end.
   unsigned bytes() const { return ( offset_ + width_ + 7 ) / 8; }

   void expectReads( const Image& image, std::size_t size ) {
      const Bits expected = bitsAt( image, offset_, width_ );
      on( image, size, [&] {
         EXPECT_EQ( field_.get( view_ ), expected );
         for( unsigned word = 0; 64 * word < field_.valueBits; ++word ) {
            EXPECT_EQ( view_.stringField( field_.name, static_cast<U16>( word ) ),
                       wordOf( expected, word ) );
         }
      } );
   }

   void expectWrites( const Image& image, std::size_t size, const Bits& value ) {
      if( field_.readOnly() ) {
         return;
      }
      expectWrite( image, size, value, [&] { field_.set( view_, value ); } );
      expectWrite( image, size, Testing::lowOnes( width_ ), [&] { field_.mask( view_ ); } );
      if( !field_.wide() ) {
         const U64 number = wordOf( value, 0 );
         expectWrite( image, size, value, [&] { view_.setField64( field_.identifier, number ); } );
         expectWrite( image, size, value, [&] { view_.stringFieldIs( field_.name, number ); } );
      }
   }

   void expectRefusals( const Image& image, std::size_t size ) {
      const std::string expected = "len_ >= " + std::to_string( bytes() );
      const auto refuses = [&]( const auto& action ) {
         const Image after =
            on( image, size, [&] { EXPECT_EQ( expressionOf( action ), expected ); } );
         EXPECT_TRUE( std::equal( after.begin(), after.end(), image.begin() ) );
      };
      refuses( [&] { field_.get( view_ ); } );
      refuses( [&] { view_.stringField( field_.name, 0 ); } );
      if( field_.readOnly() ) {
         return;
      }
      refuses( [&] { field_.set( view_, {} ); } );
      refuses( [&] { field_.mask( view_ ); } );
      if( !field_.wide() ) {
         refuses( [&] { view_.setField64( field_.identifier, 0 ); } );
         refuses( [&] { view_.stringFieldIs( field_.name, 0 ); } );
      }
   }

private:
   // Runs `action` with the view over the first `size` bytes of the image; what it leaves there.
   template<class Action>
   Image on( const Image& image, std::size_t size, const Action& action ) {
      Buffer buffer( image, size );
      class_.bufferIs( view_, buffer.data(), buffer.size() );
      action();
      class_.bufferIs( view_, nullptr, 0 );
      return buffer.image();
   }

   template<class Action>
   void expectWrite( const Image& image, std::size_t size, const Bits& value,
                     const Action& action ) {
      Image expected( image.begin(), image.begin() + static_cast<std::ptrdiff_t>( size ) );
      bitsAtAre( expected, offset_, width_, value );
      EXPECT_EQ( on( image, size, action ), expected );
   }

   const ClassAccessors& class_;
   Kelvar::AsicBase& view_;
   const FieldAccessors& field_;
   unsigned offset_;
   unsigned width_;
};

// Of a chip type without variants, a few stand for all.
bool worthTrying( const Hardware::PairInfo& info, unsigned variant ) {
   return info.hasVariants || variant == 0 || variant == 31 || variant == 255;
}

class ExactBuffers : public testing::TestWithParam<std::size_t> {};

TEST_P( ExactBuffers, AreEnoughAndOneByteLessIsRefused ) {
   const ClassAccessors& of = everyClass()[GetParam()];
   std::mt19937 random( static_cast<unsigned>( GetParam() ) );
   unsigned walked = 0;
   for( unsigned chipType = 0; chipType < 32; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto info = Hardware::pairInfo( of.name, chipType, static_cast<U8>( variant ) );
         if( !info || !worthTrying( *info, variant ) ) {
            continue;
         }
         const auto view =
            of.viewOf( static_cast<Hardware::ChipType>( chipType ), static_cast<U8>( variant ) );
         for( const FieldAccessors& field : of.fields ) {
            if( !view->isFieldValid( field.identifier ) ) {
               continue;
            }
            Walk walk( of, *view, field );
            SCOPED_TRACE( std::string( of.name ) + " (" + std::to_string( chipType ) + ", " +
                          std::to_string( variant ) + ") " + field.name );
            const unsigned bytes = walk.bytes();
            const Image image = Testing::randomImage( bytes + 8, random );
            const Bits value = Testing::randomBits( view->fieldWidth( field.identifier ), random );
            walk.expectRefusals( image, 0 );
            walk.expectRefusals( image, bytes - 1 );
            // Up to where whole words of the entry can be used.
            for( unsigned size = bytes; size <= bytes + 8; ++size ) {
               walk.expectReads( image, size );
               walk.expectWrites( image, size, value );
            }
            ++walked;
         }
      }
   }
   EXPECT_GE( walked, of.fields.size() );
}

std::string className( const testing::TestParamInfo<std::size_t>& number ) {
   return everyClass()[number.param].name;
}
INSTANTIATE_TEST_SUITE_P( EveryAccessor, ExactBuffers,
                          testing::Range( std::size_t{ 0 }, Testing::classCount ), className );

TEST( ExactBuffers, AreTriedOnEveryField ) {
   ASSERT_EQ( everyClass().size(), Testing::classCount );
   for( const ClassAccessors& of : everyClass() ) {
      EXPECT_EQ( of.fields.size(), Hardware::classFields( of.name ).size() ) << of.name;
   }
}

} // namespace
