// vorn decode, run for real: each kind of bad image, its place and its message.
#include "RunVorn.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;

// Lines with something bad. A caret stands before it, and is taken out.
struct Bad {
   std::string name;
   std::string text;
   std::string message;
};

// Where the text is cut, as a place in its lines.
std::string placeBehind( const std::string& text ) {
   const auto breaks = std::count( text.begin(), text.end(), '\n' );
   const auto characters =
      std::count_if( text.begin() + static_cast<long>( text.rfind( '\n' ) + 1 ), text.end(),
                     []( char c ) { return ( c & 0xc0 ) != 0x80; } );
   return "<stdin>:" + std::to_string( breaks + 1 ) + ':' + std::to_string( characters + 1 ) + ": ";
}

// Expects that the good line before is printed, and then nothing but the message.
void expectBad( const Arguments& arguments, const std::string& before, const std::string& printed,
                const Bad& bad ) {
   SCOPED_TRACE( bad.name );
   const auto caret = bad.text.find( '^' );
   ASSERT_NE( caret, std::string::npos );
   const auto text = bad.text.substr( 0, caret );
   const auto outcome = Testing::vorn( arguments, before + text + bad.text.substr( caret + 1 ) );
   EXPECT_EQ( outcome.out, printed );
   EXPECT_EQ( outcome.err, placeBehind( before + text ) + bad.message + '\n' );
   EXPECT_EQ( outcome.status, 1 );
}

using Cases = std::vector<Bad>;

// Bad images of TcamActionTable on BCM88650_B0, whose one field takes 20 bits of an entry of 32.
void expectBadImages( const Cases& cases ) {
   for( const Bad& bad : cases ) {
      expectBad( { "decode", "--single-line", "TcamActionTable", "--chip", "2", "-" }, "05000000\n",
                 "action=0x5\n", bad );
   }
}

// The same with a form that is forced; `before` is the good line in that form.
void expectBadForm( const std::string& form, const std::string& before, const Cases& cases ) {
   for( const Bad& bad : cases ) {
      expectBad( { "decode", "--single-line", "TcamActionTable", "--chip", "2", "--image-format",
                   form, "-" },
                 before, "action=0x5\n", bad );
   }
}

// Bad lines where each has to name its pair.
void expectBadPairs( const Cases& cases ) {
   for( const Bad& bad : cases ) {
      expectBad( { "decode", "--single-line", "-" }, "TcamActionTable BCM88650_B0 0: 05000000\n",
                 "TcamActionTable BCM88650_B0 0: action=0x5\n", bad );
   }
}

std::string bytes( const std::string& what ) {
   return what + "; write two hexadecimal digits for each byte, entry byte 0 first";
}

std::string word( const std::string& what ) {
   return what + "; write one to eight hexadecimal digits for each word";
}

std::string tooShort( int count ) {
   return "the image has " + std::to_string( count ) +
          " bytes; the fields of TcamActionTable on BCM88650_B0 need 3, a whole entry has 4";
}

std::string noImage( const std::string& text ) {
   return "bad image \"" + text +
          "\"; write hexadecimal digits, perhaps with TABLE CHIP VARIANT and a colon before them";
}

std::string invalid( const std::string& reason ) { return "not valid JSON: " + reason; }

std::string wrongType( const std::string& key, const std::string& types, const std::string& type ) {
   return "the value of \"" + key + "\" is " + types + ", not " + type;
}

std::string notIn( const std::string& type ) {
   return "an array holds the bytes or words of one image, not " + type;
}

const std::string cutOff = "the hexdump is cut off: it ends without the offset of its end";
const std::string ambiguous = "0x and eight digits among other pieces may be a word or four bytes; "
                              "say --image-format words or --image-format bytes";
const std::string streamAdvice = "; --image-format stream takes digits whose lines mean nothing";
const std::string dumpAdvice = "; write lines as `hexdump -C` prints them";

} // namespace

