// The narrow fields of a class as run-time data: their accessors over a few entries.
#pragma once

#include "Entries.h"

#include <vector>

namespace Bench {

// A field's accessors, each called once on each of the views.
template<class View>
struct Accessors {
   U32 identifier;
   void ( *get )( Views<View>& views );
   void ( *set )( Views<View>& views ); // null for a tag field
};

template<class View>
std::vector<Accessors<View>> accessorsOf() {
   std::vector<Accessors<View>> all;
   View::forEachField( [&all]( auto field ) {
      using Field = decltype( field );
      if constexpr( !Field::wide ) {
         Accessors<View> accessors{ Field::identifier, {}, {} };
         accessors.get = []( Views<View>& views ) {
            forEach( views, []( const View& view ) { static_cast<void>( Field::get( view ) ); } );
         };
         if constexpr( !Field::readOnly ) {
            accessors.set = []( Views<View>& views ) {
               forEach( views, []( View& view ) { Field::set( view, 1 ); } );
            };
         }
         all.push_back( accessors );
      }
   } );
   return all;
}

} // namespace Bench
