// vorn program, run for real: the lines it makes, and each kind of bad line.
#include "Folders.h"
#include "RunVorn.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

using Testing::vorn;

// A line for TcamActionTable that is right but for what is put into it.
std::string line( const std::string& chip, const std::string& value,
                  const std::string& more = "" ) {
   return R"({"table":"TcamActionTable","chip":)" + chip + R"(,"fields":{"action":)" + value + "}" +
          more + "}\n";
}

std::string made( const std::string& chip, const std::string& place, const std::string& image,
                  const std::string& address ) {
   return R"({"table":"TcamActionTable","chip":")" + chip + R"(","variant":0,)" + place +
          R"(,"image":")" + image + "\"," + address + "}\n";
}

const std::string firstPlace = R"("entry":0,"array":0,"identifier":0)";

std::string madeOnChip2( const std::string& image ) {
   return made( "BCM88650_B0", firstPlace, image,
                R"("address":"0x1810000","accessType":0,"destBlock":53)" );
}

void expectMade( const std::string& input, const std::string& output ) {
   const auto outcome = vorn( { "program", "--allow-repeats", "-" }, input );
   EXPECT_EQ( outcome.out, output );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

// A caret stands in the input before what is wrong, and is taken out.
struct BadLine {
   std::string input;
   std::string message;
};

void expectBad( const BadLine& bad ) {
   std::string input = bad.input;
   const auto column = input.find( '^' );
   ASSERT_NE( column, std::string::npos ) << input;
   input.erase( column, 1 );
   Testing::expectRefused(
      { "program", "-" }, "<stdin>:1:" + std::to_string( column + 1 ) + ": " + bad.message, input );
}

// A line for LifTable, whose entries carry a tag.
std::string lif( const std::string& variant, const std::string& fields,
                 const std::string& more = "" ) {
   return R"({"table":"LifTable","chip":10,"variant":)" + variant + R"(,"fields":{)" + fields +
          "}" + more + "}\n";
}

// An image of LifTable with the tag of variant 3, 0x25 in 6 bits from bit 174.
const std::string lifImage = std::string( 42, '0' ) + "4009" + std::string( 114, '0' );

} // namespace

TEST( Program, everyKey ) {
   expectMade( R"({"table":"TcamActionTable","chip":"BCM88690_B0","variant":0,"entry":5,)"
               R"("array":2,"identifier":1,"fields":{"action":"0x12345"}})"
               "\n",
               made( "BCM88690_B0", R"("entry":5,"array":2,"identifier":1)", "4523010000000000",
                     R"("address":"0x1101005","accessType":6,"destBlock":6)" ) );
}

TEST( Program, keysInAnyOrderAndTheirDefaults ) {
   expectMade( R"( { "fields" : { "action" : 74565 } , "chip" : 10 , "table":"TcamActionTable" } )",
               made( "BCM88690_B0", firstPlace, "4523010000000000",
                     R"("address":"0x1100000","accessType":4,"destBlock":6)" ) );
}

// What is printed is taken, as it is and changed a little.
TEST( Program, whatIsPrinted ) {
   const std::string begin = R"({"table":"EgressPerPortTable","chip":14,)";
   const auto expectImage = [&]( const std::string& rest, const std::string& image ) {
      const auto outcome = vorn( { "program", "--output", "bytes", "-" }, begin + rest + "}" );
      EXPECT_EQ( outcome.out, image + '\n' ) << rest << outcome.err;
   };
   const std::string image = "400100000000000000000000";
   expectImage( R"("image":")" + image + '"', image );
   expectImage( R"("fields":{},"image":")" + image + '"', image );
   // Up to the last field.
   expectImage( R"("image":"4001000000000000")", image );
   expectImage( R"("entry":null,"array":null,"identifier":null,"address":null,"variant":null,)"
                R"("accessType":null,"destBlock":null,"file":"a.txt","from":null,"fields":{})",
                "000000000000000000000000" );
   // LifTable on chip type 10 variant 3: mdbEntry covers the 21 bits of destination from bit 75.
   const std::string printed =
      vorn( { "decode", "LifTable", "--chip", "10", "--variant", "3", "--json",
              "00000000000000401f0000000000000000000000004009" } )
         .out;
   const auto edited = [&]( const std::string& from, const std::string& to ) {
      std::string text = printed;
      text.replace( text.find( from ), from.size(), to );
      return vorn( { "program", "--output", "bytes", "-" }, text );
   };
   const auto zeros = std::string( 114, '0' );
   EXPECT_EQ( edited( R"("destination":0)", R"("destination":1)" ).out,
              "00000000000000401f0800000000000000000000004009" + zeros + '\n' );
   EXPECT_EQ( edited( R"("entry":null)", R"("entry":5)" ).out,
              "00000000000000401f0000000000000000000000004009" + zeros + '\n' );
   EXPECT_EQ( edited( R"("resultType":37)", R"("resultType":36)" ).err.substr( 0, 8 ), "<stdin>:" );
   EXPECT_EQ( edited( R"("resultType":37)", R"("resultType":36)" ).status, 1 );
   // An entry that nobody has written stays one.
   const std::string blank( 160, '0' );
   const auto empty = vorn(
      { "decode", "LifTable", "--chip", "10", "--variant", "3", "--empty", "--json", "-" }, blank );
   EXPECT_EQ( vorn( { "program", "--output", "bytes", "-" }, empty.out ).out, blank + '\n' );
}

