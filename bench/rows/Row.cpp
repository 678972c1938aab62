// All rows together.
#include "Row.h"

#include <cstdio>
#include <cstdlib>

namespace Bench {

Rows allRows() {
   Rows rows;
   addPairRows( rows );
   addFieldRows( rows );
   addWideRows( rows );
   addAccessRows( rows );
   addEntryRows( rows );
   addTraceRows( rows );
   addCallRows( rows );
   addFormatRows( rows );
   return rows;
}

void require( bool agree, const std::string& row ) {
   if( !agree ) {
      std::fprintf( stderr, "%s: the two sides differ\n", row.c_str() );
      std::exit( 1 );
   }
}

} // namespace Bench
