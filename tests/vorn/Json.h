// Reads JSON that vorn prints.
#pragma once

#include "forms/Json.h"

#include <iosfwd>
#include <string_view>

namespace Testing {

using Vorn::Json;

// In one place, as the parser costs seconds to compile. Throws what the library throws if that
// isn't one value.
Json parsed( std::string_view text );

} // namespace Testing

namespace nlohmann {

// How a failed expectation prints it, in one place as well.
void PrintTo( const ordered_json& value, std::ostream* out );

} // namespace nlohmann
