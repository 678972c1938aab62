// Conditions on fields: what each form means, and what is refused and at which column.
#include "Pairs.h"

#include <Vorn/Compose.h>
#include <Vorn/Fields.h>
#include <Vorn/Filter.h>
#include <Vorn/Images.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using Testing::errorOf;
using Vorn::Filter;

const Vorn::Layout& lif() {
   static const Vorn::Layout layout( "LifTable", "BCM88690_B0" );
   return layout;
}

// A key of an IPv6 address, of 128 bits.
const Vorn::Layout& ipv6() {
   static const Vorn::Layout layout( "TcamBankTableFormatter", "BCM88690_B0" );
   return layout;
}

// Whether an entry with these values fulfils the condition.
bool holds( std::string_view condition, std::initializer_list<Vorn::FieldValue> values ) {
   return Filter( condition, lif() ).matches( Vorn::compose( lif(), values ) );
}

} // namespace

TEST( Filter, comparisons ) {
   for( const U64 vsi : { 0u, 1999u, 2000u, 2001u } ) {
      EXPECT_EQ( holds( "vsi == 2000", { { "vsi", vsi } } ), vsi == 2000 );
      EXPECT_EQ( holds( "vsi != 2000", { { "vsi", vsi } } ), vsi != 2000 );
      EXPECT_EQ( holds( "vsi < 2000", { { "vsi", vsi } } ), vsi < 2000 );
      EXPECT_EQ( holds( "vsi <= 2000", { { "vsi", vsi } } ), vsi <= 2000 );
      EXPECT_EQ( holds( "vsi > 2000", { { "vsi", vsi } } ), vsi > 2000 );
      EXPECT_EQ( holds( "vsi >= 2000", { { "vsi", vsi } } ), vsi >= 2000 );
      EXPECT_EQ( holds( "2000 < vsi", { { "vsi", vsi } } ), 2000 < vsi );
      EXPECT_EQ( holds( "0x7d0<=vsi", { { "vsi", vsi } } ), 2000 <= vsi );
      EXPECT_EQ( holds( "0b111_1101_0000 > vsi", { { "vsi", vsi } } ), 2000 > vsi );
      EXPECT_EQ( holds( "vsi >= 0", { { "vsi", vsi } } ), true );
      EXPECT_EQ( holds( "vsi", { { "vsi", vsi } } ), vsi != 0 );
      EXPECT_EQ( holds( "!vsi", { { "vsi", vsi } } ), vsi == 0 );
      EXPECT_EQ( holds( "!(vsi == 2000)", { { "vsi", vsi } } ), vsi != 2000 );
      EXPECT_EQ( holds( "not vsi == 2000", { { "vsi", vsi } } ), vsi != 2000 );
   }
}

TEST( Filter, setsRangesAndMasks ) {
   for( U64 vsi = 0; vsi < 300; ++vsi ) {
      EXPECT_EQ( holds( "vsi in 100..200", { { "vsi", vsi } } ), vsi >= 100 && vsi <= 200 );
      EXPECT_EQ( holds( "vsi not in 100 .. 200", { { "vsi", vsi } } ), vsi < 100 || vsi > 200 );
      const bool isIn = vsi == 1 || vsi == 5 || ( vsi >= 100 && vsi <= 200 );
      EXPECT_EQ( holds( "vsi in { 1, 0x5, 100..0xc8 }", { { "vsi", vsi } } ), isIn );
      EXPECT_EQ( holds( "vsi in (1,5,100..200)", { { "vsi", vsi } } ), isIn );
      EXPECT_EQ( holds( "vsi in [200..200]", { { "vsi", vsi } } ), vsi == 200 );
      EXPECT_EQ( holds( "vsi & 0xf == 3", { { "vsi", vsi } } ), vsi % 16 == 3 );
      EXPECT_EQ( holds( "( vsi & 0xf ) != 3", { { "vsi", vsi } } ), vsi % 16 != 3 );
      EXPECT_EQ( holds( "vsi&0xf in 3..4", { { "vsi", vsi } } ), vsi % 16 == 3 || vsi % 16 == 4 );
      EXPECT_EQ( holds( "vsi & 0x80", { { "vsi", vsi } } ), vsi / 128 % 2 == 1 );
      EXPECT_EQ( holds( "(vsi) & 0xf >= 9", { { "vsi", vsi } } ), vsi % 16 >= 9 );
      EXPECT_EQ( holds( "!vsi & 0x80", { { "vsi", vsi } } ), vsi / 128 % 2 == 0 );
   }
}

