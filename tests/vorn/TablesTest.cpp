// vorn tables, run for real.
#include "Json.h"
#include "RunVorn.h"

#include <Vorn/Chip.h>
#include <Vorn/Pairs.h>

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Testing::Json;
using Testing::linesOf;
using Testing::parsed;

std::vector<std::string> tables( const std::vector<std::string>& options = {} ) {
   std::vector<std::string> arguments{ "tables" };
   arguments.insert( arguments.end(), options.begin(), options.end() );
   const auto outcome = Testing::vorn( arguments );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_EQ( outcome.err, "" );
   return linesOf( outcome.out );
}

// The two lines of a table, its first with one space between the columns.
std::string linesFor( const std::string& table ) {
   const auto lines = tables();
   for( std::size_t i = 0; i + 1 < lines.size(); ++i ) {
      std::istringstream words( lines[i] );
      std::string name;
      if( words >> name && name == table ) {
         for( std::string word; words >> word; ) {
            name += ' ' + word;
         }
         return name + '\n' + lines[i + 1];
      }
   }
   return "no line for " + table;
}

Json jsonFor( const std::string& table ) {
   for( const auto& line : tables( { "--json" } ) ) {
      if( const auto object = parsed( line ); object["name"] == table ) {
         return object;
      }
   }
   return {};
}

} // namespace

TEST( Tables, twoLinesEachInRegistryOrder ) {
   const auto lines = tables();
   const auto names = Hardware::classNames();
   ASSERT_EQ( lines.size(), 2 * names.size() + 2 );
   for( std::size_t i = 0; i < names.size(); ++i ) {
      EXPECT_TRUE( lines[2 * i + 2].starts_with( std::string( names[i] ) + ' ' ) );
      EXPECT_TRUE( lines[2 * i + 3].starts_with( "   " ) );
   }
   for( const auto& line : lines ) {
      EXPECT_LE( line.size(), 80u ) << line;
   }
}

TEST( Tables, whatTheLinesSay ) {
   EXPECT_EQ( linesFor( "name" ), "name fields words instances entries\n   chip types: variants" );
   EXPECT_EQ( linesFor( "TcamActionTable" ),
              "TcamActionTable 1 1,2 1,2 1024,2048\n   2-8,10,12-16: 0" );
   EXPECT_EQ( linesFor( "LifTable" ), "LifTable 83 4,6,20 1 1,16384,32768,4294967295\n"
                                      "   2,3: 0-4,6; 4-8: 0-6; 10,12-16: 0-4,6-11; 21: 0" );
   EXPECT_TRUE( linesFor( "EvecTable" ).ends_with( "\n   2-8: any" ) );
   EXPECT_TRUE( linesFor( "FheiIveSizeReg" ).ends_with( "\n   2-8: 0 (register)" ) );
}

TEST( Tables, jsonOfEachPair ) {
   const auto object = jsonFor( "TcamActionTable" );
   EXPECT_EQ( object["kind"], "table" );
   EXPECT_EQ( object["fields"], 1 );
   ASSERT_EQ( object["pairs"].size(), 13u );
   EXPECT_EQ( object["pairs"][2].dump(),
              parsed( R"({"chip":"BCM88375_A0","variant":0,"words":1,"entries":2048,)"
                      R"("arrayElements":24,"instances":1,"fields":1,"hasAddress":true})" )
                 .dump() );
   EXPECT_EQ( object["pairs"][7].dump(),
              parsed( R"({"chip":"BCM88690_B0","variant":0,"words":2,"entries":2048,)"
                      R"("arrayElements":24,"instances":2,"fields":1,"hasAddress":true})" )
                 .dump() );
}

TEST( Tables, jsonOfVariants ) {
   const auto lif = jsonFor( "LifTable" );
   // 6 variants each on two chip types, 7 on five, 11 on six, and the software's one.
   ASSERT_EQ( lif["pairs"].size(), 2u * 6 + 5 * 7 + 6 * 11 + 1 );
   EXPECT_EQ( lif["pairs"][5]["variant"], 6 );
   EXPECT_EQ( lif["pairs"][5]["fields"], 16 );
   EXPECT_EQ( lif["pairs"][11]["chip"], "BCM88660_A0" );
   EXPECT_EQ( lif["pairs"][11]["fields"], 18 );
   EXPECT_EQ( lif["pairs"].back()["chip"], "Software" );
   EXPECT_EQ( lif["pairs"].back()["hasAddress"], false );

   const auto evec = jsonFor( "EvecTable" );
   ASSERT_EQ( evec["pairs"].size(), 7u );
   EXPECT_TRUE( evec["pairs"][0]["variant"].is_null() );
   EXPECT_EQ( jsonFor( "FheiIveSizeReg" )["kind"], "register" );
}

TEST( Tables, jsonAgreesWithTheRegistry ) {
   const auto lines = tables( { "--json" } );
   const auto names = Hardware::classNames();
   ASSERT_EQ( lines.size(), names.size() );
   for( std::size_t i = 0; i < names.size(); ++i ) {
      const auto object = parsed( lines[i] );
      EXPECT_EQ( object["name"], names[i] );
      EXPECT_EQ( object["fields"], Hardware::classFields( names[i] ).size() );
      for( const auto& pair : object["pairs"] ) {
         const auto& chip = Vorn::chipOf( pair["chip"].get<std::string>() );
         const bool any = pair["variant"].is_null();
         const auto info =
            Hardware::pairInfo( names[i], chip.number, any ? U8( 7 ) : pair["variant"].get<U8>() );
         ASSERT_TRUE( info );
         EXPECT_EQ( any, !info->hasVariants );
         EXPECT_EQ( pair["words"], info->width );
         EXPECT_EQ( pair["entries"], info->entries );
         EXPECT_EQ( pair["arrayElements"], info->arrayElements );
         EXPECT_EQ( pair["instances"], info->instanceCount );
         EXPECT_EQ( pair["fields"], info->fieldCount );
         EXPECT_EQ( pair["hasAddress"], info->hasAddress );
      }
   }
}

TEST( Tables, ofOneChipType ) {
   const auto lines = tables( { "--chip", "Software" } );
   ASSERT_EQ( lines.size(), 4u );
   EXPECT_TRUE( lines[2].starts_with( "LifTable " ) ) << lines[2];
   EXPECT_EQ( lines[3], "   21: 0" );
   const auto objects = tables( { "--chip=10", "--json" } );
   for( const auto& line : objects ) {
      const auto object = parsed( line );
      for( const auto& pair : object["pairs"] ) {
         EXPECT_EQ( pair["chip"], "BCM88690_B0" );
         EXPECT_LE( pair["fields"], object["fields"] );
      }
   }
   Testing::expectRefused( { "tables", "--chip", "Sofware" },
                           "vorn: unknown chip \"Sofware\"; did you mean Software?" );
}
