// Pairs of TcamActionTable, TcamBankIpv4Tt, TcamBankTable and TcamBankTableFormatter through At
// and through views.
#include "at/Walk.h"

#include <Hardware/TcamActionTable.h>
#include <Hardware/TcamBankIpv4Tt.h>
#include <Hardware/TcamBankTable.h>
#include <Hardware/TcamBankTableFormatter.h>
#include <Hardware/at/TcamActionTable.h>
#include <Hardware/at/TcamBankIpv4Tt.h>
#include <Hardware/at/TcamBankTable.h>
#include <Hardware/at/TcamBankTableFormatter.h>

#define HARDWARE_VIEW TcamActionTable
#define WALK TcamActionTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW TcamBankIpv4Tt
#define WALK TcamBankIpv4Tt
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW TcamBankTable
#define WALK TcamBankTable
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"

#define HARDWARE_VIEW TcamBankTableFormatter
#define WALK TcamBankTableFormatter
#define WALK_FIRST 2
#define WALK_LAST 21
#include "at/WalkClass.inc"
