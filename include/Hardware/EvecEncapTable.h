// One entry of the egress VLAN edit table that holds a command and its edit together.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EvecEncapTable
#define HARDWARE_FIELDS <Hardware/fields/EvecEncapTable.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variants 0 and 1. A variant is another copy of the table in a
// hardware block of its own, not another format.
class HARDWARE_API EvecEncapTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 4;

   // True on every chip type that has the table. Deliberately reads neither the buffer nor the
   // variant, so true says nothing about the pair's validity.
   static bool isEvecEncapTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
