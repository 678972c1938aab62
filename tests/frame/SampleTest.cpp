// The contract on classes of the tests' own, which together use all that a description can say.
#include "support/Contract.h"

#include "SampleRegister.h"
#include "SampleTable.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

namespace Table {

using View = Hardware::SampleTable;

// clang-format off
Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "SampleTable" );
   expected.registered = false;
   expected.storageBytes = 100;
   expected.fields = {
      NARROW_FIELD( U8, hits, Hits, 165, "HITS" ),
      WIDE_FIELD( Raw512, tcamCpuCmdDi, TcamCpuCmdDi, 325, "TCAM_CPU_CMD_DI" ),
      NARROW_FIELD( U16, vlanDomain, VlanDomain, 351, "VLAN_DOMAIN" ),
      READ_ONLY_FIELD( U8, tid, Tid, 338, "TID" ),
      NARROW_FIELD( U64, payload, Payload, 277, "PAYLOAD" ),
      NARROW_FIELD( U32, action, Action, 3, "ACTION" ),
      READ_ONLY_FIELD( U8, resultType, ResultType, 296, "RESULT_TYPE" ),
      WIDE_FIELD( Raw256, entry, Entry, 94, "ENTRY" ),
      WIDE_FIELD( Raw128, ipv6, Ipv6, 182, "IPV6" ),
      NARROW_FIELD( U32, vsi, Vsi, 364, "VSI" ),
      NARROW_FIELD( U16, outLif, OutLif, 264, "OUT_LIF" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,2,3,9", { "10", "12,13" }, {
         { "hits",       { "0:3",    "0:8" } },
         { "tid",        { "3:6",    "8:6" } },
         { "resultType", { "250:6",  "249:7" } },
         { "entry",      { "20:240", "20:240" } },
      } },
      { "0", { "10,12" }, {
         { "vlanDomain", { "57:12" } },
         { "payload",    { "60:64" } },
      } },
      { "2-3", { "10", "12" }, {
         { "vlanDomain", { "63:11",  "64:16" } },
         { "payload",    { "33:57",  "128:40" } },
         { "ipv6",       { "96:128", "-" } },
      } },
      { "3", { "10,12" }, { { "action", { "289:32" } } } },
      { "any", { "5,6", "7" }, {
         { "hits",         { "7:2",   "7:1" } },
         { "tcamCpuCmdDi", { "9:512", "11:300" } },
         { "vsi",          { "-",     "600:32" } },
      } },
      { "1", { "21" }, {
         { "outLif", { "784:16" } },
         { "hits",   { "0:8" } },
      } },
   } );
   expected.metadata = {
      { "10", "0", 25, 4294967295, 1, 6, 2, 4 },
      { "10", "2", 25, 4294967295, 1, 7, 2, 4 },
      { "10", "3", 25, 4294967295, 1, 8, 2, 4 },
      { "10", "9", 25, 4294967295, 1, 4, 2, 4 },
      { "12", "0,2", 25, 4294967295, 1, 6, 2, 4 },
      { "12", "3", 25, 4294967295, 1, 7, 2, 4 },
      { "12", "9", 25, 4294967295, 1, 4, 2, 4 },
      { "13", "0,2,3,9", 10, 1, 70, 4, 1, 4 },
      { "5", "any", 20, 4096, 3, 2, 1, 0 },
      { "6", "any", 20, 4097, 3, 2, 1, 0 },
      { "7", "any", 20, 4096, 65535, 3, 2, 0 },
      { "21", "1", 25, 7, 1, 2, 1, 1 },
   };
   expected.addresses = {
      { "10", "0,3", 0xfffffff0, 1, 0, { { 1, 2 }, { 3, 2 } } },
      { "10", "2,9", 0x1000, 2, 0, { { 4, 5 }, { 4, 6 } } },
      { "12", "0,2,3,9", 0x2000, 1, 0, { { 0, 0 }, { 255, 255 } } },
      { "13", "0,2,3", 0x30, 0, 7, { { 0, 9 } } },
      { "13", "9", 0x31, 0, 7, { { 0, 9 } } },
      { "5,6", "any", 0x500000, 16, 65536, { { 0, 1 } } },
      { "7", "any", 0x700000, 1, 4096, { { 0, 1 }, { 0, 2 } } },
   };
   expected.tags = {
      { "10,12", "0", { { "resultType", 33 }, { "tid", 7 } } },
      { "10,12", "2,3", { { "tid", 63 } } },
      { "13", "3", { { "tid", 5 } } },
   };
   expected.discriminator = View::isSampleTable;
   return expected;
}
// clang-format on

