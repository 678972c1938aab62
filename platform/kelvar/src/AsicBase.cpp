// The base constructor of all views, and the end of their assertions.
#include <Kelvar/AsicBase.h>

// Not <cassert>'s declaration, which promises not to throw: a program may replace the function and
// leave it by an exception.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Kelvar {

void assertFail( const char* expression, const char* file, unsigned line, const char* function ) {
   __assert_fail( expression, file, line, function );
}

AsicBase::AsicBase( U8 chipType, U8* buf, U32 len, bool, U8 variant, U8 )
   : buf_( buf ), chipType_( chipType ), variant_( variant ), len_( static_cast<U16>( len ) ) {}

} // namespace Kelvar
