// A module over one build of the library and one of the floor.
#include "PairBodies.h"

#include "rows/PairBodies.h"

extern "C" FLOOR_API void vornPairBodies( std::vector<Bench::PairBody>& bodies ) {
   Bench::forEachTypedPair( [&bodies]<class Pair>() {
      using Narrow = Bench::NarrowFields<Pair>;
      const auto sides = Bench::makeSides<Pair>();
      const auto agree = [sides] { return Bench::allSidesAgree<Pair>( *sides ); };
      bodies.push_back( { Pair::name() + " compose", Bench::entryCount * Narrow::settable,
                          [sides] { Bench::compose<Pair>( sides->views ); },
                          [sides] { Bench::composeFloor<Pair>( sides->images ); }, agree } );
      bodies.push_back( { Pair::name() + " decode", Bench::entryCount * Narrow::all,
                          [sides] { Bench::decode<Pair>( sides->views ); },
                          [sides] { Bench::decodeFloor<Pair>( sides->images ); }, agree } );
   } );
}
