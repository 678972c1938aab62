// Bit-buffer primitives: copy a run of bits out of, into, or through a mask over an entry image.
//
// An entry image is an array of bytes; its bit n is bit n mod 8 of byte n / 8, bit 0 the least
// significant. A value image is little-endian too, so it can be an integer or a Raw value. Lengths
// are in bytes (in 32-bit words for maskBuf), widths and offsets in bits. No byte outside a given
// length is ever touched; a width of 0 or less, a negative offset, or a run of bits that does not
// fit into the buffer or the value is an assertion, and nothing is written.
#pragma once

#include <Kelvar/Types.h>

#include <cstring>

// Copies bits offset to offset + width - 1 of `src` to bits 0 to width - 1 of `value` and keeps
// every other bit of `value`.
KELVAR_API void getBuf( const U8* src, int srcLen, U8* value, int valueLen, int width, int offset );

// Copies bits 0 to width - 1 of `value` to bits offset to offset + width - 1 of `dst` and keeps
// every other bit of `dst`. Bits of `value` from `width` on are ignored.
KELVAR_API void setBuf( U8* dst, int dstLen, const U8* value, int valueLen, int width, int offset );

// dst[i] = src[i] & mask[i] for every word. The three counts must be equal and not negative, else
// assertion.
KELVAR_API void maskBuf( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
                         int maskWords );

namespace Kelvar {

// The same three under names that the inline definitions below can call.
KELVAR_API void getBufGeneral( const U8* src, int srcLen, U8* value, int valueLen, int width,
                               int offset );
KELVAR_API void setBufGeneral( U8* dst, int dstLen, const U8* value, int valueLen, int width,
                               int offset );
KELVAR_API void maskBufGeneral( const U32* src, int srcWords, U32* dst, int dstWords,
                                const U32* mask, int maskWords );

// The same for a field of 64 bits or less by value: the rare path of a field that ends in a partial
// word of its image. Cold, so that the compiler moves the calls out of the way.
KELVAR_API U64 narrowBits( const U8* src, int srcLen, int width, int offset )
   __attribute__( ( cold ) );
KELVAR_API void narrowBitsIs( U8* dst, int dstLen, U64 bits, int width, int offset )
   __attribute__( ( cold ) );

} // namespace Kelvar

static_assert( __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "images are read as native words" );

