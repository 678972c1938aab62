// Digits of numbers and bytes, many at a time.
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <array>
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

// The three decimal digits of the numbers below 1000, the first one in the lowest byte.
constexpr auto threeDigits = [] {
   std::array<U32, 1000> digits{};
   for( U32 number = 0; number < digits.size(); ++number ) {
      digits[number] = number / 100 | number / 10 % 10 << 8 | number % 10 << 16;
   }
   return digits;
}();

constexpr U64 zeroes = 0x3030303030303030;

// Writes the eight digits, the first one in the lowest byte, without the `unused` first of them.
char* writeLast( char* to, U64 digits, unsigned unused ) {
   const U64 text = ( digits | zeroes ) >> 8 * unused;
   std::memcpy( to, &text, sizeof text );
   return to + 8 - unused;
}

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
   const auto unusedIn = []( U64 digits ) {
      return static_cast<unsigned>( std::countr_zero( digits ) ) / 8;
   };
   if( number < 1'000'000 ) [[likely]] {
      const auto small = static_cast<U32>( number );
      const U32 high = small / 1000;
      const U64 digits = U64( threeDigits[high] ) << 16 | U64( threeDigits[small - 1000 * high] )
                                                             << 40;
      return writeLast( to, digits, unusedIn( digits ) );
   }
   constexpr U64 beyondEight = 100'000'000;
   const auto rest = static_cast<U32>( number % beyondEight );
   const U32 thousands = rest / 1000;
   const U32 millions = rest / 1'000'000;
   const U64 digits = threeDigits[millions] >> 8 |
                      U64( threeDigits[thousands - 1000 * millions] ) << 16 |
                      U64( threeDigits[rest - 1000 * thousands] ) << 40;
   if( number < beyondEight ) {
      return writeLast( to, digits, unusedIn( digits ) );
   }
   return writeLast( writeDecimal( to, number / beyondEight ), digits, 0 );
}

char* writeHex( char* to, const Value& value ) {
   constexpr unsigned ofWord = 16;
   const unsigned digits = std::max( ( value.bits() + 3 ) / 4, 1u );
   *to++ = '0';
   *to++ = 'x';
   const auto writeWord = [&]( unsigned index, unsigned unused ) {
      const U64 word = __builtin_bswap64( value.words()[index] << 4 * unused );
      writeEight( to, reinterpret_cast<const U8*>( &word ) );
      to += ofWord - unused;
   };
   unsigned word = ( digits - 1 ) / ofWord;
   writeWord( word, ofWord * ( word + 1 ) - digits );
   while( word-- > 0 ) {
      writeWord( word, 0 );
   }
   return to;
}

} // namespace Vorn
