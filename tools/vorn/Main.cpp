// vorn: composes and decodes table entries on the command line.
#include "CommandLine.h"
#include "Io.h"
#include "Terminal.h"

#include <csignal>
#include <exception>
#include <new>
#include <string>

#include <unistd.h>

namespace {

enum ExitStatus : int { success = 0, differences = 1, badInput = 1, wrongUsage = 2 };

int run( int argc, char** argv ) {
   try {
      Vorn::Output output;
      Vorn::runCommandLine( argc, argv, VORN_VERSION, output );
      return success;
   } catch( const Vorn::UsageError& error ) {
      Vorn::printError( error );
      return wrongUsage;
   } catch( const Vorn::HasDifferences& ) {
      return differences;
   } catch( const Vorn::HasFailed& ) {
      return badInput;
   } catch( const Vorn::Error& error ) {
      Vorn::printError( error );
   } catch( const std::bad_alloc& ) {
      throw;
   } catch( const std::exception& error ) {
      Vorn::printError( "vorn: ", error.what() );
   }
   return badInput;
}

void printOutOfMemory() { Vorn::writeAll( STDERR_FILENO, "vorn: out of memory\n" ); }

// The constants of CLI11 are made before main, where nobody catches an exception.
[[gnu::constructor( 101 )]] void endWithoutMemory() {
   std::set_new_handler( [] {
      printOutOfMemory();
      ::_exit( badInput );
   } );
}

} // namespace

int main( int argc, char** argv ) {
   std::set_new_handler( nullptr );
   // A file that may not grow further is an Error then, as a full disk is.
   std::signal( SIGXFSZ, SIG_IGN );
   try {
      return run( argc, argv );
   } catch( const std::bad_alloc& ) {
      printOutOfMemory();
   }
   return badInput;
}
