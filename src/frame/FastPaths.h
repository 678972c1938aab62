// The operations of the contract for a class as a type parameter: fast paths with its constants,
// which leave everything else to the rules.
//
// The class parameter `C` is what frame/DefineView.inc makes from a description: static constants,
// and `C::data()`, the same as run-time data.
#pragma once

#include "Rules.h"
#include "Tables.h"

#include <cstring>
#include <utility>

namespace Hardware::Frame {

// Whether the platform declares its primitives inline. If it doesn't, each access is one call of
// the platform's primitive, with the view's buffer and length: a site may have replaced it.
#ifdef KELVAR_BITBUF_IS_INLINE
inline constexpr bool primitivesAreInline = true;
#else
inline constexpr bool primitivesAreInline = false;
#endif

// The accessors are the contract's fast path, with the field's cells as constants. They take it
// only if nothing is to be traced and nothing will fail; in all other cases they jump to the rules.
// They call nothing else, so they need no stack.

// All formats that have the field, by cell.
template<class C, U8 field>
inline constexpr auto distinctCells = distinctCellsOf( C::formats, field );

// The bytes up to the end of a field's last 64-bit word, or of the entry if that comes first. A
// fast path requires this many, and then uses this constant instead of the buffer's length. Shorter
// buffers, which may still hold the field, are for the rules.
template<class C, Cell cell>
inline constexpr int fastLength = std::min<int>( ( cell.offset + cell.width + 63 ) / 64 * 8,
                                                 C::storageSize );

// The number of a field's cell in each format; their count for a format without the field.
template<class C, U8 field>
inline constexpr auto cellNumbers = cellNumbersOf( distinctCells<C, field> );

// Calls `act` with the field's cell in the format, a constant, and returns its result; false if
// there is no cell.
template<class C, U8 field, class Act>
HARDWARE_INLINE inline bool inFormat( unsigned format, const Act& act ) {
   constexpr unsigned count = distinctCells<C, field>.count;
   static_assert( count <= 12 );
   const unsigned number = cellNumbers<C, field>[format];
   // A few cells are selected by tests; this one comes first, so that the others cost the same.
   if( count <= 3 && number == count ) [[unlikely]] {
      return false;
   }
   // Branches that no test takes: numbers that no table has.
   switch( number ) {
#define CELL( each )                                                                               \
   case each:                                                                                      \
      if constexpr( each < count ) {                                                               \
         return act.template operator()<distinctCells<C, field>.rows[each].cell>();                \
      } else if constexpr( each == count ) {                                                       \
         return false;                                                                             \
      } else {                                                                                     \
         __builtin_unreachable();                                                                  \
      }
      CELL( 0 )
      CELL( 1 )
      CELL( 2 )
      CELL( 3 )
      CELL( 4 )
      CELL( 5 )
      CELL( 6 )
      CELL( 7 )
      CELL( 8 )
      CELL( 9 )
      CELL( 10 )
      CELL( 11 )
      CELL( 12 )
#undef CELL
   default:
      __builtin_unreachable(); // so that a jump through a table needs no test before it
   }
}

// A view's format; none if something is to be traced, which is for the rules.
template<class C>
HARDWARE_INLINE inline unsigned fastFormat( const State& state ) {
   if( tracedInView() ) [[unlikely]] {
      return noFormat;
   }
   const unsigned pair = pairOf( state.chipType, state.variant );
   if( pair >= sizeof C::formatTable.of ) [[unlikely]] {
      return noFormat;
   }
   return C::formatTable.of[pair];
}

// Calls `act` with the field's cell in the view's format, a constant.
template<class C, U8 field, class Act>
HARDWARE_INLINE inline bool onFastPath( const State& state, const Act& act ) {
   return inFormat<C, field>( fastFormat<C>( state ), act );
}

// A narrow field of many cells is read and written through a table, without a branch on the format:
// so all formats of a class cost the same.
template<class C, U8 field, class Value>
inline constexpr bool byWords = std::is_integral_v<Value>&& distinctCells<C, field>.count > 2 &&
                                areWithinWords( distinctCells<C, field>, C::storageSize );

template<class C, U8 field>
inline constexpr auto wordAccesses = wordAccessesOf( distinctCells<C, field> );

// Words as in the stand-in's primitives; another platform's header need not have them.
inline U64 wordAt( const U8* bytes ) {
   U64 word;
   std::memcpy( &word, bytes, sizeof( word ) );
   return word;
}

// Replaces the bits of `mask` in a word.
inline void mergeAt( U8* bytes, U64 bits, U64 mask ) {
   const U64 word = ( wordAt( bytes ) & ~mask ) | bits;
   std::memcpy( bytes, &word, sizeof( word ) );
}

// If the field lies in one word, first and last are the same; the bits of the second are cut off.
HARDWARE_INLINE inline U64 bitsAt( const U8* buf, const WordAccess& access ) {
   const U64 low = wordAt( buf + access.first ) >> access.shift;
   const U64 high = wordAt( buf + access.last ) << 1 << ( 63 ^ access.shift );
   return ( low | high ) << access.cut >> access.cut;
}

HARDWARE_INLINE inline U64 onesOf( const WordAccess& access ) { return ~U64{ 0 } >> access.cut; }

// Sets a value with no bits but the field's.
HARDWARE_INLINE inline void bitsAtAre( U8* buf, const WordAccess& access, U64 bits ) {
   const U64 mask = onesOf( access );
   if( access.first != access.last ) {
      const int rest = 64 - access.shift;
      mergeAt( buf + access.last, bits >> rest, mask >> rest );
   }
   mergeAt( buf + access.first, bits << access.shift, mask << access.shift );
}

// A state for the rules. Keeps the compiler from assembling it before the fast path.
HARDWARE_INLINE inline State forRules( State state ) {
   __asm__( "" : "+r"( state.len ) );
   return state;
}

// Calls `act` with the field's cell if the view has the field and its buffer holds it: the steps
// before the call of a primitive that isn't inline.
template<class C, U8 field, class Act>
HARDWARE_INLINE inline bool inBuffer( const State& state, const Act& act ) {
   constexpr unsigned formats = C::compilation.formats.count;
   const Cell cell =
      C::cells[field * ( formats + 1 ) + std::min( fastFormat<C>( state ), formats )];
   if( !cell.present() || state.len < cell.bytes() ) [[unlikely]] {
      return false;
   }
   return act( cell );
}

template<class Value>
HARDWARE_INLINE inline bool setByCall( const State& state, Cell cell, const Value& value ) {
   setBuf( state.buf, state.len, reinterpret_cast<const U8*>( &value ),
           static_cast<int>( sizeof( Value ) ), cell.width, cell.offset );
   return true;
}

template<class Value>
[[gnu::cold, gnu::noinline]] Value valueByRules( State state, const ClassData& data, Site site ) {
   Value value{};
   getByRules( state, data, site, reinterpret_cast<U8*>( &value ) );
   return value;
}

// Clears the 64-bit words of a value from this one on; those before it are overwritten.
template<unsigned first, class Value>
HARDWARE_INLINE inline void clearFrom( Value& value ) {
   if constexpr( std::is_integral_v<Value> ) {
      value = 0;
   } else {
      for( unsigned word = first; word < Value::wordCount; ++word ) {
         value.wordIs( word, 0 );
      }
   }
}

template<class C, Site site, class Value>
HARDWARE_INLINE inline Value get( State state ) {
   Value value;
   bool done;
   if constexpr( !primitivesAreInline ) {
      done = inBuffer<C, site.field>( state, [&]( Cell cell ) {
         value = Value{};
         getBuf( state.buf, state.len, reinterpret_cast<U8*>( &value ),
                 static_cast<int>( sizeof( Value ) ), cell.width, cell.offset );
         return true;
      } );
   } else if constexpr( byWords<C, site.field, Value> ) {
      const WordAccess& access = wordAccesses<C, site.field>[fastFormat<C>( state )];
      done = state.len > access.lastByte;
      if( done ) [[likely]] {
         value = static_cast<Value>( bitsAt( state.buf, access ) );
      }
   } else {
      done = onFastPath<C, site.field>( state, [&]<Cell cell>() {
         if( state.len < fastLength<C, cell> ) [[unlikely]] {
            return false;
         }
         clearFrom<cell.width / 64>( value );
         getBuf( state.buf, fastLength<C, cell>, reinterpret_cast<U8*>( &value ),
                 static_cast<int>( sizeof( Value ) ), cell.width, cell.offset );
         return true;
      } );
   }
   if( !done ) [[unlikely]] {
      value = valueByRules<Value>( forRules( state ), C::data(), site );
   }
   return value;
}

template<class C, Cell cell, class Value>
HARDWARE_INLINE inline void store( State state, const Value& value ) {
   setBuf( state.buf, fastLength<C, cell>, reinterpret_cast<const U8*>( &value ),
           static_cast<int>( sizeof( Value ) ), cell.width, cell.offset );
}

template<class C, Site site, class Value>
HARDWARE_INLINE inline void set( State state, const Value& value ) {
   bool done;
   if constexpr( !primitivesAreInline ) {
      done = inBuffer<C, site.field>( state, [&]( Cell cell ) {
         if constexpr( std::is_integral_v<Value> ) {
            if( value > onesOf<U64>( cell.width ) && bounded( cell.width ) ) [[unlikely]] {
               return false;
            }
         }
         return setByCall( state, cell, value );
      } );
   } else if constexpr( byWords<C, site.field, Value> ) {
      const WordAccess& access = wordAccesses<C, site.field>[fastFormat<C>( state )];
      // A greater value is for the rules even if there is no bound: they truncate it.
      done = state.len > access.lastByte && value <= onesOf( access );
      if( done ) [[likely]] {
         bitsAtAre( state.buf, access, value );
      }
   } else {
      done = onFastPath<C, site.field>( state, [&]<Cell cell>() {
         if( state.len < fastLength<C, cell> ) [[unlikely]] {
            return false;
         }
         if constexpr( std::is_integral_v<Value> ) {
            // A condition of its own: in the one above, clang would compare a Raw value too.
            if constexpr( bounded( cell.width ) ) {
               if( value > onesOf<U64>( cell.width ) ) [[unlikely]] {
                  return false;
               }
            }
         }
         store<C, cell>( state, value );
         return true;
      } );
   }
   if( done ) [[likely]] {
      return;
   }
   if constexpr( std::is_integral_v<Value> ) {
      setByRules( forRules( state ), C::data(), site, U64{ value } );
   } else {
      setByRules( forRules( state ), C::data(), site, value.bytes() );
   }
}

template<class C, Site site, class Value>
HARDWARE_INLINE inline void mask( State state ) {
   bool done;
   if constexpr( !primitivesAreInline ) {
      done = inBuffer<C, site.field>( state, [&]( Cell cell ) {
         return setByCall( state, cell, onesOf<Value>( cell.width ) );
      } );
   } else if constexpr( byWords<C, site.field, Value> ) {
      const WordAccess& access = wordAccesses<C, site.field>[fastFormat<C>( state )];
      done = state.len > access.lastByte;
      if( done ) [[likely]] {
         bitsAtAre( state.buf, access, onesOf( access ) );
      }
   } else {
      done = onFastPath<C, site.field>( state, [&]<Cell cell>() {
         if( state.len < fastLength<C, cell> ) [[unlikely]] {
            return false;
         }
         constexpr Value value = onesOf<Value>( cell.width );
         store<C, cell>( state, value );
         return true;
      } );
   }
   if( !done ) [[unlikely]] {
      maskByRules( forRules( state ), C::data(), site );
   }
}

template<class C, Site site>
HARDWARE_INLINE inline U16 len( State state ) {
   U16 width = 0;
   const bool done = onFastPath<C, site.field>( state, [&]<Cell cell>() {
      width = cell.width;
      return true;
   } );
   return done ? width : lenByRules( state, C::data(), site );
}

template<class C, Site site>
HARDWARE_INLINE inline U16 offset( State state ) {
   U16 bit = 0;
   const bool done = onFastPath<C, site.field>( state, [&]<Cell cell>() {
      bit = cell.offset;
      return true;
   } );
   return done ? bit : offsetByRules( state, C::data(), site );
}

template<class C, Site site>
HARDWARE_INLINE inline bool valid( State state ) {
   const bool found = onFastPath<C, site.field>( state, []<Cell cell>() { return true; } );
   return found || validByRules( state, C::data(), site );
}

// 64-bit word `index` of a wide value, 0 beyond it.
template<class Value>
U64 wordOf( const Value& value, U16 index ) {
   return index < Value::wordCount ? value.word( index ) : 0;
}

// The entry under the mask of its pair.
template<class C>
typename C::Entry getAllFields( Site site, State state ) {
   traceView( C::data(), site, state );
   const unsigned format = formatOf( C::data(), state.chipType, state.variant );
   if( format == noFormat ) [[unlikely]] {
      failViewPair( C::data(), site, state.chipType );
   }
   typename C::Entry entry{};
   if( state.len < C::storageSize ) [[unlikely]] {
      failLength( C::data(), site, C::storageSize );
   }
   constexpr int words = C::storageSize / 4;
   maskBuf( reinterpret_cast<const U32*>( state.buf ), words, reinterpret_cast<U32*>( &entry ),
            words, C::masks.words[format], words );
   return entry;
}

template<class C>
Raw4096 allFieldsMask( Site site, U32 chipType, U8 variant ) {
   const PairFacts& facts = checkedFacts( C::data(), site, chipType, variant );
   Raw4096 mask{};
   setBuf( mask.bytes(), C::storageSize,
           reinterpret_cast<const U8*>( C::masks.words[facts.format] ), C::storageSize,
           8 * C::storageSize, 0 );
   return mask;
}

// A pair with an address, and all indices in range.
template<class C, Site site>
HARDWARE_INLINE inline bool getSchanAddress( U32 chipType, U8 variant, U32& schanAddress,
                                             U8& accessType, U8& destBlock, EntryIndices indices ) {
   const PairFacts& facts = factsOf( C::data(), chipType, variant );
   if( !facts.hasAddress || indices.tableEntry >= facts.entries ||
       indices.arrayIndex >= facts.arrayElements || indices.identifier >= facts.instanceCount )
      [[unlikely]] {
      return getSchanAddressByRules( C::data(), site, chipType, variant, schanAddress, indices );
   }
   schanAddress =
      facts.base + indices.tableEntry * facts.entryStep + indices.arrayIndex * facts.arrayStep;
   destBlock = facts.destBlock[indices.identifier];
   accessType = facts.accessType[indices.identifier];
   return true;
}

// Calls `act` with the cell and the value of each tag field of a pair of the class, as long as it
// returns true. Also false if the pair isn't tagged in all of them.
template<class C, class Act>
HARDWARE_INLINE inline bool everyTag( const PairFacts& facts, const Act& act ) {
   if( facts.tagCount != C::tagFields.count ) [[unlikely]] {
      return false;
   }
   return [&]<std::size_t... number>( std::index_sequence<number...> ) {
      return ( inFormat<C, C::tagFields.fields[number]>( facts.format,
                                                         [&]<Cell cell>() {
                                                            return act.template operator()<cell>(
                                                               facts.tag[number].value );
                                                         } ) &&
               ... );
   }
   ( std::make_index_sequence<C::tagFields.count>() );
}

template<class C, Cell cell>
HARDWARE_INLINE inline bool holdsTag( const U8* buf, U8 value ) {
   U8 found = 0;
   getBuf( buf, fastLength<C, cell>, &found, 1, cell.width, cell.offset );
   return found == value;
}

// construct and handleTag in one, if the pair is valid, nothing is traced or fails, and no
// primitive needs a call.
template<class C>
HARDWARE_INLINE inline bool constructFast( State state, bool existingEntry ) {
   const unsigned pair = pairOf( state.chipType, state.variant );
   if( !surelyQuiet() || pair >= sizeof C::factsTable.of ) [[unlikely]] {
      return false;
   }
   const PairFacts& facts = C::facts[C::factsTable.of[pair]];
   if( facts.format == noFormat ) [[unlikely]] {
      return false;
   }
   if( facts.tagCount == 0 ) {
      return true;
   }
   if( !primitivesAreInline || state.len < C::storageSize ) [[unlikely]] {
      return false;
   }
   return everyTag<C>( facts, [&]<Cell cell>( U8 value ) {
      if( existingEntry ) {
         return holdsTag<C, cell>( state.buf, value );
      }
      store<C, cell>( state, value );
      return true;
   } );
}

// A class's discriminator: a pair with a tag, a buffer known to hold all of it, and inline
// primitives.
template<class C, Site site>
HARDWARE_INLINE inline bool holds( Hardware::ChipType chipType, const U8* buf, U16 len,
                                   U8 variant ) {
   const unsigned pair = pairOf( chipType, variant );
   if( primitivesAreInline && surelyQuiet() && pair < sizeof C::factsTable.of &&
       len >= C::storageSize ) [[likely]] {
      const PairFacts& facts = C::facts[C::factsTable.of[pair]];
      // Branches that no test takes: the instances of classes without a tag.
      if( facts.tagCount != 0 && everyTag<C>( facts, [&]<Cell cell>( U8 value ) {
             return holdsTag<C, cell>( buf, value );
          } ) ) {
         return true;
      }
   }
   return holdsByRules( C::data(), site, chipType, buf, len, variant );
}

} // namespace Hardware::Frame
