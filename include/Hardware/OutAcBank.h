// One row of the EEDB bank, as it serves outgoing AC and ARP link-layer entries.
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
// raw one, so that one index may mean different addresses.
class HARDWARE_API OutAcBank : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 80;

   // Whether the buffer can be taken for an entry of the variant: false where the tag differs or
   // the buffer is too short for it, and on a chip type that the class doesn't have. True without
   // looking at the buffer where there is no tag, invalid variants included.
   static bool isOutAcBank( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
