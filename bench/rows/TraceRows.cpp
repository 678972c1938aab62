// Disabled tracing: the library against the same build whose trace sites are compiled out.
#include "Row.h"
#include "traces/PairBodies.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace Bench {
namespace {

// Both builds have the same symbols. So each is loaded with a module of its own, which looks them
// up among its own libraries first.
std::vector<PairBody> bodiesOf( const char* module ) {
   void* const handle = dlopen( module, RTLD_NOW | RTLD_LOCAL | RTLD_DEEPBIND );
   auto* const pairBodies =
      handle == nullptr
         ? nullptr
         : reinterpret_cast<PairBodiesFunction*>( dlsym( handle, "vornPairBodies" ) );
   if( pairBodies == nullptr ) {
      std::fprintf( stderr, "%s\n", dlerror() );
      std::exit( 1 );
   }
   std::vector<PairBody> bodies;
   pairBodies( bodies );
   return bodies;
}

} // namespace

void addTraceRows( Rows& rows ) {
   const std::vector<PairBody> with = bodiesOf( VORN_BENCH_WITH_TRACES );
   const std::vector<PairBody> without = bodiesOf( VORN_BENCH_WITHOUT_TRACES );
   for( std::size_t number = 0; number < with.size(); ++number ) {
      rows.rows.push_back( { Goal::traces, "traces, " + with[number].name, with[number].operations,
                             with[number].call, without[number].call } );
   }
}

} // namespace Bench
