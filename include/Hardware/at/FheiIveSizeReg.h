// FheiIveSizeReg at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/FheiIveSizeReg.h>

#define HARDWARE_VIEW FheiIveSizeReg
#define HARDWARE_FIELDS <Hardware/fields/FheiIveSizeReg.def>
#define HARDWARE_IS_TABLE false
#include <Hardware/detail/AtClass.inc>
