// How a line reaches standard error when writing fails.
#include <Oru/Trace.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include <cerrno>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// How the next attempts to write fail, the next one last.
thread_local std::vector<int> failures;
thread_local int attempts = 0;
// How many bytes one attempt writes at most.
thread_local std::size_t limit = 4096;

} // namespace

// Stands before the system's for the library, too.
extern "C" __attribute__( ( visibility( "default" ) ) ) ssize_t write( int file, const void* bytes,
                                                                       std::size_t size ) {
   ++attempts;
   if( !failures.empty() ) {
      errno = failures.back();
      failures.pop_back();
      return -1;
   }
   return ::syscall( SYS_write, file, bytes, std::min( size, limit ) );
}

namespace {

struct Written {
   std::string text;
   int attempts;
};

Written lineWith( const std::vector<int>& failing ) {
   const Oru::TraceHandle handle( "Handle", false );
   testing::internal::CaptureStderr();
   failures = failing;
   attempts = 0;
   { Oru::TraceHelper( handle, Oru::TraceFacility::level1, "File", 3, "f" ).stream() << "text"; }
   const int needed = attempts;
   failures.clear();
   return { testing::internal::GetCapturedStderr(), needed };
}

TEST( StandardError, IsWrittenAtOnce ) {
   const Written written = lineWith( {} );
   EXPECT_EQ( written.text, "Handle/1 File:3 f: text\n" );
   EXPECT_EQ( written.attempts, 1 );
}

TEST( StandardError, IsTriedAgainAfterASignal ) {
   const Written written = lineWith( { EINTR, EINTR } );
   EXPECT_EQ( written.text, "Handle/1 File:3 f: text\n" );
   EXPECT_EQ( written.attempts, 3 );
}

TEST( StandardError, IsWaitedForWhereItIsFull ) {
   const Written written = lineWith( { EAGAIN, EAGAIN } );
   EXPECT_EQ( written.text, "Handle/1 File:3 f: text\n" );
   EXPECT_EQ( written.attempts, 3 );
}

TEST( StandardError, GetsTheRestOfALineThatWasCut ) {
   limit = 10;
   const Written written = lineWith( {} );
   limit = 4096;
   EXPECT_EQ( written.text, "Handle/1 File:3 f: text\n" );
   EXPECT_EQ( written.attempts, 3 );
}

TEST( StandardError, LosesTheLineWhereItCannotBeWritten ) {
   const Written written = lineWith( { EBADF } );
   EXPECT_EQ( written.text, "" );
   EXPECT_EQ( written.attempts, 1 );
}

} // namespace