namespace Kelvar {

// Whether a buffer can hold this many bytes, as far as the compiler knows: true, at no cost, if it
// doesn't know. Without this it warns about words beyond a smaller buffer, whatever the length.
__attribute__( ( always_inline ) ) inline bool mayHold( const U8* buffer, long bytes ) {
   return __builtin_object_size( buffer, 0 ) >= static_cast<std::size_t>( bytes );
}

// Where a field of 64 bits or less lies in the grid of 64-bit words.
struct NarrowPlace {
   long first;     // byte at which the word of its lowest bit starts
   long last;      // byte at which the word of its highest bit starts: `first` or the next
   int shift;      // its lowest bit in the first word
   bool inLowHalf; // whether its highest bit is in the lower 32 bits of the last word
   U64 mask;       // its bits, at bit 0
};

__attribute__( ( always_inline ) ) constexpr NarrowPlace narrowPlace( int width, int offset ) {
   const long highest = static_cast<long>( offset ) + width - 1;
   return { offset / 64 * 8L, highest / 64 * 8, offset % 64, highest % 64 < 32,
            ~U64{ 0 } >> ( 64 - width ) };
}

__attribute__( ( always_inline ) ) constexpr bool isNarrow( int valueLen, int width, int offset ) {
   return width > 0 && width <= 64 && offset >= 0 && valueLen > 0 && width <= 8L * valueLen;
}

// Replaces the bits of `mask` in a value image with `bits`, which has no others.
__attribute__( ( always_inline ) ) inline void narrowValueIs( U8* value, int valueLen, U64 bits,
                                                              U64 mask ) {
   const std::size_t size = valueLen < 8 ? static_cast<std::size_t>( valueLen ) : 8;
   U64 kept = 0;
   std::memcpy( &kept, value, size );
   bits |= kept & ~mask;
   std::memcpy( value, &bits, size );
}

// A field of up to eight words whose value is whole words.
__attribute__( ( always_inline ) ) constexpr bool isWide( int valueLen, int width, int offset ) {
   return width > 64 && width <= 512 && offset >= 0 && valueLen % 8 == 0 && width <= 8L * valueLen;
}

__attribute__( ( always_inline ) ) inline U64 wordAt( const U8* bytes, long at ) {
   U64 word;
   std::memcpy( &word, bytes + at, sizeof( word ) );
   return word;
}

__attribute__( ( always_inline ) ) inline void wordAtIs( U8* bytes, long at, U64 word ) {
   std::memcpy( bytes + at, &word, sizeof( word ) );
}

// How much of a field's last word the image holds: all of it, at least its low half if the field
// ends there, or less.
enum class LastWord { whole, half, partial };

__attribute__( ( always_inline ) ) inline LastWord lastWordOf( const U8* image, int length,
                                                               int width, int offset ) {
   const long highest = static_cast<long>( offset ) + width - 1;
   const long last = highest / 64 * 8;
   if( __builtin_expect( length >= last + 8, true ) && mayHold( image, last + 8 ) ) {
      return LastWord::whole;
   }
   return highest % 64 < 32 && length >= last + 4 && mayHold( image, last + 4 ) ? LastWord::half
                                                                                : LastWord::partial;
}

__attribute__( ( always_inline ) ) inline U64 halfWordAt( const U8* bytes, long at ) {
   U32 half;
   std::memcpy( &half, bytes + at, sizeof( half ) );
   return half;
}

// The fast path of a wide field whose words all lie in the image, the last one possibly with its
// low half only: a few words, each joined from two with a constant shift.
__attribute__( ( always_inline ) ) inline void wideBits( const U8* src, U8* value, int width,
                                                         int offset, LastWord lastWord ) {
   const long first = offset / 64 * 8L;
   const long last = ( static_cast<long>( offset ) + width - 1 ) / 64 * 8;
   const int shift = offset % 64;
   const int words = ( width + 63 ) / 64;
   const U64 end = lastWord == LastWord::whole ? wordAt( src, last ) : halfWordAt( src, last );
   for( int word = 0; word < words; ++word ) {
      const long at = first + 8L * word;
      U64 bits = ( at < last ? wordAt( src, at ) : end ) >> shift;
      if( shift != 0 && at < last ) {
         bits |= ( at + 8 < last ? wordAt( src, at + 8 ) : end ) << ( 64 - shift );
      }
      if( word == words - 1 && width % 64 != 0 ) {
         const U64 mask = ~U64{ 0 } >> ( 64 - width % 64 );
         bits = ( bits & mask ) | ( wordAt( value, 8L * word ) & ~mask );
      }
      wordAtIs( value, 8L * word, bits );
   }
}

__attribute__( ( always_inline ) ) inline void wideBitsAre( U8* dst, const U8* value, int width,
                                                            int offset, LastWord lastWord ) {
   const long first = offset / 64 * 8L;
   const long last = ( static_cast<long>( offset ) + width - 1 ) / 64 * 8;
   const int shift = offset % 64;
   const int words = ( width + 63 ) / 64;
   const int places = static_cast<int>( ( last - first ) / 8 ) + 1;
   U64 below = 0;
   for( int place = 0; place < places; ++place ) {
      const U64 word = place < words ? wordAt( value, 8L * place ) : 0;
      U64 bits = word << shift;
      if( shift != 0 ) {
         bits |= below >> ( 64 - shift );
      }
      below = word;
      U64 mask = place == 0 ? ~U64{ 0 } << shift : ~U64{ 0 };
      if( place == places - 1 ) {
         mask &= ~U64{ 0 } >> ( 63 - ( offset + width - 1 ) % 64 );
      }
      const long at = first + 8L * place;
      if( place == places - 1 && lastWord == LastWord::half ) {
         bits = ( bits & mask ) | ( halfWordAt( dst, at ) & ~mask );
         std::memcpy( dst + at, &bits, sizeof( U32 ) );
         return;
      }
      if( mask != ~U64{ 0 } ) {
         bits = ( bits & mask ) | ( wordAt( dst, at ) & ~mask );
      }
      wordAtIs( dst, at, bits );
   }
}

// As bytes: an entry image need not be aligned like a U32.
__attribute__( ( always_inline ) ) inline void maskWords( const U32* src, U32* dst, const U32* mask,
                                                          int words ) {
   const auto* __restrict from = reinterpret_cast<const U8*>( src );
   const auto* __restrict through = reinterpret_cast<const U8*>( mask );
   auto* __restrict to = reinterpret_cast<U8*>( dst );
   const long bytes = 4L * words;
   long at = 0;
   for( ; at + 8 <= bytes; at += 8 ) {
      wordAtIs( to, at, wordAt( from, at ) & wordAt( through, at ) );
   }
   if( at < bytes ) {
      const U64 half = halfWordAt( from, at ) & halfWordAt( through, at );
      std::memcpy( to + at, &half, sizeof( U32 ) );
   }
}

} // namespace Kelvar

#ifndef KELVAR_BITBUF_WITHOUT_INLINE

// Says that the primitives are inline and need not be called: code that knows a field's place may
// do their work on the image's words.
#define KELVAR_BITBUF_IS_INLINE

// GNU's inline: such a definition is used for inlining only. Taking the function's address, or a
// call that isn't inlined, uses the exported one.
#define KELVAR_INLINE extern inline __attribute__( ( gnu_inline, always_inline ) )

