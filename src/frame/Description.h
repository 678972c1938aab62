// The frame's names for the vocabulary of descriptions.
#pragma once

#include "Cell.h"

#include <Hardware/detail/Description.h>
