// What the fields of many entries hold, counted.
#include <Vorn/Error.h>
#include <Vorn/Statistics.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Vorn::FieldStatistics;
using Vorn::Layout;
using Vorn::Statistics;
using Vorn::Value;

FieldStatistics of( const Statistics& statistics, std::string_view name ) {
   const auto fields = statistics.fields();
   const auto found =
      std::find_if( fields.begin(), fields.end(),
                    [&]( const FieldStatistics& one ) { return one.field.name == name; } );
   return found == fields.end() ? FieldStatistics() : *found;
}

} // namespace

// mappedPpPort has 9 bits from bit 0, portKeyGenVar 32 from bit 9.
TEST( Statistics, countsAField ) {
   const Layout port( "VttInPpPortConfig0", "BCM88690_B0" );
   Statistics statistics( port );
   for( const unsigned value : { 5u, 4u, 0u, 5u, 7u, 4u, 5u } ) {
      auto image = port.blank();
      port.set( image, "mappedPpPort", value );
      port.set( image, "portKeyGenVar", 0xdead0000 + value );
      statistics.add( image );
   }
   EXPECT_EQ( statistics.entries(), 7 );
   const auto small = of( statistics, "mappedPpPort" );
   EXPECT_EQ( small.set, 6 );
   EXPECT_EQ( small.distinct, 4 );
   EXPECT_TRUE( small.isDistinctExact );
   EXPECT_EQ( small.least, Value( 0 ) );
   EXPECT_EQ( small.greatest, Value( 7 ) );
   ASSERT_EQ( small.frequent.size(), 3 );
   EXPECT_EQ( small.frequent[0].value, Value( 5 ) );
   EXPECT_EQ( small.frequent[0].entries, 3 );
   EXPECT_EQ( small.frequent[1].value, Value( 4 ) );
   EXPECT_EQ( small.frequent[1].entries, 2 );
   EXPECT_EQ( small.frequent[2].value, Value( 0 ) ); // as often as 7, and less
   EXPECT_EQ( small.alwaysOne, Value( 0 ) );
   EXPECT_EQ( small.alwaysZero, Value( 0x1f8 ) );
   const auto large = of( statistics, "portKeyGenVar" );
   EXPECT_EQ( large.set, 7 );
   EXPECT_EQ( large.least, Value( 0xdead0000 ) );
   EXPECT_EQ( large.alwaysOne, Value( 0xdead0000 ) );
   EXPECT_EQ( large.alwaysZero, Value( 0x2152fff8 ) );
   EXPECT_EQ( of( statistics, "defaultPortLif" ).set, 0 );
   EXPECT_EQ( statistics.fields( 1 )[0].frequent.size(), 1 );
}

TEST( Statistics, countsAWideField ) {
   const Layout size( "FheiIveSizeReg", "4" );
   Statistics statistics( size );
   std::vector<U8> image( 16 );
   statistics.add( image );
   image[15] = 0x80;
   statistics.add( image );
   image[0] = 1;
   statistics.add( image );
   statistics.add( image );
   const auto field = of( statistics, "pphFheiIveSize" );
   EXPECT_EQ( field.set, 3 );
   EXPECT_EQ( field.distinct, 3 );
   EXPECT_EQ( Vorn::hexOf( field.greatest ), "0x80000000000000000000000000000001" );
   EXPECT_EQ( Vorn::hexOf( field.frequent.at( 0 ).value ), "0x80000000000000000000000000000001" );
   EXPECT_EQ( field.frequent.at( 0 ).entries, 2 );
   EXPECT_EQ( Vorn::hexOf( field.alwaysZero ), "0x7ffffffffffffffffffffffffffffffe" );
}

TEST( Statistics, staysBounded ) {
   const Layout port( "VttInPpPortConfig0", "10" );
   Statistics statistics( port );
   auto image = port.blank();
   for( U64 value = 0; value <= Statistics::mostDistinct; ++value ) {
      port.set( image, "portKeyGenVar", value );
      statistics.add( image );
   }
   const auto field = of( statistics, "portKeyGenVar" );
   EXPECT_EQ( field.distinct, Statistics::mostDistinct );
   EXPECT_FALSE( field.isDistinctExact );
   EXPECT_EQ( field.greatest, Value( Statistics::mostDistinct ) );
   EXPECT_EQ( field.set, Statistics::mostDistinct );
}

TEST( Statistics, ofNothing ) {
   const Layout port( "VttInPpPortConfig0", "10" );
   Statistics statistics( port );
   EXPECT_EQ( of( statistics, "mappedPpPort" ).alwaysZero, Value( 0 ) );
   EXPECT_EQ( of( statistics, "mappedPpPort" ).distinct, 0 );
   EXPECT_THROW( statistics.add( std::vector<U8>( 7 ) ), Vorn::Error );
   EXPECT_EQ( statistics.entries(), 0 );
}
