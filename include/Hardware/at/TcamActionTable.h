// TcamActionTable at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/TcamActionTable.h>

#define HARDWARE_VIEW TcamActionTable
#define HARDWARE_FIELDS <Hardware/fields/TcamActionTable.def>
#define HARDWARE_IS_TABLE true
#include <Hardware/detail/AtClass.inc>
