// The fields of an entry image given as text.
#pragma once

#include "Plan.h"

#include <string>
#include <vector>

namespace Vorn {

struct DecodeArguments {
   PairText pair;
   std::vector<std::string> image; // hexadecimal digits, in any number of pieces
   bool json = false;
};

// The lines of `vorn decode`.
std::string decode( const DecodeArguments& arguments );

} // namespace Vorn
