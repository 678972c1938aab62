// Values as the operations make them.
#include "frame/Operations.h"

#include "support/Bits.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using namespace Hardware::Frame;

template<class Value, unsigned... widths>
void checkOnes( std::integer_sequence<unsigned, widths...> ) {
   const Testing::Bits values[] = { Testing::toBits( ones<Value, widths + 1>() )... };
   for( unsigned width = 1; width <= sizeof...( widths ); ++width ) {
      EXPECT_EQ( values[width - 1], Testing::lowOnes( width ) ) << "of " << 8 * sizeof( Value );
   }
}

template<class Value>
void checkOnes() {
   checkOnes<Value>( std::make_integer_sequence<unsigned, 8 * sizeof( Value )>() );
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
