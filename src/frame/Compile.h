// From a description to the formats and facts of its pairs, and the first flaw in it: one function
// for each part of the description, which goes over the pairs that the part covers.
#pragma once

#include "Facts.h"
#include "Flaw.h"

#include <bit>
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

// Calls `visit` with each number of a set, in ascending order.
template<class Visit>
constexpr void forEachNumber( U32 bits, Visit visit ) {
   for( ; bits != 0; bits &= bits - 1 ) {
      visit( static_cast<unsigned>( std::countr_zero( bits ) ) );
   }
}

// A set of pairs: for each chip type its variants.
struct Pairs {
   U32 variants[chipLimit] = {};

   constexpr bool has( unsigned chipType, unsigned variant ) const {
      return ( variants[chipType] >> variant & 1 ) != 0;
   }
   // Calls `visit` with each pair, by chip type and then by variant.
   template<class Visit>
   constexpr void forEach( Visit visit ) const {
      for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
         forEachNumber( variants[chipType],
                        [&]( unsigned variant ) { visit( chipType, variant ); } );
      }
   }
};

template<class Visit>
constexpr void forEachPair( Chips chips, Variants variants, Visit visit ) {
   forEachNumber( chips.bits, [&]( unsigned chipType ) {
      forEachNumber( variants.bits, [&]( unsigned variant ) { visit( chipType, variant ); } );
   } );
}

// The pairs that the rows of a part of the description cover.
constexpr Pairs pairsOf( const auto& rows ) {
   Pairs pairs;
   for( const auto& row : rows ) {
      forEachNumber( row.chips.bits,
                     [&]( unsigned chipType ) { pairs.variants[chipType] |= row.variants.bits; } );
   }
   return pairs;
}

// For each pair the row of a part that covers it, counted from 1; 0 if there is none.
struct RowNumbers {
   U16 of[chipLimit][variantLimit] = {};
};

// Numbers the rows of a part. Two rows for one pair are the flaw `twice`.
constexpr RowNumbers rowNumbersOf( const auto& rows, Flaw twice, Finding& finding ) {
   RowNumbers numbers;
   U16 number = 0;
   for( const auto& row : rows ) {
      ++number;
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         if( numbers.of[chipType][variant] != 0 ) {
            finding.note( twice, anyNumber, chipType, variant );
         }
         numbers.of[chipType][variant] = number;
      } );
   }
   return numbers;
}

// Declarations.

template<std::size_t Fields>
constexpr void checkDeclarations( const Declaration ( &declarations )[Fields], Finding& finding ) {
   for( unsigned field = 0; field < Fields; ++field ) {
      const Declaration& declaration = declarations[field];
      for( unsigned other = 0; other < field; ++other ) {
         if( declarations[other].name == declaration.name ) {
            finding.note( Flaw::fieldRepeated, field );
         }
      }
      const char first = declaration.name[0];
      if( declaration.capitalName.size() != declaration.name.size() ||
          declaration.capitalName[0] != static_cast<char>( first - 'a' + 'A' ) ||
          declaration.capitalName.substr( 1 ) != declaration.name.substr( 1 ) ) {
         finding.note( Flaw::capitalNameDiffers, field );
      }
   }
}

// Layout.

// Whether each row names a declared field and has a cell for each column.
template<std::size_t Fields>
constexpr void checkPlacements( const auto& placements, Finding& finding ) {
   for( const Placement& placement : placements ) {
      if( placement.field >= Fields ) {
         finding.note( Flaw::unknownField, placement.field );
      } else if( placement.cell == surplus ) {
         finding.note( Flaw::surplusCell, placement.field );
      } else if( !placement.cell.stated() ) {
         finding.note( Flaw::cellLeftOut, placement.field );
      }
   }
}

inline constexpr unsigned formatLimit = noFormat;

