// LifTable: 83 fields in 114 formats, overlapping readings, a hole at variant 5, tags, Software.
#include "support/Contract.h"
#include "support/Traces.h"
#include "tables/lif/LifTableRows.h"

#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

namespace {

using View = Hardware::LifTable;
using Testing::Bits;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::Image;

Testing::Expectation stated() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "LifTable" );
   expected.storageBytes = 80;
   expected.fields = Testing::lifTableFields();
   expected.layout = Testing::rowsOf( Testing::lifTableLayouts() );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   // clang-format off
   expected.metadata = {
      { "2,3",         "0",  4,  16384,      4, 16, 1, 6 },
      { "2,3",         "1",  4,  16384,      4, 17, 1, 6 },
      { "2,3",         "2",  4,  16384,      4, 18, 1, 6 },
      { "2,3",         "3",  4,  16384,      4, 24, 1, 6 },
      { "2,3",         "4",  4,  16384,      4, 26, 1, 6 },
      { "2",           "6",  4,  16384,      4, 16, 1, 6 },
      { "3",           "6",  4,  16384,      4, 18, 1, 6 },
      { "4,5,8",       "0",  4,  16384,      8, 17, 1, 7 },
      { "4,5,8",       "1",  4,  16384,      8, 18, 1, 7 },
      { "4,5,8",       "2",  4,  16384,      8, 20, 1, 7 },
      { "4,5,8",       "3",  4,  16384,      8, 22, 1, 7 },
      { "4,5,8",       "4",  4,  16384,      8, 24, 1, 7 },
      { "4,5,8",       "5",  4,  16384,      8,  4, 1, 7 },
      { "4,5,8",       "6",  4,  16384,      8, 21, 1, 7 },
      { "6,7",         "0",  4,  32768,      2, 17, 1, 7 },
      { "6,7",         "1",  4,  32768,      2, 18, 1, 7 },
      { "6,7",         "2",  4,  32768,      2, 20, 1, 7 },
      { "6,7",         "3",  4,  32768,      2, 22, 1, 7 },
      { "6,7",         "4",  4,  32768,      2, 25, 1, 7 },
      { "6,7",         "5",  4,  32768,      2,  4, 1, 7 },
      { "6,7",         "6",  4,  32768,      2, 21, 1, 7 },
      { "10,12-16",    "0",  20, 4294967295, 1, 23, 1, 11 },
      { "10,12-16",    "1",  20, 4294967295, 1, 20, 1, 11 },
      { "10,12-16",    "2",  20, 4294967295, 1, 23, 1, 11 },
      { "10,12-16",    "3",  20, 4294967295, 1, 22, 1, 11 },
      { "10,13,15,16", "4",  20, 4294967295, 1, 18, 1, 11 },
      { "12,14",       "4",  20, 4294967295, 1, 19, 1, 11 },
      { "10,12-16",    "6",  20, 4294967295, 1, 18, 1, 11 },
      { "10,12-16",    "7",  20, 4294967295, 1, 11, 1, 11 },
      { "10,12-16",    "8",  20, 4294967295, 1,  6, 1, 11 },
      { "10,13,15,16", "9",  20, 4294967295, 1, 15, 1, 11 },
      { "12,14",       "9",  20, 4294967295, 1, 13, 1, 11 },
      { "10,12-16",    "10", 20, 4294967295, 1, 17, 1, 11 },
      { "10,12-16",    "11", 20, 4294967295, 1, 20, 1, 11 },
      { "21",          "0",  6,  1,          1, 22, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock }; none for Software
   expected.addresses = {
      { "2,3",   "0-4,6",      0x1070000, 1, 16384, { {  0, 52 } } },
      { "4,5",   "0-6",        0x2000000, 1, 16384, { {  0, 64 } } },
      { "6,7",   "0-6",        0x680000,  1, 32768, { {  0, 58 } } },
      { "8",     "0-6",        0x2000000, 1, 16384, { {  0, 71 } } },
      { "10,12", "0-4,6-11",   0x0,       1, 0,     { { 10,  1 } } },
      { "13",    "0-4,6-11",   0x0,       1, 0,     { {  4,  5 } } },
      { "14",    "0-4,6-11",   0x0,       1, 0,     { { 28, 12 } } },
      { "15,16", "0-4,6-11",   0x0,       1, 0,     { { 16, 15 } } },
   };
   expected.tags = {
      { "10,12-16", "0,2", { { "resultType", 58 } } },
      { "10,12-16", "1",   { { "resultType",  2 } } },
      { "10,12-16", "3",   { { "resultType", 37 } } },
      { "10,12-16", "4",   { { "resultType", 33 } } },
      { "10,12-16", "6",   { { "resultType", 47 } } },
      { "10,12-16", "7",   { { "resultType", 40 } } },
      { "10,12-16", "8",   { { "resultType", 42 } } },
      { "10,12-16", "9",   { { "resultType", 49 } } },
      { "10,12-16", "10",  { { "resultType", 48 } } },
      { "10,12-16", "11",  { { "resultType", 52 } } },
   };
   // clang-format on
   expected.discriminator = View::isLifTable;
   return expected;
}

const Testing::Expectation& expectation() {
   static const Testing::Expectation expected = stated();
   return expected;
}

CONTRACT_TESTS( LifTable, expectation() )

constexpr unsigned oldChips[] = { 2, 3, 4, 5, 6, 7, 8 };
constexpr unsigned taggedChips[] = { 10, 12, 13, 14, 15, 16 };

Hardware::ChipType chip( unsigned chipType ) { return static_cast<Hardware::ChipType>( chipType ); }

View::WithStorage entryOf( unsigned chipType, unsigned variant ) {
   return View::WithStorage( chip( chipType ), static_cast<U8>( variant ) );
}

bool pairValid( unsigned chipType, unsigned variant ) {
   return View::chipTypeVariantValid( chip( chipType ), static_cast<U8>( variant ) );
}

// The pairs that chipTypeVariantValid() admits.
std::vector<std::pair<unsigned, unsigned>> validPairs() {
   std::vector<std::pair<unsigned, unsigned>> pairs;
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         if( pairValid( chipType, variant ) ) {
            pairs.emplace_back( chipType, variant );
         }
      }
   }
   return pairs;
}

std::string where( unsigned chipType, unsigned variant ) {
   return "(" + std::to_string( chipType ) + ", " + std::to_string( variant ) + ")";
}

const Testing::FieldUnderTest& fieldNamed( const std::string& name ) {
   const auto& fields = expectation().fields;
   return *std::find_if( fields.begin(), fields.end(),
                         [&]( const auto& field ) { return field.name == name; } );
}

Image imageOf( const View& view ) { return Image( view.buf(), view.buf() + view.len() ); }

// The first bytes of the entry; the rest must be zero.
Image headOf( const View& view, std::size_t size ) {
   EXPECT_TRUE( std::all_of( view.buf() + size, view.buf() + view.len(),
                             []( U8 byte ) { return byte == 0; } ) );
   return Image( view.buf(), view.buf() + size );
}

Image onesAt( unsigned size, unsigned offset, unsigned width ) {
   Image image( size, 0 );
   Testing::bitsAtAre( image, offset, width, Testing::lowOnes( width ) );
   return image;
}

// Pairs

TEST( LifTable, VariantFiveIsAHoleExceptOnChipTypes4To8 ) {
   const std::map<unsigned, unsigned> variantsOf{ { 2, 0x5f },   { 3, 0x5f },   { 4, 0x7f },
                                                  { 5, 0x7f },   { 6, 0x7f },   { 7, 0x7f },
                                                  { 8, 0x7f },   { 10, 0xfdf }, { 12, 0xfdf },
                                                  { 13, 0xfdf }, { 14, 0xfdf }, { 15, 0xfdf },
                                                  { 16, 0xfdf }, { 21, 0x1 } };
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      const auto variants = variantsOf.find( chipType );
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const bool right = variants != variantsOf.end() && variant < 32 &&
                            ( variants->second >> variant & 1 ) != 0;
         EXPECT_EQ( pairValid( chipType, variant ), right ) << where( chipType, variant );
      }
   }
   EXPECT_EQ( validPairs().size(), 114u );
   EXPECT_FALSE( pairValid( 2, 5 ) );
   EXPECT_FALSE( pairValid( 3, 5 ) );
   EXPECT_FALSE( pairValid( 10, 5 ) );
   EXPECT_TRUE( pairValid( 4, 5 ) );
   EXPECT_TRUE( pairValid( 2, 6 ) );
   EXPECT_TRUE( pairValid( 3, 6 ) );
   EXPECT_FALSE( pairValid( 4, 7 ) );
}

TEST( LifTable, TheVariantCountIsNotTheHighestVariantPlusOne ) {
   struct Loop {
      unsigned chipType;
      unsigned count;
      unsigned holes;  // below the count
      unsigned missed; // the last valid variant
   };
   const auto view = entryOf( 10, 0 );
   for( const Loop& loop : { Loop{ 2, 6, 1, 6 }, Loop{ 3, 6, 1, 6 }, Loop{ 10, 11, 1, 11 },
                             Loop{ 14, 11, 1, 11 }, Loop{ 16, 11, 1, 11 } } ) {
      EXPECT_EQ( view.tableVariantCount( loop.chipType, 0 ), loop.count );
      EXPECT_EQ( view.tableVariantCount( loop.chipType, static_cast<U8>( loop.missed ) ),
                 loop.count );
      unsigned holes = 0;
      for( unsigned variant = 0; variant < loop.count; ++variant ) {
         holes += !pairValid( loop.chipType, variant );
      }
      EXPECT_EQ( holes, loop.holes );
      EXPECT_TRUE( pairValid( loop.chipType, loop.missed ) );
      EXPECT_FALSE( pairValid( loop.chipType, loop.missed + 1 ) );
   }
   EXPECT_EQ( view.tableVariantCount( 4, 5 ), 7u );
   EXPECT_EQ( view.tableVariantCount( 21, 0 ), 1u );
}

