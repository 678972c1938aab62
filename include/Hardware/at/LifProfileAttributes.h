// LifProfileAttributes at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/LifProfileAttributes.h>

#define HARDWARE_VIEW LifProfileAttributes
#define HARDWARE_FIELDS <Hardware/fields/LifProfileAttributes.def>
#define HARDWARE_IS_TABLE true
#include <Hardware/detail/AtClass.inc>