TEST( Filter, twoFields ) {
   for( const U64 one : { 99u, 100u, 101u } ) {
      const auto is = [&]( std::string_view condition ) {
         return holds( condition, { { "vsi", one }, { "vlanEditVid1", 100 } } );
      };
      EXPECT_EQ( is( "vsi == vlanEditVid1" ), one == 100 );
      EXPECT_EQ( is( "vsi != vlanEditVid1" ), one != 100 );
      EXPECT_EQ( is( "vsi < vlanEditVid1" ), one < 100 );
      EXPECT_EQ( is( "vsi <= (vlanEditVid1)" ), one <= 100 );
      EXPECT_EQ( is( "vsi > vlanEditVid1" ), one > 100 );
      EXPECT_EQ( is( "vsi >= vlanEditVid1" ), one >= 100 );
      EXPECT_EQ( is( "vsi & 0xfe == vlanEditVid1 & 0xfe" ), one != 99 );
      EXPECT_EQ( is( "!( vsi < vlanEditVid1 )" ), one >= 100 );
   }
}

TEST( Filter, parts ) {
   const std::string_view asked = "vsi >= 2000 && (learnEnable == 1 || vlanEditVid1 in 100..200)";
   EXPECT_TRUE( holds( asked, { { "vsi", 2000 }, { "learnEnable", 1 } } ) );
   EXPECT_TRUE( holds( asked, { { "vsi", 2000 }, { "vlanEditVid1", 200 } } ) );
   EXPECT_FALSE( holds( asked, { { "vsi", 2000 }, { "vlanEditVid1", 201 } } ) );
   EXPECT_FALSE( holds( asked, { { "vsi", 1999 }, { "learnEnable", 1 } } ) );
   // && binds tighter than ||, and all of a chain count.
   EXPECT_TRUE( holds( "learnEnable or vsi == 1 and vsi == 2", { { "learnEnable", 1 } } ) );
   EXPECT_FALSE( holds( "(learnEnable or vsi == 1) and vsi == 2", { { "learnEnable", 1 } } ) );
   EXPECT_TRUE( holds( "vsi == 1 || vsi == 2 || vsi == 3", { { "vsi", 3 } } ) );
   EXPECT_FALSE( holds( "vsi >= 1 && vsi >= 2 && vsi >= 4", { { "vsi", 3 } } ) );
   const Filter filter( "vsi == 1 && !learnEnable || vsi > vlanEditVid1", lif() );
   ASSERT_EQ( filter.fields().size(), 3u );
   EXPECT_EQ( filter.fields()[0].name, "vsi" );
   EXPECT_EQ( filter.fields()[1].name, "learnEnable" );
   EXPECT_EQ( filter.fields()[2].name, "vlanEditVid1" );
   EXPECT_EQ( filter.layout(), lif() );
}

