// TcamBankIpv4Tt at a pair of chip type and variant that is known at compile time: see
// <Hardware/At.h>.
#pragma once

#include <Hardware/At.h>
#include <Hardware/layouts/TcamBankIpv4Tt.h>

#define HARDWARE_VIEW TcamBankIpv4Tt
#define HARDWARE_FIELDS <Hardware/fields/TcamBankIpv4Tt.def>
#define HARDWARE_IS_TABLE true
#include <Hardware/detail/AtClass.inc>
