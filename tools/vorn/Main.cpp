// vorn: composes and decodes table entries on the command line.
#include "CommandLine.h"
#include "Terminal.h"

#include <csignal>
#include <exception>
#include <iostream>
#include <string_view>

#include <unistd.h>

namespace {

enum ExitStatus : int { success = 0, badInput = 1, wrongUsage = 2 };

// `prefix` and `message` as one line on standard error.
void printError( std::string_view prefix, std::string_view message ) {
   std::cerr << Vorn::painted( Vorn::Paint::error, prefix, STDERR_FILENO ) << message << '\n';
}

void printError( const Vorn::Error& error ) {
   const std::string_view text = error.what();
   printError( text.substr( 0, text.size() - error.message().size() ), error.message() );
}

} // namespace

int main( int argc, char** argv ) {
   // A file that may not grow further is an Error then, as a full disk is.
   std::signal( SIGXFSZ, SIG_IGN );
   try {
      Vorn::Output output;
      Vorn::runCommandLine( argc, argv, VORN_VERSION, output );
      return success;
   } catch( const Vorn::UsageError& error ) {
      printError( error );
      return wrongUsage;
   } catch( const Vorn::Error& error ) {
      printError( error );
   } catch( const std::exception& error ) {
      printError( "vorn: ", error.what() );
   }
   return badInput;
}
