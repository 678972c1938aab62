// Numbers as a description states them, which the compiler must refuse. REFUSED are those.
#include "frame/Description.h"

namespace {

using namespace Hardware::Frame;

// The utmost that it takes.
constexpr auto number = variants( range( 30, 30 ) );
constexpr auto cell = at( 4096, 512 );

constexpr auto refused = REFUSED;

} // namespace
