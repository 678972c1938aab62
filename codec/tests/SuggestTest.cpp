// Distances between names, and which name is near enough to be suggested.
#include <Vorn/Suggest.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using Vorn::editDistance;
using Names = std::vector<std::string_view>;

} // namespace

TEST( Suggest, distances ) {
   EXPECT_EQ( editDistance( "", "" ), 0u );
   EXPECT_EQ( editDistance( "", "abc" ), 3u );
   EXPECT_EQ( editDistance( "abc", "" ), 3u );
   EXPECT_EQ( editDistance( "action", "action" ), 0u );
   EXPECT_EQ( editDistance( "actin", "action" ), 1u );
   EXPECT_EQ( editDistance( "acttion", "action" ), 1u );
   EXPECT_EQ( editDistance( "actiom", "action" ), 1u );
   EXPECT_EQ( editDistance( "kitten", "sitting" ), 3u );
}

TEST( Suggest, swappedNeighboursCountOnce ) {
   EXPECT_EQ( editDistance( "vlanDomian", "vlanDomain" ), 1u );
   EXPECT_EQ( editDistance( "ab", "ba" ), 1u );
   EXPECT_EQ( editDistance( "abcd", "badc" ), 2u );
}

TEST( Suggest, neitherCaseNorUnderscoresCount ) {
   EXPECT_EQ( editDistance( "VLAN_DOMAIN", "vlanDomain" ), 0u );
   EXPECT_EQ( editDistance( "bcm88690b0", "BCM88690_B0" ), 0u );
}

TEST( Suggest, theNearestNameIsTheFirstOfTheNearest ) {
   const Names names{ "vlanEditVid1", "vlanEditVid2", "vsi" };
   EXPECT_EQ( Vorn::nearest( "vlanEditVid", names ), "vlanEditVid1" );
   EXPECT_EQ( Vorn::nearest( "vlanEditvid2", names ), "vlanEditVid2" );
   EXPECT_EQ( Vorn::nearest( "vsl", names ), "vsi" );
}

TEST( Suggest, whatIsTooFarIsNotSuggested ) {
   EXPECT_EQ( Vorn::nearest( "xyz", Names{ "action" } ), std::nullopt );
   EXPECT_EQ( Vorn::nearest( "", Names{ "action" } ), std::nullopt );
   EXPECT_EQ( Vorn::nearest( "action", Names{} ), std::nullopt );
   EXPECT_EQ( Vorn::nearest( std::string( 100000, 'a' ), Names{ "action" } ), std::nullopt );
}

TEST( Suggest, theEndOfAMessage ) {
   const Names names{ "vlanDomain", "portEmAccCmd" };
   EXPECT_EQ( Vorn::suggestion( "vlanDomian", names ), "; did you mean vlanDomain?" );
   EXPECT_EQ( Vorn::suggestion( "zzz", names ), "; allowed: vlanDomain, portEmAccCmd" );
   EXPECT_EQ( Vorn::suggestion( "zzz", Names{} ), "; there is none" );
}
