// Pairs of EvecEncapTable, EvecFormatTable, EvecMappingTable, EvecTable, IvecTable and
// IvectTable through At and through views.
#include "at/Walk.h"

#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>
#include <Hardware/EvecMappingTable.h>
#include <Hardware/EvecTable.h>
#include <Hardware/IvecTable.h>
#include <Hardware/IvectTable.h>
#include <Hardware/at/EvecEncapTable.h>
#include <Hardware/at/EvecFormatTable.h>
#include <Hardware/at/EvecMappingTable.h>
#include <Hardware/at/EvecTable.h>
#include <Hardware/at/IvecTable.h>
#include <Hardware/at/IvectTable.h>

#define HARDWARE_VIEW EvecEncapTable
#define WALK EvecEncapTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW EvecFormatTable
#define WALK EvecFormatTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW EvecMappingTable
#define WALK EvecMappingTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW EvecTable
#define WALK EvecTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW IvecTable
#define WALK IvecTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW IvectTable
#define WALK IvectTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"
