// The frame's names for where fields lie.
#pragma once

#include <Hardware/detail/Cell.h>

namespace Hardware::Frame {

using namespace Layouts;

} // namespace Hardware::Frame
