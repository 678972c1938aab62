// The primitives, bit by bit. What lies beyond an image reads as 0 and is not written.
#define KELVAR_BITBUF_WITHOUT_INLINE
#include <Kelvar/BitBuf.h>

#include "Primitives.h"

#include <algorithm>
#include <ostream>

namespace {

using Testing::Bits;
using Testing::Call;
using Testing::Primitive;

std::vector<Call>* kept = nullptr;

void keep( const Call& call ) {
   if( kept != nullptr ) {
      kept->push_back( call );
   }
}

bool bitOf( const U8* image, int length, int bit ) {
   return bit / 8 < length && ( image[bit / 8] >> bit % 8 & 1 ) != 0;
}

void bitIs( U8* image, int length, int bit, bool value ) {
   if( bit / 8 < length ) {
      const int mask = 1 << bit % 8;
      image[bit / 8] = static_cast<U8>( value ? image[bit / 8] | mask : image[bit / 8] & ~mask );
   }
}

// The first 1024 bits of an image.
Bits bitsOf( const void* image, int length ) {
   Bits bits;
   for( int bit = 0; bit < std::min<int>( 8 * length, bits.size() ); ++bit ) {
      bits[static_cast<std::size_t>( bit )] = bitOf( static_cast<const U8*>( image ), length, bit );
   }
   return bits;
}

} // namespace

void getBuf( const U8* src, int srcLen, U8* value, int valueLen, int width, int offset ) {
   keep(
      { Primitive::getBuf, src, srcLen, valueLen, width, offset, {}, bitsOf( value, valueLen ) } );
   for( int bit = 0; bit < width; ++bit ) {
      bitIs( value, valueLen, bit, bitOf( src, srcLen, offset + bit ) );
   }
}

void setBuf( U8* dst, int dstLen, const U8* value, int valueLen, int width, int offset ) {
   keep(
      { Primitive::setBuf, dst, dstLen, valueLen, width, offset, bitsOf( value, valueLen ), {} } );
   for( int bit = 0; bit < width; ++bit ) {
      bitIs( dst, dstLen, offset + bit, bitOf( value, valueLen, bit ) );
   }
}

void maskBuf( const U32* src, int srcWords, U32* dst, int dstWords, const U32* mask,
              int maskWords ) {
   keep( { Primitive::maskBuf, src, srcWords, dstWords, maskWords, 0, bitsOf( mask, 4 * maskWords ),
           bitsOf( dst, 4 * dstWords ) } );
   const auto* from = reinterpret_cast<const U8*>( src );
   for( int bit = 0; bit < 32 * dstWords; ++bit ) {
      bitIs( reinterpret_cast<U8*>( dst ), 4 * dstWords, bit,
             bitOf( from, 4 * srcWords, bit ) &&
                bitOf( reinterpret_cast<const U8*>( mask ), 4 * maskWords, bit ) );
   }
}

namespace Testing {

std::ostream& operator<<( std::ostream& out, const Call& call ) {
   const char* const names[] = { "getBuf", "setBuf", "maskBuf" };
   return out << names[static_cast<int>( call.primitive )] << "( " << call.image << ", "
              << call.imageLen << ", value of " << call.valueLen << ", " << call.width << ", "
              << call.offset << " ), given " << call.given.count() << " ones, found "
              << call.found.count();
}

std::vector<Call> callsOf( Action action ) {
   std::vector<Call> calls;
   kept = &calls;
   action();
   kept = nullptr;
   return calls;
}

} // namespace Testing
