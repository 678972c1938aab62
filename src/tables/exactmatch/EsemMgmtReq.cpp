// The operations of EsemMgmtReq.
#include "frame/ClassSource.h"

#include <Hardware/EsemMgmtReq.h>
#include <Hardware/layouts/EsemMgmtReq.h>

#define HARDWARE_VIEW EsemMgmtReq
#define HARDWARE_FIELDS <Hardware/fields/EsemMgmtReq.def>
#define HARDWARE_DISCRIMINATOR isEsemMgmtReq
#include "frame/DefineTable.inc"
