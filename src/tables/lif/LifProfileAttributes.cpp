// The operations of LifProfileAttributes.
#include "frame/ClassSource.h"

#include <Hardware/LifProfileAttributes.h>
#include <Hardware/layouts/LifProfileAttributes.h>

#define HARDWARE_VIEW LifProfileAttributes
#define HARDWARE_FIELDS <Hardware/fields/LifProfileAttributes.def>
#include "frame/DefineTable.inc"
