// Numbers as a description states them, which the compiler must refuse. REFUSED are those.
#include "frame/Description.h"

namespace {

using namespace Hardware::Frame;

constexpr auto refused = REFUSED;

} // namespace
