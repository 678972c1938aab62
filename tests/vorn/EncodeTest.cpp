// vorn encode, run for real: images, addresses, and each kind of bad input.
#include "RunVorn.h"
#include "support/Chips.h"

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
                  "000000000002000014000000"
                  "5e" +
                     std::string( 134, '0' ) + '\n' );
   // A MAC address in 48 bits from bit 24.
   for( const std::string mac : { "00:1c:73:00:00:01", "00-1C-73-00-00-01", "001c.7300.0001" } ) {
      expectPrinted( { "encode", "OutAcBank", "--chip", "6", "--variant", "2", "--output", "bytes",
                       "arpLlActionMac=" + mac },
                     "000000"
                     "01000073"
                     "1c00"
                     "000000\n" );
   }
   // An IPv6 address in 128 bits from bit 0.
   expectPrinted( { "encode", "TcamBankTableFormatter", "--chip", "2", "--output", "bytes",
                    "ipv6Dip=2001:db8::1" },
                  "010000000000000000000000b80d0120" + std::string( 128, '0' ) + '\n' );
}

TEST( Encode, maskFillsAField ) {
   expectPrinted(
      { "encode", "EgressPerPortTable", "--chip", "10", "--output", "bytes", "vlanDomain=mask" },
      "c07f00000000000000000000\n" );
   expectPrinted(
      { "encode", "EgressPerPortTable", "--chip", "10", "--output", "bytes", "portEmAccCmd=mask" },
      "00000000007e000000000000\n" );
   expectPrinted(
      { "encode", "TcamBankTableFormatter", "--chip", "10", "--output", "bytes", "ipv6Dip=mask" },
      "000000fc" + std::string( 30, 'f' ) + "03" + std::string( 120, '0' ) + '\n' );
   expectPrinted( action( "2", { "--output=bytes", "action=mask" } ), "ffff0f00\n" );
   expectPrinted( action( "10", { "--output=bytes", "action=mask" } ), "ffffffff00000000\n" );
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
   // The same image in each notation.
   const std::string image = "0123456789abcdef00112233";
   for( const std::string given :
        { "0123456789abcdef00112233", "01 23 45 67 89 ab cd ef 00 11 22 33",
          "0x67452301 0xefcdab89 0x33221100",
          "00000000  01 23 45 67 89 ab cd ef  00 11 22 33              |.#Eg........\"3|\n0000000c",
          "[1, 35, 69, 103, 137, 171, 205, 239, 0, 17, 34, 51]",
          R"({"table":"EgressPerPortTable","chip":10,"image":"0123456789abcdef00112233"})" } ) {
      from( given, {}, image );
   }
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
   const std::string lif( 160, '0' );
   const std::string tagged = std::string( 42, '0' ) + "4009" + std::string( 114, '0' );
   struct Row {
      Arguments arguments;
      std::string message;
   };
   const Row rows[] = {
      { { "EgressPerPortTable", "--from", "" },
        "the image has 0 bytes; an entry of EgressPerPortTable on BCM88690_B0 has 12" },
      { { "EgressPerPortTable", "--from", bytes.substr( 2 ) },
        "the image has 11 bytes; an entry of EgressPerPortTable on BCM88690_B0 has 12" },
      { { "EgressPerPortTable", "--from", bytes + "00" },
        "the image has 13 bytes; an entry of EgressPerPortTable on BCM88690_B0 has 12" },
      { { "EgressPerPortTable", "--from", R"({"table":"LifTable","image":")" + bytes + "\"}" },
        "the image is one of LifTable, not of EgressPerPortTable" },
      { { "EgressPerPortTable", "--from", R"({"chip":13,"image":")" + bytes + "\"}" },
        "the image is one of BCM88800_A0, not of BCM88690_B0" },
      { { "EgressPerPortTable", "--from", R"({"chip":9,"image":")" + bytes + "\"}" },
        "unknown chip 9; allowed: " + Testing::allChipsListed },
      { { "EgressPerPortTable", "--from", R"({"variant":1,"image":")" + bytes + "\"}" },
        "the image is one of variant 1, not of variant 0" },
      { { "LifTable", "--variant", "3", "--from", lif },
        "the image is not one of LifTable on BCM88690_B0 variant 3: its tag resultType is 0x0, not "
        "0x25" },
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

