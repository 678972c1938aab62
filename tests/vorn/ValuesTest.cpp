// Numbers of up to 512 bits: reading, printing, and what is no number.
#include "Values.h"

#include "Error.h"

#include <gtest/gtest.h>

namespace {

using Vorn::hexOf;
using Vorn::parseValue;
using Vorn::Value;

std::string refusalOf( std::string_view text ) {
   try {
      return "accepted as " + hexOf( parseValue( text, "f" ) );
   } catch( const Vorn::Error& error ) {
      return error.message();
   }
}

constexpr auto notANumber = "; write decimal digits, or 0x and hexadecimal digits";

} // namespace

TEST( Values, decimal ) {
   EXPECT_EQ( hexOf( parseValue( "0", "f" ) ), "0x0" );
   EXPECT_EQ( hexOf( parseValue( "10", "f" ) ), "0xa" );
   EXPECT_EQ( hexOf( parseValue( "0010", "f" ) ), "0xa" );
   EXPECT_EQ( hexOf( parseValue( "9999999999999999999", "f" ) ), "0x8ac7230489e7ffff" );
   EXPECT_EQ( hexOf( parseValue( "18446744073709551615", "f" ) ), "0xffffffffffffffff" );
   EXPECT_EQ( hexOf( parseValue( "18446744073709551616", "f" ) ), "0x10000000000000000" );
   EXPECT_EQ( hexOf( parseValue( "340282366920938463463374607431768211456", "f" ) ),
              "0x1" + std::string( 32, '0' ) );
}

TEST( Values, hexadecimal ) {
   EXPECT_EQ( hexOf( parseValue( "0x0", "f" ) ), "0x0" );
   EXPECT_EQ( hexOf( parseValue( "0xAbCdEf", "f" ) ), "0xabcdef" );
   EXPECT_EQ( hexOf( parseValue( "0X1f", "f" ) ), "0x1f" );
   EXPECT_EQ( hexOf( parseValue( "0x00000000000000000000000000000000001", "f" ) ), "0x1" );
   EXPECT_EQ( hexOf( parseValue( "0x123456789abcdef0123456789abcdef01", "f" ) ),
              "0x123456789abcdef0123456789abcdef01" );
}

TEST( Values, bitsCountToTheHighestSetBit ) {
   EXPECT_EQ( parseValue( "0", "f" ).bits, 0u );
   EXPECT_EQ( parseValue( "1", "f" ).bits, 1u );
   EXPECT_EQ( parseValue( "0xff", "f" ).bits, 8u );
   EXPECT_EQ( parseValue( "0x100", "f" ).bits, 9u );
   EXPECT_EQ( parseValue( "0x10000000000000000", "f" ).bits, 65u );
   EXPECT_EQ( Value( 0 ).bits, 0u );
   EXPECT_EQ( Value( 0x80 ).bits, 8u );
   EXPECT_EQ( Value( ~U64( 0 ) ).bits, 64u );
}

TEST( Values, theFullWidth ) {
   const std::string ones( 128, 'f' );
   EXPECT_EQ( parseValue( "0x" + ones, "f" ).bits, 512u );
   EXPECT_EQ( hexOf( parseValue( "0x" + ones, "f" ) ), "0x" + ones );
   EXPECT_GT( parseValue( "0x1" + ones, "f" ).bits, 512u );
   EXPECT_GT( parseValue( "0x1" + std::string( 5000, '0' ), "f" ).bits, 512u );
   EXPECT_GT( parseValue( std::string( 200, '9' ), "f" ).bits, 512u );
   EXPECT_EQ( parseValue( "0x" + std::string( 5000, '0' ) + ones, "f" ).bits, 512u );
}

TEST( Values, wordZeroIsTheLeastSignificant ) {
   const Value value = parseValue( "0x3"
                                   "0000000000000002"
                                   "0000000000000001",
                                   "f" );
   EXPECT_EQ( value.words[0], 1u );
   EXPECT_EQ( value.words[1], 2u );
   EXPECT_EQ( value.words[2], 0x3u );
   EXPECT_EQ( value.bytes()[0], 1 );
   EXPECT_EQ( value.bytes()[8], 2 );
}

TEST( Values, measureFollowsTheBytes ) {
   Value value;
   value.bytes()[20] = 4;
   value.measure();
   EXPECT_EQ( value.bits, 163u );
   value.bytes()[20] = 0;
   value.measure();
   EXPECT_EQ( value.bits, 0u );
}

TEST( Values, whatIsNoNumber ) {
   for( const auto text : { "", "0x", "x", "12x", "0xg", "1.5", "1e3", " 1", "1 ", "+1", "-", "--1",
                            "1_000", "ff", "0b1" } ) {
      EXPECT_EQ( refusalOf( text ),
                 "bad number \"" + std::string( text ) + "\" for f" + notANumber );
   }
   // A digit that is wrong behind more than 512 bits' worth of right ones.
   EXPECT_EQ( refusalOf( std::string( 200, '1' ) + 'x' ),
              "bad number \"" + std::string( 60, '1' ) + "...\" for f" + notANumber );
}

TEST( Values, negativeNumbers ) {
   EXPECT_EQ( refusalOf( "-5" ), "negative value -5 for f; a value is 0 or more" );
   EXPECT_EQ( refusalOf( "-0x5" ), "negative value -0x5 for f; a value is 0 or more" );
}

TEST( Values, indexesEndAt64Bits ) {
   EXPECT_EQ( Vorn::parseIndex( "18446744073709551615", "entry", 9 ), ~U64( 0 ) );
   try {
      Vorn::parseIndex( "18446744073709551616", "entry", 9 );
      FAIL() << "accepted";
   } catch( const Vorn::Error& error ) {
      EXPECT_EQ( error.message(), "entry 18446744073709551616 is out of range; it is at most 9" );
   }
}

TEST( Values, largest ) {
   EXPECT_EQ( Vorn::largestOf( 1 ), "0x1" );
   EXPECT_EQ( Vorn::largestOf( 20 ), "0xfffff" );
   EXPECT_EQ( Vorn::largestOf( 64 ), "0xffffffffffffffff" );
   EXPECT_EQ( Vorn::largestOf( 65 ), "2^65 - 1" );
}
