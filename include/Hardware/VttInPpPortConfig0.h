// The port mapping, key variable and default logical interface of one port.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW VttInPpPortConfig0
#define HARDWARE_FIELDS <Hardware/fields/VttInPpPortConfig0.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. The fields cover a part of the entry; getAllFields()
// hides the rest, and no setter changes it.
class HARDWARE_API VttInPpPortConfig0 : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 12;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
