// A replaceable receiver of text, and what receives it by default.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>

#include <cerrno>
#include <unistd.h>

namespace Oru {

// A function that may be replaced while others call it. It is called outside the lock, so that it
// may trace, assert or replace itself.
template<class... Arguments>
class Sink {
public:
   using Function = std::function<void( Arguments... )>;

   void functionIs( Function function ) {
      const std::lock_guard guard( mutex_ );
      // The former function is destroyed behind the lock: it may own anything.
      function_.swap( function );
   }

   Function function() const {
      const std::lock_guard guard( mutex_ );
      return function_;
   }

private:
   mutable std::mutex mutex_;
   Function function_;
};

// Writes a line at once, so that lines of several threads don't mix.
inline void writeToStandardError( const std::string& line ) {
   ssize_t written = 0;
   do {
      written = ::write( STDERR_FILENO, line.data(), line.size() );
   } while( written < 0 && errno == EINTR );
}

} // namespace Oru