TEST( LifTable, TheHoleHasNoMetadata ) {
   const auto view = entryOf( 10, 0 );
   for( const unsigned chipType : { 2u, 3u, 10u, 12u, 13u, 14u, 15u, 16u } ) {
      EXPECT_EQ( expressionOf( [&] { view.tableVariantCount( chipType, 5 ); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { View::width( chipType, 5 ); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { View::fieldCount( chipType, 5 ); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { View::allFieldsMask( chipType, 5 ); } ), "0" );
      const auto failure = failureOf( [&] { entryOf( chipType, 5 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
      std::ostringstream message;
      message << "chipType: " << chip( chipType ) << " variant: 5 not in metainfo for LifTable!";
      EXPECT_EQ( failure->message, message.str() );
   }
   EXPECT_EQ( View::fieldCount( 4, 5 ), 4 );
}

TEST( LifTable, ViewInTheHoleHasNoField ) {
   U8 buffer[80] = {};
   for( const unsigned chipType : { 2u, 3u, 10u, 16u } ) {
      Testing::Probe<View> view( chip( chipType ), buffer, sizeof buffer, false, 0 );
      view.pairIs( static_cast<U8>( chipType ), 5 );
      for( const auto& field : expectation().fields ) {
         EXPECT_FALSE( field.valid( view ) ) << chipType << " " << field.name;
         EXPECT_EQ( view.fieldWidth( field.identifier ), 0 ) << chipType << " " << field.name;
      }
      EXPECT_EQ( expressionOf( [&] { view.inLifProfile(); } ), "0" );
      EXPECT_EQ( expressionOf( [&] { view.dubleDataEntry(); } ), "0" );
   }
}

// Metadata

TEST( LifTable, WidthIsNotTheExtentOfTheFields ) {
   std::map<unsigned, unsigned> lastBit; // by chip type
   for( const auto& [chipType, variant] : validPairs() ) {
      const Raw4096 mask = View::allFieldsMask( chipType, static_cast<U8>( variant ) );
      for( unsigned bit = 0; bit < 4096; ++bit ) {
         if( ( mask.word( bit / 64 ) >> bit % 64 & 1 ) != 0 ) {
            lastBit[chipType] = std::max( lastBit[chipType], bit );
         }
      }
   }
   const std::map<unsigned, unsigned> right{ { 2, 98 },   { 3, 98 },   { 4, 116 },  { 5, 116 },
                                             { 6, 116 },  { 7, 116 },  { 8, 116 },  { 10, 179 },
                                             { 12, 179 }, { 13, 179 }, { 14, 179 }, { 15, 179 },
                                             { 16, 179 }, { 21, 179 } };
   EXPECT_EQ( lastBit, right );
   EXPECT_EQ( View::width( 2, 0 ), 4 );
   EXPECT_EQ( View::width( 8, 6 ), 4 );
   EXPECT_EQ( View::width( 10, 8 ), 20 );
   EXPECT_EQ( View::tableWidth( 16, 11 ), 20 );
   EXPECT_EQ( View::width( 21, 0 ), 6 );
   EXPECT_EQ( View::entries( 10, 0 ), 4294967295u );
   EXPECT_EQ( View::entries( 21, 0 ), 1u );
}

TEST( LifTable, StorageIs80BytesOnEveryChipType ) {
   for( const auto& [chipType, variant] : validPairs() ) {
      EXPECT_EQ( entryOf( chipType, variant ).len(), 80 ) << where( chipType, variant );
   }
}

TEST( LifTable, BufferOfTheMemoryRowCannotAnswerTheWholeEntry ) {
   U8 buffer[80] = {};
   View two( Hardware::BCM88650_B0, buffer, 16, false, 6 );
   two.daNotFoundProfileIs( 3 );
   EXPECT_EQ( expressionOf( [&] { two.getAllFields(); } ), "len_ >= 80" );
   View software( Hardware::Software, buffer, 24, false, 0 );
   EXPECT_EQ( expressionOf( [&] { software.getAllFields(); } ), "len_ >= 80" );
   View ten( Hardware::BCM88690_B0, buffer, 79, false, 0 );
   EXPECT_EQ( expressionOf( [&] { ten.getAllFields(); } ), "len_ >= 80" );
   View whole( Hardware::BCM88650_B0, buffer, 80, true, 6 );
   EXPECT_EQ( whole.getAllFields().word( 1 ), U64{ 3 } << 32 );
}

TEST( LifTable, WholeEntryKeepsTheFieldsOfThePairAlone ) {
   U8 buffer[80];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   // The gaps of variant 6 are cleared; chip type 3 fills two bits of one of them.
   const Raw1024 two = View( Hardware::BCM88650_B0, buffer, 80, true, 6 ).getAllFields();
   EXPECT_EQ( two.word( 0 ), 0xffffffe7ffffff91u );
   EXPECT_EQ( two.word( 1 ), 0x00000003ffffe01fu );
   const Raw1024 three = View( Hardware::BCM88660_A0, buffer, 80, true, 6 ).getAllFields();
   EXPECT_EQ( three.word( 0 ), 0xffffffe7ffffff97u );
   const Raw1024 four = View( Hardware::BCM88375_A0, buffer, 80, false, 5 ).getAllFields();
   EXPECT_EQ( four.word( 0 ), 0xffffffffffffffffu );
   EXPECT_EQ( four.word( 1 ), 0x001fffffffffffffu );
   View ten( Hardware::BCM88690_B0, buffer, 80, false, 8 );
   EXPECT_EQ( ten.getAllFields().word( 1 ), 0xffffffffffffffffu );
   EXPECT_EQ( ten.getAllFields().word( 2 ), 0x000abfffffffffffu );
   EXPECT_EQ( ten.getAllFields().word( 3 ), 0u );
}

// Names and identifiers

TEST( LifTable, DeclaresItsNamesInThisOrder ) {
   const auto fields = Hardware::classFields( "LifTable" );
   ASSERT_EQ( fields.size(), 83u );
   std::vector<std::string> names;
   for( const std::size_t place : { 0u, 1u, 2u, 41u, 42u, 43u, 81u, 82u } ) {
      names.emplace_back( fields[place].name );
   }
   EXPECT_EQ( names, ( std::vector<std::string>{ "terminationProfileMsb", "expectBos",
                                                 "vlanEditVid1", "outLifMsb", "resultType",
                                                 "actionProfileIndex", "vsi", "statObjectCmd" } ) );
}

TEST( LifTable, Identifier333IsTerminationProfileMsbAlone ) {
   for( const unsigned chipType : oldChips ) {
      auto view = entryOf( chipType, 3 );
      const std::string numbers = " chipType: " + std::to_string( chipType ) + " variant: 3";
      const auto tracesOfSetting = [&]( U32 identifier ) {
         return Testing::tracesOf( 8, [&] { view.setField64( identifier, 1 ); } );
      };
      const std::string by = "virtual void Hardware::LifTable::setField64(U32, U64)" + numbers;
      EXPECT_EQ( tracesOfSetting( 333 ),
                 ( std::vector<std::string>{
                    by, "void Hardware::LifTable::terminationProfileMsbIs(U8)" + numbers } ) );
      EXPECT_EQ( tracesOfSetting( 336 ),
                 ( std::vector<std::string>{
                    by, "void Hardware::LifTable::terminationTypeMsbIs(U8)" + numbers } ) );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 333, 2 ); } ),
                 "terminationProfileMsb <= 0x1" );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 336, 2 ); } ), "terminationTypeMsb <= 0x1" );
      // The two names are one bit, so setting either shows in both.
      EXPECT_EQ( view.fieldOffset( 333 ), chipType <= 3 ? 96 : 76 );
      EXPECT_EQ( view.fieldOffset( 336 ), chipType <= 3 ? 96 : 76 );
      EXPECT_EQ( view.fieldWidth( 333 ), 1 );
      EXPECT_EQ( view.fieldWidth( 336 ), 1 );
      view.setField64( 333, 0 );
      EXPECT_EQ( view.terminationTypeMsb(), 0 );
      view.setField64( 333, 1 );
      EXPECT_EQ( view.terminationProfileMsb(), 1 );
      EXPECT_EQ( view.terminationTypeMsb(), 1 );
   }
   EXPECT_EQ( failureOf( [] { entryOf( 4, 2 ).fieldOffset( 333 ); } )->function,
              "U16 Hardware::LifTable::terminationProfileMsbOffset() const" );
   EXPECT_EQ( failureOf( [] { entryOf( 4, 2 ).fieldOffset( 336 ); } )->function,
              "U16 Hardware::LifTable::terminationTypeMsbOffset() const" );
   EXPECT_EQ( failureOf( [] { entryOf( 4, 2 ).terminationTypeMsbLen(); } )->message,
              "BCM88375_A0 does not have field TERMINATION_TYPE_MSB" );
}

TEST( LifTable, ActionProfileIndexAndActionProfileIdxAreTwoFields ) {
   auto old = entryOf( 8, 3 );
   auto tagged = entryOf( 10, 3 );
   EXPECT_TRUE( old.isFieldValid( 6 ) );
   EXPECT_FALSE( old.isFieldValid( 5 ) );
   EXPECT_FALSE( tagged.isFieldValid( 6 ) );
   EXPECT_TRUE( tagged.isFieldValid( 5 ) );
   EXPECT_EQ( expressionOf( [&] { old.actionProfileIdx(); } ), "0" );
   EXPECT_EQ( expressionOf( [&] { tagged.actionProfileIndex(); } ), "0" );
   EXPECT_EQ( failureOf( [&] { old.actionProfileIdxLen(); } )->message,
              "BCM88680_A0 does not have field ACTION_PROFILE_IDX" );
   EXPECT_EQ( failureOf( [&] { tagged.actionProfileIndexLen(); } )->message,
              "BCM88690_B0 does not have field ACTION_PROFILE_INDEX" );
   old.setField64( 6, 5 );
   EXPECT_EQ( headOf( old, 1 ), ( Image{ 0x0a } ) );
   tagged.setField64( 5, 5 );
   EXPECT_EQ( tagged.actionProfileIdxOffset(), 49 );
   EXPECT_EQ( tagged.buf()[6], 0x0a );
}

