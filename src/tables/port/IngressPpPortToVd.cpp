// The operations of IngressPpPortToVd.
#include "frame/ClassSource.h"

#include <Hardware/IngressPpPortToVd.h>
#include <Hardware/layouts/IngressPpPortToVd.h>

#define HARDWARE_VIEW IngressPpPortToVd
#define HARDWARE_FIELDS <Hardware/fields/IngressPpPortToVd.def>
#include "frame/DefineTable.inc"
