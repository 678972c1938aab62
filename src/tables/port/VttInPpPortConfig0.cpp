// The operations of VttInPpPortConfig0.
#include "frame/ClassSource.h"

#include <Hardware/VttInPpPortConfig0.h>
#include <Hardware/layouts/VttInPpPortConfig0.h>

#define HARDWARE_VIEW VttInPpPortConfig0
#define HARDWARE_FIELDS <Hardware/fields/VttInPpPortConfig0.def>
#include "frame/DefineTable.inc"
