// The exported bit-buffer primitives against a naive loop, and everything they refuse.
#include "NaiveBits.h"

#include <Assertions.h>
#include <Kelvar/BitBuf.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstring>
#include <functional>
#include <string>

namespace {

using Testing::Bytes;
using Testing::bytesFor;
using Testing::ExactBuffer;
using Testing::GuardedBuffer;
using Testing::randomBytes;

// The exported functions: nothing is inlined through a volatile pointer.
using GetBuf = void ( * )( const U8*, int, U8*, int, int, int );
using SetBuf = void ( * )( U8*, int, const U8*, int, int, int );
const volatile GetBuf exportedGetBuf = &getBuf;
const volatile SetBuf exportedSetBuf = &setBuf;

// One field: its place, and how many bytes image and value have beyond what it needs.
struct Case {
   int width;
   int offset;
   int imageSlack;
   int valueSlack;
   int alignment;
};

std::ostream& operator<<( std::ostream& out, const Case& field ) {
   return out << "width " << field.width << " offset " << field.offset << " image slack "
              << field.imageSlack << " value slack " << field.valueSlack << " alignment "
              << field.alignment;
}

// Whether getBuf and setBuf do what the naive loop does, to exact buffers and to guarded ones.
testing::AssertionResult agrees( const Case& field ) {
   const int imageLen = bytesFor( field.offset + field.width ) + field.imageSlack;
   const int valueLen = bytesFor( field.width ) + field.valueSlack;
   const Bytes image = randomBytes( imageLen );
   const Bytes value = randomBytes( valueLen );

   Bytes valueAfterGet = value;
   Testing::naiveCopy( image, field.offset, valueAfterGet, 0, field.width );
   Bytes imageAfterSet = image;
   Testing::naiveCopy( value, 0, imageAfterSet, field.offset, field.width );

   const auto run = [&]( auto source, auto read, auto destination, auto written ) {
      exportedGetBuf( source.bytes(), imageLen, read.bytes(), valueLen, field.width, field.offset );
      exportedSetBuf( destination.bytes(), imageLen, written.bytes(), valueLen, field.width,
                      field.offset );
      return source.holds( image ) && read.holds( valueAfterGet ) &&
             destination.holds( imageAfterSet ) && written.holds( value );
   };
   if( !run( GuardedBuffer( image, field.alignment ), GuardedBuffer( value, field.alignment + 3 ),
             GuardedBuffer( image, field.alignment ), GuardedBuffer( value, 7 ) ) ) {
      return testing::AssertionFailure() << "guarded buffers differ at " << field;
   }
   if( !run( ExactBuffer( image ), ExactBuffer( value ), ExactBuffer( image ),
             ExactBuffer( value ) ) ) {
      return testing::AssertionFailure() << "exact buffers differ at " << field;
   }
   return testing::AssertionSuccess();
}

TEST( BitBuf, EveryWidth ) {
   for( int width = 1; width <= 4096; ++width ) {
      for( const int offset : { 0, 1, 7, 32, 63, 64, 77 } ) {
         ASSERT_TRUE( agrees( { width, offset, 0, 0, 0 } ) );
      }
   }
}

TEST( BitBuf, EveryWidthWithRoomBehind ) {
   for( int width = 1; width <= 4096; width += width < 600 ? 1 : 29 ) {
      ASSERT_TRUE( agrees( { width, width % 71, width % 9, width % 11, width % 8 } ) );
      ASSERT_TRUE( agrees( { width, 8 * ( width % 17 ), width % 13, width % 5, width % 7 } ) );
   }
}

TEST( BitBuf, EveryOffset ) {
   for( int offset = 0; offset <= 127; ++offset ) {
      for( int width = 1; width <= 140; ++width ) {
         ASSERT_TRUE( agrees( { width, offset, 0, 0, 0 } ) );
      }
      for( const int width : { 164, 191, 192, 193, 249, 255, 256, 257, 328, 512, 640, 1023 } ) {
         ASSERT_TRUE( agrees( { width, offset, 0, 0, 0 } ) );
      }
   }
}

TEST( BitBuf, LargeOffsets ) {
   for( const int offset : { 639, 1000, 4095, 4096, 32767, 100000, 524280 } ) {
      for( const int width : { 1, 2, 7, 8, 9, 31, 32, 33, 63, 64, 65, 127, 128, 129, 4096 } ) {
         ASSERT_TRUE( agrees( { width, offset, 0, 0, 0 } ) );
      }
   }
}

// Narrow fields in every image length and value length around them, at every alignment.
TEST( BitBuf, EveryLengthAndAlignment ) {
   for( int alignment = 0; alignment < 8; ++alignment ) {
      for( const int width : { 1, 5, 8, 9, 16, 20, 31, 32, 33, 48, 57, 63, 64, 65, 100 } ) {
         for( const int offset : { 0, 3, 12, 31, 32, 60, 63, 64, 90 } ) {
            for( int slack = 0; slack <= 9; ++slack ) {
               ASSERT_TRUE( agrees( { width, offset, slack, 9 - slack, alignment } ) );
            }
         }
      }
   }
}

TEST( BitBuf, SetBufOverOnesChangesOnlyTheLowBits ) {
   Bytes image( 10, 0xff );
   const U32 value = 0xfff54321;
   exportedSetBuf( image.data(), 10, reinterpret_cast<const U8*>( &value ), 4, 20, 0 );
   EXPECT_EQ( image, ( Bytes{ 0x21, 0x43, 0xf5, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff } ) );
}

TEST( BitBuf, GetBufKeepsTheValueAboveTheWidth ) {
   const Bytes image( 3, 0 );
   U32 value = 0xffffffff;
   exportedGetBuf( image.data(), 3, reinterpret_cast<U8*>( &value ), 4, 20, 0 );
   EXPECT_EQ( value, 0xfff00000 );
}

// What the inlined primitives leave to these, with images that end in the field's last byte.
TEST( BitBuf, NarrowBitsByValue ) {
   for( int width = 1; width <= 64; ++width ) {
      for( int offset = 0; offset < 72; ++offset ) {
         const Bytes image = randomBytes( bytesFor( offset + width ) );
         const Bytes value = randomBytes( 8 );
         Bytes expected( 8, 0 );
         Testing::naiveCopy( image, offset, expected, 0, width );
         Bytes imageAfterSet = image;
         Testing::naiveCopy( value, 0, imageAfterSet, offset, width );
         U64 bits = 0;
         std::memcpy( &bits, expected.data(), 8 );
         ExactBuffer source( image );
         EXPECT_EQ( Kelvar::narrowBits( source.bytes(), source.length(), width, offset ), bits )
            << width << " at " << offset;
         std::memcpy( &bits, value.data(), 8 );
         Kelvar::narrowBitsIs( source.bytes(), source.length(), bits, width, offset );
         EXPECT_TRUE( source.holds( imageAfterSet ) ) << width << " at " << offset;
      }
   }
}

// 41:6 and 6:9 of twelve bytes.
TEST( BitBuf, WrittenFieldsAreWhereTheyShouldBe ) {
   Bytes image( 12, 0 );
   const U16 domain = 0x1ff;
   const U8 command = 0x2a;
   exportedSetBuf( image.data(), 12, reinterpret_cast<const U8*>( &domain ), 2, 9, 6 );
   exportedSetBuf( image.data(), 12, &command, 1, 6, 41 );
   EXPECT_EQ( image, ( Bytes{ 0xc0, 0x7f, 0, 0, 0, 0x54, 0, 0, 0, 0, 0, 0 } ) );
}

TEST( BitBuf, MaskBuf ) {
   for( int words = 0; words <= 24; ++words ) {
      for( int alignment = 0; alignment < 8; ++alignment ) {
         const Bytes source = randomBytes( 4 * words );
         const Bytes mask = randomBytes( 4 * words );
         Bytes expected( source.size() );
         for( std::size_t i = 0; i < source.size(); ++i ) {
            expected[i] = source[i] & mask[i];
         }
         GuardedBuffer from( source, alignment );
         GuardedBuffer through( mask, alignment + 1 );
         GuardedBuffer to( randomBytes( 4 * words ), alignment + 2 );
         maskBuf( reinterpret_cast<const U32*>( from.bytes() ), words,
                  reinterpret_cast<U32*>( to.bytes() ), words,
                  reinterpret_cast<const U32*>( through.bytes() ), words );
         ASSERT_TRUE( from.holds( source ) && through.holds( mask ) && to.holds( expected ) )
            << words << " words at alignment " << alignment;
      }
      const Bytes ones( static_cast<std::size_t>( 4 * words ), 0xff );
      ExactBuffer from( ones );
      ExactBuffer through( ones );
      ExactBuffer to( Bytes( ones.size(), 0 ) );
      maskBuf( reinterpret_cast<const U32*>( from.bytes() ), words,
               reinterpret_cast<U32*>( to.bytes() ), words,
               reinterpret_cast<const U32*>( through.bytes() ), words );
      ASSERT_TRUE( to.holds( ones ) ) << words << " words";
   }
}

// What a call is refused with: lengths, width and offset, and the expression without its "src" or
// "dst".
struct Refusal {
   int imageLen;
   int valueLen;
   int width;
   int offset;
   std::string expression;
};

const std::vector<Refusal> refusals{
   { 8, 8, 0, 0, "width > 0" },
   { 8, 8, -1, 0, "width > 0" },
   { 8, 8, INT_MIN, 0, "width > 0" },
   { 8, 8, 1, -1, "offset >= 0" },
   { 8, 8, 1, INT_MIN, "offset >= 0" },
   { 16, 8, 65, 0, "width <= 8 * valueLen" },
   { 8, 1, 9, 0, "width <= 8 * valueLen" },
   { 8, 0, 1, 0, "width <= 8 * valueLen" },
   { 8, -1, 1, 0, "width <= 8 * valueLen" },
   { 8, INT_MIN, 1, 0, "width <= 8 * valueLen" },
   { 8, 8, INT_MAX, 0, "width <= 8 * valueLen" },
   { 8, 8, 64, 1, "offset + width <= 8 * " },
   { 8, 8, 1, 64, "offset + width <= 8 * " },
   { 2, 4, 20, 0, "offset + width <= 8 * " },
   { 15, 16, 128, 0, "offset + width <= 8 * " },
   { 0, 8, 1, 0, "offset + width <= 8 * " },
   { -1, 8, 1, 0, "offset + width <= 8 * " },
   { INT_MIN, 8, 64, 0, "offset + width <= 8 * " },
   { 8, 8, 64, INT_MAX, "offset + width <= 8 * " },
   { 8, INT_MAX, INT_MAX, INT_MAX, "offset + width <= 8 * " },
};

const std::string getBufSignature = "void getBuf(const U8*, int, U8*, int, int, int)";
const std::string setBufSignature = "void setBuf(U8*, int, const U8*, int, int, int)";

// That `action` fails with this assertion of BitBuf.cpp.
void expectRefusal( const std::function<void()>& action, std::string expression,
                    const std::string& image, const std::string& function ) {
   if( expression.back() == ' ' ) {
      expression += image;
   }
   const auto failure = Testing::failureOf( action );
   ASSERT_TRUE( failure ) << "not refused: " << expression;
   EXPECT_EQ( failure->expression, expression );
   EXPECT_EQ( failure->file, "BitBuf.cpp" );
   EXPECT_EQ( failure->function, function );
   EXPECT_GT( failure->line, 0u );
   EXPECT_FALSE( failure->message );
}

TEST( BitBuf, RefusesWhatDoesNotFit ) {
   const Bytes before = randomBytes( 32 );
   const Bytes input = randomBytes( 32 );
   for( const Refusal& call : refusals ) {
      SCOPED_TRACE( std::to_string( call.imageLen ) + ' ' + std::to_string( call.valueLen ) + ' ' +
                    std::to_string( call.width ) + ' ' + std::to_string( call.offset ) );
      Bytes output = before;
      for( const GetBuf get : { GetBuf( exportedGetBuf ), &Kelvar::getBufGeneral } ) {
         expectRefusal(
            [&] {
               get( input.data(), call.imageLen, output.data(), call.valueLen, call.width,
                    call.offset );
            },
            call.expression, "srcLen", getBufSignature );
         EXPECT_EQ( output, before );
      }
      for( const SetBuf set : { SetBuf( exportedSetBuf ), &Kelvar::setBufGeneral } ) {
         expectRefusal(
            [&] {
               set( output.data(), call.imageLen, input.data(), call.valueLen, call.width,
                    call.offset );
            },
            call.expression, "dstLen", setBufSignature );
         EXPECT_EQ( output, before );
      }
   }
}

TEST( BitBuf, RefusesNarrowBitsThatDoNotFit ) {
   const Bytes before = randomBytes( 32 );
   Bytes image = before;
   for( const Refusal& call : refusals ) {
      if( call.valueLen != 8 ) {
         continue; // the length of their value is no argument
      }
      expectRefusal(
         [&] { Kelvar::narrowBits( image.data(), call.imageLen, call.width, call.offset ); },
         call.expression, "srcLen", getBufSignature );
      expectRefusal(
         [&] { Kelvar::narrowBitsIs( image.data(), call.imageLen, 0, call.width, call.offset ); },
         call.expression, "dstLen", setBufSignature );
      EXPECT_EQ( image, before );
   }
}

TEST( BitBuf, MaskBufRefusesUnequalCounts ) {
   const std::array<U32, 4> source{ 1, 2, 3, 4 };
   const std::array<U32, 4> before{ 5, 6, 7, 8 };
   std::array<U32, 4> output = before;
   const auto mask = [&]( int srcWords, int dstWords, int maskWords ) {
      return [&output, &source, srcWords, dstWords, maskWords] {
         maskBuf( source.data(), srcWords, output.data(), dstWords, source.data(), maskWords );
      };
   };
   const std::string function = "void maskBuf(const U32*, int, U32*, int, const U32*, int)";
   expectRefusal( mask( -1, -1, -1 ), "srcWords >= 0", "", function );
   expectRefusal( mask( 3, 4, 3 ), "srcWords == dstWords", "", function );
   expectRefusal( mask( 3, 2, 2 ), "srcWords == dstWords", "", function );
   expectRefusal( mask( 3, 3, 4 ), "srcWords == maskWords", "", function );
   expectRefusal( mask( 3, 3, -3 ), "srcWords == maskWords", "", function );
   EXPECT_EQ( output, before );
}

} // namespace
