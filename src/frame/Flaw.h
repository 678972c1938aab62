// The flaws that the compiler can detect in a description, and how its message names them.
#pragma once

#include "Description.h"

#include <Hardware/ChipType.h>

namespace Hardware::Frame {

enum class Flaw : U8 {
   none,
   // declarations
   fieldRepeated,      // two declarations share a name
   capitalNameDiffers, // Name isn't name with its first letter in capitals
   // layout
   unknownField,     // a row names a field that the class doesn't declare
   cellLeftOut,      // a row has fewer cells than its block has columns
   surplusCell,      // a row has more cells than its block has columns
   fieldPlacedTwice, // one pair gives a field two places
   tooManyFormats,   // more formats than a set of formats holds
   fieldNowhere,     // a declared field has no place on any pair
   typeTooNarrow,    // the widest cell doesn't fit the declared type
   typeTooWide,      // a smaller type would hold the widest cell
   // dimensions
   pairDimensionedTwice, // two dimension rows speak of one pair
   storageDisagrees,     // the entry storage isn't the largest width
   someVariantsOnly,     // a chip type is without variants on some variants only
   tooManyFacts,         // more pairs with facts of their own than a table numbers
   fieldsWithoutPair,    // a layout speaks of a pair that no dimension has
   pairWithoutFields,    // a valid pair has no field at all
   fieldOutsideMemory,   // a field reaches beyond the pair's width
   // field counts
   countWithoutPair, // a stated field count speaks of a chip type without such a pair
   countDisagrees,   // the stated field count isn't the layout's
   countMissing,     // no stated field count speaks of a pair
   // addresses
   pairAddressedTwice, // two address rows speak of one pair
   addressWithoutPair, // an address row speaks of a pair that no dimension has
   instancesDisagree,  // instanceCount isn't the number of instances that are addressed
   noAddress,          // no address row speaks of a pair; one says `noAddress` where that is meant
   // tags
   pairTaggedTwice,         // two tag rows speak of one pair
   tagWithoutPair,          // a tag speaks of a pair that no dimension has
   tagFieldNotReadOnly,     // a tag stamps a field that has a setter
   tagFieldAbsent,          // a tag stamps a field that the pair lacks
   tagOutsideField,         // a tag's value doesn't fit its field
   readOnlyFieldWithoutTag, // a field without setter that no tag stamps
   untagged, // no tag row speaks of a pair with read-only fields; one says `untagged`
             // where that is meant
};

// Stands for the field, chip type or variant if a flaw has none.
inline constexpr unsigned anyNumber = 0xff;

// The first flaw of a description, with the field, chip type and variant where it is.
struct Finding {
   Flaw flaw = Flaw::none;
   unsigned field = anyNumber;
   unsigned chipType = anyNumber;
   unsigned variant = anyNumber;

   constexpr bool found() const { return flaw != Flaw::none; }
   constexpr void note( Flaw what, unsigned ofField, unsigned ofChipType = anyNumber,
                        unsigned ofVariant = anyNumber ) {
      if( !found() ) {
         *this = { what, ofField, ofChipType, ofVariant };
      }
   }
};

// What the compiler's message shows instead of anyNumber.
enum class Any { field, chipType, variant };

// A number as the compiler's message shows it.
template<class Number, unsigned number, Any any>
constexpr auto shown() {
   if constexpr( number == anyNumber ) {
      return any;
   } else {
      return static_cast<Number>( number );
   }
}

// Refuses a description with a flaw. The compiler's message shows the arguments, fields and chip
// types by name.
template<Flaw flaw, auto field, auto chipType, auto variant>
struct Soundness {
   static_assert( flaw == Flaw::none, "the description has the flaw named in the arguments" );
   static constexpr bool value = flaw == Flaw::none;
};

// Whether a description of a class with this enumeration of fields is sound. It doesn't compile
// otherwise.
template<class Field, Finding finding>
inline constexpr bool isSound =
   Soundness<finding.flaw, shown<Field, finding.field, Any::field>(),
             shown<Hardware::ChipType, finding.chipType, Any::chipType>(),
             shown<unsigned, finding.variant, Any::variant>()>::value;

} // namespace Hardware::Frame
