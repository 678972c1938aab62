// One entry of the action memory that stands beside the TCAM banks.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW TcamActionTable
#define HARDWARE_FIELDS <Hardware/fields/TcamActionTable.def>

namespace Hardware {

// Chip types 2 to 8, 10, 12 to 16 with variant 0.
class HARDWARE_API TcamActionTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 8;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
