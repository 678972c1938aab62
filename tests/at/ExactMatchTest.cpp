// Pairs of EpniIsidTable, EsemMgmtReq, LifProfileAttributes and OutAcBank through At and
// through views.
#include "at/Walk.h"

#include <Hardware/EpniIsidTable.h>
#include <Hardware/EsemMgmtReq.h>
#include <Hardware/LifProfileAttributes.h>
#include <Hardware/OutAcBank.h>
#include <Hardware/at/EpniIsidTable.h>
#include <Hardware/at/EsemMgmtReq.h>
#include <Hardware/at/LifProfileAttributes.h>
#include <Hardware/at/OutAcBank.h>

#define HARDWARE_VIEW EpniIsidTable
#define WALK EpniIsidTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW EsemMgmtReq
#define WALK EsemMgmtReq
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW OutAcBank
#define WALK OutAcBank
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW LifProfileAttributes
#define WALK LifProfileAttributes
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"
