// vornCounts, under callgrind: performs each row a fixed number of times and dumps the instructions
// of each side separately. A dump's description is side, operations and row, separated by tabs.
#include "rows/Row.h"

#include <valgrind/callgrind.h>

#include <cstdio>

namespace {

constexpr unsigned calls = 16;

void count( const char* side, const std::string& name, unsigned operations,
            const std::function<void()>& body ) {
   body(); // once before, for what happens on first use alone
   CALLGRIND_TOGGLE_COLLECT;
   for( unsigned call = 0; call < calls; ++call ) {
      body();
   }
   CALLGRIND_TOGGLE_COLLECT;
   const std::string description =
      std::string( side ) + '\t' + std::to_string( calls * operations ) + '\t' + name;
   CALLGRIND_DUMP_STATS_AT( description.c_str() );
}

} // namespace

int main() {
   if( !RUNNING_ON_VALGRIND ) {
      std::fprintf( stderr, "vornCounts: runs under valgrind --tool=callgrind only\n" );
      return 1;
   }
   for( const Bench::Row& row : Bench::allRows().rows ) {
      count( "library", row.name, row.operations, row.library );
      if( row.baseline ) {
         count( "baseline", row.name, row.operations, row.baseline );
      }
   }
   return 0;
}