TEST( Filter, anyWidth ) {
   const auto holdsOf = [&]( std::string_view condition, const char* address ) {
      const auto image =
         Vorn::compose( ipv6(), { { "ipv6Dip", Vorn::parseValue( address, "ipv6Dip" ) } } );
      return Filter( condition, ipv6() ).matches( image );
   };
   EXPECT_TRUE( holdsOf( "ipv6Dip == 2001:db8::1", "2001:db8::1" ) );
   EXPECT_FALSE( holdsOf( "ipv6Dip == 2001:db8::1", "2001:db8::2" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip in 2001:db8::..2001:db8::ffff", "2001:db8::ffff" ) );
   EXPECT_FALSE( holdsOf( "ipv6Dip in 2001:db8::..2001:db8::ffff", "2001:db8::1:0" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip & ffff:ffff:: == 2001:db8::", "2001:db8:5::9" ) );
   EXPECT_FALSE( holdsOf( "ipv6Dip & ffff:ffff:: == 2001:db8::", "2001:db9::" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip & ::ff == ::12", "fe80::3412" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip < 2001:db8::1", "2001:db8::" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip not in { ::1, fe80::1 }", "fe80::2" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip > vrf", "::1:0:0:0:1" ) );
   EXPECT_TRUE( holdsOf( "ipv6Dip", "8000::" ) );
   EXPECT_TRUE( holds( "vsi == 0.0.7.208", { { "vsi", 2000 } } ) );
   EXPECT_TRUE( holds( "vsi == 00:00:00:00:07:d0", { { "vsi", 2000 } } ) );
   EXPECT_TRUE( holds( "vsi in { 00-00-00-00-07-d0 }", { { "vsi", 2000 } } ) );
   EXPECT_TRUE( holds( "vsi in 0.0.7.0..0.0.8.0", { { "vsi", 2000 } } ) );
}

// Conditions made at random mean what a walk over the same tree says.
namespace {

struct Made {
   std::string text;
   bool holds;
};

class Maker {
public:
   explicit Maker( unsigned seed ) : random_( seed ) {
      for( U64& value : values_ ) {
         value = below( 8 );
      }
   }

   std::vector<U8> image() const {
      return Vorn::compose( lif(), { { "vsi", values_[0] },
                                     { "vlanEditVid1", values_[1] },
                                     { "vlanEditVid2", values_[2] } } );
   }

   Made make( unsigned depth ) {
      if( depth == 0 ) {
         return test();
      }
      const Made left = make( depth - 1 );
      switch( below( 4 ) ) {
      case 0: {
         const Made right = make( depth - 1 );
         return { '(' + left.text + " && " + right.text + ')', left.holds && right.holds };
      }
      case 1: {
         const Made right = make( depth - 1 );
         return { '(' + left.text + " || " + right.text + ')', left.holds || right.holds };
      }
      case 2:
         return { "!(" + left.text + ')', !left.holds };
      default: {
         const Made middle = make( depth - 1 );
         const Made right = make( depth - 1 );
         return { left.text + " and " + middle.text + " and not (" + right.text + ')',
                  left.holds && middle.holds && !right.holds };
      }
      }
   }

private:
   Made test() {
      static const char* const names[] = { "vsi", "vlanEditVid1", "vlanEditVid2" };
      const auto which = below( 3 );
      const U64 value = values_[which];
      const std::string name = names[which];
      const U64 other = below( 8 );
      const std::string number = std::to_string( other );
      switch( below( 6 ) ) {
      case 0:
         return { name + " == " + number, value == other };
      case 1:
         return { name + " < " + std::to_string( other + 1 ), value <= other };
      case 2:
         return { name + " > " + number, value > other };
      case 3:
         return { name + " not in { " + number + ", 3 }", value != other && value != 3 };
      case 4:
         return { name + " & 5 != 4", ( value & 5 ) != 4 };
      default: {
         const auto second = below( 3 );
         return { name + " >= " + names[second], value >= values_[second] };
      }
      }
   }

   unsigned below( unsigned end ) { return static_cast<unsigned>( random_() % end ); }

   std::mt19937 random_;
   U64 values_[3];
};

} // namespace

TEST( Filter, whatIsMadeAtRandom ) {
   unsigned fulfilled = 0;
   for( unsigned seed = 0; seed < 2000; ++seed ) {
      Maker maker( seed );
      // `and` after a condition with || in it needs the parentheses that each has.
      const Made made = maker.make( seed % 5 );
      EXPECT_EQ( Filter( made.text, lif() ).matches( maker.image() ), made.holds ) << made.text;
      fulfilled += made.holds;
   }
   EXPECT_GT( fulfilled, 300u );
   EXPECT_LT( fulfilled, 1700u );
}

TEST( Filter, shortImages ) {
   // vsi has the lowest bits, and is all that is looked at.
   const Filter filter( "vsi == 5", lif() );
   const auto image = Vorn::compose( lif(), { { "vsi", 5 } } );
   const std::size_t needed = ( lif().field( "vsi" ).end() + 7 ) / 8;
   EXPECT_TRUE( filter.matches( std::span( image ).first( needed ) ) );
   EXPECT_NE( errorOf( [&] { filter.matches( std::span( image ).first( needed - 1 ) ); } ),
              "none" );
}

TEST( Filter, refused ) {
   struct Refused {
      std::string condition;
      std::size_t column;
      std::string_view part; // of the message
   };
   const std::vector<Refused> cases{
      { "", 1, "the condition is empty" },
      { "  \t", 4, "the condition is empty" },
      { "vsi =  5", 5, "bad sign \"=\"; did you mean ==?" },
      { "vsi | 5", 5, "bad sign \"|\"; did you mean ||?" },
      { "~vsi", 1, "bad sign \"~\"; did you mean !?" },
      { "vsi === 5", 7, "bad sign \"=\"" },
      { "vsi <> 5", 6, "unexpected \">\"; a field or a value has to stand here" },
      { "vsi == 5 ;", 10, "bad character \";\"" },
      { "vsi % 2", 5, "bad character \"%\"" },
      { "vsi == \"5\"", 8, "bad character" },
      { "vsi ==", 7, "unexpected end; a field or a value has to stand here" },
      { "== 5", 1, "unexpected \"==\"" },
      { "vsi 5", 5, "unexpected \"5\"; && or || has to stand before it" },
      { "vsi == 5 learnEnable", 10, "unexpected \"learnEnable\"; && or ||" },
      { "vsi == 5 &&", 12, "unexpected end" },
      { "&& vsi", 1, "unexpected \"&&\"" },
      { "vsi || || vsi", 8, "unexpected \"||\"" },
      { "vsi == 5 and", 13, "unexpected end" },
      { "(vsi == 5", 1, "\"(\" is not closed" },
      { "vsi == 5)", 9, "nothing is open that \")\" closes" },
      { "()", 2, "nothing stands in the parentheses" },
      { "(vsi == 5]", 10, "unexpected \"]\"; did you mean )?" },
      { "{vsi == 5}", 1, "unexpected \"{\"; a set stands after `in`" },
      { "5", 1, "value 5 is compared with nothing" },
      { "vsi && 5", 8, "value 5 is compared with nothing" },
      { "!5", 2, "value 5 is compared with nothing" },
      { "5 == 5", 1, "two values are compared" },
      { "100 <= vsi <= 200", 12, "comparisons can't be chained" },
      { "vsi == 5 == 6", 10, "comparisons can't be chained" },
      { "vsi == 5..6", 9, "a range is not compared with \"==\"" },
      { "vsi in", 7, "unexpected end; a value has to stand here" },
      { "vsi in {}", 9, "unexpected \"}\"; a value has to stand here" },
      { "vsi in { 1, 2", 8, "\"{\" is not closed" },
      { "vsi in { 1 2 }", 12, "unexpected \"2\"; did you mean }?" },
      { "vsi in { 1, }", 13, "unexpected \"}\"; a value has to stand here" },
      { "vsi in 1, 2", 9, "unexpected \",\"; write a set as in { 1, 2, 5..9 }" },
      { "vsi in 200..100", 8, "range 200..100 ends before it begins; did you mean 100..200?" },
      { "vsi in 5..", 11, "unexpected end" },
      { "vsi in learnEnable", 8, "unexpected \"learnEnable\"; a value has to stand here" },
      { "5 in 1..9", 1, "a field has to stand before `in`" },
      { "vsi 100..200", 5, "unexpected \"100\"" },
      { "vsi not 5", 5, "unexpected \"not\"" },
      { "!vsi == 5", 1, "can be read in two ways" },
      { "vsi & == 5", 7, "unexpected \"==\"; a value has to stand here" },
      { "vsi & 0", 7, "a mask of 0 leaves nothing" },
      { "vsi & 3 & 1", 9, "a field has one mask" },
      { "5 & 3 == 1", 3, "a mask stands after a field" },
      { "vsi & learnEnable", 7, "a value has to stand here" },
      { "vsi == (vsi == 5)", 9, "a field or a value has to stand here, no condition" },
      { "vsi == 010", 8, "number 010 begins with 0, as octal ones do elsewhere; write 10, or" },
      { "vsi == 00", 8, "number 00 begins with 0, as octal ones do elsewhere; write 0, or" },
      { "vsi == 0x", 8, "bad value \"0x\"" },
      { "vsi == 5x", 8, "bad value \"5x\"" },
      { "vsi == -5", 8, "negative value -5 for vsi; a value is 0 or more" },
      { "vsi == 10.0.0", 8, "bad value \"10.0.0\" for vsi; write an IPv4 address as 10.0.0.1" },
      { "vsi == 1:2", 8, "bad value \"1:2\" for vsi; write a MAC address as" },
      { "vsj == 5", 1, "no field \"vsj\" in LifTable on BCM88690_B0 variant 0; did you mean vsi?" },
      { "vsi == 5 && VSI == 5", 13, "no field \"VSI\"" },
      { "vsi == ipv6Dip", 8, "no field \"ipv6Dip\"" },
      { "learnEnable == 2", 16, "value 2 of field learnEnable is too large; its 1 bits" },
      { "learnEnable in 0..2", 19, "value 2 of field learnEnable is too large" },
      { "learnEnable & 2", 15, "mask 2 of field learnEnable is too large" },
      { "vsi == 0x1" + std::string( 200, '0' ), 8, "is too large for any field" },
      { "vsi & 0xf == 0x10", 14, "value 0x10 has bits beyond the mask 0xf" },
      { "vsi & 0xf in { 1, 0x10 }", 19, "value 0x10 has bits beyond the mask 0xf" },
      { "vsi < 0", 7, "nothing is less than 0" },
      { std::string( 101, '(' ) + "vsi" + std::string( 101, ')' ), 101, "nested too deeply" },
      { std::string( 100000, '!' ) + "vsi", 101, "nested too deeply" },
   };
   EXPECT_GE( cases.size(), 40u );
   for( const auto& [condition, column, part] : cases ) {
      try {
         const Filter filter( condition, lif() );
         ADD_FAILURE() << "accepted: " << condition;
      } catch( const Vorn::BadText& bad ) {
         EXPECT_EQ( bad.at() + 1, column ) << condition << ": " << bad.message();
         EXPECT_NE( bad.message().find( part ), std::string::npos )
            << condition << ": " << bad.message();
         EXPECT_EQ( bad.message().find( '\n' ), std::string::npos ) << condition;
      }
   }
   // The form alone says nothing of fields.
   Filter::require( "nothing == 5" );
   EXPECT_EQ( errorOf( [] { Filter::require( "nothing = 5" ); } ),
              "bad sign \"=\"; did you mean ==?" );
}

TEST( Fields, ofAList ) {
   const auto fields = Vorn::fieldsIn( "vlanEditVid1, vsi,vlanEditVid?", lif() );
   ASSERT_EQ( fields.size(), 3u );
   EXPECT_EQ( fields[0].name, "vlanEditVid1" );
   EXPECT_EQ( fields[1].name, "vsi" );
   EXPECT_EQ( fields[2].name, "vlanEditVid2" );
   EXPECT_EQ( Vorn::fieldsIn( "*", lif() ).size(), lif().fields().size() );
   struct Refused {
      std::string_view list;
      std::size_t column;
      std::string_view message;
   };
   for( const auto& [list, column, message] : {
           Refused{ "", 1, "a name is missing; write fields as vsi,vlanEditVid1" },
           Refused{ "vsi,,vsi", 5, "a name is missing; write fields as vsi,vlanEditVid1" },
           Refused{ "vsi,", 5, "a name is missing; write fields as vsi,vlanEditVid1" },
           Refused{ "vsi, vsi", 6, "field vsi is given twice" },
           Refused{ "vlanEditVid1,vsj", 14,
                    "no field \"vsj\" in LifTable on BCM88690_B0 variant 0; did you mean vsi?" },
           Refused{ "ip*", 1, "no field of LifTable on BCM88690_B0 variant 0 matches \"ip*\"" },
        } ) {
      try {
         Vorn::fieldsIn( list, lif() );
         ADD_FAILURE() << "accepted: " << list;
      } catch( const Vorn::BadText& bad ) {
         EXPECT_EQ( bad.at() + 1, column ) << list;
         EXPECT_EQ( bad.message(), message );
      }
   }
}