TEST( LifTable, DoubleDataEntryIsSpeltOtherwiseInVariantFive ) {
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      for( unsigned variant = 0; variant <= 6; ++variant ) {
         auto view = entryOf( chipType, variant );
         const bool five = variant == 5;
         EXPECT_EQ( view.isDoubleDataEntryValid(), !five ) << where( chipType, variant );
         EXPECT_EQ( view.isDubleDataEntryValid(), five ) << where( chipType, variant );
         EXPECT_EQ( view.fieldOffset( five ? 75 : 70 ), 116 );
         EXPECT_EQ( view.fieldWidth( five ? 75 : 70 ), 1 );
         EXPECT_EQ( view.fieldWidth( five ? 70 : 75 ), 0 );
         view.stringFieldIs( five ? "dubleDataEntry" : "doubleDataEntry", 1 );
         EXPECT_EQ( headOf( view, 15 ), onesAt( 15, 116, 1 ) ) << where( chipType, variant );
      }
      EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 0 ).dubleDataEntry(); } ),
                 "variant_ == 5" );
      EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 5 ).doubleDataEntry(); } ), "0" );
   }
   for( const unsigned chipType : { 2u, 3u, 10u, 21u } ) {
      EXPECT_FALSE( entryOf( chipType, 0 ).isFieldValid( 70 ) );
      EXPECT_FALSE( entryOf( chipType, 0 ).isFieldValid( 75 ) );
      EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 0 ).dubleDataEntry(); } ), "0" );
   }
}

TEST( LifTable, HalvesOfVariantFiveHaveTwoPairsOfNames ) {
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      auto view = entryOf( chipType, 5 );
      const bool longNames = chipType <= 5;
      for( const auto& [lsb, msb, valid] :
           { std::tuple( 174u, 175u, longNames ), std::tuple( 241u, 251u, !longNames ) } ) {
         EXPECT_EQ( view.isFieldValid( lsb ), valid ) << chipType;
         EXPECT_EQ( view.isFieldValid( msb ), valid ) << chipType;
         if( !valid ) {
            EXPECT_EQ( expressionOf( [&, lsb = lsb] { view.setField64( lsb, 0 ); } ), "0" );
            EXPECT_EQ( expressionOf( [&, msb = msb] { view.fieldOffset( msb ); } ), "0" );
            continue;
         }
         EXPECT_EQ( view.fieldOffset( lsb ), 0 );
         EXPECT_EQ( view.fieldWidth( lsb ), 57 );
         EXPECT_EQ( view.fieldOffset( msb ), 57 );
         EXPECT_EQ( view.fieldWidth( msb ), 57 );
         view.setField64( lsb, 0x123456789abcdef );
         view.setField64( msb, 0x1fedcba98765432 );
      }
      view.reservedIs( 2 );
      EXPECT_EQ( headOf( view, 15 ), ( Image{ 0xef, 0xcd, 0xab, 0x89, 0x67, 0x45, 0x23, 0x65, 0xa8,
                                              0xec, 0x30, 0x75, 0xb9, 0xfd, 0x0b } ) )
         << chipType;
   }
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 0 ).inLifDataLsb(); } ), "variant_ == 5" );
   EXPECT_EQ( expressionOf( [] { entryOf( 6, 0 ).lsb(); } ), "variant_ == 5" );
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 0 ).lsb(); } ), "0" );
   EXPECT_EQ( expressionOf( [] { entryOf( 8, 0 ).inLifDataLsb(); } ), "0" );
}

TEST( LifTable, SettersByNameAndIdentifierReachAllButTwo ) {
   U8 buffer[80] = {};
   std::set<std::string> refusedNames;
   std::set<unsigned> refusedIdentifiers;
   for( const auto& field : expectation().fields ) {
      View view( Hardware::BCM88690_B0, buffer, sizeof buffer, false, 3 );
      const auto named = failureOf( [&] { view.stringFieldIs( field.name, 0 ); } );
      if( named && named->message ) {
         EXPECT_EQ( named->expression, "\"false\" == nullptr" );
         EXPECT_EQ( named->message, "fieldName not found or is const." );
         refusedNames.insert( field.name );
      }
      if( expressionOf( [&] { view.setField64( field.identifier, 0 ); } ) == "false" ) {
         refusedIdentifiers.insert( field.identifier );
      }
   }
   EXPECT_EQ( refusedNames, ( std::set<std::string>{ "resultType" } ) );
   EXPECT_EQ( refusedIdentifiers, ( std::set<unsigned>{ 243, 296 } ) );
   View view( Hardware::BCM88690_B0, buffer, sizeof buffer, false, 3 );
   const auto wide = failureOf( [&] { view.stringFieldIs( "mdbEntry", 0 ); } );
   ASSERT_TRUE( wide );
   EXPECT_EQ( wide->expression, "false" );
   EXPECT_FALSE( wide->message );
}

// Overlaps

struct Reading {
   std::string field;
   unsigned offset;
   unsigned width;
};

struct SharedBits {
   unsigned variant;
   std::vector<unsigned> chips;
   std::vector<std::vector<Reading>> groups;
};

// The only fields of chip types 2 to 8 that share bits.
const std::vector<SharedBits>& sharedBits() {
   // clang-format off
   static const std::vector<SharedBits> rows{
      { 2, { 2, 3 }, {
         { { "eeiOrOutLif", 20, 20 }, { "mplsVcLabel", 20, 20 } },
         { { "eeiOrOutLifIdentifier", 40, 4 }, { "mplsPushProfile", 40, 4 } },
      } },
      { 2, { 4, 5, 6, 7, 8 }, {
         { { "outLifOrLabel", 20, 24 }, { "mplsVcLabel", 20, 20 }, { "mplsPushProfile", 40, 4 } },
         { { "eeiIsLabel", 44, 1 }, { "eeiOrOutLifType", 44, 1 } },
      } },
      { 3, { 2, 3 }, {
         { { "terminationProfile", 5, 2 }, { "terminationProfileLsb", 5, 2 },
           { "terminationTypeLsb", 5, 2 } },
         { { "inLif", 17, 16 }, { "sysInLif", 17, 16 } },
         { { "eeiOrOutLif", 33, 24 }, { "outLifValue", 33, 16 }, { "outLifValidBit", 49, 1 } },
         { { "terminationProfileMsb", 96, 1 }, { "terminationTypeMsb", 96, 1 } },
      } },
      { 3, { 4, 5, 6, 7, 8 }, {
         { { "terminationProfileLsb", 5, 2 }, { "terminationTypeLsb", 5, 2 } },
         { { "eeiOrOutLif", 33, 24 }, { "outLifValue", 33, 18 }, { "outLifValidBit", 51, 1 } },
         { { "terminationProfileMsb", 76, 1 }, { "terminationTypeMsb", 76, 1 } },
      } },
      { 4, { 2, 3 }, {
         { { "terminationProfile", 5, 2 }, { "terminationTypeLsb", 5, 2 } },
         { { "vsi", 19, 15 }, { "daNotFoundProfile", 19, 2 } },
         { { "inRif", 37, 12 }, { "inRifMsb", 37, 12 } },
         { { "destinationValid", 76, 1 }, { "destinationValidOrTerminationTypeMsb", 76, 1 } },
      } },
      { 4, { 4, 5, 8 }, {
         { { "vsi", 19, 15 }, { "vsiMsb", 32, 2 } },
      } },
      { 4, { 6, 7 }, {
         { { "vsi", 19, 15 }, { "vsiMsb", 32, 2 } },
         { { "forwardingCode", 51, 4 }, { "expectBos", 51, 1 } },
      } },
   };
   // clang-format on
   return rows;
}

TEST( LifTable, AlternativeReadingsShareTheirBits ) {
   std::mt19937 random( 17 );
   for( const SharedBits& row : sharedBits() ) {
      for( const unsigned chipType : row.chips ) {
         for( const auto& group : row.groups ) {
            for( const Reading& written : group ) {
               auto view = entryOf( chipType, row.variant );
               const Bits value = Testing::randomBits( written.width, random );
               Image right( 80, 0 );
               Testing::bitsAtAre( right, written.offset, written.width, value );
               fieldNamed( written.field ).set( view, value );
               EXPECT_EQ( imageOf( view ), right )
                  << where( chipType, row.variant ) << " " << written.field;
               for( const Reading& read : group ) {
                  EXPECT_EQ( fieldNamed( read.field ).get( view ),
                             Testing::bitsAt( right, read.offset, read.width ) )
                     << where( chipType, row.variant ) << " " << written.field << " read as "
                     << read.field;
               }
            }
         }
      }
   }
}

// The other fields of the pair that show the bits of a field.
std::map<std::string, std::set<std::string>> overlapsOf( unsigned chipType, unsigned variant ) {
   U8 buffer[80] = {};
   View view( chip( chipType ), buffer, sizeof buffer, false, static_cast<U8>( variant ) );
   std::map<std::string, std::set<std::string>> overlaps;
   for( const auto& written : expectation().fields ) {
      if( !written.valid( view ) ) {
         continue;
      }
      std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0 } );
      if( written.readOnly ) {
         buffer[21] = 0xc0; // resultType, bits 174 to 179
         buffer[22] = 0x0f;
      } else {
         written.mask( view );
      }
      for( const auto& read : expectation().fields ) {
         if( read.name != written.name && read.valid( view ) && read.get( view ).any() ) {
            overlaps[written.name].insert( read.name );
         }
      }
   }
   return overlaps;
}

TEST( LifTable, NoOtherFieldsOfChipTypes2To8ShareBits ) {
   for( const unsigned chipType : oldChips ) {
      for( unsigned variant = 0; variant <= 6; ++variant ) {
         if( !pairValid( chipType, variant ) ) {
            continue;
         }
         std::map<std::string, std::set<std::string>> right;
         for( const SharedBits& row : sharedBits() ) {
            if( row.variant != variant ||
                std::find( row.chips.begin(), row.chips.end(), chipType ) == row.chips.end() ) {
               continue;
            }
            for( const auto& group : row.groups ) {
               for( const Reading& one : group ) {
                  for( const Reading& other : group ) {
                     if( one.field != other.field && one.offset < other.offset + other.width &&
                         other.offset < one.offset + one.width ) {
                        right[one.field].insert( other.field );
                     }
                  }
               }
            }
         }
         EXPECT_EQ( overlapsOf( chipType, variant ), right ) << where( chipType, variant );
      }
   }
   EXPECT_EQ( overlapsOf( 4, 2 ).at( "mplsVcLabel" ),
              ( std::set<std::string>{ "outLifOrLabel" } ) );
   EXPECT_EQ( overlapsOf( 4, 2 ).at( "outLifOrLabel" ),
              ( std::set<std::string>{ "mplsPushProfile", "mplsVcLabel" } ) );
   EXPECT_TRUE( overlapsOf( 8, 5 ).empty() );
}

