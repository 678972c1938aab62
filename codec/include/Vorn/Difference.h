// What changes in a table's entry from one pair of chip type and variant to another.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// What a memory or register measures, by the names that people know: "words", "entries",
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

   // A number of the memory.
   struct Number {
      std::string_view name;
      U32 from;
      U32 to;
   };

   struct Field {
      std::string_view name;
      std::optional<Bits> from; // its bits; nothing where the pair lacks the field
      std::optional<Bits> to;

      // "gone", "new", or how it has changed: "moved", "moved, widened".
      VORN_API std::string change() const;
   };

   std::vector<Number> numbers; // those that differ
   std::vector<Field> fields;   // those that differ, in bit order
   std::size_t unchanged;       // fields

   bool isNone() const { return numbers.empty() && fields.empty(); }
};

// The layouts are of one table, else an Error.
//
//    const auto difference = Vorn::differenceOf( Vorn::Layout( "LifTable", 2, 6 ),
//                                                Vorn::Layout( "LifTable", 3, 6 ) );
VORN_API Difference differenceOf( const Layout& from, const Layout& to );

} // namespace Vorn
