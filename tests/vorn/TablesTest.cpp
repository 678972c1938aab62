// vorn tables, run for real.
#include "RunVorn.h"

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <sstream>

namespace {

std::vector<std::string> linesOf( const std::string& text ) {
   std::vector<std::string> lines;
   std::istringstream in( text );
   for( std::string line; std::getline( in, line ); ) {
      lines.push_back( line );
   }
   return lines;
}

} // namespace

TEST( Tables, aLineEachInRegistryOrder ) {
   const auto outcome = Testing::vorn( { "tables" } );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_EQ( outcome.err, "" );
   const auto lines = linesOf( outcome.out );
   const auto names = Hardware::classNames();
   ASSERT_EQ( lines.size(), names.size() + 1 );
   for( std::size_t i = 0; i < names.size(); ++i ) {
      EXPECT_TRUE( lines[i + 1].starts_with( std::string( names[i] ) + ' ' ) ) << lines[i + 1];
   }
}

TEST( Tables, whatALineSays ) {
   std::istringstream in( Testing::vorn( { "tables" } ).out );
   for( std::string line; std::getline( in, line ); ) {
      std::istringstream words( line );
      std::string name, kind, fields, width, entries, pairs;
      words >> name >> kind >> fields >> width >> entries;
      std::getline( words >> std::ws, pairs );
      if( name == "TcamActionTable" ) {
         EXPECT_EQ( kind, "table" );
         EXPECT_EQ( fields, "1" );
         EXPECT_EQ( width, "1,2" );
         EXPECT_EQ( entries, "1024,2048" );
         EXPECT_EQ( pairs, "2-8,10,12-16: 0" );
         return;
      }
   }
   FAIL() << "no line for TcamActionTable";
}

TEST( Tables, aFullDeviceIsAnError ) {
   const auto outcome = Testing::vorn( { "tables" }, {}, "/dev/full" );
   EXPECT_EQ( outcome.err, "vorn: cannot write standard output: No space left on device\n" );
   EXPECT_EQ( outcome.status, 1 );
}
