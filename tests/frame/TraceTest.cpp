// Each line of an operation asks for its own level; tracing works without memory.
#include "SampleTable.h"

#include <Oru/Trace.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace {

// Whether this thread is refused memory.
thread_local bool refused = false;

[[gnu::noinline]] void* allocate( std::size_t size ) noexcept {
   if( refused ) {
      errno = ENOMEM;
      return nullptr;
   }
   return std::malloc( size );
}

struct WithoutMemory {
   WithoutMemory() { refused = true; }
   ~WithoutMemory() { refused = false; }
   WithoutMemory( const WithoutMemory& ) = delete;
   WithoutMemory& operator=( const WithoutMemory& ) = delete;
};

[[gnu::noinline]] void release( void* memory ) noexcept { std::free( memory ); }

} // namespace

void* operator new( std::size_t size ) {
   void* const memory = allocate( size );
   return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new( std::size_t size, const std::nothrow_t& ) noexcept { return allocate( size ); }
void operator delete( void* memory ) noexcept { release( memory ); }
void operator delete( void* memory, std::size_t ) noexcept { release( memory ); }
void operator delete( void* memory, const std::nothrow_t& ) noexcept { release( memory ); }

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

// Copying this sink would allocate memory.
TEST( Trace, HappensAlsoWithoutMemory ) {
   U8 entry[SampleTable::storageSize] = {};
   SampleTable( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 ); // builds the handle
   const Oru::String name( "hits" );
   unsigned lines = 0;
   Oru::traceSinkIs( [&lines, text = std::string( 100, 'x' )]( const std::string& line ) {
      lines += line != text;
   } );
   Oru::traceLevelIs( handle, 8, true );
   U8 set = 0;
   U64 setByName = 0;
   errno = 4711;
   {
      const WithoutMemory withoutMemory;
      SampleTable view( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
      view.hitsIs( 5 );
      set = view.hits();
      view.stringFieldIs( name, 6 );
      setByName = view.stringField( name, 0 );
   }
   const int errorNumber = errno;
   Oru::traceLevelIs( handle, 8, false );
   Oru::traceSinkIs( {} );
   EXPECT_EQ( set, 5 );
   EXPECT_EQ( setByName, 6u );
   EXPECT_EQ( errorNumber, 4711 );
   EXPECT_GT( lines, 0u );
}

} // namespace
