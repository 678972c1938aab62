// The values of fields: unsigned numbers of up to 512 bits, read from text and written to it.
#pragma once

#include <Vorn/Export.h>

#include <Kelvar/Types.h>

#include <array>
#include <bit>
#include <compare>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>

namespace Vorn {

// An unsigned number of up to 512 bits.
//
//    const Vorn::Value address = Vorn::parseValue( "2001:db8::1", "ipv6Dip" );
//    address.bits();                // 126
//    Vorn::hexOf( address );        // "0x20010db8000000000000000000000001"
//    address > 0xffff;              // true: compares with numbers, too
class VORN_API Value {
public:
   static constexpr unsigned maxBits = 512;

   // 64-bit words, the least significant first.
   using Words = std::array<U64, maxBits / 64>;

   Value() = default;
   // A negative number is an Error.
   template<std::integral Number>
   Value( Number number ) : words_{ unsignedOf( number ) } {
      bits_ = static_cast<unsigned>( std::bit_width( words_[0] ) );
   }
   explicit Value( const Words& words );

   // The largest number of `width` bits, at most 512.
   static Value onesOf( unsigned width );

   const Words& words() const { return words_; }
   U64 word( unsigned index ) const { return words_[index]; }

   // Stands for a number beyond 512 bits: its bits() are more than any field has, its words have no
   // meaning.
   static Value tooLarge();

   // The position of the highest set bit plus one; 0 for the number 0.
   unsigned bits() const { return bits_; }

   friend bool operator==( const Value& left, const Value& right ) = default;
   friend std::strong_ordering operator<=>( const Value& left, const Value& right ) {
      return left.compared( right );
   }

private:
   template<std::integral Number>
   static U64 unsignedOf( Number number ) {
      if constexpr( std::signed_integral<Number> ) {
         if( number < 0 ) {
            refuseNegative( number );
         }
      }
      return static_cast<U64>( number );
   }
   [[noreturn]] static void refuseNegative( long long number );
   std::strong_ordering compared( const Value& other ) const;

   Words words_{};
   unsigned bits_ = 0;
};

// "0x" and the fewest lower-case digits; "0x0" for zero.
VORN_API std::string hexOf( const Value& value );

// The same, appended.
VORN_API void appendHex( std::string& text, const Value& value );

// The same, written to `to`, which must have room for 130 characters even for a short number;
// returns their end.
VORN_API char* writeHex( char* to, const Value& value );

// The number that `text` writes in decimal digits, in hexadecimal digits after 0x or in binary
// digits after 0b, perhaps with underscores between digits. A number beyond 512 bits is no Error
// here: it only has more bits() than any field. Anything else is an Error, whose message calls the
// number by `name`.
VORN_API Value parseNumber( std::string_view text, std::string_view name );

// The same, but nothing if `text` is no number.
VORN_API std::optional<Value> numberIn( std::string_view text );

// The same for the value of a field, which may also be an IPv4, IPv6 or MAC address. An address is
// its bytes, in transmission order, read as one number: 10.0.0.1 is 0x0a000001. The form of the
// text determines the notation without ambiguity.
VORN_API Value parseValue( std::string_view text, std::string_view name );

// The word for a value with ones in all bits of a field.
inline constexpr std::string_view maskWord = "mask";

// A number that indexes or selects something. A number beyond 64 bits is an Error, too; `largest`
// is the largest number that can ever be right, for its message.
VORN_API U64 parseIndex( std::string_view text, std::string_view name, U64 largest );

// The largest number of `width` bits, for a message: "0xfffff", or "2^512 - 1" when too long.
VORN_API std::string largestOf( unsigned width );

} // namespace Vorn
