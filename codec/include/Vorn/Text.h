// Pieces of messages: what was given, lists, ranges, bytes.
#pragma once

#include <Vorn/Export.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace Vorn {

// `text` with control characters and invalid UTF-8 escaped, and truncated to `limit` bytes, so that
// it fits into a message of one line.
VORN_API std::string shown( std::string_view text, std::size_t limit = 60 );

// The same in double quotes.
VORN_API std::string inQuotes( std::string_view text );

// The column, counted in characters of UTF-8 from 1, of the byte at position `at` of the line.
VORN_API std::size_t columnOf( std::string_view line, std::size_t at );

// Whether a line has nothing but blanks and perhaps a comment, which "#" begins.
VORN_API bool isBlankLine( std::string_view line );

// Whether a text has only printable characters of UTF-8 and blanks, line ends among them; the last
// character may be incomplete if the text is cut there.
VORN_API bool isPrintable( std::string_view text, bool isCut = false );

// "1 byte", "2 bytes"; `more` is the plural of a word that doesn't just take an s.
VORN_API std::string countOf( U64 count, std::string_view one, std::string_view more = {} );

// "one, two, three".
VORN_API std::string listOf( std::span<const std::string_view> names,
                             std::string_view between = ", " );

// Ascending numbers as "0-4,6"; two neighbours stay "2,3".
VORN_API std::string rangesOf( std::span<const U32> numbers );

// Appends two lower-case digits for each byte, with `between` put between the bytes.
VORN_API void appendHex( std::string& text, std::span<const U8> bytes,
                         std::string_view between = {} );

// Appends the 32-bit words of an entry, the lowest byte of each first: "0x00000fa0 0x00000000". The
// bytes are whole words.
VORN_API void appendWords( std::string& text, std::span<const U8> bytes );

// Writes two lower-case digits for each byte to `to`, which must have room for them; returns their
// end.
VORN_API char* writeHex( char* to, std::span<const U8> bytes );

// Reads two hexadecimal digits from `text` for each of the bytes. Returns false if there are other
// characters; the bytes then have no meaning.
VORN_API bool readHex( const char* text, std::span<U8> bytes );

// Writes the number in decimal digits to `to`, which must have room for 20; returns their end.
VORN_API char* writeDecimal( char* to, U64 number );

} // namespace Vorn
