// What becomes of an entry from one dump to the next.
#include <Vorn/Difference.h>
#include <Vorn/Error.h>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

using Vorn::EntryChange;
using Vorn::EntryComparison;
using Vorn::Layout;
using Kind = EntryChange::Kind;

// On BCM88690_B0 variant 3, mdbEntry covers vsi, 17 bits from bit 58, and other fields; the tag is
// in 6 bits from bit 174.
const Layout& lif() {
   static const Layout layout( "LifTable", "BCM88690_B0", 3 );
   return layout;
}

std::vector<U8> entryOf( U64 vsi ) {
   auto image = lif().blank();
   lif().set( image, "vsi", vsi );
   return image;
}

std::string namesIn( const EntryChange& change ) {
   std::string names;
   for( const auto& field : change.fields ) {
      names += ( names.empty() ? "" : "," ) + std::string( field.name );
   }
   return names;
}

} // namespace

TEST( EntryComparison, fields ) {
   EntryComparison comparison;
   const auto before = entryOf( 5 );
   const auto change = comparison.changeOf( { &lif(), before }, { &lif(), entryOf( 6 ) } );
   EXPECT_EQ( change.kind, Kind::changed );
   EXPECT_EQ( change.text(), "changed" );
   EXPECT_EQ( namesIn( change ), "vsi" );
   EXPECT_EQ( comparison.changeOf( { &lif(), before }, { &lif(), before } ).kind, Kind::none );

   // Bits of no field make a change without fields.
   auto beyond = before;
   beyond[79] = 1;
   const auto gap = comparison.changeOf( { &lif(), before }, { &lif(), beyond } );
   EXPECT_EQ( gap.kind, Kind::changed );
   EXPECT_EQ( namesIn( gap ), "" );
}

TEST( EntryComparison, aListOfFields ) {
   const auto before = entryOf( 5 );
   const auto after = entryOf( 6 );
   const auto changeOf = [&]( const std::string& list ) {
      return EntryComparison( list ).changeOf( { &lif(), before }, { &lif(), after } );
   };
   EXPECT_EQ( namesIn( changeOf( "mdbEntry,vsi" ) ), "mdbEntry,vsi" );
   EXPECT_EQ( changeOf( "destination" ).kind, Kind::none );
   EXPECT_THROW( changeOf( "vsj" ), Vorn::Error );
}

TEST( EntryComparison, entriesThatAreNotThere ) {
   EntryComparison comparison;
   const auto there = entryOf( 5 );
   const std::vector<U8> unwritten( 80 );
   const std::pair<Vorn::EntryState, const char*> nothing[] = {
      { {}, "no entry" }, { { &lif(), unwritten }, "zeroes" }
   };
   for( const auto& [none, name] : nothing ) {
      EXPECT_EQ( comparison.changeOf( none, { &lif(), there } ).text(), "added" ) << name;
      EXPECT_EQ( comparison.changeOf( { &lif(), there }, none ).text(), "removed" ) << name;
      EXPECT_EQ( comparison.changeOf( none, {} ).text(), "the same" ) << name;
   }
   // Zeroes are an entry where the pair has no tag.
   const Layout port( "VttInPpPortConfig0", "10" );
   const std::vector<U8> zeros( 12 );
   EXPECT_EQ( comparison.changeOf( {}, { &port, zeros } ).text(), "added" );
}

TEST( EntryComparison, pairsAndLengths ) {
   EntryComparison comparison;
   const auto third = entryOf( 5 );
   const Layout other( "LifTable", "BCM88690_B0", 0 );
   const auto blank = other.blank();
   EXPECT_EQ( comparison.changeOf( { &lif(), third }, { &other, blank } ).text(), "replaced" );
   // A copy of the layout is of the same pair, and an image may end at its last field.
   const Layout copy = lif();
   const std::vector<U8> cut( third.begin(), third.begin() + 23 );
   EXPECT_EQ( comparison.changeOf( { &lif(), third }, { &copy, cut } ).kind, Kind::none );
   const std::vector<U8> tooShort( third.begin(), third.begin() + 22 );
   EXPECT_THROW( comparison.changeOf( { &lif(), third }, { &lif(), tooShort } ), Vorn::Error );
}
