// Field values of up to 512 bits: read from the notations that people write them in, and printed.
#pragma once

#include <Kelvar/Types.h>

#include <array>
#include <optional>
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

// The number that `text` writes in decimal digits, in hexadecimal digits after 0x or in binary
// digits after 0b, perhaps with underscores between digits. A number beyond 512 bits is not an
// error here, it only has more `bits` than any field. Anything else is an Error, whose message
// calls the number by `name`.
Value parseNumber( std::string_view text, std::string_view name );

// The same, but nothing where `text` is no number.
std::optional<Value> numberIn( std::string_view text );

// The same for the value of a field, which may be an IPv4, IPv6 or MAC address, too. An address is
// its bytes, in the order in which they are sent, read as one number: 10.0.0.1 is 0x0a000001. The
// form of the text alone tells which notation it is, and no text has two.
Value parseValue( std::string_view text, std::string_view name );

// What is given in place of a value for ones in all bits of a field.
constexpr std::string_view maskWord = "mask";

// All this for a person: paragraphs of a verb's help.
std::string notationsParagraphs();

// A number that indexes or selects something. What is beyond 64 bits is an Error, too; `largest` is
// the largest number that can ever be right, for its message.
U64 parseIndex( std::string_view text, std::string_view name, U64 largest );

// "0x" and the fewest lower-case digits; "0x0" for zero.
std::string hexOf( const Value& value );
std::string hexOf( U64 number );

// The same, appended.
void appendHex( std::string& text, const Value& value );

// The largest number of `width` bits, for a message: "0xfffff", or "2^512 - 1" when too long.
std::string largestOf( unsigned width );

} // namespace Vorn