// The format of each pair, and where each format has each field.
template<std::size_t Fields>
struct Formats {
   unsigned count = 0;
   U8 of[chipLimit][variantLimit] = {};
   Cell cells[formatLimit][Fields] = {};
   U16 fieldCount[formatLimit] = {};
};

// The cells of one pair, while its format is looked for.
template<std::size_t Fields>
struct PairCells {
   Cell cells[Fields] = {};
   unsigned count = 0;
   U64 hash = 0;

   constexpr PairCells() {
      for( Cell& cell : cells ) {
         cell = absent;
      }
   }

   constexpr void take( const Placement& placement ) {
      cells[placement.field] = placement.cell;
      ++count;
      // Independent of order, as two formats may come from different blocks.
      const U64 mixed = ( U64{ placement.field } << 32 | U64{ placement.cell.offset } << 16 |
                          placement.cell.width ) *
                        0x9e3779b97f4a7c15u;
      hash += mixed ^ mixed >> 29;
   }

   constexpr bool hasCells( const Cell ( &others )[Fields] ) const {
      for( std::size_t field = 0; field < Fields; ++field ) {
         if( !( cells[field] == others[field] ) ) {
            return false;
         }
      }
      return true;
   }
};

// Numbers the distinct formats.
template<std::size_t Fields>
constexpr Formats<Fields> formatsOf( const auto& placements, Finding& finding ) {
   Formats<Fields> formats;
   for( auto& row : formats.of ) {
      for( U8& format : row ) {
         format = noFormat;
      }
   }
   U64 hashes[formatLimit] = {};
   pairsOf( placements ).forEach( [&]( unsigned chipType, unsigned variant ) {
      PairCells<Fields> pair;
      for( const Placement& placement : placements ) {
         if( ( placement.chips.bits >> chipType & placement.variants.bits >> variant & 1 ) == 0 ||
             !placement.cell.present() ) {
            continue;
         }
         if( pair.cells[placement.field].present() ) {
            finding.note( Flaw::fieldPlacedTwice, placement.field, chipType, variant );
         }
         pair.take( placement );
      }
      if( pair.count == 0 || finding.found() ) {
         return;
      }
      unsigned format = 0;
      while( format < formats.count &&
             !( hashes[format] == pair.hash && pair.hasCells( formats.cells[format] ) ) ) {
         ++format;
      }
      if( format == formatLimit ) {
         finding.note( Flaw::tooManyFormats, anyNumber, chipType, variant );
         return;
      }
      if( format == formats.count ) {
         ++formats.count;
         hashes[format] = pair.hash;
         formats.fieldCount[format] = static_cast<U16>( pair.count );
         for( std::size_t field = 0; field < Fields; ++field ) {
            formats.cells[format][field] = pair.cells[field];
         }
      }
      formats.of[chipType][variant] = static_cast<U8>( format );
   } );
   return formats;
}

// Whether each field exists, and its type is the smallest that holds it.
template<std::size_t Fields>
constexpr void checkTypes( const Formats<Fields>& formats,
                           const Declaration ( &declarations )[Fields], Finding& finding ) {
   for( unsigned field = 0; field < Fields; ++field ) {
      unsigned widest = 0;
      for( unsigned format = 0; format < formats.count; ++format ) {
         const unsigned width = formats.cells[format][field].width;
         widest = width > widest ? width : widest;
      }
      const unsigned bits = bitsOf( declarations[field].type );
      if( widest == 0 ) {
         finding.note( Flaw::fieldNowhere, field );
      } else if( widest > bits ) {
         finding.note( Flaw::typeTooNarrow, field );
      } else if( bits > 8 && widest <= bits / 2 ) {
         finding.note( Flaw::typeTooWide, field );
      }
   }
}

// Dimensions, which say which pairs are valid.

// Whether every variant means the same on a chip type with these. The last one stands for all
// numbers that a variant list can't name.
constexpr bool withoutVariants( U32 variants ) { return variants >> ( variantLimit - 1 ) != 0; }

