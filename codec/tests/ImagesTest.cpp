// Images from text: every way to write one, what it says of its pair, and which form wins.
#include <Vorn/Images.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Vorn::ImageFormat;

using Bytes = std::vector<U8>;

Bytes bytesOf( std::string_view text, ImageFormat format = ImageFormat::automatic ) {
   return Vorn::imageOf( text, format ).bytes;
}

std::string refusalOf( std::string_view text, ImageFormat format = ImageFormat::automatic ) {
   try {
      return "accepted, " + std::to_string( bytesOf( text, format ).size() ) + " bytes";
   } catch( const Vorn::Error& error ) {
      return error.message();
   }
}

Bytes zeros( std::size_t count ) { return Bytes( count ); }

const Bytes fourBytes{ 0x12, 0x34, 0xab, 0xcd };

} // namespace

TEST( Images, bytes ) {
   for( const auto text : { "1234abcd", "1234ABCD", "12 34 ab cd", "0x12 0x34 0xab 0xcd",
                            "1234 abcd", "0x1234 0Xabcd", "0X12 34abcd", " \t12\v34\f\r\nab\ncd \n",
                            "image: 12 34 ab cd", "image:1234abcd" } ) {
      EXPECT_EQ( bytesOf( text ), fourBytes ) << text;
   }
   EXPECT_EQ( bytesOf( "0x0123456789abcdef" ),
              ( Bytes{ 0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef } ) );
   EXPECT_EQ( bytesOf( std::string( 1024, '0' ) ), zeros( 512 ) );
   EXPECT_EQ( bytesOf( "" ), Bytes() );
   EXPECT_EQ( bytesOf( " \n" ), Bytes() );
}

TEST( Images, words ) {
   EXPECT_EQ( bytesOf( "0xcdab3412" ), fourBytes );
   EXPECT_EQ( bytesOf( "0XCDAB3412" ), fourBytes );
   EXPECT_EQ( bytesOf( "words: 0xcdab3412" ), fourBytes );
   EXPECT_EQ( bytesOf( "0x00012345 0x00000000\n0x80000000" ),
              ( Bytes{ 0x45, 0x23, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0x80 } ) );
   // Without 0x, eight digits are four bytes.
   EXPECT_EQ( bytesOf( "cdab3412" ), ( Bytes{ 0xcd, 0xab, 0x34, 0x12 } ) );
}

TEST( Images, aFormThatIsForced ) {
   EXPECT_EQ( bytesOf( "0x1234abcd", ImageFormat::bytes ), fourBytes );
   EXPECT_EQ( bytesOf( "0x1234abcd 00", ImageFormat::bytes ),
              ( Bytes{ 0x12, 0x34, 0xab, 0xcd, 0 } ) );
   EXPECT_EQ( bytesOf( "cdab3412 0x1 ff", ImageFormat::words ),
              ( Bytes{ 0x12, 0x34, 0xab, 0xcd, 1, 0, 0, 0, 0xff, 0, 0, 0 } ) );
   EXPECT_EQ( bytesOf( "[18,52]", ImageFormat::words ), ( Bytes{ 0x12, 0, 0, 0, 0x34, 0, 0, 0 } ) );
   EXPECT_EQ( bytesOf( R"({"image":"0x1234abcd"})", ImageFormat::bytes ), fourBytes );
   EXPECT_EQ( bytesOf( "00000000  12 34 ab cd", ImageFormat::hexdump ), fourBytes );
   EXPECT_EQ( bytesOf( "00000000  12 34 ab cd" ), ( Bytes{ 0, 0, 0, 0, 0x12, 0x34, 0xab, 0xcd } ) );
}

