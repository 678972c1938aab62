// The printed names of the chip types.
#include <Hardware/ChipType.h>

#include <ostream>
#include <string>

namespace Hardware {

std::ostream& operator<<( std::ostream& out, const ChipType& chipType ) {
   switch( chipType ) {
#define HARDWARE_CHIP_TYPE( name, number )                                                         \
   case name:                                                                                      \
      return out << #name;
#include <Hardware/ChipTypes.def>
   }
   // As one string, so that the stream's base and width don't apply.
   return out << "ChipType(" + std::to_string( static_cast<unsigned>( chipType ) ) + ')';
}

} // namespace Hardware
