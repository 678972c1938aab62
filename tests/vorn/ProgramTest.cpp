// vorn program, run for real: the lines it makes, and each kind of bad line.
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <utility>

#include <unistd.h>

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
   const auto outcome = vorn( { "program", "-" }, input );
   EXPECT_EQ( outcome.out, output );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

void expectBad( const std::string& input, const std::string& message ) {
   Testing::expectRefused( { "program", "-" }, "<stdin>:1: " + message, input );
}

class TemporaryFile {
public:
   explicit TemporaryFile( const std::string& text ) {
      path_ = testing::TempDir() + "vornProgramTest.XXXXXX";
      const int descriptor = ::mkstemp( path_.data() );
      EXPECT_GE( descriptor, 0 );
      ::close( descriptor );
      std::ofstream( path_ ) << text;
   }
   ~TemporaryFile() { std::remove( path_.c_str() ); }

   const std::string& path() const { return path_; }

private:
   std::string path_;
};

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

TEST( Program, blankLinesAndLineEnds ) {
   std::string unfinished = line( "2", "3" );
   unfinished.pop_back();
   std::string withReturn = unfinished + "\r\n";
   expectMade( "\n \t\r\n" + withReturn + "\r\n\n" + unfinished,
               madeOnChip2( "03000000" ) + madeOnChip2( "03000000" ) );
   expectMade( "", "" );
   expectMade( "\n\n", "" );
}

TEST( Program, moreLinesThanAnyBufferHolds ) {
   std::string input;
   std::string output;
   for( int i = 0; i < 5000; ++i ) {
      input += line( "2", std::to_string( i % 16 ) );
      output += madeOnChip2( std::string( "0" ) + "0123456789abcdef"[i % 16] + "000000" );
   }
   // Not EXPECT_EQ, which would print a megabyte.
   EXPECT_TRUE( vorn( { "program", "-" }, input ).out == output );
}

TEST( Program, aFile ) {
   const TemporaryFile file( line( "2", "1" ) );
   const auto outcome = vorn( { "program", file.path() } );
   EXPECT_EQ( outcome.out, madeOnChip2( "01000000" ) );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Program, anAnswerDoesNotWaitForFurtherInput ) {
   EXPECT_EQ( Testing::answerTo( { "program", "-" }, line( "2", "1" ) ),
              madeOnChip2( "01000000" ) );
}

