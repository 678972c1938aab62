// The field values of images of one pair, extracted by places that are worked out once.
#include "Decoder.h"

#include "Entry.h"
#include "Error.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace Vorn {

Decoder::Decoder( Plan plan ) : plan_( std::move( plan ) ) {
   const auto fields = plan_.fields();
   for( const Plan::Field& field : fields ) {
      Place place;
      if( field.width <= 64 ) {
         place.mask = ~U64( 0 ) >> ( 64 - field.width );
         place.byte = static_cast<U16>( field.offset / 8 );
         place.shift = static_cast<U8>( field.offset % 8 );
         place.isSplit = place.shift + field.width > 64;
      }
      places_.push_back( place );
      needed_ = std::max( needed_, ( std::size_t( field.offset ) + field.width + 7 ) / 8 );
   }
   byOffset_.resize( fields.size() );
   std::iota( byOffset_.begin(), byOffset_.end(), std::size_t( 0 ) );
   std::stable_sort( byOffset_.begin(), byOffset_.end(),
                     [&]( std::size_t left, std::size_t right ) {
                        return fields[left].offset < fields[right].offset;
                     } );
}

void Decoder::load( std::span<const U8> image, std::vector<U8>& loaded ) const {
   if( image.size() < needed_ ) {
      throw Error( "the image has " + std::to_string( image.size() ) + " bytes; the fields of " +
                   plan_.pairText() + " need " + std::to_string( needed_ ) +
                   ", a whole entry has " + std::to_string( plan_.imageBytes() ) );
   }
   // Two words more, so that a word may be read wherever a field begins.
   loaded.resize( needed_ + 2 * sizeof( U64 ) );
   std::copy_n( image.begin(), needed_, loaded.begin() );
}

Value Decoder::value( std::span<const U8> loaded, std::size_t position ) const {
   if( isNarrow( position ) ) {
      return Value( narrow( loaded, position ) );
   }
   return valueIn( loaded, plan_.fields()[position] );
}

} // namespace Vorn
