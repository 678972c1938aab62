// Quoting, ranges and hexadecimal bytes.
#include <Vorn/Text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

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

TEST( Text, isPrintableOrBinary ) {
   EXPECT_TRUE( Vorn::isPrintable( "" ) );
   EXPECT_TRUE( Vorn::isPrintable( "a \t\r\n\u00e9\U0001f600" ) );
   EXPECT_FALSE( Vorn::isPrintable( std::string_view( "a\0", 2 ) ) );
   EXPECT_FALSE( Vorn::isPrintable( "a\x7f" ) );
   EXPECT_FALSE( Vorn::isPrintable( "\x80" ) );
   // A character of four bytes, cut after each of them.
   const std::string_view text = "a\U0001f600";
   for( std::size_t length = 2; length < 5; ++length ) {
      EXPECT_FALSE( Vorn::isPrintable( text.substr( 0, length ) ) ) << length;
      EXPECT_TRUE( Vorn::isPrintable( text.substr( 0, length ), true ) ) << length;
   }
   EXPECT_FALSE( Vorn::isPrintable( "a\x80\x80", true ) );
   EXPECT_FALSE( Vorn::isPrintable( "a\xf0z", true ) );
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

TEST( Text, countOf ) {
   EXPECT_EQ( Vorn::countOf( 1, "byte" ), "1 byte" );
   EXPECT_EQ( Vorn::countOf( 0, "byte" ), "0 bytes" );
   EXPECT_EQ( Vorn::countOf( 2, "entry", "entries" ), "2 entries" );
   EXPECT_EQ( Vorn::countOf( 1, "entry", "entries" ), "1 entry" );
}

TEST( Text, blankLines ) {
   for( const char* const line :
        { "", " \t\r\f", "# ports", "  #", "\xef\xbb\xbf", "\xef\xbb\xbf # ports" } ) {
      EXPECT_TRUE( Vorn::isBlankLine( line ) ) << line;
   }
   for( const char* const line : { "00 # ports", " {}", ",", "\xef\xbb\xbf{}", "\xef\xbb" } ) {
      EXPECT_FALSE( Vorn::isBlankLine( line ) ) << line;
   }
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

TEST( Text, digitsOfBytesOfEveryLength ) {
   const std::string digits = "00112233445566778899aAbBcCdDeEfF0123456789abcdef";
   std::vector<U8> right;
   for( const char* const byte :
        { "00", "11", "22", "33", "44", "55", "66", "77", "88", "99", "aa", "bb",
          "cc", "dd", "ee", "ff", "01", "23", "45", "67", "89", "ab", "cd", "ef" } ) {
      right.push_back( static_cast<U8>( std::stoul( byte, nullptr, 16 ) ) );
   }
   for( std::size_t bytes = 0; bytes <= right.size(); ++bytes ) {
      // Exactly so long, so that a sanitizer sees what is beyond.
      const std::vector<char> text( digits.begin(),
                                    digits.begin() + static_cast<std::ptrdiff_t>( 2 * bytes ) );
      std::vector<U8> read( bytes );
      EXPECT_TRUE( Vorn::readHex( text.data(), read ) );
      EXPECT_TRUE( std::equal( read.begin(), read.end(), right.begin() ) ) << bytes;
      std::vector<char> written( 2 * bytes );
      EXPECT_EQ( Vorn::writeHex( written.data(), read ), written.data() + 2 * bytes );
      std::string lower( text.begin(), text.end() );
      std::transform( lower.begin(), lower.end(), lower.begin(),
                      []( unsigned char c ) { return static_cast<char>( std::tolower( c ) ); } );
      EXPECT_EQ( std::string( written.begin(), written.end() ), lower );
   }
}

TEST( Text, whatIsNoDigitIsRefusedWhereverItStands ) {
   const std::string digits( 48, '7' );
   for( int c = 0; c < 256; ++c ) {
      const bool isDigit = std::isxdigit( c ) != 0;
      for( std::size_t at = 0; at < digits.size(); ++at ) {
         auto text = digits;
         text[at] = static_cast<char>( c );
         for( const std::size_t bytes : { at / 2 + 1, digits.size() / 2 } ) {
            std::vector<U8> read( bytes );
            ASSERT_EQ( Vorn::readHex( text.data(), read ), isDigit ) << c << ' ' << at;
         }
      }
   }
}

TEST( Text, decimalDigits ) {
   std::vector<U64> numbers{ 0, ~U64( 0 ) };
   for( U64 power = 1;; power *= 10 ) {
      for( U64 first = 1; first < 10; ++first ) {
         for( const U64 number :
              { first * power, first * power - 1, first * power + 1, first * power + power / 7 } ) {
            numbers.push_back( number );
         }
      }
      if( power == 1'000'000'000'000'000'000 ) {
         break;
      }
   }
   for( U64 number = 0; number < 100'000; ++number ) {
      numbers.push_back( number );
   }
   for( const U64 number : numbers ) {
      char text[20];
      ASSERT_EQ( std::string( text, Vorn::writeDecimal( text, number ) ),
                 std::to_string( number ) );
   }
}
