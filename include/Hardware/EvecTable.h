// One entry of the egress VLAN edit table of the older chip types: a pair of edit commands.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EvecTable
#define HARDWARE_FIELDS <Hardware/fields/EvecTable.def>

namespace Hardware {

// Chip types 2 to 8, without variants: every variant is accepted and means the same.
// `evecTableData` is an alternative reading: the whole entry as one number, over all the other
// fields.
class HARDWARE_API EvecTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 8;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
