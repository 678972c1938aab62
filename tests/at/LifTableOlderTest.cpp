// Pairs of LifTable through At and through views.
#include "at/Walk.h"

#include <Hardware/LifTable.h>
#include <Hardware/at/LifTable.h>

#define HARDWARE_VIEW LifTable
#define WALK LifTableOlder
#define WALK_FIRST 2
#define WALK_LAST 8
#include "at/WalkClass.inc"
