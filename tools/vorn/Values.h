// Field values of up to 512 bits: read from decimal or hexadecimal text, and printed.
#pragma once

#include <Kelvar/Types.h>

#include <array>
#include <string>
#include <string_view>

namespace Vorn {

// An unsigned number of up to 512 bits.
struct Value {
   static constexpr unsigned maxBits = 512;

   std::array<U64, maxBits / 64> words{}; // the least significant first
   unsigned bits = 0; // position of the highest set bit plus one; above maxBits: too large to hold

   Value() = default;
   explicit Value( U64 number );

   // The image that the bit-buffer primitives take, of sizeof( words ) bytes.
   U8* bytes() { return reinterpret_cast<U8*>( words.data() ); }
   const U8* bytes() const { return reinterpret_cast<const U8*>( words.data() ); }

   // Sets `bits` after a write through bytes().
   void measure();
};

// The number that `text` writes in decimal digits, or in hexadecimal digits after 0x. A number
// beyond 512 bits is not an error here, it only has more `bits` than any field. Anything else is
// an Error, whose message calls the value by `name`.
Value parseValue( std::string_view text, std::string_view name );

// The same for a number that indexes or selects something. What is beyond 64 bits is an Error, too;
// `largest` is the largest number that can ever be right, for its message.
U64 parseIndex( std::string_view text, std::string_view name, U64 largest );

// "0x" and the fewest lower-case digits; "0x0" for zero.
std::string hexOf( const Value& value );
std::string hexOf( U64 number );

// The largest number of `width` bits, for a message: "0xfffff", or "2^512 - 1" when too long.
std::string largestOf( unsigned width );

} // namespace Vorn
