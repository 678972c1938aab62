// Numbers of up to 512 bits: every notation they are written in, printing, and what is no number.
#include <Vorn/Error.h>
#include <Vorn/Notation.h>
#include <Vorn/Value.h>

#include <gtest/gtest.h>

namespace {

using Vorn::hexOf;
using Vorn::parseNumber;
using Vorn::parseValue;
using Vorn::Value;

struct Row {
   std::string_view text;
   std::string_view expected;
};

template<class Parse>
std::string refusalOf( Parse parse, std::string_view text ) {
   try {
      return "accepted as " + hexOf( parse( text, "f" ) );
   } catch( const Vorn::Error& error ) {
      return error.message();
   }
}

constexpr Row numbers[] = {
   { "0", "0x0" },
   { "10", "0xa" },
   { "4294967296", "0x100000000" },
   { "9999999999999999999", "0x8ac7230489e7ffff" },
   { "18446744073709551615", "0xffffffffffffffff" },
   { "18446744073709551616", "0x10000000000000000" },
   { "340282366920938463463374607431768211455", "0xffffffffffffffffffffffffffffffff" },
   { "340282366920938463463374607431768211456", "0x100000000000000000000000000000000" },
   { "1_000_000", "0xf4240" },
   { "0x0", "0x0" },
   { "0xAbCdEf", "0xabcdef" },
   { "0X1f", "0x1f" },
   { "0xdead_beef", "0xdeadbeef" },
   { "0xffffffffffffffff", "0xffffffffffffffff" },
   { "0x1_0000000000000000", "0x10000000000000000" },
   { "0x00000000000000000000000000000000001", "0x1" },
   { "0x123456789abcdef0123456789abcdef01", "0x123456789abcdef0123456789abcdef01" },
   { "0b0", "0x0" },
   { "0b1", "0x1" },
   { "0B101", "0x5" },
   { "0b1010_0101", "0xa5" },
   { "0b0000000000000000000000000000000000000000000000000000000000000000000011", "0x3" },
   { "0b1111111111111111111111111111111111111111111111111111111111111111", "0xffffffffffffffff" },
   { "0b10000000000000000000000000000000000000000000000000000000000000000", "0x10000000000000000" },
};

constexpr Row addresses[] = {
   { "0.0.0.0", "0x0" },
   { "0.0.0.1", "0x1" },
   { "10.0.0.1", "0xa000001" },
   { "192.168.254.3", "0xc0a8fe03" },
   { "255.255.255.255", "0xffffffff" },
   { "::", "0x0" },
   { "::1", "0x1" },
   { "1::", "0x10000000000000000000000000000" },
   { "a::b", "0xa000000000000000000000000000b" },
   { "2001:db8::1", "0x20010db8000000000000000000000001" },
   { "2001:DB8:1:2:3:4:5:6", "0x20010db8000100020003000400050006" },
   { "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff", "0xffffffffffffffffffffffffffffffff" },
   { "::ffff:10.0.0.1", "0xffff0a000001" },
   { "10.0.0.2", "0xa000002" },
   { "00:00:00:00:00:00", "0x0" },
   { "00:1c:73:00:00:01", "0x1c73000001" },
   { "FF:ff:Ff:fF:ff:fe", "0xfffffffffffe" },
   { "00-1c-73-00-00-01", "0x1c73000001" },
   { "12-34-56-78-90-12", "0x123456789012" },
   { "001c.7300.0001", "0x1c73000001" },
   { "1234.5678.9012", "0x123456789012" },
   // Begins like a binary number.
   { "0b:00:00:00:00:01", "0xb0000000001" },
   { "0b-11-11-11-11-11", "0xb1111111111" },
   { "0b11.0000.0000", "0xb1100000000" },
   { "0b::", "0xb0000000000000000000000000000" },
   // Eight groups are an IPv6 address, and six with :: are one, too.
   { "00:11:22:33:44:55:66:77", "0x11002200330044005500660077" },
   { "10:20:30:40::60", "0x100020003000400000000000000060" },
   { "11:22:33::55:66", "0x110022003300000000000000550066" },
};

constexpr auto anyNumber =
   "; write decimal digits, hexadecimal digits after 0x or binary digits after 0b";
constexpr auto anyValue =
   "; write decimal digits, hexadecimal digits after 0x, binary digits after "
   "0b, an IPv4, IPv6 or MAC address, or mask";
constexpr auto colons =
   "; write a MAC address as 00:1c:73:00:00:01 or an IPv6 address as 2001:db8::1";
constexpr auto dots = "; write an IPv4 address as 10.0.0.1 or a MAC address as 001c.7300.0001";
constexpr auto dashes = "; write a MAC address as 00-1c-73-00-00-01";

// Neither numbers nor values.
constexpr Row noNumbers[] = {
   { "x", "" },
   { "+", "" },
   { "_", "" },
   { "*", "" },
   { "0x", "; write hexadecimal digits after 0x" },
   { "0xg", "; write hexadecimal digits after 0x" },
   { "0x-1", "; write hexadecimal digits after 0x" },
   { "0b", "; did you mean 0x0b?" },
   { "0b2", "; did you mean 0x0b2?" },
   { "0x1:2", "; write hexadecimal digits after 0x" },
   { "0x1.5", "; write hexadecimal digits after 0x" },
   { "0bz", "; write binary digits after 0b" },
   { "12x", "" },
   { "ff", "; did you mean 0xff?" },
   { "1e3", "; did you mean 0x1e3?" },
   { " 1", "; did you mean 1?" },
   { "1 ", "; did you mean 1?" },
   { "+1", "; did you mean 1?" },
   { "1,000", "; did you mean 1000?" },
   { "1'000'000", "; did you mean 1000000?" },
   { "1,3", "" },
   { "1,0000", "" },
   { "1,000,", "" },
   { "_1", "; did you mean 1?" },
   { "1_", "; did you mean 1?" },
   { "1__0", "; did you mean 10?" },
   { "0x_1", "; did you mean 0x1?" },
   { "0b1_", "; did you mean 0b1?" },
};

constexpr Row noAddresses[] = {
   { "1.5", dots },
   { "1.2.3", dots },
   { "1.2.3.4.5", dots },
   { "1.2.3.256", dots },
   { "1.2.3.04", dots },
   { "1.2.3.", dots },
   { "1.2.3.4 ", dots },
   { "001c.7300.001", dots },
   { "001c.7300.000g", dots },
   { "10.0.0.0/8", "; write an address without a prefix length" },
   { "2001:db8::/32", "; write an address without a prefix length" },
   { ":", colons },
   { ":::", colons },
   { "1:2:3:4:5:6", colons },
   { "0:1c:73:0:0:1", colons },
   { "00:1c:73:00:00:1", colons },
   { "00:1c:73:00:00", colons },
   { "00:1c:73:00:00:01:02", colons },
   { "00:1c:73:00:00:0g", colons },
   { "00:1c:73-00-00-01", colons },
   { "001c:7300:0001", colons },
   { "1::2::3", colons },
   { "12345::", colons },
   { "fe80::1%eth0", colons },
   { "[::1]", colons },
   { "00-1c-73-00-00-1", dashes },
   { "00-1c-73-00-00-01-02", dashes },
   { "001c-7300-0001", dashes },
   { "1-2", dashes },
   { "-", dashes },
   { "-x", dashes },
   { "--1", dashes },
   { "mask ", "; did you mean mask?" },
   { "maks", "; did you mean mask?" },
   { "MASK", "; did you mean mask?" },
   { "ones", anyValue },
   { "", anyValue },
};

constexpr auto ones512 =
   "134078079299425970995740249982058461274793658205923933777235614437217640300735469768018742981"
   "66903427690031858186486050853753882811946569946433649006084095";

TEST( Notations, WriteWhatTheyRead ) {
   using Vorn::Notation;
   using Vorn::textOf;
   const struct {
      std::string_view value;
      Notation notation;
      std::string_view expected;
   } rows[] = {
      { "0", Notation::decimal, "0" },
      { "2000", Notation::decimal, "2000" },
      { "0xffffffffffffffff", Notation::decimal, "18446744073709551615" },
      { "0x10000000000000000", Notation::decimal, "18446744073709551616" },
      // Digits that are zeroes where the number is taken apart.
      { "1000000000000000000000000007", Notation::decimal, "1000000000000000000000000007" },
      { "0xabcdef", Notation::hexadecimal, "0xabcdef" },
      { "0", Notation::binary, "0b0" },
      { "10", Notation::binary, "0b1010" },
      { "0x8000000000000001", Notation::binary,
        "0b1000000000000000000000000000000000000000000000000000000000000001" },
      { "0x0a000001", Notation::ipv4, "10.0.0.1" },
      { "0x20010db8000000000000000000000001", Notation::ipv6, "2001:db8::1" },
      { "0x001c73000001", Notation::mac, "00:1c:73:00:00:01" },
   };
   for( const auto& row : rows ) {
      EXPECT_EQ( textOf( parseValue( row.value, "f" ), row.notation ), row.expected );
      EXPECT_EQ( parseValue( row.expected, "f" ), parseValue( row.value, "f" ) ) << row.expected;
   }
   EXPECT_EQ( textOf( Value::onesOf( 512 ), Notation::decimal ), ones512 );
}

TEST( Notations, AreThoseThatFitAField ) {
   const auto textFor = []( unsigned width ) {
      std::string text;
      for( const auto notation : Vorn::notationsOf( width ) ) {
         text += std::string( Vorn::notationNames()[static_cast<std::size_t>( notation )] ) + ' ';
      }
      return text;
   };
   EXPECT_EQ( textFor( 15 ), "decimal hexadecimal binary " );
   EXPECT_EQ( textFor( 32 ), "decimal hexadecimal binary IPv4 " );
   EXPECT_EQ( textFor( 48 ), "decimal hexadecimal binary MAC " );
   EXPECT_EQ( textFor( 128 ), "decimal hexadecimal binary IPv6 " );
   EXPECT_EQ( Vorn::notationNamed( "MAC" ), Vorn::Notation::mac );
   EXPECT_EQ(
      refusalOf( []( auto text, auto ) { return Value( int( Vorn::notationNamed( text ) ) ); },
                 "ipv4" ),
      "unknown notation \"ipv4\"; did you mean IPv4?" );
   EXPECT_EQ( refusalOf(
                 []( auto, auto ) -> Value {
                    return Value(
                       Vorn::textOf( Value( 0x100000000 ), Vorn::Notation::ipv4 ).size() );
                 },
                 "" ),
              "0x100000000 is no IPv4 address, which has 32 bits" );
}

} // namespace

