// Digits of numbers and bytes, many at a time.
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace Vorn {

namespace {

static_assert( std::endian::native == std::endian::little, "the first digit is the lowest byte" );

// The digits of eight bytes, as bytes and as pairs.
using Digits = U8 __attribute__( ( vector_size( 16 ) ) );
using Pairs = U16 __attribute__( ( vector_size( 16 ) ) );
using Bytes = U8 __attribute__( ( vector_size( 8 ) ) );

constexpr std::size_t atOnce = sizeof( Bytes );

void writeEight( char* to, const U8* from ) {
   Bytes bytes;
   std::memcpy( &bytes, from, sizeof bytes );
   const Pairs wide = __builtin_convertvector( bytes, Pairs );
   // The higher digit of a byte comes first.
   const auto digits = reinterpret_cast<Digits>( ( wide >> 4 | wide << 8 ) & 0x0f0f );
   constexpr U8 fromNineToA = 'a' - '9' - 1;
   const auto letters = reinterpret_cast<Digits>( digits > 9 ) & fromNineToA;
   const Digits text = digits + '0' + letters;
   std::memcpy( to, &text, sizeof text );
}

// Reads the digits of eight bytes. Sets bits of `bad` where they are none.
void readEight( const char* text, U8* to, Digits& bad ) {
   Digits digits;
   std::memcpy( &digits, text, sizeof digits );
   const Digits decimal = digits - U8{ '0' };
   const Digits letter = ( digits | U8{ 0x20 } ) - U8{ 'a' };
   const auto isDecimal = reinterpret_cast<Digits>( decimal <= 9 );
   const auto isLetter = reinterpret_cast<Digits>( letter <= 5 );
   bad |= ~( isDecimal | isLetter );
   const auto pairs =
      reinterpret_cast<Pairs>( ( decimal & isDecimal ) | ( ( letter + U8{ 10 } ) & isLetter ) );
   const Bytes bytes = __builtin_convertvector( ( pairs << 4 | pairs >> 8 ) & 0xff, Bytes );
   std::memcpy( to, &bytes, sizeof bytes );
}

// The eight decimal digits of a number, the first one lowest: halves, quarters and single digits
// are divided side by side.
U64 eightDigits( U64 number ) {
   const U64 halves = number / 10000 | number % 10000 << 32;
   const U64 hundreds = halves * 10486 >> 20 & 0x7f0000007f;
   const U64 quarters = hundreds | ( halves - 100 * hundreds ) << 16;
   const U64 tens = quarters * 103 >> 10 & 0x000f000f000f000f;
   return tens | ( quarters - 10 * tens ) << 8;
}

constexpr U64 zeroes = 0x3030303030303030;

} // namespace

char* writeHex( char* to, std::span<const U8> bytes ) {
   const U8* from = bytes.data();
   std::size_t left = bytes.size();
   for( ; left >= atOnce; left -= atOnce, from += atOnce, to += 2 * atOnce ) {
      writeEight( to, from );
   }
   if( left > 0 ) {
      U8 last[atOnce] = {};
      char text[2 * atOnce];
      std::memcpy( last, from, left );
      writeEight( text, last );
      std::memcpy( to, text, 2 * left );
   }
   return to + 2 * left;
}

bool readHex( const char* text, std::span<U8> bytes ) {
   U8* to = bytes.data();
   std::size_t left = bytes.size();
   Digits bad{};
   for( ; left >= atOnce; left -= atOnce, to += atOnce, text += 2 * atOnce ) {
      readEight( text, to, bad );
   }
   if( left > 0 ) {
      char last[2 * atOnce];
      std::memset( last, '0', sizeof last );
      std::memcpy( last, text, 2 * left );
      U8 read[atOnce];
      readEight( last, read, bad );
      std::memcpy( to, read, left );
   }
   U64 halves[2];
   std::memcpy( halves, &bad, sizeof bad );
   return ( halves[0] | halves[1] ) == 0;
}

char* writeDecimal( char* to, U64 number ) {
   if( number < 10 ) {
      *to = static_cast<char>( '0' + number );
      return to + 1;
   }
   constexpr U64 beyondEight = 100'000'000;
   if( number < beyondEight ) {
      const U64 digits = eightDigits( number );
      const unsigned unused = static_cast<unsigned>( std::countr_zero( digits ) ) / 8;
      const U64 text = ( digits | zeroes ) >> 8 * unused;
      std::memcpy( to, &text, sizeof text );
      return to + 8 - unused;
   }
   to = writeDecimal( to, number / beyondEight );
   const U64 text = eightDigits( number % beyondEight ) | zeroes;
   std::memcpy( to, &text, sizeof text );
   return to + 8;
}

char* writeHex( char* to, const Value& value ) {
   constexpr unsigned ofWord = 16;
   const unsigned digits = std::max( ( value.bits() + 3 ) / 4, 1u );
   *to++ = '0';
   *to++ = 'x';
   for( unsigned word = ( digits - 1 ) / ofWord + 1; word-- > 0; ) {
      U8 bytes[sizeof( U64 )];
      std::memcpy( bytes, &value.words()[word], sizeof bytes );
      std::reverse( std::begin( bytes ), std::end( bytes ) );
      char text[ofWord];
      writeEight( text, bytes );
      const unsigned count = std::min( digits - ofWord * word, ofWord );
      std::memcpy( to, text + ofWord - count, count );
      to += count;
   }
   return to;
}

} // namespace Vorn
