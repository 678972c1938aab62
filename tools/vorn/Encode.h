// One entry image from fields given as text.
#pragma once

#include "Arguments.h"
#include "Forms.h"
#include "Images.h"
#include "Plan.h"

#include <optional>
#include <string>
#include <vector>

namespace Vorn {

struct EncodeArguments {
   PairText pair;
   PlaceText place;
   std::vector<std::string> fields;      // "name=value"
   std::optional<std::string> from = {}; // image to begin with
   ImageFormat fromFormat = ImageFormat::automatic;
   Form form = formNamed( "text" );
};

// The lines of `vorn encode`.
std::string encode( const EncodeArguments& arguments );

} // namespace Vorn
