// The vocabulary of descriptions: layouts, dimensions, addresses and tags.
//
// A layout reads like the hardware's own table: columns are chip groups, rows are fields, and a
// cell is at( offset, width ) in bits, or `absent`.
//
//    block( variants( 0 ), { chips( 10, 12 ), chips( range( 13, 16 ) ) }, {
//       { vlanDomain,   { at( 6, 9 ),  at( 6, 11 ) } },
//       { portEmAccCmd, { at( 41, 6 ), at( 41, 6 ) } },
//    } )
//
// Several blocks may cover one pair of chip type and variant: the pair has the fields of all. A
// description lies in the namespace Hardware::Layouts::<Class> and needs C++20. A group of chip
// types that is used more than once has a name there: `like10` are laid out like chip type 10.
#pragma once

#include <Hardware/detail/Cell.h>

#include <array>
#include <cstddef>
#include <type_traits>

namespace Hardware::Layouts {

// The numbers `first` to `last`, both included.
struct Range {
   unsigned first;
   unsigned last;
};

consteval Range range( unsigned first, unsigned last ) { return { first, last }; }

consteval U32 numberBits( Range numbers ) {
   if( numbers.first > numbers.last || numbers.last >= 31 ) {
      throw "numbers must ascend and lie below 31";
   }
   return ( ~U32{ 0 } << numbers.first ) & ~( ~U32{ 1 } << numbers.last );
}
consteval U32 numberBits( int number ) {
   return numberBits( range( static_cast<unsigned>( number ), static_cast<unsigned>( number ) ) );
}

// A set of chip types.
struct Chips {
   U32 bits = 0;
   constexpr bool has( unsigned chipType ) const { return ( bits >> chipType & 1u ) != 0; }
};
consteval U32 numberBits( Chips chips ) { return chips.bits; }

// A set of variants.
struct Variants {
   U32 bits = 0;
   constexpr bool has( unsigned variant ) const { return ( bits >> variant & 1u ) != 0; }
};

// Each argument is a number, a range or another set.
template<class... Numbers>
consteval Chips chips( Numbers... numbers ) {
   return { ( numberBits( numbers ) | ... ) };
}

// Each argument is a number or a range.
template<class... Numbers>
consteval Variants variants( Numbers... numbers ) {
   return { ( numberBits( numbers ) | ... ) };
}

// For a chip group without variants: every number is accepted and means the same.
inline constexpr Variants anyVariant{ ~U32{ 0 } };

consteval Cell at( unsigned offset, unsigned width ) {
   if( width == 0 || width > 512 || offset > 4096 ) {
      throw "a field is 1 to 512 bits wide and lies within the entry";
   }
   return { static_cast<U16>( offset ), static_cast<U16>( width ) };
}

// One field's cells, one for each column of its block. A missing cell stays unstated; if there are
// more cells than columns, the last one shows it.
template<std::size_t Columns>
struct Row {
   template<std::size_t Count>
   constexpr Row( U8 theField, const Cell ( &theCells )[Count] ) : field( theField ) {
      for( std::size_t column = 0; column < Columns && column < Count; ++column ) {
         cells[column] = theCells[column];
      }
      if( Count > Columns ) {
         cells[Columns - 1] = surplus;
      }
   }

