// Values: from numbers and words, and compared with each other.
#include "Pairs.h"

#include <Vorn/Value.h>

#include <gtest/gtest.h>

namespace {

using Vorn::Value;

TEST( Value, ComesFromNumbersAndWords ) {
   EXPECT_EQ( Value().bits(), 0u );
   EXPECT_EQ( Value( 2000 ).word( 0 ), 2000u );
   EXPECT_EQ( Value( U8( 255 ) ).bits(), 8u );
   EXPECT_EQ( Value( ~U64( 0 ) ).bits(), 64u );
   EXPECT_EQ( Value( Value::Words{ 1, 2 } ).bits(), 66u );
   EXPECT_EQ( Value( Value::Words{ 7 } ), Value( 7 ) );
   EXPECT_EQ( Testing::errorOf( [] { Value( -5 ); } ), "negative value -5; a value is 0 or more" );
}

TEST( Value, HasOnesInTheLowestBits ) {
   for( unsigned width = 0; width <= Value::maxBits; ++width ) {
      const Value ones = Value::onesOf( width );
      EXPECT_EQ( ones.bits(), width );
      for( unsigned bit = 0; bit < Value::maxBits; ++bit ) {
         ASSERT_EQ( ones.word( bit / 64 ) >> bit % 64 & 1, bit < width ? 1u : 0u ) << width;
      }
   }
}

TEST( Value, IsOrderedByItsNumber ) {
   EXPECT_LT( Value( 5 ), 6 );
   EXPECT_GT( Value( Value::Words{ 0, 1 } ), ~U64( 0 ) );
   EXPECT_LT( Value( Value::Words{ 9, 0, 1 } ), Value( Value::Words{ 0, 1, 1 } ) );
   EXPECT_GT( Value( Value::Words{ 9, 1, 1 } ), Value( Value::Words{ 0, 1, 1 } ) );
   EXPECT_EQ( Value( Value::Words{ 9, 1 } ), Value( Value::Words{ 9, 1 } ) );
   EXPECT_NE( Value( Value::Words{ 9, 1 } ), 9 );
   EXPECT_GT( Value::tooLarge(), Value::onesOf( 512 ) );
}

} // namespace