TEST( Notations, numbers ) {
   for( const Row& row : numbers ) {
      EXPECT_EQ( refusalOf( parseNumber, row.text ), "accepted as " + std::string( row.expected ) );
      EXPECT_EQ( refusalOf( parseValue, row.text ), "accepted as " + std::string( row.expected ) );
   }
}

TEST( Notations, addresses ) {
   for( const Row& row : addresses ) {
      SCOPED_TRACE( row.text );
      EXPECT_EQ( refusalOf( parseValue, row.text ), "accepted as " + std::string( row.expected ) );
      EXPECT_TRUE( refusalOf( parseNumber, row.text ).starts_with( "bad number " ) );
   }
}

TEST( Notations, bitsCountToTheHighestSetBit ) {
   EXPECT_EQ( parseValue( "0", "f" ).bits(), 0u );
   EXPECT_EQ( parseValue( "1", "f" ).bits(), 1u );
   EXPECT_EQ( parseValue( "0xff", "f" ).bits(), 8u );
   EXPECT_EQ( parseValue( "0x100", "f" ).bits(), 9u );
   EXPECT_EQ( parseValue( "0x10000000000000000", "f" ).bits(), 65u );
   EXPECT_EQ( parseValue( "128.0.0.0", "f" ).bits(), 32u );
   EXPECT_EQ( parseValue( "80:00:00:00:00:00", "f" ).bits(), 48u );
   EXPECT_EQ( parseValue( "8000::", "f" ).bits(), 128u );
   EXPECT_EQ( Value( 0 ).bits(), 0u );
   EXPECT_EQ( Value( 0x80 ).bits(), 8u );
   EXPECT_EQ( Value( ~U64( 0 ) ).bits(), 64u );
}

