// The cells of CSV.
#pragma once

#include <Vorn/Images.h>

#include <cstddef>
#include <string_view>
#include <vector>

namespace Vorn {

// The cells of a row of CSV without blanks around them, with where they begin. A row is one line: a
// quote without end is a BadText, and so is what follows a closing quote up to the comma.
std::vector<Piece> cellsOf( std::string_view line );

// Requires that the row has `count` cells, as the header has; otherwise a BadText.
void requireCells( const std::vector<Piece>& cells, std::size_t count );

} // namespace Vorn
