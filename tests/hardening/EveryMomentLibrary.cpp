// A library that uses ours before main, and as long as destructors run.
#include "../support/Classes.h"
#include "EveryMoment.h"

#include <Hardware/Registry.h>
#include <Oru/Trace.h>

#include <atomic>
#include <cstdlib>
#include <string>
#include <string_view>

#include <unistd.h>

namespace Testing {

namespace {

std::atomic<unsigned> asked{ 0 };

void require( bool right, const char* what, const char* moment ) {
   if( !right ) {
      const std::string line = std::string( moment ) + ": " + what + '\n';
      _exit( ::write( STDOUT_FILENO, line.data(), line.size() ) < 0 ? 2 : 1 );
   }
}

// What `action` writes to standard error, less than a pipe holds.
template<class Action>
std::string errorsOf( Action action ) {
   int ends[2];
   const int before = dup( STDERR_FILENO );
   if( before < 0 || pipe( ends ) != 0 ) {
      _exit( 2 );
   }
   dup2( ends[1], STDERR_FILENO );
   close( ends[1] );
   action();
   dup2( before, STDERR_FILENO );
   close( before );
   char bytes[4096];
   const ssize_t count = read( ends[0], bytes, sizeof bytes );
   close( ends[0] );
   return { bytes, count < 0 ? 0 : static_cast<std::size_t>( count ) };
}

} // namespace

void useLibrary( const char* moment ) {
   const auto right = [moment]( bool condition, const char* what ) {
      require( condition, what, moment );
   };
   right( Hardware::chipTypeVariantValid( "LifTable", Hardware::BCM88690_B0, 0 ), "LifTable" );
   right( !Hardware::chipTypeVariantValid( "LifTable", Hardware::BCM88690_B0, 99 ), "variant 99" );
   const auto view = Hardware::stringObj( "TcamActionTable", Hardware::BCM88690_B0, 0 );
   const std::string errors = errorsOf( [&view] {
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", 8, true );
      view->setField64( 3, 0x12345 );
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", 8, false );
   } );
   right( errors.starts_with( "KelvarVornTunnelMetaInfo/8 VornTunnelMetaInfo:" ), "trace line" );
   right( view->stringField( "action", 0 ) == 0x12345, "action" );
   right( Hardware::classNames().size() == Testing::classCount, "names" );
}

void threadHasAsked() {
   ++asked;
   asked.notify_all();
}

void waitForThread() {
   const unsigned before = asked;
   for( unsigned now = before; now - before < 2; now = asked ) {
      asked.wait( now );
   }
}

namespace {

// Its destructor runs after those of what is built on first use.
const struct Last {
   Last() {
      std::atexit( [] { useLibrary( "handler registered before the first use" ); } );
   }
   ~Last() {
      useLibrary( "destructor of a static object made before the first use" );
      waitForThread();
   }
   Last( const Last& ) = delete;
   Last& operator=( const Last& ) = delete;
} last;

const struct First {
   First() {
      if( std::getenv( "BEFORE_THE_PROGRAM" ) != nullptr ) {
         useLibrary( "constructor of a library's static object" );
      }
   }
} first;

[[gnu::destructor]] void unloaded() { useLibrary( "end of a library" ); }

} // namespace

} // namespace Testing
