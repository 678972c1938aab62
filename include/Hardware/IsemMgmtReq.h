// One management request to the ingress exact-match engine.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW IsemMgmtReq
#define HARDWARE_FIELDS <Hardware/fields/IsemMgmtReq.def>

namespace Hardware {

// The caller composes a request (operation, key, payload), writes it to the address given here, and
// reads the answer in the same layout.
//
// Chip types 2 to 8 with variant 0: one request, whose key has alternative readings of the same
// bits. Chip types 10, 12 to 16 with variants 0 to 20: key formats in one of three memories.
// Variants 1 and 2, 3 and 4, ... 9 and 10, 12 and 13, 15 and 16, ... 19 and 20 are the same format
// in two memories. Variants 7, 8, 19 and 20 have no key of their own on chip types 12 and 14.
//
// Key formats carry a tag in `tid`, `entryType` and `vmv`. `key` and `payload` are further names
// for the bits of the fields inside them, and `entry` is all of them, `vmv` included.
class HARDWARE_API IsemMgmtReq : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 24;

   // Whether the buffer may hold an entry of the variant: false if the tag differs or the buffer is
   // too short for it, and for a chip type that the class doesn't have. True without reading the
   // buffer if there is no tag, for invalid variants too.
   static bool isIsemMgmtReq( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
