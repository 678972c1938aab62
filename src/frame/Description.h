// The words of descriptions, as the frame calls them.
#pragma once

#include "Cell.h"

#include <Hardware/detail/Description.h>