TEST( DecodeRefused, digits ) {
   expectBadImages( {
      { "odd number", "^0500000", bytes( "an odd number of digits in \"0500000\"" ) },
      { "odd number in one piece", "05 ^0 00", bytes( "an odd number of digits in \"0\"" ) },
      { "odd number after 0x", "05 ^0x000 00", bytes( "an odd number of digits in \"0x000\"" ) },
      { "a letter beyond f", "0500^zz00", bytes( "bad digit \"z\" in \"0500zz00\"" ) },
      { "the second digit of a byte", "\t05 0^g", bytes( "bad digit \"g\" in \"0g\"" ) },
      { "an odd number and a bad digit", "050^O0", bytes( "bad digit \"O\" in \"050O0\"" ) },
      { "0x alone", "05 ^0x", bytes( "no digits in \"0x\"" ) },
      { "0x twice", "0x0500^x000", bytes( "bad digit \"x\" in \"0x0500x000\"" ) },
      { "0x after digits", "050^x", bytes( "bad digit \"x\" in \"050x\"" ) },
      { "x without 0", "^x05000000", noImage( "x05000000" ) },
      { "commas", "05^,00,00", bytes( "bad digit \",\" in \"05,00,00\"" ) },
      { "colons", "05^:00:00:00", bytes( "bad digit \":\" in \"05:00:00:00\"" ) },
      { "dashes", "05^-00-00", bytes( "bad digit \"-\" in \"05-00-00\"" ) },
      { "underscores", "0x0500^_0000", bytes( "bad digit \"_\" in \"0x0500_0000\"" ) },
      { "a minus sign", "^-05000000", bytes( "bad digit \"-\" in \"-05000000\"" ) },
      { "backslashes", "^\\x05\\x00", bytes( "bad digit \"\\\" in \"\\x05\\x00\"" ) },
      { "two bytes for a character", "05^\u00e900",
        bytes( "bad digit \"\u00e9\" in \"05\u00e900\"" ) },
      { "the column after such a character", "\u00e9: 05 0^?",
        bytes( "bad digit \"?\" in \"0?\"" ) },
      { "what is no character", "05^\xff\xbf",
        bytes( "bad digit \"\\xff\\xbf\" in \"05\\xff\\xbf\"" ) },
      { "a control character", "05^\x01", bytes( "bad digit \"\\x01\" in \"05\\x01\"" ) },
      { "a zero byte", std::string( "05^\0", 4 ), bytes( "bad digit \"\\x00\" in \"05\\x00\"" ) },
      { "a long piece", "^" + std::string( 99, '0' ),
        bytes( "an odd number of digits in \"" + std::string( 60, '0' ) + "...\"" ) },
      { "an asterisk alone", "^*", bytes( "bad digit \"*\" in \"*\"" ) },
      { "bars alone", "05 00 ^|..|", bytes( "bad digit \"|\" in \"|..|\"" ) },
      { "a name", "^TcamActionTable", noImage( "TcamActionTable" ) },
      { "a name that begins like digits", "^EvecTable 2 0 05000000", noImage( "EvecTable" ) },
      { "a word among bytes", "00 ^0x00000005", ambiguous },
      { "a byte among words", "0x00000005 ^0x00000000 00", ambiguous },
      { "a shortened word", "0x00000005 ^0x0", bytes( "an odd number of digits in \"0x0\"" ) },
   } );
}

TEST( DecodeRefused, imagesThatAreTooShort ) {
   expectBadImages( {
      { "two bytes", "^0500", tooShort( 2 ) + streamAdvice },
      { "two bytes after blanks", "  ^05 00", tooShort( 2 ) + streamAdvice },
      { "five bytes", "^0500000000",
        "the image has 5 bytes; the fields of TcamActionTable on BCM88650_B0 need 3, a whole entry "
        "has 4" +
           streamAdvice },
      { "an empty string", "^\"\"", tooShort( 0 ) },
      { "an empty array", "^[]", tooShort( 0 ) },
      { "two numbers", "^[5,0]", tooShort( 2 ) },
      { "in an object", "{\"image\": ^\"0500\"}", tooShort( 2 ) },
      { "a hexdump", "^00000000  05 00  |..|\n00000002\n", tooShort( 2 ) },
      { "a label and nothing after it", "^image:\n", "no image after the colon" },
   } );
}

TEST( DecodeRefused, words ) {
   expectBadForm(
      "words", "5\n",
      {
         { "nine digits", "^0x000000005", word( "more than eight digits in \"0x000000005\"" ) },
         { "bytes in one piece", "^0500000000",
           word( "more than eight digits in \"0500000000\"" ) },
         { "a bad digit", "0x5 0^y", word( "bad digit \"y\" in \"0y\"" ) },
         { "0x alone", "^0X", word( "no digits in \"0X\"" ) },
         { "a number in JSON", "[5,^4294967296]",
           "number 4294967296 is too large; a word is at most 4294967295" },
         { "a string in JSON", "[\"^000000005\"]",
           word( "more than eight digits in \"000000005\"" ) },
      } );
}

