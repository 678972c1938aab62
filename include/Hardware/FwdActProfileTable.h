// One forwarding action profile: overwrite flags, their values, and clear flags.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW FwdActProfileTable
#define HARDWARE_FIELDS <Hardware/fields/FwdActProfileTable.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. `reserved` is an ordinary field with the bits that the
// chip type's flags leave over. The ninth word of the entry holds no field, yet getAllFields()
// needs it.
class HARDWARE_API FwdActProfileTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 36;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
