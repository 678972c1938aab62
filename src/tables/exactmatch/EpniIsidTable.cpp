// The operations of EpniIsidTable.
#include "frame/ClassSource.h"

#include <Hardware/EpniIsidTable.h>
#include <Hardware/layouts/EpniIsidTable.h>

#define HARDWARE_VIEW EpniIsidTable
#define HARDWARE_FIELDS <Hardware/fields/EpniIsidTable.def>
#define HARDWARE_DISCRIMINATOR isEpniIsidTable
#include "frame/DefineTable.inc"
