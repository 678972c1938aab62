// One egress VLAN edit command, in full: tags to remove, outer and inner tag.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EvecFormatTable
#define HARDWARE_FIELDS <Hardware/fields/EvecFormatTable.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. `EvecMappingTable` selects its entries.
class HARDWARE_API EvecFormatTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
