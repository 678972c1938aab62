// What changes in a table's entry from one pair of chip type and variant to another.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vorn {

// The dimensions of a memory or register, by the names that people know: "words", "entries",
// "arrayElements", "instances".
struct Number {
   std::string_view name;
   U32 value;
};
VORN_API std::array<Number, 4> numbersOf( const Hardware::PairInfo& info );

struct Difference {
   // Where a field lies.
   struct Bits {
      U32 offset;
      U32 width;

      friend bool operator==( const Bits&, const Bits& ) = default;
   };

   // A dimension of the memory or register.
   struct Number {
      std::string_view name;
      U32 from;
      U32 to;
   };

   struct Field {
      std::string_view name;
      std::optional<Bits> from; // its bits; nothing if the pair lacks the field
      std::optional<Bits> to;

      // "gone", "new", or how it has changed: "moved", "moved, widened".
      VORN_API std::string change() const;
   };

   std::vector<Number> numbers; // those that differ
   std::vector<Field> fields;   // those that differ, in bit order
   std::size_t unchanged;       // number of fields that don't differ

   bool isNone() const { return numbers.empty() && fields.empty(); }
};

// Layouts of different tables are an Error.
//
//    const auto difference = Vorn::differenceOf( Vorn::Layout( "LifTable", 2, 6 ),
//                                                Vorn::Layout( "LifTable", 3, 6 ) );
VORN_API Difference differenceOf( const Layout& from, const Layout& to );

// An entry at one point in time.
struct EntryState {
   const Layout* layout = nullptr; // none where there is no entry
   std::span<const U8> image;
};

// What happened to an entry.
struct EntryChange {
   enum class Kind { none, added, removed, changed, replaced };

   Kind kind = Kind::none;
   std::vector<Field> fields; // the fields of a changed entry that differ; none if only bits of no
                              // field do

   // "added", "removed", "changed"; "replaced" by one of another pair.
   VORN_API std::string_view text() const;
};

// Compares entries with their earlier state.
//
//    Vorn::EntryComparison comparison;
//    comparison.changeOf( { &lif, before }, { &lif, after } ).fields
//
// An image of zeroes without its pair's tag is no entry: it was never written.
class VORN_API EntryComparison {
public:
   // Compares all fields, but of a field that contains narrower ones only the bits outside these.
   // With a list, as for fieldsIn(), compares the fields of the list, all of their bits.
   explicit EntryComparison( std::string fields = {} ) : list_( std::move( fields ) ) {}

   // An image that ends before its last field is an Error, and so is a listed field that its pair
   // lacks.
   EntryChange changeOf( EntryState before, EntryState after );

private:
   // A field, and the bits that count for it.
   struct Looked {
      Field field;
      std::vector<Difference::Bits> bits; // 64 or less each
   };

   const std::vector<Looked>& lookedAt( const Layout& layout );

   std::string list_;
   std::vector<std::pair<Layout, std::vector<Looked>>> looked_;
};

} // namespace Vorn
