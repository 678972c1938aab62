// The bit-buffer primitives for any width, offset and length.
#define KELVAR_BITBUF_WITHOUT_INLINE
#include <Kelvar/BitBuf.h>

#include <Kelvar/AsicBase.h>

#include <algorithm>

namespace {

constexpr const char* getBufSignature = "void getBuf(const U8*, int, U8*, int, int, int)";
constexpr const char* setBufSignature = "void setBuf(U8*, int, const U8*, int, int, int)";
constexpr const char* maskBufSignature =
   "void maskBuf(const U32*, int, U32*, int, const U32*, int)";

void require( bool holds, const char* expression, const char* function,
              unsigned line = static_cast<unsigned>( __builtin_LINE() ) ) {
   if( !holds ) [[unlikely]] {
      Kelvar::assertFail( expression, "BitBuf.cpp", line, function );
   }
}

// What getBuf and setBuf require of their arguments. In 64 bits, so that no sum or product
// overflows.
void requireFit( long imageLen, const char* imageFits, long valueLen, long width, long offset,
                 const char* function ) {
   require( width > 0, "width > 0", function );
   require( offset >= 0, "offset >= 0", function );
   require( width <= 8 * valueLen, "width <= 8 * valueLen", function );
   require( offset + width <= 8 * imageLen, imageFits, function );
}

void requireSourceFit( int srcLen, int valueLen, int width, int offset ) {
   requireFit( srcLen, "offset + width <= 8 * srcLen", valueLen, width, offset, getBufSignature );
}

void requireDestinationFit( int dstLen, int valueLen, int width, int offset ) {
   requireFit( dstLen, "offset + width <= 8 * dstLen", valueLen, width, offset, setBufSignature );
}

template<class Word>
U64 load( const U8* bytes ) {
   Word word;
   std::memcpy( &word, bytes, sizeof( word ) );
   return word;
}

template<class Word>
void store( U8* bytes, U64 bits ) {
   const Word word = static_cast<Word>( bits );
   std::memcpy( bytes, &word, sizeof( word ) );
}

// Word `index` of the 64-bit words of an image: zero-extended if the image ends within it, and zero
// after the image's end.
U64 wordOf( const U8* image, long length, long index ) {
   const U8* bytes = image + 8 * index;
   const long left = length - 8 * index;
   if( left >= 8 ) {
      return load<U64>( bytes );
   }
   if( left <= 0 ) {
      return 0;
   }
   U64 word = 0;
   unsigned shift = 0;
   if( left & 4 ) {
      word = load<U32>( bytes );
      bytes += 4;
      shift = 32;
   }
   if( left & 2 ) {
      word |= load<U16>( bytes ) << shift;
      bytes += 2;
      shift += 16;
   }
   if( left & 1 ) {
      word |= load<U8>( bytes ) << shift;
   }
   return word;
}

// Replaces the bits of `mask` in word `index` by those of `bits`, as far as the image goes.
void mergeWord( U8* image, long length, long index, U64 bits, U64 mask ) {
   U8* bytes = image + 8 * index;
   const long left = length - 8 * index;
   U64 word = ( wordOf( image, length, index ) & ~mask ) | ( bits & mask );
   if( left >= 8 ) {
      store<U64>( bytes, word );
      return;
   }
   if( left & 4 ) {
      store<U32>( bytes, word );
      bytes += 4;
      word >>= 32;
   }
   if( left & 2 ) {
      store<U16>( bytes, word );
      bytes += 2;
      word >>= 16;
   }
   if( left & 1 ) {
      store<U8>( bytes, word );
   }
}

// A word whose low `count` bits are ones; `count` is 0 to 63.
U64 lowOnes( long count ) { return ( U64{ 1 } << count ) - 1; }

// The 64 bits from bit `shift` on of the word pair `low`, `high`; `shift` is 1 to 63.
U64 joined( U64 low, U64 high, long shift ) { return low >> shift | high << ( 64 - shift ); }

// Whether a field of 64 bits or less lies in one whole word of the image.
bool inOneWord( long imageLen, long width, long offset ) {
   return offset % 64 + width <= 64 && offset / 64 * 8 + 8 <= imageLen;
}

void extract( const U8* __restrict src, long srcLen, U8* __restrict value, long valueLen,
              long width, long offset ) {
   const long first = offset / 64;
   const long shift = offset % 64;
   if( width < 64 && inOneWord( srcLen, width, offset ) ) {
      const U64 bits = load<U64>( src + 8 * first ) >> shift;
      if( valueLen == 1 ) {
         const U64 mask = lowOnes( width );
         value[0] = static_cast<U8>( ( bits & mask ) | ( value[0] & ~mask ) );
      } else {
         mergeWord( value, valueLen, 0, bits, lowOnes( width ) );
      }
      return;
   }
   const long fullWords = width / 64;
   const long rest = width % 64;
   if( shift == 0 ) {
      std::memcpy( value, src + 8 * first, static_cast<std::size_t>( 8 * fullWords ) );
   } else {
      // All words of `src` that this reads are full, except possibly the last.
      const long quick = std::min( fullWords, srcLen / 8 - first - 1 );
      long i = 0;
      for( ; i < quick; ++i ) {
         const U8* from = src + 8 * ( first + i );
         store<U64>( value + 8 * i, joined( load<U64>( from ), load<U64>( from + 8 ), shift ) );
      }
      for( ; i < fullWords; ++i ) {
         store<U64>( value + 8 * i, joined( wordOf( src, srcLen, first + i ),
                                            wordOf( src, srcLen, first + i + 1 ), shift ) );
      }
   }
   if( rest != 0 ) {
      U64 bits = wordOf( src, srcLen, first + fullWords ) >> shift;
      if( shift + rest > 64 ) {
         bits |= wordOf( src, srcLen, first + fullWords + 1 ) << ( 64 - shift );
      }
      mergeWord( value, valueLen, fullWords, bits, lowOnes( rest ) );
   }
}

void insert( U8* __restrict dst, long dstLen, const U8* __restrict value, long valueLen, long width,
             long offset ) {
   long index = offset / 64;
   const long shift = offset % 64;
   if( width < 64 && inOneWord( dstLen, width, offset ) ) {
      const U64 mask = lowOnes( width ) << shift;
      const U64 bits = ( valueLen == 1 ? value[0] : wordOf( value, valueLen, 0 ) ) << shift;
      U8* const at = dst + 8 * index;
      store<U64>( at, ( load<U64>( at ) & ~mask ) | ( bits & mask ) );
      return;
   }
   if( shift == 0 ) {
      const long fullWords = width / 64;
      std::memcpy( dst + 8 * index, value, static_cast<std::size_t>( 8 * fullWords ) );
      if( width % 64 != 0 ) {
         mergeWord( dst, dstLen, index + fullWords, wordOf( value, valueLen, fullWords ),
                    lowOnes( width % 64 ) );
      }
      return;
   }

   const U64 firstBits = wordOf( value, valueLen, 0 ) << shift;
   if( shift + width < 64 ) {
      mergeWord( dst, dstLen, index, firstBits, lowOnes( width ) << shift );
      return;
   }
   mergeWord( dst, dstLen, index, firstBits, ~lowOnes( shift ) );
   ++index;

   // From here on a word of `dst` takes the upper bits of one word of `value` and the lower bits of
   // the next; all of those are full, except possibly the last.
   const long left = shift + width - 64;
   const long fullWords = left / 64;
   const long quick = std::min( fullWords, valueLen / 8 - 1 );
   long i = 0;
   for( ; i < quick; ++i ) {
      const U8* from = value + 8 * i;
      store<U64>( dst + 8 * ( index + i ),
                  joined( load<U64>( from ), load<U64>( from + 8 ), 64 - shift ) );
   }
   for( ; i < fullWords; ++i ) {
      store<U64>( dst + 8 * ( index + i ), joined( wordOf( value, valueLen, i ),
                                                   wordOf( value, valueLen, i + 1 ), 64 - shift ) );
   }
   if( left % 64 != 0 ) {
      mergeWord( dst, dstLen, index + fullWords,
                 joined( wordOf( value, valueLen, fullWords ),
                         wordOf( value, valueLen, fullWords + 1 ), 64 - shift ),
                 lowOnes( left % 64 ) );
   }
}

} // namespace

