// Files that are written as a whole or not at all.
#pragma once

#include <string>
#include <string_view>

namespace Vorn {

// Writes the file anew; until all of it is written, what was there before stays. A device is
// written to directly. Whatever fails is an Error.
void writeFile( const std::string& path, std::string_view text );

} // namespace Vorn
