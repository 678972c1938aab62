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

const std::map<int, std::string> names{
   { 2, "BCM88650_B0" },     { 3, "BCM88660_A0" },  { 4, "BCM88375_A0" },  { 5, "BCM88375_B0" },
   { 6, "BCM88470_A0" },     { 7, "BCM88470_B0" },  { 8, "BCM88680_A0" },  { 10, "BCM88690_B0" },
   { 12, "BCM88690_V6_B0" }, { 13, "BCM88800_A0" }, { 14, "BCM88850_A0" }, { 15, "BCM88480_A0" },
   { 16, "BCM88480_B0" },    { 21, "Software" },
};

TEST( ChipType, Numbers ) {
   EXPECT_EQ( Hardware::BCM88650_B0, 2 );
   EXPECT_EQ( Hardware::BCM88660_A0, 3 );
   EXPECT_EQ( Hardware::BCM88375_A0, 4 );
   EXPECT_EQ( Hardware::BCM88375_B0, 5 );
   EXPECT_EQ( Hardware::BCM88470_A0, 6 );
   EXPECT_EQ( Hardware::BCM88470_B0, 7 );
   EXPECT_EQ( Hardware::BCM88680_A0, 8 );
   EXPECT_EQ( Hardware::BCM88690_B0, 10 );
   EXPECT_EQ( Hardware::BCM88690_V6_B0, 12 );
   EXPECT_EQ( Hardware::BCM88800_A0, 13 );
   EXPECT_EQ( Hardware::BCM88850_A0, 14 );
   EXPECT_EQ( Hardware::BCM88480_A0, 15 );
   EXPECT_EQ( Hardware::BCM88480_B0, 16 );
   EXPECT_EQ( Hardware::ChipType::Software, 21 );
   EXPECT_EQ( Hardware::Software, 21 );
}

TEST( ChipType, EveryNumberPrints ) {
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
