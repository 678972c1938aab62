// Files and folders for a test, and what stands in them.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Testing {

// An empty folder, which goes with its contents.
class TemporaryFolder {
public:
   TemporaryFolder() {
      std::string name = testing::TempDir() + "vornTest.XXXXXX";
      if( !::mkdtemp( name.data() ) ) {
         throw std::runtime_error( "no temporary folder" );
      }
      path_ = name;
   }
   ~TemporaryFolder() {
      std::error_code ignored;
      std::filesystem::remove_all( path_, ignored );
   }
   TemporaryFolder( const TemporaryFolder& ) = delete;
   TemporaryFolder& operator=( const TemporaryFolder& ) = delete;

   const std::filesystem::path& path() const { return path_; }

   // The path of a file in it.
   std::string operator/( std::string_view name ) const { return path_ / name; }

private:
   std::filesystem::path path_;
};

inline std::string contentsOf( const std::filesystem::path& path ) {
   std::ifstream file( path, std::ios::binary );
   return { std::istreambuf_iterator<char>( file ), {} };
}

} // namespace Testing
