// The operations of IsemMgmtReq.
#include "frame/ClassSource.h"

#include <Hardware/IsemMgmtReq.h>
#include <Hardware/layouts/IsemMgmtReq.h>

#define HARDWARE_VIEW IsemMgmtReq
#define HARDWARE_FIELDS <Hardware/fields/IsemMgmtReq.def>
#define HARDWARE_DISCRIMINATOR isIsemMgmtReq
#include "frame/DefineTable.inc"
