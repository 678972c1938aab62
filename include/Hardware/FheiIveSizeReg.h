// The one register of the library, a single field of 128 bits.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW FheiIveSizeReg
#define HARDWARE_FIELDS <Hardware/fields/FheiIveSizeReg.def>

namespace Hardware {

// Chip types 2 to 8 with variant 0. A register has no rows: entries() and tableVariantCount() keep
// the asserting defaults, and `tableEntry` of an address is 0. maxIdentifier() is 0 even on chip
// types 4, 5 and 8, which have two instances.
class HARDWARE_API FheiIveSizeReg : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 16;

#include <Hardware/detail/DeclareRegister.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