TEST( Program, theEntryOfAnAddress ) {
   const std::string begin = R"({"table":"TcamActionTable","chip":10,"fields":{},)";
   const std::string zeros = "0000000000000000";
   const auto right = made( "BCM88690_B0", R"("entry":5,"array":2,"identifier":1)", zeros,
                            R"("address":"0x1101005","accessType":6,"destBlock":6)" );
   expectMade( begin + R"("address":"0x1101005","destBlock":6,"identifier":1})", right );
   expectMade( begin + R"("address":17829893,"entry":5,"array":2,"identifier":1})", right );
   const auto expectRefused = [&]( const std::string& rest, const std::string& message ) {
      const auto caret = rest.find( '^' );
      const auto place = "<stdin>:1:" + std::to_string( begin.size() + caret + 1 ) + ": ";
      Testing::expectRefused( { "program", "-" }, place + message,
                              begin + rest.substr( 0, caret ) + rest.substr( caret + 1 ) + '}' );
   };
   expectRefused( R"("address":^"0x1101005","entry":6,"array":2)",
                  "address 0x1101005 is not that of entry 6, which is 0x1101006" );
   expectRefused( R"("destBlock":^7,"entry":6)", "destBlock 7 is not that of entry 6, which is 6" );
   expectRefused( R"("accessType":^9,"entry":6)",
                  "accessType 9 is not that of entry 6, which is 4" );
   expectRefused( R"("address":^"0x1")", "no entry of TcamActionTable on BCM88690_B0 lies at 0x1" );
   expectRefused( R"("address":^4294967296)",
                  "address 0x100000000 is out of range; it is at most 0xffffffff" );
   expectRefused( R"("destBlock":^256)", "destBlock 256 is out of range; it is at most 255" );
   expectRefused( R"("image":"00",^"from":"00")",
                  "\"image\" and \"from\" are both an image to begin with; give one" );
   expectRefused( R"("image":^"0000")", "the image has 2 bytes; the fields of TcamActionTable on "
                                        "BCM88690_B0 need 4, a whole entry has 8" );
}

TEST( Program, theManyWaysToWriteAValue ) {
   for( const auto value :
        { "1048575", "\"1048575\"", "\"0xfffff\"", "\"0x00000000000000fFfFf\"" } ) {
      expectMade( line( "2", value ), madeOnChip2( "ffff0f00" ) );
   }
   expectMade( line( "\"2\"", "0" ), madeOnChip2( "00000000" ) );
   expectMade( R"({"table":"TcamActionTable","chip":2,"fields":{}})", madeOnChip2( "00000000" ) );
}

TEST( Program, nothingRemainsFromOneLineToTheNext ) {
   expectMade( line( "2", "1048575", R"(,"entry":7)" ) + line( "2", "1" ) +
                  R"({"table":"TcamActionTable","chip":2,"fields":{}})"
                  "\n" +
                  line( "4", "\"0x800000\"" ) + line( "2", "\"2\"" ),
               made( "BCM88650_B0", R"("entry":7,"array":0,"identifier":0)", "ffff0f00",
                     R"("address":"0x1810007","accessType":0,"destBlock":53)" ) +
                  madeOnChip2( "01000000" ) + madeOnChip2( "00000000" ) +
                  made( "BCM88375_A0", firstPlace, "00008000",
                        R"("address":"0x1a100000","accessType":0,"destBlock":63)" ) +
                  madeOnChip2( "02000000" ) );
}

