// The parts of a description that the library still has at run time: where a field lies, a tag's
// value, and the limits of numbers.
#pragma once

#include <Kelvar/Types.h>

namespace Hardware::Layouts {

// Chip types are numbered below this; variants too. Variant 31 stands for all numbers from 31 on,
// which only classes without variants accept.
inline constexpr unsigned chipLimit = 32;
inline constexpr unsigned variantLimit = 32;

// Where a field lies. A cell of width 0 is absent. A row with too few or too many cells is a flaw.
struct Cell {
   U16 offset = 0xffff;
   U16 width = 0xffff;

   constexpr bool stated() const { return width != 0xffff; }
   constexpr bool present() const { return stated() && width != 0; }
   constexpr unsigned end() const { return static_cast<unsigned>( offset ) + width; }
   constexpr unsigned bytes() const { return ( end() + 7 ) / 8; }

   friend constexpr bool operator==( const Cell&, const Cell& ) = default;
};

inline constexpr Cell absent{ 0, 0 };
inline constexpr Cell surplus{ 0, 0xffff };

// How many instances of a memory a description can state.
inline constexpr unsigned instanceLimit = 2;

inline constexpr U8 noField = 0xff;

struct TagField {
   U8 field = noField;
   U8 value = 0;

   friend constexpr bool operator==( const TagField&, const TagField& ) = default;
};

inline constexpr unsigned tagFieldLimit = 4;

} // namespace Hardware::Layouts
