// The fields of an entry in bit order, and the bits that belong to none.
#include <Vorn/BitOrder.h>

#include <Vorn/Text.h>

#include <algorithm>
#include <numeric>

namespace Vorn {

BitOrder::BitOrder( const Layout& layout ) : words_( layout.info().width ) {
   for( const Vorn::Field& field : layout.fields() ) {
      fields_.push_back( { field, 0 } );
   }
   std::stable_sort( fields_.begin(), fields_.end(), []( const Field& left, const Field& right ) {
      return left.offset != right.offset ? left.offset < right.offset : left.width > right.width;
   } );
   findUnused();
   assignLanes();
}

unsigned BitOrder::unusedBits() const {
   return std::accumulate( unused_.begin(), unused_.end(), 0u,
                           []( unsigned sum, const Run& run ) { return sum + run.width; } );
}

bool BitOrder::operator==( const BitOrder& other ) const {
   return words_ == other.words_ &&
          std::equal( fields_.begin(), fields_.end(), other.fields_.begin(), other.fields_.end(),
                      []( const Field& left, const Field& right ) {
                         return left.identifier == right.identifier &&
                                left.offset == right.offset && left.width == right.width;
                      } );
}

void BitOrder::findUnused() {
   unsigned end = 0; // of the bits that have been looked at
   const auto unusedUpTo = [&]( unsigned next ) {
      if( next > end ) {
         unused_.push_back( { end, next - end } );
      }
   };
   for( const Field& field : fields_ ) {
      unusedUpTo( field.offset );
      end = std::max( end, field.end() );
   }
   unusedUpTo( words_ * 32 );
}

// A field takes the free lane with the most fields, and opens another if none is free. That needs
// as few lanes as possible, and a field that covers most of the entry comes to stand alone.
void BitOrder::assignLanes() {
   struct Lane {
      unsigned end;
      std::size_t fields;
   };
   std::vector<Lane> lanes;
   for( Field& field : fields_ ) {
      auto best = lanes.end();
      for( auto lane = lanes.begin(); lane != lanes.end(); ++lane ) {
         if( lane->end <= field.offset && ( best == lanes.end() || lane->fields > best->fields ) ) {
            best = lane;
         }
      }
      if( best == lanes.end() ) {
         best = lanes.insert( lanes.end(), { 0, 0 } );
      }
      *best = { field.end(), best->fields + 1 };
      field.lane = static_cast<std::size_t>( best - lanes.begin() );
   }
   std::vector<std::size_t> order( lanes.size() );
   std::iota( order.begin(), order.end(), std::size_t( 0 ) );
   std::stable_sort( order.begin(), order.end(), [&]( std::size_t left, std::size_t right ) {
      return lanes[left].fields > lanes[right].fields;
   } );
   for( Field& field : fields_ ) {
      const auto position = std::find( order.begin(), order.end(), field.lane );
      field.lane = static_cast<std::size_t>( position - order.begin() );
   }
   lanes_ = std::max( lanes.size(), std::size_t( 1 ) );
}

} // namespace Vorn
