// Pairs of EgressPerPortTable, FheiIveSizeReg, FwdActProfileTable, IngressPpPortToVd,
// IppePinfoLlr and VttInPpPortConfig0 through At and through views.
#include "at/Walk.h"

#include <Hardware/EgressPerPortTable.h>
#include <Hardware/FheiIveSizeReg.h>
#include <Hardware/FwdActProfileTable.h>
#include <Hardware/IngressPpPortToVd.h>
#include <Hardware/IppePinfoLlr.h>
#include <Hardware/VttInPpPortConfig0.h>
#include <Hardware/at/EgressPerPortTable.h>
#include <Hardware/at/FheiIveSizeReg.h>
#include <Hardware/at/FwdActProfileTable.h>
#include <Hardware/at/IngressPpPortToVd.h>
#include <Hardware/at/IppePinfoLlr.h>
#include <Hardware/at/VttInPpPortConfig0.h>

#define HARDWARE_VIEW EgressPerPortTable
#define WALK EgressPerPortTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW FheiIveSizeReg
#define WALK FheiIveSizeReg
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW FwdActProfileTable
#define WALK FwdActProfileTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW IngressPpPortToVd
#define WALK IngressPpPortToVd
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW IppePinfoLlr
#define WALK IppePinfoLlr
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW VttInPpPortConfig0
#define WALK VttInPpPortConfig0
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"
