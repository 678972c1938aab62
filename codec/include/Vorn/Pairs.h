// The tables, and the pairs of chip type and variant that each of them has.
#pragma once

#include <Vorn/Export.h>

#include <Kelvar/Types.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// The names of the tables and registers, in order.
VORN_API std::span<const std::string_view> allTables();

// The library's own copy of the name, which lives as long as the program. An unknown name is an
// Error.
VORN_API std::string_view tableNamed( std::string_view name );

// A chip type that a table serves.
struct ChipVariants {
   U32 chip;
   std::vector<U32> variants; // the valid ones, ascending; 0 where any is true
   bool any;                  // the table ignores the variant

   // "0-4,6", or "any".
   VORN_API std::string text() const;
};

// The variants of the named table on the chip type; nothing if the table doesn't serve it.
VORN_API std::optional<ChipVariants> variantsOn( std::string_view table, U32 chip );

// The pairs of the named table, in order of the chip type; none for an unknown table.
VORN_API std::vector<ChipVariants> pairsOf( std::string_view table );

// The pairs of the table that have the field.
VORN_API std::vector<ChipVariants> pairsWithField( std::string_view table, U32 identifier );

// Chip type numbers and their variants as "2,3: 0-4,6; 4-8: 0-6".
VORN_API std::string textOf( std::span<const ChipVariants> pairs );

} // namespace Vorn
