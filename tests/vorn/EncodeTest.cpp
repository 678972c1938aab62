// vorn encode, run for real: images, addresses, and each kind of bad input.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

using Testing::expectPrinted;
using Testing::expectRefused;

using Arguments = std::vector<std::string>;

Arguments action( const std::string& chip, const Arguments& more = {} ) {
   Arguments arguments{ "encode", "TcamActionTable", "--chip", chip };
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

} // namespace

TEST( Encode, imageAndAddress ) {
   expectPrinted( action( "BCM88690_B0", { "--entry", "5", "--array", "2", "--identifier", "1",
                                           "action=0x12345" } ),
                  "image: 45 23 01 00 00 00 00 00\n"
                  "words: 0x00012345 0x00000000\n"
                  "address: 0x1101005\n"
                  "accessType: 6\n"
                  "destBlock: 6\n" );
}

TEST( Encode, theLastEntryAndTheLargestValue ) {
   expectPrinted( action( "2", { "action=1048575", "--array=23", "--entry=0x3ff", "--variant=0" } ),
                  "image: ff ff 0f 00\n"
                  "words: 0x000fffff\n"
                  "address: 0x1815fff\n"
                  "accessType: 0\n"
                  "destBlock: 53\n" );
}

TEST( Encode, aFieldAsWideAsItsWord ) {
   expectPrinted( action( "BCM88850_A0", { "action=4294967295" } ),
                  "image: ff ff ff ff 00 00 00 00\n"
                  "words: 0xffffffff 0x00000000\n"
                  "address: 0x1100000\n"
                  "accessType: 16\n"
                  "destBlock: 36\n" );
}

TEST( Encode, withoutFieldsTheFreshEntry ) {
   expectPrinted( action( "8" ), "image: 00 00 00 00\n"
                                 "words: 0x00000000\n"
                                 "address: 0x1a100000\n"
                                 "accessType: 0\n"
                                 "destBlock: 70\n" );
}

TEST( Encode, notations ) {
   // 10.0.0.1 in 32 bits from bit 41, and a number in 8 bits from bit 97.
   expectPrinted( { "encode", "TcamBankIpv4Tt", "--chip", "10", "--output", "bytes",
                    "ipv4Dip=10.0.0.1", "ipProtocol=0b10_1111" },
                  "0000000000020000140000005e" + std::string( 134, '0' ) + '\n' );
   expectPrinted(
      { "encode", "EgressPerPortTable", "--chip", "10", "--output", "bytes", "vlanDomain=mask" },
      "c07f00000000000000000000\n" );
}

TEST( Encode, formsOfTheOutput ) {
   const Arguments arguments{ "--entry=5", "--array=2", "--identifier=1", "action=0x12345" };
   const auto printed = [&]( const std::string& form ) {
      Arguments all = action( "10", arguments );
      all.insert( all.end(), { "--output", form } );
      const auto outcome = Testing::vorn( all );
      EXPECT_EQ( outcome.err, "" );
      EXPECT_EQ( outcome.status, 0 );
      return outcome.out;
   };
   EXPECT_EQ( printed( "bytes" ), "4523010000000000\n" );
   EXPECT_EQ( printed( "words" ), "0x00012345 0x00000000\n" );
   EXPECT_EQ( printed( "text" ), Testing::vorn( action( "10", arguments ) ).out );
   EXPECT_EQ( printed( "json" ),
              Testing::vorn( action( "10", { "--json", "--entry=5", "--array=2", "--identifier=1",
                                             "action=0x12345" } ) )
                 .out );
   EXPECT_EQ( printed( "json" ),
              R"({"table":"TcamActionTable","chip":"BCM88690_B0","variant":0,"entry":5,"array":2,)"
              R"("identifier":1,"image":"4523010000000000","address":"0x1101005","accessType":6,)"
              R"("destBlock":6})"
              "\n" );
}

TEST( Encode, fromAnImage ) {
   const auto from = []( const std::string& image, const Arguments& fields,
                         const std::string& bytes ) {
      Arguments arguments{
         "encode", "EgressPerPortTable", "--chip", "10", "--output", "bytes", "--from", image
      };
      arguments.insert( arguments.end(), fields.begin(), fields.end() );
      expectPrinted( arguments, bytes + '\n' );
   };
   const std::string ones( 24, 'f' );
   // Every bit that no given field covers stays, between the fields and after them, too.
   from( ones, {}, ones );
   from( ones, { "vlanDomain=0" }, "3f80ffffffffffffffffffff" );
   from( ones, { "portEmAccCmd=0" }, "ffffffffff81ffffffffffff" );
   from( ones, { "vlanDomain=0x101", "portEmAccCmd=1" }, "7fc0ffffff83ffffffffffff" );
   // A line of this program.
   const auto made = Testing::vorn(
      { "encode", "EgressPerPortTable", "--chip", "10", "--output", "json", "vlanDomain=5" } );
   from( made.out, { "portEmAccCmd=0x20" }, "400100000040000000000000" );
}

