// What changes in a table's entry from one pair of chip type and variant to another.
#pragma once

#include "Format.h"
#include "Plan.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

struct Difference {
   // A number of the memory.
   struct Number {
      std::string_view name;
      U32 from;
      U32 to;
   };

   struct Field {
      std::string_view name;
      std::optional<Format::Run> from; // its bits; nothing where the pair lacks the field
      std::optional<Format::Run> to;

      // "gone", "new", or how it has changed: "moved", "moved, widened".
      std::string change() const;
   };

   std::vector<Number> numbers; // those that differ
   std::vector<Field> fields;   // those that differ, in bit order
   std::size_t unchanged;       // fields

   bool isNone() const { return numbers.empty() && fields.empty(); }
};

// The plans are of one table.
Difference differenceOf( const Plan& from, const Plan& to );

// As lines for a person, and as one JSON object.
std::string differenceLines( const Plan& from, const Plan& to );
std::string differenceJson( const Plan& from, const Plan& to );

} // namespace Vorn