TEST( Encode, unknownTable ) {
   expectRefused( { "encode", "TcamActoinTable", "--chip", "2" },
                  "vorn: unknown table \"TcamActoinTable\"; did you mean TcamActionTable?" );
   expectRefused( { "encode", "tcamactiontable", "--chip", "2" },
                  "vorn: unknown table \"tcamactiontable\"; did you mean TcamActionTable?" );
   const auto outcome = Testing::vorn( { "encode", "zz\nz", "--chip", "2" } );
   EXPECT_TRUE( outcome.err.starts_with( "vorn: unknown table \"zz\\x0az\"; allowed: " ) )
      << outcome.err;
   EXPECT_NE( outcome.err.find( "TcamActionTable" ), std::string::npos );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Encode, unknownChip ) {
   const std::string all = Testing::allChipsListed;
   expectRefused( action( "9" ), "vorn: unknown chip 9; allowed: " + all );
   expectRefused( action( "266" ), "vorn: unknown chip 266; allowed: " + all );
   expectRefused( action( "18446744073709551618" ),
                  "vorn: unknown chip 18446744073709551618; allowed: " + all );
   expectRefused( action( "bcm88690_b0" ),
                  "vorn: unknown chip \"bcm88690_b0\"; did you mean BCM88690_B0?" );
   expectRefused( action( "ChipType(9)" ),
                  "vorn: unknown chip \"ChipType(9)\"; allowed: " + Testing::allChipsNamed );
   expectRefused( action( "-1" ), "vorn: unknown chip \"-1\"; allowed: " + all );
   expectRefused( action( "1,3" ), "vorn: unknown chip \"1,3\"; allowed: " + all );
}

TEST( Encode, aPairThatTheTableLacks ) {
   expectRefused( action( "Software" ),
                  std::string( "vorn: TcamActionTable does not exist on Software; allowed: " ) +
                     Testing::hardwareChipsListed );
   expectRefused( action( "10", { "--variant", "1" } ),
                  "vorn: TcamActionTable has no variant 1 on BCM88690_B0; allowed: 0" );
   expectRefused( action( "10", { "--variant", "256" } ),
                  "vorn: TcamActionTable has no variant 256 on BCM88690_B0; allowed: 0" );
}

TEST( Encode, unknownField ) {
   expectRefused( action( "10", { "actoin=1" } ),
                  "vorn: no field \"actoin\" in TcamActionTable on BCM88690_B0; did you mean "
                  "action?" );
   expectRefused( action( "10", { "ACTION=1" } ),
                  "vorn: no field \"ACTION\" in TcamActionTable on BCM88690_B0; did you mean "
                  "action?" );
   expectRefused( action( "10", { "vsi=1" } ),
                  "vorn: no field \"vsi\" in TcamActionTable on BCM88690_B0; allowed: action" );
   expectRefused( action( "10", { "=1" } ),
                  "vorn: no field \"\" in TcamActionTable on BCM88690_B0; allowed: action" );
}

TEST( Encode, badArgument ) {
   expectRefused( action( "10", { "action" } ),
                  "vorn: bad argument \"action\"; write a field as name=value" );
   expectRefused( action( "10", { "" } ), "vorn: bad argument \"\"; write a field as name=value" );
}

TEST( Encode, aFieldGivenTwice ) {
   expectRefused( action( "10", { "action=1", "action=1" } ), "vorn: field action is given twice" );
}

