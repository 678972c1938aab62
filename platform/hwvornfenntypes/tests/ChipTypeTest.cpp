// The chip types' numbers and printed names.
#include <Hardware/ChipType.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <map>
#include <sstream>
#include <string>
#include <type_traits>

namespace {

using Hardware::ChipType;

static_assert( sizeof( ChipType ) == 1 );
static_assert( std::is_same_v<std::underlying_type_t<ChipType>, U8> );

std::string printed( ChipType chipType ) {
   std::ostringstream out;
   out << chipType;
   return out.str();
}

TEST( ChipType, Numbers ) {
#define CHIP( number, name ) EXPECT_EQ( Hardware::name, number );
#include "Chips.def"
   EXPECT_EQ( Hardware::ChipType::BCM88690_B0, 10 );
}

TEST( ChipType, EveryNumberPrints ) {
   const std::map<int, std::string> names{
#define CHIP( number, name ) { number, #name },
#include "Chips.def"
   };
   for( int number = 0; number <= 255; ++number ) {
      const auto name = names.find( number );
      EXPECT_EQ( printed( static_cast<ChipType>( number ) ),
                 name != names.end() ? name->second
                                     : "ChipType(" + std::to_string( number ) + ")" );
   }
}

// The number stays decimal, and a width pads the whole name.
TEST( ChipType, PrintsAsOnePieceWhateverTheStreamsFormat ) {
   std::ostringstream out;
   out << std::hex << std::showbase << std::setfill( '.' ) << std::setw( 14 )
       << static_cast<ChipType>( 11 ) << '|' << std::setw( 10 ) << Hardware::Software;
   EXPECT_EQ( out.str(), "..ChipType(11)|..Software" );
}

} // namespace
