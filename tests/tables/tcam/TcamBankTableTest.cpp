// TcamBankTable: a bank's CPU command word, with one wide field of 164 or 328 bits.
#include "support/Contract.h"

#include <Hardware/TcamBankTable.h>

namespace {

using View = Hardware::TcamBankTable;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamBankTable" );
   expected.storageBytes = 44;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8,     tcamCpuCmdCmp,      TcamCpuCmdCmp,      324, "TCAM_CPU_CMD_CMP" ),
      WIDE_FIELD(   Raw512, tcamCpuCmdDi,       TcamCpuCmdDi,       325, "TCAM_CPU_CMD_DI" ),
      NARROW_FIELD( U8,     tcamCpuCmdRd,       TcamCpuCmdRd,       326, "TCAM_CPU_CMD_RD" ),
      NARROW_FIELD( U16,    tcamCpuCmdReserved, TcamCpuCmdReserved, 327, "TCAM_CPU_CMD_RESERVED" ),
      NARROW_FIELD( U8,     tcamCpuCmdValid,    TcamCpuCmdValid,    328, "TCAM_CPU_CMD_VALID" ),
      NARROW_FIELD( U8,     tcamCpuCmdWr,       TcamCpuCmdWr,       329, "TCAM_CPU_CMD_WR" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2,3", "4-8", "10,12-16" }, {
         { "tcamCpuCmdWr",       { "0:1",   "0:2",    "0:2" } },
         { "tcamCpuCmdRd",       { "1:1",   "2:1",    "2:1" } },
         { "tcamCpuCmdCmp",      { "2:1",   "3:1",    "3:1" } },
         { "tcamCpuCmdDi",       { "3:164", "4:164",  "4:328" } },
         { "tcamCpuCmdValid",    { "167:2", "168:2",  "332:2" } },
         { "tcamCpuCmdReserved", { "169:9", "170:10", "-" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3",      "0", 6,  26880, 1, 6, 1, 1 },
      { "4,5,8",    "0", 6,  65536, 1, 6, 1, 1 },
      { "6,7",      "0", 6,  32768, 1, 6, 1, 1 },
      { "10,12,14", "0", 11, 65536, 1, 5, 2, 1 },
      { "13",       "0", 11, 65536, 1, 5, 1, 1 },
      { "15,16",    "0", 11, 32768, 1, 5, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x1800000,  1, 0, { { 0, 53 } } },
      { "4,5",   "0", 0x1a000000, 1, 0, { { 0, 63 } } },
      { "6,7",   "0", 0x1a000000, 1, 0, { { 0, 63 } } },
      { "8",     "0", 0x1a000000, 1, 0, { { 0, 70 } } },
      { "10,12", "0", 0x1000000,  1, 0, { { 4, 6 }, { 6, 6 } } },
      { "13",    "0", 0x1000000,  1, 0, { { 28, 12 } } },
      { "14",    "0", 0x1000000,  1, 0, { { 16, 36 }, { 18, 36 } } },
      { "15,16", "0", 0x1000000,  1, 0, { { 0, 19 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( TcamBankTable, expectation() )

} // namespace
