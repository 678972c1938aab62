// The net under the module: an assertion that fails inside it is an exception.
#include "Net.h"

#include <Hardware/LifTable.h>

#include <string>

// The linker puts it in the place of __assert_fail, for all that is inside the module and for
// nothing else in the process.
extern "C" [[noreturn]] void __wrap___assert_fail( const char* expression, const char* file,
                                                   unsigned line, const char* function );

extern "C" void __wrap___assert_fail( const char* expression, const char* file, unsigned line,
                                      const char* function ) {
   throw Vorn::Python::Misuse( std::string( file ) + ':' + std::to_string( line ) + ": " +
                               ( function ? function : "?" ) + ": assertion \"" + expression +
                               "\" failed" );
}

namespace Vorn::Python {

void failAssertion() {
   U8 entry[80] = {};
   Hardware::LifTable lif( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
   lif.vsiIs( 0xffff ); // one bit more than there are
}

} // namespace Vorn::Python
