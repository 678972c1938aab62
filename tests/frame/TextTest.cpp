// The fixed text that assertions are written in.
#include "frame/Text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Hardware::Frame::Text;

TEST( Text, JoinsStringsAndDecimalNumbers ) {
   EXPECT_EQ( Text().view(), "" );
   EXPECT_EQ( Text( "len_ >= ", 3u ).view(), "len_ >= 3" );
   EXPECT_EQ( Text( U8{ 255 }, " ", 4294967295u, " ", ~U64{ 0 } ).view(),
              "255 4294967295 18446744073709551615" );
}

TEST( Text, WritesHexadecimalInLowerCase ) {
   Text text( "0x" );
   text.appendHex( 0x3ffffffffffff );
   EXPECT_STREQ( text.c_str(), "0x3ffffffffffff" );
}

TEST( Text, DropsWhatExceedsItsBuffer ) {
   const std::string half( 200, 'a' );
   const Text text( half, half, "b" );
   EXPECT_EQ( text.view(), std::string( 319, 'a' ) );
   EXPECT_EQ( text.c_str()[319], '\0' );
}

} // namespace
