// The operations of the contract, each for a class given as a type.
//
// The class parameter `C` is what frame/Define.inc makes of a description: static constants, and
// `C::data()`, the same as run-time data. Everything an accessor needs to know of its field is a
// constant to the compiler, except for the pair, whose format number it looks up.
#pragma once

#include "Trace.h"

#include <Kelvar/BitBuf.h>

namespace Hardware::Frame {

// A view's members, each read where it is needed: nothing has to survive the call of a trace.
struct State {
   U8* const& buf;
   const U8& chipType;
   const U8& variant;
   const U16& len;
};

// The number of the view's format; noFormat if the pair is invalid.
template<class C>
[[gnu::always_inline]] inline unsigned formatOf( const State& state ) {
   return pairLookup( C::formatTable.of[0], sizeof C::formatTable.of, state.chipType,
                      state.variant );
}

// All formats that have the field.
template<class C, U8 field>
inline constexpr auto places = placesOf( C::formats, field );

template<class C, U8 field>
constexpr U64 formatsWith() {
   U64 formats = 0;
   for( const Place& place : places<C, field>.rows ) {
      formats |= place.formats;
   }
   return formats;
}

[[gnu::always_inline]] inline void traceView( const ClassData& data, Site site,
                                              const State& state ) {
   if( traced( Level::call ) ) [[unlikely]] {
      traceCall( data, site, state.chipType, state.variant );
   }
}

[[gnu::always_inline]] inline void traceNamed( const ClassData& data, Site site, const State& state,
                                               const Oru::String& fieldName ) {
   if( traced( Level::call ) ) [[unlikely]] {
      traceNamed( data, site, state.chipType, state.variant, fieldName );
   }
}

// Calls `act` with the field's place in the format, a constant; without one the operation fails.
template<class Result, class C, Site site, unsigned number = 0, class Act>
[[gnu::always_inline]] inline Result atPlace( const State& state, U64 formatBit, const Act& act ) {
   constexpr const auto& all = places<C, site.field>;
   if constexpr( number == all.count ) {
      failPlace( C::data(), site, formatsWith<C, site.field>(), state.chipType );
   } else {
      if( ( formatBit & all.rows[number].formats ) != 0 ) {
         return act.template operator()<all.rows[number]>();
      }
      return atPlace<Result, C, site, number + 1>( state, formatBit, act );
   }
}

template<class Result, class C, Site site, class Act>
[[gnu::always_inline]] inline Result atPlace( const State& state, const Act& act ) {
   return atPlace<Result, C, site>( state, U64{ 1 } << formatOf<C>( state ), act );
}

constexpr unsigned bytesTo( Place place ) { return Cell{ place.offset, place.width }.bytes(); }

// A value with the low `width` bits set.
template<class Value, unsigned width>
constexpr Value ones() {
   if constexpr( std::is_integral_v<Value> ) {
      return static_cast<Value>( ~U64{ 0 } >> ( 64 - width ) );
   } else {
      Value value{};
      for( unsigned word = 0; 64 * word < width; ++word ) {
         const unsigned rest = width - 64 * word;
         value.wordIs( word, rest >= 64 ? ~U64{ 0 } : ~U64{ 0 } >> ( 64 - rest ) );
      }
      return value;
   }
}

template<class C, Site site, class Value>
[[gnu::always_inline]] inline Value get( const State& state ) {
   traceView( C::data(), site, state );
   Value value{};
   atPlace<void, C, site>( state, [&]<Place place>() {
      if( state.len < bytesTo( place ) ) [[unlikely]] {
         failLength( C::data(), site, bytesTo( place ) );
      }
      getBuf( state.buf, state.len, reinterpret_cast<U8*>( &value ),
              static_cast<int>( sizeof( Value ) ), place.width, place.offset );
   } );
   return value;
}

template<class C, Site site, Place place, class Value>
[[gnu::always_inline]] inline void store( const State& state, const Value& value ) {
   setBuf( state.buf, state.len, reinterpret_cast<const U8*>( &value ),
           static_cast<int>( sizeof( Value ) ), place.width, place.offset );
}

template<class C, Site site, class Value>
[[gnu::always_inline]] inline void set( const State& state, const Value& value ) {
   traceView( C::data(), site, state );
   atPlace<void, C, site>( state, [&]<Place place>() {
      if( state.len < bytesTo( place ) ) [[unlikely]] {
         failLength( C::data(), site, bytesTo( place ) );
      }
      // Nested, for a wide value may not even name the comparison below, whatever its width.
      if constexpr( std::is_integral_v<Value> ) {
         if constexpr( place.width != 8 && place.width != 16 && place.width != 32 &&
                       place.width != 64 ) {
            constexpr U64 maximum = ones<U64, place.width>();
            if( value > maximum ) [[unlikely]] {
               failBound( C::data(), site, maximum );
            }
         }
      }
      store<C, site, place>( state, value );
   } );
}

template<class C, Site site, class Value>
[[gnu::always_inline]] inline void mask( const State& state ) {
   traceView( C::data(), site, state );
   atPlace<void, C, site>( state, [&]<Place place>() {
      if( state.len < bytesTo( place ) ) [[unlikely]] {
         failLength( C::data(), site, bytesTo( place ) );
      }
      constexpr Value value = ones<Value, place.width>();
      store<C, site, place>( state, value );
   } );
}

template<class C, Site site>
[[gnu::always_inline]] inline U16 len( const State& state ) {
   traceView( C::data(), site, state );
   return atPlace<U16, C, site>( state, []<Place place>() { return place.width; } );
}

template<class C, Site site>
[[gnu::always_inline]] inline U16 offset( const State& state ) {
   traceView( C::data(), site, state );
   return atPlace<U16, C, site>( state, []<Place place>() { return place.offset; } );
}

template<class C, Site site>
[[gnu::always_inline]] inline bool valid( const State& state ) {
   traceView( C::data(), site, state );
   return ( formatsWith<C, site.field>() >> formatOf<C>( state ) & 1 ) != 0;
}

// By identifier: an absent cell where the pair lacks the field; `field` is noField where the
// identifier isn't the class's.
struct Found {
   unsigned field;
   Cell cell;
};

Found findField( const ClassData& data, U32 fieldId, const State& state );

U16 fieldWidth( const ClassData& data, Site site, U32 fieldId, const State& state );
bool isFieldValid( const ClassData& data, Site site, U32 fieldId, const State& state );

// 64-bit word `index` of a wide value, 0 beyond it.
template<class Value>
U64 wordOf( const Value& value, U16 index ) {
   return index < Value::wordCount ? value.word( index ) : 0;
}

// Kind of a pair given as arguments; an invalid pair fails.
inline const Kind& checkedKind( const ClassData& data, Site site, U32 chipType, U8 variant ) {
   const Kind& kind = kindOf( data, chipType, variant );
   if( kind.format == noFormat ) [[unlikely]] {
      failPair( data, site, chipType );
   }
   return kind;
}

// The two statics that trace, before they check the pair.
const Kind& tracedKind( const ClassData& data, Site site, U32 chipType, U8 variant );

// The entry under the mask of its pair.
template<class C>
typename C::Entry getAllFields( Site site, const State& state ) {
   traceView( C::data(), site, state );
   const unsigned format = formatOf<C>( state );
   if( format == noFormat ) [[unlikely]] {
      failViewPair( C::data(), site, state.chipType );
   }
   typename C::Entry entry{};
   if( state.len < C::storageSize ) [[unlikely]] {
      fail( C::data(), site, Text( "len_ >= ", unsigned{ C::storageSize } ).c_str() );
   }
   constexpr int words = C::storageSize / 4;
   maskBuf( reinterpret_cast<const U32*>( state.buf ), words, reinterpret_cast<U32*>( &entry ),
            words, C::masks.words[format], words );
   return entry;
}

template<class C>
Raw4096 allFieldsMask( Site site, U32 chipType, U8 variant ) {
   const Kind& kind = checkedKind( C::data(), site, chipType, variant );
   Raw4096 mask{};
   setBuf( mask.bytes(), C::storageSize, reinterpret_cast<const U8*>( C::masks.words[kind.format] ),
           C::storageSize, 8 * C::storageSize, 0 );
   return mask;
}

// A table and a register differ in the texts of their tests alone.
bool getSchanAddress( const ClassData& data, Site site, U32 chipType, U8 variant, U32& schanAddress,
                      U8& accessType, U8& destBlock, U16 identifier, U32 tableEntry,
                      U16 arrayIndex );

// The constructor behind the base's: checks the pair and traces it.
void construct( const ClassData& data, Site site, const State& state );
// Stamps the pair's tag into a fresh entry, verifies it in an existing one.
void handleTag( const ClassData& data, Site site, const State& state, bool existingEntry );

// A class's discriminator: false only for a chip type that the class lacks, or a pair whose tag
// the buffer doesn't hold.
bool holds( const ClassData& data, Site site, Hardware::ChipType chipType, const U8* buf, U16 len,
            U8 variant );

} // namespace Hardware::Frame
