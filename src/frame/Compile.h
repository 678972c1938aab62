// From a description to what the operations need, and every flaw that the compiler can see in it.
#pragma once

#include "ClassData.h"
#include "Description.h"

#include <string_view>

namespace Hardware::Frame {

// A field as its class declares it.
struct Declaration {
   std::string_view name;
   std::string_view capitalName; // as in is<F>Valid
   U16 identifier;
   ValueType type;
   bool readOnly;
   U16 line = 0; // of its accessors' sites
};

enum class Flaw : U8 {
   none,
   cellLeftOut,             // a row has fewer cells than its block has columns
   unknownField,            // a row names a field that the class doesn't declare
   fieldPlacedTwice,        // one pair gives a field two places
   fieldNowhere,            // a declared field has no place on any pair
   fieldRepeated,           // two declarations share a name
   capitalNameDiffers,      // Name isn't name with its first letter in capitals
   typeTooNarrow,           // the widest layout doesn't fit the declared type
   typeTooWide,             // a smaller type would hold the widest layout
   fieldOutsideMemory,      // a field reaches beyond the pair's width
   pairWithoutFields,       // a valid pair has no field at all
   fieldsWithoutPair,       // a layout speaks of a pair that no dimension has
   pairDimensionedTwice,    // two dimension rows speak of one pair
   someVariantsOnly,        // a chip type is without variants on some variants only
   pairAddressedTwice,      // two address rows speak of one pair
   addressWithoutPair,      // an address row speaks of a pair that no dimension has
   instancesDisagree,       // instanceCount isn't the number of instances that are addressed
   countMissing,            // no stated field count speaks of a pair
   countWithoutPair,        // a stated field count speaks of a chip type without such a pair
   countDisagrees,          // the stated field count isn't the layout's
   tagWithoutPair,          // a tag speaks of a pair that no dimension has
   pairTaggedTwice,         // two tag rows speak of one pair
   tagFieldNotReadOnly,     // a tag stamps a field that has a setter
   tagFieldAbsent,          // a tag stamps a field that the pair lacks
   tagOutsideField,         // a tag's value doesn't fit its field
   readOnlyFieldWithoutTag, // a field without setter that no tag stamps
   storageDisagrees,        // the entry storage isn't the largest width
   tooManyFormats,          // more formats than a set of formats holds
};

// The first flaw of a description, with the field, chip type and variant it shows at.
struct Finding {
   Flaw flaw = Flaw::none;
   unsigned field = 0;
   unsigned chipType = 0;
   unsigned variant = 0;
};

inline constexpr unsigned formatLimit = noFormat;

// The format of each pair, and where each format has each field.
template<std::size_t Fields>
struct Formats {
   unsigned count = 0;
   U8 of[chipLimit][variantLimit] = {};
   Cell cells[formatLimit + 1][Fields] = {};
   Finding finding;
};

template<class Visit>
constexpr void forEachPair( Chips chips, Variants variants, Visit visit ) {
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      if( !chips.has( chipType ) ) {
         continue;
      }
      for( unsigned variant = 0; variant < variantLimit; ++variant ) {
         if( variants.has( variant ) ) {
            visit( chipType, variant );
         }
      }
   }
}

