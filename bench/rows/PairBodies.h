// All fields of a pair, composed or decoded by the library, entry by entry.
#pragma once

#include "Entries.h"
#include "Pairs.h"

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

} // namespace Bench
