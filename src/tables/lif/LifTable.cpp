// The operations of LifTable.
#include "frame/ClassSource.h"

#include <Hardware/LifTable.h>
#include <Hardware/layouts/LifTable.h>

#define HARDWARE_VIEW LifTable
#define HARDWARE_FIELDS <Hardware/fields/LifTable.def>
#define HARDWARE_DISCRIMINATOR isLifTable
#include "frame/DefineTable.inc"
