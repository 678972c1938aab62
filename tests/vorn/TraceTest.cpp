// vorn trace: the trace on standard error, and the verb's own output on standard output.
#include "RunVorn.h"

#include "Verbs.h"

#include <Hardware/TcamActionTable.h>
#include <Oru/Trace.h>

#include <CLI/CLI.hpp>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Arguments = std::vector<std::string>;
using Testing::vorn;

Arguments traced( Arguments arguments ) {
   arguments.insert( arguments.begin(), "trace" );
   return arguments;
}

// For a verb that traces a line at both levels.
Vorn::VerbRun addProbe( CLI::App& ) {
   return []( Vorn::Output& ) {
      using Hardware::TcamActionTable;
      TcamActionTable::fieldCount( 2, 0 );
      U32 address = 0;
      U8 accessType = 0;
      U8 destBlock = 0;
      EXPECT_FALSE(
         TcamActionTable::getSchanAddress( 2, 1, address, accessType, destBlock, 0, 0, 0 ) );
   };
}

} // namespace

TEST( Trace, standardOutputIsTheVerbsOwn ) {
   for( const Arguments& arguments :
        { Arguments{ "tables" }, Arguments{ "encode", "LifTable", "--chip", "10", "vsi=5" },
          Arguments{ "decode", "TcamActionTable", "--chip", "2", "45230100" },
          Arguments{ "identify", "--chip", "2", "45230100" },
          Arguments{ "address", "OutAcBank", "--chip", "8", "--entry", "0-3" },
          Arguments{ "locate", "--chip", "8", "--bounded", "0x7a0000" } } ) {
      const auto plain = vorn( arguments );
      const auto outcome = vorn( traced( arguments ) );
      EXPECT_EQ( outcome.out, plain.out ) << arguments.front();
      EXPECT_EQ( outcome.status, 0 );
      EXPECT_EQ( plain.err, "" );
   }
}

TEST( Trace, aLineForEachCall ) {
   const auto outcome =
      vorn( traced( { "encode", "TcamActionTable", "--chip", "BCM88650_B0", "action=1" } ) );
   EXPECT_TRUE( outcome.err.starts_with( "KelvarVornTunnelMetaInfo/8 VornTunnelMetaInfo:" ) )
      << outcome.err;
   EXPECT_NE( outcome.err.find( ": TcamActionTable chipType: BCM88650_B0 variant: 0\n" ),
              std::string::npos )
      << outcome.err;
   EXPECT_NE( outcome.err.find( ": virtual U16 Hardware::TcamActionTable::fieldWidth(U32) const "
                                "chipType: 2 variant: 0\n" ),
              std::string::npos )
      << outcome.err;
}

TEST( Trace, bothLevels ) {
   CLI::App trace;
   const Vorn::ListedVerb probes[] = { { "probe", "", addProbe } };
   const auto run = Vorn::addTrace( trace, probes, { "probe" } );
   trace.parse( "probe" );
   std::vector<std::string> lines;
   Oru::traceSinkIs( [&]( const std::string& line ) { lines.push_back( line ); } );
   Vorn::Output output;
   run( output );
   Oru::traceSinkIs( {} );
   for( const int level : { 0, 8 } ) {
      Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", level, false );
   }
   EXPECT_EQ( lines, ( std::vector<std::string>{
                        "static U16 Hardware::TcamActionTable::fieldCount(U32, U8) chipType: 2 "
                        "variant: 0",
                        "static bool Hardware::TcamActionTable::getSchanAddress(U32, U8, U32&, "
                        "U8&, U8&, U16, U32, U16) chipType: 2 variant: 1 failed." } ) );
}

TEST( Trace, theStatusIsTheVerbsOwn ) {
   Testing::expectRefused( traced( { "encode", "TcamActionTabel", "--chip", "2" } ),
                           "vorn: unknown table \"TcamActionTabel\"; did you mean "
                           "TcamActionTable?" );
}