TEST( DecodeRefused, bytes ) {
   expectBadForm(
      "bytes", "0x05000000\n",
      {
         { "a number in JSON", "[5,255,^256]", "number 256 is too large; a byte is at most 255" },
         { "an odd number of digits", "^0x0000000",
           bytes( "an odd number of digits in \"0x0000000\"" ) },
      } );
}

TEST( DecodeRefused, hexdump ) {
   // Two rows are an entry.
   const std::string first = "00000000  05 00  |..|\n";
   expectBadImages( {
      { "a gap", first + "^00000004  00 00  |..|\n", "offset 00000004 where 00000002 is due" },
      { "an offset twice", "00000010  05 00  |..|\n^00000010  00 00  |..|\n",
        "offset 00000010 where 00000012 is due" },
      { "another length", first + "^00000003\n", "offset 00000003 where 00000002 is due" },
      { "a length short of an asterisk", first + "*\n^00000001\n",
        "offset 00000001 where 00000002 is due" },
      { "an asterisk at the end", first + "*\n^",
        "no offset after \"*\"; a hexdump ends in the offset of its end" },
      { "an asterisk before a blank line", first + "*\n^\n" + first,
        "no offset after \"*\"; a hexdump ends in the offset of its end" },
      { "an asterisk before other bytes", first + "*\n^0500\n",
        "no offset after \"*\"; a hexdump ends in the offset of its end" },
      { "no end", first + "^", cutOff },
      { "a blank line before the end", first + "^\n00000002\n", cutOff },
      { "another dump before the end", first + "^00000000  05 00  |..|\n", cutOff },
      { "a short line", "00000000  05 00  |..|\n00000002  00  |.|\n^00000003  00  |.|\n",
        "the line before it has 1 bytes, the first one 2; only the last line may be shorter" },
      { "one digit", "00000000  05 ^0 00  |....|\n", "bad byte \"0\"" + dumpAdvice },
      { "two bytes in one", "00000000  05 00 ^0000  |....|\n", "bad byte \"0000\"" + dumpAdvice },
      { "a bad digit", "00000000  05 0^y  |....|\n", bytes( "bad digit \"y\" in \"0y\"" ) },
      { "no bytes", "00000000^  |....|\n", "no bytes after the offset" },
   } );
   expectBadForm( "hexdump", "00000000  05 00 00 00\n00000004\n",
                  {
                     { "few digits", " ^0000 05 00 00 00", "bad offset \"0000\"" + dumpAdvice },
                     { "0x", "^0x00000000 05 00 00 00", "bad offset \"0x00000000\"" + dumpAdvice },
                     { "JSON", "^[5,0,0]", "bad offset \"[5,0,0]\"" + dumpAdvice },
                  } );
}