constexpr void checkDimensions( const auto& rows, const Pairs& valid, unsigned storageSize,
                                Finding& finding ) {
   unsigned widest = 0;
   for( const Dimension& row : rows ) {
      widest = row.width > widest ? row.width : widest;
   }
   if( storageSize != 4 * widest ) {
      finding.note( Flaw::storageDisagrees, anyNumber );
   }
   for( unsigned chipType = 0; chipType < chipLimit; ++chipType ) {
      if( withoutVariants( valid.variants[chipType] ) && ~valid.variants[chipType] != 0 ) {
         finding.note( Flaw::someVariantsOnly, anyNumber, chipType );
      }
   }
}

// Whether layout and dimensions cover the same pairs, and each field lies within the memory.
template<std::size_t Fields>
constexpr void checkFields( const auto& placements, const Formats<Fields>& formats,
                            const auto& dimensions, const RowNumbers& dimensionOf,
                            const Pairs& valid, Finding& finding ) {
   for( const Placement& placement : placements ) {
      if( placement.cell.present() ) {
         forEachPair(
            placement.chips, placement.variants, [&]( unsigned chipType, unsigned variant ) {
               if( !valid.has( chipType, variant ) ) {
                  finding.note( Flaw::fieldsWithoutPair, placement.field, chipType, variant );
               } else if( placement.cell.end() >
                          32u * dimensions[dimensionOf.of[chipType][variant] - 1u].width ) {
                  finding.note( Flaw::fieldOutsideMemory, placement.field, chipType, variant );
               }
            } );
      }
   }
   valid.forEach( [&]( unsigned chipType, unsigned variant ) {
      if( formats.of[chipType][variant] == noFormat ) {
         finding.note( Flaw::pairWithoutFields, anyNumber, chipType, variant );
      }
   } );
}

// Field counts.

template<std::size_t Fields>
constexpr void checkFieldCounts( const auto& rows, const Formats<Fields>& formats,
                                 const Pairs& valid, Finding& finding ) {
   for( const FieldCount& row : rows ) {
      forEachNumber( row.chips.bits, [&]( unsigned chipType ) {
         if( ( row.variants.bits & valid.variants[chipType] ) == 0 ) {
            finding.note( Flaw::countWithoutPair, anyNumber, chipType );
         }
         forEachNumber( row.variants.bits & valid.variants[chipType], [&]( unsigned variant ) {
            if( row.count != formats.fieldCount[formats.of[chipType][variant]] ) {
               finding.note( Flaw::countDisagrees, anyNumber, chipType, variant );
            }
         } );
      } );
   }
   const Pairs counted = pairsOf( rows );
   valid.forEach( [&]( unsigned chipType, unsigned variant ) {
      if( !counted.has( chipType, variant ) ) {
         finding.note( Flaw::countMissing, anyNumber, chipType, variant );
      }
   } );
}

// Addresses.

constexpr unsigned countOf( const Instance ( &instances )[instanceLimit] ) {
   unsigned count = 0;
   for( const Instance& instance : instances ) {
      count += instance.stated();
   }
   return count;
}

constexpr void checkAddresses( const auto& rows, const RowNumbers& addressOf,
                               const auto& dimensions, const RowNumbers& dimensionOf,
                               const Pairs& valid, Finding& finding ) {
   for( const Address& row : rows ) {
      const unsigned instances = countOf( row.instances );
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         if( !valid.has( chipType, variant ) ) {
            finding.note( Flaw::addressWithoutPair, anyNumber, chipType, variant );
         } else if( row.base.stated &&
                    instances !=
                       dimensions[dimensionOf.of[chipType][variant] - 1u].instanceCount ) {
            finding.note( Flaw::instancesDisagree, anyNumber, chipType, variant );
         }
      } );
   }
   valid.forEach( [&]( unsigned chipType, unsigned variant ) {
      if( addressOf.of[chipType][variant] == 0 ) {
         finding.note( Flaw::noAddress, anyNumber, chipType, variant );
      }
   } );
}

