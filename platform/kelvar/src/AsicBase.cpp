// The base constructor of all views, and the way their assertions go.
#include <Kelvar/AsicBase.h>

// Not <cassert>'s declaration, which promises not to throw: a program may stand in for the symbol
// and leave it with an exception.
extern "C" [[noreturn]] void __assert_fail( const char* expression, const char* file, unsigned line,
                                            const char* function );

namespace Kelvar {

void assertFail( const char* expression, const char* file, unsigned line, const char* function ) {
   __assert_fail( expression, file, line, function );
}

AsicBase::AsicBase( U8 chipType, U8* buf, U32 len, bool, U8 variant, U8 )
   : buf_( buf ), chipType_( chipType ), variant_( variant ), len_( static_cast<U16>( len ) ) {}

} // namespace Kelvar
