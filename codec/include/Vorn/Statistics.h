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
   U64 set = 0;                 // entries in which it isn't zero
   std::size_t distinct = 0;    // values, at most mostDistinct
   bool isDistinctExact = true; // false if there are more
   Value least;
   Value greatest;
   std::vector<Count> frequent; // the most frequent values, the most frequent first; of two
                                // equally frequent ones, the lesser first
   Value alwaysOne;             // ones at the bits that are one in every entry
   Value alwaysZero;            // ones at the bits that are zero in every entry
};

// Counts the fields of the entries of one pair, in memory that doesn't grow beyond
// `mostDistinct` values of each field.
//
//    Vorn::Statistics statistics( Vorn::Layout( "LifTable", "BCM88690_B0" ) );
//    while( reader.next() ) { statistics.add( reader.entry().image ); }
//    for( const Vorn::FieldStatistics& field : statistics.fields() ) { ... field.greatest ... }
class VORN_API Statistics {
public:
   // How many different values of a field are counted: the first ones. Any others count only in
   // `set`, `least`, `greatest` and the bits.
   static constexpr std::size_t mostDistinct = 65536;

   explicit Statistics( const Layout& layout );
   Statistics( Statistics&& other ) noexcept;
   Statistics& operator=( Statistics&& other ) noexcept;
   ~Statistics();

   const Layout& layout() const;
   U64 entries() const;

   // An image that ends before its last field is an Error.
   void add( std::span<const U8> image );

   // In declared order, with at most `mostFrequent` frequent values each. Without entries all
   // numbers are 0.
   std::vector<FieldStatistics> fields( std::size_t mostFrequent = 3 ) const;

private:
   struct State;

   std::unique_ptr<State> state_;
};

} // namespace Vorn
