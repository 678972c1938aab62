// The operations of FheiIveSizeReg.
#include "frame/ClassSource.h"

#include <Hardware/FheiIveSizeReg.h>
#include <Hardware/layouts/FheiIveSizeReg.h>

#define HARDWARE_VIEW FheiIveSizeReg
#define HARDWARE_FIELDS <Hardware/fields/FheiIveSizeReg.def>
#include "frame/DefineRegister.inc"
