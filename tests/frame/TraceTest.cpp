// Lines of one operation ask for their level on their own.
#include "SampleTable.h"

#include <Oru/Trace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Hardware::SampleTable;

constexpr const char* handle = "KelvarVornTunnelMetaInfo";

TEST( Trace, OfAnAccessByNameStopsWhereTheSinkSwitchesItOff ) {
   SampleTable::WithStorage view( Hardware::BCM88690_B0, 0 );
   std::vector<std::string> lines;
   Oru::traceSinkIs( [&lines]( const std::string& line ) {
      lines.push_back( line );
      Oru::traceLevelIs( handle, 8, false );
   } );
   Oru::traceLevelIs( handle, 8, true );
   view.stringField( "hits", 0 );
   Oru::traceSinkIs( {} );
   EXPECT_EQ( lines, std::vector<std::string>{ "virtual U64 Hardware::SampleTable::stringField("
                                               "const Oru::String&, U16) const" } );
}

TEST( Trace, NamesSourceAndFunctionOnStandardError ) {
   SampleTable::WithStorage view( Hardware::BCM88690_B0, 0 );
   Oru::traceLevelIs( handle, 8, true );
   testing::internal::CaptureStderr();
   view.hits();
   Oru::traceLevelIs( handle, 8, false );
   EXPECT_THAT( testing::internal::GetCapturedStderr(),
                testing::MatchesRegex( "KelvarVornTunnelMetaInfo/8 VornTunnelMetaInfo:[0-9]+ hits: "
                                       "U8 Hardware::SampleTable::hits\\(\\) const "
                                       "chipType: 10 variant: 0\n" ) );
}

} // namespace
