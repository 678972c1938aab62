// The progress line of `vorn program`: its text, and when a terminal shows it.
#include "Progress.h"

#include "RunVorn.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

namespace {

using Testing::onTerminal;
using Vorn::progressLine;

const std::string line = R"({"table":"TcamActionTable","chip":2,"fields":{"action":1}})"
                         "\n";
const std::string made = "01000000\n";

std::vector<std::string> lines( std::size_t count ) { return std::vector( count, line ); }

std::vector<std::string> withCount( const std::string& count ) {
   return { "program", "--allow-repeats", "--output", "bytes", "--count", count, "-" };
}

std::string repeated( const std::string& text, std::size_t count ) {
   std::string result;
   for( std::size_t i = 0; i < count; ++i ) {
      result += text;
   }
   return result;
}

} // namespace

TEST( Progress, theLine ) {
   struct Row {
      U64 done;
      U64 total;
      U64 entries;
      double seconds;
      std::size_t columns;
      std::string line;
   };
   const auto bar = []( std::size_t full, std::size_t empty ) {
      return " [" + std::string( full, '=' ) + std::string( empty, ' ' ) + ']';
   };
   const Row rows[] = {
      { 450, 1000, 451000, 1.5, 79,
        " 45%" + bar( 15, 19 ) + "   451000 entries, 300667/s, 0:02 left" },
      { 1, 1000000, 1, 0.001, 79, "  0%" + bar( 0, 35 ) + "        1 entries, 1000/s, 16:40 left" },
      { 999, 1000, 12345678, 3600, 79,
        " 99%" + bar( 35, 1 ) + " 12345678 entries, 3429/s, 0:04 left" },
      { 1, 2, 100, 7384, 79, " 50%" + bar( 18, 18 ) + "      100 entries, 0/s, 2:03:04 left" },
      { 1, 2, 1000, 10, 52, " 50%" + bar( 5, 5 ) + "     1000 entries, 100/s, 0:10 left" },
      { 1, 2, 1000, 10, 51, " 50%     1000 entries, 100/s, 0:10 left" },
      { 1, 2, 1000, 10, 39, " 50%     1000 entries, 100/s, 0:10 left" },
      { 1, 2, 1000, 10, 38, " 50%" },
      { 1, 2, 1000, 10, 3, " 50" },
      { 1, 2, 1000, 10, 0, "" },
   };
   for( const Row& row : rows ) {
      EXPECT_EQ( progressLine( row.done, row.total, row.entries, row.seconds, row.columns ),
                 row.line );
   }
}

TEST( Progress, aPipeWithACount ) {
   const auto outcome = onTerminal( withCount( "4" ), lines( 4 ), 80 );
   EXPECT_EQ( outcome.out, repeated( made, 4 ) );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_TRUE( outcome.err.starts_with( "\r 25% [" ) ) << outcome.err;
   const auto first = outcome.err.substr( 1, 79 );
   EXPECT_TRUE( first.ends_with( " left" ) ) << first;
   EXPECT_NE( first.find( "]        1 entries, " ), std::string::npos ) << first;
   // In the end it is wiped.
   EXPECT_TRUE( outcome.err.ends_with( '\r' + std::string( 79, ' ' ) + '\r' ) ) << outcome.err;
   EXPECT_EQ( outcome.err.find( '\n' ), std::string::npos );
}

TEST( Progress, aNarrowTerminal ) {
   EXPECT_EQ( onTerminal( withCount( "2" ), lines( 2 ), 10 ).err, "\r 50%\r    \r" );
   // One that doesn't know its width is taken for 80 columns.
   EXPECT_TRUE( onTerminal( withCount( "2" ), lines( 2 ), 0 )
                   .err.ends_with( '\r' + std::string( 79, ' ' ) + '\r' ) );
}

TEST( Progress, isWipedBeforeAnError ) {
   const auto outcome = onTerminal( withCount( "9" ),
                                    { line, R"({"table":"TcamActionTable","chip":2,"feilds":0})"
                                            "\n" },
                                    80 );
   EXPECT_EQ( outcome.out, made );
   EXPECT_NE( outcome.err.find(
                 '\r' + std::string( 79, ' ' ) +
                 "\r\x1b[1;31m<stdin>:2:37: \x1b[0munknown key \"feilds\"; did you mean fields?" ),
              std::string::npos )
      << outcome.err;
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Progress, isNotShown ) {
   // Without a count, with one that is reached at once, and among the lines of the output.
   EXPECT_EQ( onTerminal( { "program", "--allow-repeats", "-" }, lines( 3 ), 80 ).err, "" );
   EXPECT_EQ( onTerminal( withCount( "1" ), lines( 3 ), 80 ).err, "" );
   EXPECT_EQ( onTerminal( withCount( "3" ), lines( 3 ), 80, true ).err,
              repeated( "01000000\r\n", 3 ) );
   EXPECT_EQ( Testing::vorn( withCount( "3" ), repeated( line, 3 ) ).err, "" );
}

TEST( Progress, aFile ) {
   const std::string path = testing::TempDir() + "vornProgressTest.jsonl";
   const std::size_t count = 30000; // more than all threads work on at once
   std::ofstream( path ) << repeated( line, count );
   const auto outcome =
      onTerminal( { "program", "--allow-repeats", "--output=bytes", path }, {}, 80 );
   std::remove( path.c_str() );
   EXPECT_TRUE( outcome.out == repeated( made, count ) );
   EXPECT_EQ( outcome.status, 0 );
   // Shown first after a part of the file.
   int percent = 0;
   char bracket = 0;
   ASSERT_EQ( std::sscanf( outcome.err.c_str(), "\r%d%% %c", &percent, &bracket ), 2 )
      << outcome.err;
   EXPECT_EQ( bracket, '[' );
   EXPECT_GT( percent, 0 );
   EXPECT_LT( percent, 100 );
   EXPECT_TRUE( outcome.err.ends_with( '\r' + std::string( 79, ' ' ) + '\r' ) ) << outcome.err;
}

TEST( Progress, aCountThatIsNone ) {
   Testing::expectRefused( withCount( "many" ),
                           "vorn: bad number \"many\" for count; write decimal digits, hexadecimal "
                           "digits after 0x or binary digits after 0b" );
   Testing::expectRefused( withCount( "-1" ),
                           "vorn: negative value -1 for count; a value is 0 or more" );
}