TEST( Notations, theFullWidth ) {
   const std::string ones( 128, 'f' );
   EXPECT_EQ( parseValue( "0x" + ones, "f" ).bits(), 512u );
   EXPECT_EQ( hexOf( parseValue( "0x" + ones, "f" ) ), "0x" + ones );
   EXPECT_GT( parseValue( "0x1" + ones, "f" ).bits(), 512u );
   EXPECT_GT( parseValue( "0x1" + std::string( 5000, '0' ), "f" ).bits(), 512u );
   EXPECT_GT( parseValue( std::string( 200, '9' ), "f" ).bits(), 512u );
   EXPECT_EQ( parseValue( "0x" + std::string( 5000, '0' ) + ones, "f" ).bits(), 512u );
   EXPECT_EQ( hexOf( parseValue( "0b" + std::string( 512, '1' ), "f" ) ), "0x" + ones );
   EXPECT_GT( parseValue( "0b1" + std::string( 512, '0' ), "f" ).bits(), 512u );
}

// n ones, and a one before n - 1 zeros.
TEST( Notations, everyWidth ) {
   for( unsigned n = 1; n <= 512; ++n ) {
      const std::string zeros( n - 1, '0' );
      EXPECT_EQ( parseValue( "0b" + std::string( n, '1' ), "f" ).bits(), n );
      EXPECT_EQ( parseValue( "0b1" + zeros, "f" ).bits(), n );
      const std::string hex = hexOf( parseValue( "0b1" + zeros, "f" ) );
      EXPECT_EQ( hex,
                 std::string( "0x" ) + "1248"[( n - 1 ) % 4] + std::string( ( n - 1 ) / 4, '0' ) );
      EXPECT_EQ( parseValue( hex, "f" ).bits(), n );
   }
}

