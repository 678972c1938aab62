// The operations of IvectTable.
#include "frame/ClassSource.h"

#include <Hardware/IvectTable.h>
#include <Hardware/layouts/IvectTable.h>

#define HARDWARE_VIEW IvectTable
#define HARDWARE_FIELDS <Hardware/fields/IvectTable.def>
#define HARDWARE_DISCRIMINATOR isIvectTable
#include "frame/DefineTable.inc"
