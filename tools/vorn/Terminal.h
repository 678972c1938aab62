// Colours, which only a person at a terminal sees.
#pragma once

#include "Text.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Whether what is written to the file descriptor may be coloured: it is a terminal, TERM isn't
// "dumb", and NO_COLOR is unset or empty.
bool hasColours( int descriptor );

enum class Paint {
   error,   // what stands before the message of an error
   heading, // the names of columns
};

// `text` as it is to be written to the file descriptor: painted if it has colours, else unchanged.
std::string painted( Paint paint, std::string_view text, int descriptor );

// Writes `prefix`, painted as that of an error, and `message` as one line to standard error.
void printError( std::string_view prefix, std::string_view message );

// The same for an Error; without a place it begins with the program's name.
void printError( const Error& error );

// A warning about what is at the place, or about all if that is empty.
void printWarning( std::string_view place, std::string_view message );

// The line of a table's headings for standard output.
std::string headingsOf( std::span<const Align> columns, std::span<const std::size_t> widths,
                        const std::vector<std::string>& names );

// The lines of a table for standard output; the first of its rows is its headings.
std::string tableOf( std::span<const Align> columns,
                     std::span<const std::vector<std::string>> rows );

} // namespace Vorn
