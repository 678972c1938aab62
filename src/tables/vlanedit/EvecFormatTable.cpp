// The operations of EvecFormatTable.
#include "frame/ClassSource.h"

#include <Hardware/EvecFormatTable.h>
#include <Hardware/layouts/EvecFormatTable.h>

#define HARDWARE_VIEW EvecFormatTable
#define HARDWARE_FIELDS <Hardware/fields/EvecFormatTable.def>
#include "frame/DefineTable.inc"
