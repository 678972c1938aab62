// Where fields lie, as the frame calls it.
#pragma once

#include <Hardware/detail/Cell.h>

namespace Hardware::Frame {

using namespace Layouts;

} // namespace Hardware::Frame
