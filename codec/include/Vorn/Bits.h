// The bits of an image: the one place where fields are read and written.
#pragma once

#include <Kelvar/Types.h>

#include <bit>
#include <cstddef>
#include <cstring>

namespace Vorn::Detail {

static_assert( std::endian::native == std::endian::little, "bit 0 is the lowest bit of byte 0" );

inline U64 wordAt( const U8* bytes ) {
   U64 word;
   std::memcpy( &word, bytes, sizeof word );
   return word;
}

// The eight bytes in which bits of an image lie, or all of a shorter image; never a byte beyond it.
struct Window {
   std::size_t begin;
   std::size_t bytes; // 8, or fewer of an image that has no more
   unsigned shift;    // where the bits begin
   bool isSplit;      // they continue in the byte after these

   Window( std::size_t size, std::size_t offset, unsigned width )
      : begin( offset / 8 ), bytes( 8 ), shift( static_cast<unsigned>( offset % 8 ) ),
        isSplit( false ) {
      if( begin + 8 <= size ) [[likely]] {
         isSplit = shift + width > 64;
      } else {
         bytes = size < 8 ? size : 8;
         begin = size - bytes;
         shift = static_cast<unsigned>( offset - 8 * begin );
      }
   }

   // The bytes of the window, shifted so that the bits are at the lower end.
   U64 read( const U8* image ) const {
      U64 word = 0;
      if( bytes == 8 ) [[likely]] {
         word = wordAt( image + begin );
      } else {
         std::memcpy( &word, image, bytes );
      }
      word >>= shift;
      if( isSplit ) {
         word |= U64( image[begin + 8] ) << ( 64 - shift );
      }
      return word;
   }
};

// The `width` bits at `offset`, 1 to 64 of them, which must lie within the `size` bytes of the
// image.
inline U64 bitsAt( const U8* image, std::size_t size, std::size_t offset, unsigned width ) {
   return Window( size, offset, width ).read( image ) & ~U64( 0 ) >> ( 64 - width );
}

// Reads the same bits of many images, each of `size` bytes or more.
class BitsReader {
public:
   BitsReader( std::size_t size, std::size_t offset, unsigned width )
      : window_( size, offset, width ), ones_( ~U64( 0 ) >> ( 64 - width ) ) {}

   U64 read( const U8* image ) const { return window_.read( image ) & ones_; }

private:
   Window window_;
   U64 ones_;
};

// Replaces the `width` bits at `offset` with those of `value`, which has no others.
inline void bitsAtAre( U8* image, std::size_t size, std::size_t offset, unsigned width,
                       U64 value ) {
   const Window window( size, offset, width );
   const U64 ones = ~U64( 0 ) >> ( 64 - width );
   U64 word = 0;
   std::memcpy( &word, image + window.begin, window.bytes );
   word = ( word & ~( ones << window.shift ) ) | value << window.shift;
   std::memcpy( image + window.begin, &word, window.bytes );
   if( window.isSplit ) {
      const unsigned done = 64 - window.shift;
      U8& last = image[window.begin + 8];
      last = static_cast<U8>( ( last & ~( ones >> done ) ) | value >> done );
   }
}

} // namespace Vorn::Detail