TEST( LifTable, NoNamedFieldsOverlapBesideMdbEntry ) {
   for( const auto& [chipType, variant] : validPairs() ) {
      if( chipType < 10 ) {
         continue;
      }
      std::set<std::string> named;
      for( const auto& [written, others] : overlapsOf( chipType, variant ) ) {
         if( written == "mdbEntry" ) {
            named = others;
         } else {
            EXPECT_EQ( others, ( std::set<std::string>{ "mdbEntry" } ) )
               << where( chipType, variant ) << " " << written;
         }
      }
      // It covers every other field of the pair.
      EXPECT_EQ( named.size() + 1u, View::fieldCount( chipType, static_cast<U8>( variant ) ) );
      EXPECT_EQ( named.count( "resultType" ), 1u );
   }
}

TEST( LifTable, MplsVcLabelIsTheLowPartOfOutLifOrLabel ) {
   auto view = entryOf( 4, 2 );
   view.outLifOrLabelIs( 0xa12345 );
   EXPECT_EQ( view.mplsVcLabel(), 0x12345u );
   EXPECT_EQ( view.mplsPushProfile(), 0xa );
   view.mplsVcLabelIs( 0x6789a );
   EXPECT_EQ( view.outLifOrLabel(), 0xa6789au );
   view.mplsPushProfileIs( 0x5 );
   EXPECT_EQ( view.outLifOrLabel(), 0x56789au );
   EXPECT_EQ( view.mplsVcLabel(), 0x6789au );
   view.eeiIsLabelIs( 1 );
   EXPECT_EQ( view.eeiOrOutLifType(), 1 );
   EXPECT_EQ( view.outLifOrLabel(), 0x56789au );

   // On chip types 2 and 3 the label and the profile are twins of two fields.
   auto two = entryOf( 2, 2 );
   two.mplsVcLabelIs( 0x6789a );
   two.mplsPushProfileIs( 0x5 );
   EXPECT_EQ( two.eeiOrOutLif(), 0x6789au );
   EXPECT_EQ( two.eeiOrOutLifIdentifier(), 0x5 );
   EXPECT_FALSE( two.isOutLifOrLabelValid() );
}

TEST( LifTable, OutLifValidBitLiesBehindTheOutLifValue ) {
   auto two = entryOf( 2, 3 );
   two.eeiOrOutLifIs( 0x1ffff );
   EXPECT_EQ( two.outLifValue(), 0xffffu );
   EXPECT_EQ( two.outLifValidBit(), 1 );
   two.outLifValueIs( 0x1234 );
   EXPECT_EQ( two.eeiOrOutLif(), 0x11234u );
   auto four = entryOf( 4, 3 );
   four.eeiOrOutLifIs( 0x4ffff );
   EXPECT_EQ( four.outLifValue(), 0xffffu );
   EXPECT_EQ( four.outLifValidBit(), 1 );
   four.outLifValueIs( 0x31234 );
   EXPECT_EQ( four.eeiOrOutLif(), 0x71234u );
}

TEST( LifTable, InRifMsbOfVariantFourIsInRifOnChipTypes2And3 ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      auto view = entryOf( chipType, 4 );
      EXPECT_EQ( view.inRifMsbOffset(), 37 );
      EXPECT_EQ( view.inRifMsbLen(), 12 );
      view.inRifMsbIs( 0xabc );
      EXPECT_EQ( view.inRif(), 0xabc );
      EXPECT_EQ( expressionOf( [&] { view.inRifMsbIs( 0x1000 ); } ), "inRifMsb <= 0xfff" );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      auto view = entryOf( chipType, 4 );
      EXPECT_EQ( view.inRifMsbOffset(), 37 );
      EXPECT_EQ( view.inRifMsbLen(), 13 );
      view.inRifMsbIs( 0x1abc );
      EXPECT_EQ( view.inRifMsb(), 0x1abc );
      // inRif is left to variant 6.
      EXPECT_EQ( expressionOf( [&] { view.inRif(); } ), "variant_ == 6" );
   }
}

TEST( LifTable, DaNotFoundProfileIsTheLowEndOfVsiOnChipTypes2And3 ) {
   for( const unsigned chipType : { 2u, 3u } ) {
      auto view = entryOf( chipType, 4 );
      view.vsiIs( 0x7ffc );
      EXPECT_EQ( view.daNotFoundProfile(), 0 );
      view.daNotFoundProfileIs( 2 );
      EXPECT_EQ( view.vsi(), 0x7ffeu );
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      auto view = entryOf( chipType, 4 );
      EXPECT_EQ( view.daNotFoundProfileOffset(), 55 );
      view.daNotFoundProfileIs( 2 );
      EXPECT_EQ( view.vsi(), 0u );
      view.vsiMsbIs( 2 );
      EXPECT_EQ( view.vsi(), 0x4000u );
      view.vsiIs( 0x2001 );
      EXPECT_EQ( view.vsiMsb(), 1 );
   }
}

TEST( LifTable, ExpectBosLiesInVariantFourOfFourChipTypes ) {
   for( const unsigned chipType : oldChips ) {
      const bool has = chipType == 2 || chipType == 3 || chipType == 6 || chipType == 7;
      for( unsigned variant = 0; variant <= 6; ++variant ) {
         if( pairValid( chipType, variant ) ) {
            EXPECT_EQ( entryOf( chipType, variant ).isExpectBosValid(), has && variant == 4 )
               << where( chipType, variant );
         }
      }
      if( has ) {
         auto view = entryOf( chipType, 4 );
         EXPECT_EQ( view.expectBosOffset(), chipType <= 3 ? 54 : 51 );
         view.expectBosIs( 1 );
         EXPECT_EQ( view.forwardingCode(), chipType <= 3 ? 0 : 1 );
         EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 3 ).expectBos(); } ), "variant_ == 4" );
      } else {
         EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 4 ).expectBos(); } ), "0" );
         EXPECT_EQ( expressionOf( [&] { entryOf( chipType, 3 ).expectBos(); } ), "0" );
      }
   }
}

TEST( LifTable, TerminationProfileBelongsToChipTypes2And3 ) {
   for( const unsigned chipType : oldChips ) {
      for( unsigned variant = 0; variant <= 6; ++variant ) {
         if( !pairValid( chipType, variant ) ) {
            continue;
         }
         const bool terminates = variant == 3 || variant == 4;
         auto view = entryOf( chipType, variant );
         EXPECT_EQ( view.isTerminationProfileValid(), chipType <= 3 && terminates )
            << where( chipType, variant );
         EXPECT_EQ( view.isTerminationTypeLsbValid(), terminates ) << where( chipType, variant );
         EXPECT_EQ( view.isTerminationProfileLsbValid(), variant == 3 );
      }
      auto view = entryOf( chipType, 3 );
      view.terminationTypeLsbIs( 2 );
      EXPECT_EQ( view.terminationProfileLsb(), 2 );
      EXPECT_EQ( headOf( view, 1 ), ( Image{ 0x40 } ) );
   }
   EXPECT_EQ( entryOf( 3, 4 ).terminationProfileOffset(), 5 );
   EXPECT_EQ( expressionOf( [] { entryOf( 2, 0 ).terminationProfile(); } ), "0" );
}

// Formats of chip types 2 to 8

TEST( LifTable, CommonFieldsOfChipTypes2To8KeepTheirPlaces ) {
   struct Common {
      U32 identifier;
      std::string variants;
      unsigned offset;
      unsigned width;
   };
   // vlanEditVid1, vlanEditPcpDeiProfile, vlanEditProfile, orientationIsHub, cosProfile,
   // inLifProfile; oamLifSet, protectionPath, protectionPointer.
   const std::vector<Common> everywhere{
      { 355, "012", 48, 12 },   { 353, "012", 60, 4 },    { 354, "012", 64, 3 },
      { 257, "012", 67, 1 },    { 50, "012", 68, 6 },     { 176, "012", 74, 4 },
      { 356, "01", 36, 12 },    { 61, "02", 0, 19 },      { 61, "34", 57, 19 },
      { 257, "346", 0, 1 },     { 246, "346", 4, 1 },     { 176, "346", 7, 4 },
      { 339, "346", 11, 2 },    { 335, "34", 5, 2 },      { 256, "012346", 80, 1 },
      { 287, "012346", 81, 1 }, { 288, "012346", 82, 14 }
   };
   const std::vector<Common> since4{ { 321, "012346", 98, 18 }, { 70, "012346", 116, 1 } };
   for( const unsigned chipType : oldChips ) {
      for( unsigned variant = 0; variant <= 6; ++variant ) {
         if( variant == 5 ) {
            continue;
         }
         const auto view = entryOf( chipType, variant );
         for( const auto* list : { &everywhere, &since4 } ) {
            for( const Common& common : *list ) {
               if( common.variants.find( static_cast<char>( '0' + variant ) ) ==
                      std::string::npos ||
                   ( list == &since4 && chipType <= 3 ) ) {
                  continue;
               }
               EXPECT_EQ( view.fieldOffset( common.identifier ), common.offset )
                  << where( chipType, variant ) << " " << common.identifier;
               EXPECT_EQ( view.fieldWidth( common.identifier ), common.width )
                  << where( chipType, variant ) << " " << common.identifier;
            }
         }
      }
   }
   EXPECT_FALSE( entryOf( 2, 2 ).isVlanEditVid2Valid() );
   EXPECT_FALSE( entryOf( 8, 1 ).isDestinationValid() );
   EXPECT_TRUE( entryOf( 8, 1 ).isVsiValid() );
}

