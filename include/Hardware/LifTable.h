// One entry of the logical interface table.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW LifTable
#define HARDWARE_FIELDS <Hardware/fields/LifTable.def>

namespace Hardware {

// What an incoming logical interface resolves to: how its packets are terminated, classified,
// VLAN-edited, learned and forwarded.
//
// Chip types 2 and 3 with variants 0 to 4 and 6; 4 to 8 with 0 to 6; 10, 12 to 16 with 0 to 4 and 6
// to 11; Software with 0. Where variant 5 is missing the numbers have a gap, so a loop must ask
// chipTypeVariantValid() rather than count to tableVariantCount().
//
// On chip types 2 to 8 some fields are alternative readings of the same bits: setting one changes
// the other. On chip types 10, 12 to 16 an entry carries its variant's tag in `resultType`, and
// `mdbEntry` is the whole entry, tag included. Variants 0 and 2 are one format with two numbers.
// Software has no tag, and getSchanAddress() asserts "0" for it.
class HARDWARE_API LifTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 80;

   // Whether the buffer may hold an entry of the variant: false if the tag differs or the buffer is
   // too short for it, and for a chip type that the class doesn't have. True without reading the
   // buffer if there is no tag, for invalid variants too.
   static bool isLifTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
