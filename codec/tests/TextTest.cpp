// Quoting, ranges and hexadecimal bytes.
#include <Vorn/Text.h>

#include <gtest/gtest.h>

namespace {

std::string ranges( std::vector<U32> numbers ) { return Vorn::rangesOf( numbers ); }

TEST( Text, WordsHaveTheLowestByteFirst ) {
   const U8 bytes[] = { 0xa0, 0x0f, 0, 0, 1, 2, 3, 4 };
   std::string text = "words: ";
   Vorn::appendWords( text, bytes );
   EXPECT_EQ( text, "words: 0x00000fa0 0x04030201" );
}

} // namespace

TEST( Text, shownIsOneShortLine ) {
   EXPECT_EQ( Vorn::shown( "plain" ), "plain" );
   EXPECT_EQ( Vorn::shown( "a\nb\x1b\x7f" ), "a\\x0ab\\x1b\\x7f" );
   EXPECT_EQ( Vorn::shown( std::string( 60, 'a' ) ), std::string( 60, 'a' ) );
   EXPECT_EQ( Vorn::shown( std::string( 61, 'a' ) ), std::string( 60, 'a' ).append( "..." ) );
   EXPECT_EQ( Vorn::shown( "abcdef", 3 ), "abc..." );
   EXPECT_EQ( Vorn::inQuotes( "" ), "\"\"" );
}

TEST( Text, shownCutsBetweenCharacters ) {
   EXPECT_EQ( Vorn::shown( "a\u00e9z", 2 ), "a..." );
   EXPECT_EQ( Vorn::shown( "a\u00e9z", 3 ), "a\u00e9..." );
   EXPECT_EQ( Vorn::shown( "\U0001f600", 3 ), "..." );
   EXPECT_EQ( Vorn::shown( "\U0001f600", 4 ), "\U0001f600" );
}

TEST( Text, shownIsPrintableUtf8 ) {
   for( const std::string_view text :
        { " ~", "\u00a0\u07ff", "\u0800\ud7ff\ue000\uffff", "\U00010000\U0010ffff" } ) {
      EXPECT_EQ( Vorn::shown( text ), text );
   }
   // Some terminals take U+009B for the beginning of an escape sequence.
   EXPECT_EQ( Vorn::shown( "\xc2\x9b"
                           "1m" ),
              "\\xc2\\x9b1m" );
   EXPECT_EQ( Vorn::shown( "\xc2\x80\xc2\x9f" ), "\\xc2\\x80\\xc2\\x9f" );
   EXPECT_EQ( Vorn::shown( "a\x9b\xff" ), "a\\x9b\\xff" );
   // Cut short; too long for the number; a surrogate; beyond the last character.
   EXPECT_EQ( Vorn::shown( "\xe2\x82" ), "\\xe2\\x82" );
   EXPECT_EQ( Vorn::shown( "\xe2\x82!" ), "\\xe2\\x82!" );
   EXPECT_EQ( Vorn::shown( "\xc1\xbf\xe0\x9f\xbf" ), "\\xc1\\xbf\\xe0\\x9f\\xbf" );
   EXPECT_EQ( Vorn::shown( "\xf0\x8f\xbf\xbf" ), "\\xf0\\x8f\\xbf\\xbf" );
   EXPECT_EQ( Vorn::shown( "\xed\xa0\x80" ), "\\xed\\xa0\\x80" );
   EXPECT_EQ( Vorn::shown( "\xf4\x90\x80\x80" ), "\\xf4\\x90\\x80\\x80" );
}

TEST( Text, rangesOf ) {
   EXPECT_EQ( ranges( {} ), "" );
   EXPECT_EQ( ranges( { 0 } ), "0" );
   EXPECT_EQ( ranges( { 2, 3 } ), "2,3" );
   EXPECT_EQ( ranges( { 2, 3, 4 } ), "2-4" );
   EXPECT_EQ( ranges( { 0, 1, 2, 3, 4, 6 } ), "0-4,6" );
   EXPECT_EQ( ranges( { 2, 3, 5, 6, 7, 255 } ), "2,3,5-7,255" );
}

TEST( Text, hexadecimalBytes ) {
   const U8 bytes[] = { 0x00, 0x0f, 0xa5 };
   std::string text = ">";
   Vorn::appendHex( text, bytes );
   Vorn::appendHex( text, bytes, " " );
   EXPECT_EQ( text, ">000fa500 0f a5" );
}