TEST( LifTable, ChipTypes2And3DifferInVariantSixAlone ) {
   const std::set<std::string> own{ "skipEthernet", "useInLif" };
   for( const unsigned variant : { 0u, 1u, 2u, 3u, 4u, 6u } ) {
      const auto two = entryOf( 2, variant );
      const auto three = entryOf( 3, variant );
      for( const auto& field : expectation().fields ) {
         const bool differs = variant == 6 && own.count( field.name ) != 0;
         EXPECT_EQ( field.valid( two ) == field.valid( three ), !differs )
            << variant << " " << field.name;
         if( field.valid( two ) ) {
            EXPECT_EQ( field.offset( two ), field.offset( three ) );
            EXPECT_EQ( field.len( two ), field.len( three ) );
         }
      }
   }
   EXPECT_EQ( View::fieldCount( 2, 6 ), 16 );
   EXPECT_EQ( View::fieldCount( 3, 6 ), 18 );
   EXPECT_EQ( expressionOf( [] { entryOf( 2, 6 ).skipEthernet(); } ), "0" );
   EXPECT_EQ( expressionOf( [] { entryOf( 3, 0 ).skipEthernet(); } ), "variant_ == 6" );
   EXPECT_EQ( entryOf( 3, 6 ).useInLifOffset(), 2 );
   EXPECT_EQ( entryOf( 3, 0 ).useInLifOffset(), 96 );
}

TEST( LifTable, TypeIsAnOrdinaryField ) {
   for( const unsigned chipType : oldChips ) {
      for( unsigned variant = 0; variant <= 4; ++variant ) {
         auto view = entryOf( chipType, variant );
         EXPECT_EQ( view.type(), 0 ) << where( chipType, variant );
         EXPECT_EQ( view.typeOffset(), chipType <= 3 ? 97 : 96 );
         view.typeIs( 3 );
         EXPECT_EQ( headOf( view, 13 ), onesAt( 13, chipType <= 3 ? 97 : 96, 2 ) );
         EXPECT_EQ( view.variant(), variant );
      }
      EXPECT_FALSE( entryOf( chipType, 6 ).isTypeValid() );
   }
}

TEST( LifTable, ConstructionLeavesAnEntryWithoutTagAlone ) {
   for( const auto& [chipType, variant] : validPairs() ) {
      if( chipType >= 10 && chipType != 21 ) {
         continue;
      }
      for( const bool existingEntry : { false, true } ) {
         Image image( 80, 0xa5 );
         View view( chip( chipType ), image.data(), 80, existingEntry, static_cast<U8>( variant ) );
         EXPECT_EQ( image, Image( 80, 0xa5 ) ) << where( chipType, variant );
         // Nor is a buffer needed for it.
         EXPECT_EQ( expressionOf( [&, chipType = chipType, variant = variant] {
                       View( chip( chipType ), nullptr, 0, existingEntry,
                             static_cast<U8>( variant ) );
                    } ),
                    "none" );
      }
   }
}

// Bounds

TEST( LifTable, LearnInfoIsBoundedByTheWidthInForce ) {
   for( const unsigned variant : { 1u, 6u } ) {
      for( const unsigned chipType : { 2u, 3u } ) {
         auto view = entryOf( chipType, variant );
         EXPECT_EQ( expressionOf( [&] { view.learnInfoIs( 0xabc12345 ); } ), "none" );
         EXPECT_EQ( view.learnInfo(), 0x2345u );
      }
   }
   for( const unsigned chipType : { 4u, 5u, 6u, 7u, 8u } ) {
      auto one = entryOf( chipType, 1 );
      EXPECT_EQ( expressionOf( [&] { one.learnInfoIs( 0x20000 ); } ), "learnInfo <= 0x1ffff" );
      one.learnInfoIs( 0x1ffff );
      EXPECT_EQ( headOf( one, 5 ), onesAt( 5, 16, 17 ) );
      auto six = entryOf( chipType, 6 );
      EXPECT_EQ( expressionOf( [&] { six.learnInfoIs( 0x40000 ); } ), "learnInfo <= 0x3ffff" );
      six.learnInfoIs( 0x20000 );
      EXPECT_EQ( six.learnInfo(), 0x20000u );
   }
   auto ten = entryOf( 10, 1 );
   EXPECT_EQ( expressionOf( [&] { ten.learnInfoIs( 0x1000000 ); } ), "learnInfo <= 0xffffff" );
}

TEST( LifTable, FieldsOf8Or16BitsLoseTheUpperBitsSilently ) {
   auto one = entryOf( 4, 1 );
   one.vsiIs( 0x12345 );
   EXPECT_EQ( headOf( one, 2 ), ( Image{ 0x45, 0x23 } ) );
   auto six = entryOf( 8, 6 );
   six.vsiIs( 0xfff10001 );
   EXPECT_EQ( six.vsi(), 1u );
   EXPECT_EQ( headOf( six, 3 ), ( Image{ 0x00, 0x00, 0x08 } ) );
   auto three = entryOf( 2, 3 );
   three.sysInLifIs( 0x54321 );
   EXPECT_EQ( three.inLif(), 0x4321 );
   three.outLifValueIs( 0x14321 );
   EXPECT_EQ( three.outLifValue(), 0x4321u );
   EXPECT_EQ( three.outLifValidBit(), 0 );
   auto ten = entryOf( 10, 0 );
   ten.qosProfileIs( 0x1ab );
   EXPECT_EQ( ten.qosProfile(), 0xab );
   EXPECT_EQ( ten.inLifProfile(), 0 );
   auto software = entryOf( 21, 0 );
   software.lifGenericData0Is( 0xabcd );
   EXPECT_EQ( software.lifGenericData0(), 0xcd );
   auto tenThree = entryOf( 10, 3 );
   tenThree.lifGenericData1Is( 0xabcd );
   EXPECT_EQ( tenThree.lifGenericData1(), 0xcd );
   EXPECT_EQ( tenThree.lifGenericData0(), 0 );
   auto tenOne = entryOf( 10, 1 );
   tenOne.globInLifIs( 0x9abcdef );
   EXPECT_EQ( tenOne.globInLif(), 0xcdefu );
   EXPECT_EQ( tenOne.resultType(), 2 );
}

TEST( LifTable, SameFieldsHaveABoundAtOtherWidths ) {
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 4 ).vsiIs( 0x8000 ); } ), "vsi <= 0x7fff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 1 ).vsiIs( 0x1000 ); } ), "vsi <= 0xfff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 21, 0 ).vsiIs( 0x20000 ); } ), "vsi <= 0x1ffff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 3 ).sysInLifIs( 0x40000 ); } ),
              "sysInLif <= 0x3ffff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 3 ).outLifValueIs( 0x40000 ); } ),
              "outLifValue <= 0x3ffff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 7 ).qosProfileIs( 0x400 ); } ),
              "qosProfile <= 0x3ff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 1 ).qosProfileIs( 0x40 ); } ), "qosProfile <= 0x3f" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 0 ).globInLifIs( 0x10 ); } ), "globInLif <= 0xf" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 3 ).globInLifIs( 0x400000 ); } ),
              "globInLif <= 0x3fffff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 2, 6 ).inRifIs( 0x1000 ); } ), "inRif <= 0xfff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 4, 6 ).inRifIs( 0x8000 ); } ), "inRif <= 0x7fff" );
}

TEST( LifTable, HalvesAndLearnedValueAreBoundedThroughTheirReference ) {
   const U64 excess = 0x200000000000000;
   auto four = entryOf( 4, 5 );
   EXPECT_EQ( expressionOf( [&] { four.inLifDataLsbIs( excess ); } ),
              "inLifDataLsb <= 0x1ffffffffffffff" );
   EXPECT_EQ( expressionOf( [&] { four.inLifDataMsbIs( excess ); } ),
              "inLifDataMsb <= 0x1ffffffffffffff" );
   auto six = entryOf( 6, 5 );
   EXPECT_EQ( expressionOf( [&] { six.lsbIs( excess ); } ), "lsb <= 0x1ffffffffffffff" );
   EXPECT_EQ( expressionOf( [&] { six.setField64( 251, ~U64{ 0 } ); } ),
              "msb <= 0x1ffffffffffffff" );
   EXPECT_EQ( imageOf( six ), Image( 80, 0 ) );
   six.msbIs( 0x1ffffffffffffff );
   EXPECT_EQ( headOf( six, 15 ), onesAt( 15, 57, 57 ) );
   EXPECT_EQ( six.lsb(), 0u );
   auto ten = entryOf( 10, 6 );
   EXPECT_EQ(
      expressionOf( [&] { ten.stringFieldIs( "learnInfoAsymLifBasicExt", 0x1000000000000 ); } ),
      "learnInfoAsymLifBasicExt <= 0xffffffffffff" );
}

TEST( LifTable, LengthsFollowTheFieldAlone ) {
   U8 buffer[80] = {};
   const auto lengthOf = [&]( unsigned chipType, unsigned variant, U16 len,
                              const std::function<void( View& )>& action ) {
      Testing::Probe<View> probe( chip( chipType ), buffer, 80, false, static_cast<U8>( variant ) );
      probe.bufferIs( buffer, len );
      return expressionOf( [&] { action( probe ); } );
   };
   EXPECT_EQ( lengthOf( 2, 0, 12, []( View& view ) { view.type(); } ), "len_ >= 13" );
   EXPECT_EQ( lengthOf( 2, 0, 13, []( View& view ) { view.type(); } ), "none" );
   EXPECT_EQ( lengthOf( 4, 5, 14, []( View& view ) { view.dubleDataEntryMask(); } ), "len_ >= 15" );
   EXPECT_EQ( lengthOf( 4, 5, 8, []( View& view ) { view.inLifDataLsb(); } ), "none" );
   EXPECT_EQ( lengthOf( 4, 5, 7, []( View& view ) { view.inLifDataLsb(); } ), "len_ >= 8" );
   EXPECT_EQ( lengthOf( 10, 0, 22, []( View& view ) { view.resultType(); } ), "len_ >= 23" );
   EXPECT_EQ( lengthOf( 10, 0, 22, []( View& view ) { view.mdbEntryIs( {} ); } ), "len_ >= 23" );
   EXPECT_EQ( lengthOf( 10, 0, 22, []( View& view ) { view.globInLif(); } ), "none" );
   EXPECT_EQ( lengthOf( 10, 0, 21, []( View& view ) { view.globInLif(); } ), "len_ >= 22" );
   EXPECT_EQ( lengthOf( 10, 0, 1, []( View& view ) { view.fodoAssignmentModeIs( 1 ); } ), "none" );
   EXPECT_EQ( lengthOf( 21, 0, 22, []( View& view ) { view.resultType(); } ), "len_ >= 23" );
   EXPECT_EQ( lengthOf( 21, 0, 22, []( View& view ) { view.mdbEntryMask(); } ), "len_ >= 23" );
}