TEST( Notations, wordZeroIsTheLeastSignificant ) {
   const Value value = parseValue( "0x3"
                                   "0000000000000002"
                                   "0000000000000001",
                                   "f" );
   EXPECT_EQ( value.word( 0 ), 1u );
   EXPECT_EQ( value.word( 1 ), 2u );
   EXPECT_EQ( value.word( 2 ), 0x3u );
}

TEST( Notations, whatIsNoNumber ) {
   for( const Row& row : noNumbers ) {
      EXPECT_EQ( refusalOf( parseNumber, row.text ),
                 "bad number \"" + std::string( row.text ) + "\" for f" +
                    std::string( row.expected.empty() ? anyNumber : row.expected ) );
   }
   // A wrong digit after more than 512 bits' worth of right ones.
   EXPECT_EQ( refusalOf( parseNumber, std::string( 200, '1' ) + 'x' ),
              "bad number \"" + std::string( 60, '1' ) + "...\" for f" + anyNumber );
}

TEST( Notations, whatIsNoValue ) {
   for( const Row& row : noNumbers ) {
      EXPECT_EQ( refusalOf( parseValue, row.text ),
                 "bad value \"" + std::string( row.text ) + "\" for f" +
                    std::string( row.expected.empty() ? anyValue : row.expected ) );
   }
   for( const Row& row : noAddresses ) {
      EXPECT_EQ( refusalOf( parseValue, row.text ), "bad value \"" + std::string( row.text ) +
                                                       "\" for f" + std::string( row.expected ) );
   }
   EXPECT_EQ( refusalOf( parseValue, std::string_view( "10.0.0.1\0", 9 ) ),
              "bad value \"10.0.0.1\\x00\" for f" + std::string( dots ) );
   EXPECT_EQ( refusalOf( parseValue, std::string( 100000, ':' ) ),
              "bad value \"" + std::string( 60, ':' ) + "...\" for f" + colons );
}

TEST( Notations, negativeNumbers ) {
   EXPECT_EQ( refusalOf( parseNumber, "-5" ), "negative value -5 for f; a value is 0 or more" );
   EXPECT_EQ( refusalOf( parseValue, "-5" ), "negative value -5 for f; a value is 0 or more" );
   EXPECT_EQ( refusalOf( parseValue, "-0x5" ), "negative value -0x5 for f; a value is 0 or more" );
}

TEST( Notations, indexesEndAt64Bits ) {
   EXPECT_EQ( Vorn::parseIndex( "18446744073709551615", "entry", 9 ), ~U64( 0 ) );
   EXPECT_EQ( Vorn::parseIndex( "0b1_01", "entry", 9 ), 5u );
   const auto index = []( std::string_view text, std::string_view name ) {
      return Value( Vorn::parseIndex( text, name, 9 ) );
   };
   EXPECT_EQ( refusalOf( index, "18446744073709551616" ),
              "f 18446744073709551616 is out of range; it is at most 9" );
   EXPECT_EQ( refusalOf( index, "10.0.0.1" ),
              "bad number \"10.0.0.1\" for f" + std::string( anyNumber ) );
}

TEST( Notations, largest ) {
   EXPECT_EQ( Vorn::largestOf( 1 ), "0x1" );
   EXPECT_EQ( Vorn::largestOf( 20 ), "0xfffff" );
   EXPECT_EQ( Vorn::largestOf( 64 ), "0xffffffffffffffff" );
   EXPECT_EQ( Vorn::largestOf( 65 ), "2^65 - 1" );
}
