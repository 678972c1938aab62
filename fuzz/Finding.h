// How a fuzzer says that it has found something.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace Fuzz {

// Ends the process, which makes the fuzzer keep the input.
[[noreturn]] inline void found( const std::string& what ) {
   std::fprintf( stderr, "found: %s\n", what.c_str() );
   std::abort();
}

} // namespace Fuzz
