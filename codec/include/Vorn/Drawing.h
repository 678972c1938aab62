// What a drawing of an entry shows, as text or as a picture: rows of 32 bits, cut into cells.
#pragma once

#include <Vorn/BitOrder.h>
#include <Vorn/Export.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// The bits of one field, or of none, in one row. Bits are counted in the entry.
struct DrawingCell {
   const BitOrder::Field* field; // null for bits that belong to no field
   unsigned low;
   unsigned high;
   std::vector<std::string> label{}; // its lines

   // As the row has them: 31 is at the left.
   unsigned left() const { return high % 32; }
   unsigned right() const { return low % 32; }
   unsigned bits() const { return left() - right() + 1; }
};

// One word of the entry, or several consecutive words that look the same: each belongs to one field
// as a whole, or to none.
struct DrawingRow {
   unsigned firstWord;
   unsigned lastWord;
   std::vector<std::vector<DrawingCell>> strips; // one reading of the bits each; ascending bits

   VORN_API std::string wordText() const; // "0", "6-19"
   unsigned low() const { return firstWord * 32; }
   unsigned high() const { return lastWord * 32 + 31; }
};

// How much of a label fits into a cell: `columns( bits )` characters in each of `lines` lines.
struct DrawingRoom {
   std::size_t ( *columns )( unsigned bits );
   std::size_t lines;
};

// A format cut into rows and cells, which are labelled as far as there is room.
class VORN_API Drawing {
public:
   // The format must outlive the drawing.
   Drawing( const BitOrder& format, const DrawingRoom& room );

   const BitOrder& format() const { return format_; }
   std::span<const DrawingRow> rows() const { return rows_; }

   // Stands for the field's name where that doesn't fit; empty if it always fits.
   const std::string& key( const BitOrder::Field& field ) const { return keys_[indexOf( field )]; }

private:
   std::size_t indexOf( const BitOrder::Field& field ) const;
   void cut();
   void label( const DrawingRoom& room );

   const BitOrder& format_;
   std::vector<DrawingRow> rows_;
   std::vector<std::string> keys_; // of each field
};

// `name` in at most `lines` lines of at most `columns` columns, broken between its words; empty if
// it doesn't fit.
VORN_API std::vector<std::string> broken( std::string_view name, std::size_t columns,
                                          std::size_t lines );

} // namespace Vorn