// Tags

TEST( LifTable, StampsTheTwoBytesOfItsTag ) {
   struct Stamp {
      unsigned variant;
      U8 byte21;
      U8 byte22;
      U8 resultType;
   };
   const std::vector<Stamp> stamps{
      { 0, 0x80, 0x0e, 0x3a },  { 1, 0x80, 0x00, 0x02 },  { 2, 0x80, 0x0e, 0x3a },
      { 3, 0x40, 0x09, 0x25 },  { 4, 0x40, 0x08, 0x21 },  { 6, 0xc0, 0x0b, 0x2f },
      { 7, 0x00, 0x0a, 0x28 },  { 8, 0x80, 0x0a, 0x2a },  { 9, 0x40, 0x0c, 0x31 },
      { 10, 0x00, 0x0c, 0x30 }, { 11, 0x00, 0x0d, 0x34 },
   };
   for( const unsigned chipType : taggedChips ) {
      for( const Stamp& stamp : stamps ) {
         const auto variant = static_cast<U8>( stamp.variant );
         U8 zeros[80] = {};
         View fresh( chip( chipType ), zeros, sizeof zeros, false, variant );
         Image right( 80, 0 );
         right[21] = stamp.byte21;
         right[22] = stamp.byte22;
         EXPECT_EQ( imageOf( fresh ), right ) << where( chipType, stamp.variant );
         EXPECT_EQ( fresh.resultType(), stamp.resultType );
         EXPECT_EQ( fresh.resultTypeOffset(), 174 );
         EXPECT_EQ( fresh.resultTypeLen(), 6 );

         // Every other bit of the buffer stays as it is, in the least buffer too.
         Image ones( 23, 0xff );
         View full( chip( chipType ), ones.data(), 23, false, variant );
         EXPECT_EQ( ones[21], 0x3f | stamp.byte21 );
         EXPECT_EQ( ones[22], 0xf0 | stamp.byte22 );
         EXPECT_TRUE( std::all_of( ones.begin(), ones.begin() + 21,
                                   []( U8 byte ) { return byte == 0xff; } ) );
         EXPECT_EQ( expressionOf( [&] { View( chip( chipType ), zeros, 22, false, variant ); } ),
                    "len_ >= 23" );
         EXPECT_EQ(
            expressionOf( [&] { View( chip( chipType ), zeros, sizeof zeros, true, variant ); } ),
            "none" );
      }
   }
}

TEST( LifTable, VerifiesTheTagInDecimal ) {
   U8 zeros[80] = {};
   const std::string zero =
      "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 6, 174 ); ( n == 58 ); })";
   for( const U8 variant : { U8{ 0 }, U8{ 2 } } ) {
      const auto failure =
         failureOf( [&] { View( Hardware::BCM88690_B0, zeros, sizeof zeros, true, variant ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, zero );
      EXPECT_FALSE( failure->message );
   }
   EXPECT_EQ( expressionOf( [&] { View( Hardware::BCM88480_B0, zeros, sizeof zeros, true, 1 ); } ),
              "({ U8 n = 0; getBuf( buf_, len_, (U8 *)&n, sizeof( U8 ), 6, 174 ); ( n == 2 ); })" );
   EXPECT_EQ( imageOf( View( Hardware::Software, zeros, sizeof zeros, false, 0 ) ),
              Image( 80, 0 ) );
}

TEST( LifTable, VariantsZeroAndTwoAreOneFormat ) {
   std::mt19937 random( 5 );
   for( const unsigned chipType : taggedChips ) {
      Image image = Testing::randomImage( 80, random );
      View zero( chip( chipType ), image.data(), 80, false, 0 );
      View two( chip( chipType ), image.data(), 80, true, 2 );
      unsigned count = 0;
      for( const auto& field : expectation().fields ) {
         ASSERT_EQ( field.valid( zero ), field.valid( two ) ) << chipType << " " << field.name;
         if( field.valid( zero ) ) {
            EXPECT_EQ( field.get( zero ), field.get( two ) ) << chipType << " " << field.name;
            ++count;
         }
      }
      EXPECT_EQ( count, 23u );
      EXPECT_TRUE( View::isLifTable( chip( chipType ), image.data(), 80, 0 ) );
      EXPECT_TRUE( View::isLifTable( chip( chipType ), image.data(), 80, 2 ) );
   }
}

TEST( LifTable, MdbEntryTakesTheTagAway ) {
   for( const unsigned chipType : taggedChips ) {
      for( const unsigned variant : { 0u, 1u, 2u, 3u, 4u, 6u, 7u, 8u, 9u, 10u, 11u } ) {
         auto view = entryOf( chipType, variant );
         EXPECT_NE( view.resultType(), 0 );
         view.mdbEntryIs( Raw256{} );
         EXPECT_EQ( view.resultType(), 0 ) << where( chipType, variant );
         EXPECT_EQ( imageOf( view ), Image( 80, 0 ) );
         EXPECT_FALSE(
            View::isLifTable( chip( chipType ), view.buf(), 80, static_cast<U8>( variant ) ) );
         EXPECT_EQ( expressionOf( [&] {
                       View( chip( chipType ), view.buf(), 80, true, static_cast<U8>( variant ) );
                    } ).substr( 0, 7 ),
                    "({ U8 n" );
      }
   }
}

TEST( LifTable, MdbEntryIsThe180BitsOfTheEntry ) {
   for( const unsigned chipType : { 10u, 12u, 13u, 14u, 15u, 16u, 21u } ) {
      auto view = entryOf( chipType, 0 );
      EXPECT_EQ( view.mdbEntryOffset(), 0 );
      EXPECT_EQ( view.mdbEntryLen(), 180 );
      view.mdbEntryMask();
      EXPECT_EQ( headOf( view, 23 ), onesAt( 23, 0, 180 ) );
      EXPECT_EQ( view.resultType(), 0x3f );
      // What lies above bit 179 of the value is dropped.
      Raw256 value{};
      value.wordIs( 0, 0x0123456789abcdef );
      value.wordIs( 1, 0x1122334455667788 );
      value.wordIs( 2, 0xfff000000000000e | U64{ 0x21 } << 46 );
      value.wordIs( 3, ~U64{ 0 } );
      view.mdbEntryIs( value );
      EXPECT_EQ( view.stringField( "mdbEntry", 0 ), 0x0123456789abcdefu );
      EXPECT_EQ( view.stringField( "mdbEntry", 1 ), 0x1122334455667788u );
      EXPECT_EQ( view.stringField( "mdbEntry", 2 ), 0x0008'4000'0000'000eu );
      EXPECT_EQ( view.stringField( "mdbEntry", 3 ), 0u );
      EXPECT_EQ( view.mdbEntry().word( 2 ), 0x0008'4000'0000'000eu );
      EXPECT_EQ( view.mdbEntry().word( 3 ), 0u );
      EXPECT_EQ( view.resultType(), 0x21 );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 243, 0 ); } ), "false" );
      EXPECT_EQ( expressionOf( [&] { view.stringFieldIs( "mdbEntry", 0 ); } ), "false" );
   }
   // The tag of a fresh entry is in the third word.
   EXPECT_EQ( entryOf( 10, 0 ).stringField( "mdbEntry", 2 ), U64{ 58 } << 46 );
   EXPECT_EQ( entryOf( 21, 0 ).stringField( "mdbEntry", 2 ), 0u );
}

TEST( LifTable, ResultTypeIsReadOnly ) {
   for( const unsigned chipType : oldChips ) {
      const auto view = entryOf( chipType, 0 );
      EXPECT_FALSE( view.isFieldValid( 296 ) );
      EXPECT_EQ( view.fieldWidth( 296 ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.resultType(); } ), "0" );
   }
   for( const unsigned chipType : { 10u, 12u, 13u, 14u, 15u, 16u, 21u } ) {
      auto view = entryOf( chipType, 0 );
      EXPECT_TRUE( view.isFieldValid( 296 ) );
      EXPECT_EQ( view.fieldWidth( 296 ), 6 );
      EXPECT_EQ( view.fieldOffset( 296 ), 174 );
      EXPECT_EQ( view.stringField( "resultType", 0 ), chipType == 21 ? 0u : 58u );
      EXPECT_EQ( expressionOf( [&] { view.setField64( 296, 1 ); } ), "false" );
      const auto failure = failureOf( [&] { view.stringFieldIs( "resultType", 1 ); } );
      ASSERT_TRUE( failure );
      EXPECT_EQ( failure->expression, "\"false\" == nullptr" );
      EXPECT_EQ( failure->message, "fieldName not found or is const." );
   }
}

// Discriminator

TEST( LifTable, IsLifTableRefusesTheChipTypesOfNoTable ) {
   Image image( 80, 0xff );
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      const bool known = ( chipType >= 2 && chipType <= 8 ) || chipType == 10 ||
                         ( chipType >= 12 && chipType <= 16 ) || chipType == 21;
      for( const U16 len : { U16{ 0 }, U16{ 22 }, U16{ 23 }, U16{ 80 } } ) {
         for( const U8 variant : { U8{ 5 }, U8{ 12 }, U8{ 255 } } ) {
            EXPECT_EQ( View::isLifTable( chip( chipType ), image.data(), len, variant ), known )
               << where( chipType, variant );
         }
         // A tag of all ones belongs to no variant, but is looked for where there are tags alone.
         const bool untagged = ( chipType >= 2 && chipType <= 8 ) || chipType == 21;
         EXPECT_EQ( View::isLifTable( chip( chipType ), image.data(), len, 0 ), untagged )
            << chipType;
      }
   }
   for( const unsigned chipType : { 9u, 11u, 17u, 22u } ) {
      EXPECT_FALSE( View::isLifTable( chip( chipType ), nullptr, 0, 0 ) );
      EXPECT_FALSE( View::isLifTable( chip( chipType ), nullptr, 0, 5 ) );
   }
}

