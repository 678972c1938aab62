// The progress of a long run, in one line that is redrawn.
#include "Progress.h"

#include "Io.h"

#include <algorithm>
#include <cmath>
#include <new>

#include <sys/ioctl.h>
#include <unistd.h>

namespace Vorn {

namespace {

constexpr std::size_t shortestBar = 10;

// The number at the end of at least `width` columns.
std::string padded( U64 number, std::size_t width ) {
   const std::string digits = std::to_string( number );
   return std::string( width - std::min( width, digits.size() ), ' ' ) + digits;
}

// "1:02:03" or "2:03".
std::string clockOf( U64 seconds ) {
   const auto twoDigits = []( U64 number ) {
      return std::string( number < 10 ? ":0" : ":" ) + std::to_string( number );
   };
   const U64 minutes = seconds / 60;
   return ( minutes < 60 ? std::to_string( minutes )
                         : std::to_string( minutes / 60 ) + twoDigits( minutes % 60 ) ) +
          twoDigits( seconds % 60 );
}

std::size_t columnsOfTerminal() {
   winsize size{};
   const bool known = ::ioctl( STDERR_FILENO, TIOCGWINSZ, &size ) == 0 && size.ws_col > 0;
   return known ? size.ws_col : 80;
}

} // namespace

std::string progressLine( U64 done, U64 total, U64 entries, double seconds, std::size_t columns ) {
   const double fraction = static_cast<double>( done ) / static_cast<double>( total );
   const auto rounded = []( double number ) { return static_cast<U64>( std::llround( number ) ); };
   const std::string percent = padded( static_cast<U64>( fraction * 100 ), 3 ) + '%';
   const std::string counts =
      padded( entries, 9 ) + " entries, " +
      std::to_string( rounded( static_cast<double>( entries ) / seconds ) ) + "/s, " +
      clockOf( rounded( seconds / fraction - seconds ) ) + " left";
   const std::size_t others = percent.size() + 3 + counts.size(); // with a space and brackets
   if( columns < others + shortestBar ) {
      return columns < percent.size() + counts.size() ? percent.substr( 0, columns )
                                                      : percent + counts;
   }
   std::string bar( columns - others, ' ' );
   const auto full = static_cast<std::size_t>( fraction * static_cast<double>( bar.size() ) );
   std::fill_n( bar.begin(), full, '=' );
   return percent + " [" + bar + ']' + counts;
}

Progress::Progress() : isShown_( ::isatty( STDERR_FILENO ) && !::isatty( STDOUT_FILENO ) ) {}

Progress::~Progress() {
   try {
      wipe();
   } catch( const std::bad_alloc& ) {
      // The line stays.
   }
}

void Progress::wipe() {
   if( drawn_ > 0 ) {
      draw( "" );
   }
}

void Progress::show( U64 done, U64 total, U64 entries ) {
   if( !isShown_ || done == 0 || done >= total ) {
      return;
   }
   const auto now = Clock::now();
   if( now < next_ ) {
      return;
   }
   next_ = now + std::chrono::milliseconds( 100 );
   const std::chrono::duration<double> passed = now - begin_;
   draw( progressLine( done, total, entries, passed.count(), columnsOfTerminal() - 1 ) );
}

void Progress::draw( const std::string& line ) {
   // Overwrites the whole previous line, without codes of a particular terminal.
   const std::string rest( drawn_ - std::min( drawn_, line.size() ), ' ' );
   writeAll( STDERR_FILENO, '\r' + line + rest + ( line.empty() ? "\r" : "" ) );
   drawn_ = line.size();
}

} // namespace Vorn