TEST( DecodeRefused, json ) {
   expectBadImages( {
      { "a string without end", R"({"image":"05000000^)",
        invalid( "invalid string: missing closing quote" ) },
      { "a comma too many", "[5,0,0,^]",
        invalid( "unexpected ']'; expected '[', '{', or a literal" ) },
      { "something after it", "\"05000000\" ^00",
        invalid( "unexpected number literal; expected end of input" ) },
      { "a zero byte", std::string( "[5,0,0]^\0", 9 ), "not valid JSON: a zero byte" },

      { "an empty object", "^{}", "missing key \"image\"" },
      { "no image", R"(^{"table":"TcamActionTable","fields":{"action":5}})",
        "missing key \"image\"" },
      { "an image deeper down", R"(^{"dump":{"image":"05000000"}})", "missing key \"image\"" },
      { "entry: an object", R"({"entry":^{},"image":"05000000"})",
        "the value of \"entry\" is a number, not an object" },
      { "address: true", R"({"image":"05000000","address":^true})",
        "the value of \"address\" is a number, not true" },
      { "two images", R"({"image":"05000000",^"image":"05000000"})",
        "key \"image\" is given twice" },
      { "two chips", R"({"chip":2,^"chip":2,"image":"05000000"})", "key \"chip\" is given twice" },

      { "image: a number", R"({"image": ^5})",
        wrongType( "image", "a string or an array", "a number" ) },
      { "image: null", R"({"image":^null})", wrongType( "image", "a string or an array", "null" ) },
      { "image: an object", R"({"image": ^{"image":"00"}})",
        wrongType( "image", "a string or an array", "an object" ) },
      { "table: a number", R"({"table":^5,"image":"05000000"})",
        wrongType( "table", "a string", "a number" ) },
      { "chip: true", R"({"chip":^true,"image":"05000000"})",
        wrongType( "chip", "a name or a number", "true" ) },
      { "variant: a string", R"({"variant":^"0","image":"05000000"})",
        wrongType( "variant", "a number", "a string" ) },
      { "variant: negative", R"({"variant":^-1,"image":"05000000"})",
        "bad number -1; write an integer of 0 or more" },
      { "variant: a fraction", R"({"image":"05000000","variant":^0.5})",
        "bad number 0.5; write an integer of 0 or more" },
      { "variant: beyond 64 bits", R"({"variant": ^18446744073709551616 ,"image":"05000000"})",
        "bad number 18446744073709551616; write an integer of 0 or more" },

      { "digits: odd number", R"({"image":"^050"})",
        bytes( "an odd number of digits in \"050\"" ) },
      { "digits: bad digit", R"(  {"image":"0500 0^z"})", bytes( "bad digit \"z\" in \"0z\"" ) },
      { "digits: 0x alone", "\"05 ^0x\"", bytes( "no digits in \"0x\"" ) },
      { "array: a negative number", "[5, ^-1]", "bad number -1; write an integer of 0 or more" },
      { "array: a large number", "[^4294967296]",
        "number 4294967296 is too large; a word is at most 4294967295" },
      { "array: beyond a double", "[^1e999]", "bad number 1e999; write an integer of 0 or more" },
      { "array: null", "[^null]", notIn( "null" ) },
      { "array: an array", "[^[5,0,0]]", notIn( "an array" ) },
      { "array: an object", R"([^{"image":"05000000"}])",
        notIn( "an object; `jq -c '.[]'` writes each object on a line" ) },
      { "array: a number after a string", R"(["05",^0])",
        "an array holds numbers or strings, not both" },
      { "array: a string after a number", R"([5,^"00"])",
        "an array holds numbers or strings, not both" },
      { "array: an odd number of digits", R"(["05","^000"])",
        bytes( "an odd number of digits in \"000\"" ) },
      { "array: an empty string", R"(["05","^"])", bytes( "no digits in \"\"" ) },
      { "array: two in one", R"(["05","^00 00"])", "more than a byte or word in \"00 00\"" },
      { "array: a word among bytes", R"(["^0x00000005","00"])", ambiguous },
   } );
}

TEST( DecodeRefused, pairs ) {
   expectBadPairs( {
      { "none", "^05000000",
        "the image doesn't say its table; give TABLE and --chip, or write TABLE CHIP VARIANT and a "
        "colon before the image" },
      { "no table", R"({"chip":2,"image":^"05000000"})",
        "the image doesn't say its table; give TABLE and --chip, or write TABLE CHIP VARIANT and a "
        "colon before the image" },
      { "no chip type", "TcamActionTable: ^05000000",
        "the image doesn't say its chip type; give TABLE and --chip, or write TABLE CHIP VARIANT "
        "and a colon before the image" },
      { "an unknown table", " ^TcamActionTabel 2 0: 05000000",
        "unknown table \"TcamActionTabel\"; did you mean TcamActionTable?" },
      { "an unknown table in JSON", R"({"table":"^tcamActionTable","chip":2,"image":"05000000"})",
        "unknown table \"tcamActionTable\"; did you mean TcamActionTable?" },
      { "an unknown chip type", "TcamActionTable ^BCM88650_BO 0: 05000000",
        "unknown chip \"BCM88650_BO\"; did you mean BCM88650_B0?" },
      { "an unknown chip type in JSON",
        R"({"table":"TcamActionTable","chip":"^BCM88650","image":"05000000"})",
        "unknown chip \"BCM88650\"; did you mean BCM88650_B0?" },
      { "a chip type that the table lacks", "EgressPerPortTable ^2 0: 05000000",
        "EgressPerPortTable does not exist on BCM88650_B0; allowed: " +
           Testing::chipsListedOf( "EgressPerPortTable" ) },
      { "a variant that the pair lacks", "TcamActionTable 2 ^1: 05000000",
        "TcamActionTable has no variant 1 on BCM88650_B0; allowed: 0" },
      { "too many words", "TcamActionTable 2 0 ^0: 05000000",
        "\"0\" is too much before the colon; write TABLE CHIP VARIANT: IMAGE" },
      { "a pair and no image", "^TcamActionTable 2 0:\n", "no image after the colon" },
      { "two pairs", "TcamActionTable 2 0:\n ^TcamActionTable 2 0: 05000000\n",
        "a second pair, and no image after the first" },
      { "a pair in front of an object",
        R"(TcamActionTable 2 0: {^"table":"TcamActionTable","image":"05000000"})",
        "key \"table\" is given twice" },
      { "a name without colon", "^TcamActionTable 2 0 05000000", noImage( "TcamActionTable" ) },
      { "bad digits after the pair", "TcamActionTable 2 0: 0500^zz",
        bytes( "bad digit \"z\" in \"0500zz\"" ) },
      { "too short after the pair", "TcamActionTable 2 0: ^0500", tooShort( 2 ) },
   } );
}

