// Values as the operations make them.
#include "frame/Rules.h"

#include "support/Bits.h"

#include <gtest/gtest.h>

namespace {

using namespace Hardware::Frame;

template<class Value>
void checkOnes() {
   for( unsigned width = 1; width <= 8 * sizeof( Value ); ++width ) {
      EXPECT_EQ( Testing::toBits( onesOf<Value>( width ) ), Testing::lowOnes( width ) )
         << "of " << 8 * sizeof( Value );
   }
}

TEST( Values, WithTheLowBitsSet ) {
   checkOnes<U8>();
   checkOnes<U16>();
   checkOnes<U32>();
   checkOnes<U64>();
   checkOnes<Raw128>();
   checkOnes<Raw256>();
}

} // namespace
