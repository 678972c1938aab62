// What changes from one pair to another, as text and as JSON.
#pragma once

#include <Vorn/Difference.h>

#include <string>

namespace Vorn {

// Lines for a person, and one JSON object.
std::string differenceLines( const Layout& from, const Layout& to );
std::string differenceJson( const Layout& from, const Layout& to );

} // namespace Vorn
