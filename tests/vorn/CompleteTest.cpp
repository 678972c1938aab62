// What vorn offers where the cursor is, and what real shells make of it.
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

// The candidates for the last of the words, without their descriptions.
Words candidates( Words words ) {
   words.insert( words.begin(), { "complete", "--" } );
   const auto outcome = Testing::vorn( words );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   Words result;
   std::istringstream lines( outcome.out );
   for( std::string line; std::getline( lines, line ); ) {
      result.push_back( line.substr( 0, line.find( '\t' ) ) );
   }
   return result;
}

bool isAmong( const std::string& word, const Words& words ) {
   return std::find( words.begin(), words.end(), word ) != words.end();
}

const std::string folder = VORN_COMPLETION;

bool isInstalled( const std::string& shell ) {
   return Testing::run( "sh", { "-c", "command -v " + shell } ).status == 0;
}

// What bash offers for the line, one word a line.
std::string inBash( const std::string& line ) {
   const auto cut = line.find_last_of( " =:" ) + 1;
   const std::string script = "source '" + folder +
                              "/vorn.bash'\n"
                              "COMP_LINE=$1 COMP_POINT=${#1}\n"
                              "_vorn '" VORN_BINARY "' \"$2\" ''\n"
                              "printf '%s\\n' \"${COMPREPLY[@]}\"";
   const auto outcome =
      Testing::run( "bash", { "--norc", "-c", script, "bash", line, line.substr( cut ) } );
   EXPECT_EQ( outcome.err, "" );
   return outcome.out;
}

// What fish offers for the line, one word a line.
std::string inFish( const std::string& line ) {
   const auto outcome =
      Testing::run( "env", { "fish", "--no-config", "-c",
                             "set -p PATH (path dirname '" VORN_BINARY "'); source '" + folder +
                                "/vorn.fish'; complete -C $argv[1] | string replace -r '\\t.*' ''",
                             line } );
   EXPECT_EQ( outcome.err, "" );
   return outcome.out;
}

// What zsh makes of the line and a tab.
std::string inZsh( const std::string& line ) {
   return Testing::run( "zsh", { "-f", VORN_TESTS "/complete.zsh", folder, VORN_BINARY, line } )
      .out;
}

} // namespace

TEST( Complete, verbs ) {
   EXPECT_EQ( candidates( { "enc" } ), Words{ "encode" } );
   EXPECT_EQ( candidates( { "tra" } ), Words{ "trace" } );
   EXPECT_TRUE( isAmong( "locate", candidates( { "" } ) ) );
   EXPECT_FALSE( isAmong( "complete", candidates( { "" } ) ) );
   EXPECT_EQ( candidates( { "trace", "enc" } ), Words{ "encode" } );
   EXPECT_EQ( candidates( { "trace", "tra" } ), Words() );
   EXPECT_EQ( candidates( {} ), candidates( { "" } ) );
}

TEST( Complete, options ) {
   EXPECT_EQ( candidates( { "address", "--" } ),
              ( Words{ "--help", "--chip", "--variant", "--entry", "--array", "--identifier",
                       "--json" } ) );
   EXPECT_EQ( candidates( { "locate", "--d" } ), Words{ "--dest-block" } );
   EXPECT_EQ( candidates( { "export", "--format", "" } ),
              ( Words{ "c-header", "json-schema", "csv" } ) );
   EXPECT_EQ( candidates( { "--v" } ), Words{ "--version" } );
   EXPECT_EQ( candidates( { "trace", "locate", "--d" } ), Words{ "--dest-block" } );
}

TEST( Complete, tables ) {
   EXPECT_EQ(
      candidates( { "encode", "Tcam" } ),
      ( Words{ "TcamActionTable", "TcamBankIpv4Tt", "TcamBankTable", "TcamBankTableFormatter" } ) );
   EXPECT_EQ( candidates( { "encode", "--chip", "10", "--entry", "5", "OutA" } ),
              Words{ "OutAcBank" } );
}

