// What the two modules of the trace rows yield.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Bench {

struct PairBody {
   std::string name;
   unsigned operations; // that one call performs
   std::function<void()> call;
};

// The function `vornPairBodies` of each module: appends the composing and the decoding of each
// pair whose typed accessors have a goal.
using PairBodiesFunction = void( std::vector<PairBody>& bodies );

} // namespace Bench
