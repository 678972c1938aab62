// The operations of EgressPerPortTable.
#include "frame/ClassSource.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/layouts/EgressPerPortTable.h>

#define HARDWARE_VIEW EgressPerPortTable
#define HARDWARE_FIELDS <Hardware/fields/EgressPerPortTable.def>
#include "frame/DefineTable.inc"
