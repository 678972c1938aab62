// The narrow fields of a class as run-time data: their accessors over a few entries.
#pragma once

#include "Entries.h"

#include <Hardware/FieldId.h>

#include <vector>

namespace Bench {

// A field's accessors, each called once on each of the views.
template<class View>
struct Accessors {
   U32 identifier;
   void ( *get )( Views<View>& views );
   void ( *set )( Views<View>& views ); // null for a tag field
};

template<class View, auto get>
void getEach( Views<View>& views ) {
   forEach( views, [&]( const View& view ) { static_cast<void>( ( view.*get )() ); } );
}

template<class View, auto set>
void setEach( Views<View>& views ) {
   forEach( views, [&]( View& view ) { ( view.*set )( 1 ); } );
}

// Defined for each class by Accessors.inc.
template<class View>
std::vector<Accessors<View>> accessorsOf();

} // namespace Bench
