// The operations of EvecTable.
#include "frame/ClassSource.h"

#include <Hardware/EvecTable.h>
#include <Hardware/layouts/EvecTable.h>

#define HARDWARE_VIEW EvecTable
#define HARDWARE_FIELDS <Hardware/fields/EvecTable.def>
#include "frame/DefineTable.inc"
