// One entry of a TCAM bank: the CPU command word.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW TcamBankTable
#define HARDWARE_FIELDS <Hardware/fields/TcamBankTable.def>

namespace Hardware {

// Chip types 2 to 8, 10, 12 to 16 with variant 0. A command, its data of 164 or 328 bits, two bits
// for its validity and, on chip types 2 to 8, reserved bits. getAllFields() needs 44 bytes, the
// longest entry, on every chip type.
class HARDWARE_API TcamBankTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 44;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
