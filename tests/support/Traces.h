// Observing the library's trace lines.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Testing {

// The lines that `action` traces with the level of the library's handle switched on.
std::vector<std::string> tracesOf( int level, const std::function<void()>& action );

} // namespace Testing
