// One entry of the table that selects an egress VLAN edit command.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EvecMappingTable
#define HARDWARE_FIELDS <Hardware/fields/EvecMappingTable.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. `egressVlanEditCommand` numbers the entries of
// `EvecFormatTable`.
class HARDWARE_API EvecMappingTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
