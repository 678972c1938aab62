// A replaceable receiver of text, and the default receivers.
#pragma once

#include <atomic>
#include <functional>
#include <string_view>
#include <utility>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

namespace Oru {

// A function that may be replaced while others call it, and may trace, assert or replace itself.
// There is no lock: a call may be interrupted by a signal or a fork at any point, and be made by
// the handler or the child. For the same reason a call copies and frees nothing.
template<class... Arguments>
class Sink {
public:
   using Function = std::function<void( Arguments... )>;

   // The former function ends now or, if a call is under way, with a later replacement.
   void functionIs( Function function ) {
      Node* const node = function ? new Node{ std::move( function ) } : nullptr;
      if( Node* const former = current_.exchange( node ) ) {
         push( former, former );
      }
      if( calls_ == 0 ) {
         endReplaced();
      }
   }

   // Calls the function; false if there is none.
   bool deliver( Arguments... arguments ) {
      const Call call( calls_ );
      Node* const node = current_;
      if( node != nullptr ) {
         node->function( arguments... );
      }
      return node != nullptr;
   }

private:
   struct Node {
      Function function;
      Node* next = nullptr;
   };

   class Call {
   public:
      explicit Call( std::atomic<unsigned>& calls ) : calls_( calls ) { ++calls_; }
      ~Call() { --calls_; }
      Call( const Call& ) = delete;
      Call& operator=( const Call& ) = delete;

   private:
      std::atomic<unsigned>& calls_;
   };

   // Adds a chain of nodes to those that were replaced.
   void push( Node* first, Node* last ) {
      last->next = replaced_;
      while( !replaced_.compare_exchange_weak( last->next, first ) ) {
      }
   }

   // A call counts itself before it looks for the function. So no call uses one of these if none is
   // under way after they were taken.
   void endReplaced() {
      Node* const first = replaced_.exchange( nullptr );
      if( first == nullptr ) {
         return;
      }
      if( calls_ == 0 ) {
         for( Node* node = first; node != nullptr; ) {
            delete std::exchange( node, node->next );
         }
      } else {
         Node* last = first;
         while( last->next != nullptr ) {
            last = last->next;
         }
         push( first, last );
      }
   }

   std::atomic<Node*> current_{ nullptr };
   std::atomic<Node*> replaced_{ nullptr };
   std::atomic<unsigned> calls_{ 0 };
};

// Keeps errno, and the thread from being cancelled, while a line is delivered.
class Undisturbed {
public:
   Undisturbed() { pthread_setcancelstate( PTHREAD_CANCEL_DISABLE, &cancelState_ ); }
   ~Undisturbed() {
      pthread_setcancelstate( cancelState_, nullptr );
      errno = errno_;
   }
   Undisturbed( const Undisturbed& ) = delete;
   Undisturbed& operator=( const Undisturbed& ) = delete;

private:
   int errno_ = errno;
   int cancelState_ = 0;
};

// Blocks the signals by which a write can end the process, and consumes those that it caused.
class WithoutWriteSignals {
public:
   WithoutWriteSignals() {
      sigemptyset( &signals_ );
      sigaddset( &signals_, SIGPIPE );
      sigaddset( &signals_, SIGXFSZ );
      pthread_sigmask( SIG_BLOCK, &signals_, &mask_ );
      sigset_t pending;
      sigpending( &pending );
      for( const int signal : { SIGPIPE, SIGXFSZ } ) {
         if( sigismember( &pending, signal ) == 1 ) {
            sigdelset( &signals_, signal );
         }
      }
   }
   ~WithoutWriteSignals() {
      constexpr timespec now{};
      while( sigtimedwait( &signals_, nullptr, &now ) > 0 ) {
      }
      pthread_sigmask( SIG_SETMASK, &mask_, nullptr );
   }
   WithoutWriteSignals( const WithoutWriteSignals& ) = delete;
   WithoutWriteSignals& operator=( const WithoutWriteSignals& ) = delete;

private:
   sigset_t signals_; // not pending before
   sigset_t mask_;
};

// Writes a line in one piece if possible, so that lines of several threads don't mix.
inline void writeToStandardError( std::string_view line ) {
   const WithoutWriteSignals withoutSignals;
   while( !line.empty() ) {
      const ssize_t written = ::write( STDERR_FILENO, line.data(), line.size() );
      if( written > 0 ) {
         line.remove_prefix( static_cast<std::size_t>( written ) );
      } else if( written < 0 && errno == EAGAIN ) {
         pollfd standardError{ STDERR_FILENO, POLLOUT, 0 };
         if( ::poll( &standardError, 1, -1 ) < 0 && errno != EINTR ) {
            return;
         }
      } else if( written == 0 || errno != EINTR ) {
         return;
      }
   }
}

} // namespace Oru