TEST( Images, hexdump ) {
   EXPECT_EQ( bytesOf( "00000000  12 34 ab cd                                       |.4..|\n"
                       "00000004\n" ),
              fourBytes );
   // Bars, colons and asterisks among the characters are none of the dump's own.
   EXPECT_EQ( bytesOf( "00000000  7c 3a 2a 7c                                       ||:*||\n" ),
              ( Bytes{ 0x7c, 0x3a, 0x2a, 0x7c } ) );
   // A part of a file begins at its own offset, which may be odd, and may have more digits.
   EXPECT_EQ( bytesOf( "00000103  12 34                                             |.4|\n"
                       "00000105  ab cd                                             |..|\n"
                       "00000107\n" ),
              fourBytes );
   EXPECT_EQ( bytesOf( "100000000  12 34 ab cd                                      |.4..|\n"
                       "100000004\n" ),
              fourBytes );
}

TEST( Images, hexdumpWithRepeatedLines ) {
   Bytes expected = zeros( 80 );
   expected[79] = 0x80;
   EXPECT_EQ( bytesOf( "00000000  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |....|\n"
                       "*\n"
                       "00000040  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 80  |....|\n"
                       "00000050\n" ),
              expected );
   EXPECT_EQ( bytesOf( "100000000  00 00 00 00  |....|\n*\n100000010\n" ), zeros( 16 ) );
   // The asterisk stands for the last lines, too, and for a part of a line.
   expected = zeros( 16 );
   for( int i = 0; i < 21; ++i ) {
      expected.push_back( static_cast<U8>( i % 16 ) );
   }
   EXPECT_EQ( bytesOf( "00000000  00 00 00 00 00 00 00 00  00 00 00 00 00 00 00 00  |....|\n"
                       "00000010  00 01 02 03 04 05 06 07  08 09 0a 0b 0c 0d 0e 0f  |....|\n"
                       "*\n"
                       "00000025\n" ),
              expected );
}

TEST( Images, json ) {
   for( const auto text :
        { R"("1234abcd")", R"( "12 34 ab cd" )", R"("0xcdab3412")", "[18,52,171,205]",
          R"(["12","0x34","AB","cd"])", R"(["1234","abcd"])", "[3450549266]", R"(["0xcdab3412"])",
          R"({"image":"1234abcd"})", R"({"image":[18,52,171,205]})",
          R"({"entry":5,"more":{"image":"00","x":[[],{}]},"image":"1234abcd","fields":{"a":null}})",
          "[\n18,\n52,\n171,\n205\n]" } ) {
      EXPECT_EQ( bytesOf( text ), fourBytes ) << text;
   }
   EXPECT_EQ( bytesOf( "[256,1]" ), ( Bytes{ 0, 1, 0, 0, 1, 0, 0, 0 } ) );
   EXPECT_EQ( bytesOf( "[255,1]" ), ( Bytes{ 255, 1 } ) );
   EXPECT_EQ( bytesOf( "[]" ), Bytes() );
}

TEST( Images, whatAnImageSaysOfItsPair ) {
   const auto image = Vorn::imageOf( R"({"variant":3,"image":"1234abcd","chip":10,"table":"T"})" );
   EXPECT_EQ( image.bytes, fourBytes );
   EXPECT_EQ( image.table.text, "T" );
   EXPECT_EQ( image.chip.text, "10" );
   EXPECT_EQ( image.variant.text, "3" );
   EXPECT_TRUE( image.table.isGiven && image.chip.isGiven && image.variant.isGiven );

   const auto named = Vorn::imageOf( "LifTable BCM88690_B0 0: 12 34 ab cd" );
   EXPECT_EQ( named.bytes, fourBytes );
   EXPECT_EQ( named.table.text, "LifTable" );
   EXPECT_EQ( named.chip.text, "BCM88690_B0" );
   EXPECT_EQ( named.variant.text, "0" );

   const auto partly = Vorn::imageOf( "LifTable 10:1234abcd" );
   EXPECT_EQ( partly.bytes, fourBytes );
   EXPECT_TRUE( partly.table.isGiven && partly.chip.isGiven );
   EXPECT_FALSE( partly.variant.isGiven );

   const auto dumped = Vorn::imageOf( "LifTable 10 3:\n"
                                      "00000000  12 34 ab cd  |.4..|\n00000004\n" );
   EXPECT_EQ( dumped.bytes, fourBytes );
   EXPECT_EQ( dumped.variant.text, "3" );
   EXPECT_FALSE( Vorn::imageOf( "1234abcd" ).table.isGiven );
}

