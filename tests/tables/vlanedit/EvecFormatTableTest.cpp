// EvecFormatTable: 128 egress VLAN edit commands, spelled out.
#include "support/Contract.h"
#include "support/Numbers.h"

#include <Hardware/EvecEncapTable.h>
#include <Hardware/EvecFormatTable.h>

namespace {

using View = Hardware::EvecFormatTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EvecFormatTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, outerVidSource,    OuterVidSource,    262, "OUTER_VID_SOURCE" ),
      NARROW_FIELD( U8, innerPcpDeiSource, InnerPcpDeiSource, 168, "INNER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, tagsToRemove,      TagsToRemove,      323, "TAGS_TO_REMOVE" ),
      NARROW_FIELD( U8, innerVidSource,    InnerVidSource,    171, "INNER_VID_SOURCE" ),
      NARROW_FIELD( U8, outerPcpDeiSource, OuterPcpDeiSource, 259, "OUTER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, innerTpidIndex,    InnerTpidIndex,    170, "INNER_TPID_INDEX" ),
      NARROW_FIELD( U8, outerTpidIndex,    OuterTpidIndex,    261, "OUTER_TPID_INDEX" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "10,12-16" }, {
         { "tagsToRemove",      { "0:2" } },
         { "outerVidSource",    { "2:3" } },
         { "innerVidSource",    { "5:3" } },
         { "outerTpidIndex",    { "8:4" } },
         { "innerTpidIndex",    { "12:4" } },
         { "outerPcpDeiSource", { "16:2" } },
         { "innerPcpDeiSource", { "18:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0", 1, 128, 1, 7, 2, 1 },
      { "13,15,16", "0", 1, 128, 1, 7, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x1830000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "13",    "0", 0x1830000, 1, 0, { { 8, 4 } } },
      { "14",    "0", 0x1830000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "15,16", "0", 0x1830000, 1, 0, { { 24, 9 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( EvecFormatTable, expectation() )

TEST( EvecFormatTable, EditPartLiesElevenBitsBelowThatOfTheOneEntryTable ) {
   const auto compose = []( auto& view ) {
      view.outerVidSourceIs( 5 );
      view.innerVidSourceIs( 2 );
      view.outerTpidIndexIs( 0xa );
      view.innerTpidIndexIs( 0x9 );
      view.outerPcpDeiSourceIs( 2 );
      view.innerPcpDeiSourceIs( 1 );
      return view.getAllFields();
   };
   for( const unsigned number : Testing::numbersIn( "10,12-16" ) ) {
      const auto chipType = static_cast<Hardware::ChipType>( number );
      View::WithStorage format( chipType, 0 );
      Hardware::EvecEncapTable::WithStorage encap( chipType, 0 );
      EXPECT_EQ( compose( format ),
                 5u << 2 | 2u << 5 | 0xau << 8 | 9u << 12 | 2u << 16 | 1u << 18 );
      EXPECT_EQ( compose( encap ),
                 ( 5u << 2 | 2u << 5 | 0xau << 8 | 9u << 12 | 2u << 16 | 1u << 18 ) << 11 );
   }
}

} // namespace
