// The operations of TcamBankTableFormatter.
#include "frame/ClassSource.h"

#include <Hardware/TcamBankTableFormatter.h>
#include <Hardware/layouts/TcamBankTableFormatter.h>

#define HARDWARE_VIEW TcamBankTableFormatter
#define HARDWARE_FIELDS <Hardware/fields/TcamBankTableFormatter.def>
#include "frame/DefineTable.inc"
