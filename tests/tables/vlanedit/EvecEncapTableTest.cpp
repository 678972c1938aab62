// EvecEncapTable: an egress VLAN edit command in one entry, in two copies of the table.
#include "support/Contract.h"

#include <Hardware/EvecEncapTable.h>

namespace {

using View = Hardware::EvecEncapTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "EvecEncapTable" );
   expected.storageBytes = 4;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8, vlanMembership,    VlanMembership,    357, "VLAN_MEMBERSHIP" ),
      NARROW_FIELD( U8, outerVidSource,    OuterVidSource,    262, "OUTER_VID_SOURCE" ),
      NARROW_FIELD( U8, innerPcpDeiSource, InnerPcpDeiSource, 168, "INNER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, vlanMirror,        VlanMirror,        358, "VLAN_MIRROR" ),
      NARROW_FIELD( U8, innerVidSource,    InnerVidSource,    171, "INNER_VID_SOURCE" ),
      NARROW_FIELD( U8, outerPcpDeiSource, OuterPcpDeiSource, 259, "OUTER_PCP_DEI_SOURCE" ),
      NARROW_FIELD( U8, vlanTxTag,         VlanTxTag,         359, "VLAN_TX_TAG" ),
      NARROW_FIELD( U8, innerTpidIndex,    InnerTpidIndex,    170, "INNER_TPID_INDEX" ),
      NARROW_FIELD( U8, outerTpidIndex,    OuterTpidIndex,    261, "OUTER_TPID_INDEX" ),
      NARROW_FIELD( U8, vlanEditCommand,   VlanEditCommand,   352, "VLAN_EDIT_COMMAND" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,1", { "10,12-16" }, {
         { "vlanEditCommand",   { "0:8" } },
         { "vlanTxTag",         { "8:1" } },
         { "vlanMirror",        { "9:2" } },
         { "vlanMembership",    { "11:2" } },
         { "outerVidSource",    { "13:3" } },
         { "innerVidSource",    { "16:3" } },
         { "outerTpidIndex",    { "19:4" } },
         { "innerTpidIndex",    { "23:4" } },
         { "outerPcpDeiSource", { "27:2" } },
         { "innerPcpDeiSource", { "29:2" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "10,12,14", "0,1", 1, 64, 1, 10, 2, 2 },
      { "13,15,16", "0,1", 1, 64, 1, 10, 1, 2 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "10,12", "0", 0x1b0000,  1, 0, { { 28, 2 }, { 10, 10 } } },
      { "10,12", "1", 0x2720000, 1, 0, { { 30, 2 }, { 12, 10 } } },
      { "13",    "0", 0x1b0000,  1, 0, { { 2, 9 } } },
      { "13",    "1", 0x2720000, 1, 0, { { 8, 4 } } },
      { "14",    "0", 0x1b0000,  1, 0, { { 28, 13 }, { 28, 25 } } },
      { "14",    "1", 0x2720000, 1, 0, { { 30, 13 }, { 30, 25 } } },
      { "15,16", "0", 0x1b0000,  1, 0, { { 16, 9 } } },
      { "15,16", "1", 0x2720000, 1, 0, { { 24, 9 } } },
   };
   // clang-format on
   expected.discriminator = View::isEvecEncapTable;
   return expected;
}

CONTRACT_TESTS( EvecEncapTable, expectation() )

} // namespace
