// The operations of TcamBankIpv4Tt.
#include "frame/ClassSource.h"

#include <Hardware/TcamBankIpv4Tt.h>
#include <Hardware/layouts/TcamBankIpv4Tt.h>

#define HARDWARE_VIEW TcamBankIpv4Tt
#define HARDWARE_FIELDS <Hardware/fields/TcamBankIpv4Tt.def>
#include "frame/DefineTable.inc"
