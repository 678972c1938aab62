// The operations of EvecMappingTable.
#include "frame/ClassSource.h"

#include <Hardware/EvecMappingTable.h>
#include <Hardware/layouts/EvecMappingTable.h>

#define HARDWARE_VIEW EvecMappingTable
#define HARDWARE_FIELDS <Hardware/fields/EvecMappingTable.def>
#include "frame/DefineTable.inc"
