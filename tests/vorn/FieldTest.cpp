// vorn field: where a field exists, by any of its names and by patterns.
#include "Json.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using Testing::expectPrinted;
using Testing::expectRefused;
using Testing::Json;
using Testing::parsed;
using Testing::vorn;

} // namespace

TEST( Field, linesForAPerson ) {
   const std::string size = "pphFheiIveSize (PPH_FHEI_IVE_SIZE, identifier 284)\n"
                            "table           offset  width  chip types: variants\n"
                            "FheiIveSizeReg       0    128  2-8: 0\n";
   for( const char* const name :
        { "pphFheiIveSize", "PPH_FHEI_IVE_SIZE", "284", "*FheiIveS?ze" } ) {
      expectPrinted( { "field", name }, size );
   }
}

TEST( Field, aPlaceForEachOfItsBits ) {
   // 20 bits on the first two chip types, then 24, then 32.
   const auto outcome = vorn( { "field", "action" } );
   EXPECT_NE( outcome.out.find( "TcamActionTable       0     20  2,3: 0\n"
                                "TcamActionTable       0     24  4-8: 0\n"
                                "TcamActionTable       0     32  10,12-16: 0\n" ),
              std::string::npos )
      << outcome.out;
   expectPrinted( { "field", "--chip", "4", "--json", "action" },
                  R"({"name":"action","hardwareName":"ACTION","identifier":3,)"
                  R"("table":"TcamActionTable","readOnly":false,"offset":0,"width":24,)"
                  R"("pairs":[{"chip":"BCM88375_A0","variants":[0]}]})"
                  "\n" );
}

TEST( Field, patterns ) {
   const auto outcome = vorn( { "field", "vlanEditVid?", "--chip", "10", "--json" } );
   EXPECT_EQ( outcome.status, 0 );
   std::set<std::string> names;
   for( const auto& line : Testing::linesOf( outcome.out ) ) {
      const auto object = parsed( line );
      names.insert( object["name"].get<std::string>() );
      for( const auto& pair : object["pairs"] ) {
         EXPECT_EQ( pair["chip"], "BCM88690_B0" );
      }
   }
   EXPECT_EQ( names, ( std::set<std::string>{ "vlanEditVid1", "vlanEditVid2" } ) );
   EXPECT_EQ( vorn( { "field", "*" } ).status, 0 );
}

TEST( Field, refused ) {
   expectRefused( { "field", "vlanDomian" },
                  "vorn: no table has a field \"vlanDomian\"; did you mean vlanDomain?" );
   expectRefused( { "field", "VLAN_EDIT_VID" },
                  "vorn: no table has a field \"VLAN_EDIT_VID\"; did you mean vlanEditVid1 or "
                  "vlanEditVid2?" );
   expectRefused( { "field", "999" }, "vorn: no field has the identifier 999" );
   expectRefused( { "field", "x*y" }, "vorn: no field matches \"x*y\"" );
   expectRefused( { "field", "pphFheiIveSize", "--chip", "10" },
                  "vorn: no table has the field \"pphFheiIveSize\" on BCM88690_B0; it exists on "
                  "BCM88650_B0 (2), BCM88660_A0 (3), BCM88375_A0 (4), BCM88375_B0 (5), "
                  "BCM88470_A0 (6), BCM88470_B0 (7), BCM88680_A0 (8)" );
}