TEST( Program, theLinesBeforeABadOneArePrinted ) {
   const TemporaryFile file( line( "2", "1" ) + "\n" + line( "2", "2" ) + line( "2", "1048576" ) +
                             line( "2", "4" ) );
   const auto outcome = vorn( { "program", file.path() } );
   EXPECT_EQ( outcome.out, madeOnChip2( "01000000" ) + madeOnChip2( "02000000" ) );
   EXPECT_EQ( outcome.err, file.path() + ":4: value 1048576 of field action is too large; its 20 "
                                         "bits in TcamActionTable on BCM88650_B0 hold at most "
                                         "0xfffff\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Program, filesThatCannotBeRead ) {
   Testing::expectRefused( { "program", "/nowhere/entries.jsonl" },
                           "vorn: cannot open /nowhere/entries.jsonl: No such file or directory" );
   Testing::expectRefused( { "program", "/tmp" }, "vorn: cannot read /tmp: Is a directory" );
}

TEST( Program, aFullDeviceIsAnError ) {
   const auto outcome = vorn( { "program", "-" }, line( "2", "1" ), "/dev/full" );
   EXPECT_EQ( outcome.err, "vorn: cannot write standard output: No space left on device\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Program, aLineWithoutEnd ) {
   expectBad( std::string( ( 1 << 20 ) + 1, ' ' ), "the line is longer than 1048576 bytes" );
   expectMade( std::string( 1 << 20, ' ' ), "" );
}

TEST( Program, whatIsNotJson ) {
   expectBad( "action", "not valid JSON at column 1: syntax error while parsing value - invalid "
                        "literal; last read: 'a'" );
   expectBad( R"({"table":"TcamActionTable","chip":2)",
              "not valid JSON at column 36: syntax error while parsing object - unexpected end of "
              "input; expected '}'" );
   expectBad( "{} {}", "missing key \"table\"; every line needs table, chip and fields" );
   expectBad( R"({"table":"TcamActionTable","chip":2,"fields":{}} {})",
              "not valid JSON at column 50: syntax error while parsing value - unexpected '{'; "
              "expected end of input" );
   expectBad( line( "2", "01" ), "not valid JSON at column 57: syntax error while parsing object - "
                                 "unexpected number literal; expected '}'" );
   expectBad( R"({"table":"TcamActionTable","chip":2,"fields":{}})" + std::string( 1, '\0' ) + "x",
              "not valid JSON: the line holds a zero byte" );
}

TEST( Program, whatIsNotAnObject ) {
   for( const auto& [text, kind] : { std::pair( "[]", "an array" ), std::pair( "5", "a number" ),
                                     std::pair( "-5", "a number" ), std::pair( "0.5", "a number" ),
                                     std::pair( "\"x\"", "a string" ), std::pair( "true", "true" ),
                                     std::pair( "null", "null" ) } ) {
      expectBad( text, std::string( "a line holds one JSON object, not " ) + kind );
   }
}

TEST( Program, keys ) {
   expectBad( line( "2", "1", R"(,"entri":1)" ), "unknown key \"entri\"; did you mean entry?" );
   expectBad(
      line( "2", "1", R"(,"q":1)" ),
      "unknown key \"q\"; allowed: table, chip, variant, entry, array, identifier, fields" );
   expectBad( line( "2", "1", R"(,"chip":2)" ), "key \"chip\" is given twice" );
   expectBad( line( "2", "1", R"(,"fields":{})" ), "key \"fields\" is given twice" );
   expectBad( R"({"chip":2,"fields":{}})",
              "missing key \"table\"; every line needs table, chip and fields" );
   expectBad( R"({"table":"TcamActionTable","fields":{}})",
              "missing key \"chip\"; every line needs table, chip and fields" );
   expectBad( R"({"table":"TcamActionTable","chip":2})",
              "missing key \"fields\"; every line needs table, chip and fields" );
}

TEST( Program, wrongTypes ) {
   expectBad( R"({"table":5})", "the value of \"table\" is a string, not a number" );
   expectBad( R"({"table":-5})", "the value of \"table\" is a string, not a number" );
   expectBad( R"({"table":null})", "the value of \"table\" is a string, not null" );
   expectBad( R"({"table":{}})", "the value of \"table\" is a string, not an object" );
   expectBad( R"({"chip":false})", "the value of \"chip\" is a name or a number, not false" );
   expectBad( R"({"entry":"5"})", "the value of \"entry\" is a number, not a string" );
   expectBad( R"({"array":[5]})", "the value of \"array\" is a number, not an array" );
   expectBad( R"({"fields":[]})", "the value of \"fields\" is an object, not an array" );
   expectBad( R"({"fields":0.5})", "the value of \"fields\" is an object, not a number" );
   expectBad( line( "2", "true" ),
              "the value of field \"action\" is a number or a string, not true" );
   expectBad( line( "2", "{}" ),
              "the value of field \"action\" is a number or a string, not an object" );
   expectBad( line( "2", "[1]" ),
              "the value of field \"action\" is a number or a string, not an array" );
}

TEST( Program, numbers ) {
   expectBad( line( "2", "-1" ), "negative value -1 for action; a value is 0 or more" );
   expectBad( line( "2", "\"-1\"" ), "negative value -1 for action; a value is 0 or more" );
   expectBad( line( "2", "1.0" ), "bad number 1.0 for action; a value is an integer of 0 or more" );
   expectBad( line( "2", "1e999" ),
              "bad number 1e999 for action; a value is an integer of 0 or more" );
   expectBad( line( "2", "18446744073709551616" ),
              "bad number 18446744073709551616 for action; an integer beyond 64 bits is written as "
              "a string" );
   expectBad( line( "2", std::string( 400, '9' ) ),
              "bad number " + std::string( 60, '9' ) +
                 "... for action; an integer beyond 64 bits is written as a string" );
   expectBad( line( "2", "\"ten\"" ), "bad number \"ten\" for action; write decimal digits, or 0x "
                                      "and hexadecimal digits" );
   expectBad( line( "2", "1", R"(,"entry":-1)" ),
              "negative value -1 for entry; a value is 0 or more" );
   expectBad( line( "1.5", "1" ), "bad number 1.5 for chip; a value is an integer of 0 or more" );
}

TEST( Program, valuesThatAreTooLarge ) {
   expectBad( line( "4", "16777216" ),
              "value 16777216 of field action is too large; its 24 bits in "
              "TcamActionTable on BCM88375_A0 hold at most 0xffffff" );
   expectBad( line( "10", "\"0x100000000\"" ),
              "value 0x100000000 of field action is too large; its 32 bits in TcamActionTable on "
              "BCM88690_B0 hold at most 0xffffffff" );
   expectBad( line( "10", "\"0x" + std::string( 129, '1' ) + '"' ),
              "value 0x" + std::string( 58, '1' ) +
                 "... of field action is too large; its 32 bits in TcamActionTable on BCM88690_B0 "
                 "hold at most 0xffffffff" );
}

TEST( Program, namesAndPlaces ) {
   expectBad( R"({"table":"TcamActionTabel","chip":2,"fields":{}})",
              "unknown table \"TcamActionTabel\"; did you mean TcamActionTable?" );
   expectBad( line( "\"BCM88650_BO\"", "1" ),
              "unknown chip \"BCM88650_BO\"; did you mean BCM88650_B0?" );
   expectBad( line( "2", "1", R"(,"variant":3)" ),
              "TcamActionTable has no variant 3 on BCM88650_B0; allowed: 0" );
   expectBad( line( "2", "1", R"(,"variant":256)" ),
              "TcamActionTable has no variant 256 on BCM88650_B0; allowed: 0" );
   expectBad( line( "2", R"(1,"actoin":2)" ),
              "no field \"actoin\" in TcamActionTable on BCM88650_B0; did you mean action?" );
   expectBad( line( "2", R"(1,"action":1)" ), "field action is given twice" );
   expectBad( line( "2", "1", R"(,"entry":1024)" ),
              "entry 1024 is out of range in TcamActionTable on BCM88650_B0; allowed: 0 to 1023" );
   expectBad( line( "2", "1", R"(,"array":24)" ),
              "array 24 is out of range in TcamActionTable on BCM88650_B0; allowed: 0 to 23" );
   expectBad( line( "2", "1", R"(,"identifier":1)" ),
              "identifier 1 is out of range in TcamActionTable on BCM88650_B0; allowed: 0" );
}
