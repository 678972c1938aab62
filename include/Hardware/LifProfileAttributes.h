// One entry of the attribute table of the logical interface profiles.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW LifProfileAttributes
#define HARDWARE_FIELDS <Hardware/fields/LifProfileAttributes.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. LifTable's `inLifProfile` is the index of an entry. Chip
// types 10, 12 and 14 have two instances of the table.
class HARDWARE_API LifProfileAttributes : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
