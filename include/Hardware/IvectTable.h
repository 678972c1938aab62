// One entry of the selection table in front of the VLAN edit command profiles.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW IvectTable
#define HARDWARE_FIELDS <Hardware/fields/IvectTable.def>

namespace Hardware {

// Chip types 2 to 8 with variant 0, where an entry holds one profile number; chip types 10, 12 to
// 16 with variants 0 and 1, where it holds eight. Variant 1 is another copy of the table in a
// hardware block of its own, not another format. getAllFields() needs 8 bytes even if an entry has
// 4.
class HARDWARE_API IvectTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 8;

   // True on every chip type that has the table. Deliberately reads neither the buffer nor the
   // variant, so true says nothing about the pair's validity.
   static bool isIvectTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
