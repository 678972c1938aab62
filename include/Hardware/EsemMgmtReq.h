// One management request to the egress exact-match engine.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EsemMgmtReq
#define HARDWARE_FIELDS <Hardware/fields/EsemMgmtReq.def>

namespace Hardware {

// The caller composes a request (operation, key, payload), writes it to the address given here, and
// reads the answer in the same layout.
//
// Chip types 2 to 7 with variant 0: one request. Chip type 8 with variants 0 and 1: two requests,
// whose fields have second names that begin with esem0 and esem1. Chip types 10, 12 to 16 with
// variants 0 and 1: two key formats in one memory, which EpniIsidTable views too.
//
// Key formats carry a tag in `vmv`, `tid`, `entryType` and `resultType`. `key` and `payload` are
// further names for the bits of the fields inside them, and `entry` is all of them, `vmv` and
// `resultType` included.
class HARDWARE_API EsemMgmtReq : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 24;

   // Whether the buffer may hold an entry of the variant: false if the tag differs or the buffer is
   // too short for it, and for a chip type that the class doesn't have. True without reading the
   // buffer if there is no tag, for invalid variants too.
   static bool isEsemMgmtReq( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
