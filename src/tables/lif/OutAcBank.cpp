// The operations of OutAcBank.
#include "frame/ClassSource.h"

#include <Hardware/OutAcBank.h>
#include <Hardware/layouts/OutAcBank.h>

#define HARDWARE_VIEW OutAcBank
#define HARDWARE_FIELDS <Hardware/fields/OutAcBank.def>
#define HARDWARE_DISCRIMINATOR isOutAcBank
#include "frame/DefineTable.inc"