   U8 field;
   Cell cells[Columns];
};

// One field on the pairs of one column.
struct Placement {
   U8 field = 0;
   Chips chips;
   Variants variants;
   Cell cell;
};

template<std::size_t Count>
struct Placements {
   std::array<Placement, Count> rows;
};

template<std::size_t Columns, std::size_t Rows>
consteval Placements<Columns * Rows> block( Variants variants, const Chips ( &columns )[Columns],
                                            const Row<Columns> ( &rows )[Rows] ) {
   Placements<Columns * Rows> result;
   std::size_t next = 0;
   for( const Row<Columns>& row : rows ) {
      for( std::size_t column = 0; column < Columns; ++column ) {
         result.rows[next++] = { row.field, columns[column], variants, row.cells[column] };
      }
   }
   return result;
}

// The blocks of a class in order.
template<std::size_t... Counts>
consteval auto layout( const Placements<Counts>&... blocks ) {
   Placements<( Counts + ... )> result;
   std::size_t next = 0;
   const auto append = [&]( const auto& one ) {
      for( const Placement& placement : one.rows ) {
         result.rows[next++] = placement;
      }
   };
   ( append( blocks ), ... );
   return result;
}

// What the hardware states about a memory. `width` is in 32-bit words; the last two members are for
// registers.
struct Dimension {
   Chips chips;
   Variants variants;
   U16 width;
   U32 entries;
   U32 arrayElements;
   U16 instanceCount;
   U32 maxIdentifier = 0;
   U32 addrStride = 1;
};

// How many fields a pair has according to the hardware; compared with the layout.
struct FieldCount {
   Chips chips;
   Variants variants;
   U16 count;
};

// One instance of a memory, by identifier.
struct Instance {
   S32 accessType = -1;
   S32 destBlock = -1;

   constexpr bool stated() const { return accessType >= 0; }
   friend constexpr bool operator==( const Instance&, const Instance& ) = default;
};

// Where the addresses of a memory begin.
struct Base {
   constexpr Base() = default;
   constexpr Base( U32 theAddress ) : address( theAddress ), stated( true ) {}

   U32 address = 0;
   bool stated = false;
};

// schanAddress = base + tableEntry * entryStep + arrayIndex * arrayStep.
struct Address {
   Chips chips;
   Variants variants;
   Base base;
   U32 entryStep = 0;
   U32 arrayStep = 0;
   Instance instances[instanceLimit] = {};
};

// For pairs without a memory: `{ chips( 21 ), variants( 0 ), noAddress }`.
inline constexpr Base noAddress;

// The constant fields of a format, in the order in which they are stamped and verified.
struct Tag {
   Chips chips;
   Variants variants;
   TagField fields[tagFieldLimit];
};

// For pairs whose read-only fields are not stamped: `{ chips( 10 ), variants( 9 ), { untagged } }`.
inline constexpr TagField untagged;

template<class Element, std::size_t Count>
struct List {
   std::array<Element, Count> rows;
};

template<std::size_t Count>
consteval List<Dimension, Count> dimensions( const Dimension ( &rows )[Count] ) {
   return { std::to_array( rows ) };
}

template<std::size_t Count>
consteval List<FieldCount, Count> fieldCounts( const FieldCount ( &rows )[Count] ) {
   return { std::to_array( rows ) };
}

template<std::size_t Count>
consteval List<Address, Count> addresses( const Address ( &rows )[Count] ) {
   return { std::to_array( rows ) };
}

template<std::size_t Count>
consteval List<Tag, Count> tags( const Tag ( &rows )[Count] ) {
   return { std::to_array( rows ) };
}

template<std::size_t PlacementCount, std::size_t DimensionCount, std::size_t FieldCountCount,
         std::size_t AddressCount, std::size_t TagCount>
struct Description {
   Placements<PlacementCount> layout;
   List<Dimension, DimensionCount> dimensions;
   List<FieldCount, FieldCountCount> fieldCounts;
   List<Address, AddressCount> addresses;
   List<Tag, TagCount> tags;
};

template<std::size_t P, std::size_t D, std::size_t F, std::size_t A, std::size_t T = 0>
constexpr Description<P, D, F, A, T>
describe( const Placements<P>& layout, const List<Dimension, D>& dimensions,
          const List<FieldCount, F>& fieldCounts, const List<Address, A>& addresses,
          const List<Tag, T>& tags = {} ) {
   return { layout, dimensions, fieldCounts, addresses, tags };
}

} // namespace Hardware::Layouts
