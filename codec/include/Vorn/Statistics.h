// What the fields of many entries hold: how often, how much, and which bits never change.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace Vorn {

// What is known of a field after some entries.
struct FieldStatistics {
   struct Count {
      Value value;
      U64 entries;
   };

   Field field;
   U64 set = 0;              // entries in which it isn't zero
   std::size_t distinct = 0; // values, as far as they have been counted
   bool isDistinctExact = true;
   Value least;
   Value greatest;
   std::vector<Count> frequent; // the values of most entries, the most frequent first, of two as
                                // frequent the lesser first
   Value alwaysOne;             // its bits that are one in every entry
   Value alwaysZero;            // and those that are zero
};

// Counts the fields of the entries of one pair, in memory that doesn't grow beyond
// `mostDistinct` values of each field.
//
//    Vorn::Statistics statistics( Vorn::Layout( "LifTable", "BCM88690_B0" ) );
//    while( reader.next() ) { statistics.add( reader.entry().image ); }
//    for( const Vorn::FieldStatistics& field : statistics.fields() ) { ... field.greatest ... }
class VORN_API Statistics {
public:
   // Values that are counted of a field. What comes first counts: where there are more, the others
   // are counted in nothing but `set`, least, greatest and the bits.
   static constexpr std::size_t mostDistinct = 65536;

   explicit Statistics( const Layout& layout );
   Statistics( Statistics&& other ) noexcept;
   Statistics& operator=( Statistics&& other ) noexcept;
   ~Statistics();

   const Layout& layout() const;
   U64 entries() const;

   // An image that ends before its last field is an Error.
   void add( std::span<const U8> image );

   // In the declared order; with at most `mostFrequent` frequent values each. Without entries there
   // is nothing to be known of them: all numbers are 0.
   std::vector<FieldStatistics> fields( std::size_t mostFrequent = 3 ) const;

private:
   struct State;

   std::unique_ptr<State> state_;
};

} // namespace Vorn
