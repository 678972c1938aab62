// Value types shared by every view: unsigned integers and opaque little-endian byte images.
#pragma once

#include <cstddef>
#include <cstdint>

using U8 = std::uint8_t;
using U16 = std::uint16_t;
using U32 = std::uint32_t;
using U64 = std::uint64_t;
using S32 = std::int32_t;

#define KELVAR_API __attribute__( ( visibility( "default" ) ) )

namespace Kelvar {

// A value of `Bits` bits, stored as a little-endian byte image: bit 0 is the least significant bit
// of the first byte. An aggregate without constructors; `Raw<128>{}` is all zero.
template<unsigned Bits>
struct Raw {
   static_assert( Bits % 64 == 0 );
   static constexpr unsigned bits = Bits;
   static constexpr unsigned wordCount = Bits / 64;

   U64 words[wordCount];

   // 64-bit word `index`, word 0 being the least significant; `index` must be below `wordCount`.
   constexpr U64 word( unsigned index ) const { return words[index]; }
   constexpr void wordIs( unsigned index, U64 value ) { words[index] = value; }

   // The image as `Bits / 8` bytes.
   U8* bytes() { return reinterpret_cast<U8*>( words ); }
   const U8* bytes() const { return reinterpret_cast<const U8*>( words ); }

   friend constexpr bool operator==( const Raw& left, const Raw& right ) {
      for( unsigned i = 0; i < wordCount; ++i ) {
         if( left.words[i] != right.words[i] ) {
            return false;
         }
      }
      return true;
   }
   friend constexpr bool operator!=( const Raw& left, const Raw& right ) {
      return !( left == right );
   }
};

} // namespace Kelvar

using Raw128 = Kelvar::Raw<128>;
using Raw256 = Kelvar::Raw<256>;
using Raw512 = Kelvar::Raw<512>;
using Raw1024 = Kelvar::Raw<1024>;
using Raw4096 = Kelvar::Raw<4096>;
