// Tracing: levels by handle name, what a line holds, who gets it.
#include <Assertions.h>
#include <Oru/Trace.h>

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Oru::TraceFacility;
using Oru::TraceHandle;
using Oru::TraceHelper;

TraceFacility::FacilityLevel levelOf( int number ) {
   return static_cast<TraceFacility::FacilityLevel>( number );
}

class Trace : public testing::Test {
protected:
   void SetUp() override {
      Oru::traceSinkIs( [this]( const std::string& line ) { lines_.push_back( line ); } );
   }
   void TearDown() override { Oru::traceSinkIs( {} ); }

   std::vector<std::string> lines_;
};

TEST( TraceLevel, IsOffAtFirst ) {
   const TraceHandle handle( "OffAtFirst", false );
   for( int level = 0; level <= 9; ++level ) {
      EXPECT_FALSE( handle.enabled( levelOf( level ) ) ) << level;
   }
   EXPECT_STREQ( handle.name(), "OffAtFirst" );
}

TEST( TraceLevel, NamesAreNumbers ) {
   const TraceFacility::FacilityLevel names[] = {
      TraceFacility::level0, TraceFacility::level1, TraceFacility::level2, TraceFacility::level3,
      TraceFacility::level4, TraceFacility::level5, TraceFacility::level6, TraceFacility::level7,
      TraceFacility::level8, TraceFacility::level9,
   };
   for( int level = 0; level <= 9; ++level ) {
      EXPECT_EQ( static_cast<int>( names[level] ), level );
   }
}

TEST( TraceLevel, EachLevelIsOfItsOwn ) {
   const TraceHandle handle( "EachLevel", false );
   for( int chosen = 0; chosen <= 9; ++chosen ) {
      Oru::traceLevelIs( "EachLevel", chosen, true );
      for( int level = 0; level <= 9; ++level ) {
         EXPECT_EQ( handle.enabled( levelOf( level ) ), level == chosen ) << chosen << ' ' << level;
      }
      Oru::traceLevelIs( "EachLevel", chosen, false );
      EXPECT_FALSE( handle.enabled( levelOf( chosen ) ) ) << chosen;
   }
}

TEST( TraceLevel, ReachesHandlesMadeBeforeAndAfter ) {
   const TraceHandle before( "BeforeAndAfter", false );
   Oru::traceLevelIs( "BeforeAndAfter", 8, true );
   const TraceHandle after( "BeforeAndAfter", true );
   const TraceHandle other( "BeforeAndAfterAll", false );
   EXPECT_TRUE( before.enabled( TraceFacility::level8 ) );
   EXPECT_TRUE( after.enabled( TraceFacility::level8 ) );
   EXPECT_FALSE( other.enabled( TraceFacility::level8 ) );
   Oru::traceLevelIs( "BeforeAndAfter", 8, false );
   EXPECT_FALSE( before.enabled( TraceFacility::level8 ) );
   EXPECT_FALSE( after.enabled( TraceFacility::level8 ) );
}

TEST( TraceLevel, OutlivesItsHandles ) {
   { const TraceHandle handle( "OutlivesHandles", false ); }
   Oru::traceLevelIs( "OutlivesHandles", 0, true );
   { const TraceHandle handle( "OutlivesHandles", false ); }
   EXPECT_TRUE( TraceHandle( "OutlivesHandles", false ).enabled( TraceFacility::level0 ) );
}

TEST( TraceLevel, IsToldToEachHandleThatLives ) {
   const TraceHandle first( "EachThatLives", false );
   auto second = std::make_unique<TraceHandle>( "EachThatLives", false );
   const TraceHandle third( "EachThatLives", false );
   Oru::traceLevelIs( "EachThatLives", 0, true );
   EXPECT_TRUE( second->enabled( TraceFacility::level0 ) );
   second.reset();
   Oru::traceLevelIs( "EachThatLives", 9, true );
   Oru::traceLevelIs( "EachThatLives", 0, false );
   for( const TraceHandle* const handle : { &first, &third } ) {
      EXPECT_TRUE( handle->enabled( TraceFacility::level9 ) );
      EXPECT_FALSE( handle->enabled( TraceFacility::level0 ) );
      EXPECT_FALSE( handle->enabled( TraceFacility::level8 ) );
   }
}

TEST( TraceLevel, OutsideTheRangeIsAnAssertion ) {
   for( const int level : { -1, 10, 31, 32, INT_MIN, INT_MAX } ) {
      for( const bool on : { false, true } ) {
         const auto failure =
            Testing::failureOf( [&] { Oru::traceLevelIs( "OutsideTheRange", level, on ); } );
         ASSERT_TRUE( failure ) << level;
         EXPECT_EQ( failure->expression, "level >= 0 && level <= 9" );
         EXPECT_EQ( failure->file, "Trace.cpp" );
         EXPECT_EQ( failure->function, "void Oru::traceLevelIs(const std::string&, int, bool)" );
      }
   }
   const TraceHandle handle( "OutsideTheRange", false );
   for( int level = 0; level <= 9; ++level ) {
      EXPECT_FALSE( handle.enabled( levelOf( level ) ) ) << level;
   }
}

