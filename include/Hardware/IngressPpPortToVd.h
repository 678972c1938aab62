// The VLAN domain of one port on the ingress side.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW IngressPpPortToVd
#define HARDWARE_FIELDS <Hardware/fields/IngressPpPortToVd.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0.
class HARDWARE_API IngressPpPortToVd : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
