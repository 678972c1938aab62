// A register of the tests' own.
#pragma once

#include <Hardware/detail/View.h>

#define HARDWARE_VIEW SampleRegister
#define HARDWARE_FIELDS "frame/SampleRegister.def"

namespace Hardware {

class HARDWARE_API SampleRegister : public Kelvar::BcmAsicBase {
public:
   static constexpr U16 storageSize = 12;

#include <Hardware/detail/DeclareRegister.inc>
};

} // namespace Hardware

#include <Hardware/detail/DeclareWithStorage.inc>