TEST( Program, blankLinesCommentsAndLineEnds ) {
   std::string unfinished = line( "2", "3" );
   unfinished.pop_back();
   std::string withReturn = unfinished + "\r\n";
   expectMade( "\n \t\r\n" + withReturn + "\r\n\n" + unfinished,
               madeOnChip2( "03000000" ) + madeOnChip2( "03000000" ) );
   expectMade( "# actions\n" + withReturn + "  # more\n", madeOnChip2( "03000000" ) );
   expectMade( "\xef\xbb\xbf# actions\n" + unfinished, madeOnChip2( "03000000" ) );
   expectMade( "", "" );
   expectMade( "\n\n", "" );
   expectMade( "\xef\xbb\xbf", "" );
}

TEST( Program, moreLinesThanAnyBufferHolds ) {
   std::string input;
   std::string output;
   for( int i = 0; i < 5000; ++i ) {
      input += line( "2", std::to_string( i % 16 ) );
      output += madeOnChip2( std::string( "0" ) + "0123456789abcdef"[i % 16] + "000000" );
   }
   // Not EXPECT_EQ, which would print a megabyte.
   EXPECT_TRUE( vorn( { "program", "--allow-repeats", "-" }, input ).out == output );
}

TEST( Program, aFile ) {
   const Testing::TemporaryFolder folder;
   const std::string file = folder / "entries.jsonl";
   std::ofstream( file ) << line( "2", "1" );
   const auto outcome = vorn( { "program", file } );
   EXPECT_EQ( outcome.out, madeOnChip2( "01000000" ) );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Program, anAnswerDoesNotWaitForFurtherInput ) {
   EXPECT_EQ( Testing::answerTo( { "program", "-" }, line( "2", "1" ) ),
              madeOnChip2( "01000000" ) );
}

TEST( Program, theLinesBeforeABadOneArePrinted ) {
   const Testing::TemporaryFolder folder;
   const std::string file = folder / "entries.jsonl";
   std::ofstream( file ) << line( "2", "1" ) << "\n"
                         << line( "2", "2" ) << line( "2", "1048576" ) << line( "2", "4" );
   const auto outcome = vorn( { "program", "--allow-repeats", file } );
   EXPECT_EQ( outcome.out, madeOnChip2( "01000000" ) + madeOnChip2( "02000000" ) );
   EXPECT_EQ( outcome.err, file + ":4:56: value 1048576 of field action is too large; its 20 "
                                  "bits in TcamActionTable on BCM88650_B0 hold at most "
                                  "0xfffff\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Program, fromAnImage ) {
   const std::string begin = R"({"table":"TcamActionTable","chip":2,"from":")";
   // Bits 20 to 31 are outside of the field.
   expectMade( begin + R"(ffffffff","fields":{"action":"0x12345"}})", madeOnChip2( "4523f1ff" ) );
   expectMade( begin + R"(0x87654321","fields":{}})", madeOnChip2( "21436587" ) );
   expectMade( R"({"table":"TcamActionTable","chip":2,"fields":{"action":0},"from":"ff ff ff ff"})"
               "\n" +
                  line( "2", "1" ),
               madeOnChip2( "0000f0ff" ) + madeOnChip2( "01000000" ) );
   const auto made = vorn( { "program", "--output", "bytes", "-" },
                           lif( "3", "", R"(,"from":")" + lifImage + '"' ) );
   EXPECT_EQ( made.out, lifImage + '\n' );
   EXPECT_EQ( made.err, "" );
}

