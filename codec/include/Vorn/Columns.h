// Many images at once: fields as columns, with a row for each image.
#pragma once

#include <Vorn/Compose.h>
#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <concepts>
#include <cstddef>
#include <memory>
#include <ranges>
#include <span>
#include <string_view>
#include <type_traits>

namespace Vorn {

// The element types of a column.
template<class Element>
concept ColumnElement =
   std::unsigned_integral<Element> && !std::same_as<std::remove_cv_t<Element>, bool>;

// Moves fields between images and columns.
//
//    const Vorn::Layout lif( "LifTable", "BCM88690_B0" );
//    std::vector<U16> vsis( dump.size() / lif.bytes() );
//    std::vector<U8> profiles( vsis.size() );
//    Vorn::Columns columns( lif );
//    columns.add( "vsi", vsis );
//    columns.add( "inLifProfile", profiles );
//    columns.decode( dump ); // fills both columns from the images in `dump`
//    columns.encode( dump ); // sets just these fields in every image
//
// A column is the caller's array of unsigned integers at least as wide as the field; the narrowest
// type is the fastest. A field of more than 64 bits takes U64: its 64-bit words row by row, the
// least significant first. The arrays must not move between add() and the last use of the columns,
// and must not share memory with each other or with the images.
//
// Making columns of twenty fields costs as much as typed accessors do for about twenty images: keep
// them for all calls. Threads may use the same columns if no two calls work on the same arrays.
class VORN_API Columns {
public:
   explicit Columns( Layout layout );
   Columns( Columns&& other ) noexcept;
   Columns& operator=( Columns&& other ) noexcept;
   ~Columns();

   const Layout& layout() const;

   // The column of the named field: a vector, an array or a span. A column of const elements can
   // only be encoded, a read-only field only decoded. A field that the pair lacks, one that has a
   // column already, and elements that are too narrow are Errors.
   template<std::ranges::contiguous_range Range>
   requires std::ranges::sized_range<Range> && std::ranges::borrowed_range<Range> &&
      ColumnElement<std::ranges::range_value_t<Range>>
   void add( std::string_view name, Range&& column ) {
      add( name, std::ranges::data( column ), std::ranges::size( column ),
           sizeof( std::ranges::range_value_t<Range> ) );
   }

   // The same for a type known only at run time. `elementBytes` is 1, 2, 4 or 8, and `data` is
   // aligned to it; otherwise an Error.
   void add( std::string_view name, void* data, std::size_t elements, std::size_t elementBytes );
   void add( std::string_view name, const void* data, std::size_t elements,
             std::size_t elementBytes );

   // Fills the columns from images that lie one after another, or `stride` bytes apart; the bytes
   // after the last image up to the stride may be missing. Errors, which leave the columns as they
   // are: surplus bytes, a stride shorter than an image, a column with another number of rows, and
   // a column of const elements.
   void decode( std::span<const U8> images ) const;
   void decode( std::span<const U8> images, std::size_t stride ) const;

   // Sets the columns' fields in each image and leaves all other bits as they are. Errors, which
   // leave all images as they are: those of decode() except the last, a column of a read-only
   // field, and in any row a value too large for its field or, unless the later column wins, one
   // that contradicts another column or the tag in shared bits.
   void encode( std::span<U8> images, Overlap overlap = Overlap::refused ) const;
   void encode( std::span<U8> images, std::size_t stride,
                Overlap overlap = Overlap::refused ) const;

private:
   struct State;

   void add( std::string_view name, const void* data, std::size_t elements,
             std::size_t elementBytes, bool constant );

   std::unique_ptr<State> state_;
};

} // namespace Vorn
