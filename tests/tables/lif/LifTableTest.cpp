// LifTable: 83 fields in 114 formats, overlapping readings, a hole at variant 5, tags, Software.
#include "support/Contract.h"
#include "tables/lif/LifTableRows.h"

#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

namespace {

using View = Hardware::LifTable;
using Testing::Image;

Testing::Expectation expectation() {
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

CONTRACT_TESTS( LifTable, expectation() )

TEST( LifTable, MplsVcLabelIsTheLowPartOfOutLifOrLabel ) {
   View::WithStorage view( Hardware::BCM88375_A0, 2 );
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
   View::WithStorage two( Hardware::BCM88650_B0, 2 );
   two.mplsVcLabelIs( 0x6789a );
   two.mplsPushProfileIs( 0x5 );
   EXPECT_EQ( two.eeiOrOutLif(), 0x6789au );
   EXPECT_EQ( two.eeiOrOutLifIdentifier(), 0x5 );
   EXPECT_FALSE( two.isOutLifOrLabelValid() );
}

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

} // namespace
