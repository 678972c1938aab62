// Everything that the source file of a class needs from the frame.
#pragma once

#include "FastPaths.h"

#include <Hardware/FieldId.h>
#include <Hardware/detail/View.h>

#include <cstring>
