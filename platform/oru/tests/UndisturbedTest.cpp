// Tracing leaves what it traces as it was: forks, cancelled threads, signal handlers, memory,
// errno.
#include <Oru/Sassert.h>
#include <Oru/Trace.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <new>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// What this thread allocates, and whether it is refused, as by a system without memory.
thread_local long allocations = 0;
thread_local bool refused = false;

[[gnu::noinline]] void* allocate( std::size_t size ) noexcept {
   ++allocations;
   if( refused ) {
      errno = ENOMEM;
      return nullptr;
   }
   return std::malloc( size );
}

[[gnu::noinline]] void release( void* memory ) noexcept { std::free( memory ); }

// Called when somebody begins to wait until a file is ready.
std::function<void()> waiting;

} // namespace

void* operator new( std::size_t size ) {
   void* const memory = allocate( size );
   return memory != nullptr ? memory : throw std::bad_alloc();
}
void* operator new( std::size_t size, const std::nothrow_t& ) noexcept { return allocate( size ); }
void operator delete( void* memory ) noexcept { release( memory ); }
void operator delete( void* memory, std::size_t ) noexcept { release( memory ); }
void operator delete( void* memory, const std::nothrow_t& ) noexcept { release( memory ); }

// Stands before the system's for the library, too.
extern "C" __attribute__( ( visibility( "default" ) ) ) int poll( pollfd* files, nfds_t count,
                                                                  int milliseconds ) {
   if( waiting ) {
      waiting();
   }
   timespec limit{ milliseconds / 1000, milliseconds % 1000 * 1000000L };
   return static_cast<int>(
      ::syscall( SYS_ppoll, files, count, milliseconds < 0 ? nullptr : &limit, nullptr, 0 ) );
}

namespace {

using Oru::TraceFacility;
using Oru::TraceHandle;
using Oru::TraceHelper;

constexpr const char* name = "UndisturbedTraceHandle";

// A line longer than what a string holds in itself.
void trace( const TraceHandle& handle ) {
   TraceHelper( handle, TraceFacility::level8, "File", 12, "function" ).stream()
      << "void Hardware::TcamActionTable::actionIs(U32)"
      << " chipType: " << U8{ 10 } << " variant: " << U8{ 0 };
}

constexpr const char* text =
   "void Hardware::TcamActionTable::actionIs(U32) chipType: 10 variant: 0";
const std::string line = std::string( name ) + "/8 File:12 function: " + text + '\n';

class Undisturbed : public testing::Test {
protected:
   void SetUp() override { Oru::traceLevelIs( name, 8, true ); }
   void TearDown() override {
      Oru::traceSinkIs( {} );
      Oru::traceLevelIs( name, 8, false );
      waiting = nullptr;
   }

   const TraceHandle handle_{ name, false };
};

// Runs `action` in a child, which is ended if it hangs; the status that waitpid reports.
int statusOfChild( const std::function<void()>& action ) {
   const pid_t child = fork();
   if( child == 0 ) {
      alarm( 10 );
      action();
      _exit( 0 );
   }
   int status = -1;
   waitpid( child, &status, 0 );
   return status;
}

// Standard error as one end of a pipe; the test holds the other.
class Pipe {
public:
   Pipe() {
      EXPECT_EQ( pipe( ends_ ), 0 );
      dup2( ends_[1], STDERR_FILENO );
      close( ends_[1] );
   }
   ~Pipe() {
      writerIsClosed();
      readerIsClosed();
      close( before_ );
   }
   Pipe( const Pipe& ) = delete;
   Pipe& operator=( const Pipe& ) = delete;

   void writerIsClosed() { dup2( before_, STDERR_FILENO ); }
   void readerIsClosed() {
      close( ends_[0] );
      ends_[0] = -1;
   }

   // All bytes until the last writer is closed.
   std::string read() const {
      std::string bytes;
      char some[4096];
      for( ssize_t count = 0; ( count = ::read( ends_[0], some, sizeof some ) ) > 0; ) {
         bytes.append( some, static_cast<std::size_t>( count ) );
      }
      return bytes;
   }

private:
   int before_ = dup( STDERR_FILENO );
   int ends_[2] = { -1, -1 };
};

// The traces of one thread, as a sink that shows when it is reached. It may be copied on the way.
struct Shown {
   std::function<void()> reached;

