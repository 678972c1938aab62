// The record of an image composes the image again, on every pair and whatever its bits are.
#include "Pairs.h"

#include <Vorn/Record.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Testing::errorOf;
using Vorn::Layout;

TEST( RecordOf, IsALineThatComposesTheEntry ) {
   const Layout lif( "LifTable", 10 );
   auto image = Vorn::compose( lif, { { "vsi", 2000 }, { "vlanEditVid1", 100 } } );
   EXPECT_EQ( Vorn::recordOf( lif, { .entry = 4097 }, image ),
              R"({"table":"LifTable","chip":"BCM88690_B0","variant":0,"entry":4097,"array":0,)"
              R"("identifier":0,"fields":{"vlanEditVid1":"0x64","vsi":"0x7d0"}})" );
   // Bit 639 belongs to no field.
   image.back() = 0x80;
   const auto record = Vorn::recordOf( lif, {}, image );
   EXPECT_NE( record.find( R"("from":"a00f)" ), std::string::npos ) << record;
   image.pop_back();
   EXPECT_EQ( errorOf( [&] { Vorn::recordOf( lif, {}, image ); } ),
              "the image has 79 bytes; an entry of LifTable on BCM88690_B0 variant 0 has 80" );
}

TEST( RecordOf, ComposesTheSameImageOnEveryPair ) {
   std::mt19937 random( 21 );
   Vorn::RecordComposer composer;
   for( const Layout& layout : Testing::allLayouts() ) {
      SCOPED_TRACE( layout.pairText() );
      auto image = layout.blank();
      std::generate( image.begin(), image.end(), [&] { return static_cast<U8>( random() ); } );
      for( const Vorn::TagField& tag : layout.tag() ) {
         layout.set( image, tag.field, tag.value );
      }
      const auto composed = composer.compose( Vorn::recordOf( layout, {}, image ) ).image;
      EXPECT_TRUE( std::equal( image.begin(), image.end(), composed.begin(), composed.end() ) );
      EXPECT_EQ( Vorn::settingsOf( layout, layout.blank() ).size(), 0u );
   }
}

} // namespace