namespace Kelvar {

void getBufGeneral( const U8* src, int srcLen, U8* value, int valueLen, int width, int offset ) {
   requireSourceFit( srcLen, valueLen, width, offset );
   extract( src, srcLen, value, valueLen, width, offset );
}

void setBufGeneral( U8* dst, int dstLen, const U8* value, int valueLen, int width, int offset ) {
   requireDestinationFit( dstLen, valueLen, width, offset );
   insert( dst, dstLen, value, valueLen, width, offset );
}

U64 narrowBits( const U8* src, int srcLen, int width, int offset ) {
   requireSourceFit( srcLen, sizeof( U64 ), width, offset );
   U64 bits = 0;
   extract( src, srcLen, reinterpret_cast<U8*>( &bits ), sizeof( bits ), width, offset );
   return bits;
}

void narrowBitsIs( U8* dst, int dstLen, U64 bits, int width, int offset ) {
   requireDestinationFit( dstLen, sizeof( U64 ), width, offset );
   insert( dst, dstLen, reinterpret_cast<const U8*>( &bits ), sizeof( bits ), width, offset );
}

void maskBufGeneral( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
                     int maskWords ) {
   require( srcWords >= 0, "srcWords >= 0", maskBufSignature );
   require( srcWords == dstWords, "srcWords == dstWords", maskBufSignature );
   require( srcWords == maskWords, "srcWords == maskWords", maskBufSignature );
   Kelvar::maskWords( src, dst, mask, srcWords );
}

} // namespace Kelvar

void getBuf( const U8* src, int srcLen, U8* value, int valueLen, int width, int offset ) {
   Kelvar::getBufGeneral( src, srcLen, value, valueLen, width, offset );
}

void setBuf( U8* dst, int dstLen, const U8* value, int valueLen, int width, int offset ) {
   Kelvar::setBufGeneral( dst, dstLen, value, valueLen, width, offset );
}

void maskBuf( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
              int maskWords ) {
   Kelvar::maskBufGeneral( src, srcWords, dst, dstWords, mask, maskWords );
}
