// Chip types by name and number, and the tables with their pairs.
#include "Pairs.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

namespace {

using Testing::errorOf;

TEST( Chip, IsFoundByNameAndNumber ) {
   EXPECT_EQ( Vorn::allChips().size(), std::size( Testing::statedChips ) );
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      EXPECT_EQ( &Vorn::chipOf( chip.name ), &chip );
      EXPECT_EQ( &Vorn::chipOf( chip.type() ), &chip );
      EXPECT_EQ( &Vorn::chipOf( std::to_string( chip.number ) ), &chip );
   }
   EXPECT_EQ( Vorn::chipOf( "0xa" ).type(), Hardware::BCM88690_B0 );
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( "bcm88650" ); } ),
              "unknown chip \"bcm88650\"; did you mean BCM88650_B0?" );
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( "BCM88850" ); } ),
              "unknown chip \"BCM88850\"; did you mean BCM88850_A0?" );
   const std::string allowed = "; allowed: " + Testing::allChipsListed;
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( 9 ); } ), "unknown chip 9" + allowed );
   for( const std::string number : { "11", "258", "18446744073709551618" } ) {
      EXPECT_EQ( errorOf( [&] { Vorn::chipOf( number ); } ), "unknown chip " + number + allowed );
   }
   for( const std::string text : { "-1", "2x", "1,3" } ) {
      EXPECT_EQ( errorOf( [&] { Vorn::chipOf( text ); } ),
                 "unknown chip \"" + text + '"' + allowed );
   }
   for( const std::string text : { "", "ChipType(9)" } ) {
      EXPECT_EQ( errorOf( [&] { Vorn::chipOf( text ); } ),
                 "unknown chip \"" + text + "\"; allowed: " + Testing::allChipsNamed );
   }
}

TEST( Pairs, AreThoseOfTheirTable ) {
   EXPECT_EQ( Vorn::allTables().size(), Testing::classCount );
   EXPECT_EQ( Vorn::tableNamed( "IvecTable" ), "IvecTable" );
   EXPECT_EQ( errorOf( [] { Vorn::tableNamed( "ivectable" ); } ),
              "unknown table \"ivectable\"; did you mean IvecTable?" );
   EXPECT_EQ( errorOf( [] { Vorn::tableNamed( "TCAM_ACTION_TABLE" ); } ),
              "unknown table \"TCAM_ACTION_TABLE\"; did you mean TcamActionTable?" );
   EXPECT_EQ( errorOf( [] { Vorn::tableNamed( "LifTable\x1b" ); } ),
              "unknown table \"LifTable\\x1b\"; did you mean LifTable?" );
   EXPECT_TRUE( Vorn::pairsOf( "ivectable" ).empty() );
   EXPECT_EQ( Vorn::variantsOn( "LifTable", 10 )->text(), "0-4,6-11" );
   EXPECT_FALSE( Vorn::variantsOn( "FheiIveSizeReg", 10 ) );
   EXPECT_EQ( Vorn::textOf( Vorn::pairsOf( "FheiIveSizeReg" ) ), "2-8: 0" );
   EXPECT_EQ( Vorn::variantsOn( "EpniIsidTable", 2 )->text(), "any" );
   EXPECT_EQ( Vorn::textOf( Vorn::pairsWithField( "FheiIveSizeReg", 284 ) ), "2-8: 0" );
   EXPECT_TRUE( Vorn::pairsWithField( "FheiIveSizeReg", 3 ).empty() );
}

} // namespace
