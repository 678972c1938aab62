// vorn address, run for real: lines, JSON, ranges and each kind of bad input.
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using Testing::expectPrinted;

using Arguments = std::vector<std::string>;

Arguments address( const std::string& table, const std::string& chip, const Arguments& more = {} ) {
   Arguments arguments{ "address", table, "--chip", chip };
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

// A line of JSON for a place of LifTable on chip type 3.
std::string lifLine( const std::string& entry, const std::string& at ) {
   return R"({"table":"LifTable","chip":"BCM88660_A0","variant":6,"entry":)" + entry +
          R"(,"array":3,"identifier":0,"address":")" + at + R"(","accessType":0,"destBlock":52})" +
          '\n';
}

} // namespace

TEST( Address, oneEntry ) {
   expectPrinted( address( "TcamActionTable", "BCM88690_B0",
                           { "--entry", "5", "--array", "2", "--identifier", "1" } ),
                  "entry  array  identifier    address  accessType  destBlock\n"
                  "    5      2           1  0x1101005           6          6\n" );
}

TEST( Address, theFirstEntryIfNoneIsNamed ) {
   expectPrinted( address( "EpniIsidTable", "4" ),
                  "entry  array  identifier   address  accessType  destBlock\n"
                  "    0      0           0  0x150000           0         48\n" );
}

TEST( Address, aRangeIsALineEach ) {
   expectPrinted( address( "TcamActionTable", "13", { "--entry=0x7fe-2047", "--array", "23" } ),
                  "entry  array  identifier    address  accessType  destBlock\n"
                  " 2046     23           0  0x110bffe          28         12\n"
                  " 2047     23           0  0x110bfff          28         12\n" );
}

TEST( Address, json ) {
   expectPrinted(
      address( "LifTable", "3",
               { "--variant", "6", "--entry", "16382-16383", "--array", "3", "--json" } ),
      lifLine( "16382", "0x107fffe" ) + lifLine( "16383", "0x107ffff" ) );
}

TEST( Address, columnsAreAsWideAsTheLastLineNeeds ) {
   expectPrinted( address( "LifTable", "10", { "--entry", "4294967293-4294967294" } ),
                  "     entry  array  identifier     address  accessType  destBlock\n"
                  "4294967293      0           0  0xfffffffd          10          1\n"
                  "4294967294      0           0  0xfffffffe          10          1\n" );
}

TEST( Address, aWholeTable ) {
   const auto out = Testing::vorn( address( "LifTable", "2", { "--entry", "0-16383" } ) ).out;
   EXPECT_EQ( std::count( out.begin(), out.end(), '\n' ), 16385 );
   EXPECT_TRUE( out.ends_with( "16383      0           0  0x1073fff           0         52\n" ) );
}

TEST( Address, aRegisterHasOne ) {
   expectPrinted( address( "FheiIveSizeReg", "4", { "--identifier", "1" } ),
                  "entry  array  identifier  address  accessType  destBlock\n"
                  "    0      0           1    0x1e8           0         61\n" );
}

TEST( Address, variantsMayLieElsewhere ) {
   expectPrinted( address( "OutAcBank", "4", { "--variant", "1", "--array", "1" } ),
                  "entry  array  identifier   address  accessType  destBlock\n"
                  "    0      1           0  0x100800           0         52\n" );
}