// Tags.

constexpr unsigned countOf( const TagField ( &fields )[tagFieldLimit] ) {
   unsigned count = 0;
   while( count < tagFieldLimit && fields[count].field != noField ) {
      ++count;
   }
   return count;
}

template<std::size_t Fields>
constexpr void checkTags( const auto& rows, const RowNumbers& tagOf, const Formats<Fields>& formats,
                          const Declaration ( &declarations )[Fields], const Pairs& valid,
                          Finding& finding ) {
   bool stamped[Fields] = {};
   for( const Tag& row : rows ) {
      forEachPair( row.chips, row.variants, [&]( unsigned chipType, unsigned variant ) {
         if( !valid.has( chipType, variant ) ) {
            finding.note( Flaw::tagWithoutPair, anyNumber, chipType, variant );
            return;
         }
         for( unsigned number = 0; number < countOf( row.fields ); ++number ) {
            const TagField& tag = row.fields[number];
            if( tag.field >= Fields || !declarations[tag.field].readOnly ) {
               finding.note( Flaw::tagFieldNotReadOnly, tag.field, chipType, variant );
               return;
            }
            const Cell cell = formats.cells[formats.of[chipType][variant]][tag.field];
            if( !cell.present() ) {
               finding.note( Flaw::tagFieldAbsent, tag.field, chipType, variant );
            } else if( cell.width > 8 || tag.value >> cell.width != 0 ) {
               finding.note( Flaw::tagOutsideField, tag.field, chipType, variant );
            }
            stamped[tag.field] = true;
         }
      } );
   }
   for( unsigned field = 0; field < Fields; ++field ) {
      if( !declarations[field].readOnly ) {
         continue;
      }
      if( !stamped[field] ) {
         finding.note( Flaw::readOnlyFieldWithoutTag, field );
      }
      valid.forEach( [&]( unsigned chipType, unsigned variant ) {
         if( tagOf.of[chipType][variant] == 0 &&
             formats.cells[formats.of[chipType][variant]][field].present() ) {
            finding.note( Flaw::untagged, field, chipType, variant );
         }
      } );
   }
}

// Facts.

inline constexpr std::size_t factsLimit = 256;

// The distinct facts of pairs and the number of each pair's. Number 0 is that of all invalid pairs.
struct FactsTable {
   unsigned count = 1;
   U8 of[chipLimit][variantLimit] = {};
   PairFacts rows[factsLimit] = {};
};

constexpr void takeDimension( PairFacts& facts, const Dimension& row ) {
   facts.width = row.width;
   facts.entries = row.entries;
   facts.arrayElements = row.arrayElements;
   facts.instanceCount = row.instanceCount;
   facts.maxIdentifier = row.maxIdentifier;
   facts.addrStride = row.addrStride;
}

constexpr void takeAddress( PairFacts& facts, const Address& row ) {
   facts.hasAddress = row.base.stated;
   facts.base = row.base.address;
   facts.entryStep = row.entryStep;
   facts.arrayStep = row.arrayStep;
   for( unsigned instance = 0; instance < countOf( row.instances ); ++instance ) {
      facts.accessType[instance] = static_cast<U8>( row.instances[instance].accessType );
      facts.destBlock[instance] = static_cast<U8>( row.instances[instance].destBlock );
   }
}

constexpr void takeTag( PairFacts& facts, const Tag& row ) {
   facts.tagCount = static_cast<U8>( countOf( row.fields ) );
   for( unsigned number = 0; number < facts.tagCount; ++number ) {
      facts.tag[number] = row.fields[number];
   }
}

