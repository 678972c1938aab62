// The checks of the floor's functions.
#pragma once

#include "Floor.h"

// The C library's, which <cassert> declares only in debug builds.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Floor {

[[noreturn, gnu::cold, gnu::noinline]] inline void fail( const char* expression,
                                                         const char* function ) {
   __assert_fail( expression, "Floor", __LINE__, function );
}

[[gnu::always_inline]] inline void require( bool holds, const char* expression,
                                            const char* function = __builtin_FUNCTION() ) {
   if( !holds ) [[unlikely]] {
      fail( expression, function );
   }
}

// A field exactly as wide as an integer has no bound.
constexpr bool bounded( unsigned width ) {
   return width != 8 && width != 16 && width != 32 && width != 64;
}

constexpr U64 ones( unsigned width ) { return ~U64{ 0 } >> ( 64 - width ); }

} // namespace Floor