KELVAR_INLINE void getBuf( const U8* src, int srcLen, U8* value, int valueLen, int width,
                           int offset ) {
   if( !( __builtin_constant_p( width ) && __builtin_constant_p( offset ) &&
          __builtin_constant_p( valueLen ) && Kelvar::isNarrow( valueLen, width, offset ) ) ) {
      if( __builtin_constant_p( width ) && __builtin_constant_p( offset ) &&
          __builtin_constant_p( valueLen ) && Kelvar::isWide( valueLen, width, offset ) ) {
         const Kelvar::LastWord last = Kelvar::lastWordOf( src, srcLen, width, offset );
         if( __builtin_expect( last != Kelvar::LastWord::partial, true ) ) {
            Kelvar::wideBits( src, value, width, offset, last );
            return;
         }
      }
      Kelvar::getBufGeneral( src, srcLen, value, valueLen, width, offset );
      return;
   }
   const Kelvar::NarrowPlace place = Kelvar::narrowPlace( width, offset );
   U64 bits;
   if( __builtin_expect( srcLen >= place.last + 8, true ) &&
       Kelvar::mayHold( src, place.last + 8 ) ) {
      std::memcpy( &bits, src + place.last, sizeof( U64 ) );
   } else if( place.inLowHalf && srcLen >= place.last + 4 &&
              Kelvar::mayHold( src, place.last + 4 ) ) {
      U32 half;
      std::memcpy( &half, src + place.last, sizeof( U32 ) );
      bits = half;
   } else {
      bits = Kelvar::narrowBits( src, srcLen, width, offset );
      Kelvar::narrowValueIs( value, valueLen, bits, place.mask );
      return;
   }
   if( place.first == place.last ) {
      bits >>= place.shift;
   } else {
      U64 low;
      std::memcpy( &low, src + place.first, sizeof( U64 ) );
      bits = low >> place.shift | bits << ( 64 - place.shift );
   }
   Kelvar::narrowValueIs( value, valueLen, bits & place.mask, place.mask );
}

KELVAR_INLINE void setBuf( U8* dst, int dstLen, const U8* value, int valueLen, int width,
                           int offset ) {
   if( !( __builtin_constant_p( width ) && __builtin_constant_p( offset ) &&
          __builtin_constant_p( valueLen ) && Kelvar::isNarrow( valueLen, width, offset ) ) ) {
      if( __builtin_constant_p( width ) && __builtin_constant_p( offset ) &&
          __builtin_constant_p( valueLen ) && Kelvar::isWide( valueLen, width, offset ) ) {
         const Kelvar::LastWord last = Kelvar::lastWordOf( dst, dstLen, width, offset );
         if( __builtin_expect( last != Kelvar::LastWord::partial, true ) ) {
            Kelvar::wideBitsAre( dst, value, width, offset, last );
            return;
         }
      }
      Kelvar::setBufGeneral( dst, dstLen, value, valueLen, width, offset );
      return;
   }
   const Kelvar::NarrowPlace place = Kelvar::narrowPlace( width, offset );
   U64 bits = 0;
   std::memcpy( &bits, value, valueLen < 8 ? static_cast<std::size_t>( valueLen ) : 8 );
   bits &= place.mask;
   const bool whole = dstLen >= place.last + 8 && Kelvar::mayHold( dst, place.last + 8 );
   if( !whole && !( place.inLowHalf && dstLen >= place.last + 4 &&
                    Kelvar::mayHold( dst, place.last + 4 ) ) ) {
      Kelvar::narrowBitsIs( dst, dstLen, bits, width, offset );
      return;
   }
   U64 lastBits = bits << place.shift;
   U64 lastMask = place.mask << place.shift;
   if( place.first != place.last ) {
      U64 word;
      std::memcpy( &word, dst + place.first, sizeof( U64 ) );
      word = ( word & ~lastMask ) | lastBits;
      // An empty instruction that keeps the compiler from treating both words as one vector, whose
      // 16-byte load would have to wait for earlier 8-byte stores.
      __asm__( "" : "+r"( word ) );
      std::memcpy( dst + place.first, &word, sizeof( U64 ) );
      lastBits = bits >> ( 64 - place.shift );
      lastMask = place.mask >> ( 64 - place.shift );
   }
   if( __builtin_expect( whole, true ) ) {
      U64 word;
      std::memcpy( &word, dst + place.last, sizeof( U64 ) );
      word = ( word & ~lastMask ) | lastBits;
      std::memcpy( dst + place.last, &word, sizeof( U64 ) );
   } else {
      U32 half;
      std::memcpy( &half, dst + place.last, sizeof( U32 ) );
      half = ( half & ~static_cast<U32>( lastMask ) ) | static_cast<U32>( lastBits );
      std::memcpy( dst + place.last, &half, sizeof( U32 ) );
   }
}

KELVAR_INLINE void maskBuf( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
                            int maskWords ) {
   if( !( __builtin_constant_p( srcWords ) && srcWords >= 0 && srcWords == dstWords &&
          srcWords == maskWords ) ) {
      Kelvar::maskBufGeneral( src, srcWords, dst, dstWords, mask, maskWords );
      return;
   }
   Kelvar::maskWords( src, dst, mask, srcWords );
}

#undef KELVAR_INLINE
#endif
