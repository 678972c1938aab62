// The chip types by name and number, and the pairs of chip type and variant that a table has.
#pragma once

#include <Kelvar/Types.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

struct Chip {
   U8 number;
   std::string name;
};

// Every chip type that has a name, in order of the number.
const std::vector<Chip>& allChips();

// The chip type with this name or this number, for example "BCM88690_B0" or "10". Else an Error.
const Chip& chipOf( std::string_view nameOrNumber );
const Chip& chipOf( U64 number );

// The chip types as "BCM88650_B0 (2), BCM88660_A0 (3)".
std::string listOfChips( const std::vector<U32>& numbers );

// A chip type that a table serves.
struct ChipVariants {
   U32 chip;
   std::vector<U32> variants; // the valid ones, ascending; without meaning where any is true
   bool any;                  // the table does not look at the variant

   // "0-4,6", or "any".
   std::string text() const;
};

// The variants of the named table on the chip type; nothing where it doesn't serve it.
std::optional<ChipVariants> variantsOn( std::string_view table, U32 chip );

// The pairs of the named table, in order of the chip type.
std::vector<ChipVariants> pairsOf( std::string_view table );

// The pairs of the named table that have the field.
std::vector<ChipVariants> pairsWithField( std::string_view table, U32 fieldId );

// Chip type numbers and their variants as "2,3: 0-4,6; 4-8: 0-6".
std::string textOf( const std::vector<ChipVariants>& pairs );

} // namespace Vorn
