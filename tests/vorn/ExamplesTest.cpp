// The files of examples/, programmed by the real program and decoded again.
#include "Json.h"
#include "RunVorn.h"

#include <Kelvar/Types.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Testing::Json;
using Testing::parsed;
using Testing::vorn;

std::vector<Json> linesOf( std::istream& in ) {
   std::vector<Json> lines;
   for( std::string line; std::getline( in, line ); ) {
      lines.push_back( parsed( line ) );
   }
   return lines;
}

std::vector<std::filesystem::path> exampleFiles() {
   std::vector<std::filesystem::path> files;
   for( const auto& file : std::filesystem::directory_iterator( VORN_EXAMPLES ) ) {
      if( file.path().extension() == ".jsonl" ) {
         files.push_back( file.path() );
      }
   }
   return files;
}

U64 number( const Json& value ) {
   return value.is_string() ? std::stoull( value.get<std::string>(), nullptr, 0 )
                            : value.get<U64>();
}

// Both as hexadecimal digits without leading zeros, for values of any width.
std::string digits( const Json& value ) {
   std::string text = value.is_string() ? value.get<std::string>() : std::string();
   if( text.rfind( "0x", 0 ) != 0 ) {
      std::ostringstream hex;
      hex << std::hex << number( value );
      text = "0x" + hex.str();
   }
   const auto first = text.find_first_not_of( '0', 2 );
   return first == std::string::npos ? "0" : text.substr( first );
}

TEST( Examples, DecodeToWhatWasProgrammed ) {
   const auto files = exampleFiles();
   EXPECT_GE( files.size(), 4u );
   for( const auto& path : files ) {
      SCOPED_TRACE( path.string() );
      std::ifstream file( path );
      const std::vector<Json> given = linesOf( file );
      const auto outcome = vorn( { "program", path.string() } );
      ASSERT_EQ( outcome.status, 0 ) << outcome.err;
      std::istringstream out( outcome.out );
      const std::vector<Json> made = linesOf( out );
      ASSERT_EQ( made.size(), given.size() );
      for( std::size_t line = 0; line < made.size(); ++line ) {
         SCOPED_TRACE( given[line].dump() );
         const auto decoded = vorn(
            { "decode", made[line]["table"], "--chip", made[line]["chip"], "--variant",
              std::to_string( made[line]["variant"].get<int>() ), "--json", made[line]["image"] } );
         ASSERT_EQ( decoded.status, 0 ) << decoded.err;
         const Json fields = parsed( decoded.out )["fields"];
         for( const auto& [name, value] : given[line]["fields"].items() ) {
            EXPECT_EQ( digits( fields[name] ), digits( value ) ) << name;
         }
      }
   }
}

TEST( Examples, TheMainJobSpansTheFamiliesAndTheChips ) {
   std::ifstream file( std::filesystem::path( VORN_EXAMPLES ) / "entries.jsonl" );
   std::set<std::string> tables;
   std::set<std::string> chips;
   for( const Json& line : linesOf( file ) ) {
      tables.insert( line["table"] );
      chips.insert( line["chip"] );
   }
   EXPECT_GE( chips.size(), 4u );
   const std::vector<std::vector<std::string>> families{
      { "TcamActionTable", "TcamBankTable", "TcamBankTableFormatter", "TcamBankIpv4Tt" },
      { "IsemMgmtReq", "EsemMgmtReq", "EpniIsidTable" },
      { "LifTable", "OutAcBank", "LifProfileAttributes" },
      { "IvecTable", "IvectTable", "EvecTable", "EvecEncapTable", "EvecFormatTable",
        "EvecMappingTable" },
      { "IngressPpPortToVd", "EgressPerPortTable", "IppePinfoLlr", "VttInPpPortConfig0",
        "FheiIveSizeReg" },
      { "FwdActProfileTable" }
   };
   for( const auto& family : families ) {
      for( const auto& table : family ) {
         EXPECT_EQ( tables.count( table ), 1u ) << table;
      }
   }
}

// One entry of the main job, worked out by hand: bits 90 and 102 hold the VIDs of an outgoing AC,
// bit 82 its edit profile, bit 16 its statistics object and bit 114 the tag.
TEST( Examples, AnOutgoingAcAsOnPaper ) {
   const auto outcome = vorn(
      { "program", "-" },
      R"({"table":"OutAcBank","chip":"BCM88690_B0","entry":5001,"fields":{"vlanEditVid1":100,)"
      R"("vlanEditVid2":200,"vlanEditProfile":9,"statObjectId":66001}})" );
   ASSERT_EQ( outcome.status, 0 ) << outcome.err;
   const Json line = parsed( outcome.out );
   EXPECT_EQ( line["image"].get<std::string>().substr( 0, 30 ), "0000d1010100000000002490013220" );
   EXPECT_EQ( line["address"], "0x1389" );
   EXPECT_EQ( line["accessType"], 10 );
   EXPECT_EQ( line["destBlock"], 1 );
}

} // namespace
