// vorn decode, run for real: values in lines and as JSON, and each kind of bad image.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

using Arguments = std::vector<std::string>;

Arguments action( const std::string& chip, const Arguments& more ) {
   Arguments arguments{ "decode", "TcamActionTable", "--chip", chip };
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

std::string json( const std::string& chip, const Arguments& image ) {
   Arguments arguments = action( chip, image );
   arguments.insert( arguments.begin() + 1, "--json" );
   const auto outcome = Testing::vorn( arguments );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   return outcome.out;
}

std::string jsonWith( const std::string& value ) {
   return R"({"table":"TcamActionTable","chip":"BCM88650_B0","variant":0,"fields":{"action":")" +
          value + "\"}}\n";
}

} // namespace

TEST( Decode, lines ) {
   const auto outcome = Testing::vorn( action( "BCM88690_B0", { "4523010000000000" } ) );
   EXPECT_EQ( outcome.out, "offset  width  field   value    decimal\n"
                           "     0     32  action  0x12345  74565\n" );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Decode, json ) {
   EXPECT_EQ( json( "2", { "45230100" } ), jsonWith( "0x12345" ) );
   EXPECT_EQ( json( "2", { "00000000" } ), jsonWith( "0x0" ) );
   EXPECT_EQ( json( "2", { "ffffffff" } ), jsonWith( "0xfffff" ) );
}

TEST( Decode, theManyWaysToWriteAnImage ) {
   for( const Arguments& image :
        { Arguments{ "0xABcd0f00" }, Arguments{ "0XABCD0F00" }, Arguments{ "ab", "cd", "0f", "00" },
          Arguments{ "0xab cd\t0f 00 " }, Arguments{ "abcd", "0x0f00" }, Arguments{ "abcd0f" },
          Arguments{ "abcd0f0012345678" } } ) {
      EXPECT_EQ( json( "2", image ), jsonWith( "0xfcdab" ) );
   }
}

TEST( Decode, anImageThatIsTooShort ) {
   Testing::expectRefused( action( "2", { "4523" } ),
                           "vorn: the image has 2 bytes; the fields of TcamActionTable on "
                           "BCM88650_B0 need 3, a whole entry has 4" );
   Testing::expectRefused( action( "10", { "452301" } ),
                           "vorn: the image has 3 bytes; the fields of TcamActionTable on "
                           "BCM88690_B0 need 4, a whole entry has 8" );
   Testing::expectRefused( action( "10", { "" } ),
                           "vorn: the image has 0 bytes; the fields of TcamActionTable on "
                           "BCM88690_B0 need 4, a whole entry has 8" );
}

TEST( Decode, whatIsNoImage ) {
   const auto refused = []( const std::string& image ) {
      Testing::expectRefused( action( "2", { image } ),
                              "vorn: bad image \"" + image +
                                 "\"; write two hexadecimal digits for each byte, entry byte 0 "
                                 "first" );
   };
   refused( "4523010" );
   refused( "4523zz00" );
   refused( "0x" );
   refused( "0x452301000x" );
   refused( "45,23,01,00" );
}

TEST( Decode, whatIsNoPair ) {
   Testing::expectRefused( { "decode", "TcamActionTabel", "--chip", "2", "45230100" },
                           "vorn: unknown table \"TcamActionTabel\"; did you mean "
                           "TcamActionTable?" );
   Testing::expectRefused( action( "BCM88690_V6", { "45230100" } ),
                           "vorn: unknown chip \"BCM88690_V6\"; did you mean BCM88690_B0?" );
   Testing::expectRefused( action( "2", { "--variant", "7", "45230100" } ),
                           "vorn: TcamActionTable has no variant 7 on BCM88650_B0; allowed: 0" );
}
