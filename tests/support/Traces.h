// Observing the library's trace lines.
#pragma once

#include "Action.h"

#include <string>
#include <vector>

namespace Testing {

// The lines that `action` traces with the level of the library's handle switched on.
std::vector<std::string> tracesOf( int level, Action action );

} // namespace Testing
