// VttInPpPortConfig0 at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/VttInPpPortConfig0.h>

#define HARDWARE_VIEW VttInPpPortConfig0
#define HARDWARE_FIELDS <Hardware/fields/VttInPpPortConfig0.def>
#define HARDWARE_IS_TABLE true
#include <Hardware/detail/AtClass.inc>