TEST( LifTable, IsLifTableIsGenerousWhereThereIsNoTag ) {
   for( unsigned variant = 0; variant < 256; ++variant ) {
      for( const U16 len : { U16{ 0 }, U16{ 22 }, U16{ 80 } } ) {
         const auto number = static_cast<U8>( variant );
         // No buffer to read from: the answer is given without it.
         for( const unsigned chipType : { 2u, 3u, 4u, 5u, 6u, 7u, 8u, 21u } ) {
            EXPECT_TRUE( View::isLifTable( chip( chipType ), nullptr, len, number ) )
               << where( chipType, variant );
         }
         for( const unsigned chipType : taggedChips ) {
            if( variant == 5 || variant >= 12 ) {
               EXPECT_TRUE( View::isLifTable( chip( chipType ), nullptr, len, number ) )
                  << where( chipType, variant );
            } else if( len < 23 ) {
               EXPECT_FALSE( View::isLifTable( chip( chipType ), nullptr, len, number ) )
                  << where( chipType, variant );
            }
         }
      }
   }
}

TEST( LifTable, IsLifTableComparesTheTagAlone ) {
   const std::map<unsigned, std::set<unsigned>> variantsOfTag{
      { 58, { 0, 2 } }, { 2, { 1 } },  { 37, { 3 } }, { 33, { 4 } },  { 47, { 6 } },
      { 40, { 7 } },    { 42, { 8 } }, { 49, { 9 } }, { 48, { 10 } }, { 52, { 11 } },
   };
   for( const unsigned chipType : taggedChips ) {
      for( unsigned tag = 0; tag < 64; ++tag ) {
         for( const U8 filling : { U8{ 0x00 }, U8{ 0xff } } ) {
            Image image( 23, filling );
            Testing::bitsAtAre( image, 174, 6, Bits( tag ) );
            std::set<unsigned> taken;
            for( const unsigned variant : { 0u, 1u, 2u, 3u, 4u, 6u, 7u, 8u, 9u, 10u, 11u } ) {
               if( View::isLifTable( chip( chipType ), image.data(), 23,
                                     static_cast<U8>( variant ) ) ) {
                  taken.insert( variant );
               }
            }
            const auto right = variantsOfTag.find( tag );
            EXPECT_EQ( taken, right == variantsOfTag.end() ? std::set<unsigned>{} : right->second )
               << chipType << " tag " << tag;
         }
      }
   }
}

// Formats of chip types 10, 12 to 16

TEST( LifTable, ChipTypes12And14DifferFromTheirSiblings ) {
   const std::map<unsigned, std::set<std::string>> changed{
      { 4, { "nextLayerNetworkDomain" } },
      { 8, { "propagationProf", "qosProfile", "fodoAssignmentMode", "nextParserContext" } },
      { 9, { "lifGenericData1", "lifGenericData0" } },
      { 10,
        { "destination", "serviceType", "nextLayerNetworkDomain", "ecnMappingProfile",
          "statObjectCmd", "statObjectId", "actionProfileIdx", "propagationProf",
          "fodoAssignmentMode", "learnEnable", "learnInfoAsymLifBasicExt", "fodo",
          "learnInfoNoLifExtSymLifExt" } },
   };
   for( const unsigned chipType : { 12u, 13u, 14u, 15u, 16u } ) {
      for( const unsigned variant : { 0u, 1u, 2u, 3u, 4u, 6u, 7u, 8u, 9u, 10u, 11u } ) {
         const auto ten = entryOf( 10, variant );
         const auto other = entryOf( chipType, variant );
         std::set<std::string> differing;
         for( const auto& field : expectation().fields ) {
            const bool both = field.valid( ten ) && field.valid( other );
            if( field.valid( ten ) != field.valid( other ) ||
                ( both && ( field.offset( ten ) != field.offset( other ) ||
                            field.len( ten ) != field.len( other ) ) ) ) {
               differing.insert( field.name );
            }
         }
         const auto right = changed.find( variant );
         EXPECT_EQ( differing, ( chipType == 12 || chipType == 14 ) && right != changed.end()
                                  ? right->second
                                  : std::set<std::string>{} )
            << where( chipType, variant );
      }
   }
   EXPECT_EQ( expressionOf( [] { entryOf( 12, 10 ).learnInfoAsymLifBasicExt(); } ),
              "variant_ == 6" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 10 ).learnInfoNoLifExtSymLifExt(); } ), "0" );
   EXPECT_EQ( expressionOf( [] { entryOf( 12, 6 ).learnInfoNoLifExtSymLifExt(); } ),
              "variant_ == 10" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 10 ).fodo(); } ), "variant_ == 6" );
   EXPECT_EQ( expressionOf( [] { entryOf( 12, 10 ).fodoIs( 4 ); } ), "fodo <= 0x3" );
   EXPECT_EQ( expressionOf( [] { entryOf( 12, 6 ).fodoIs( 0x40000 ); } ), "fodo <= 0x3ffff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 14, 4 ).nextLayerNetworkDomainIs( 16 ); } ),
              "nextLayerNetworkDomain <= 0xf" );
   EXPECT_EQ( expressionOf( [] { entryOf( 14, 10 ).nextLayerNetworkDomainIs( 8 ); } ),
              "nextLayerNetworkDomain <= 0x7" );
   EXPECT_EQ( expressionOf( [] { entryOf( 10, 10 ).nextLayerNetworkDomainIs( 512 ); } ),
              "nextLayerNetworkDomain <= 0x1ff" );
   EXPECT_EQ( expressionOf( [] { entryOf( 14, 8 ).nextParserContextIs( 32 ); } ),
              "nextParserContext <= 0x1f" );
}

TEST( LifTable, VariantElevenIsVariantThreeWithoutGenericData ) {
   for( const unsigned chipType : taggedChips ) {
      const auto three = entryOf( chipType, 3 );
      const auto eleven = entryOf( chipType, 11 );
      for( const auto& field : expectation().fields ) {
         const bool generic = field.name == "lifGenericData0" || field.name == "lifGenericData1";
         EXPECT_EQ( field.valid( eleven ), field.valid( three ) && !generic ) << field.name;
         if( field.valid( eleven ) ) {
            EXPECT_EQ( field.offset( eleven ), field.offset( three ) ) << field.name;
            EXPECT_EQ( field.len( eleven ), field.len( three ) ) << field.name;
         }
      }
      EXPECT_EQ( three.resultType(), 37 );
      EXPECT_EQ( eleven.resultType(), 52 );
   }
}

TEST( LifTable, VariantsFallIntoGroupsByTheirFields ) {
   const std::map<std::string, std::set<unsigned>> variantsOf{
      { "terminationType", { 3, 4, 8, 11 } },
      { "ecnMappingProfile", { 3, 4, 6, 9, 10, 11 } },
      { "learnEnable", { 0, 1, 2, 6, 10 } },
      { "learnPayloadContext", { 0, 1, 2, 6, 10 } },
      { "learnInfo", { 1 } },
      { "vlanEditVid1", { 0, 1, 2, 7 } },
      { "vlanEditPcpDeiProfile", { 0, 1, 2, 7 } },
      { "vlanEditProfile", { 0, 1, 2, 7 } },
      { "vlanEditVid2", { 0, 2, 7 } },
      { "statObjectCmd", { 0, 1, 2, 3, 4, 6, 7, 9, 10, 11 } },
      { "statObjectId", { 0, 1, 2, 3, 4, 6, 7, 9, 10, 11 } },
      { "mdbEntry", { 0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11 } },
      { "resultType", { 0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11 } },
   };
   for( const unsigned chipType : taggedChips ) {
      const bool narrow = chipType == 12 || chipType == 14;
      for( const unsigned variant : { 0u, 1u, 2u, 3u, 4u, 6u, 7u, 8u, 9u, 10u, 11u } ) {
         const auto view = entryOf( chipType, variant );
         for( const auto& [name, variants] : variantsOf ) {
            EXPECT_EQ( fieldNamed( name ).valid( view ), variants.count( variant ) != 0 )
               << where( chipType, variant ) << " " << name;
         }
         EXPECT_EQ( view.isLearnInfoAsymLifBasicExtValid(),
                    variant == 6 || ( variant == 10 && !narrow ) );
         EXPECT_EQ( view.isLearnInfoNoLifExtSymLifExtValid(), variant == 10 && narrow );
         if( view.isEcnMappingProfileValid() ) {
            EXPECT_EQ( view.globInLifOffset(), 152 );
            EXPECT_EQ( view.globInLifLen(), 22 );
         }
      }
      EXPECT_EQ( View::fieldCount( chipType, 8 ), 6 );
   }
}

// Software