   explicit Shown( std::function<void()> action ) : reached( std::move( action ) ) {}
   Shown( const Shown& other ) : reached( other.reached ) { show(); }
   Shown( Shown&& ) = default;
   Shown& operator=( const Shown& ) = delete;
   Shown& operator=( Shown&& ) = delete;
   ~Shown() = default;
   void operator()( const std::string& ) const { show(); }

   static thread_local bool showing;

   void show() const {
      if( std::exchange( showing, false ) ) {
         reached();
      }
   }
};
thread_local bool Shown::showing = false;

TEST_F( Undisturbed, AChildTracesThatWasForkedDuringALine ) {
   std::binary_semaphore reached( 0 );
   std::binary_semaphore go( 0 );
   Oru::traceSinkIs( Shown( [&] {
      reached.release();
      go.acquire();
   } ) );
   std::thread tracing( [&] {
      Shown::showing = true;
      trace( handle_ );
   } );
   reached.acquire();
   const int status = statusOfChild( [&] {
      trace( handle_ );
      Oru::traceSinkIs( {} );
   } );
   go.release();
   tracing.join();
   EXPECT_EQ( status, 0 );
}

TEST_F( Undisturbed, AChildAssertsThatWasForkedDuringAMessage ) {
   std::binary_semaphore reached( 0 );
   std::binary_semaphore go( 0 );
   Oru::sassertSinkIs( [shown = Shown( [&] {
                           reached.release();
                           go.acquire();
                        } )]( const std::string&, const std::string& ) { shown.show(); } );
   std::thread asserting( [] {
      Shown::showing = true;
      const Oru::SassertHelper helper( "0" );
   } );
   reached.acquire();
   const int status = statusOfChild( [] { const Oru::SassertHelper helper( "0" ); } );
   go.release();
   asserting.join();
   Oru::sassertSinkIs( {} );
   EXPECT_EQ( status, 0 );
}

TEST_F( Undisturbed, AChildMakesHandlesThatWasForkedWhileAThreadDid ) {
   std::atomic<bool> done{ false };
   std::thread making( [&done] {
      while( !done ) {
         const TraceHandle handle( name, false );
      }
   } );
   std::vector<int> statuses;
   while( statuses.size() < 50 && ( statuses.empty() || statuses.back() == 0 ) ) {
      statuses.push_back( statusOfChild( [] {
         const TraceHandle handle( name, false );
         Oru::traceLevelIs( name, 7, true );
      } ) );
   }
   done = true;
   making.join();
   EXPECT_EQ( statuses, std::vector<int>( 50, 0 ) );
}

// Traces in a thread that somebody has cancelled: whether it went on until the next point where
// threads are.
bool goesOnAndEnds( const TraceHandle& handle ) {
   struct Thread {
      const TraceHandle& handle;
      bool wentOn;
   } thread{ handle, false };
   pthread_t cancelled;
   EXPECT_EQ( pthread_create(
                 &cancelled, nullptr,
                 []( void* argument ) -> void* {
                    auto& given = *static_cast<Thread*>( argument );
                    pthread_cancel( pthread_self() );
                    trace( given.handle );
                    given.wentOn = true;
                    pthread_testcancel();
                    return nullptr;
                 },
                 &thread ),
              0 );
   void* result = nullptr;
   pthread_join( cancelled, &result );
   return thread.wentOn && result == PTHREAD_CANCELED;
}

TEST_F( Undisturbed, ACancelledThreadEndsAfterItsLine ) {
   Pipe standardError;
   EXPECT_TRUE( goesOnAndEnds( handle_ ) );
   standardError.writerIsClosed();
   EXPECT_EQ( standardError.read(), line );
}

TEST_F( Undisturbed, ACancelledThreadEndsAfterItsSink ) {
   std::string received;
   Oru::traceSinkIs( [&received]( const std::string& given ) {
      pthread_testcancel();
      received = given;
   } );
   EXPECT_TRUE( goesOnAndEnds( handle_ ) );
   EXPECT_EQ( received, text );
}

const TraceHandle* handleOfSignal = nullptr;

TEST_F( Undisturbed, ASignalHandlerTracesDuringALine ) {
   handleOfSignal = &handle_;
   struct sigaction action = {};
   struct sigaction before = {};
   action.sa_handler = []( int ) { trace( *handleOfSignal ); };
   sigaction( SIGUSR1, &action, &before );
   Oru::traceSinkIs( Shown( [] { std::raise( SIGUSR1 ); } ) );
   const int status = statusOfChild( [this] {
      Shown::showing = true;
      trace( handle_ );
   } );
   EXPECT_EQ( status, 0 );
   sigaction( SIGUSR1, &before, nullptr );
}

// A signal handler may have interrupted an allocation.
TEST_F( Undisturbed, ALineIsAllocatedBeforehand ) {
   Pipe standardError;
   long before = allocations;
   trace( handle_ );
   EXPECT_EQ( allocations, before );
   standardError.writerIsClosed();
   EXPECT_EQ( standardError.read(), line );

   std::string received;
   received.reserve( 200 );
   Oru::traceSinkIs( [&]( const std::string& given ) {
      if( received.empty() ) {
         received = given;
         trace( handle_ );
      }
   } );
   before = allocations;
   trace( handle_ );
   EXPECT_EQ( allocations, before );
   EXPECT_EQ( received, text );
}

TEST_F( Undisturbed, ALineWithoutMemoryIsCut ) {
   std::vector<std::string> received;
   received.reserve( 3 );
   Oru::traceSinkIs( [&received]( const std::string& given ) {
      refused = false;
      received.push_back( given.substr( 0, 5 ) );
   } );
   const std::string endless( 100000, 'x' );
   refused = true;
   errno = 4711;
   EXPECT_NO_THROW( {
      TraceHelper helper( handle_, TraceFacility::level8, "File", 12, "function" );
      helper.stream() << "begin" << endless.c_str() << U32{ 4294967295 };
   } );
   refused = false;
   EXPECT_EQ( errno, 4711 );
   EXPECT_EQ( received, std::vector<std::string>{ "begin" } );
}

TEST_F( Undisturbed, ErrnoIsKept ) {
   Oru::traceSinkIs( []( const std::string& ) { errno = EINVAL; } );
   errno = 4711;
   trace( handle_ );
   EXPECT_EQ( errno, 4711 );

   Oru::traceSinkIs( {} );
   const int before = dup( STDERR_FILENO );
   close( STDERR_FILENO );
   errno = 4711;
   trace( handle_ );
   EXPECT_EQ( errno, 4711 );
   dup2( before, STDERR_FILENO );
   close( before );
}

TEST_F( Undisturbed, ErrnoIsKeptByAMessage ) {
   Oru::sassertSinkIs( []( const std::string&, const std::string& ) { errno = EINVAL; } );
   errno = 4711;
   { const Oru::SassertHelper helper( "0" ); }
   EXPECT_EQ( errno, 4711 );
   Oru::sassertSinkIs( {} );
}

TEST_F( Undisturbed, AFullStandardErrorIsWaitedFor ) {
   Pipe standardError;
   fcntl( STDERR_FILENO, F_SETFL, O_NONBLOCK );
   std::size_t filled = 0;
   while( ::write( STDERR_FILENO, "#", 1 ) == 1 ) {
      ++filled;
   }
   std::binary_semaphore full( 0 );
   std::string read;
   std::thread reader( [&] {
      full.acquire();
      read = standardError.read();
   } );
   waiting = [&full] { full.release(); };
   trace( handle_ );
   waiting = nullptr;
   trace( handle_ );
   standardError.writerIsClosed();
   full.release();
   reader.join();
   ASSERT_GE( read.size(), filled );
   EXPECT_EQ( read.substr( filled ), line + line );
}

TEST_F( Undisturbed, AStandardErrorThatNobodyReadsEndsNothing ) {
   Pipe standardError;
   standardError.readerIsClosed();
   EXPECT_EQ( statusOfChild( [this] {
                 trace( handle_ );
                 sigset_t pending;
                 sigpending( &pending );
                 sigset_t blocked;
                 pthread_sigmask( SIG_BLOCK, nullptr, &blocked );
                 if( sigismember( &pending, SIGPIPE ) || sigismember( &blocked, SIGPIPE ) ) {
                    _exit( 1 );
                 }
              } ),
              0 );
}

} // namespace
