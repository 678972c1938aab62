// What remains of a description at run time: tables of the smallest size.
#pragma once

#include "ClassData.h"
#include "Compile.h"

namespace Hardware::Frame {

// A cell of a field, and the set of the formats that have the field there.
struct DistinctCell {
   U64 formats;
   Cell cell;
};

template<std::size_t Count>
struct DistinctCells {
   unsigned count;
   std::array<DistinctCell, Count> rows;
};

template<std::size_t Fields>
constexpr DistinctCells<formatLimit> distinctCellsOf( const Formats<Fields>& formats,
                                                      unsigned field ) {
   DistinctCells<formatLimit> cells{};
   for( unsigned format = 0; format < formats.count; ++format ) {
      const Cell& cell = formats.cells[format][field];
      if( !cell.present() ) {
         continue;
      }
      unsigned number = 0;
      while( number < cells.count && !( cells.rows[number].cell == cell ) ) {
         ++number;
      }
      if( number == cells.count ) {
         ++cells.count;
         cells.rows[number] = { 0, cell };
      }
      cells.rows[number].formats |= U64{ 1 } << format;
   }
   return cells;
}

// The number of the cell that each format has, in the order of a PairTable of formats; the count of
// cells for a format without one.
template<std::size_t Count>
constexpr std::array<U8, noFormat + 1> cellNumbersOf( const DistinctCells<Count>& cells ) {
   std::array<U8, noFormat + 1> numbers{};
   for( std::size_t format = 0; format < numbers.size(); ++format ) {
      numbers[format] = static_cast<U8>( cells.count );
      for( unsigned number = 0; number < cells.count; ++number ) {
         if( ( cells.rows[number].formats >> format & 1 ) != 0 ) {
            numbers[format] = static_cast<U8>( number );
         }
      }
   }
   return numbers;
}

// How a field of 64 bits or less is read and written in the 64-bit words of an entry. No default
// values: gcc 12 drops them in an array.
struct alignas( 8 ) WordAccess {
   U16 lastByte; // of its last word
   U8 first;     // byte at which the word of its lowest bit starts
   U8 last;      // byte at which the word of its highest bit starts
   U8 shift;     // its lowest bit in the first word
   U8 cut;       // 64 less its width
};

// Of an absent field: no buffer has its last byte.
inline constexpr WordAccess noWordAccess = { 0xffff, 0, 0, 0, 0 };

// Whether all of a field's cells can be accessed this way, with their words within the storage.
template<std::size_t Count>
constexpr bool areWithinWords( const DistinctCells<Count>& cells, unsigned storageSize ) {
   for( unsigned number = 0; number < cells.count; ++number ) {
      const Cell& cell = cells.rows[number].cell;
      if( cell.width > 64 || ( cell.end() + 63u ) / 64 * 8 > storageSize ) {
         return false;
      }
   }
   return storageSize <= 256;
}

// The word access of each format.
template<std::size_t Count>
constexpr std::array<WordAccess, noFormat + 1> wordAccessesOf( const DistinctCells<Count>& cells ) {
   std::array<WordAccess, noFormat + 1> accesses{};
   for( std::size_t format = 0; format < accesses.size(); ++format ) {
      accesses[format] = noWordAccess;
      for( unsigned number = 0; number < cells.count; ++number ) {
         if( ( cells.rows[number].formats >> format & 1 ) != 0 ) {
            const Cell& cell = cells.rows[number].cell;
            const unsigned last = ( cell.end() - 1u ) / 64 * 8;
            accesses[format] = { static_cast<U16>( last + 7 ),
                                 static_cast<U8>( cell.offset / 64 * 8 ), static_cast<U8>( last ),
                                 static_cast<U8>( cell.offset % 64 ),
                                 static_cast<U8>( 64 - cell.width ) };
         }
      }
   }
   return accesses;
}

// The tag fields of a class in order if all its tags have the same fields; otherwise none.
struct TagFields {
   unsigned count = 0;
   U8 fields[tagFieldLimit] = {};