TEST( LifTable, SoftwareHasVariantZeroAlone ) {
   auto view = entryOf( 21, 0 );
   EXPECT_EQ( imageOf( view ), Image( 80, 0 ) );
   EXPECT_EQ( view.width(), 6 );
   EXPECT_EQ( view.entries(), 1u );
   EXPECT_EQ( view.tableVariantCount(), 1u );
   EXPECT_EQ( expressionOf( [&] { view.tableVariantCount( 21, 1 ); } ), "variant == 0" );
   EXPECT_EQ( expressionOf( [] { View::width( 21, 1 ); } ), "variant == 0" );
   EXPECT_EQ( expressionOf( [] { View::allFieldsMask( 21, 2 ); } ), "variant == 0" );
   EXPECT_EQ( expressionOf( [] { View::width( 2, 5 ); } ), "0" );
   EXPECT_EQ( failureOf( [] { entryOf( 21, 1 ); } )->message,
              "chipType: Software variant: 1 not in metainfo for LifTable!" );
   U8 buffer[80] = {};
   Testing::Probe<View> probe( Hardware::Software, buffer, sizeof buffer, false, 0 );
   probe.pairIs( 21, 1 );
   EXPECT_EQ( expressionOf( [&] { probe.vsi(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { probe.getAllFields(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { probe.eei(); } ), "0" );
}

TEST( LifTable, SoftwareKeepsItsFieldsElsewhere ) {
   auto ten = entryOf( 10, 0 );
   auto software = entryOf( 21, 0 );
   EXPECT_FALSE( ten.isGlobOutLifValid() );
   EXPECT_TRUE( software.isGlobOutLifValid() );
   for( const U32 identifier : { 237u, 79u } ) { // lifGenericData1, eei
      EXPECT_TRUE( ten.isFieldValid( identifier ) );
      EXPECT_FALSE( software.isFieldValid( identifier ) );
      EXPECT_EQ( expressionOf( [&] { software.fieldOffset( identifier ); } ), "0" );
   }
   EXPECT_EQ( failureOf( [&] { software.eeiLen(); } )->message,
              "Software does not have field EEI" );
   // Nothing but mdbEntry and resultType lies at the same bits; bit 0 belongs to mdbEntry alone.
   std::set<std::string> same;
   for( const auto& field : expectation().fields ) {
      if( field.valid( ten ) && field.valid( software ) &&
          field.offset( ten ) == field.offset( software ) ) {
         same.insert( field.name );
      }
   }
   EXPECT_EQ( same, ( std::set<std::string>{ "mdbEntry", "resultType" } ) );
   software.mdbEntryMask();
   EXPECT_EQ( software.globInLif(), 0x3fffffu );
   EXPECT_EQ( software.resultType(), 0x3f );
}

TEST( LifTable, SoftwareHasNoAddress ) {
   U32 address = 7;
   U8 accessType = 8;
   U8 destBlock = 9;
   const auto ask = [&]( U8 variant ) {
      return View::getSchanAddress( 21, variant, address, accessType, destBlock, 0, 0, 0 );
   };
   EXPECT_EQ( expressionOf( [&] { ask( 0 ); } ), "0" );
   EXPECT_EQ( expressionOf( [&] {
                 entryOf( 21, 0 ).getSchanAddress( address, accessType, destBlock, 0, 0, 0 );
              } ),
              "0" );
   EXPECT_FALSE( ask( 1 ) );
   EXPECT_FALSE( ask( 5 ) );
   EXPECT_EQ( address, 7u );
   EXPECT_EQ( accessType, 8 );
   EXPECT_EQ( destBlock, 9 );
}

// Addresses

struct Address {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   bool operator==( const Address& ) const = default;
};

Address addressOf( U32 chipType, U8 variant, U32 tableEntry, U16 arrayIndex, U16 identifier = 0 ) {
   Address found;
   EXPECT_TRUE( View::getSchanAddress( chipType, variant, found.address, found.accessType,
                                       found.destBlock, identifier, tableEntry, arrayIndex ) );
   return found;
}

TEST( LifTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf( 3, 0, 16383, 3 ), ( Address{ 0x107ffff, 0, 52 } ) );
   EXPECT_EQ( addressOf( 4, 6, 16383, 7 ), ( Address{ 0x201ffff, 0, 64 } ) );
   EXPECT_EQ( addressOf( 8, 6, 16383, 7 ), ( Address{ 0x201ffff, 0, 71 } ) );
   EXPECT_EQ( addressOf( 6, 5, 32767, 1 ), ( Address{ 0x68ffff, 0, 58 } ) );
   EXPECT_EQ( addressOf( 10, 0, 4294967294, 0 ), ( Address{ 0xfffffffe, 10, 1 } ) );
   EXPECT_EQ( addressOf( 12, 11, 5, 0 ), ( Address{ 5, 10, 1 } ) );
   EXPECT_EQ( addressOf( 13, 11, 5, 0 ), ( Address{ 5, 4, 5 } ) );
   EXPECT_EQ( addressOf( 14, 11, 5, 0 ), ( Address{ 5, 28, 12 } ) );
   EXPECT_EQ( addressOf( 16, 11, 5, 0 ), ( Address{ 5, 16, 15 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf( 2, 0, 16384, 0 ); } ), "tableEntry < 16384" );
   EXPECT_EQ( expressionOf( [] { addressOf( 2, 0, 0, 4 ); } ), "arrayIndex < 4" );
   EXPECT_EQ( expressionOf( [] { addressOf( 5, 0, 0, 8 ); } ), "arrayIndex < 8" );
   EXPECT_EQ( expressionOf( [] { addressOf( 7, 0, 32768, 0 ); } ), "tableEntry < 32768" );
   EXPECT_EQ( expressionOf( [] { addressOf( 7, 0, 0, 2 ); } ), "arrayIndex < 2" );
   EXPECT_EQ( expressionOf( [] { addressOf( 2, 0, 0, 0, 1 ); } ), "identifier <= 0" );
   EXPECT_EQ( expressionOf( [] { addressOf( 10, 0, 4294967295, 0 ); } ),
              "tableEntry < 4294967295" );
   EXPECT_EQ( expressionOf( [] { addressOf( 10, 0, 0, 1 ); } ), "arrayIndex == 0" );
}

TEST( LifTable, VariantsAreReadingsOfTheSameRow ) {
   for( const auto& [chipType, variant] : validPairs() ) {
      if( chipType != 21 ) {
         EXPECT_EQ( addressOf( chipType, static_cast<U8>( variant ), 1234, 0 ),
                    addressOf( chipType, 0, 1234, 0 ) )
            << where( chipType, variant );
      }
   }
   for( const unsigned chipType : { 2u, 3u, 10u, 12u, 13u, 14u, 15u, 16u } ) {
      Address none{ 1, 2, 3 };
      EXPECT_FALSE( View::getSchanAddress( chipType, 5, none.address, none.accessType,
                                           none.destBlock, 0, 0, 0 ) );
      EXPECT_EQ( none, ( Address{ 1, 2, 3 } ) );
   }
}

// Whole entries

TEST( LifTable, ComposesAnEntryThroughTheRegistry ) {
   const auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
   view->stringFieldIs( "vsi", 0x1234 );
   view->stringFieldIs( "qosProfile", 0x5a );
   view->setField64( 236, 0xbeef ); // lifGenericData0
   view->setField64( 355, 0xabc );  // vlanEditVid1
   view->stringFieldIs( "eei", 0x123456 );
   view->stringFieldIs( "destination", 0x10f0f1 );
   view->stringFieldIs( "globInLif", 9 );
   const Image right{ 0x68, 0x24, 0xb4, 0x00, 0x00, 0x00, 0xbc, 0xfb, 0x02, 0x00, 0x00, 0x00,
                      0x5e, 0x05, 0x00, 0xc0, 0x8a, 0x46, 0x22, 0x1e, 0x1e, 0xa6, 0x0e };
   EXPECT_EQ( Image( view->buf(), view->buf() + 23 ), right );
   Image read = right;
   EXPECT_TRUE( View::isLifTable( Hardware::BCM88690_B0, read.data(), 23, 2 ) );
   const View existing( Hardware::BCM88690_B0, read.data(), 23, true, 2 );
   EXPECT_EQ( existing.vlanEditVid1(), 0xabc );
   EXPECT_EQ( existing.destination(), 0x10f0f1u );
   EXPECT_EQ( existing.learnEnable(), 0 );
   EXPECT_EQ( read, right );
}

TEST( LifTable, ComposesOneSetOfValuesIntoTwoFormats ) {
   auto three = entryOf( 3, 6 );
   auto four = entryOf( 4, 6 );
   for( View* const view : { static_cast<View*>( &three ), static_cast<View*>( &four ) } ) {
      view->skipEthernetIs( 1 );
      view->useInLifIs( 1 );
      view->modelIsPipeIs( 1 );
      view->cosProfileIs( 0x2a );
      view->vsiIs( 0xbeef );
      view->inRifIs( 0xabc );
      view->learnInfoIs( 0x1234 );
      view->protectionPointerIs( 0x2345 );
      view->daNotFoundProfileIs( 2 );
   }
   EXPECT_EQ( headOf( three, 13 ), ( Image{ 0x16, 0x40, 0x7d, 0xf7, 0x85, 0x57, 0xd1, 0x48, 0x00,
                                            0x00, 0x14, 0x8d, 0x02 } ) );
   four.inRifIs( 0x5abc );
   four.learnInfoIs( 0x31234 );
   four.sysInLifIs( 0x2beef );
   four.doubleDataEntryIs( 1 );
   EXPECT_EQ( headOf( four, 15 ), ( Image{ 0x16, 0x40, 0x7d, 0xf7, 0xe5, 0xd5, 0xa2, 0x91, 0x18,
                                           0x00, 0x14, 0x8d, 0xbe, 0xfb, 0x1a } ) );
}

TEST( LifTable, ComposesTheSiblingFormatsOfVariantTen ) {
   auto ten = entryOf( 10, 10 );
   ten.destinationIs( 0x10f0f1 );
   ten.nextLayerNetworkDomainIs( 0x155 );
   ten.learnInfoAsymLifBasicExtIs( 0x123456789abc );
   ten.globInLifIs( 0x212345 );
   EXPECT_EQ( headOf( ten, 23 ),
              ( Image{ 0x00, 0x00, 0x88, 0x87, 0x87, 0xa8, 0x0a, 0x00, 0x00, 0x00, 0xc0, 0xab,
                       0x89, 0x67, 0x45, 0x23, 0x01, 0x00, 0x00, 0x45, 0x23, 0x21, 0x0c } ) );
   auto twelve = entryOf( 12, 10 );
   twelve.nextLayerNetworkDomainIs( 5 );
   twelve.fodoIs( 2 );
   twelve.learnInfoNoLifExtSymLifExtIs( 0x2345678 );
   twelve.globInLifIs( 0x212345 );
   EXPECT_EQ( headOf( twelve, 23 ),
              ( Image{ 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xa0, 0x00, 0x00, 0x00,
                       0x40, 0xe0, 0x59, 0xd1, 0x08, 0x00, 0x00, 0x45, 0x23, 0x21, 0x0c } ) );
}

TEST( LifTable, ComposesAnEntryOfSoftware ) {
   auto view = entryOf( 21, 0 );
   view.vsiIs( 0x1234 );
   view.qosProfileIs( 0x5a );
   view.lifGenericData0Is( 0xbe );
   view.vlanEditVid1Is( 0xabc );
   view.globOutLifIs( 0x3a5a5a );
   view.destinationIs( 0x10f0f1 );
   view.globInLifIs( 0x212345 );
   EXPECT_EQ( headOf( view, 23 ),
              ( Image{ 0xd0, 0x48, 0xa0, 0x05, 0xc0, 0x17, 0x00, 0x00, 0x00, 0x00, 0x5e, 0x05,
                       0x00, 0x40, 0x4b, 0x4b, 0x8f, 0x87, 0x87, 0x45, 0x23, 0x21, 0x00 } ) );
}

} // namespace
