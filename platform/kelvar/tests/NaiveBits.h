// Bit-buffer primitives as one would write them in a minute, and buffers that notice a stray
// access.
#pragma once

#include <Kelvar/Types.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

namespace Testing {

using Bytes = std::vector<U8>;

inline bool bitOf( const Bytes& image, int bit ) {
   return ( image[static_cast<std::size_t>( bit / 8 )] >> bit % 8 & 1 ) != 0;
}

inline void bitIs( Bytes& image, int bit, bool on ) {
   U8& byte = image[static_cast<std::size_t>( bit / 8 )];
   const U8 mask = static_cast<U8>( 1u << bit % 8 );
   byte = static_cast<U8>( on ? byte | mask : byte & ~mask );
}

// Copies `width` bits from bit `fromOffset` of `from` to bit `toOffset` of `to`.
inline void naiveCopy( const Bytes& from, int fromOffset, Bytes& to, int toOffset, int width ) {
   for( int i = 0; i < width; ++i ) {
      bitIs( to, toOffset + i, bitOf( from, fromOffset + i ) );
   }
}

// The number of bytes that hold `bits` bits.
inline int bytesFor( int bits ) { return ( bits + 7 ) / 8; }

// Random bytes, the same ones in every run.
inline Bytes randomBytes( int count ) {
   static std::mt19937_64 generator( 20240607 );
   Bytes bytes( static_cast<std::size_t>( count ) );
   for( std::size_t at = 0; at < bytes.size(); at += 8 ) {
      const U64 word = generator();
      std::memcpy( &bytes[at], &word, std::min<std::size_t>( 8, bytes.size() - at ) );
   }
   return bytes;
}

// A copy of an image on the heap, of exactly its length: the address sanitizer sees an overrun.
class ExactBuffer {
public:
   explicit ExactBuffer( const Bytes& image )
      : size_( image.size() ), bytes_( new U8[image.size()] ) {
      std::copy( image.begin(), image.end(), bytes_.get() );
   }

   U8* bytes() { return bytes_.get(); }
   int length() const { return static_cast<int>( size_ ); }
   bool holds( const Bytes& image ) const {
      return std::equal( image.begin(), image.end(), bytes_.get(), bytes_.get() + size_ );
   }

private:
   std::size_t size_;
   std::unique_ptr<U8[]> bytes_;
};

// A copy of an image between guard bytes, at any alignment: a stray write shows without sanitizer.
class GuardedBuffer {
public:
   GuardedBuffer( const Bytes& image, int alignment )
      : front_( static_cast<std::size_t>( 16 + alignment ) ), size_( image.size() ),
        all_( front_ + size_ + 16, guard ) {
      std::copy( image.begin(), image.end(), bytes() );
   }

   U8* bytes() { return all_.data() + front_; }
   int length() const { return static_cast<int>( size_ ); }
   bool holds( const Bytes& image ) const {
      const auto begin = all_.begin() + static_cast<std::ptrdiff_t>( front_ );
      const auto end = begin + static_cast<std::ptrdiff_t>( size_ );
      const auto isGuard = []( U8 byte ) { return byte == guard; };
      return std::all_of( all_.begin(), begin, isGuard ) &&
             std::all_of( end, all_.end(), isGuard ) &&
             std::equal( begin, end, image.begin(), image.end() );
   }

private:
   static constexpr U8 guard = 0xa5;

   std::size_t front_;
   std::size_t size_;
   Bytes all_;
};

} // namespace Testing
