// IppePinfoLlr at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/IppePinfoLlr.h>

#define HARDWARE_VIEW IppePinfoLlr
#define HARDWARE_FIELDS <Hardware/fields/IppePinfoLlr.def>
#define HARDWARE_IS_TABLE true
#include <Hardware/detail/AtClass.inc>
