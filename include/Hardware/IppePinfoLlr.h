// The VLAN classification of one port on the ingress side.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW IppePinfoLlr
#define HARDWARE_FIELDS <Hardware/fields/IppePinfoLlr.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. The fields cover a part of the entry; getAllFields()
// hides the rest, and no setter changes it.
class HARDWARE_API IppePinfoLlr : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 12;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