TEST( Complete, tablesBeforeDumps ) {
   for( const char* const verb : { "stats", "diff", "decode" } ) {
      EXPECT_EQ( candidates( { verb, "OutA" } ), Words{ "OutAcBank" } ) << verb;
      EXPECT_EQ( candidates( { verb, "OutAcBank", "Lif" } ), Words() ) << verb;
      EXPECT_EQ( candidates( { verb, "OutAcBank", "before.bin", "" } ), Words() ) << verb;
      EXPECT_EQ( candidates( { verb, "--chip", "4", "OutAcBank", "--variant", "" } ),
                 ( Words{ "0", "1", "2" } ) )
         << verb;
   }
}

TEST( Complete, chips ) {
   EXPECT_EQ( candidates( { "locate", "--chip", "BCM8848" } ),
              ( Words{ "BCM88480_A0", "BCM88480_B0" } ) );
   EXPECT_EQ( candidates( { "locate", "--chip=BCM8848" } ),
              ( Words{ "--chip=BCM88480_A0", "--chip=BCM88480_B0" } ) );
   // Those that the table serves.
   EXPECT_EQ( candidates( { "decode", "EvecTable", "--chip", "BCM886" } ),
              ( Words{ "BCM88650_B0", "BCM88660_A0", "BCM88680_A0" } ) );
}

TEST( Complete, chipsAndVariantsToCompare ) {
   EXPECT_EQ( candidates( { "layout", "EvecTable", "--diff", "BCM8866" } ),
              Words{ "BCM88660_A0" } );
   EXPECT_EQ( candidates( { "layout", "OutAcBank", "--diff", "4:" } ),
              ( Words{ "4:0", "4:1", "4:2" } ) );
   EXPECT_EQ( candidates( { "layout", "OutAcBank", "--diff", "4:0", "BCM88690_B0:" } ),
              Words{ "BCM88690_B0:0" } );
   EXPECT_EQ( candidates( { "layout", "OutAcBank", "--diff=4:2" } ), Words{ "--diff=4:2" } );
   EXPECT_EQ( candidates( { "layout", "OutAcBank", "--diff", "BMC:" } ), Words() );
}

TEST( Complete, namesOfFields ) {
   EXPECT_EQ( candidates( { "field", "pphFheiIveS" } ), Words{ "pphFheiIveSize" } );
   EXPECT_EQ( candidates( { "field", "--chip", "Soft" } ), Words{ "Software" } );
}

TEST( Complete, variants ) {
   EXPECT_EQ( candidates( { "encode", "LifTable", "--chip", "2", "--variant", "" } ),
              ( Words{ "0", "1", "2", "3", "4", "6" } ) );
   EXPECT_EQ( candidates( { "encode", "--chip=BCM88690_B0", "OutAcBank", "--variant=" } ),
              Words{ "--variant=0" } );
   EXPECT_EQ( candidates( { "encode", "LifTable", "--variant", "" } ), Words() );
}

TEST( Complete, fields ) {
   EXPECT_EQ( candidates( { "encode", "TcamActionTable", "--chip", "10", "" } ),
              Words{ "action=" } );
   EXPECT_EQ(
      candidates( { "encode", "--chip", "10", "TcamBankTable", "tcamCpuCmdWr=1", "tcamCpuCmdR" } ),
      Words{ "tcamCpuCmdRd=" } );
   EXPECT_EQ( candidates( { "encode", "--chip=2", "TcamBankTable", "tcamCpuCmdR" } ),
              ( Words{ "tcamCpuCmdRd=", "tcamCpuCmdReserved=" } ) );
   // A tag cannot be set.
   EXPECT_EQ( candidates( { "encode", "OutAcBank", "--chip", "10", "result" } ), Words() );
}

TEST( Complete, nothingWhereAnythingMayStand ) {
   for( const Words& words :
        { Words{ "program", "entr" }, Words{ "decode", "LifTable", "--chip", "10", "45" },
          Words{ "encode", "TcamActionTable", "--chip", "10", "action=1" },
          Words{ "address", "LifTable", "--entry", "" }, Words{ "tables", "x" } } ) {
      EXPECT_EQ( candidates( words ), Words() ) << words.front();
   }
}