   friend constexpr bool operator==( const TagFields&, const TagFields& ) = default;
};

constexpr TagFields tagFieldsOf( const Tag& tag ) {
   TagFields fields;
   for( ; fields.count < countOf( tag.fields ); ++fields.count ) {
      fields.fields[fields.count] = tag.fields[fields.count].field;
   }
   return fields;
}

template<std::size_t Count>
constexpr TagFields tagFieldsOf( const List<Tag, Count>& tags ) {
   TagFields common;
   for( const Tag& tag : tags.rows ) {
      const TagFields fields = tagFieldsOf( tag );
      if( common.count != 0 && fields.count != 0 && !( fields == common ) ) {
         return {};
      }
      common = fields.count != 0 ? fields : common;
   }
   return common;
}

template<std::size_t Count>
constexpr std::array<PairFacts, Count> shrunk( const FactsTable& facts ) {
   std::array<PairFacts, Count> rows{};
   for( std::size_t number = 0; number < Count; ++number ) {
      rows[number] = facts.rows[number];
   }
   return rows;
}

// A number for each pair, found in one step: a row of 256 chip types for each variant. The last row
// stands for all variants that the class doesn't number.
template<std::size_t Rows>
struct PairTable {
   U8 of[Rows * 256];
};

// The rows that a class needs: one more than its largest variant, and the last.
constexpr std::size_t pairRowsOf( const Pairs& valid ) {
   U32 all = 0;
   for( const U32 variants : valid.variants ) {
      // If any variant will do, the last row has the pair.
      all |= withoutVariants( variants ) ? 0 : variants;
   }
   return static_cast<std::size_t>( std::bit_width( all ) ) + 1;
}

// The chip types that have a valid pair.
constexpr U32 chipsOf( const Pairs& valid ) {
   U32 chips = 0;
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      chips |= U32{ valid.variants[chipType] != 0 } << chipType;
   }
   return chips;
}

template<std::size_t Rows>
constexpr PairTable<Rows> pairTableOf( const U8 ( &of )[chipLimit][variantLimit], U8 none ) {
   PairTable<Rows> table{};
   for( std::size_t row = 0; row < Rows; ++row ) {
      const std::size_t variant = row + 1 < Rows ? row : variantLimit - 1;
      for( std::size_t chipType = 0; chipType < 256; ++chipType ) {
         table.of[row * 256 + chipType] = chipType < chipLimit ? of[chipType][variant] : none;
      }
   }
   return table;
}

// [field][format]; the last column is absent, for pairs without a format.
template<std::size_t Count, std::size_t Fields>
constexpr std::array<Cell, Fields*( Count + 1 )> cellTableOf( const Formats<Fields>& formats ) {
   std::array<Cell, Fields*( Count + 1 )> cells{};
   for( std::size_t field = 0; field < Fields; ++field ) {
      for( std::size_t format = 0; format < Count; ++format ) {
         cells[field * ( Count + 1 ) + format] = formats.cells[format][field];
      }
      cells[field * ( Count + 1 ) + Count] = absent;
   }
   return cells;
}

// For each format the union of its fields, in 32-bit words.
template<std::size_t Count, std::size_t Words>
struct MaskTable {
   U32 words[Count][Words] = {};
};

template<std::size_t Count, std::size_t Words, std::size_t Fields>
constexpr MaskTable<Count, Words> masksOf( const Formats<Fields>& formats ) {
   MaskTable<Count, Words> masks;
   for( std::size_t format = 0; format < Count; ++format ) {
      for( const Cell& cell : formats.cells[format] ) {
         for( unsigned bit = cell.offset; cell.present() && bit < cell.end(); ++bit ) {
            masks.words[format][bit / 32] |= U32{ 1 } << bit % 32;
         }
      }
   }
   return masks;
}

template<std::size_t Fields>
constexpr std::array<FieldData, Fields> fieldDataOf( const Declaration ( &declarations )[Fields] ) {
   std::array<FieldData, Fields> fields{};
   for( std::size_t field = 0; field < Fields; ++field ) {
      const Declaration& declaration = declarations[field];
      fields[field] = { declaration.identifier, declaration.line, declaration.type,
                        declaration.readOnly };
   }
   return fields;
}

template<std::size_t Fields>
constexpr std::array<U8, identifierLimit>
fieldTableOf( const Declaration ( &declarations )[Fields] ) {
   std::array<U8, identifierLimit> numbers{};
   numbers.fill( noField );
   for( std::size_t field = 0; field < Fields; ++field ) {
      numbers[declarations[field].identifier] = static_cast<U8>( field );
   }
   return numbers;
}

template<class View>
std::shared_ptr<Kelvar::AsicBase> makeWithStorage( Hardware::ChipType chipType, U8 variant ) {
   return std::make_shared<typename View::WithStorage>( chipType, variant );
}

// `C` is what frame/DefineView.inc makes from the description of `View`.
template<class View, class C>
constexpr ClassData classDataOf( const char* name, bool isTable ) {
   return { name,
            isTable,
            chipsOf( C::compilation.valid ),
            valueTypeOf<typename C::Entry>,
            static_cast<U8>( C::fieldCount ),
            C::fields.data(),
            C::fieldOf.data(),
            C::cells.data(),
            C::formats.count,
            C::formatTable.of,
            C::factsTable.of,
            sizeof C::factsTable.of,
            C::facts.data(),
            View::chipTypeVariantValid,
            makeWithStorage<View> };
}

} // namespace Hardware::Frame
