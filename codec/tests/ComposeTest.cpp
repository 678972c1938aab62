// Whole images from values, values from images, and values that contradict each other.
#include "Pairs.h"

#include "support/Bits.h"

#include <Vorn/Compose.h>

#include <gtest/gtest.h>

#include <random>

namespace {

using Testing::errorOf;
using Vorn::compose;
using Vorn::Layout;
using Vorn::Overlap;

const Layout& lif() {
   static const Layout layout( "LifTable", 10 );
   return layout;
}

TEST( Compose, SetsTheValuesInAFreshEntryOrAGivenOne ) {
   const auto image = compose( lif(), { { "vsi", 2000 }, { "vlanEditVid1", 100 } } );
   auto expected = lif().blank();
   lif().set( expected, "vsi", 2000 );
   lif().set( expected, "vlanEditVid1", 100 );
   EXPECT_EQ( image, expected );
   lif().set( expected, "vsi", 7 );
   EXPECT_EQ( compose( lif(), image, { { "vsi", 7 } } ), expected );
   EXPECT_EQ( compose( lif(), {} ), lif().blank() );
}

TEST( Compose, RefusesAContradictionUnlessTheLaterHolds ) {
   EXPECT_EQ( errorOf( [] {
                 compose( lif(), { { "vsi", 2000 }, { "mdbEntry", 2 } } );
              } ),
              "fields resultType and mdbEntry of LifTable on BCM88690_B0 variant 0 share the bits "
              "174 to 179, and their values contradict each other there: 0x3a and 0x0" );
   EXPECT_EQ(
      lif().value( compose( lif(), { { "vsi", 2000 }, { "mdbEntry", 3 } }, Overlap::laterHolds ),
                   "mdbEntry" ),
      3 );
   // What mdbEntry shares with the tag has to be the tag's.
   auto whole = lif().blank();
   lif().set( whole, "vsi", 2000 );
   const auto value = lif().value( whole, "mdbEntry" );
   EXPECT_EQ( compose( lif(), { { "vsi", 2000 }, { "mdbEntry", value } } ), whole );
   EXPECT_EQ(
      errorOf( [&] {
         compose( lif(), { { "mdbEntry", value }, { "vsi", 2001 } } );
      } ),
      "fields mdbEntry and vsi of LifTable on BCM88690_B0 variant 0 share the bits 1 to 15, "
      "and their values contradict each other there: 0x7d0 and 0x7d1" );
   EXPECT_EQ(
      lif().get( compose( lif(), { { "mdbEntry", value }, { "vsi", 2001 } }, Overlap::laterHolds ),
                 "vsi" ),
      2001u );
}

TEST( Compose, RefusesWhatItCannotSet ) {
   const std::string pair = "LifTable on BCM88690_B0 variant 0";
   EXPECT_EQ( errorOf( [] {
                 compose( lif(), { { "vsi", 1 }, { "vsi", 1 } } );
              } ),
              "field vsi is given twice" );
   EXPECT_EQ( errorOf( [] {
                 compose( lif(), { { "resultType", 1 } } );
              } ),
              "field resultType of " + pair + " is read-only: it holds the entry's tag" );
   EXPECT_EQ( errorOf( [] {
                 compose( lif(), { { "vsi", 1 << 15 } } );
              } ),
              "value 32768 of field vsi is too large; its 15 bits in " + pair +
                 " hold at most 0x7fff" );
   EXPECT_EQ( errorOf( [] {
                 compose( lif(), std::vector<U8>( 80 ), { { "vsi", 1 } } );
              } ),
              "the image is not one of " + pair + ": its tag resultType is 0x0, not 0x3a" );
}

TEST( Compose, AFailedFieldLeavesTheImageAndMayBeSetAgain ) {
   Vorn::Composer composer( lif() );
   EXPECT_NE( errorOf( [&] { composer.set( composer.open( "vsi" ), 1 << 15 ); } ), "none" );
   EXPECT_EQ( std::vector<U8>( composer.image().begin(), composer.image().end() ), lif().blank() );
   composer.fill( composer.open( "vsi" ) );
   EXPECT_EQ( lif().get( composer.image(), "vsi" ), 0x7fffu );
   composer.reset();
   EXPECT_EQ( lif().get( composer.image(), "vsi" ), 0u );
}

// An image of any pair is its values again, but for bits of no field.
TEST( Compose, UndoesDecompose ) {
   std::mt19937 random( 19 );
   for( const Layout& layout : Testing::allLayouts() ) {
      auto image = layout.blank();
      for( const Vorn::Field& field : layout.fields() ) {
         Testing::bitsAtAre( image, field.offset, field.width,
                             Testing::randomBits( field.width, random ) );
      }
      for( const Vorn::Field& field : layout.fields() ) {
         if( field.readOnly ) {
            const auto tag = Testing::bitsAt( layout.blank(), field.offset, field.width );
            Testing::bitsAtAre( image, field.offset, field.width, tag );
         }
      }
      const auto values = Vorn::decompose( layout, image );
      EXPECT_EQ( values.size(), layout.fields().size() );
      EXPECT_EQ( compose( layout, values ), image ) << layout.pairText();
   }
   EXPECT_EQ( errorOf( [] { Vorn::decompose( lif(), std::vector<U8>( 22 ) ); } ),
              "the image has 22 bytes; the fields of LifTable on BCM88690_B0 variant 0 need 23, a "
              "whole entry has 80" );
}

} // namespace
