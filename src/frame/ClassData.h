// A class as run-time data, for its rare paths and the registry.
#pragma once

#include "Facts.h"

#include <Hardware/ChipType.h>
#include <Kelvar/AsicBase.h>

#include <algorithm>
#include <memory>

namespace Hardware::Frame {

// Identifiers lie below this.
inline constexpr unsigned identifierLimit = 369;

// Names are those of the field catalogue, found by the identifier.
struct FieldData {
   U16 identifier;
   U16 line;
   ValueType type;
   bool readOnly;
};

struct ClassData {
   const char* name;
   bool isTable;
   U32 chips;           // the chip types that have a valid pair
   ValueType entryType; // of getAllFields
   U8 fieldCount;
   const FieldData* fields; // in declared order
   const U8* fieldOf;       // identifier to field number, noField if the class lacks it
   const Cell* cells;       // [field][format], formatCount + 1 columns; the last is absent
   unsigned formatCount;
   const U8* formatOf; // of PairTables of pairCount numbers
   const U8* factsOf;
   unsigned pairCount;
   const PairFacts* facts;
   bool ( *valid )( Hardware::ChipType chipType, U8 variant );
   std::shared_ptr<Kelvar::AsicBase> ( *make )( Hardware::ChipType chipType, U8 variant );
};

// The index of a pair in a PairTable, unless it is beyond the end. The two members are adjacent in
// a view, so they are one load.
constexpr unsigned pairOf( U8 chipType, U8 variant ) {
   return static_cast<unsigned>( chipType | variant << 8 );
}

// The number of a pair in a PairTable of `count` numbers.
inline U8 pairLookup( const U8* table, unsigned count, U8 chipType, U8 variant ) {
   unsigned pair = pairOf( chipType, variant );
   if( pair >= count ) [[unlikely]] {
      pair = count - 256 + chipType;
   }
   return table[pair];
}

inline unsigned formatOf( const ClassData& data, U8 chipType, U8 variant ) {
   return pairLookup( data.formatOf, data.pairCount, chipType, variant );
}

// The facts of a pair; the class's first facts, without a format, if the pair is invalid.
inline const PairFacts& factsOf( const ClassData& data, U32 chipType, U8 variant ) {
   return data.facts[chipType < 256 ? pairLookup( data.factsOf, data.pairCount,
                                                  static_cast<U8>( chipType ), variant )
                                    : 0];
}

// Where a pair has a field; an absent cell if it doesn't, or isn't valid.
inline Cell cellOf( const ClassData& data, unsigned field, U8 chipType, U8 variant ) {
   const unsigned column = std::min( formatOf( data, chipType, variant ), data.formatCount );
   return data.cells[field * ( data.formatCount + 1 ) + column];
}

} // namespace Hardware::Frame
