// Any lines as the arguments of vorn, and what follows an empty line as its standard input. The
// first byte chooses the verb, as few texts have one.
//
// Wrong usage prints nothing but its error, JSON is valid, and a traced verb prints the same as one
// that isn't. Left out are arguments by which files would be written or read.
#include "Finding.h"
#include "Vorn.h"

#include <CommandLine.h>

#include <Oru/Trace.h>

#include <algorithm>
#include <filesystem>
#include <iterator>

namespace Fuzz {
namespace {

using Arguments = std::vector<std::string>;

Outcome vorn( const Arguments& arguments, const std::string& input ) {
   std::vector<const char*> pointers{ "vorn" };
   for( const auto& argument : arguments ) {
      pointers.push_back( argument.c_str() );
   }
   return outcomeOf(
      [&]( Vorn::Output& output ) {
         Vorn::runCommandLine( static_cast<int>( pointers.size() ), pointers.data(), "1", output );
      },
      input );
}

// Does the same with the verb's trace, which is thrown away.
Outcome tracedOutcomeOf( Arguments arguments, const std::string& input ) {
   arguments.insert( arguments.begin(), "trace" );
   Oru::traceSinkIs( []( const std::string& ) {} );
   const Outcome outcome = vorn( arguments, input );
   for( const int level : { 0, 8 } ) {
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", level, false );
   }
   return outcome;
}

bool touchesFiles( const std::string& argument ) {
   const auto isThere = []( const std::string& name ) {
      std::error_code ignored;
      return std::filesystem::exists( name, ignored );
   };
   return argument == "reference" || argument.starts_with( "--svg" ) || isThere( argument ) ||
          isThere( argument.substr( argument.find( '=' ) + 1 ) );
}

void run( const Arguments& arguments, const std::string& input ) {
   if( std::any_of( arguments.begin(), arguments.end(), touchesFiles ) ) {
      return;
   }
   const Outcome outcome = vorn( arguments, input );
   if( outcome.status == 2 && !outcome.out.empty() ) {
      found( "printed in spite of wrong usage: " + outcome.out );
   }
   const auto isGiven = [&]( std::string_view argument ) {
      return std::find( arguments.begin(), arguments.end(), argument ) != arguments.end();
   };
   const bool isHelp = outcome.out.find( "Usage: " ) != std::string::npos;
   if( outcome.status == 2 || isHelp || isGiven( "complete" ) || isGiven( "--version" ) ) {
      return;
   }
   // Only what is cut at the end of the device is no whole line.
   if( isGiven( "--json" ) && outcome.error.find( "cannot write" ) == std::string::npos ) {
      objectsIn( outcome.out );
   }
   if( !isGiven( "trace" ) && tracedOutcomeOf( arguments, input ) != outcome ) {
      found( "another outcome with traces" );
   }
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   constexpr const char* verbs[] = { "tables",  "layout",   "encode",  "decode",
                                     "program", "identify", "address", "locate",
                                     "trace",   "complete", "" };
   if( size == 0 ) {
      return 0;
   }
   Fuzz::Arguments arguments{ verbs[data[0] % std::size( verbs )] };
   if( arguments.front().empty() ) {
      arguments.clear();
   }
   const std::string text( reinterpret_cast<const char*>( data ) + 1, size - 1 );
   const auto end = text.find( "\n\n" );
   for( const auto& line : Fuzz::linesOf( text.substr( 0, end ) ) ) {
      arguments.emplace_back( line.c_str() ); // An argument ends at a zero byte.
   }
   Fuzz::run( arguments, end == std::string::npos ? "" : text.substr( end + 2 ) );
   return 0;
}
