// vorn program and vorn encode from CSV and from several files: repeats, and going on after errors.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Testing::expectRefused;
using Testing::TemporaryFolder;
using Testing::vorn;

using Arguments = std::vector<std::string>;

const std::string header = "table,chip,entry,action\n";

std::string row( const std::string& entry, const std::string& action ) {
   return "TcamActionTable,10," + entry + ',' + action + '\n';
}

std::string record( const std::string& entry, const std::string& action ) {
   return R"({"table":"TcamActionTable","chip":10,"entry":)" + entry + R"(,"fields":{"action":)" +
          action + "}}\n";
}

Arguments bytes( const Arguments& more ) {
   Arguments arguments{ "program", "--output", "bytes" };
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

std::string repeated( const std::string& place, const std::string& entry,
                      const std::string& earlier ) {
   return place + ": entry " + entry + " of TcamActionTable on BCM88690_B0 is programmed at " +
          earlier + " already; --allow-repeats takes both";
}

void write( const std::string& path, const std::string& text ) { std::ofstream( path ) << text; }

} // namespace

TEST( ProgramRows, areWhatRecordsAre ) {
   Testing::expectPrinted( { "program", "--csv", "-" },
                           vorn( { "program", "-" }, record( "5", "1" ) + record( "6", "2" ) ).out,
                           "# actions\n\n" + header + row( "5", "1" ) + ",,,\n" + row( "6", "2" ) );
   Testing::expectPrinted( { "program", "--csv", "-" }, "", "" );
   Testing::expectPrinted( { "program", "--csv", "-" }, "", header );
}

// What decode prints as CSV, program takes, also after a change.
TEST( ProgramRows, takeWhatDecodePrints ) {
   const std::string entries =
      vorn( { "program", "-" }, R"({"table":"LifTable","chip":10,"variant":3,"entry":9,)"
                                R"("fields":{"vsi":7}})" )
         .out;
   auto csv = vorn( { "decode", "--csv", "-" }, entries ).out;
   Testing::expectPrinted( { "program", "--csv", "-" }, entries, csv );
}

TEST( ProgramRows, severalFiles ) {
   const TemporaryFolder folder;
   const auto first = folder / "first.csv";
   const auto second = folder / "second.csv";
   write( first, header + row( "5", "1" ) );
   write( second, "action,entry,table,chip\n2,6,TcamActionTable,10\n" );
   Testing::expectPrinted( bytes( { "--csv", first, "-", second } ),
                           "0100000000000000\n0300000000000000\n0200000000000000\n",
                           header + row( "7", "3" ) );
   // Their repeats are found across files, and lines of JSON have them, too.
   write( second, "\n" + header + row( "6", "2" ) + row( "5", "3" ) );
   const auto outcome = vorn( bytes( { "--csv", first, second } ) );
   EXPECT_EQ( outcome.out, "0100000000000000\n0200000000000000\n" );
   EXPECT_EQ( outcome.err, repeated( second + ":4:20", "5", first + ":2" ) + '\n' );
   EXPECT_EQ( outcome.status, 1 );
   const auto lines = vorn( bytes( { "-" } ), record( "5", "1" ) + "\n" + record( "5", "1" ) );
   EXPECT_EQ( lines.out, "0100000000000000\n" );
   EXPECT_EQ( lines.err, repeated( "<stdin>:3:46", "5", "<stdin>:1" ) + '\n' );
   Testing::expectPrinted( bytes( { "--allow-repeats", "--csv", first, first } ),
                           "0100000000000000\n0100000000000000\n" );
}

// A place is an address of a table: another instance, array element or chip type has others, and
// variants share theirs. What has no address can't be programmed twice.
TEST( ProgramRows, whatARepeatIs ) {
   const std::string keys = "table,chip,variant,entry,array,identifier\n";
   Testing::expectPrinted( bytes( { "--csv", "-" } ),
                           "0000000000000000\n0000000000000000\n0000000000000000\n00000000\n",
                           keys + "TcamActionTable,10,,5,0,0\nTcamActionTable,10,,5,1,0\n"
                                  "TcamActionTable,10,,5,0,1\nTcamActionTable,2,,5,0,0\n" );
   EXPECT_EQ(
      vorn( { "program", "--csv", "-" }, keys + "LifTable,10,3,5,,\nLifTable,10,4,5,,\n" ).err,
      "<stdin>:3:15: entry 5 of LifTable on BCM88690_B0 is programmed at <stdin>:2 already; "
      "--allow-repeats takes both\n" );
   EXPECT_EQ(
      vorn( { "program", "--csv", "-" }, keys + "LifTable,Software,,,,\nLifTable,Software,,,,\n" )
         .status,
      0 );
   // By address, and with an array element and an instance to name.
   EXPECT_EQ( vorn( bytes( { "--csv", "-" } ),
                    "table,chip,address,identifier\nTcamActionTable,10,0x1101005,1\n"
                    "TcamActionTable,10,0x1101005,1\n" )
                 .err,
              "<stdin>:3:20: entry 5 array 2 identifier 1 of TcamActionTable on BCM88690_B0 is "
              "programmed at <stdin>:2 already; --allow-repeats takes both\n" );
}

