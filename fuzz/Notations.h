// Values of fields in every notation that vorn takes.
#pragma once

#include "Vorn.h"

#include <fuzzer/FuzzedDataProvider.h>

namespace Fuzz {

// A value of a field of this width: one that fits, or that has a bit too many.
Json someValue( FuzzedDataProvider& input, unsigned width );

} // namespace Fuzz
