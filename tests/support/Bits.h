// Naive bit arithmetic over byte images: what the library is checked against.
#pragma once

#include <Kelvar/Types.h>

#include <bitset>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace Testing {

// A value of any field or whole entry, bit 0 the least significant.
using Bits = std::bitset<1024>;

using Image = std::vector<U8>;

inline bool bitOf( const Image& image, unsigned bit ) {
   return ( image[bit / 8] >> bit % 8 & 1 ) != 0;
}

inline void bitIs( Image& image, unsigned bit, bool value ) {
   const U8 mask = static_cast<U8>( 1u << bit % 8 );
   image[bit / 8] = static_cast<U8>( value ? image[bit / 8] | mask : image[bit / 8] & ~mask );
}

inline Bits bitsAt( const Image& image, unsigned offset, unsigned width ) {
   Bits bits;
   for( unsigned bit = 0; bit < width; ++bit ) {
      bits[bit] = bitOf( image, offset + bit );
   }
   return bits;
}

inline void bitsAtAre( Image& image, unsigned offset, unsigned width, const Bits& bits ) {
   for( unsigned bit = 0; bit < width; ++bit ) {
      bitIs( image, offset + bit, bits[bit] );
   }
}

inline Bits lowOnes( unsigned width ) {
   Bits bits;
   for( unsigned bit = 0; bit < width; ++bit ) {
      bits.set( bit );
   }
   return bits;
}

// "0x12abc", without leading zeros.
inline std::string hexOf( Bits bits ) {
   std::string digits;
   do {
      digits.insert( digits.begin(), "0123456789abcdef"[( bits & Bits( 15 ) ).to_ulong()] );
      bits >>= 4;
   } while( bits.any() );
   return "0x" + digits;
}

// Between Bits and an integer or a Raw value, through its bytes.
template<class Value>
Bits toBits( const Value& value ) {
   Image image( sizeof( Value ) );
   std::memcpy( image.data(), &value, sizeof( Value ) );
   return bitsAt( image, 0, 8 * sizeof( Value ) );
}

template<class Value>
Value fromBits( const Bits& bits ) {
   Image image( sizeof( Value ) );
   bitsAtAre( image, 0, 8 * sizeof( Value ), bits );
   Value value;
   std::memcpy( &value, image.data(), sizeof( Value ) );
   return value;
}

inline Image randomImage( std::size_t size, std::mt19937& random ) {
   Image image( size );
   for( U8& byte : image ) {
      byte = static_cast<U8>( random() );
   }
   return image;
}

inline Bits randomBits( unsigned width, std::mt19937& random ) {
   return bitsAt( randomImage( ( width + 7 ) / 8, random ), 0, width );
}

} // namespace Testing
