// The run-time's string: construction, comparison, hash, output.
#include <Oru/String.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iomanip>
#include <sstream>

namespace {

using Oru::String;

TEST( String, IsMadeFromCharactersAndALength ) {
   const String text( "LifTable", 3 );
   EXPECT_EQ( text.view(), "Lif" );
   EXPECT_EQ( text.size(), 3u );
   EXPECT_FALSE( text.empty() );
   EXPECT_EQ( String( "a\0b", 3 ).size(), 3u );
}

TEST( String, IsMadeFromTheUsualSources ) {
   EXPECT_EQ( String( "LifTable" ).view(), "LifTable" );
   EXPECT_EQ( String( std::string( "LifTable" ) ).view(), "LifTable" );
   EXPECT_EQ( String( std::string_view( "LifTable" ) ).view(), "LifTable" );
   EXPECT_EQ( String().view(), "" );
}

TEST( String, OwnsItsCharacters ) {
   std::string source = "LifTable";
   const String text( source );
   const String copy = text;
   source = "OutAcBank";
   EXPECT_EQ( text.view(), "LifTable" );
   EXPECT_EQ( copy.view(), "LifTable" );
}

TEST( String, Equality ) {
   const String text( "action" );
   EXPECT_TRUE( text == String( "action" ) );
   EXPECT_FALSE( text == String( "actions" ) );
   EXPECT_FALSE( text == String( "actio" ) );
   EXPECT_FALSE( text == String( "Action" ) );
   EXPECT_TRUE( text != String( "Action" ) );
   EXPECT_FALSE( text != String( "action" ) );
   EXPECT_TRUE( text == "action" );
   EXPECT_FALSE( text == "actio" );
   EXPECT_FALSE( text == "actions" );
   EXPECT_TRUE( text != "" );
   EXPECT_TRUE( String() == "" );
   EXPECT_TRUE( String() == String( "", 0 ) );
   EXPECT_FALSE( String( "a\0b", 3 ) == "a" );
}

TEST( String, EmptyHasNoData ) {
   EXPECT_EQ( String().data(), nullptr );
   EXPECT_EQ( String( "abc", 0 ).data(), nullptr );
   const String text( "abc" );
   ASSERT_NE( text.data(), nullptr );
   EXPECT_EQ( text.data()->view(), "abc" );
}

TEST( String, EqualTextsHashAlike ) {
   EXPECT_EQ( String( "foobar" ).data()->hash(), String( "foobarx", 6 ).data()->hash() );
   EXPECT_NE( String( "foobar" ).data()->hash(), String( "foobarx" ).data()->hash() );
   EXPECT_NE( String( "ab" ).data()->hash(), String( "ba" ).data()->hash() );
   EXPECT_NE( String( "\xff" ).data()->hash(), String( "\x7f" ).data()->hash() );
   // In the low half too, which a map of names goes by.
   EXPECT_NE( static_cast<std::uint32_t>( String( "ab" ).data()->hash() ),
              static_cast<std::uint32_t>( String( "ba" ).data()->hash() ) );
}

TEST( String, Output ) {
   std::ostringstream out;
   out << String( "action" ) << '|' << String() << '|' << std::setw( 4 ) << String( "b" );
   EXPECT_EQ( out.str(), "action||   b" );
}

} // namespace
