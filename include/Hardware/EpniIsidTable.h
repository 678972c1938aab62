// One entry of the ISID table, or a request of the egress exact-match engine in its place.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW EpniIsidTable
#define HARDWARE_FIELDS <Hardware/fields/EpniIsidTable.def>

namespace Hardware {

// Chip types 2 to 8 without variants: any number is accepted and means the same. An entry is one
// `isid`.
//
// Chip types 10, 12 to 16 with variants 0 and 1: formats of the management request that EsemMgmtReq
// views too, at the same address. They carry a tag in `vmv`, `tid`, `entryType` and `resultType`.
// `key` and `payload` are further names for the bits of the fields inside them, and `entry` is all
// of them, `vmv` and `resultType` included.
class HARDWARE_API EpniIsidTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 24;

   // Whether the buffer may hold an entry of the variant: false if the tag differs or the buffer is
   // too short for it, and for a chip type that the class doesn't have. True without reading the
   // buffer if there is no tag, for invalid variants too.
   static bool isEpniIsidTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
