// Text for people: wrapped paragraphs and aligned columns.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// The paragraphs of `text`, which newlines separate, in lines of at most `columns` columns. A
// paragraph that begins with a space is left as it is.
std::string wrapped( std::string_view text, std::size_t columns = 80 );

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
