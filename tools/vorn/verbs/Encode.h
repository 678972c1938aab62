// One entry image from fields given as text.
#pragma once

#include "Arguments.h"
#include "forms/EntryForms.h"

#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Vorn {

struct EncodeArguments {
   PairText pair;
   IndexText index;
   std::vector<std::string> fields;      // "name=value"
   std::optional<std::string> from = {}; // image to begin with
   ImageFormat fromFormat = ImageFormat::automatic;
   EntryForm form = formNamed( "text" );
};

// The lines of `vorn encode`.
std::string encode( const EncodeArguments& arguments );

// Those of an entry in the form "text", wrapped at `columns` columns; of the parts of a line all
// but the last of each end in a backslash, as a shell takes them.
std::string wrappedText( const std::string& text, std::size_t columns = 80 );

} // namespace Vorn
