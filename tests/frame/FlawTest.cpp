// The flaws that the compiler sees in a description, each in a small description that has it.
#include "frame/SoundDescription.h"

#include <gtest/gtest.h>

namespace {

using namespace Testing;

#define EXPECT_FLAW( flawName, ... ) EXPECT_EQ( ( __VA_ARGS__ ).flaw, Flaw::flawName )

template<std::size_t Fields, std::size_t Count>
Formats<Fields> formatsOfLayout( const Placements<Count>& other ) {
   Finding unused;
   return formatsOf<Fields>( other.rows, unused );
}

// Of a description for one chip type with these variants.
Finding ofVariants( Variants all ) {
   constexpr auto ofAny =
      describe( layout( block( anyVariant, { chips( 2 ) },
                               { { wide, { at( 0, 32 ) } }, { narrow, { at( 32, 8 ) } } } ) ),
                dimensions( { { chips( 2 ), anyVariant, 2, 16, 1, 1 } } ),
                fieldCounts( { { chips( 2 ), anyVariant, 2 } } ),
                addresses( { { chips( 2 ), anyVariant, 0, 1, 0, { { 0, 0 } } } } ) );
   auto description = ofAny;
   for( Placement& placement : description.layout.rows ) {
      placement.variants = all;
   }
   description.dimensions.rows[0].variants = all;
   description.fieldCounts.rows[0].variants = all;
   description.addresses.rows[0].variants = all;
   constexpr Declaration two[] = { declarations[0], declarations[1] };
   return findingOf( description, two );
}

TEST( Flaw, EachIsFound ) {
#define FLAW( flaw, ... ) EXPECT_FLAW( flaw, __VA_ARGS__ );
#include "frame/Flaws.inc"
   EXPECT_FLAW( storageDisagrees, ofDeclarations( declarations, 4 ) );
   EXPECT_FLAW( typeTooWide, ofDeclarations( { { "wide", "Wide", 100, ValueType::u64, false },
                                               declarations[1],
                                               declarations[2] } ) );
   EXPECT_FLAW( typeTooWide, ofDeclarations( { { "wide", "Wide", 100, ValueType::raw128, false },
                                               declarations[1],
                                               declarations[2] } ) );
}

TEST( Flaw, NoneInASoundDescription ) {
   EXPECT_FLAW( none, ofLayout( soundLayout ) );
   EXPECT_FLAW( none, ofDeclarations( declarations ) );
}

TEST( Flaw, NoneWithACountForEachVariant ) {
   constexpr auto apart = fieldCounts( { { chips( 2 ), variants( 0 ), 3 },
                                         { chips( 2 ), variants( 1 ), 3 },
                                         { chips( 3 ), variants( 0, 1 ), 2 } } );
   EXPECT_FLAW( none, ofCounts( apart ) );
}

TEST( Flaw, NoneWhereAnyVariantMeansTheSame ) { EXPECT_FLAW( none, ofVariants( anyVariant ) ); }

TEST( Flaw, NoneWithTheMostAndWidestTagFieldsOfAPair ) {
   constexpr auto description = describe(
      layout( block( anyVariant, { chips( 2 ) },
                     { { 0, { at( 0, 1 ) } },
                       { 1, { at( 1, 2 ) } },
                       { 2, { at( 3, 3 ) } },
                       { 3, { at( 6, 8 ) } } } ) ),
      dimensions( { { chips( 2 ), anyVariant, 2, 16, 1, 1 } } ),
      fieldCounts( { { chips( 2 ), anyVariant, 4 } } ),
      addresses( { { chips( 2 ), anyVariant, 0, 1, 0, { { 0, 0 } } } } ),
      tags( { { chips( 2 ), anyVariant, { { 0, 1 }, { 1, 3 }, { 2, 7 }, { 3, 255 } } } } ) );
   constexpr Declaration four[] = {
      { "first", "First", 100, ValueType::u8, true },
      { "second", "Second", 101, ValueType::u8, true },
      { "third", "Third", 102, ValueType::u8, true },
      { "fourth", "Fourth", 103, ValueType::u8, true },
   };
   EXPECT_FLAW( none, findingOf( description, four ) );
}

TEST( Flaw, TheFirstOneIsReported ) {
   constexpr auto other = layout(
      soundLayout, block( variants( 0, 1 ), { chips( 2 ) }, { { narrow, { at( 50, 8 ) } } } ) );
   const Finding found = ofLayout( other );
   EXPECT_EQ( found.flaw, Flaw::fieldPlacedTwice );
   EXPECT_EQ( found.chipType, 2u );
   EXPECT_EQ( found.variant, 0u );
}

TEST( Flaw, CapitalNameDiffers ) {
   for( const std::string_view name : { "narrow", "NArrow", "Narow", "Narrows", "Marrow" } ) {
      EXPECT_FLAW(
         capitalNameDiffers,
         ofDeclarations(
            { declarations[0], { "narrow", name, 101, ValueType::u8, false }, declarations[2] } ) );
   }
}

TEST( Flaw, NoneWhereAPairIsSaidToHaveNoAddressOrTag ) {
   constexpr auto unaddressed = addresses(
      { { chips( 2 ), both, 0, 1, 0, { { 0, 0 }, { 0, 0 } } }, { chips( 3 ), both, noAddress } } );
   EXPECT_FLAW( none, ofAddresses( unaddressed ) );
   constexpr auto stampedOnce =
      tags( { { chips( 2 ), both, { { tag, 1 } } }, { chips( 3 ), both, { untagged } } } );
   EXPECT_FLAW( none, ofTags( stampedOnce ) );
}

TEST( Flaw, Tags ) {
   constexpr auto unknown = tags( { { chips( 2 ), variants( 0, 1 ), { { 3, 1 } } } } );
   EXPECT_FLAW( tagFieldNotReadOnly, ofTags( unknown ) );
   // A tag is compared as a byte.
   constexpr auto longer = layout( block( variants( 0, 1 ), { chips( 2 ), chips( 3 ) },
                                          { { wide, { at( 0, 17 ), at( 0, 32 ) } },
                                            { narrow, { at( 32, 8 ), absent } },
                                            { tag, { at( 40, 9 ), at( 50, 9 ) } } } ) );
   EXPECT_FLAW(
      tagOutsideField,
      findingOf(
         describe( longer, soundDimensions, soundCounts, soundAddresses, soundTags ),
         { declarations[0], declarations[1], { "tag", "Tag", 102, ValueType::u16, true } } ) );
   EXPECT_FLAW( readOnlyFieldWithoutTag,
                findingOf( describe( soundLayout, soundDimensions, soundCounts, soundAddresses ),
                           declarations ) );
   constexpr auto partly = layout( block( variants( 0, 1 ), { chips( 2 ), chips( 3 ) },
                                          { { wide, { at( 0, 17 ), at( 0, 32 ) } },
                                            { narrow, { at( 32, 8 ), at( 40, 8 ) } },
                                            { tag, { at( 40, 4 ), absent } } } ) );
   EXPECT_FLAW( tagFieldAbsent, ofLayout( partly ) );
}

TEST( Flaw, FormatsAreTheDistinctOnes ) {
   const auto formats = formatsOfLayout<3>( soundLayout );
   EXPECT_EQ( formats.count, 2u );
   EXPECT_EQ( formats.of[2][0], formats.of[2][1] );
   EXPECT_EQ( formats.of[3][0], formats.of[3][1] );
   EXPECT_NE( formats.of[2][0], formats.of[3][0] );
   EXPECT_EQ( formats.of[4][0], noFormat );
   EXPECT_EQ( formats.of[2][2], noFormat );
}

TEST( Flaw, FieldsThatChangePlacesMakeAnotherFormat ) {
   // The two formats have the same hash.
   constexpr auto swapped =
      layout( block( variants( 0 ), { chips( 2 ), chips( 3 ), chips( 4 ) },
                     { { 0, { at( 39, 27 ), at( 34, 30 ), at( 39, 27 ) } },
                       { 1, { at( 34, 30 ), at( 39, 27 ), at( 34, 30 ) } } } ) );
   const Formats<2> formats = formatsOfLayout<2>( swapped );
   EXPECT_EQ( formats.count, 2u );
   EXPECT_NE( formats.of[2][0], formats.of[3][0] );
   EXPECT_EQ( formats.of[2][0], formats.of[4][0] );
   EXPECT_EQ( formats.cells[formats.of[3][0]][0], at( 34, 30 ) );
   EXPECT_EQ( formats.cells[formats.of[3][0]][1], at( 39, 27 ) );
}

TEST( Cells, AreTheSameAtOnePlaceAndOfOneWidth ) {
   const Cell cell = at( 34, 30 );
   EXPECT_TRUE( cell == at( 34, 30 ) );
   EXPECT_FALSE( cell == at( 35, 30 ) );
   EXPECT_FALSE( cell == at( 34, 29 ) );
}

// The utmost that a description may state; more is refused by the compiler.
TEST( Cells, EndAfterTheirLastBit ) {
   constexpr Cell cell = at( 4096, 512 );
   EXPECT_EQ( cell.end(), 4608u );
   EXPECT_EQ( cell.bytes(), 576u );
   EXPECT_EQ( at( 7, 1 ).bytes(), 1u );
   EXPECT_EQ( at( 7, 2 ).bytes(), 2u );
}

TEST( Cells, ArePresentWhereStatedAndOfSomeWidth ) {
   const Cell leftOut;
   const Cell none = absent;
   const Cell cell = at( 0, 1 );
   EXPECT_FALSE( leftOut.present() );
   EXPECT_FALSE( none.present() );
   EXPECT_TRUE( cell.present() );
}

TEST( Numbers, OfRangesAndLists ) {
   EXPECT_EQ( chips( 2, 3 ).bits, 0xcu );
   EXPECT_EQ( chips( 10, range( 12, 16 ) ).bits, 0x1f400u );
   EXPECT_EQ( variants( range( 0, 4 ), range( 6, 11 ) ).bits, 0xfdfu );
   EXPECT_EQ( variants( 30 ).bits, 0x40000000u );
   EXPECT_EQ( anyVariant.bits, 0xffffffffu );
}

TEST( Masks, AreTheUnionOfTheFields ) {
   const auto formats = formatsOfLayout<3>( soundLayout );
   const auto masks = masksOf<2, 2>( formats );
   EXPECT_EQ( masks.words[formats.of[2][0]][0], 0x1ffffu );
   EXPECT_EQ( masks.words[formats.of[2][0]][1], 0xfffu );
   EXPECT_EQ( masks.words[formats.of[3][0]][0], 0xffffffffu );
   EXPECT_EQ( masks.words[formats.of[3][0]][1], 0xf0000000u );
}

} // namespace
