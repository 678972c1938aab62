// One VLAN edit command profile of the ingress side.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW IvecTable
#define HARDWARE_FIELDS <Hardware/fields/IvecTable.def>

namespace Hardware {

// Chip types 2 to 8 with variants 0 and 1, chip types 10, 12 to 16 with variants 0 to 2. A variant
// is another copy of the table in a hardware block of its own, not another format.
class HARDWARE_API IvecTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

   // True on every chip type that has the table. Deliberately reads neither the buffer nor the
   // variant, so true says nothing about the pair's validity.
   static bool isIvecTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