TEST( Program, anImageALine ) {
   const std::string input = line( "2", "1" ) + "\n" + line( "10", "74565" ) + line( "2", "2" );
   const auto printed = [&]( const std::vector<std::string>& more ) {
      std::vector<std::string> arguments{ "program", "-", "--allow-repeats" };
      arguments.insert( arguments.end(), more.begin(), more.end() );
      return vorn( arguments, input ).out;
   };
   EXPECT_EQ( printed( { "--output", "bytes" } ), "01000000\n4523010000000000\n02000000\n" );
   EXPECT_EQ( printed( { "--output=words" } ), "0x00000001\n0x00012345 0x00000000\n0x00000002\n" );
   EXPECT_EQ( printed( { "--output=json" } ), printed( {} ) );
   const auto outcome = vorn( { "program", "-", "--output", "text" }, input );
   EXPECT_TRUE( outcome.err.starts_with(
      "vorn: --output: unknown form \"text\"; allowed: json, bytes, words" ) )
      << outcome.err;
   EXPECT_EQ( outcome.status, 2 );
}

TEST( Program, linesAndColumns ) {
   const auto placeOf = []( const std::string& input ) {
      const auto outcome = vorn( { "program", "-" }, input );
      return outcome.err.substr( 0, outcome.err.find( ": " ) );
   };
   EXPECT_EQ( placeOf( "x" ), "<stdin>:1:1" );
   EXPECT_EQ( placeOf( "\n\n\t x" ), "<stdin>:3:3" );
   EXPECT_EQ( placeOf( "\r\n" + line( "2", "1" ) + " \r\n{\r\n" ), "<stdin>:4:3" );
   // Columns count characters, of whatever length.
   EXPECT_EQ( placeOf( "{\"t\u00e9\u20ac\":1}" ), "<stdin>:1:2" );
   EXPECT_EQ( placeOf( "{\"table\":\"\u00e9\u20ac\U0001f600\",\"chip\":true}" ), "<stdin>:1:23" );
   // An escaped quote doesn't end a name.
   EXPECT_EQ( placeOf( R"({"table":"a\"b\\","chip":true})" ), "<stdin>:1:26" );
   EXPECT_EQ( placeOf( "\xef\xbb\xbf{\"chip\":true}" ), "<stdin>:1:10" );
}

TEST( Program, whatIsNotJson ) {
   const std::string start = R"({"table":"TcamActionTable","chip":2)";
   const std::string aLine = "; an object stands on one line: `jq -c .` writes it so, and "
                             "`jq -c '.[]'` those of an array";
   const BadLine lines[] = {
      { "^action", "not valid JSON: invalid literal" },
      { "^// all ports", "not valid JSON: invalid literal" },
      { "^}", "not valid JSON: unexpected '}'; expected '[', '{', or a literal" },
      { start + "^", "not valid JSON: unexpected end of input; expected '}'" },
      { start + ",^", "not valid JSON: unexpected end of input; expected string literal" + aLine },
      { start + ",^}", "not valid JSON: unexpected '}'; expected string literal" },
      { start + R"( ^"fields":{}})", "not valid JSON: unexpected string literal; expected '}'" },
      { start + R"(,"fields" ^{}})", "not valid JSON: unexpected '{'; expected ':'" },
      { start + R"(,"fields":^})",
        "not valid JSON: unexpected '}'; expected '[', '{', or a literal" },
      { start + R"(,^fields:{}})", "not valid JSON: invalid literal" },
      { start + R"(,"fields":{}}^})", "not valid JSON: unexpected '}'; expected end of input" },
      { start + R"(,"fields":{}} ^{})", "not valid JSON: unexpected '{'; expected end of input" },
      { start + R"(,"fields":{"action":1,^}})",
        "not valid JSON: unexpected '}'; expected string literal" },
      { start + R"(,"fields":{"action":^}})",
        "not valid JSON: unexpected '}'; expected '[', '{', or a literal" },
      { start + R"(,"variant":^tru})", "not valid JSON: invalid literal" },
      { start + R"(,"variant":^1.})", "not valid JSON: invalid number; expected digit after '.'" },
      { line( "2", "^01" ), "bad number \"01\" for action; a leading 0 may mean octal; write 1" },
      { line( "2", "1", ",\"entry\":^017" ),
        "bad number \"017\" for entry; a leading 0 may mean octal; write 17 or 0xf" },
      { "{^", "not valid JSON: unexpected end of input; expected string literal" + aLine },
      { start + ",\r^",
        "not valid JSON: unexpected end of input; expected string literal" + aLine },
      { line( "2", "^0x10" ),
        "not valid JSON: invalid literal; all values but decimal numbers stand in quotes" },
      { line( "2", "\"1^" ).substr( 0, 58 ),
        "not valid JSON: invalid string: missing closing quote" },
      { R"({"table":"a^)"
        "\t"
        R"("})",
        "not valid JSON: invalid string: control character U+0009 (HT) must be escaped to \\u0009 "
        "or \\t" },
      { R"({"table":"a\^q"})",
        "not valid JSON: invalid string: forbidden character after backslash" },
      { "{\"table\":\"a^\xff\"}", "not valid JSON: invalid string: ill-formed UTF-8 byte" },
      { start + R"(,"fields":{}})" + "^" + std::string( 1, '\0' ) + "x",
        "not valid JSON: the line holds a zero byte" },
   };
   for( const BadLine& bad : lines ) {
      expectBad( bad );
   }
}

