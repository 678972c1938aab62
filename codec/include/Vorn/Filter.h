// Conditions on the fields of an entry: `vsi >= 2000 && learnEnable == 1`.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Whether entries of a pair meet a condition that a person writes.
//
//    const Vorn::Filter filter( "vsi >= 2000 && (learnEnable == 1 || vlanEditVid1 in 100..200)",
//                               Vorn::Layout( "LifTable", "BCM88690_B0" ) );
//    filter.matches( image );
//
//    vsi == 2000, !=, <, <=, >, >=   a field and a value, or two fields; unsigned, of any width
//    vsi in 100..200                 within a range, its ends included
//    vsi in { 1, 5, 100..200 }       one of a set; also `not in`
//    destination & 0xff == 3         the bits of a mask alone, wherever a field may stand
//    learnEnable                     not zero
//    ! a, a && b, a || b, ( a )      from the tightest on; also `not`, `and`, `or`
//
// Values are what parseValue() takes: 2000, 0x7d0, 0b11, 10.0.0.1, 2001:db8::1, 00:1c:73:00:00:01.
// A decimal number with a leading zero is refused, as some would read it as octal.
class VORN_API Filter {
public:
   // A condition on one pair's fields. A bad one is a BadText whose at() says where: its form, a
   // field that the pair lacks, a value that the field can't have.
   Filter( std::string_view condition, const Layout& layout );

   // Checks the form of the condition, whatever its fields are; a BadText if it is wrong.
   static void require( std::string_view condition );

   const Layout& layout() const;

   // An image that ends before one of the condition's fields is an Error.
   bool matches( std::span<const U8> image ) const;

   // The fields that the condition uses, each once, in its order.
   std::span<const Field> fields() const;

private:
   struct Program;

   std::shared_ptr<const Program> program_; // never changes, so that copies share it
};

// The same for entries of several pairs, whose fields may differ.
class VORN_API PairFilter {
public:
   // The entries of a pair for which the condition can't hold: it lacks a field, say.
   struct LeftOut {
      Layout layout;
      std::string reason;
      U64 entries = 0; // that matches() has been asked about
   };

   // A condition that is wrong on every one of the layouts is a BadText.
   PairFilter( std::string condition, std::span<const Layout> layouts );

   // An entry of a pair for which the condition can't hold doesn't match, and is counted.
   bool matches( const Layout& layout, std::span<const U8> image );

   // The same in two steps, for many entries of a pair: its condition, null where that can't hold,
   // and the count of entries for which it can't. The condition lives until another pair is asked
   // for.
   const Filter* filterOf( const Layout& layout );
   void leaveOut( const Layout& layout, U64 entries );

   // In order of the first entry of each.
   std::span<const LeftOut> leftOut() const { return leftOut_; }

private:
   struct Known {
      Layout layout;
      std::optional<Filter> filter;
      std::string reason;                 // why there is none
      std::optional<std::size_t> leftOut; // its index in leftOut_, once an entry was asked about
   };

   Known& knownOf( const Layout& layout );

   std::string condition_;
   std::vector<Known> known_;
   std::size_t last_ = 0;
   std::vector<LeftOut> leftOut_;
};

} // namespace Vorn
