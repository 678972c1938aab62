// The operations of TcamActionTable.
#include "frame/ClassSource.h"

#include <Hardware/TcamActionTable.h>
#include <Hardware/layouts/TcamActionTable.h>

#define HARDWARE_VIEW TcamActionTable
#define HARDWARE_FIELDS <Hardware/fields/TcamActionTable.def>
#include "frame/DefineTable.inc"
