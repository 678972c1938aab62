// Pairs of IsemMgmtReq through At and through views.
#include "at/Walk.h"

#include <Hardware/IsemMgmtReq.h>
#include <Hardware/at/IsemMgmtReq.h>

#define HARDWARE_VIEW IsemMgmtReq
#define WALK IsemMgmtReqNewer
#define WALK_FIRST 14
#define WALK_LAST 21
#include "at/WalkClass.inc"
