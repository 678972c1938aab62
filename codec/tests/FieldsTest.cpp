// Where fields exist, what changes between pairs, what an image is of and what lies at an address.
#include "Pairs.h"

#include <Vorn/Difference.h>
#include <Vorn/Fields.h>
#include <Vorn/Identify.h>
#include <Vorn/Locate.h>
#include <Vorn/Record.h>

#include <gtest/gtest.h>

namespace {

using Testing::errorOf;

TEST( Fields, AreFoundByAnyOfTheirNames ) {
   for( const char* const name : { "pphFheiIveSize", "284", "0x11c" } ) {
      const auto uses = Vorn::usesOf( name );
      ASSERT_EQ( uses.size(), 1u ) << name;
      EXPECT_EQ( uses[0].table, "FheiIveSizeReg" );
      EXPECT_EQ( Vorn::textOf( uses[0].pairs ), "2-8: 0" );
      EXPECT_EQ( Vorn::usesOf( uses[0].hardwareName ).size(), 1u );
   }
   std::size_t pairs = 0;
   for( const auto& use : Vorn::usesOf( "vlanDomain" ) ) {
      for( const auto& pair : use.pairs ) {
         for( const U32 variant : pair.variants ) {
            EXPECT_TRUE( Vorn::Layout( use.table, pair.chip, variant ).has( "vlanDomain" ) );
            ++pairs;
         }
      }
   }
   std::size_t expected = 0;
   for( const auto& layout : Testing::allLayouts() ) {
      expected += layout.has( "vlanDomain" );
   }
   EXPECT_EQ( pairs, expected );
   EXPECT_EQ( errorOf( [] { Vorn::usesOf( "vlanDomian" ); } ),
              "no table has a field \"vlanDomian\"; did you mean vlanDomain?" );
   EXPECT_EQ( errorOf( [] { Vorn::usesOf( "999" ); } ), "no field has the identifier 999" );
   EXPECT_EQ( Vorn::hardwareNameOf( 364 ), "VSI" );
   EXPECT_EQ( Vorn::hardwareNameOf( 999 ), "" );
}

TEST( Difference, IsOfOneTable ) {
   const auto none =
      Vorn::differenceOf( Vorn::Layout( "LifTable", 10 ), Vorn::Layout( "LifTable", 10 ) );
   EXPECT_TRUE( none.isNone() );
   EXPECT_EQ( none.unchanged, 23u );
   EXPECT_EQ( errorOf( [] {
                 Vorn::differenceOf( Vorn::Layout( "IvecTable", 10 ),
                                     Vorn::Layout( "TcamActionTable", 2 ) );
              } ),
              "IvecTable on BCM88690_B0 variant 0 and TcamActionTable on BCM88650_B0 are of two "
              "tables; compare pairs of one" );
}

TEST( Identify, ABlankImageIsOfItsOwnPair ) {
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      const Vorn::Identifier identifier( chip );
      for( const Vorn::Layout& layout : identifier.layouts() ) {
         const auto found = identifier.layoutsOf( layout.blank() );
         EXPECT_EQ( std::count( found.begin(), found.end(), layout ), 1 ) << layout.pairText();
      }
   }
}

TEST( Locate, AnEntryIsFoundAtItsAddress ) {
   const auto found = Vorn::locate( Vorn::chipOf( 10 ), 0x1101005, U8( 6 ) );
   ASSERT_EQ( found.size(), 2u );
   EXPECT_EQ( found[1].layout, Vorn::Layout( "TcamActionTable", 10 ) );
   EXPECT_EQ( found[1].index, ( Vorn::EntryIndex{ 5, 2, 1 } ) );
   EXPECT_EQ( errorOf( [] { Vorn::locate( Vorn::chipOf( 21 ), 1 ); } ),
              "no memory of Software has an address" );
}

TEST( Record, ComposesAnEntry ) {
   Vorn::RecordComposer composer;
   const auto entry = composer.compose(
      R"({"table":"TcamActionTable","chip":10,"entry":5,"fields":{"action":"0x12345"}})" );
   EXPECT_EQ( entry.layout, Vorn::Layout( "TcamActionTable", 10 ) );
   EXPECT_EQ( entry.index, ( Vorn::EntryIndex{ 5, 0, 0 } ) );
   EXPECT_EQ( entry.address->schanAddress, 0x1100005u );
   EXPECT_EQ( entry.layout.get( entry.image, "action" ), 0x12345u );
   const std::string wrong = R"({"table":"TcamActionTable","chip":10,"fields":{"actoin":1}})";
   EXPECT_EQ( errorOf( [&] { composer.compose( wrong ); } ),
              "no field \"actoin\" in TcamActionTable on BCM88690_B0; did you mean action?" );
   EXPECT_EQ( composer.column(), wrong.find( "\"actoin" ) + 1 );
}

TEST( Fields, HaveTheTypeOfTheirGetter ) {
   EXPECT_EQ( Vorn::typeOf( "EgressPerPortTable", 351 ), "U16" );
   EXPECT_EQ( Vorn::typeOf( "LifTable", 243 ), "Raw256" );
   EXPECT_EQ( Vorn::typeOf( "LifTable", 351 ), "" );
   EXPECT_EQ( Vorn::typeOf( "LifTabel", 351 ), "" );
}

} // namespace