// Numbers the distinct formats, and finds the flaws of the layout.
template<std::size_t Fields, class Description>
constexpr Formats<Fields> formatsOf( const Description& description ) {
   Formats<Fields> formats;
   const auto found = [&]( Flaw flaw, unsigned field, unsigned chipType, unsigned variant ) {
      if( formats.finding.flaw == Flaw::none ) {
         formats.finding = { flaw, field, chipType, variant };
      }
   };
   for( auto& row : formats.of ) {
      for( U8& format : row ) {
         format = noFormat;
      }
   }
   for( auto& cells : formats.cells ) {
      for( Cell& cell : cells ) {
         cell = absent;
      }
   }
   for( const Placement& placement : description.layout.rows ) {
      if( placement.field >= Fields ) {
         found( Flaw::unknownField, placement.field, 0, 0 );
         return formats;
      }
      if( !placement.cell.stated() ) {
         found( Flaw::cellLeftOut, placement.field, 0, 0 );
         return formats;
      }
   }
   U64 hashes[formatLimit] = {};
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      for( unsigned variant = 0; variant < variantLimit; ++variant ) {
         Cell cells[Fields] = {};
         for( Cell& cell : cells ) {
            cell = absent;
         }
         bool any = false;
         U64 hash = 0;
         for( const Placement& placement : description.layout.rows ) {
            if( !placement.chips.has( chipType ) || !placement.variants.has( variant ) ||
                !placement.cell.present() ) {
               continue;
            }
            if( cells[placement.field].present() ) {
               found( Flaw::fieldPlacedTwice, placement.field, chipType, variant );
            }
            cells[placement.field] = placement.cell;
            any = true;
            // Order-free, as two formats may stem from different blocks.
            const U64 mixed = ( U64{ placement.field } << 32 | U64{ placement.cell.offset } << 16 |
                                placement.cell.width ) *
                              0x9e3779b97f4a7c15u;
            hash += mixed ^ mixed >> 29;
         }
         if( !any ) {
            continue;
         }
         unsigned format = 0;
         for( ; format < formats.count; ++format ) {
            if( hashes[format] != hash ) {
               continue;
            }
            bool same = true;
            for( std::size_t field = 0; field < Fields && same; ++field ) {
               same = formats.cells[format][field] == cells[field];
            }
            if( same ) {
               break;
            }
         }
         if( format == formatLimit ) {
            found( Flaw::tooManyFormats, 0, chipType, variant );
            return formats;
         }
         if( format == formats.count ) {
            ++formats.count;
            hashes[format] = hash;
            for( std::size_t field = 0; field < Fields; ++field ) {
               formats.cells[format][field] = cells[field];
            }
         }
         formats.of[chipType][variant] = static_cast<U8>( format );
      }
   }
   return formats;
}

template<std::size_t Fields>
constexpr unsigned countOf( const Formats<Fields>& formats, unsigned format ) {
   unsigned count = 0;
   for( const Cell& cell : formats.cells[format] ) {
      count += cell.present();
   }
   return count;
}

// The kind of every pair before equal ones are merged: [chip type][variant].
struct Kinds {
   Kind of[chipLimit][variantLimit] = {};
   bool valid[chipLimit][variantLimit] = {};
   Finding finding;
};

// Gathers the kind of every pair, and finds the flaws of dimensions, addresses and tags.
template<std::size_t Fields, class Description>
constexpr Kinds kindsOf( const Description& description, const Formats<Fields>& formats,
                         const Declaration ( &declarations )[Fields], unsigned storageSize ) {
   Kinds kinds;
   const auto found = [&]( Flaw flaw, unsigned field, unsigned chipType, unsigned variant ) {
      if( kinds.finding.flaw == Flaw::none ) {
         kinds.finding = { flaw, field, chipType, variant };
      }
   };
   unsigned widest = 0;
   for( const Dimension& row : description.dimensions.rows ) {
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         if( kinds.valid[chipType][variant] ) {
            found( Flaw::pairDimensionedTwice, 0, chipType, variant );
         }
         kinds.valid[chipType][variant] = true;
         Kind& kind = kinds.of[chipType][variant];
         kind.format = formats.of[chipType][variant];
         kind.fieldCount = static_cast<U16>( countOf( formats, kind.format ) );
         kind.width = row.width;
         kind.entries = row.entries;
         kind.arrayElements = row.arrayElements;
         kind.instanceCount = row.instanceCount;
         kind.maxIdentifier = row.maxIdentifier;
         kind.addrStride = row.addrStride;
      } );
      widest = row.width > widest ? row.width : widest;
   }
   if( storageSize != 4 * widest ) {
      found( Flaw::storageDisagrees, 0, 0, 0 );
   }
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      unsigned count = 0;
      for( bool valid : kinds.valid[chipType] ) {
         count += valid;
      }
      // The last column stands for all the numbers that no variant list can name.
      const bool variantless = kinds.valid[chipType][variantLimit - 1];
      if( variantless && count != variantLimit ) {
         found( Flaw::someVariantsOnly, 0, chipType, 0 );
      }
      for( unsigned variant = 0; variant < variantLimit; ++variant ) {
         kinds.of[chipType][variant].variantCount =
            kinds.valid[chipType][variant] && !variantless ? static_cast<U8>( count ) : U8{ 0 };
      }
   }
   for( const Address& row : description.addresses.rows ) {
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         Kind& kind = kinds.of[chipType][variant];
         if( !kinds.valid[chipType][variant] ) {
            found( Flaw::addressWithoutPair, 0, chipType, variant );
         }
         if( kind.hasAddress ) {
            found( Flaw::pairAddressedTwice, 0, chipType, variant );
         }
         kind.hasAddress = true;
         kind.base = row.base;
         kind.entryStep = row.entryStep;
         kind.arrayStep = row.arrayStep;
         unsigned instances = 0;
         for( const Instance& instance : row.instances ) {
            if( instance.stated() ) {
               kind.accessType[instances] = static_cast<U8>( instance.accessType );
               kind.destBlock[instances] = static_cast<U8>( instance.destBlock );
               ++instances;
            }
         }
         if( instances != kind.instanceCount ) {
            found( Flaw::instancesDisagree, 0, chipType, variant );
         }
      } );
   }
   bool stamped[Fields] = {};
   for( const Tag& row : description.tags.rows ) {
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         Kind& kind = kinds.of[chipType][variant];
         if( !kinds.valid[chipType][variant] ) {
            found( Flaw::tagWithoutPair, 0, chipType, variant );
            return;
         }
         if( kind.tagCount != 0 ) {
            found( Flaw::pairTaggedTwice, 0, chipType, variant );
            return;
         }
         for( const TagField& tagField : row.fields ) {
            if( tagField.field == noField ) {
               break;
            }
            if( tagField.field >= Fields || !declarations[tagField.field].readOnly ) {
               found( Flaw::tagFieldNotReadOnly, tagField.field, chipType, variant );
               return;
            }
            const Cell cell = formats.cells[kind.format][tagField.field];
            if( !cell.present() ) {
               found( Flaw::tagFieldAbsent, tagField.field, chipType, variant );
               return;
            }
            if( cell.width > 8 || tagField.value >> cell.width != 0 ) {
               found( Flaw::tagOutsideField, tagField.field, chipType, variant );
            }
            stamped[tagField.field] = true;
            kind.tag[kind.tagCount++] = tagField;
         }
      } );
   }
   for( unsigned field = 0; field < Fields; ++field ) {
      if( declarations[field].readOnly && !stamped[field] ) {
         found( Flaw::readOnlyFieldWithoutTag, field, 0, 0 );
      }
   }
   return kinds;
}