TEST( DecodeRefused, pairsThatContradictTheCommandLine ) {
   expectBadImages( {
      { "table", "^LifTable 2 0: 05000000",
        "the image is one of LifTable, not of TcamActionTable" },
      { "table in JSON", R"({"image":"05000000","table":"^LifTable"})",
        "the image is one of LifTable, not of TcamActionTable" },
      { "chip type", R"({"table":"^TcamActionTable","chip":10,"image":"05000000"})",
        "the image is one of BCM88690_B0, not of BCM88650_B0" },
      { "chip type alone", R"({"chip":10,"image":^"05000000"})",
        "the image is one of BCM88690_B0, not of BCM88650_B0" },
      { "variant", "TcamActionTable 2 ^1: 05000000",
        "TcamActionTable has no variant 1 on BCM88650_B0; allowed: 0" },
   } );
}

TEST( DecodeRefused, csvOfTwoTables ) {
   const std::string input = "TcamActionTable 2 0: 05000000\n"
                             "TcamActionTable 3 0: 06000000\n"
                             "FheiIveSizeReg 2 0: 07000000000000000000000000000000\n";
   const std::string rows = "TcamActionTable,BCM88650_B0,0,,,,,5\n"
                            "TcamActionTable,BCM88660_A0,0,,,,,6\n";
   const std::string header = "table,chip,variant,entry,array,identifier,address,action";
   const auto outcome = Testing::vorn( { "decode", "--csv", "-" }, input );
   EXPECT_EQ( outcome.out, header + '\n' + rows );
   EXPECT_EQ( outcome.err,
              "<stdin>:3:21: the image is of FheiIveSizeReg on BCM88650_B0, whose fields are not "
              "those of the header; --csv takes the images of one table and chip type, or those "
              "fields that --fields names\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( DecodeRefused, theImageToCompareWith ) {
   const auto refused = [&]( const std::string& from, const std::string& message ) {
      Testing::expectRefused(
         { "decode", "TcamActionTable", "--chip", "2", "--changed-from", from, "05000000" },
         "vorn: --changed-from: " + message );
   };
   refused( "0500", tooShort( 2 ) );
   refused( "", tooShort( 0 ) );
   refused( "050", bytes( "an odd number of digits in \"050\"" ) );
   refused( "LifTable 2 0: 05000000", "the image is one of LifTable, not of TcamActionTable" );
   const auto outcome =
      Testing::vorn( { "decode", "--single-line", "--changed-from", "00000000", "-" },
                     "TcamActionTable 2 0: 05000000\nEgressPerPortTable 10 0: 050000000000\n" );
   EXPECT_EQ( outcome.out, "TcamActionTable BCM88650_B0 0: action=0x0->0x5\n" );
   EXPECT_EQ( outcome.err, "<stdin>:2:26: --changed-from: the image has 4 bytes; the fields of "
                           "EgressPerPortTable on BCM88690_B0 need 6, a whole entry has 12\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( DecodeRefused, arguments ) {
   const auto refused = []( const Arguments& image, const std::string& message ) {
      Arguments arguments{ "decode", "TcamActionTable", "--chip", "2" };
      arguments.insert( arguments.end(), image.begin(), image.end() );
      Testing::expectRefused( arguments, "vorn: " + message );
   };
   refused( { "4523" }, tooShort( 2 ) );
   refused( { "" }, tooShort( 0 ) );
   refused( { "452301", "0" }, bytes( "an odd number of digits in \"0\"" ) );
   refused( { "45", "-", "23" }, bytes( "bad digit \"-\" in \"-\"" ) );
   refused( { R"({"image":[]})" }, tooShort( 0 ) );
   refused( { R"({"chip":10,"image":"45230100"})" },
            "the image is one of BCM88690_B0, not of BCM88650_B0" );
   Testing::expectRefused( { "decode", "TcamActionTable", "--chip", "2", "--variant", "7", "-" },
                           "vorn: TcamActionTable has no variant 7 on BCM88650_B0; allowed: 0" );
}
