// Help, version and wrong usage, run for real.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

void expectWrongUsage( const std::vector<std::string>& arguments, const std::string& message ) {
   const auto outcome = Testing::vorn( arguments );
   EXPECT_EQ( outcome.err, "vorn: " + message + '\n' );
   EXPECT_EQ( outcome.out, "" );
   EXPECT_EQ( outcome.status, 2 );
}

} // namespace

TEST( Usage, helpOfEveryVerbHasAnExample ) {
   for( const std::string verb :
        { "tables", "layout", "encode", "decode", "program", "identify", "address", "locate",
          "export", "reference", "explore", "trace" } ) {
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
   expectWrongUsage(
      {}, "a verb is required; allowed: tables, field, layout, encode, decode, diff, "
          "stats, program, identify, address, locate, export, reference, explore, trace" );
   expectWrongUsage( { "tabels" }, "unknown verb \"tabels\"; did you mean tables?" );
   expectWrongUsage(
      { "frob", "tables" },
      "unknown verb \"frob\"; allowed: tables, field, layout, encode, decode, diff, "
      "stats, program, identify, address, locate, export, reference, explore, trace" );
}

TEST( Usage, options ) {
   expectWrongUsage( { "--bogus" }, "unknown option \"--bogus\"; allowed: --help, --version" );
   expectWrongUsage( { "encode", "TcamActionTable", "--chop", "2" },
                     "unknown option \"--chop\"; did you mean --chip?" );
   expectWrongUsage( { "encode", "TcamActionTable", "--chip" },
                     "--chip needs NAME|NUMBER; see vorn encode --help" );
   expectWrongUsage( { "decode", "TcamActionTable", "--chip", "2", "--chip", "3", "00" },
                     "--chip is given twice; see vorn decode --help" );
}

TEST( Usage, missingArguments ) {
   expectWrongUsage( { "encode" }, "TABLE is required; see vorn encode --help" );
   expectWrongUsage( { "encode", "TcamActionTable" },
                     "--chip is required; see vorn encode --help" );
   expectWrongUsage( { "decode", "TcamActionTable", "--chip", "2" },
                     "IMAGE or --file is required; see vorn decode --help" );
   expectWrongUsage( { "program" }, "FILE is required; see vorn program --help" );
}

TEST( Usage, argumentsTooMany ) {
   expectWrongUsage( { "tables", "extra" },
                     "unexpected argument \"extra\"; see vorn tables --help" );
}
