// A table of the tests' own, which needs everything that a description can say.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW SampleTable
#define HARDWARE_FIELDS "frame/SampleTable.def"

namespace Hardware {

class HARDWARE_API SampleTable : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 100;

   static bool isSampleTable( Hardware::ChipType chipType, const U8* buf, U16 len, U8 variant );

#include <Hardware/detail/DeclareTable.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
