// A module over one build of the library; it is linked over the ordinary one, and over one whose
// trace sites are compiled out.
#include "PairBodies.h"

#include "rows/PairBodies.h"

#include <memory>

extern "C" FLOOR_API void vornPairBodies( std::vector<Bench::PairBody>& bodies ) {
   Bench::forEachTypedPair( [&bodies]<class Pair>() {
      using Narrow = Bench::NarrowFields<Pair>;
      const auto views =
         std::make_shared<Bench::Views<typename Pair::View>>( Pair::chipType, Pair::variant );
      bodies.push_back( { Pair::name() + " compose", Bench::entryCount * Narrow::settable,
                          [views] { Bench::compose<Pair>( *views ); } } );
      bodies.push_back( { Pair::name() + " decode", Bench::entryCount * Narrow::all,
                          [views] { Bench::decode<Pair>( *views ); } } );
   } );
}
