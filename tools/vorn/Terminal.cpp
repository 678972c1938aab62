// Colours, which only a person at a terminal sees.
#include "Terminal.h"

#include "Io.h"

#include <cstdlib>

#include <unistd.h>

namespace Vorn {

namespace {

std::string_view variable( const char* name ) {
   const char* const value = std::getenv( name );
   return value ? value : "";
}

constexpr std::string_view codeOf( Paint paint ) {
   return paint == Paint::error ? "\x1b[1;31m" : "\x1b[2m";
}

} // namespace

bool hasColours( int descriptor ) {
   return variable( "NO_COLOR" ).empty() && variable( "TERM" ) != "dumb" && ::isatty( descriptor );
}

std::string painted( Paint paint, std::string_view text, int descriptor ) {
   if( text.empty() || !hasColours( descriptor ) ) {
      return std::string( text );
   }
   // A line's end stays outside, for a terminal to end its line unpainted.
   const auto end = text.ends_with( '\n' ) ? text.size() - 1 : text.size();
   return std::string( codeOf( paint ) ) + std::string( text.substr( 0, end ) ) + "\x1b[0m" +
          std::string( text.substr( end ) );
}

std::string headingsOf( std::span<const Align> columns, std::span<const std::size_t> widths,
                        const std::vector<std::string>& names ) {
   return painted( Paint::heading, lineOf( columns, widths, names ), STDOUT_FILENO );
}

std::string tableOf( std::span<const Align> columns,
                     std::span<const std::vector<std::string>> rows ) {
   const auto widths = widthsOf( rows );
   std::string text = headingsOf( columns, widths, rows.front() );
   for( const auto& row : rows.subspan( 1 ) ) {
      text += lineOf( columns, widths, row );
   }
   return text;
}

void printError( std::string_view prefix, std::string_view message ) {
   std::string line = painted( Paint::error, prefix, STDERR_FILENO );
   line.append( message ).append( "\n" );
   writeAll( STDERR_FILENO, line );
}

void printError( const Error& error ) {
   printError( ( error.place().empty() ? "vorn" : error.place() ) + ": ", error.message() );
}

void printWarning( std::string_view place, std::string_view message ) {
   printError( std::string( place.empty() ? "vorn" : place ) + ": ",
               "warning: " + std::string( message ) );
}

} // namespace Vorn
