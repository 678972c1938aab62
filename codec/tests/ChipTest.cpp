// Chip types by name and number, and the tables with their pairs.
#include "Pairs.h"
#include "support/Chips.h"

#include <gtest/gtest.h>

namespace {

using Testing::errorOf;

TEST( Chip, IsFoundByNameAndNumber ) {
   EXPECT_EQ( Vorn::allChips().size(), 14u );
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      EXPECT_EQ( &Vorn::chipOf( chip.name ), &chip );
      EXPECT_EQ( &Vorn::chipOf( chip.type() ), &chip );
      EXPECT_EQ( &Vorn::chipOf( std::to_string( chip.number ) ), &chip );
   }
   EXPECT_EQ( Vorn::chipOf( "0xa" ).type(), Hardware::BCM88690_B0 );
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( "bcm88650" ); } ),
              "unknown chip \"bcm88650\"; did you mean BCM88650_B0?" );
   const std::string allowed = "; allowed: " + Testing::allChipsListed;
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( 9 ); } ), "unknown chip 9" + allowed );
   EXPECT_EQ( errorOf( [] { Vorn::chipOf( "-1" ); } ), "unknown chip \"-1\"" + allowed );
}

TEST( Pairs, AreThoseOfTheirTable ) {
   EXPECT_EQ( Vorn::allTables().size(), 22u );
   EXPECT_EQ( Vorn::tableNamed( "IvecTable" ), "IvecTable" );
   EXPECT_EQ( errorOf( [] { Vorn::tableNamed( "ivectable" ); } ),
              "unknown table \"ivectable\"; did you mean IvecTable?" );
   EXPECT_TRUE( Vorn::pairsOf( "ivectable" ).empty() );
   EXPECT_EQ( Vorn::variantsOn( "LifTable", 10 )->text(), "0-4,6-11" );
   EXPECT_FALSE( Vorn::variantsOn( "FheiIveSizeReg", 10 ) );
   EXPECT_EQ( Vorn::textOf( Vorn::pairsOf( "FheiIveSizeReg" ) ), "2-8: 0" );
   EXPECT_EQ( Vorn::variantsOn( "EpniIsidTable", 2 )->text(), "any" );
   EXPECT_EQ( Vorn::textOf( Vorn::pairsWithField( "FheiIveSizeReg", 284 ) ), "2-8: 0" );
   EXPECT_TRUE( Vorn::pairsWithField( "FheiIveSizeReg", 3 ).empty() );
}

} // namespace