// As many lines as several threads get, with a repeat of the first one at the end.
TEST( ProgramRows, repeatsAmongManyLines ) {
   std::string input;
   std::string rows = "table,chip,entry,vsi\n";
   constexpr int count = 20000;
   for( int i = 0; i < count; ++i ) {
      // Neighbours don't follow each other.
      const auto entry = std::to_string( i * 7919 % count );
      input += R"({"table":"LifTable","chip":10,"entry":)" + entry +
               R"(,"fields":{"vsi":1}})"
               "\n";
      rows += "LifTable,10," + entry + ",1\n";
   }
   const auto last = std::to_string( count + 1 );
   const auto outcome =
      vorn( bytes( { "-" } ), input + R"({"table":"LifTable","chip":10,"fields":{}})" );
   EXPECT_EQ( std::count( outcome.out.begin(), outcome.out.end(), '\n' ), count );
   EXPECT_EQ( outcome.err, "<stdin>:" + last +
                              ":10: entry 0 of LifTable on BCM88690_B0 is programmed at <stdin>:1 "
                              "already; --allow-repeats takes both\n" );
   const auto csv = vorn( bytes( { "--csv", "-" } ), rows + "LifTable,10,7919,1\n" );
   EXPECT_TRUE( csv.out == outcome.out );
   EXPECT_EQ( csv.err, "<stdin>:" + std::to_string( count + 2 ) +
                          ":13: entry 7919 of LifTable on BCM88690_B0 is programmed at <stdin>:3 "
                          "already; --allow-repeats takes both\n" );
}

TEST( ProgramRows, keepGoing ) {
   const TemporaryFolder folder;
   const auto missing = folder / "missing.csv";
   const auto bad = folder / "bad.csv";
   write( bad, "table,chip,action,acton\n" + row( "5", "1" ) );
   const auto outcome = vorn( bytes( { "--keep-going", "--csv", missing, bad, "-" } ),
                              header + row( "5", "x" ) + row( "5", "1" ) + "TcamActionTable,10\n" +
                                 row( "5", "2" ) + row( "6", "\"3" ) + row( "7", "4" ) );
   EXPECT_EQ( outcome.out, "0100000000000000\n0400000000000000\n" );
   EXPECT_EQ( outcome.err,
              "vorn: cannot open " + missing + ": No such file or directory\n" + bad +
                 ":1:19: no key or field \"acton\"; did you mean action?\n"
                 "<stdin>:2:22: bad value \"x\" for action; write decimal digits, hexadecimal "
                 "digits after 0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask\n"
                 "<stdin>:4:1: the row has 2 cells, the header 4\n" +
                 repeated( "<stdin>:5:20", "5", "<stdin>:3" ) +
                 "\n<stdin>:6:22: the cell \"\"3\" has no closing quote; a cell ends on its line\n"
                 "vorn: 6 errors, 2 entries printed\n" );
   EXPECT_EQ( outcome.status, 1 );
   // Of lines of JSON, one of them too long, and one without end.
   const auto lines = vorn( bytes( { "--keep-going", "-" } ),
                            record( "1", "1" ) + "{\n" + std::string( 3000000, ' ' ) + '\n' +
                               record( "2", "2" ) + record( "3", "3" ).substr( 0, 9 ) );
   EXPECT_EQ( lines.out, "0100000000000000\n0200000000000000\n" );
   EXPECT_EQ( lines.err,
              "<stdin>:2:2: not valid JSON: unexpected end of input; expected string "
              "literal; an object stands on one line: `jq -c .` writes it so, and "
              "`jq -c '.[]'` those of an array\n"
              "<stdin>:3: the line is longer than 1048576 bytes\n"
              "<stdin>:5:10: not valid JSON: unexpected end of input; expected '[', '{', or "
              "a literal\n"
              "vorn: 3 errors, 2 entries printed\n" );
   EXPECT_EQ( lines.status, 1 );
   // A full disk ends it all the same.
   const auto full = vorn( bytes( { "--keep-going", "-" } ), record( "1", "1" ), "/dev/full" );
   EXPECT_EQ( full.err, "vorn: cannot write standard output: No space left on device\n" );
   EXPECT_EQ( full.status, 1 );
}

TEST( ProgramRows, refused ) {
   expectRefused( { "program", "-" }, "<stdin>:1:1: this is CSV; give --csv",
                  header + row( "5", "1" ) );
   expectRefused( { "program", "--csv", "-" },
                  "<stdin>:1:1: the file is JSON, not CSV; leave --csv out", record( "5", "1" ) );
}

