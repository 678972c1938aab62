// One row of the EEDB bank, as an outgoing AC or an ARP link-layer entry.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW OutAcBank
#define HARDWARE_FIELDS <Hardware/fields/OutAcBank.def>

namespace Hardware {

// Chip types 2 to 8 with variants 0 to 2, all readings of one row: the raw row, two AC halves, or
// an ARP link-layer entry. Chip types 10, 12 to 16 with variant 0, an out-AC entry.
//
// On chip types 10, 12 to 16 an entry carries a tag in `resultType`, and `mdbEntry` is the whole
// entry, tag included. On chip types 4 and 5 the formatted variants have other dimensions than the
// raw one, so one index can mean different addresses.
class HARDWARE_API OutAcBank : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 80;

   // Whether the buffer may hold an entry of the variant: false if the tag differs or the buffer is
   // too short for it, and for a chip type that the class doesn't have. True without reading the
   // buffer if there is no tag, for invalid variants too.
   static bool isOutAcBank( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