TEST( Program, whatIsNotAnObject ) {
   for( const auto& [text, kind] :
        { std::pair( "^[]", "an array; `jq -c '.[]'` writes each object on a line" ),
          std::pair( "^5", "a number" ), std::pair( "^-5", "a number" ),
          std::pair( " ^0.5", "a number" ), std::pair( "^1e999", "a number" ),
          std::pair( "^\"x\"", "a string" ), std::pair( "\t^true", "true" ),
          std::pair( "^false", "false" ), std::pair( "^null", "null" ) } ) {
      expectBad( { text, std::string( "a line holds one JSON object, not " ) + kind } );
   }
}

TEST( Program, keys ) {
   const BadLine lines[] = {
      { line( "2", "1", R"(,^"entri":1)" ), "unknown key \"entri\"; did you mean entry?" },
      { line( "2", "1", R"(,^"Chip":2)" ), "unknown key \"Chip\"; did you mean chip?" },
      { line( "2", "1", R"(,^"feilds":{})" ), "unknown key \"feilds\"; did you mean fields?" },
      { line( "2", "1", R"(,^"form":"00")" ), "unknown key \"form\"; did you mean from?" },
      { line( "2", "1", R"(,^"q":1)" ), "unknown key \"q\"; allowed: table, chip, variant, entry, "
                                        "array, identifier, from, fields, image, address" },
      { line( "2", "1", R"(,^"chip":2)" ), "key \"chip\" is given twice" },
      { line( "2", "1", R"(,^"fields":{})" ), "key \"fields\" is given twice" },
      { line( "2", "1", R"(,"from":"00",^"from":"00")" ), "key \"from\" is given twice" },
      { "^{}", "missing key \"table\"; every line needs table, chip and fields" },
      { "^{} {}", "missing key \"table\"; every line needs table, chip and fields" },
      { R"( ^{"chip":2,"fields":{}})",
        "missing key \"table\"; every line needs table, chip and fields" },
      { R"(^{"table":"TcamActionTable","fields":{}})",
        "missing key \"chip\"; every line needs table, chip and fields" },
      { R"(^{"table":"TcamActionTable","chip":2})",
        "missing key \"fields\"; every line needs table, chip and fields" },
   };
   for( const BadLine& bad : lines ) {
      expectBad( bad );
   }
}

TEST( Program, wrongTypes ) {
   const BadLine lines[] = {
      { R"({"table":^5})", "the value of \"table\" is a string, not a number" },
      { R"({"table": ^null})", "the value of \"table\" is a string, not null" },
      { R"({"chip":^false})", "the value of \"chip\" is a name or a number, not false" },
      { R"({"chip":^{"fields":1}})", "the value of \"chip\" is a name or a number, not an object" },
      { R"({"variant":^"0"})", "the value of \"variant\" is a number, not a string" },
      { R"({"entry":^"5"})", "the value of \"entry\" is a number, not a string" },
      { R"({"array":^[5]})", "the value of \"array\" is a number, not an array" },
      { R"({"identifier":^true})", "the value of \"identifier\" is a number, not true" },
      { R"({"from":^0})", "the value of \"from\" is a string, not a number" },
      { R"({"from":^["00"]})", "the value of \"from\" is a string, not an array" },
      { R"({"fields":^[]})", "the value of \"fields\" is an object, not an array" },
      { line( "2", "^true" ), "the value of field \"action\" is a number or a string, not true" },
      { line( "2", "^null" ), "the value of field \"action\" is a number or a string, not null" },
      { line( "2", "^{}" ),
        "the value of field \"action\" is a number or a string, not an object" },
      { line( "2", "^[1]" ),
        "the value of field \"action\" is a number or a string, not an array" },
   };
   for( const BadLine& bad : lines ) {
      expectBad( bad );
   }
}

