// Observing the library's trace lines.
#include "Traces.h"

#include <Oru/Trace.h>

namespace Testing {

std::vector<std::string> tracesOf( int level, Action action ) {
   std::vector<std::string> lines;
   Oru::traceSinkIs( [&lines]( const std::string& line ) { lines.push_back( line ); } );
   Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", level, true );
   const auto restore = [level] {
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", level, false );
      Oru::traceSinkIs( {} );
   };
   try {
      action();
   } catch( ... ) {
      restore();
      throw;
   }
   restore();
   return lines;
}

} // namespace Testing
