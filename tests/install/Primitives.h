// Bit-buffer primitives of the program's own, which take the place of the platform's in the
// process: naive, and each call is kept.
#pragma once

#include "support/Action.h"
#include "support/Bits.h"

#include <iosfwd>
#include <vector>

namespace Testing {

enum class Primitive { getBuf, setBuf, maskBuf };

// One call, in the order of its arguments. Of maskBuf the lengths are words, `width` is those of
// its mask and `offset` is 0.
struct Call {
   Primitive primitive = Primitive::getBuf;
   const void* image = nullptr; // where that is the caller's own; else null
   int imageLen = 0;
   int valueLen = 0;
   int width = 0;
   int offset = 0;
   Bits given; // the value that is set, or the mask
   Bits found; // what was, before, where the primitive puts the value that it gets or masks

   bool operator==( const Call& ) const = default;
};

std::ostream& operator<<( std::ostream& out, const Call& call );

// The calls of `action`, which may end in an assertion that the action itself observes.
std::vector<Call> callsOf( Action action );

} // namespace Testing
