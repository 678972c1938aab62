// The inline primitives, as constant places get them, against the naive loop and the exported ones.
#include "NaiveBits.h"

#include <Assertions.h>
#include <Kelvar/BitBuf.h>

#include <gtest/gtest.h>

#include <array>
#include <type_traits>
#include <utility>

namespace {

using Testing::Bytes;
using Testing::bytesFor;
using Testing::ExactBuffer;
using Testing::GuardedBuffer;
using Testing::randomBytes;

constexpr int maxWidth = 64;
constexpr int offsetCount = 72;
constexpr int maxLength = 24;

// The smallest type that holds a field, as an accessor has it.
// clang-format off
template<int Width>
using Value = std::conditional_t<( Width <= 8 ), U8,
              std::conditional_t<( Width <= 16 ), U16,
              std::conditional_t<( Width <= 32 ), U32, U64>>>;
// clang-format on

// One place's getter and setter with everything but buffer and length constant.
struct Accessors {
   void ( *get )( const U8* src, int srcLen, U8* value );
   void ( *set )( U8* dst, int dstLen, const U8* value );
   int width;
   int offset;
   int valueLen;
};

template<class Type, int Width, int Offset>
struct Place {
   static void get( const U8* src, int srcLen, U8* value ) {
      getBuf( src, srcLen, value, sizeof( Type ), Width, Offset );
   }
   static void set( U8* dst, int dstLen, const U8* value ) {
      setBuf( dst, dstLen, value, sizeof( Type ), Width, Offset );
   }
   static constexpr Accessors accessors{ &get, &set, Width, Offset, sizeof( Type ) };
};

// Each place costs the compiler some milliseconds. So not all of them: those that start or end near
// a boundary of 32 bits, and an eighth of the rest.
constexpr bool isChosen( int width, int offset ) {
   const int end = ( width + offset ) % 32;
   return offset % 32 == 0 || end == 31 || end <= 1 || ( 3 * width + offset ) % 8 == 0;
}

template<int Width, int Offset>
constexpr Accessors chosenAccessors() {
   if constexpr( isChosen( Width, Offset ) ) {
      return Place<Value<Width>, Width, Offset>::accessors;
   } else {
      return {};
   }
}

template<int Width, int... Offset>
constexpr std::array<Accessors, offsetCount> ofWidth( std::integer_sequence<int, Offset...> ) {
   return { chosenAccessors<Width, Offset>()... };
}

template<int... Index>
constexpr std::array<std::array<Accessors, offsetCount>, maxWidth>
ofEveryWidth( std::integer_sequence<int, Index...> ) {
   return { ofWidth<Index + 1>( std::make_integer_sequence<int, offsetCount>() )... };
}

constexpr auto everyWidth = ofEveryWidth( std::make_integer_sequence<int, maxWidth>() );

template<class Action>
void forChosenPlaces( Action action ) {
   for( const auto& places : everyWidth ) {
      for( const Accessors& place : places ) {
         if( place.get != nullptr ) {
            ASSERT_NO_FATAL_FAILURE( action( place ) );
         }
      }
   }
}

// The same image and value for all three paths; `length` bytes of the image are passed.
testing::AssertionResult agrees( const Accessors& place, const Bytes& image, const Bytes& value ) {
   const int length = static_cast<int>( image.size() );
   const auto failure = [&]( const char* what ) {
      return testing::AssertionFailure() << what << " at width " << place.width << " offset "
                                         << place.offset << " length " << length;
   };
   Bytes valueAfterGet = value;
   Testing::naiveCopy( image, place.offset, valueAfterGet, 0, place.width );
   Bytes imageAfterSet = image;
   Testing::naiveCopy( value, 0, imageAfterSet, place.offset, place.width );

   ExactBuffer source( image );
   ExactBuffer read( value );
   place.get( source.bytes(), length, read.bytes() );
   if( !read.holds( valueAfterGet ) || !source.holds( image ) ) {
      return failure( "inline getBuf differs" );
   }
   ExactBuffer destination( image );
   ExactBuffer written( value );
   place.set( destination.bytes(), length, written.bytes() );
   if( !destination.holds( imageAfterSet ) || !written.holds( value ) ) {
      return failure( "inline setBuf differs" );
   }
   GuardedBuffer guarded( image, place.offset % 8 );
   place.set( guarded.bytes(), length, written.bytes() );
   if( !guarded.holds( imageAfterSet ) ) {
      return failure( "inline setBuf between guards differs" );
   }

   Bytes generalValue = value;
   Kelvar::getBufGeneral( image.data(), length, generalValue.data(), place.valueLen, place.width,
                          place.offset );
   Bytes generalImage = image;
   Kelvar::setBufGeneral( generalImage.data(), length, value.data(), place.valueLen, place.width,
                          place.offset );
   if( generalValue != valueAfterGet || generalImage != imageAfterSet ) {
      return failure( "exported primitives differ" );
   }
   return testing::AssertionSuccess();
}

TEST( BitBufInline, EveryWidthInEveryLength ) {
   int count = 0;
   forChosenPlaces( [&]( const Accessors& place ) {
      ++count;
      for( int length = bytesFor( place.offset + place.width ); length <= maxLength; ++length ) {
         ASSERT_TRUE( agrees( place, randomBytes( length ), randomBytes( place.valueLen ) ) );
      }
   } );
   EXPECT_GT( count, 1000 );
}

// Types wider than the field, and value lengths that no integer has.
TEST( BitBufInline, OtherValueLengths ) {
   constexpr Accessors places[] = {
      Place<U64, 1, 0>::accessors,         Place<U64, 20, 50>::accessors,
      Place<U32, 8, 60>::accessors,        Place<U8[3], 17, 55>::accessors,
      Place<U8[3], 24, 8>::accessors,      Place<U8[5], 33, 31>::accessors,
      Place<U8[6], 48, 20>::accessors,     Place<U8[7], 56, 40>::accessors,
      Place<Raw128, 64, 0>::accessors,     Place<Raw128, 33, 33>::accessors,
      Place<Raw512, 1, 127>::accessors,    Place<Raw128, 65, 3>::accessors,
      Place<Raw128, 128, 0>::accessors,    Place<Raw128, 128, 11>::accessors,
      Place<Raw256, 164, 3>::accessors,    Place<Raw512, 328, 4>::accessors,
      Place<Raw4096, 4096, 77>::accessors, Place<Raw1024, 640, 0>::accessors,
      Place<Raw128, 65, 0>::accessors,     Place<Raw128, 65, 63>::accessors,
      Place<Raw128, 66, 63>::accessors,    Place<Raw128, 127, 1>::accessors,
      Place<Raw128, 128, 64>::accessors,   Place<Raw128, 128, 26>::accessors,
      Place<Raw128, 80, 9>::accessors,     Place<Raw128, 84, 9>::accessors,
      Place<Raw128, 120, 0>::accessors,    Place<Raw256, 137, 9>::accessors,
      Place<Raw256, 180, 0>::accessors,    Place<Raw256, 240, 20>::accessors,
      Place<Raw256, 192, 64>::accessors,   Place<Raw256, 193, 63>::accessors,
      Place<Raw256, 256, 1>::accessors,    Place<Raw512, 164, 4>::accessors,
      Place<Raw512, 320, 0>::accessors,    Place<Raw512, 511, 130>::accessors,
      Place<Raw512, 512, 0>::accessors,    Place<Raw512, 512, 63>::accessors,
      Place<U8[9], 70, 3>::accessors,      Place<U8[17], 130, 0>::accessors,
      Place<Raw1024, 513, 62>::accessors,
   };
   for( const Accessors& place : places ) {
      const int least = bytesFor( place.offset + place.width );
      for( int length = least; length <= least + 20; ++length ) {
         ASSERT_TRUE( agrees( place, randomBytes( length ), randomBytes( place.valueLen ) ) );
      }
   }
}

// Expects that both refuse an image of `length` bytes, and leave it and the value as they are.
void expectRefusal( const Accessors& place, int length ) {
   const Bytes before = randomBytes( length );
   const Bytes value = randomBytes( 8 );
   ExactBuffer image( before );
   Bytes read = value;
   ASSERT_EQ( Testing::expressionOf( [&] { place.get( image.bytes(), length, read.data() ); } ),
              "offset + width <= 8 * srcLen" );
   ASSERT_EQ( read, value );
   ASSERT_EQ( Testing::expressionOf( [&] { place.set( image.bytes(), length, value.data() ); } ),
              "offset + width <= 8 * dstLen" );
   ASSERT_TRUE( image.holds( before ) );
}

TEST( BitBufInline, RefusesTooShortImages ) {
   forChosenPlaces( []( const Accessors& place ) {
      // One length a place, as each refusal costs two exceptions; over all places 1 to 5 short.
      const int least = bytesFor( place.offset + place.width );
      expectRefusal( place, std::max( least - 1 - ( place.offset + place.width ) % 5, 0 ) );
   } );
}

TEST( BitBufInline, RefusesConstantsThatDoNotFit ) {
   const Bytes before = randomBytes( 16 );
   Bytes image = before;
   U32 value = 7;
   const auto bytes = reinterpret_cast<U8*>( &value );
   using Testing::expressionOf;
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, bytes, 4, 0, 0 ); } ), "width > 0" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), 16, bytes, 4, -3, 0 ); } ), "width > 0" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, bytes, 4, 8, -8 ); } ), "offset >= 0" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), 16, bytes, 4, 8, -8 ); } ), "offset >= 0" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, bytes, 4, 33, 0 ); } ),
              "width <= 8 * valueLen" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), 16, bytes, 0, 1, 0 ); } ),
              "width <= 8 * valueLen" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, bytes, -4, 1, 0 ); } ),
              "width <= 8 * valueLen" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, bytes, 4, 32, 2147483647 ); } ),
              "offset + width <= 8 * srcLen" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), -16, bytes, 4, 32, 0 ); } ),
              "offset + width <= 8 * dstLen" );
   EXPECT_EQ( image, before );
   EXPECT_EQ( value, 7u );

   const Bytes wideBefore = randomBytes( 16 );
   Bytes wide = wideBefore;
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, wide.data(), 8, 65, 0 ); } ),
              "width <= 8 * valueLen" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), 16, wide.data(), 8, 65, 0 ); } ),
              "width <= 8 * valueLen" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 16, wide.data(), 16, 65, -1 ); } ),
              "offset >= 0" );
   EXPECT_EQ( expressionOf( [&] { setBuf( image.data(), 16, wide.data(), 16, 65, -1 ); } ),
              "offset >= 0" );
   EXPECT_EQ( expressionOf( [&] { getBuf( image.data(), 8, wide.data(), 16, 65, 0 ); } ),
              "offset + width <= 8 * srcLen" );
   EXPECT_EQ( image, before );
   EXPECT_EQ( wide, wideBefore );
}