// The first flaw of a whole description; Flaw::none if the compiler sees none.
template<std::size_t Fields, class Description>
constexpr Finding findingOf( const Description& description,
                             const Declaration ( &declarations )[Fields], unsigned storageSize ) {
   const Formats<Fields> formats = formatsOf<Fields>( description );
   if( formats.finding.flaw != Flaw::none ) {
      return formats.finding;
   }
   for( unsigned field = 0; field < Fields; ++field ) {
      const Declaration& declaration = declarations[field];
      for( unsigned other = 0; other < field; ++other ) {
         if( declarations[other].name == declaration.name ) {
            return { Flaw::fieldRepeated, field, 0, 0 };
         }
      }
      const char first = declaration.name[0];
      if( declaration.capitalName.size() != declaration.name.size() ||
          declaration.capitalName[0] != static_cast<char>( first - 'a' + 'A' ) ||
          declaration.capitalName.substr( 1 ) != declaration.name.substr( 1 ) ) {
         return { Flaw::capitalNameDiffers, field, 0, 0 };
      }
      unsigned widest = 0;
      for( unsigned format = 0; format < formats.count; ++format ) {
         const unsigned width = formats.cells[format][field].width;
         widest = width > widest ? width : widest;
      }
      if( widest == 0 ) {
         return { Flaw::fieldNowhere, field, 0, 0 };
      }
      const unsigned bits = bitsOf( declaration.type );
      if( widest > bits ) {
         return { Flaw::typeTooNarrow, field, 0, 0 };
      }
      if( bits > 8 && widest <= bits / 2 ) {
         return { Flaw::typeTooWide, field, 0, 0 };
      }
   }
   const Kinds kinds = kindsOf( description, formats, declarations, storageSize );
   for( const FieldCount& row : description.fieldCounts.rows ) {
      for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
         bool speaks = !row.chips.has( chipType );
         for( unsigned variant = 0; !speaks && variant < variantLimit; ++variant ) {
            speaks = row.variants.has( variant ) && kinds.valid[chipType][variant];
         }
         if( !speaks ) {
            return { Flaw::countWithoutPair, 0, chipType, 0 };
         }
      }
   }
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      for( unsigned variant = 0; variant < variantLimit; ++variant ) {
         const unsigned format = formats.of[chipType][variant];
         if( !kinds.valid[chipType][variant] ) {
            if( format != noFormat ) {
               return { Flaw::fieldsWithoutPair, 0, chipType, variant };
            }
            continue;
         }
         if( format == noFormat ) {
            return { Flaw::pairWithoutFields, 0, chipType, variant };
         }
         for( unsigned field = 0; field < Fields; ++field ) {
            const Cell& cell = formats.cells[format][field];
            if( cell.present() && cell.end() > 32u * kinds.of[chipType][variant].width ) {
               return { Flaw::fieldOutsideMemory, field, chipType, variant };
            }
         }
         bool counted = false;
         for( const FieldCount& row : description.fieldCounts.rows ) {
            if( row.chips.has( chipType ) && row.variants.has( variant ) ) {
               counted = true;
               if( row.count != countOf( formats, format ) ) {
                  return { Flaw::countDisagrees, 0, chipType, variant };
               }
            }
         }
         if( !counted ) {
            return { Flaw::countMissing, 0, chipType, variant };
         }
      }
   }
   return kinds.finding;
}

