// The library in other builds: one without trace sites, which shows the cost of disabled tracing,
// and one over primitives that aren't inline, against a floor that calls them too.
#include "Row.h"
#include "builds/PairBodies.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace Bench {
namespace {

// All builds have the same symbols, so each is loaded with a module of its own, which looks them up
// in its own libraries first.
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
                             with[number].library, without[number].library } );
   }
}

void addCallRows( Rows& rows ) {
   for( const PairBody& body : bodiesOf( VORN_BENCH_CALLS ) ) {
      const std::string name = "called primitives, " + body.name;
      body.library();
      body.floor();
      require( body.agree(), name );
      rows.rows.push_back( { Goal::calls, name, body.operations, body.library, body.floor } );
   }
}

} // namespace Bench
