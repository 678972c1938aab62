// The operations of the contract as ordinary functions over run-time data, whatever the class, and
// what their fast paths share with them.
#pragma once

#include "ClassData.h"
#include "Trace.h"

#include <Kelvar/BitBuf.h>

#include <algorithm>
#include <type_traits>

namespace Hardware::Frame {

// A view's members; passed in two registers.
struct State {
   U8* buf;
   U8 chipType;
   U8 variant;
   U16 len;
};

// An accessor's whole contract, whatever the class: trace, cell, length, bound, primitive. A
// narrow value is set as a U64; otherwise a value is its bytes.
[[gnu::cold]] void getByRules( State state, const ClassData& data, Site site, U8* value );
[[gnu::cold]] void setByRules( State state, const ClassData& data, Site site, U64 value );
[[gnu::cold]] void setByRules( State state, const ClassData& data, Site site, const U8* value );
[[gnu::cold]] void maskByRules( State state, const ClassData& data, Site site );
[[gnu::cold]] U16 lenByRules( State state, const ClassData& data, Site site );
[[gnu::cold]] U16 offsetByRules( State state, const ClassData& data, Site site );
[[gnu::cold]] bool validByRules( State state, const ClassData& data, Site site );

// A value with the low `width` bits set.
template<class Value>
constexpr Value onesOf( unsigned width ) {
   if constexpr( std::is_integral_v<Value> ) {
      return static_cast<Value>( ~U64{ 0 } >> ( 64 - width ) );
   } else {
      Value value{};
      for( unsigned word = 0; 64 * word < width; ++word ) {
         value.wordIs( word, onesOf<U64>( std::min( width - 64 * word, 64u ) ) );
      }
      return value;
   }
}

// A field exactly as wide as an integer has no bound, whatever its argument type.
constexpr bool bounded( unsigned width ) {
   return width != 8 && width != 16 && width != 32 && width != 64;
}

HARDWARE_INLINE inline void traceView( const ClassData& data, Site site, State state ) {
   if( tracedInView() ) [[unlikely]] {
      traceCall( data, site, state.chipType, state.variant );
   }
}

HARDWARE_INLINE inline void traceNamed( const ClassData& data, Site site, State state,
                                        const Oru::String& fieldName ) {
   if( tracedInView() ) [[unlikely]] {
      traceNamed( data, site, state.chipType, state.variant, fieldName );
   }
}

// By identifier. Without traces setField64 is the same as the call of `<f>Is()`; this serves all
// other cases.
[[gnu::cold]] void setField64ByRules( const ClassData& data, Site site, U32 fieldId, U64 value,
                                      State state );
U16 fieldWidth( const ClassData& data, Site site, U32 fieldId, State state );
U16 fieldOffset( const ClassData& data, Site site, U32 fieldId, State state );
bool isFieldValid( const ClassData& data, Site site, U32 fieldId, State state );

// The facts of a pair passed as arguments; an invalid pair fails.
inline const PairFacts& checkedFacts( const ClassData& data, Site site, U32 chipType, U8 variant ) {
   const PairFacts& facts = factsOf( data, chipType, variant );
   if( facts.format == noFormat ) [[unlikely]] {
      failPair( data, site, chipType );
   }
   return facts;
}

// The two static functions that trace before they check the pair.
const PairFacts& tracedFacts( const ClassData& data, Site site, U32 chipType, U8 variant );

// Where an entry is asked for.
struct EntryIndices {
   U32 tableEntry;
   U16 arrayIndex;
   U16 identifier;
};

// The contract of getSchanAddress in its order, for calls that the fast path doesn't serve: false
// for an invalid pair, otherwise an assertion. A table and a register differ only in the texts of
// their tests.
[[gnu::cold]] bool getSchanAddressByRules( const ClassData& data, Site site, U32 chipType,
                                           U8 variant, U32& schanAddress, EntryIndices indices );

// The constructor's part after the base's: checks the pair and traces it.
void construct( const ClassData& data, Site site, State state );
// Stamps the pair's tag into a new entry, verifies it in an existing one.
void handleTag( const ClassData& data, Site site, State state, bool existingEntry );

// A class's discriminator: false only for a chip type that the class lacks, or a pair whose tag
// the buffer doesn't hold.
[[gnu::cold]] bool holdsByRules( const ClassData& data, Site site, Hardware::ChipType chipType,
                                 const U8* buf, U16 len, U8 variant );

} // namespace Hardware::Frame