// Refuses a description with a flaw; the compiler's message shows the arguments.
template<Flaw flaw, unsigned field, unsigned chipType, unsigned variant>
struct Soundness {
   static_assert( flaw == Flaw::none, "the description has the flaw named in the arguments" );
   static constexpr bool value = flaw == Flaw::none;
};

// Where a field lies in the formats of a set.
struct Place {
   U64 formats;
   U16 offset;
   U16 width;
};

template<std::size_t Count>
struct Places {
   unsigned count;
   std::array<Place, Count> rows;
};

// The distinct places of a field.
template<std::size_t Fields>
constexpr Places<formatLimit> placesOf( const Formats<Fields>& formats, unsigned field ) {
   Places<formatLimit> places{};
   for( unsigned format = 0; format < formats.count; ++format ) {
      const Cell& cell = formats.cells[format][field];
      if( !cell.present() ) {
         continue;
      }
      unsigned place = 0;
      while( place < places.count && ( places.rows[place].offset != cell.offset ||
                                       places.rows[place].width != cell.width ) ) {
         ++place;
      }
      if( place == places.count ) {
         ++places.count;
         places.rows[place] = { 0, cell.offset, cell.width };
      }
      places.rows[place].formats |= U64{ 1 } << format;
   }
   return places;
}

// The number of the place that each format has, for whatever a PairTable of formats holds; the
// places' count where a format has none.
template<std::size_t Count>
constexpr std::array<U8, noFormat + 1> placeNumbersOf( const Places<Count>& places ) {
   std::array<U8, noFormat + 1> numbers{};
   for( std::size_t format = 0; format < numbers.size(); ++format ) {
      numbers[format] = static_cast<U8>( places.count );
      for( unsigned place = 0; place < places.count; ++place ) {
         if( ( places.rows[place].formats >> format & 1 ) != 0 ) {
            numbers[format] = static_cast<U8>( place );
         }
      }
   }
   return numbers;
}

// Where a field of 64 bits or less lies in the 64-bit words of an entry. Without values by default,
// which gcc 12 forgets in an array of them.
struct alignas( 8 ) Spot {
   U16 lastByte; // of its last word
   U8 first;     // byte at which the word of its lowest bit starts
   U8 last;      // byte at which the word of its highest bit starts
   U8 shift;     // its lowest bit in the first word
   U8 cut;       // 64 less its width
};

// Of an absent field: no buffer has its last byte.
inline constexpr Spot noSpot = { 0xffff, 0, 0, 0, 0 };

// Whether a field's places are spots, all their words within the storage.
template<std::size_t Count>
constexpr bool areSpots( const Places<Count>& places, unsigned storageSize ) {
   for( unsigned place = 0; place < places.count; ++place ) {
      const Place& row = places.rows[place];
      if( row.width > 64 || ( row.offset + row.width + 63u ) / 64 * 8 > storageSize ) {
         return false;
      }
   }
   return storageSize <= 256;
}