TEST( Encode, badValue ) {
   expectRefused( action( "10", { "action=-1" } ),
                  "vorn: negative value -1 for action; a value is 0 or more" );
   expectRefused( action( "10", { "action=" } ),
                  "vorn: bad value \"\" for action; write decimal digits, hexadecimal digits after "
                  "0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" );
   expectRefused( action( "10", { "action=1=2" } ),
                  "vorn: bad value \"1=2\" for action; write decimal digits, hexadecimal digits "
                  "after 0x, binary digits after 0b, an IPv4, IPv6 or MAC address, or mask" );
   expectRefused( action( "10", { "action=10.0.0" } ),
                  "vorn: bad value \"10.0.0\" for action; write an IPv4 address as 10.0.0.1 or a "
                  "MAC address as 001c.7300.0001" );
   expectRefused( action( "10", { "--entry", "mask" } ),
                  "vorn: bad number \"mask\" for entry; write decimal digits, hexadecimal digits "
                  "after 0x or binary digits after 0b" );
   expectRefused( { "encode", "LifTable", "--chip", "10", "resultType=mask" },
                  "vorn: field resultType of LifTable on BCM88690_B0 variant 0 is read-only: it "
                  "holds the entry's tag" );
}

TEST( Encode, aValueThatIsTooLarge ) {
   expectRefused( action( "BCM88650_B0", { "action=1048576" } ),
                  "vorn: value 1048576 of field action is too large; its 20 bits in "
                  "TcamActionTable on BCM88650_B0 hold at most 0xfffff" );
   expectRefused( action( "BCM88375_A0", { "action=0x1000000" } ),
                  "vorn: value 0x1000000 of field action is too large; its 24 bits in "
                  "TcamActionTable on BCM88375_A0 hold at most 0xffffff" );
   expectRefused( action( "BCM88690_B0", { "action=0x100000000" } ),
                  "vorn: value 0x100000000 of field action is too large; its 32 bits in "
                  "TcamActionTable on BCM88690_B0 hold at most 0xffffffff" );
   expectRefused( action( "BCM88690_B0", { "action=00:01:00:00:00:00" } ),
                  "vorn: value 00:01:00:00:00:00 of field action is too large; its 32 bits in "
                  "TcamActionTable on BCM88690_B0 hold at most 0xffffffff" );
   expectRefused( action( "BCM88650_B0", { "action=10.0.0.1" } ),
                  "vorn: value 10.0.0.1 of field action is too large; its 20 bits in "
                  "TcamActionTable on BCM88650_B0 hold at most 0xfffff" );
   expectRefused( action( "BCM88690_B0", { "action=0x1" + std::string( 200, '0' ) } ),
                  "vorn: value 0x1" + std::string( 57, '0' ) +
                     "... of field action is too large; its 32 bits in TcamActionTable on "
                     "BCM88690_B0 hold at most 0xffffffff" );
}

TEST( Encode, aPlaceOutOfRange ) {
   expectRefused( action( "10", { "--entry", "2048" } ),
                  "vorn: entry 2048 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 "
                  "to 2047" );
   expectRefused( action( "2", { "--entry", "4294967296" } ),
                  "vorn: entry 4294967296 is out of range in TcamActionTable on BCM88650_B0; "
                  "allowed: 0 to 1023" );
   expectRefused( action( "2", { "--entry", "18446744073709551616" } ),
                  "vorn: entry 18446744073709551616 is out of range; it is at most 4294967295" );
   expectRefused( action( "2", { "--entry", "-1" } ),
                  "vorn: negative value -1 for entry; a value is 0 or more" );
   expectRefused( action( "10", { "--array", "24" } ),
                  "vorn: array 24 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 to "
                  "23" );
   expectRefused( action( "10", { "--array", "65536" } ),
                  "vorn: array 65536 is out of range in TcamActionTable on BCM88690_B0; allowed: 0 "
                  "to 23" );
   expectRefused( action( "10", { "--identifier", "2" } ),
                  "vorn: identifier 2 is out of range in TcamActionTable on BCM88690_B0; allowed: "
                  "0 to 1" );
   expectRefused( action( "13", { "--identifier", "1" } ),
                  "vorn: identifier 1 is out of range in TcamActionTable on BCM88800_A0; allowed: "
                  "0" );
}
