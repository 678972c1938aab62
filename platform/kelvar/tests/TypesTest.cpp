// The opaque wide values: size, layout, zeroing, words against bytes.
#include <Kelvar/Types.h>

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace {

static_assert( sizeof( U8 ) == 1 && sizeof( U16 ) == 2 && sizeof( U32 ) == 4 &&
               sizeof( U64 ) == 8 );
static_assert( std::is_unsigned_v<U8> && std::is_unsigned_v<U16> && std::is_unsigned_v<U32> &&
               std::is_unsigned_v<U64> );
static_assert( sizeof( S32 ) == 4 && std::is_signed_v<S32> );

template<class Type>
class RawTest : public testing::Test {};

using RawTypes = testing::Types<Raw128, Raw256, Raw512, Raw1024, Raw4096>;
TYPED_TEST_SUITE( RawTest, RawTypes );

TEST( Raw, Sizes ) {
   EXPECT_EQ( sizeof( Raw128 ), 16u );
   EXPECT_EQ( sizeof( Raw256 ), 32u );
   EXPECT_EQ( sizeof( Raw512 ), 64u );
   EXPECT_EQ( sizeof( Raw1024 ), 128u );
   EXPECT_EQ( sizeof( Raw4096 ), 512u );
}

TYPED_TEST( RawTest, IsPlain ) {
   EXPECT_TRUE( std::is_trivially_copyable_v<TypeParam> );
   EXPECT_TRUE( std::is_trivially_default_constructible_v<TypeParam> );
   EXPECT_TRUE( std::is_standard_layout_v<TypeParam> );
   EXPECT_TRUE( std::is_aggregate_v<TypeParam> );
   EXPECT_EQ( TypeParam::bits, 8 * sizeof( TypeParam ) );
   EXPECT_EQ( TypeParam::wordCount, sizeof( TypeParam ) / 8 );
}

TYPED_TEST( RawTest, BracesZeroAllOfIt ) {
   TypeParam value;
   std::memset( &value, 0xff, sizeof( value ) );
   value = {};
   for( unsigned i = 0; i < sizeof( value ); ++i ) {
      EXPECT_EQ( value.bytes()[i], 0 ) << i;
   }
}

TYPED_TEST( RawTest, WordsAreLittleEndianBytes ) {
   TypeParam value{};
   for( unsigned i = 0; i < sizeof( value ); ++i ) {
      value.bytes()[i] = static_cast<U8>( i * 5 + 1 );
   }
   for( unsigned word = 0; word < TypeParam::wordCount; ++word ) {
      U64 expected = 0;
      for( unsigned i = 8; i-- > 0; ) {
         expected = expected << 8 | static_cast<U8>( ( 8 * word + i ) * 5 + 1 );
      }
      EXPECT_EQ( value.word( word ), expected ) << word;
   }
   const TypeParam copy = value;
   EXPECT_EQ( std::memcmp( copy.bytes(), value.bytes(), sizeof( value ) ), 0 );
}

TYPED_TEST( RawTest, SettingAWordSetsItsBytesAlone ) {
   TypeParam value{};
   const unsigned last = TypeParam::wordCount - 1;
   value.wordIs( last, 0x0807060504030201 );
   for( unsigned i = 0; i < sizeof( value ); ++i ) {
      EXPECT_EQ( value.bytes()[i], i < 8 * last ? 0 : i - 8 * last + 1 ) << i;
   }
   EXPECT_EQ( value.word( last ), 0x0807060504030201u );
}

TYPED_TEST( RawTest, EqualityLooksAtEveryBit ) {
   const TypeParam zero{};
   EXPECT_TRUE( zero == TypeParam{} );
   EXPECT_FALSE( zero != TypeParam{} );
   for( unsigned bit = 0; bit < TypeParam::bits; ++bit ) {
      TypeParam value{};
      value.wordIs( bit / 64, U64{ 1 } << bit % 64 );
      EXPECT_FALSE( value == zero ) << bit;
      EXPECT_TRUE( value != zero ) << bit;
   }
}

} // namespace