TEST( Images, argumentsThatAreNone ) {
   const std::string bytesAdvice =
      "; write two hexadecimal digits for each byte, entry byte 0 first";
   EXPECT_EQ( refusalOf( "123" ), "an odd number of digits in \"123\"" + bytesAdvice );
   EXPECT_EQ( refusalOf( "12 0x" ), "no digits in \"0x\"" + bytesAdvice );
   EXPECT_EQ( refusalOf( "12,34" ), "bad digit \",\" in \"12,34\"" + bytesAdvice );
   EXPECT_EQ( refusalOf( "0x12345678 12" ),
              "0x and eight digits among other pieces may be a word or four bytes; say "
              "--image-format words or --image-format bytes" );
   EXPECT_EQ( refusalOf( "00000000  00  |.|\n00000001\n00000001  00  |.|\n" ),
              "the line \"00000001  00  |.|\" is no part of the hexdump before it" );
   EXPECT_EQ( refusalOf( "00000000  00  |.|\n12\n" ),
              "the line \"12\" is no part of the hexdump before it" );
   EXPECT_EQ( refusalOf( "00000000  00  |.|\n*\n" ),
              "no offset after \"*\"; a hexdump ends in the offset of its end" );
   EXPECT_EQ( refusalOf( "{} {}" ), "missing key \"image\"" );
}

TEST( Images, noneIsLongerThanTheLimit ) {
   const std::string dump = "00000000  00  |.|\n*\n00";
   EXPECT_EQ( bytesOf( dump + "100000\n" ).size(), Vorn::Image::longest );
   EXPECT_EQ( refusalOf( dump + "100001\n" ), "the image is longer than 1048576 bytes" );
   EXPECT_EQ( refusalOf( "00000000  00  |.|\n*\nffffffffffffffff\n" ),
              "the image is longer than 1048576 bytes" );
}

TEST( Images, fromALinesSource ) {
   const std::string text = "LifTable 10 3: 00\n\nTcamActionTable 10:\n  0x1 0x02\nzz";
   Vorn::TextLines lines( text, "clipboard" );
   Vorn::ImageReader reader( lines );
   ASSERT_TRUE( reader.next() );
   EXPECT_EQ( reader.image().bytes, zeros( 1 ) );
   EXPECT_EQ( reader.image().variant.text, "3" );
   EXPECT_EQ( reader.place( reader.image().at ), "clipboard:1:16" );
   try {
      reader.next();
      ADD_FAILURE();
   } catch( const Vorn::Error& error ) {
      EXPECT_EQ( error.place(), "clipboard:4:3" );
      EXPECT_EQ( error.message(),
                 "an odd number of digits in \"0x1\"; write two hexadecimal digits "
                 "for each byte, entry byte 0 first" );
      EXPECT_EQ( error.what(), error.place() + ": " + error.message() );
   }
}

TEST( Images, layoutsAreThoseThatTheySay ) {
   Vorn::ImageLayouts layouts;
   const auto& said = layouts.of( Vorn::imageOf( "LifTable 10 3: 00" ) );
   EXPECT_EQ( said.pairText(), "LifTable on BCM88690_B0 variant 3" );
   EXPECT_EQ( &layouts.of( Vorn::imageOf( "LifTable BCM88690_B0 0x3: 00" ) ), &said );
   EXPECT_NE( &layouts.of( Vorn::imageOf( "LifTable 10: 00" ) ), &said );
   EXPECT_THROW( layouts.of( Vorn::imageOf( "00" ) ), Vorn::BadText );
   Vorn::ImageLayouts own( said );
   EXPECT_EQ( own.of( Vorn::imageOf( "00" ) ), said );
   EXPECT_THROW( own.of( Vorn::imageOf( "OutAcBank: 00" ) ), Vorn::BadText );
}
