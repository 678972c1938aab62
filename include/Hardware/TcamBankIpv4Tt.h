// An IPv4 tunnel termination key as a TCAM bank takes it.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW TcamBankIpv4Tt
#define HARDWARE_FIELDS <Hardware/fields/TcamBankIpv4Tt.def>

namespace Hardware {

// Chip types 10, 12 to 16 with variant 0. A key format rather than a memory: its width of 20 words
// and its 4294967295 entries from address 0 are not those of a bank.
class HARDWARE_API TcamBankIpv4Tt : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 80;

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