TEST( Encode, fromAnImageWithItsTag ) {
   // The tag of variant 3 is 0x25, in 6 bits from bit 174.
   const std::string image = std::string( 42, '0' ) + "4009" + std::string( 114, '0' );
   expectPrinted( { "encode", "LifTable", "--chip", "10", "--variant", "3", "--output", "bytes",
                    "--from", image },
                  image + '\n' );
}

TEST( Encode, whatIsNoImageToBeginWith ) {
   const std::string bytes( 24, '0' );
   const std::string tagged = std::string( 42, '0' ) + "4009" + std::string( 114, '0' );
   struct Row {
      Arguments arguments;
      std::string message;
   };
   const Row rows[] = {
      { { "EgressPerPortTable", "--from", bytes.substr( 2 ) },
        "the image has 11 bytes; an entry of EgressPerPortTable on BCM88690_B0 has 12" },
      { { "EgressPerPortTable", "--from", R"({"table":"LifTable","image":")" + bytes + "\"}" },
        "the image is one of LifTable, not of EgressPerPortTable" },
      { { "EgressPerPortTable", "--from", R"({"chip":13,"image":")" + bytes + "\"}" },
        "the image is one of BCM88800_A0, not of BCM88690_B0" },
      { { "EgressPerPortTable", "--from", R"({"variant":1,"image":")" + bytes + "\"}" },
        "the image is one of variant 1, not of variant 0" },
      { { "LifTable", "--from", tagged },
        "the image is not one of LifTable on BCM88690_B0 variant 0: its tag resultType is 0x25, "
        "not 0x3a; did you mean variant 3?" },
   };
   for( const Row& row : rows ) {
      Arguments arguments{ "encode", "--chip", "10" };
      arguments.insert( arguments.end(), row.arguments.begin(), row.arguments.end() );
      expectRefused( arguments, "vorn: --from: " + row.message );
   }
}

TEST( Encode, wrongUsage ) {
   const auto expectUsage = []( const Arguments& more, const std::string& message ) {
      const auto outcome = Testing::vorn( action( "10", more ) );
      EXPECT_TRUE( outcome.err.starts_with( "vorn: " + message ) ) << outcome.err;
      EXPECT_EQ( outcome.out, "" );
      EXPECT_EQ( outcome.status, 2 );
   };
   expectUsage( { "--output", "byte" }, "--output: unknown form \"byte\"; did you mean bytes?" );
   expectUsage( { "--output", "x" },
                "--output: unknown form \"x\"; allowed: text, bytes, words, json" );
   expectUsage( { "--output" }, "--output needs text|bytes|words|json; see vorn encode --help" );
   expectUsage( { "--form", "00" }, "unknown option \"--form\"; did you mean --from?" );
}

TEST( Encode, refused ) {
   const std::string pair = "TcamActionTable on BCM88690_B0";
   const struct {
      std::string argument;
      std::string message;
   } rows[] = {
      { "action", "bad argument \"action\"; write a field as name=value" },
      { "", "bad argument \"\"; write a field as name=value" },
      { "=1", "no field \"\" in " + pair + "; allowed: action" },
      { "actoin=1", "no field \"actoin\" in " + pair + "; did you mean action?" },
      { "action=-1", "negative value -1 for action; a value is 0 or more" },
      { "action=1=2",
        "bad value \"1=2\" for action; write decimal digits, hexadecimal digits after 0x, binary "
        "digits after 0b, an IPv4, IPv6 or MAC address, or mask" },
      { "action=0x1" + std::string( 200, '0' ),
        "value 0x1" + std::string( 57, '0' ) + "... of field action is too large; its 32 bits in " +
           pair + " hold at most 0xffffffff" },
      { "--variant=256", "TcamActionTable has no variant 256 on BCM88690_B0; allowed: 0" },
      { "--entry=mask", "bad number \"mask\" for entry; write decimal digits, hexadecimal digits "
                        "after 0x or binary digits after 0b" },
      { "--entry=2048", "entry 2048 is out of range in " + pair + "; allowed: 0 to 2047" },
      { "--array=65536", "array 65536 is out of range in " + pair + "; allowed: 0 to 23" },
      { "--identifier=2", "identifier 2 is out of range in " + pair + "; allowed: 0 to 1" },
   };
   for( const auto& row : rows ) {
      expectRefused( action( "10", { row.argument } ), "vorn: " + row.message );
   }
   expectRefused( action( "10", { "action=1", "action=1" } ), "vorn: field action is given twice" );
   expectRefused( { "encode", "LifTable", "--chip", "10", "resultType=mask" },
                  "vorn: field resultType of LifTable on BCM88690_B0 variant 0 is read-only: it "
                  "holds the entry's tag" );
}
