// Field values of up to 512 bits: read from decimal or hexadecimal text, and printed.
#include "Values.h"

#include "Error.h"
#include "Text.h"

#include <bit>
#include <cstddef>

namespace Vorn {

static_assert( std::endian::native == std::endian::little, "a Value's words are its byte image" );

namespace {

constexpr unsigned notADigit = 255;

constexpr unsigned digitOf( char c ) {
   if( c >= '0' && c <= '9' ) {
      return static_cast<unsigned>( c - '0' );
   }
   if( c >= 'a' && c <= 'f' ) {
      return static_cast<unsigned>( c - 'a' + 10 );
   }
   if( c >= 'A' && c <= 'F' ) {
      return static_cast<unsigned>( c - 'A' + 10 );
   }
   return notADigit;
}

// value = value * base + digit; whether that fits.
bool appendDigit( Value& value, unsigned base, unsigned digit ) {
   U64 carry = digit;
   for( U64& word : value.words ) {
      const U64 low = ( word & 0xffffffff ) * base + carry;
      const U64 high = ( word >> 32 ) * base + ( low >> 32 );
      word = ( high << 32 ) | ( low & 0xffffffff );
      carry = high >> 32;
   }
   return carry == 0;
}

} // namespace

Value::Value( U64 number ) : bits( static_cast<unsigned>( std::bit_width( number ) ) ) {
   words[0] = number;
}

void Value::measure() {
   std::size_t count = words.size();
   while( count > 0 && words[count - 1] == 0 ) {
      --count;
   }
   bits = 0;
   if( count > 0 ) {
      bits = static_cast<unsigned>( ( count - 1 ) * 64 ) +
             static_cast<unsigned>( std::bit_width( words[count - 1] ) );
   }
}

Value parseValue( std::string_view text, std::string_view name ) {
   const bool hexadecimal = text.starts_with( "0x" ) || text.starts_with( "0X" );
   const unsigned base = hexadecimal ? 16 : 10;
   const auto digits = text.substr( hexadecimal ? 2 : 0 );
   const auto bad = [&] {
      if( text.size() > 1 && text[0] == '-' && digitOf( text[1] ) < 10 ) {
         return Error( "negative value " + shown( text ) + " for " + shown( name ) +
                       "; a value is 0 or more" );
      }
      return Error( "bad number " + inQuotes( text ) + " for " + shown( name ) +
                    "; write decimal digits, or 0x and hexadecimal digits" );
   };
   if( digits.empty() ) {
      throw bad();
   }
   Value value;
   bool fits = true;
   // Digits that cannot overflow one word, which are nearly always all there are.
   const std::size_t easy = hexadecimal ? 16 : 19;
   for( std::size_t i = 0; i < digits.size(); ++i ) {
      const unsigned digit = digitOf( digits[i] );
      if( digit >= base ) {
         throw bad();
      }
      if( i < easy ) {
         value.words[0] = value.words[0] * base + digit;
      } else {
         fits = fits && appendDigit( value, base, digit );
      }
   }
   value.measure();
   if( !fits ) {
      value.bits = Value::maxBits + 1;
   }
   return value;
}

U64 parseIndex( std::string_view text, std::string_view name, U64 largest ) {
   const Value value = parseValue( text, name );
   if( value.bits > 64 ) {
      throw Error( std::string( name ) + ' ' + shown( text ) + " is out of range; it is at most " +
                   std::to_string( largest ) );
   }
   return value.words[0];
}

std::string hexOf( const Value& value ) {
   constexpr char digits[] = "0123456789abcdef";
   std::string result = "0x";
   for( unsigned digit = value.bits == 0 ? 1 : ( value.bits + 3 ) / 4; digit-- > 0; ) {
      result += digits[value.words[digit / 16] >> ( digit % 16 * 4 ) & 15];
   }
   return result;
}

std::string hexOf( U64 number ) { return hexOf( Value( number ) ); }

std::string largestOf( unsigned width ) {
   return width <= 64 ? hexOf( ~U64( 0 ) >> ( 64 - width ) )
                      : "2^" + std::to_string( width ) + " - 1";
}

} // namespace Vorn
