// Help, version and wrong usage, run for real.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

void expectWrongUsage( const std::vector<std::string>& arguments, const std::string& message ) {
   const auto outcome = Testing::vorn( arguments );
   EXPECT_EQ( outcome.err.substr( 0, outcome.err.find( '\n' ) ), "vorn: " + message );
   EXPECT_NE( outcome.err.find( "Usage: vorn" ), std::string::npos );
   EXPECT_EQ( outcome.out, "" );
   EXPECT_EQ( outcome.status, 2 );
}

} // namespace

TEST( Usage, helpOfEveryVerbHasAnExample ) {
   for( const std::string verb : { "tables", "encode", "decode", "program" } ) {
      const auto outcome = Testing::vorn( { verb, "--help" } );
      EXPECT_NE( outcome.out.find( "Usage: vorn " + verb ), std::string::npos ) << outcome.out;
      EXPECT_NE( outcome.out.find( "Example:\n  " ), std::string::npos ) << outcome.out;
      EXPECT_EQ( outcome.err, "" );
      EXPECT_EQ( outcome.status, 0 );
   }
   const auto outcome = Testing::vorn( { "--help" } );
   EXPECT_NE( outcome.out.find( "Example:\n  " ), std::string::npos ) << outcome.out;
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Usage, theExampleOfProgramWorks ) {
   const auto help = Testing::vorn( { "program", "--help" } ).out;
   EXPECT_NE( help.find( "A bad line ends the program with exit status 1. The lines before it" ),
              std::string::npos );
   const auto begin = help.find( "echo '" ) + 6;
   const auto line = help.substr( begin, help.find( '\'', begin ) - begin ) + '\n';
   EXPECT_EQ( Testing::vorn( { "program", "-" }, line ).status, 0 ) << line;
}

TEST( Usage, version ) {
   const auto outcome = Testing::vorn( { "--version" } );
   EXPECT_EQ( outcome.out, "vorn " VORN_VERSION "\n" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Usage, helpAndVersionOnAFullDevice ) {
   for( const std::string option : { "--help", "--version" } ) {
      const auto outcome = Testing::vorn( { option }, {}, "/dev/full" );
      EXPECT_EQ( outcome.err, "vorn: cannot write standard output: No space left on device\n" );
      EXPECT_EQ( outcome.status, 1 );
   }
}

TEST( Usage, verbs ) {
   expectWrongUsage( {}, "a verb is required; allowed: tables, encode, decode, program" );
   expectWrongUsage( { "tabels" }, "unknown verb \"tabels\"; did you mean tables?" );
   expectWrongUsage( { "frob", "tables" },
                     "unknown verb \"frob\"; allowed: tables, encode, decode, program" );
}

TEST( Usage, options ) {
   expectWrongUsage( { "--bogus" }, "unknown option \"--bogus\"; allowed: --help, --version" );
   expectWrongUsage( { "encode", "TcamActionTable", "--chop", "2" },
                     "unknown option \"--chop\"; did you mean --chip?" );
   expectWrongUsage( { "encode", "TcamActionTable", "--chip" },
                     "--chip: 1 required NAME|NUMBER missing" );
   expectWrongUsage( { "decode", "TcamActionTable", "--chip", "2", "--chip", "3", "00" },
                     "--chip: At Most 1 required but received 2" );
}

TEST( Usage, missingArguments ) {
   expectWrongUsage( { "encode" }, "TABLE is required" );
   expectWrongUsage( { "encode", "TcamActionTable" }, "--chip is required" );
   expectWrongUsage( { "decode", "TcamActionTable", "--chip", "2" }, "HEX is required" );
   expectWrongUsage( { "program" }, "FILE is required" );
}

TEST( Usage, argumentsTooMany ) {
   expectWrongUsage( { "tables", "extra" }, "The following argument was not expected: extra" );
   expectWrongUsage( { "program", "-", "extra" },
                     "The following argument was not expected: extra" );
}
