// The chip types that a table class may serve, and their printed names.
#pragma once

#include <Kelvar/Types.h>

#include <iosfwd>

#define HWVORNFENNTYPES_API __attribute__( ( visibility( "default" ) ) )

namespace Hardware {

enum ChipType : U8 {
   BCM88650_B0 = 2,
   BCM88660_A0 = 3,
   BCM88375_A0 = 4,
   BCM88375_B0 = 5,
   BCM88470_A0 = 6,
   BCM88470_B0 = 7,
   BCM88680_A0 = 8,
   BCM88690_B0 = 10,
   BCM88690_V6_B0 = 12,
   BCM88800_A0 = 13,
   BCM88850_A0 = 14,
   BCM88480_A0 = 15,
   BCM88480_B0 = 16,
   Software = 21, // a pseudo chip type, known to LifTable alone
};

// Prints the enumerator's name, and an unknown number as "ChipType(9)".
HWVORNFENNTYPES_API std::ostream& operator<<( std::ostream& out, const ChipType& chipType );

} // namespace Hardware