// The spot of each format.
template<std::size_t Count>
constexpr std::array<Spot, noFormat + 1> spotsOf( const Places<Count>& places ) {
   std::array<Spot, noFormat + 1> spots{};
   for( std::size_t format = 0; format < spots.size(); ++format ) {
      spots[format] = noSpot;
      for( unsigned place = 0; place < places.count; ++place ) {
         const Place& row = places.rows[place];
         if( ( row.formats >> format & 1 ) != 0 ) {
            const unsigned last = ( row.offset + row.width - 1u ) / 64 * 8;
            spots[format] = { static_cast<U16>( last + 7 ), static_cast<U8>( row.offset / 64 * 8 ),
                              static_cast<U8>( last ), static_cast<U8>( row.offset % 64 ),
                              static_cast<U8>( 64 - row.width ) };
         }
      }
   }
   return spots;
}

// The distinct kinds and the kind of each pair. Kind 0 is that of all invalid pairs.
template<std::size_t Limit>
struct KindTable {
   unsigned count = 1;
   U8 of[chipLimit][variantLimit] = {};
   Kind kinds[Limit] = {};
};

inline constexpr std::size_t kindLimit = 256;

constexpr KindTable<kindLimit> mergedKindsOf( const Kinds& kinds ) {
   KindTable<kindLimit> merged;
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      for( unsigned variant = 0; variant < variantLimit; ++variant ) {
         if( !kinds.valid[chipType][variant] ) {
            continue;
         }
         const Kind& kind = kinds.of[chipType][variant];
         unsigned number = 1;
         while( number < merged.count && !( merged.kinds[number] == kind ) ) {
            ++number;
         }
         if( number == merged.count ) {
            if( number == kindLimit ) {
               throw "more kinds of pairs than a table numbers";
            }
            merged.kinds[merged.count++] = kind;
         }
         merged.of[chipType][variant] = static_cast<U8>( number );
      }
   }
   return merged;
}

// The tag fields of a class in their order, if all its tags have the same; else none.
struct TagFields {
   unsigned count = 0;
   U8 fields[tagFieldLimit] = {};

   friend constexpr bool operator==( const TagFields&, const TagFields& ) = default;
};

template<class Description>
constexpr TagFields tagFieldsOf( const Description& description ) {
   TagFields common;
   bool first = true;
   for( const Tag& tag : description.tags.rows ) {
      TagFields fields;
      for( const TagField& one : tag.fields ) {
         if( one.field != noField ) {
            fields.fields[fields.count++] = one.field;
         }
      }
      if( !first && !( fields == common ) ) {
         return {};
      }
      common = fields;
      first = false;
   }
   return common;
}

// The chip types that have a valid pair.
constexpr U32 chipsOf( const Kinds& kinds ) {
   U32 chips = 0;
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      for( const bool valid : kinds.valid[chipType] ) {
         chips |= U32{ valid } << chipType;
      }
   }
   return chips;
}

// What remains of the above at run time: tables of just the size they need.

template<std::size_t Count>
constexpr std::array<Kind, Count> shrunk( const KindTable<kindLimit>& merged ) {
   std::array<Kind, Count> kinds{};
   for( std::size_t number = 0; number < Count; ++number ) {
      kinds[number] = merged.kinds[number];
   }
   return kinds;
}

// A number for each pair, to be found by both in one step: 256 chip types a variant. The last row
// stands for all variants that the class doesn't number.
template<std::size_t Rows>
struct PairTable {
   U8 of[Rows * 256];
};

// The rows that a class needs: one more than its largest variant, and the last.
constexpr std::size_t pairRowsOf( const Kinds& kinds ) {
   std::size_t rows = 0;
   for( const auto& valid : kinds.valid ) {
      for( std::size_t variant = 0; variant + 1 < variantLimit; ++variant ) {
         // Where any variant will do, the last row says so.
         if( valid[variant] && !valid[variantLimit - 1] && rows <= variant ) {
            rows = variant + 1;
         }
      }
   }
   return rows + 1;
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

// `C` is what frame/DefineView.inc makes of the description of `View`.
template<class View, class C>
constexpr ClassData classDataOf( const char* name, bool isTable ) {
   return { name,
            isTable,
            chipsOf( C::allKinds ),
            valueTypeOf<typename C::Entry>,
            static_cast<U8>( C::fieldCount ),
            C::fields.data(),
            C::fieldOf.data(),
            C::cells.data(),
            C::formats.count,
            C::formatTable.of,
            C::kindTable.of,
            sizeof C::kindTable.of,
            C::kinds.data(),
            View::chipTypeVariantValid,
            makeWithStorage<View> };
}

} // namespace Hardware::Frame
