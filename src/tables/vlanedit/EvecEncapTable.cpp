// The operations of EvecEncapTable.
#include "frame/ClassSource.h"

#include <Hardware/EvecEncapTable.h>
#include <Hardware/layouts/EvecEncapTable.h>

#define HARDWARE_VIEW EvecEncapTable
#define HARDWARE_FIELDS <Hardware/fields/EvecEncapTable.def>
#define HARDWARE_DISCRIMINATOR isEvecEncapTable
#include "frame/DefineTable.inc"
