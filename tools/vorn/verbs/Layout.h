// The format of a table's entry, drawn and listed, and what changes between two.
#pragma once

#include "Arguments.h"

#include <Vorn/Images.h>

#include <optional>
#include <string>
#include <vector>

namespace Vorn {

struct LayoutArguments {
   PairText pair{ "", "", "" };     // without a variant: 0, or that of the image's tag
   std::vector<std::string> images; // none; one whose values are drawn; or two to compare
   ImageFormat format = ImageFormat::automatic;
   std::vector<std::string> difference; // none, or "CHIP" or "CHIP:VARIANT" twice
   std::optional<std::string> svg;      // path, "-" for standard output
   std::optional<std::string> boxLines; // "ascii" or "unicode"
   bool json = false;
};

// The output of `vorn layout`; empty for a picture, which is written to its file.
std::string layout( const LayoutArguments& arguments );

} // namespace Vorn
