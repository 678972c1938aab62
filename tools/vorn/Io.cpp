// Whole lines in and out: standard output through a buffer, and a file or standard input by line.
#include "Io.h"

#include "Text.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Vorn {

namespace {

// From where the descriptor stands to the end of its file; 0 for what is no file.
U64 sizeBehind( int descriptor ) {
   struct stat status {};
   if( ::fstat( descriptor, &status ) != 0 || !S_ISREG( status.st_mode ) ) {
      return 0;
   }
   const off_t begin = ::lseek( descriptor, 0, SEEK_CUR );
   return begin >= 0 && begin < status.st_size ? static_cast<U64>( status.st_size - begin ) : 0;
}

// After a failed call: whether to try again, if need be as soon as there is one of the events.
bool isToRetry( int descriptor, short events ) noexcept {
   if( errno != EAGAIN ) {
      return errno == EINTR;
   }
   pollfd waiting{ descriptor, events, 0 };
   ::poll( &waiting, 1, -1 );
   return true;
}

void requireWritten( int failure ) {
   if( failure != 0 ) {
      throw Error( std::string( "cannot write standard output: " ) + std::strerror( failure ) );
   }
}

} // namespace

int writeAll( int descriptor, std::string_view text ) noexcept {
   while( !text.empty() ) {
      const ssize_t written = ::write( descriptor, text.data(), text.size() );
      if( written >= 0 ) {
         text.remove_prefix( static_cast<std::size_t>( written ) );
      } else if( !isToRetry( descriptor, POLLOUT ) ) {
         return errno;
      }
   }
   return 0;
}

void note( std::string_view message ) {
   writeAll( STDERR_FILENO, "vorn: " + std::string( message ) + '\n' );
}

void Output::write( std::string_view lines ) {
   if( pending_.empty() && lines.size() >= enough ) {
      requireWritten( writeAll( STDOUT_FILENO, lines ) );
      return;
   }
   pending_ += lines;
   if( pending_.size() >= enough ) {
      flush();
   }
}

void Output::flush() {
   const int failure = writeAll( STDOUT_FILENO, pending_ );
   pending_.clear();
   requireWritten( failure );
}

bool isInput( const std::string& word ) {
   std::error_code ignored; // of a word that is too long for a file's name, say
   return word == "-" || std::filesystem::exists( word, ignored );
}

FileBytes::FileBytes( const std::string& path, std::function<void()> beforeRead )
   : raw_( path, std::move( beforeRead ) ) {}

FileBytes::~FileBytes() = default;

bool FileBytes::isReady() const {
   pollfd waiting{ raw_.descriptor, POLLIN, 0 };
   return ::poll( &waiting, 1, 0 ) > 0;
}

FileBytes::Raw::Raw( const std::string& path, std::function<void()> calledBeforeRead )
   : shownPath( path == "-" ? "<stdin>" : shown( path ) ),
     beforeRead( std::move( calledBeforeRead ) ),
     descriptor( path == "-" ? STDIN_FILENO : ::open( path.c_str(), O_RDONLY | O_CLOEXEC ) ) {
   if( descriptor < 0 ) {
      throw Error( "cannot open " + shownPath + ": " + std::strerror( errno ) );
   }
   size = sizeBehind( descriptor );
}

FileBytes::Raw::~Raw() {
   if( descriptor != STDIN_FILENO ) {
      ::close( descriptor );
   }
}

std::size_t FileBytes::Raw::read( char* to, std::size_t length ) {
   beforeRead();
   for( ;; ) {
      const ssize_t count = ::read( descriptor, to, length );
      if( count >= 0 ) {
         bytesRead += static_cast<U64>( count );
         return static_cast<std::size_t>( count );
      }
      if( !isToRetry( descriptor, POLLIN ) ) {
         throw Error( "cannot read " + shownPath + ": " + std::strerror( errno ) );
      }
   }
}

LineReader::LineReader( const std::string& path, std::function<void()> beforeRead )
   : FileBytes( path, std::move( beforeRead ) ), ByteLines( static_cast<ByteSource&>( *this ) ) {}

LineReader::~LineReader() = default;

} // namespace Vorn