CONTRACT_TESTS( SampleTable, expectation() )

TEST( SampleTable, NamesTheOneVariantThatHasAField ) {
   View::WithStorage view( Hardware::BCM88690_B0, 2 );
   EXPECT_EQ( Testing::expressionOf( [&] { view.action(); } ), "variant_ == 3" );
   EXPECT_EQ( Testing::expressionOf( [&] { view.vsi(); } ), "0" );
   View::WithStorage other( Hardware::BCM88800_A0, 2 );
   EXPECT_EQ( Testing::expressionOf( [&] { other.action(); } ), "0" );
}

TEST( SampleTable, AOnlyVariantOtherThanZeroIsNotNamedByTheStatics ) {
   EXPECT_EQ( Testing::expressionOf( [] { View::width( 21, 0 ); } ), "0" );
   EXPECT_EQ( Testing::expressionOf( [] { View::width( 21, 1 ); } ), "none" );
}

TEST( SampleTable, AddressesWrapIn32Bits ) {
   U32 address = 0;
   U8 accessType = 0, destBlock = 0;
   ASSERT_TRUE( View::getSchanAddress( 10, 0, address, accessType, destBlock, 1, 0x20, 0 ) );
   EXPECT_EQ( address, 0x10u );
   EXPECT_EQ( accessType, 3 );
   EXPECT_EQ( destBlock, 2 );
}

TEST( SampleTable, ItsStorageIsZeroedWhereverItIsMade ) {
   using Owner = View::WithStorage;
   alignas( Owner ) unsigned char memory[sizeof( Owner )];
   std::memset( memory, 0xff, sizeof memory );
   // A pair without a tag, so that nothing is stamped either.
   auto* const view = new( memory ) Owner( Hardware::BCM88690_B0, 9 );
   EXPECT_EQ( view->len(), 100 );
   EXPECT_TRUE(
      std::all_of( view->buf(), view->buf() + 100, []( U8 byte ) { return byte == 0; } ) );
   view->~Owner();
}

TEST( SampleTable, AWordBeyondAWideFieldReadsAsZero ) {
   View::WithStorage view( Hardware::BCM88375_B0, 77 );
   view.tcamCpuCmdDiMask();
   EXPECT_EQ( view.stringField( "tcamCpuCmdDi", 7 ), ~U64{ 0 } );
   EXPECT_EQ( view.stringField( "tcamCpuCmdDi", 8 ), 0u );
   EXPECT_EQ( view.stringField( "tcamCpuCmdDi", 65535 ), 0u );
}

} // namespace Table

namespace Register {

using View = Hardware::SampleRegister;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::registerUnderTest<View>( "SampleRegister" );
   expected.registered = false;
   expected.storageBytes = 12;
   expected.maxIdentifier = 5;
   expected.addrStride = 8;
   expected.fields = {
      NARROW_FIELD( U32, command, Command, 47, "COMMAND" ),
      NARROW_FIELD( U8, found, Found, 151, "FOUND" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0,1",
        { "4", "8" },
        { { "command", { "40:20", "41:20" } }, { "found", { "-", "61:1" } } } },
   } );
   expected.metadata = {
      { "4", "0,1", 3, 1, 1, 1, 2, 0 },
      { "8", "0,1", 3, 1, 1, 2, 2, 0 },
   };
   expected.addresses = {
      { "4", "0,1", 0x100, 0, 0, { { 0, 1 }, { 0, 2 } } },
      { "8", "0,1", 0x200, 0, 0, { { 0, 3 }, { 9, 3 } } },
   };
   return expected;
}

CONTRACT_TESTS( SampleRegister, expectation() )

} // namespace Register

} // namespace