// Several fields of one entry, set and read in turn, as accessors do.
TEST( BitBufInline, NeighboursKeepTheirValues ) {
   for( int length = 12; length <= 16; ++length ) {
      Bytes image( static_cast<std::size_t>( length ), 0 );
      const auto put = [&]( const U32& value, auto width, auto offset ) {
         setBuf( image.data(), length, reinterpret_cast<const U8*>( &value ), 4, width, offset );
      };
      const auto get = [&]( auto width, auto offset ) {
         U32 value = 0;
         getBuf( image.data(), length, reinterpret_cast<U8*>( &value ), 4, width, offset );
         return value;
      };
      const std::integral_constant<int, 20> width;
      const std::integral_constant<int, 35> low;
      const std::integral_constant<int, 55> middle;
      const std::integral_constant<int, 75> high;
      put( 0xaaaaa, width, low );
      put( 0x12345, width, middle );
      put( 0xfedcb, width, high );
      put( 0x54321, width, low );
      EXPECT_EQ( get( width, low ), 0x54321u ) << length;
      EXPECT_EQ( get( width, middle ), 0x12345u ) << length;
      EXPECT_EQ( get( width, high ), 0xfedcbu ) << length;
      EXPECT_EQ( get( std::integral_constant<int, 32>(), std::integral_constant<int, 0>() ), 0u );
   }
}

// The counts are constants, and one is odd.
template<int words>
void masksEachWord() {
   std::array<U32, words> source;
   std::array<U32, words> mask;
   std::array<U32, words + 1> output;
   output.fill( 0xa5a5a5a5 );
   for( int word = 0; word < words; ++word ) {
      const auto index = static_cast<std::size_t>( word );
      source[index] = 0xffff0000u + static_cast<U32>( word );
      mask[index] = 0x00ffff0fu << word % 3;
   }
   maskBuf( source.data(), words, output.data(), words, mask.data(), words );
   for( std::size_t word = 0; word < words; ++word ) {
      EXPECT_EQ( output[word], source[word] & mask[word] ) << word << " of " << words;
   }
   EXPECT_EQ( output[words], 0xa5a5a5a5 );
}

TEST( BitBufInline, MaskOfConstantCounts ) {
   masksEachWord<1>();
   masksEachWord<2>();
   masksEachWord<3>();
   masksEachWord<20>();
}

} // namespace
