// All that the source file of a class needs before its description.
#pragma once

#include "Operations.h"

#include <Hardware/FieldId.h>
#include <Hardware/detail/View.h>

#include <cstring>
