// Where entries lie, as the chip's S-channel says it.
#pragma once

#include "Plan.h"

#include <string>

namespace Vorn {

// One entry and its address as a line of JSON, with the keys of a line of `vorn program`.
std::string placeLine( const Plan& plan, const Place& place, const Address& address );

} // namespace Vorn