TEST_F( Trace, SinkReceivesTheStreamedText ) {
   const TraceHandle handle( "Streamed", false );
   {
      TraceHelper helper( handle, TraceFacility::level8, "File", 12, "function" );
      helper.stream() << "U32 f() const"
                      << " chipType: " << U8{ 10 } << " number: " << U32{ 4294967295 }
                      << " name: " << Oru::String( "action" );
      EXPECT_EQ( helper.stream().line(),
                 "U32 f() const chipType: 10 number: 4294967295 name: action" );
      EXPECT_TRUE( lines_.empty() );
   }
   EXPECT_EQ( lines_, ( std::vector<std::string>{
                         "U32 f() const chipType: 10 number: 4294967295 name: action" } ) );
}

TEST_F( Trace, BytesAreDecimalNumbers ) {
   const TraceHandle handle( "Bytes", false );
   {
      TraceHelper helper( handle, TraceFacility::level8, "File", 1, "function" );
      helper.stream() << U8{ 0 } << " " << U8{ 65 } << " " << U8{ 255 };
   }
   { TraceHelper helper( handle, TraceFacility::level8, "File", 1, "function" ); }
   EXPECT_EQ( lines_, ( std::vector<std::string>{ "0 65 255", "" } ) );
}

// A helper writes its line whatever the level: its maker has tested that.
TEST_F( Trace, TheMakerTestsTheLevel ) {
   const TraceHandle handle( "MakerTests", false );
   ASSERT_FALSE( handle.enabled( TraceFacility::level3 ) );
   { TraceHelper( handle, TraceFacility::level3, "File", 1, "f" ).stream() << "text"; }
   EXPECT_EQ( lines_, ( std::vector<std::string>{ "text" } ) );
}

TEST_F( Trace, EmptySinkRestoresStandardError ) {
   Oru::traceSinkIs( {} );
   const TraceHandle handle( "Handle", false );
   testing::internal::CaptureStderr();
   { TraceHelper( handle, TraceFacility::level8, "File", 12, "function" ).stream() << "the text"; }
   { TraceHelper( handle, TraceFacility::level0, "Other", 7, "g" ).stream() << "more"; }
   EXPECT_EQ( testing::internal::GetCapturedStderr(),
              "Handle/8 File:12 function: the text\nHandle/0 Other:7 g: more\n" );
   EXPECT_TRUE( lines_.empty() );
}

TEST_F( Trace, DropsWhatASinkThrows ) {
   Oru::traceSinkIs( []( const std::string& ) { throw std::runtime_error( "sink" ); } );
   const TraceHandle handle( "Throwing", false );
   EXPECT_NO_THROW( { TraceHelper helper( handle, TraceFacility::level0, "File", 1, "f" ); } );
}

TEST_F( Trace, ASinkMayTrace ) {
   const TraceHandle handle( "Nested", false );
   Oru::traceSinkIs( [&]( const std::string& line ) {
      lines_.push_back( line );
      if( line == "outer" ) {
         TraceHelper( handle, TraceFacility::level0, "File", 2, "sink" ).stream() << "inner";
      }
   } );
   { TraceHelper( handle, TraceFacility::level0, "File", 1, "f" ).stream() << "outer"; }
   EXPECT_EQ( lines_, ( std::vector<std::string>{ "outer", "inner" } ) );
}

// Every line arrives at exactly one sink, whole, while sinks and levels change.
TEST_F( Trace, SinksMayBeReplacedMeanwhile ) {
   constexpr int linesPerThread = 500;
   std::atomic<int> whole{ 0 };
   std::atomic<int> other{ 0 };
   const auto sink = [&]( const std::string& line ) { ++( line == "a line" ? whole : other ); };
   Oru::traceSinkIs( sink );
   std::atomic<bool> done{ false };
   std::thread replacer( [&] {
      while( !done ) {
         Oru::traceSinkIs( sink );
         Oru::traceLevelIs( "Meanwhile", 5, true );
      }
   } );
   std::vector<std::thread> writers;
   for( int i = 0; i < 3; ++i ) {
      writers.emplace_back( [] {
         for( int line = 0; line < linesPerThread; ++line ) {
            const TraceHandle handle( "Meanwhile", false );
            TraceHelper( handle, TraceFacility::level5, "File", 1, "f" ).stream() << "a line";
         }
      } );
   }
   for( std::thread& writer : writers ) {
      writer.join();
   }
   done = true;
   replacer.join();
   EXPECT_EQ( whole, 3 * linesPerThread );
   EXPECT_EQ( other, 0 );
}

} // namespace
