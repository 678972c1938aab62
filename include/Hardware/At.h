// Views over entries of a pair of chip type and variant that is known at compile time: everything
// that a view of the class can do with an entry, at the cost of the shifts and masks alone.
//
//    #include <Hardware/at/LifTable.h>
//
//    using Lif = Hardware::At<Hardware::LifTable, Hardware::BCM88690_B0, 0>;
//    Lif::Image image = Lif::blank(); // std::array<U8, 80>, the tag stamped
//    Lif lif( image );
//    lif.vsiIs( 2000 );
//
// Header-only, C++20, everything constexpr, without a library to link. A field that the pair lacks,
// and a pair that the class lacks, don't compile; both are constraints, so generic code can ask
// with a `requires` expression. Names, values, checks and the texts of assertions are those of the
// views; assertions call the C library's __assert_fail. Nothing traces, and no primitive of the
// platform is called.
#pragma once

#include <Hardware/detail/AtPair.h>

namespace Hardware {

// Whether a class has a pair. Needs <Hardware/at/<Class>.h>, like everything below.
template<class Table, unsigned chipType, unsigned variant>
concept HasPair = Detail::hasPair<Table>( chipType, variant );

namespace Detail {

// Whether a pair has a field, which Layouts::<Class> numbers.
template<class Table, unsigned chipType, unsigned variant, auto field>
concept HasField = AtPair < Table,
        static_cast<ChipType>( chipType )
, variant > ::has( field );

// What <Hardware/at/<Class>.h> expands for each class: reading an entry, and writing it.
template<class Table, ChipType chipType, unsigned variant>
class AtView;
template<class Table, ChipType chipType, unsigned variant>
class AtEntry;

} // namespace Detail

// A view over an entry that stays the caller's, made from an array, a std::array, a std::span, or
// pointer and length. The entry must have at least the pair's `width()` in words: a shorter array
// doesn't compile, any other shorter entry is the assertion "len_ >= N". Making
// it doesn't touch the entry, unlike the views of <Hardware/<Class>.h>: blank() and compose() stamp
// the pair's tag, and holdsTag() looks for it.
//
// For each field `f` that the pair has: `f()`, `fIs( value )`, `fMask()`, `fLen()`, `fOffset()`;
// and `isFValid()` for each field of the class. A setter accepts no argument that could lose bits
// in the conversion to the field's type; a constant that fits is fine.
//
// At::View only reads, over a const entry; an At is one. At::Fields is a struct of the pair's
// settable fields: `fields()` reads them all, `compose( fields )` writes the whole entry, tag
// included, once every bound has been tested. If fields share bits, the narrower one wins; among
// equally wide ones, the one declared later.
template<class Table, ChipType chipTypeNumber, unsigned variantNumber>
requires HasPair<Table, chipTypeNumber, variantNumber>
class At : public Detail::AtEntry<Table, chipTypeNumber, variantNumber> {
   using Pair = Detail::AtPair<Table, chipTypeNumber, variantNumber>;

public:
   using Detail::AtEntry<Table, chipTypeNumber, variantNumber>::AtEntry;

   static constexpr U8 chipType() { return chipTypeNumber; }
   static constexpr U8 variant() { return variantNumber; }

   static constexpr bool isTable() { return Pair::Class::isTable; }
   static constexpr U16 width() { return Pair::dimension.width; }
   static constexpr U32 arrayElements() { return Pair::dimension.arrayElements; }
   static constexpr U16 instanceCount() { return Pair::dimension.instanceCount; }

   // Of tables.
   static constexpr U16 tableWidth() requires Pair::Class::isTable { return width(); }
   static constexpr U32 entries() requires Pair::Class::isTable { return Pair::dimension.entries; }
   static constexpr U32 arrayIndex_min() requires Pair::Class::isTable { return 0; }
   static constexpr U32 index_min() requires Pair::Class::isTable { return 0; }
   static constexpr U32 tableVariantCount() requires Pair::Class::isTable {
      return Detail::variantCount<Table>( chipTypeNumber );
   }
   static constexpr bool isPrimary() requires Pair::Class::isTable { return true; }

   // Of registers.
   static constexpr U16 regWidth() requires( !Pair::Class::isTable ) { return width(); }
   static constexpr U32 maxIdentifier() requires( !Pair::Class::isTable ) {
      return Pair::dimension.maxIdentifier;
   }
   static constexpr U32 addrStride() requires( !Pair::Class::isTable ) {
      return Pair::dimension.addrStride;
   }

   // The S-channel address of an entry. An index out of range is an assertion; `schanAddress` is
   // written before `identifier` is tested. A pair without an address doesn't compile.
   static constexpr bool getSchanAddress( U32& schanAddress, U8& accessType, U8& destBlock,
                                          U16 identifier, U32 tableEntry,
                                          U16 arrayIndex ) requires( Pair::address.base.stated ) {
      constexpr bool isTable = Pair::Class::isTable;
      constexpr U32 entries = Pair::dimension.entries;
      constexpr U32 elements = Pair::dimension.arrayElements;
      if( tableEntry >= entries ) [[unlikely]] {
         Detail::atFailAddress( Pair::Class::name, "tableEntry",
                                isTable ? " < " : " == ", isTable ? entries : 0 );
      }
      if( arrayIndex >= elements ) [[unlikely]] {
         constexpr bool equality = isTable && elements == 1;
         Detail::atFailAddress( Pair::Class::name, "arrayIndex", equality ? " == " : " < ",
                                equality ? 0 : elements );
      }
      schanAddress = Pair::address.base.address + tableEntry * Pair::address.entryStep +
                     arrayIndex * Pair::address.arrayStep;
      if( identifier >= instanceCount() ) [[unlikely]] {
         Detail::atFailAddress( Pair::Class::name, "identifier", isTable ? " <= " : " < ",
                                isTable ? instanceCount() - 1u : instanceCount() );
      }
      const Layouts::Instance& instance = Pair::address.instances[identifier];
      destBlock = static_cast<U8>( instance.destBlock );
      accessType = static_cast<U8>( instance.accessType );
      return true;
   }
};

// Calls `act` with a pair that is known at run time, as a value whose type has the `At` of the
// pair's format: all of the above except what differs between pairs of one format, metadata and
// addresses. Where setField64() or fieldOffset() is asked for a field that the format lacks, the
// expression of the assertion may be that of another pair of the format. `act` is instantiated once
// for each distinct format. Use it once for each entry:
//
//    Hardware::withPair<Hardware::LifTable>( chipType, variant, [&]( auto pair ) {
//       typename decltype( pair )::At lif( entry );
//       if constexpr( requires { lif.vsi(); } ) {
//          lif.vsiIs( 2000 );
//       }
//    } );
//
// Chip types as further template arguments restrict it to their pairs. Returns false, without a
// call, for any other pair.
template<class Table, ChipType... chipTypes, class Act>
constexpr bool withPair( ChipType chipType, U8 variant, Act&& act ) {
   using Formats = Detail::AtFormats<Table, ( U32{ 0 } | ... | U32{ U32{ 1 } << chipTypes } )>;
   return Formats::template call<0, Formats::count>( Formats::numberOf( chipType, variant ), act );
}

} // namespace Hardware
