// Text for people: quoting what was given, lists, ranges, hexadecimal bytes and aligned columns.
#pragma once

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// `text` with control characters escaped and what is beyond `limit` bytes cut, so that it fits into
// a message of one line.
std::string shown( std::string_view text, std::size_t limit = 60 );

// The same in double quotes.
std::string inQuotes( std::string_view text );

// The paragraphs of `text`, which newlines separate, with lines of at most 80 columns. A paragraph
// that begins with a space is left as it is.
std::string wrapped( std::string_view text );

// "one, two, three".
std::string listOf( std::span<const std::string_view> names );

// Ascending numbers as "0-4,6"; two neighbours stay "2,3".
std::string rangesOf( std::span<const U32> numbers );

// Appends two lower-case digits for each byte, with `between` put between the bytes.
void appendHex( std::string& text, std::span<const U8> bytes, std::string_view between = {} );

enum class Align { left, right };

// Rows of cells as lines of columns two spaces apart. Every row has a cell for each column.
std::string columnsOf( std::span<const Align> columns,
                       std::span<const std::vector<std::string>> rows );

} // namespace Vorn