TEST( Complete, nothingBehindWhatIsWrong ) {
   EXPECT_EQ( candidates( { "encode", "LifTabel", "--chip", "10", "v" } ), Words() );
   EXPECT_EQ( candidates( { "encode", "LifTable", "--chip", "BCM", "v" } ), Words() );
   EXPECT_EQ( candidates( { "encode", "LifTable", "--chip", "10", "--variant", "5", "v" } ),
              Words() );
   EXPECT_EQ( candidates( { "frob", "x" } ), Words() );
   EXPECT_EQ( candidates( { "encode", "--bogus=" } ), Words() );
}

TEST( Complete, descriptions ) {
   EXPECT_EQ(
      Testing::vorn( { "complete", "--", "encode", "TcamActionTable", "--chip", "4", "a" } ).out,
      "action=\t24 bits\n" );
   EXPECT_EQ( Testing::vorn( { "complete", "--", "locate", "--chip", "Soft" } ).out,
              "Software\tchip type 21\n" );
}

TEST( Complete, inBash ) {
   if( !isInstalled( "bash" ) ) {
      GTEST_SKIP() << "there is no bash";
   }
   EXPECT_EQ( inBash( "vorn enc" ), "encode\n" );
   EXPECT_EQ( inBash( "vorn locate --chip BCM8848" ), "BCM88480_A0\nBCM88480_B0\n" );
   EXPECT_EQ( inBash( "vorn locate --chip=BCM8848" ), "BCM88480_A0\nBCM88480_B0\n" );
   EXPECT_EQ( inBash( "vorn encode  OutAcBank --chip=4 --variant=" ), "0\n1\n2\n" );
   EXPECT_EQ( inBash( "vorn encode TcamBankTable --chip 10 tcamCpuCmdWr=1 tcamCpuCmdR" ),
              "tcamCpuCmdRd=\n" );
   EXPECT_EQ( inBash( "vorn layout OutAcBank --diff 4:" ), "0\n1\n2\n" );
   EXPECT_EQ( inBash( "vorn layout OutAcBank --diff 4:0 10:" ), "0\n" );
   EXPECT_EQ( inBash( "vorn stats OutA" ), "OutAcBank\n" );
   EXPECT_EQ( inBash( "vorn trace addr" ), "address\n" );
   EXPECT_EQ( inBash( "vorn program entr" ), "\n" );
}

TEST( Complete, inZsh ) {
   if( !isInstalled( "zsh" ) ) {
      GTEST_SKIP() << "there is no zsh";
   }
   EXPECT_EQ( inZsh( "vorn enc" ), "vorn encode |\n" );
   EXPECT_EQ( inZsh( "vorn locate --chip BCM8848" ), "vorn locate --chip BCM88480_|\n" );
   EXPECT_EQ( inZsh( "vorn locate --chip=Soft" ), "vorn locate --chip=Software |\n" );
   EXPECT_EQ( inZsh( "vorn encode TcamBankTable --chip 10 tcamCpuCmdW" ),
              "vorn encode TcamBankTable --chip 10 tcamCpuCmdWr=|\n" );
   EXPECT_EQ( inZsh( "vorn layout LifTable --diff Software:" ),
              "vorn layout LifTable --diff Software:0 |\n" );
   EXPECT_EQ( inZsh( "vorn program " VORN_EXAMPLES "/entr" ),
              "vorn program " VORN_EXAMPLES "/entries.jsonl |\n" );
}

TEST( Complete, inFish ) {
   if( !isInstalled( "fish" ) ) {
      GTEST_SKIP() << "there is no fish";
   }
   EXPECT_EQ( inFish( "vorn enc" ), "encode\n" );
   EXPECT_EQ( inFish( "vorn locate --chip BCM8848" ), "BCM88480_A0\nBCM88480_B0\n" );
   EXPECT_EQ( inFish( "vorn locate --chip=BCM8848" ), "--chip=BCM88480_A0\n--chip=BCM88480_B0\n" );
   EXPECT_EQ( inFish( "vorn layout OutAcBank --diff 4:" ), "4:0\n4:1\n4:2\n" );
   EXPECT_EQ( inFish( "vorn program " VORN_EXAMPLES "/entr" ), VORN_EXAMPLES "/entries.jsonl\n" );
}
