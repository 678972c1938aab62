// vorn stats, and --where and --fields of the verbs over dumps, run for real.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Testing::expectPrinted;
using Testing::vorn;

using Arguments = std::vector<std::string>;

// Of TcamActionTable on BCM88650_B0, whose one field has 20 bits.
const std::string actions = "05000000\n06000000\n05000000\n00000000\n";

// An entry of LifTable on BCM88690_B0 variant 3, whose tag is 0x25 in 6 bits from bit 174, with
// this in the lowest byte of vsi, 17 bits from bit 58.
std::string lifOf( unsigned vsi ) {
   std::string image( 80, '\0' );
   image[7] = static_cast<char>( ( vsi & 0x3f ) << 2 );
   image[21] = 0x40;
   image[22] = 0x09;
   return image;
}

Arguments with( Arguments arguments, const Arguments& more ) {
   arguments.insert( arguments.end(), more.begin(), more.end() );
   return arguments;
}

} // namespace

TEST( Stats, text ) {
   expectPrinted( { "stats", "TcamActionTable", "--chip", "2", "-" },
                  "TcamActionTable on BCM88650_B0: 4 entries\n"
                  "action  set in 3, 3 distinct, 0x0 to 0x6\n"
                  "        most often 0x5 (2), 0x0 (1), 0x6 (1)\n"
                  "        bits 3-19 are always 0\n",
                  actions );
   expectPrinted( { "stats", "TcamActionTable", "--chip", "2", "--where", "action > 4", "-" },
                  "TcamActionTable on BCM88650_B0: 3 entries\n"
                  "action  set in 3, 2 distinct, 0x5 to 0x6\n"
                  "        most often 0x5 (2), 0x6 (1)\n"
                  "        bits 3-19 are always 0\n"
                  "        bit 2 is always 1\n",
                  actions );
   expectPrinted( { "stats", "TcamActionTable", "--chip", "2", "-" },
                  "TcamActionTable on BCM88650_B0: 0 entries\n" );
   expectPrinted( { "stats", "-" }, "no entries\n" );
}

TEST( Stats, json ) {
   expectPrinted( { "stats", "TcamActionTable", "--chip", "2", "--json", "-" },
                  R"({"table":"TcamActionTable","chip":"BCM88650_B0","variant":0,"entries":4,)"
                  R"("fields":{"action":{"width":20,"set":3,"distinct":3,"distinctIsExact":true,)"
                  R"("least":0,"greatest":6,"frequent":[{"value":5,"entries":2},)"
                  R"({"value":0,"entries":1},{"value":6,"entries":1}],"alwaysOne":0,)"
                  R"("alwaysZero":1048568}}})"
                  "\n",
                  actions );
}

TEST( Stats, severalPairsAndFiles ) {
   const Testing::TemporaryFolder folder;
   std::ofstream( folder / "one" ) << "TcamActionTable 2: 05000000\nTcamActionTable 3: 06000000\n";
   std::ofstream( folder / "two" ) << "TcamActionTable 2: 07000000\n";
   expectPrinted( { "stats", folder / "one", folder / "two" },
                  "TcamActionTable on BCM88650_B0: 2 entries\n"
                  "action  set in 2, 2 distinct, 0x5 to 0x7\n"
                  "        most often 0x5 (1), 0x7 (1)\n"
                  "        bits 3-19 are always 0\n"
                  "        bits 0,2 are always 1\n"
                  "\n"
                  "TcamActionTable on BCM88660_A0: 1 entry\n"
                  "action  always 0x6\n" );
   const auto outcome = vorn( { "stats", "--keep-going", folder / "one", folder / "none" } );
   EXPECT_TRUE( outcome.err.ends_with( "No such file or directory\nvorn: 1 error, 2 images "
                                       "counted\n" ) )
      << outcome.err;
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Stats, staysWithin80Columns ) {
   std::string input;
   for( unsigned i = 0; i < 100; ++i ) {
      input += lifOf( i );
   }
   for( const auto& line :
        Testing::linesOf( vorn( { "stats", "LifTable", "--chip", "10", "-" }, input ).out ) ) {
      EXPECT_LE( line.size(), 80u ) << line;
   }
}

TEST( Choice, fieldsAndEntries ) {
   const std::string input = lifOf( 1 ) + lifOf( 2 ) + std::string( 80, '\0' ) + lifOf( 3 );
   const Arguments decode{ "decode", "LifTable", "--chip", "10", "--csv", "--empty" };
   const std::string header =
      "table,chip,variant,entry,array,identifier,address,vsi,vlanEditVid1\n";
   // Variant 3 has no vlanEditVid1, others have.
   const auto choice = with( decode, { "--fields", "vsi,vlanEditVid1", "-" } );
   expectPrinted( choice,
                  header + "LifTable,BCM88690_B0,3,0,0,0,0x0,1,\n"
                           "LifTable,BCM88690_B0,3,1,0,0,0x1,2,\n"
                           "LifTable,BCM88690_B0,0,2,0,0,0x2,0,0\n"
                           "LifTable,BCM88690_B0,3,3,0,0,0x3,3,\n",
                  input );
   expectPrinted( with( choice, { "--where", "vsi in 2..3" } ),
                  header + "LifTable,BCM88690_B0,3,1,0,0,0x1,2,\n"
                           "LifTable,BCM88690_B0,3,3,0,0,0x3,3,\n",
                  input );
   // In the order of the list, and with wildcards.
   const auto line = vorn( { "decode", "LifTable", "--chip", "10", "--variant", "3",
                             "--single-line", "--fields", "vsi, *Type", "-" },
                           lifOf( 9 ) + lifOf( 8 ) );
   EXPECT_TRUE( line.out.starts_with( "entry=0 array=0 identifier=0 address=0x0: vsi=0x9 "
                                      "serviceType=0x0 resultType=0x25 terminationType=0x0\n" ) )
      << line.out;
}

TEST( Choice, entriesThatCantFulfilTheCondition ) {
   const auto outcome = vorn( { "decode", "LifTable", "--chip", "10", "--csv", "--where",
                                "vlanEditVid1 == 0", "--fields", "vsi", "-" },
                              lifOf( 1 ) + lifOf( 2 ) );
   EXPECT_EQ( outcome.out, "table,chip,variant,entry,array,identifier,address,vsi\n" );
   EXPECT_TRUE(
      outcome.err.starts_with( "vorn: 2 images of LifTable on BCM88690_B0 variant 3 can't "
                               "fulfil --where: field vlanEditVid1 does not exist in " ) )
      << outcome.err;
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Choice, refused ) {
   const std::pair<Arguments, std::string> cases[] = {
      { { "--where", "action >" },
        "--where:9: unexpected end; a field or a value has to stand here" },
      { { "--where", "acton == 1" },
        "--where:1: no field \"acton\" in TcamActionTable on BCM88650_B0; did you mean action?" },
      { { "--fields", "action,action" }, "--fields:8: field action is given twice" },
      { { "--fields", "action," },
        "--fields:8: a name is missing; write fields as vsi,vlanEditVid1" },
      { { "--fields", "x*" },
        "--fields:1: no field of TcamActionTable on BCM88650_B0 matches \"x*\"" },
   };
   for( const auto& verb : { "decode", "stats" } ) {
      for( const auto& [options, message] : cases ) {
         Testing::expectRefused( with( { verb, "TcamActionTable", "--chip", "2", "-" }, options ),
                                 message, actions );
      }
   }
}
