// Values as the operations make them.
#include "frame/Operations.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

namespace {

using namespace Hardware::Frame;

// Whether the low `width` bits are set and no others, of an integer or of a wide value's words.
template<class Value>
bool areOnes( const Value& value, unsigned width ) {
   for( unsigned bit = 0; bit < 8 * sizeof( Value ); ++bit ) {
      U64 word = 0;
      if constexpr( std::is_integral_v<Value> ) {
         word = value;
      } else {
         word = value.word( bit / 64 );
      }
      if( ( word >> bit % 64 & 1 ) != ( bit < width ? 1 : 0 ) ) {
         return false;
      }
   }
   return true;
}

template<class Value, unsigned... widths>
void checkOnes( std::integer_sequence<unsigned, widths...> ) {
   const bool right[] = { areOnes( ones<Value, widths + 1>(), widths + 1 )... };
   for( unsigned width = 1; width <= sizeof...( widths ); ++width ) {
      EXPECT_TRUE( right[width - 1] ) << width << " of " << 8 * sizeof( Value );
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
