// Pairs of LifTable through At and through views.
#include "at/Walk.h"

#include <Hardware/LifTable.h>
#include <Hardware/at/LifTable.h>

#define HARDWARE_VIEW LifTable
#define WALK LifTableNewer
#define WALK_FIRST 9
#define WALK_LAST 21
#include "at/WalkClass.inc"
