// The printed names of the chip types.
#include <Hardware/ChipType.h>

#include <ostream>
#include <string>

namespace Hardware {

namespace {

struct Name {
   ChipType chipType;
   const char* text;
};

constexpr Name names[] = {
   { BCM88650_B0, "BCM88650_B0" },       { BCM88660_A0, "BCM88660_A0" },
   { BCM88375_A0, "BCM88375_A0" },       { BCM88375_B0, "BCM88375_B0" },
   { BCM88470_A0, "BCM88470_A0" },       { BCM88470_B0, "BCM88470_B0" },
   { BCM88680_A0, "BCM88680_A0" },       { BCM88690_B0, "BCM88690_B0" },
   { BCM88690_V6_B0, "BCM88690_V6_B0" }, { BCM88800_A0, "BCM88800_A0" },
   { BCM88850_A0, "BCM88850_A0" },       { BCM88480_A0, "BCM88480_A0" },
   { BCM88480_B0, "BCM88480_B0" },       { Software, "Software" },
};

} // namespace

std::ostream& operator<<( std::ostream& out, const ChipType& chipType ) {
   for( const Name& name : names ) {
      if( name.chipType == chipType ) {
         return out << name.text;
      }
   }
   // As one string, so that the stream's base and width don't apply.
   return out << "ChipType(" + std::to_string( static_cast<unsigned>( chipType ) ) + ')';
}

} // namespace Hardware
