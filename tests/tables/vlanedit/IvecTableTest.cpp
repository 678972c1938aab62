// IvecTable: ingress VLAN edit command profiles, one format and two or three copies of the table.
#include "support/Contract.h"

#include <Hardware/IvecTable.h>

namespace {

using View = Hardware::IvecTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "IvecTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, outerVidSrc,    OuterVidSrc,    263, "OUTER_VID_SRC" ),
      NARROW_FIELD( U8, outerPcpDeiSrc, OuterPcpDeiSrc, 260, "OUTER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8, tpidProfile,    TpidProfile,    339, "TPID_PROFILE" ),
      NARROW_FIELD( U8, innerPcpDeiSrc, InnerPcpDeiSrc, 169, "INNER_PCP_DEI_SRC" ),
      NARROW_FIELD( U8, tagsToRemove,   TagsToRemove,   323, "TAGS_TO_REMOVE" ),
      NARROW_FIELD( U8, innerVidSrc,    InnerVidSrc,    172, "INNER_VID_SRC" ),
      NARROW_FIELD( U8, innerTpidIndex, InnerTpidIndex, 170, "INNER_TPID_INDEX" ),
      NARROW_FIELD( U8, outerTpidIndex, OuterTpidIndex, 261, "OUTER_TPID_INDEX" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,1", { "2-8" }, {
         { "tpidProfile",    { "0:3" } },
         { "outerTpidIndex", { "3:2" } },
         { "outerVidSrc",    { "5:3" } },
         { "outerPcpDeiSrc", { "8:3" } },
         { "innerTpidIndex", { "11:2" } },
         { "innerVidSrc",    { "13:3" } },
         { "innerPcpDeiSrc", { "16:3" } },
         { "tagsToRemove",   { "19:2" } },
      } },
      { "0-2", { "10,12-16" }, {
         { "outerTpidIndex", { "0:3" } },
         { "outerVidSrc",    { "3:3" } },
         { "outerPcpDeiSrc", { "6:3" } },
         { "innerTpidIndex", { "9:3" } },
         { "innerVidSrc",    { "12:3" } },
         { "innerPcpDeiSrc", { "15:3" } },
         { "tagsToRemove",   { "18:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3,6,7",  "0,1", 1, 64,  1, 8, 1, 2 },
      { "4,5,8",    "0,1", 1, 64,  1, 8, 2, 2 },
      { "10,12,14", "0-2", 1, 128, 1, 7, 2, 3 },
      { "13,15,16", "0-2", 1, 128, 1, 7, 1, 3 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x2d0000,  1, 0, { { 0, 3 } } },
      { "2,3",   "1", 0x600000,  1, 0, { { 0, 2 } } },
      { "4,5",   "0", 0x2b0000,  1, 0, { { 0, 48 }, { 0, 49 } } },
      { "4,5",   "1", 0x6b0000,  1, 0, { { 0, 46 }, { 0, 47 } } },
      { "6,7",   "0", 0x2e0000,  1, 0, { { 0, 48 } } },
      { "6,7",   "1", 0x760000,  1, 0, { { 0, 46 } } },
      { "8",     "0", 0x250000,  1, 0, { { 0, 52 }, { 0, 53 } } },
      { "8",     "1", 0x6c0000,  1, 0, { { 0, 50 }, { 0, 51 } } },
      { "10,12", "0", 0x2270000, 1, 0, { { 26, 2 }, { 8, 10 } } },
      { "10,12", "1", 0x1810000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "10,12", "2", 0x2f10000, 1, 0, { { 24, 2 }, { 6, 10 } } },
      { "13",    "0", 0x2270000, 1, 0, { { 20, 5 } } },
      { "13",    "1", 0x1810000, 1, 0, { { 8, 4 } } },
      { "13",    "2", 0x2f30000, 1, 0, { { 0, 9 } } },
      { "14",    "0", 0x2270000, 1, 0, { { 26, 13 }, { 26, 25 } } },
      { "14",    "1", 0x1810000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "14",    "2", 0x2f30000, 1, 0, { { 24, 13 }, { 24, 25 } } },
      { "15,16", "0", 0x2270000, 1, 0, { { 8, 8 } } },
      { "15,16", "1", 0x1810000, 1, 0, { { 24, 9 } } },
      { "15,16", "2", 0x2f30000, 1, 0, { { 24, 17 } } },
   };
   // clang-format on
   expected.discriminator = View::isIvecTable;
   return expected;
}

CONTRACT_TESTS( IvecTable, expectation() )

TEST( IvecTable, OneProfileIsTwoNumbers ) {
   const auto compose = []( Hardware::ChipType chipType ) {
      View::WithStorage view( chipType, 0 );
      view.outerTpidIndexIs( 3 );
      view.outerVidSrcIs( 1 );
      view.innerTpidIndexIs( 2 );
      view.innerPcpDeiSrcIs( 7 );
      view.tagsToRemoveIs( 2 );
      return view.getAllFields();
   };
   EXPECT_EQ( compose( Hardware::BCM88650_B0 ),
              3u << 3 | 1u << 5 | 2u << 11 | 7u << 16 | 2u << 19 );
   EXPECT_EQ( compose( Hardware::BCM88690_B0 ), 3u | 1u << 3 | 2u << 9 | 7u << 15 | 2u << 18 );
}

} // namespace
