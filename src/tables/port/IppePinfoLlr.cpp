// The operations of IppePinfoLlr.
#include "frame/ClassSource.h"

#include <Hardware/IppePinfoLlr.h>
#include <Hardware/layouts/IppePinfoLlr.h>

#define HARDWARE_VIEW IppePinfoLlr
#define HARDWARE_FIELDS <Hardware/fields/IppePinfoLlr.def>
#include "frame/DefineTable.inc"
