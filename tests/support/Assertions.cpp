// The stand-in __assert_fail of the test programs.
#include "Assertions.h"

#include <Oru/Sassert.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace {

thread_local bool observing = false;

} // namespace

// Not <cassert>'s declaration: that one promises not to throw.
extern "C" [[noreturn]] __attribute__( ( visibility( "default" ) ) ) void
__assert_fail( const char* expression, const char* file, unsigned line, const char* function );

extern "C" void __assert_fail( const char* expression, const char* file, unsigned line,
                               const char* function ) {
   if( observing ) {
      throw Testing::AssertionFailure{ expression, file, line, function, std::nullopt };
   }
   std::fprintf( stderr, "%s:%u: %s: Assertion `%s' failed.\n", file, line, function, expression );
   std::abort();
}

namespace Testing {

std::optional<AssertionFailure> failureOf( Action action ) {
   std::optional<std::string> delivered;
   Oru::sassertSinkIs(
      [&delivered]( const std::string&, const std::string& message ) { delivered = message; } );
   const bool before = std::exchange( observing, true );
   std::optional<AssertionFailure> failure;
   try {
      action();
   } catch( AssertionFailure& caught ) {
      caught.message = delivered;
      failure = caught;
   }
   observing = before;
   Oru::sassertSinkIs( {} );
   return failure;
}

std::string expressionOf( Action action ) {
   const auto failure = failureOf( action );
   return failure ? failure->expression : "none";
}

} // namespace Testing
