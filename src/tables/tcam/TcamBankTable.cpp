// The operations of TcamBankTable.
#include "frame/ClassSource.h"

#include <Hardware/TcamBankTable.h>
#include <Hardware/layouts/TcamBankTable.h>

#define HARDWARE_VIEW TcamBankTable
#define HARDWARE_FIELDS <Hardware/fields/TcamBankTable.def>
#include "frame/DefineTable.inc"
