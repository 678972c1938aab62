// What the fields of many entries hold: how often, how much, and which bits never change.
#include <Vorn/Statistics.h>

#include <Vorn/Bits.h>

#include <algorithm>
#include <map>
#include <unordered_map>
#include <utility>

namespace Vorn {

namespace {

Value combined( const Value& left, const Value& right, bool isAnd ) {
   Value::Words words{};
   for( unsigned i = 0; i < words.size(); ++i ) {
      words[i] = isAnd ? left.word( i ) & right.word( i ) : left.word( i ) | right.word( i );
   }
   return Value( words );
}

// The bits of `all` that `bits` lacks.
Value without( const Value& all, const Value& bits ) {
   Value::Words words{};
   for( unsigned i = 0; i < words.size(); ++i ) {
      words[i] = all.word( i ) & ~bits.word( i );
   }
   return Value( words );
}

// Counts the values of a field, which are U64 where they have room in it.
template<class Number, class Counts>
struct Counter {
   Number least{};
   Number greatest{};
   Number ones{};  // of all entries together
   Number zeros{}; // inverted: bits that are one in every entry
   U64 set = 0;
   Counts counts;
   U64* last = nullptr; // the count of the last value
   Number lastValue{};
   bool isExact = true;

   template<class And, class Or>
   void add( const Number& number, bool isFirst, And both, Or either ) {
      set += number == Number( 0 ) ? 0 : 1;
      if( isFirst ) {
         least = greatest = ones = zeros = number;
      } else {
         least = std::min( least, number );
         greatest = std::max( greatest, number );
         ones = either( ones, number );
         zeros = both( zeros, number );
      }
      if( last && lastValue == number ) {
         ++*last;
         return;
      }
      auto found = counts.find( number );
      if( found == counts.end() ) {
         if( counts.size() == Statistics::mostDistinct ) {
            isExact = false;
            return;
         }
         found = counts.emplace( number, 0 ).first;
      }
      last = &found->second;
      lastValue = number;
      ++*last;
   }

   FieldStatistics result( const Field& field, U64 entries, std::size_t most ) const {
      FieldStatistics made{ field, set, counts.size(), isExact, least, greatest, {}, {}, {} };
      if( entries > 0 ) {
         made.alwaysOne = zeros;
         made.alwaysZero = without( Value::onesOf( field.width ), ones );
      }
      std::vector<std::pair<U64, Number>> sorted;
      for( const auto& [value, count] : counts ) {
         sorted.emplace_back( ~count, value );
      }
      const auto end =
         sorted.begin() + static_cast<std::ptrdiff_t>( std::min( most, sorted.size() ) );
      std::partial_sort( sorted.begin(), end, sorted.end() );
      for( auto at = sorted.begin(); at != end; ++at ) {
         made.frequent.push_back( { Value( at->second ), ~at->first } );
      }
      return made;
   }
};

using Narrow = Counter<U64, std::unordered_map<U64, U64>>;
using Wide = Counter<Value, std::map<Value, U64>>;

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) Statistics::State {
   explicit State( const Layout& own ) : layout( own ) {
      for( const Field& field : own.fields() ) {
         ( field.width <= 64 ? narrowFields : wideFields ).push_back( &field );
      }
      narrow.resize( narrowFields.size() );
      wide.resize( wideFields.size() );
   }

   Layout layout;
   U64 entries = 0;
   std::vector<const Field*> narrowFields; // of the layout
   std::vector<const Field*> wideFields;
   std::vector<Narrow> narrow;
   std::vector<Wide> wide;
};

Statistics::Statistics( const Layout& layout ) : state_( std::make_unique<State>( layout ) ) {}
Statistics::Statistics( Statistics&& other ) noexcept = default;
Statistics& Statistics::operator=( Statistics&& other ) noexcept = default;
Statistics::~Statistics() = default;

const Layout& Statistics::layout() const { return state_->layout; }

U64 Statistics::entries() const { return state_->entries; }

void Statistics::add( std::span<const U8> image ) {
   State& state = *state_;
   state.layout.requireFields( image );
   const bool isFirst = state.entries++ == 0;
   for( std::size_t i = 0; i < state.narrow.size(); ++i ) {
      const Field& field = *state.narrowFields[i];
      state.narrow[i].add(
         Detail::bitsAt( image.data(), image.size(), field.offset, field.width ), isFirst,
         []( U64 left, U64 right ) { return left & right; },
         []( U64 left, U64 right ) { return left | right; } );
   }
   for( std::size_t i = 0; i < state.wide.size(); ++i ) {
      state.wide[i].add(
         state.layout.value( image, *state.wideFields[i] ), isFirst,
         []( const Value& left, const Value& right ) { return combined( left, right, true ); },
         []( const Value& left, const Value& right ) { return combined( left, right, false ); } );
   }
}

std::vector<FieldStatistics> Statistics::fields( std::size_t mostFrequent ) const {
   const State& state = *state_;
   std::vector<FieldStatistics> fields;
   std::size_t narrow = 0;
   std::size_t wide = 0;
   for( const Field& field : state.layout.fields() ) {
      fields.push_back( field.width <= 64
                           ? state.narrow[narrow++].result( field, state.entries, mostFrequent )
                           : state.wide[wide++].result( field, state.entries, mostFrequent ) );
   }
   return fields;
}

} // namespace Vorn