TEST( EncodeRows, areTheTextsOfTheirEntries ) {
   const Arguments encode{ "encode", "TcamActionTable", "--chip", "10" };
   const auto with = [&]( const Arguments& more ) {
      Arguments arguments = encode;
      arguments.insert( arguments.end(), more.begin(), more.end() );
      return arguments;
   };
   Testing::expectPrinted( with( { "--csv", "-" } ),
                           vorn( with( { "--entry", "5", "action=1" } ) ).out +
                              vorn( with( { "--entry", "6", "action=2" } ) ).out,
                           "entry,action\n5,1\n6,2\n" );
   Testing::expectPrinted( with( { "--output", "words", "--csv", "-" } ), "0x00000001 0x00000000\n",
                           "action\n1\n" );
   // Without TABLE and --chip the columns say them.
   Testing::expectPrinted( { "encode", "--csv", "--output", "bytes", "-" }, "0100000000000000\n",
                           header + row( "5", "1" ) );
   // --variant stands for a column.
   Testing::expectPrinted(
      { "encode", "LifTable", "--chip", "10", "--variant", "3", "--csv", "-", "--output", "bytes" },
      vorn(
         { "encode", "LifTable", "--chip", "10", "--variant", "3", "--output", "bytes", "vsi=7" } )
         .out,
      "vsi\n7\n" );
   const auto going = vorn( with( { "--output", "bytes", "--keep-going", "--csv", "-" } ),
                            "entry,action\n5,x\n5,1\n5,1\n" );
   EXPECT_EQ( going.out, "0100000000000000\n" );
   EXPECT_EQ( going.status, 1 );
   EXPECT_TRUE( going.err.ends_with( "vorn: 2 errors, 1 entry printed\n" ) ) << going.err;
}

TEST( EncodeRows, refused ) {
   struct Refused {
      Arguments arguments;
      std::string message;
      int status;
      std::string input = {};
   };
   const Refused all[] = {
      { { "encode", "LifTabel", "--chip", "10", "--csv", "-" },
        "vorn: unknown table \"LifTabel\"; did you mean LifTable?",
        1 },
      { { "encode", "LifTable", "--chip", "10", "--csv" },
        "vorn: FILE is required; see vorn encode --help",
        2 },
      { { "encode", "LifTable", "--chip", "10", "--csv", "vsi=7" },
        "vorn: --csv: takes files, and no field such as \"vsi=7\"; fields are columns of the files",
        2 },
      { { "encode", "LifTable", "--chip", "10", "--csv", "-", "--entry", "5" },
        "vorn: --entry excludes --csv; see vorn encode --help",
        2 },
      { { "encode", "LifTable", "--chip", "10", "--csv", "-", "--from", "00" },
        "vorn: --from excludes --csv; see vorn encode --help",
        2 },
      { { "encode", "LifTable", "--chip", "10", "--keep-going", "vsi=7" },
        "vorn: --keep-going requires --csv; see vorn encode --help",
        2 },
      { { "encode", "LifTable" }, "vorn: --chip is required; see vorn encode --help", 2 },
      { { "encode", "--chip", "10" }, "vorn: TABLE is required; see vorn encode --help", 2 },
      { { "encode", "EvecTable", "--chip", "10", "--csv", "-" },
        "vorn: EvecTable does not exist on BCM88690_B0; allowed: BCM88650_B0 (2), BCM88660_A0 (3), "
        "BCM88375_A0 (4), BCM88375_B0 (5), BCM88470_A0 (6), BCM88470_B0 (7), BCM88680_A0 (8)",
        1 },
      { { "encode", "LifTable", "--chip", "10", "--csv", "-" },
        "<stdin>:2:1: the row is one of OutAcBank, not of LifTable",
        1,
        "table,vsi\nOutAcBank,1\n" },
   };
   for( const auto& [arguments, message, status, input] : all ) {
      const auto outcome = vorn( arguments, input );
      EXPECT_EQ( outcome.err, message + '\n' );
      EXPECT_EQ( outcome.status, status ) << message;
      EXPECT_EQ( outcome.out, "" );
   }
}

// On a terminal lines fit into 80 columns, as pieces that a shell joins.
TEST( EncodeText, isWrappedOnATerminal ) {
   const Arguments encode{ "encode", "LifTable", "--chip", "10", "vsi=7" };
   const auto plain = vorn( encode ).out;
   auto shown = Testing::onTerminal( encode, {}, 80, true ).err;
   std::size_t width = 0;
   for( std::size_t at = 0; at < shown.size(); ) {
      const auto end = shown.find_first_of( "\r\n", at );
      width = std::max( width, std::min( end, shown.size() ) - at );
      at = end == shown.npos ? end : end + 1;
   }
   EXPECT_LE( width, 80u );
   EXPECT_GT( width, 70u );
   for( std::size_t at; ( at = shown.find( '\r' ) ) != shown.npos; ) {
      shown.erase( at, 1 );
   }
   for( std::size_t at; ( at = shown.find( "\\\n       " ) ) != shown.npos; ) {
      shown.erase( at, 9 );
   }
   EXPECT_EQ( shown, plain );
}
