// Bits of an entry at a constant place. Everything works on the grid of the entry's 64-bit words,
// the last of which may be half a word, so that the compiler merges consecutive writes in
// registers. In constant evaluation words are composed from bytes. The compiler's own memcpy is
// used: a fortified one keeps clang 14 from merging.
#pragma once

#include <Hardware/detail/Inline.h>
#include <Kelvar/Types.h>

#include <bit>
#include <cstring>
#include <type_traits>

namespace Hardware::Detail {

// How many bytes word `index` of an entry of `bytes` bytes has.
template<unsigned index, unsigned bytes>
inline constexpr unsigned wordBytes = bytes - 8 * index < 8 ? bytes - 8 * index : 8;

template<unsigned index, unsigned bytes>
HARDWARE_INLINE constexpr U64 entryWord( const U8* entry ) {
   U64 word = 0;
   if( std::is_constant_evaluated() || std::endian::native != std::endian::little ) {
      for( unsigned byte = 0; byte < wordBytes<index, bytes>; ++byte ) {
         word |= U64{ entry[8 * index + byte] } << 8 * byte;
      }
   } else {
      __builtin_memcpy( &word, entry + 8 * index, wordBytes<index, bytes> );
   }
   return word;
}

template<unsigned index, unsigned bytes>
HARDWARE_INLINE constexpr void entryWordIs( U8* entry, U64 word ) {
   if( std::is_constant_evaluated() || std::endian::native != std::endian::little ) {
      for( unsigned byte = 0; byte < wordBytes<index, bytes>; ++byte ) {
         entry[8 * index + byte] = static_cast<U8>( word >> 8 * byte );
      }
   } else {
      __builtin_memcpy( entry + 8 * index, &word, wordBytes<index, bytes> );
   }
}

constexpr U64 lowOnes( unsigned width ) { return ~U64{ 0 } >> ( 64 - width ); }

// Bits `offset` to `offset + width - 1`, at most 64, of an entry of `bytes` bytes.
template<unsigned offset, unsigned width, unsigned bytes>
HARDWARE_INLINE constexpr U64 entryBits( const U8* entry ) {
   constexpr unsigned first = offset / 64;
   constexpr unsigned last = ( offset + width - 1 ) / 64;
   U64 bits = entryWord<first, bytes>( entry ) >> offset % 64;
   if constexpr( last != first ) {
      bits |= entryWord<last, bytes>( entry ) << ( 64 - offset % 64 );
   }
   return bits & lowOnes( width );
}

// Replaces the bits of `mask` in a word; `bits` has no others.
template<unsigned index, unsigned bytes>
HARDWARE_INLINE constexpr void mergeWord( U8* entry, U64 bits, U64 mask ) {
   if( mask != ~U64{ 0 } ) {
      bits |= entryWord<index, bytes>( entry ) & ~mask;
   }
   entryWordIs<index, bytes>( entry, bits );
}

// The value has no bits from `width` on.
template<unsigned offset, unsigned width, unsigned bytes>
HARDWARE_INLINE constexpr void entryBitsAre( U8* entry, U64 bits ) {
   constexpr unsigned first = offset / 64;
   constexpr unsigned last = ( offset + width - 1 ) / 64;
   constexpr unsigned shift = offset % 64;
   mergeWord<first, bytes>( entry, bits << shift, lowOnes( width ) << shift );
   if constexpr( last != first ) {
      mergeWord<last, bytes>( entry, bits >> ( 64 - shift ), lowOnes( width ) >> ( 64 - shift ) );
   }
}

} // namespace Hardware::Detail
