// All fields of a pair, composed or decoded by the library or the floor, entry by entry.
#pragma once

#include "Entries.h"
#include "Pairs.h"

#include <cstring>
#include <memory>

namespace Bench {

// The narrow fields, and how many of them have a setter.
template<class Pair>
struct NarrowFields {
   static constexpr unsigned count( bool settableOnly ) {
      unsigned fields = 0;
      forEachField<Pair>( [&fields, settableOnly]<class Field>( const char* ) {
         fields += !Field::wide && ( Field::settable || !settableOnly );
      } );
      return fields;
   }
   static constexpr unsigned all = count( false );
   static constexpr unsigned settable = count( true );
};

template<class Pair>
void compose( Views<typename Pair::View>& views ) {
   forEach( views, [&]( auto& view ) {
      forEachField<Pair>( [&view]<class Field>( const char* ) {
         if constexpr( Field::settable && !Field::wide ) {
            ( view.*Field::set )( 1 );
         }
      } );
   } );
}

template<class Pair>
void decode( Views<typename Pair::View>& views ) {
   forEach( views, [&]( const auto& view ) {
      forEachField<Pair>( [&view]<class Field>( const char* ) {
         if constexpr( !Field::wide ) {
            static_cast<void>( ( view.*Field::get )() );
         }
      } );
   } );
}

template<class Pair, class Images>
void composeFloor( Images& images ) {
   forEach( images, [&]( const Floor::Image& image ) {
      forEachField<Pair>( [&image]<class Field>( const char* ) {
         if constexpr( Field::settable && !Field::wide ) {
            Field::floorSet( image, 1 );
         }
      } );
   } );
}

template<class Pair, class Images>
void decodeFloor( Images& images ) {
   forEach( images, [&]( const Floor::Image& image ) {
      forEachField<Pair>( [&image]<class Field>( const char* ) {
         if constexpr( !Field::wide ) {
            static_cast<void>( Field::floorGet( image ) );
         }
      } );
   } );
}

template<class Pair>
struct Sides {
   Sides() : views( Pair::chipType, Pair::variant ) {}

   Views<typename Pair::View> views;
   Images<Pair::View::storageSize> images;
};

// Both sides hold the same bits and read the same value, in every entry.
template<class Pair, class Field>
bool sidesAgree( Sides<Pair>& sides ) {
   for( unsigned number = 0; number < entryCount; ++number ) {
      const typename Pair::View& view = sides.views[number];
      const Floor::Image& image = sides.images[number];
      if( ( view.*Field::get )() != Field::floorGet( image ) ||
          std::memcmp( view.buf(), image.words, view.len() ) != 0 ) {
         return false;
      }
   }
   return true;
}

// Both sides start with the same bits, in every other entry all ones.
template<class Pair>
std::shared_ptr<Sides<Pair>> makeSides() {
   auto sides = std::make_shared<Sides<Pair>>();
   for( unsigned number = 0; number < entryCount; ++number ) {
      const typename Pair::View& view = sides->views[number];
      if( number % 2 != 0 ) {
         std::memset( view.buf(), 0xff, view.len() );
      }
      std::memcpy( sides->images[number].words, view.buf(), view.len() );
   }
   return sides;
}

template<class Pair>
bool allSidesAgree( Sides<Pair>& sides ) {
   bool agree = true;
   forEachField<Pair>(
      [&]<class Field>( const char* ) { agree = agree && sidesAgree<Pair, Field>( sides ); } );
   return agree;
}

} // namespace Bench
