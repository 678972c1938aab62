// One entry image from fields given as text.
#pragma once

#include "Plan.h"

#include <string>
#include <vector>

namespace Vorn {

struct EncodeArguments {
   PairText pair;
   std::string entry = "0";
   std::string array = "0";
   std::string identifier = "0";
   std::vector<std::string> fields; // "name=value"
};

// The lines of `vorn encode`.
std::string encode( const EncodeArguments& arguments );

} // namespace Vorn
