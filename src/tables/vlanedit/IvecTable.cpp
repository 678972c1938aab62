// The operations of IvecTable.
#include "frame/ClassSource.h"

#include <Hardware/IvecTable.h>
#include <Hardware/layouts/IvecTable.h>

#define HARDWARE_VIEW IvecTable
#define HARDWARE_FIELDS <Hardware/fields/IvecTable.def>
#define HARDWARE_DISCRIMINATOR isIvecTable
#include "frame/DefineTable.inc"
