// vorn encode, run for real: images, addresses, and each kind of bad input.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

using Testing::expectRefused;

using Arguments = std::vector<std::string>;

Arguments action( const std::string& chip, const Arguments& more = {} ) {
   Arguments arguments{ "encode", "TcamActionTable", "--chip", chip };
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

void expectPrinted( const Arguments& arguments, const std::string& lines ) {
   const auto outcome = Testing::vorn( arguments );
   EXPECT_EQ( outcome.out, lines );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

constexpr auto chipsOfAction =
   "BCM88650_B0 (2), BCM88660_A0 (3), BCM88375_A0 (4), BCM88375_B0 (5), BCM88470_A0 (6), "
   "BCM88470_B0 (7), BCM88680_A0 (8), BCM88690_B0 (10), BCM88690_V6_B0 (12), BCM88800_A0 (13), "
   "BCM88850_A0 (14), BCM88480_A0 (15), BCM88480_B0 (16)";

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
   const std::string all = std::string( chipsOfAction ) + ", Software (21)";
   expectRefused( action( "9" ), "vorn: unknown chip 9; allowed: " + all );
   expectRefused( action( "266" ), "vorn: unknown chip 266; allowed: " + all );
   expectRefused( action( "18446744073709551618" ),
                  "vorn: unknown chip 18446744073709551618; allowed: " + all );
   expectRefused( action( "bcm88690_b0" ),
                  "vorn: unknown chip \"bcm88690_b0\"; did you mean BCM88690_B0?" );
   expectRefused( action( "ChipType(9)" ),
                  "vorn: unknown chip \"ChipType(9)\"; allowed: BCM88650_B0, BCM88660_A0, "
                  "BCM88375_A0, BCM88375_B0, BCM88470_A0, BCM88470_B0, BCM88680_A0, BCM88690_B0, "
                  "BCM88690_V6_B0, BCM88800_A0, BCM88850_A0, BCM88480_A0, BCM88480_B0, Software" );
   expectRefused( action( "-1" ), "vorn: negative value -1 for chip; a value is 0 or more" );
}

TEST( Encode, aPairThatTheTableLacks ) {
   expectRefused( action( "Software" ),
                  std::string( "vorn: TcamActionTable does not exist on Software; allowed: " ) +
                     chipsOfAction );
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
                  "vorn: bad number \"\" for action; write decimal digits, or 0x and hexadecimal "
                  "digits" );
   expectRefused( action( "10", { "action=1=2" } ),
                  "vorn: bad number \"1=2\" for action; write decimal digits, or 0x and "
                  "hexadecimal digits" );
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
