// What the modules over the builds of the library provide.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Bench {

struct PairBody {
   std::string name;
   unsigned operations; // that one call performs
   std::function<void()> library;
   std::function<void()> floor;
   std::function<bool()> agree; // whether both hold the same bits and read the same values
};

// The function `vornPairBodies` of each module: appends the composing and the decoding of each
// pair whose typed accessors have a goal.
using PairBodiesFunction = void( std::vector<PairBody>& bodies );

} // namespace Bench
