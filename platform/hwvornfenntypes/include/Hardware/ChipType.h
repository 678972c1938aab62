// The chip types that a table class may serve, and their printed names.
#pragma once

#include <Kelvar/Types.h>

#include <iosfwd>

#define HWVORNFENNTYPES_API __attribute__( ( visibility( "default" ) ) )

namespace Hardware {

enum ChipType : U8 {
#define HARDWARE_CHIP_TYPE( name, number ) name = number,
#include <Hardware/ChipTypes.def>
};

// Prints the enumerator's name, and an unknown number as "ChipType(9)".
HWVORNFENNTYPES_API std::ostream& operator<<( std::ostream& out, const ChipType& chipType );

} // namespace Hardware