TEST( Program, numbers ) {
   const BadLine lines[] = {
      { line( "2", "^-1" ), "negative value -1 for action; a value is 0 or more" },
      { line( "2", "^\"-1\"" ), "negative value -1 for action; a value is 0 or more" },
      { line( "2", "^1.0" ), "bad number 1.0 for action; a value is an integer of 0 or more" },
      { line( "2", "^1e999" ), "bad number 1e999 for action; a value is an integer of 0 or more" },
      { line( "2", "^18446744073709551616" ),
        "bad number 18446744073709551616 for action; an integer beyond 64 bits is written as a "
        "string" },
      { line( "2", '^' + std::string( 400, '9' ) ),
        "bad number " + std::string( 60, '9' ) +
           "... for action; an integer beyond 64 bits is written as a string" },
      { line( "2", "1", R"(,"entry":^-1)" ), "negative value -1 for entry; a value is 0 or more" },
      { line( "2", "1", R"(,"variant":^-0)" ),
        "negative value 0 for variant; a value is 0 or more" },
      { line( "2", "1", R"(,"array":^2.5)" ),
        "bad number 2.5 for array; a value is an integer of 0 or more" },
      { line( "^1.5", "1" ), "bad number 1.5 for chip; a value is an integer of 0 or more" },
      { line( "^-2", "1" ), "negative value -2 for chip; a value is 0 or more" },
   };
   for( const BadLine& bad : lines ) {
      expectBad( bad );
   }
}

TEST( Program, namesAndPlaces ) {
   const std::string pair = "TcamActionTable on BCM88650_B0";
   const BadLine lines[] = {
      { R"({"table":^"TcamActionTabel","chip":2,"fields":{}})",
        "unknown table \"TcamActionTabel\"; did you mean TcamActionTable?" },
      { line( "^\"BCM88650_BO\"", "1" ),
        "unknown chip \"BCM88650_BO\"; did you mean BCM88650_B0?" },
      { R"({"table":"EgressPerPortTable","chip":^2,"variant":9,"fields":{}})",
        "EgressPerPortTable does not exist on BCM88650_B0; allowed: " +
           Testing::chipsListedOf( "EgressPerPortTable" ) },
      { line( "2", "1", R"(,"variant":^256)" ),
        "TcamActionTable has no variant 256 on BCM88650_B0; allowed: 0" },
      { line( "2", R"(1,^"actoin":2)" ),
        "no field \"actoin\" in " + pair + "; did you mean action?" },
      { line( "2", R"(1,^"action":1)" ), "field action is given twice" },
      { line( "2", "^\"ten\"" ),
        "bad value \"ten\" for action; write decimal digits, hexadecimal digits after 0x, binary "
        "digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
      { line( "2", "^\"10.0.0.1\"" ),
        "value 10.0.0.1 of field action is too large; its 20 bits in " + pair +
           " hold at most 0xfffff" },
      { lif( "3", R"(^"resultType":"mask")" ),
        "field resultType of LifTable on BCM88690_B0 variant 3 is read-only: it holds the entry's "
        "tag" },
      { line( "2", "1", R"(,"entry":^1024)" ),
        "entry 1024 is out of range in " + pair + "; allowed: 0 to 1023" },
      { line( "2", "1", R"(,"entry":1023,"array":^24)" ),
        "array 24 is out of range in " + pair + "; allowed: 0 to 23" },
      { line( "2", "1", R"(,"identifier":^1,"array":23)" ),
        "identifier 1 is out of range in " + pair + "; allowed: 0" },
      { line( "2", "1", R"(,"from":^"")" ),
        "the image has 0 bytes; an entry of " + pair + " has 4" },
      { lif( "4", "", R"(,"from":^")" + lifImage + '"' ),
        "the image is not one of LifTable on BCM88690_B0 variant 4: its tag resultType is 0x25, "
        "not 0x21; did you mean variant 3?" },
   };
   for( const BadLine& bad : lines ) {
      expectBad( bad );
   }
}
