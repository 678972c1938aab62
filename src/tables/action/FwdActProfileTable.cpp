// The operations of FwdActProfileTable.
#include "frame/ClassSource.h"

#include <Hardware/FwdActProfileTable.h>
#include <Hardware/layouts/FwdActProfileTable.h>

#define HARDWARE_VIEW FwdActProfileTable
#define HARDWARE_FIELDS <Hardware/fields/FwdActProfileTable.def>
#include "frame/DefineTable.inc"
