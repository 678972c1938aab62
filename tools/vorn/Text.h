// Text for people: quoting what was given, lists, ranges, hexadecimal bytes and aligned columns.
#pragma once

#include <Kelvar/Types.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// `text` with control characters and what is no UTF-8 escaped, and what is beyond `limit` bytes
// cut, so that it fits into a message of one line.
std::string shown( std::string_view text, std::size_t limit = 60 );

// The same in double quotes.
std::string inQuotes( std::string_view text );

// The column, counted in characters of UTF-8 from 1, of the byte at position `at` of the line.
std::size_t columnOf( std::string_view line, std::size_t at );

// The paragraphs of `text`, which newlines separate, in lines of at most so many columns. One
// that begins with a space is left as it is.
std::string wrapped( std::string_view text, std::size_t columns = 80 );

// "one, two, three".
std::string listOf( std::span<const std::string_view> names, std::string_view between = ", " );

// Ascending numbers as "0-4,6"; two neighbours stay "2,3".
std::string rangesOf( std::span<const U32> numbers );

// Appends two lower-case digits for each byte, with `between` put between the bytes.
void appendHex( std::string& text, std::span<const U8> bytes, std::string_view between = {} );

enum class Align { left, right };

// The width of each column, which is that of its widest cell. Every row has a cell for each column.
std::vector<std::size_t> widthsOf( std::span<const std::vector<std::string>> rows );

// A row of cells as a line of columns of these widths, two spaces apart.
std::string lineOf( std::span<const Align> columns, std::span<const std::size_t> widths,
                    const std::vector<std::string>& row );

// Rows of cells as lines of columns, each as wide as its widest cell.
std::string columnsOf( std::span<const Align> columns,
                       std::span<const std::vector<std::string>> rows );

} // namespace Vorn
