// What At computes from a description: the cells of a pair, its tag and facts, and the distinct
// formats of a class.
#pragma once

#include <Hardware/ChipType.h>
#include <Hardware/FieldId.h>
#include <Hardware/detail/AtBits.h>
#include <Hardware/detail/AtFailure.h>
#include <Hardware/detail/Description.h>
#include <Hardware/detail/WholeEntry.h>

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace Hardware::Detail {

using Layouts::Cell;

// What <Hardware/at/<Class>.h> states about a class: name, isTable, fields, description.
template<class Table>
struct AtClass;

// The variant as a description numbers it: the last number stands for itself and all above.
constexpr unsigned describedVariant( unsigned variant ) {
   return std::min( variant, Layouts::variantLimit - 1 );
}

// The number of the row, in a part of a description, that a pair belongs to; the count of rows if
// there is none.
template<class Row, std::size_t Count>
constexpr std::size_t rowNumberOf( const std::array<Row, Count>& rows, unsigned chipType,
                                   unsigned variant ) {
   std::size_t number = 0;
   while( number < Count &&
          !( chipType < Layouts::chipLimit && rows[number].chips.has( chipType ) &&
             rows[number].variants.has( describedVariant( variant ) ) ) ) {
      ++number;
   }
   return number;
}
// The row itself, an empty one if there is none.
template<class Row, std::size_t Count>
constexpr Row rowOf( const std::array<Row, Count>& rows, unsigned chipType, unsigned variant ) {
   const std::size_t number = rowNumberOf( rows, chipType, variant );
   return number < Count ? rows[number] : Row{};
}

template<class Table>
consteval bool hasPair( unsigned chipType, unsigned variant ) {
   const auto& rows = AtClass<Table>::description.dimensions.rows;
   return variant <= 0xff && rowNumberOf( rows, chipType, variant ) < rows.size();
}

// How many variants a chip type has; 0 if the variant is ignored.
template<class Table>
consteval U32 variantCount( unsigned chipType ) {
   U32 variants = 0;
   for( const Layouts::Dimension& row : AtClass<Table>::description.dimensions.rows ) {
      variants |= row.chips.has( chipType ) ? row.variants.bits : 0;
   }
   return variants == Layouts::anyVariant.bits ? 0 : static_cast<U32>( std::popcount( variants ) );
}

// Bytes of the class's storage: those of its widest pair.
template<class Table>
inline constexpr unsigned storageBytes = [] {
   unsigned words = 0;
   for( const Layouts::Dimension& row : AtClass<Table>::description.dimensions.rows ) {
      words = std::max<unsigned>( words, row.width );
   }
   return 4 * words;
}();

// Calls `act` with the number of each 64-bit word of a value of `width` bits, and how many bits of
// it there are.
template<unsigned width, class Act>
HARDWARE_INLINE constexpr void eachPart( const Act& act ) {
   [&]<std::size_t... word>( std::index_sequence<word...> ) {
      ( act.template operator()<word, std::min<unsigned>( width - 64 * word, 64 )>(), ... );
   }
   ( std::make_index_sequence<( width + 63 ) / 64>() );
}

// Reads and writes a field's value. Independent of class and pair, so that all share them.
template<class Value, unsigned offset, unsigned width, unsigned bytes>
HARDWARE_INLINE constexpr Value getField( const U8* entry ) {
   if constexpr( std::is_integral_v<Value> ) {
      return static_cast<Value>( entryBits<offset, width, bytes>( entry ) );
   } else {
      Value value{};
      eachPart<width>( [&]<unsigned word, unsigned part>() {
         value.wordIs( word, entryBits<offset + 64 * word, part, bytes>( entry ) );
      } );
      return value;
   }
}

// Whether a narrow value keeps its field's bound. A field exactly as wide as an integer has no
// bound, whatever its argument type.
template<unsigned width>
inline constexpr bool isBounded = width != 8 && width != 16 && width != 32 && width != 64;
template<unsigned width>
HARDWARE_INLINE constexpr bool keepsBound( U64 value ) {
   return !isBounded<width> || value <= lowOnes( width );
}

template<class Value, unsigned offset, unsigned width, unsigned bytes>
HARDWARE_INLINE constexpr void setField( U8* entry, const Value& value, const AtField& field ) {
   if constexpr( std::is_integral_v<Value> ) {
      if( !keepsBound<width>( value ) ) [[unlikely]] {
         atFailBound( field, lowOnes( width ) );
      }
      // A value beyond a field without a bound is truncated.
      entryBitsAre<offset, width, bytes>( entry,
                                          isBounded<width> ? value : value & lowOnes( width ) );
   } else {
      eachPart<width>( [&]<unsigned word, unsigned part>() {
         entryBitsAre<offset + 64 * word, part, bytes>( entry,
                                                        value.word( word ) & lowOnes( part ) );
      } );
   }
}

template<unsigned offset, unsigned width, unsigned bytes>
HARDWARE_INLINE constexpr void setOnes( U8* entry ) {
   if constexpr( width <= 64 ) {
      entryBitsAre<offset, width, bytes>( entry, lowOnes( width ) );
   } else {
      eachPart<width>( [&]<unsigned word, unsigned part>() {
         entryBitsAre<offset + 64 * word, part, bytes>( entry, lowOnes( part ) );
      } );
   }
}

// Adds a part of a field's value to an entry's words: of the words it lies in, the bits of
// `ownFirst` and `ownLast`. As a rule these are all, and a value that keeps its bound has no more.
template<unsigned offset, unsigned width, U64 ownFirst, U64 ownLast, bool bounded>
HARDWARE_INLINE constexpr void putPart( U64* to, U64 bits ) {
   constexpr unsigned first = offset / 64;
   constexpr unsigned last = ( offset + width - 1 ) / 64;
   constexpr unsigned shift = offset % 64;
   constexpr U64 ones = lowOnes( width );
   if constexpr( !bounded ) {
      bits &= ones;
   }
   if constexpr( ( ones << shift & ~ownFirst ) == 0 ) {
      to[first] |= bits << shift;
   } else {
      to[first] |= bits << shift & ownFirst;
   }
   if constexpr( last != first ) {
      if constexpr( ( ones >> ( 64 - shift ) & ~ownLast ) == 0 ) {
         to[last] |= bits >> ( 64 - shift );
      } else {
         to[last] |= bits >> ( 64 - shift ) & ownLast;
      }
   }
}

template<class Table, ChipType chipType, unsigned variant>
struct AtPair {
   using Class = AtClass<Table>;
   static constexpr std::size_t fieldCount = std::size( Class::fields );

   // Where the pair has each field. Code that is evaluated for each pair calls few functions, since
   // calls are most of its cost at compile time.
   static constexpr std::array<Cell, fieldCount> cells = [] {
      std::array<Cell, fieldCount> result;
      for( Cell& cell : result ) {
         cell = Layouts::absent;
      }
      constexpr U32 chipBit = U32{ 1 } << chipType;
      constexpr U32 variantBit = U32{ 1 } << describedVariant( variant );
      for( const Layouts::Placement& row : Class::description.layout.rows ) {
         if( ( row.chips.bits & chipBit ) != 0 && ( row.variants.bits & variantBit ) != 0 &&
             row.cell.width != 0 ) {
            result[row.field] = row.cell;
         }
      }
      return result;
   }();
   static consteval bool has( unsigned field ) { return cells[field].present(); }

   static constexpr Layouts::Dimension dimension =
      rowOf( Class::description.dimensions.rows, chipType, variant );
   static constexpr Layouts::Address address =
      rowOf( Class::description.addresses.rows, chipType, variant );
   static constexpr unsigned bytes = 4u * dimension.width;
   static constexpr std::size_t words = ( bytes + 7 ) / 8;

   static constexpr Layouts::Tag tag = rowOf( Class::description.tags.rows, chipType, variant );
   static constexpr std::size_t tagCount = [] {
      std::size_t count = 0;
      while( count < Layouts::tagFieldLimit && tag.fields[count].field != Layouts::noField ) {
         ++count;
      }
      return count;
   }();
   // Calls `act` with the numbers of the tag's fields, as constants, as long as it returns true.
   template<class Act>
   HARDWARE_INLINE static constexpr bool everyTag( const Act& act ) {
      return [&]<std::size_t... number>( std::index_sequence<number...> ) {
         return ( act.template operator()<number>() && ... );
      }
      ( std::make_index_sequence<tagCount>() );
   }
   // Calls `act` with the numbers of the entry's 64-bit words.
   template<class Act>
   HARDWARE_INLINE static constexpr void eachWord( const Act& act ) {
      [&]<std::size_t... word>( std::index_sequence<word...> ) {
         ( act.template operator()<word>(), ... );
      }
      ( std::make_index_sequence<words>() );
   }

   using Words = std::array<U64, words>;

   // The bits that compose() takes from each field: all but those shared with a field that takes
   // precedence, which is a tag field before any other, then the narrower one, then the one
   // declared later.
   struct Masks {
      Words all{};
      Words own[fieldCount]{};
   };
   static constexpr Masks masks = [] {
      bool stamped[fieldCount] = {};
      for( std::size_t number = 0; number < tagCount; ++number ) {
         stamped[tag.fields[number].field] = true;
      }
      std::array<U8, fieldCount> order;
      unsigned count = 0;
      for( unsigned field = fieldCount; field-- > 0; ) {
         const unsigned width = cells[field].width;
         if( width == 0 ) {
            continue;
         }
         unsigned place = count++;
         for( ; place > 0; --place ) {
            const U8 before = order[place - 1];
            if( stamped[before] || ( !stamped[field] && cells[before].width <= width ) ) {
               break;
            }
            order[place] = before;
         }
         order[place] = static_cast<U8>( field );
      }
      Masks result;
      Words held{};
      for( unsigned place = 0; place < count; ++place ) {
         const unsigned field = order[place];
         const unsigned end = cells[field].offset + unsigned{ cells[field].width };
         for( unsigned bit = cells[field].offset; bit < end; ) {
            const unsigned word = bit / 64;
            const unsigned next = std::min( end, 64 * word + 64 );
            const U64 bits = ~U64{ 0 } >> ( 64 - ( next - bit ) ) << bit % 64;
            result.own[field][word] = bits & ~held[word];
            result.all[word] |= bits;
            // A read-only field that isn't stamped takes no bits.
            held[word] |= stamped[field] || !Class::fields[field].readOnly ? bits : 0;
            bit = next;
         }
      }
      return result;
   }();

   // Adds a field's value to an entry's words.
   template<unsigned field, class Value>
   HARDWARE_INLINE static constexpr void put( U64* to, const Value& value ) {
      constexpr Cell cell = cells[field];
      constexpr const Words& own = masks.own[field];
      if constexpr( std::is_integral_v<Value> ) {
         putPart<cell.offset, cell.width, own[cell.offset / 64], own[( cell.end() - 1 ) / 64],
                 isBounded<cell.width>>( to, value );
      } else {
         eachPart<cell.width>( [&]<unsigned word, unsigned part>() {
            constexpr unsigned offset = cell.offset + 64 * word;
            putPart<offset, part, own[offset / 64], own[( offset + part - 1 ) / 64], false>(
               to, value.word( word ) );
         } );
      }
   }
};

// The argument of a setter. An argument that could lose bits in the conversion to `Value` must be a
// constant, which is tested here.
template<class Value>
class AtArgument {
   template<class From>
   static constexpr bool keepsBits = std::is_unsigned_v<From> && sizeof( From ) <= sizeof( Value );
   template<class From>
   static consteval auto integerOf() {
      if constexpr( std::is_enum_v<From> ) {
         return std::underlying_type_t<From>{};
      } else {
         return From{};
      }
   }
   template<class From>
   static constexpr bool isInteger = std::is_integral_v<From> ||
                                     ( std::is_enum_v<From> && std::is_convertible_v<From, int> );

public:
   template<class From>
   requires( isInteger<From>&& keepsBits<decltype( integerOf<From>() )> ) constexpr AtArgument(
      From value )
      : value_( value ) {}

   template<class From>
   requires( isInteger<From> &&
             !keepsBits<decltype( integerOf<From>() )> ) consteval AtArgument( From value )
      : value_( static_cast<Value>( value ) ) {
      if( value < From{} || static_cast<U64>( value ) != value_ ) {
         throw "the value doesn't fit the field's type";
      }
   }

   constexpr operator Value() const { return value_; }

private:
   Value value_;
};

template<class Value>
using AtParameter = std::conditional_t<std::is_integral_v<Value>, AtArgument<Value>, const Value&>;

// What all views of a pair have: the entry, and the operations that need no list of fields.
template<class Table, ChipType chipType, unsigned variant>
class AtViewBase {
protected:
   using Pair = AtPair<Table, chipType, variant>;

public:
   using Entry = WholeEntry<storageBytes<Table>>;
   static constexpr U16 storageSize = storageBytes<Table>;

   constexpr AtViewBase( const U8* entry, std::size_t length ) : buf_( entry ), len_( length ) {
      if( length < Pair::bytes ) [[unlikely]] {
         atFailLength( Pair::Class::name, Pair::bytes );
      }
   }

   constexpr const U8* buf() const { return buf_; }
   constexpr std::size_t len() const { return len_; }

   // Whether the entry has the pair's tag; true if the pair has none.
   constexpr bool holdsTag() const {
      return Pair::everyTag( [&]<std::size_t number>() {
         constexpr auto tag = Pair::tag.fields[number];
         constexpr Cell cell = Pair::cells[tag.field];
         return getField<U8, cell.offset, cell.width, Pair::bytes>( buf_ ) == tag.value;
      } );
   }

   static constexpr U16 fieldCount() {
      return static_cast<U16>( std::count_if( Pair::cells.begin(), Pair::cells.end(),
                                              []( Cell cell ) { return cell.present(); } ) );
   }

   // The entry with all bits outside the pair's fields cleared. Asserts "len_ >= storageSize".
   constexpr Entry getAllFields() const {
      if( len_ < storageSize ) [[unlikely]] {
         atFailEntryLength( Pair::Class::name, entryType, storageSize );
      }
      Entry entry{};
      Pair::eachWord( [&]<std::size_t word>() {
         if constexpr( Pair::masks.all[word] != 0 ) {
            const U64 bits = entryWord<word, Pair::bytes>( buf_ ) & Pair::masks.all[word];
            if constexpr( std::is_integral_v<Entry> ) {
               entry = static_cast<Entry>( bits );
            } else {
               entry.wordIs( word, bits );
            }
         }
      } );
      return entry;
   }
   // The union of the bits of the pair's fields.
   static constexpr Raw4096 allFieldsMask() {
      Raw4096 mask{};
      for( std::size_t word = 0; word < Pair::words; ++word ) {
         mask.wordIs( static_cast<unsigned>( word ), Pair::masks.all[word] );
      }
      return mask;
   }

   // By identifier, like the views'. An identifier of no field of the class is the assertion
   // "false"; a field that the pair lacks has the width 0, and its offset is an assertion.
   static constexpr U16 fieldWidth( U32 fieldId ) {
      const std::size_t field = fieldOf( fieldId );
      if( field == Pair::fieldCount ) [[unlikely]] {
         atFailIdentifier( "U16", Pair::Class::name, "::fieldWidth(U32) const" );
      }
      return Pair::cells[field].width;
   }
   static constexpr U16 fieldOffset( U32 fieldId ) {
      const std::size_t field = fieldOf( fieldId );
      if( field == Pair::fieldCount ) [[unlikely]] {
         atFailIdentifier( "U16", Pair::Class::name, "::fieldOffset(U32) const" );
      }
      if( !Pair::cells[field].present() ) [[unlikely]] {
         failPlace( field, "U16", "Offset() const" );
      }
      return Pair::cells[field].offset;
   }
   static constexpr bool isFieldValid( U32 fieldId ) {
      const std::size_t field = fieldOf( fieldId );
      return field != Pair::fieldCount && Pair::cells[field].present();
   }

protected:
   static constexpr std::size_t fieldOf( U32 fieldId ) {
      std::size_t field = 0;
      while( field < Pair::fieldCount && Pair::Class::fields[field].identifier != fieldId ) {
         ++field;
      }
      return field;
   }

   [[noreturn, gnu::cold]] static void failPlace( std::size_t field, std::string_view result,
                                                  std::string_view operation ) {
      U32 variants = 0;
      for( const Layouts::Placement& row : Pair::Class::description.layout.rows ) {
         if( row.field == field && row.chips.has( chipType ) && row.cell.present() ) {
            variants |= row.variants.bits;
         }
      }
      atFailPlace( Pair::Class::fields[field], std::has_single_bit( variants ),
                   static_cast<U64>( std::countr_zero( variants ) ), result, operation );
   }

   static constexpr std::string_view entryType = sizeof( Entry ) <= 4    ? "U32"
                                                 : sizeof( Entry ) <= 8  ? "U64"
                                                 : sizeof( Entry ) <= 16 ? "Raw128"
                                                 : sizeof( Entry ) <= 32 ? "Raw256"
                                                 : sizeof( Entry ) <= 64 ? "Raw512"
                                                                         : "Raw1024";

   const U8* buf_;
   std::size_t len_;
};

template<class Table, ChipType chipType, unsigned variant>
class AtEntry;

// The distinct formats among a class's pairs: same cells, same tag, same width. `chips` selects
// chip types by their bits; none selects all.
template<class Table, U32 chips>
class AtFormats {
   using Class = AtClass<Table>;
   static constexpr std::size_t fieldCount = std::size( Class::fields );
   static constexpr U8 none = 0xff;

   struct Numbers {
      unsigned pairs = 0;
      U8 of[Layouts::chipLimit][Layouts::variantLimit] = {};
   };

   template<class Visit>
   static constexpr void forEachPair( U32 chipBits, U32 variantBits, const Visit& visit ) {
      chipBits &= chips == 0 ? ~U32{ 0 } : chips;
      for( ; chipBits != 0; chipBits &= chipBits - 1 ) {
         for( U32 rest = variantBits; rest != 0; rest &= rest - 1 ) {
            visit( static_cast<unsigned>( std::countr_zero( chipBits ) ),
                   static_cast<unsigned>( std::countr_zero( rest ) ) );
         }
      }
   }

   // The class's pairs, numbered.
   static constexpr Numbers pairs = [] {
      Numbers numbers;
      for( auto& row : numbers.of ) {
         for( U8& number : row ) {
            number = none;
         }
      }
      for( const Layouts::Dimension& row : Class::description.dimensions.rows ) {
         forEachPair( row.chips.bits, row.variants.bits,
                      [&]( unsigned chipType, unsigned variant ) {
                         numbers.of[chipType][variant] = static_cast<U8>( numbers.pairs++ );
                      } );
      }
      return numbers;
   }();

   // Format numbers start at 1, in the order of the pairs; 0 is that of all other pairs.
   struct Found {
      unsigned count = 0;
      U8 of[Layouts::chipLimit][Layouts::variantLimit] = {};
      U8 chipType[pairs.pairs + 1] = {}; // of a format's first pair
      U8 variant[pairs.pairs + 1] = {};
   };

   static constexpr Found found = [] {
      struct Contents {
         std::array<Cell, fieldCount> cells = {};
         Layouts::Tag tag = {};
         U16 width = 0;
         U64 hash = 0;
      };
      std::array<Contents, pairs.pairs + 1> contents = {};
      const auto at = [&contents]( unsigned chipType, unsigned variant ) -> Contents& {
         return contents[pairs.of[chipType][variant]];
      };
      for( const Layouts::Dimension& row : Class::description.dimensions.rows ) {
         forEachPair( row.chips.bits, row.variants.bits,
                      [&]( unsigned chipType, unsigned variant ) {
                         at( chipType, variant ).width = row.width;
                      } );
      }
      for( const Layouts::Placement& row : Class::description.layout.rows ) {
         if( row.cell.present() ) {
            const U64 mixed =
               ( U64{ row.field } << 32 | U64{ row.cell.offset } << 16 | row.cell.width ) *
               0x9e3779b97f4a7c15u;
            forEachPair( row.chips.bits, row.variants.bits,
                         [&]( unsigned chipType, unsigned variant ) {
                            at( chipType, variant ).cells[row.field] = row.cell;
                            at( chipType, variant ).hash += mixed ^ mixed >> 29;
                         } );
         }
      }
      for( const Layouts::Tag& row : Class::description.tags.rows ) {
         forEachPair( row.chips.bits, row.variants.bits,
                      [&]( unsigned chipType, unsigned variant ) {
                         for( std::size_t number = 0; number < Layouts::tagFieldLimit; ++number ) {
                            at( chipType, variant ).tag.fields[number] = row.fields[number];
                         }
                      } );
      }
      const auto equal = []( const Contents& left, const Contents& right ) {
         if( left.hash != right.hash || left.width != right.width || left.cells != right.cells ) {
            return false;
         }
         for( std::size_t number = 0; number < Layouts::tagFieldLimit; ++number ) {
            if( left.tag.fields[number] != right.tag.fields[number] ) {
               return false;
            }
         }
         return true;
      };
      Found result;
      for( unsigned chipType = 0; chipType < Layouts::chipLimit; ++chipType ) {
         for( unsigned variant = 0; variant < Layouts::variantLimit; ++variant ) {
            if( pairs.of[chipType][variant] == none ) {
               continue;
            }
            unsigned format = 0;
            while( format < result.count &&
                   !equal( at( chipType, variant ),
                           at( result.chipType[format], result.variant[format] ) ) ) {
               ++format;
            }
            if( format == result.count ) {
               result.chipType[format] = static_cast<U8>( chipType );
               result.variant[format] = static_cast<U8>( variant );
               ++result.count;
            }
            result.of[chipType][variant] = static_cast<U8>( format + 1 );
         }
      }
      return result;
   }();

public:
   static constexpr unsigned count = found.count;

   // `count` or more for a pair that isn't among them.
   static constexpr unsigned numberOf( U8 chipType, U8 variant ) {
      return ( chipType < Layouts::chipLimit ? found.of[chipType][describedVariant( variant )]
                                             : 0u ) -
             1u;
   }

   template<unsigned format>
   struct Pair {
      using At =
         AtEntry<Table, static_cast<ChipType>( found.chipType[format] ), found.variant[format]>;
   };

   // Calls `act` with the pair of the format of that number, if it is at least `first` and less
   // than `end`. Comparisons, because a jump through a table was predicted badly.
   template<unsigned first, unsigned end, class Act>
   [[gnu::always_inline]] static constexpr bool call( unsigned number, Act& act ) {
      if constexpr( end - first > 1 ) {
         constexpr unsigned middle = first + ( end - first ) / 2;
         return number < middle ? call<first, middle>( number, act )
                                : call<middle, end>( number, act );
      } else {
         if constexpr( first < end ) {
            if( number == first ) {
               act( Pair<first>{} );
               return true;
            }
         }
         return false;
      }
   }
};

} // namespace Hardware::Detail
