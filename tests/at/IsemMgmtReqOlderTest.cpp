// Pairs of IsemMgmtReq through At and through views.
#include "at/Walk.h"

#include <Hardware/IsemMgmtReq.h>
#include <Hardware/at/IsemMgmtReq.h>

#define HARDWARE_VIEW IsemMgmtReq
#define WALK IsemMgmtReqOlder
#define WALK_FIRST 2
#define WALK_LAST 13
#include "at/WalkClass.inc"
