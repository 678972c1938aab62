// Runs the real program and hands back what it wrote and how it ended.
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <pty.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace Testing {

namespace {

// A file descriptor that is closed with its owner.
class Descriptor {
public:
   explicit Descriptor( int number ) : number_( number ) {
      if( number < 0 ) {
         throw std::runtime_error( "no file descriptor" );
      }
   }
   ~Descriptor() { ::close( number_ ); }
   Descriptor( const Descriptor& ) = delete;
   Descriptor& operator=( const Descriptor& ) = delete;

   int number() const { return number_; }

   void write( std::string_view text ) const {
      while( !text.empty() ) {
         const ssize_t count = ::write( number_, text.data(), text.size() );
         if( count < 0 ) {
            throw std::runtime_error( "cannot write to vorn" );
         }
         text.remove_prefix( static_cast<std::size_t>( count ) );
      }
   }

   // Appends what one read yields; false at the end.
   bool read( std::string& text ) const {
      std::array<char, 4096> part;
      const ssize_t count = ::read( number_, part.data(), part.size() );
      text.append( part.data(), count > 0 ? static_cast<std::size_t>( count ) : 0 );
      return count > 0;
   }

   // A file without a name, from its beginning.
   std::string contents() const {
      ::lseek( number_, 0, SEEK_SET );
      std::string text;
      while( read( text ) ) {
      }
      return text;
   }

private:
   int number_;
};

int memoryFile() { return ::memfd_create( "vorn", MFD_CLOEXEC ); }

pid_t start( std::string program, const std::vector<std::string>& arguments, const Descriptor& in,
             const Descriptor& out, const Descriptor& err ) {
   std::vector<std::string> texts = arguments;
   std::vector<char*> pointers{ program.data() };
   for( auto& text : texts ) {
      pointers.push_back( text.data() );
   }
   pointers.push_back( nullptr );
   posix_spawn_file_actions_t actions;
   posix_spawn_file_actions_init( &actions );
   posix_spawn_file_actions_adddup2( &actions, in.number(), STDIN_FILENO );
   posix_spawn_file_actions_adddup2( &actions, out.number(), STDOUT_FILENO );
   posix_spawn_file_actions_adddup2( &actions, err.number(), STDERR_FILENO );
   pid_t pid = 0;
   const int failure =
      ::posix_spawnp( &pid, program.c_str(), &actions, nullptr, pointers.data(), environ );
   posix_spawn_file_actions_destroy( &actions );
   if( failure != 0 ) {
      throw std::runtime_error( "cannot start " + program );
   }
   return pid;
}

int statusOf( pid_t pid ) {
   int status = 0;
   ::waitpid( pid, &status, 0 );
   return WIFEXITED( status ) ? WEXITSTATUS( status ) : 128 + WTERMSIG( status );
}

// Until the process waits for something, or has ended.
void yieldWhileItRuns( pid_t pid ) {
   const std::string path = "/proc/" + std::to_string( pid ) + "/stat";
   for( char state = 'R'; state != 'S' && state != 'Z'; ::sched_yield() ) {
      // "4711 (vorn) R 4710 ..."
      std::string text;
      if( !Descriptor( ::open( path.c_str(), O_RDONLY | O_CLOEXEC ) ).read( text ) ) {
         throw std::runtime_error( "no state of vorn" );
      }
      state = text.at( text.rfind( ')' ) + 2 );
   }
}

} // namespace

Outcome vorn( const std::vector<std::string>& arguments, std::string_view input,
              const char* outputFile ) {
   return run( VORN_BINARY, arguments, input, outputFile );
}

Outcome run( const std::string& program, const std::vector<std::string>& arguments,
             std::string_view input, const char* outputFile ) {
   const Descriptor in( memoryFile() );
   in.write( input );
   ::lseek( in.number(), 0, SEEK_SET );
   const Descriptor out( outputFile ? ::open( outputFile, O_WRONLY | O_CLOEXEC ) : memoryFile() );
   const Descriptor err( memoryFile() );
   const int status = statusOf( start( program, arguments, in, out, err ) );
   return { outputFile ? std::string() : out.contents(), err.contents(), status };
}

std::string answerTo( const std::vector<std::string>& arguments, std::string_view line ) {
   std::array<int, 2> toVorn{};
   std::array<int, 2> fromVorn{};
   if( ::pipe2( toVorn.data(), O_CLOEXEC ) != 0 || ::pipe2( fromVorn.data(), O_CLOEXEC ) != 0 ) {
      throw std::runtime_error( "no pipe" );
   }
   const Descriptor err( memoryFile() );
   const Descriptor answers( fromVorn[0] );
   pid_t pid = 0;
   std::string text;
   {
      const Descriptor questions( toVorn[1] );
      {
         const Descriptor in( toVorn[0] );
         const Descriptor out( fromVorn[1] );
         pid = start( VORN_BINARY, arguments, in, out, err );
      }
      questions.write( line );
      while( text.find( '\n' ) == std::string::npos && answers.read( text ) ) {
      }
   }
   statusOf( pid );
   return text;
}

Outcome onTerminal( const std::vector<std::string>& arguments,
                    const std::vector<std::string>& lines, unsigned short columns,
                    bool outputToo ) {
   int ofUser = -1;
   int ofVorn = -1;
   std::array<int, 2> input{};
   std::array<int, 2> output{};
   winsize size{};
   size.ws_col = columns;
   if( ::openpty( &ofUser, &ofVorn, nullptr, nullptr, &size ) != 0 ||
       ::pipe2( input.data(), O_CLOEXEC ) != 0 || ::pipe2( output.data(), O_CLOEXEC ) != 0 ) {
      throw std::runtime_error( "no terminal" );
   }
   const Descriptor user( ofUser );
   const Descriptor answers( output[0] );
   Outcome outcome{};
   pid_t pid = 0;
   {
      const Descriptor questions( input[1] );
      {
         const Descriptor terminal( ofVorn );
         const Descriptor in( input[0] );
         const Descriptor out( output[1] );
         pid = start( VORN_BINARY, arguments, in, outputToo ? terminal : out, terminal );
      }
      for( const std::string& line : lines ) {
         questions.write( line );
         const auto before = outcome.out.size();
         while( !outputToo && outcome.out.find( '\n', before ) == std::string::npos &&
                answers.read( outcome.out ) ) {
         }
      }
   }
   while( answers.read( outcome.out ) ) {
   }
   // A terminal whose program has ended is an error to read.
   while( user.read( outcome.err ) ) {
   }
   outcome.status = statusOf( pid );
   return outcome;
}

Outcome throughPipesThatDontWait( const std::vector<std::string>& arguments,
                                  const std::vector<std::string>& lines ) {
   std::array<int, 2> input{};
   std::array<int, 2> output{};
   if( ::pipe2( input.data(), O_CLOEXEC ) != 0 || ::pipe2( output.data(), O_CLOEXEC ) != 0 ||
       ::fcntl( input[0], F_SETFL, O_NONBLOCK ) != 0 ||
       ::fcntl( output[1], F_SETFL, O_NONBLOCK ) != 0 ) {
      throw std::runtime_error( "no pipe" );
   }
   const Descriptor in( input[0] ); // stays open, so that a line that nobody reads is no signal
   const Descriptor answers( output[0] );
   const Descriptor err( memoryFile() );
   const int room = ::fcntl( output[1], F_GETPIPE_SZ );
   const std::string filling( room > 0 ? static_cast<std::size_t>( room ) : 0, 'x' );
   Outcome outcome{};
   pid_t pid = 0;
   {
      const Descriptor questions( input[1] );
      {
         const Descriptor out( output[1] );
         out.write( filling );
         pid = start( VORN_BINARY, arguments, in, out, err );
      }
      yieldWhileItRuns( pid );
      for( const std::string& line : lines ) {
         questions.write( line );
         const auto before = outcome.out.size();
         while( outcome.out.find( '\n', before ) == std::string::npos &&
                answers.read( outcome.out ) ) {
         }
      }
   }
   while( answers.read( outcome.out ) ) {
   }
   outcome.out.erase( 0, filling.size() );
   outcome.status = statusOf( pid );
   outcome.err = err.contents();
   return outcome;
}

std::vector<std::string> errorWrites( const std::vector<std::string>& arguments,
                                      std::string_view input ) {
   const Descriptor in( memoryFile() );
   in.write( input );
   ::lseek( in.number(), 0, SEEK_SET );
   const Descriptor out( memoryFile() );
   std::array<int, 2> pipe{};
   // Each write is a packet, which a read yields.
   if( ::pipe2( pipe.data(), O_CLOEXEC | O_DIRECT ) != 0 ) {
      throw std::runtime_error( "no pipe" );
   }
   const Descriptor packets( pipe[0] );
   {
      const Descriptor err( pipe[1] );
      statusOf( start( VORN_BINARY, arguments, in, out, err ) );
   }
   std::vector<std::string> writes;
   for( std::string packet; packets.read( packet ); packet.clear() ) {
      writes.push_back( packet );
   }
   return writes;
}

void expectPrinted( const std::vector<std::string>& arguments, const std::string& output,
                    std::string_view input ) {
   const Outcome outcome = vorn( arguments, input );
   EXPECT_EQ( outcome.out, output );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

void expectRefused( const std::vector<std::string>& arguments, const std::string& message,
                    std::string_view input ) {
   const Outcome outcome = vorn( arguments, input );
   EXPECT_EQ( outcome.err, message + '\n' );
   EXPECT_EQ( outcome.out, "" );
   EXPECT_EQ( outcome.status, 1 );
}

} // namespace Testing