// Numbers the distinct facts of a sound description's pairs.
template<std::size_t Fields>
constexpr FactsTable factsTableOf( const auto& description, const Formats<Fields>& formats,
                                   const Pairs& valid, const RowNumbers& dimensionOf,
                                   const RowNumbers& addressOf, const RowNumbers& tagOf,
                                   Finding& finding ) {
   FactsTable table;
   // Pairs with the same rows differ by their formats alone.
   U64 origins[factsLimit] = {};
   valid.forEach( [&]( unsigned chipType, unsigned variant ) {
      const U8 format = formats.of[chipType][variant];
      const unsigned dimension = dimensionOf.of[chipType][variant];
      const unsigned address = addressOf.of[chipType][variant];
      const unsigned tag = tagOf.of[chipType][variant];
      const U32 all = valid.variants[chipType];
      const U8 variantCount =
         withoutVariants( all ) ? U8{ 0 } : static_cast<U8>( std::popcount( all ) );
      const U64 origin = U64{ format } << 56 | U64{ dimension } << 40 | U64{ address } << 24 |
                         U64{ tag } << 8 | variantCount;
      unsigned number = 1;
      while( number < table.count && origins[number] != origin ) {
         ++number;
      }
      if( number == table.count ) {
         PairFacts facts;
         facts.format = format;
         facts.fieldCount = formats.fieldCount[format];
         facts.variantCount = variantCount;
         takeDimension( facts, description.dimensions.rows[dimension - 1u] );
         if( address != 0 ) {
            takeAddress( facts, description.addresses.rows[address - 1u] );
         }
         if( tag != 0 ) {
            takeTag( facts, description.tags.rows[tag - 1u] );
         }
         number = 1;
         while( number < table.count && !( table.rows[number] == facts ) ) {
            ++number;
         }
         if( number == factsLimit ) {
            finding.note( Flaw::tooManyFacts, anyNumber, chipType, variant );
            return;
         }
         if( number == table.count ) {
            origins[number] = origin;
            table.rows[table.count++] = facts;
         }
      }
      table.of[chipType][variant] = static_cast<U8>( number );
   } );
   return table;
}

// What a description evaluates to. Only `finding` is valid if there is one.
template<std::size_t Fields>
struct Compilation {
   Finding finding;
   Pairs valid;
   Formats<Fields> formats;
   FactsTable facts;
};

template<std::size_t Fields>
constexpr Compilation<Fields> compile( const auto& description,
                                       const Declaration ( &declarations )[Fields],
                                       unsigned storageSize ) {
   Compilation<Fields> result;
   Finding& finding = result.finding;
   checkDeclarations( declarations, finding );
   checkPlacements<Fields>( description.layout.rows, finding );
   if( finding.found() ) {
      return result;
   }
   result.formats = formatsOf<Fields>( description.layout.rows, finding );
   checkTypes( result.formats, declarations, finding );
   result.valid = pairsOf( description.dimensions.rows );
   const RowNumbers dimensionOf =
      rowNumbersOf( description.dimensions.rows, Flaw::pairDimensionedTwice, finding );
   checkDimensions( description.dimensions.rows, result.valid, storageSize, finding );
   checkFields( description.layout.rows, result.formats, description.dimensions.rows, dimensionOf,
                result.valid, finding );
   if( finding.found() ) {
      return result;
   }
   checkFieldCounts( description.fieldCounts.rows, result.formats, result.valid, finding );
   const RowNumbers addressOf =
      rowNumbersOf( description.addresses.rows, Flaw::pairAddressedTwice, finding );
   checkAddresses( description.addresses.rows, addressOf, description.dimensions.rows, dimensionOf,
                   result.valid, finding );
   const RowNumbers tagOf = rowNumbersOf( description.tags.rows, Flaw::pairTaggedTwice, finding );
   checkTags( description.tags.rows, tagOf, result.formats, declarations, result.valid, finding );
   if( !finding.found() ) {
      result.facts = factsTableOf( description, result.formats, result.valid, dimensionOf,
                                   addressOf, tagOf, finding );
   }
   return result;
}

} // namespace Hardware::Frame
