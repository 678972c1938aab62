// Input that is compressed with gzip or zstd, whole and damaged.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace {

using namespace std::literals;

using Testing::vorn;

struct Compressed {
   std::string name;
   std::string bytes;
   bool isServed;

   // As a parameter of a test it is shown by its name.
   friend void PrintTo( const Compressed& one, std::ostream* to ) { *to << one.name; }
};

// The two lines "0100000000000000" and "0200000000000000".
const std::string lines = "0100000000000000\n0200000000000000\n";
const Compressed all[] = {
   { "gzip",
     "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\x33\x30\x34\x40\x01\x5c"
     "\x06\x46\x68\x02\x00\xa0\xce\x41\x31\x22\x00\x00\x00"s,
#ifdef VORN_WITH_ZLIB
     true
#else
     false
#endif
   },
   { "zstd",
     "\x28\xb5\x2f\xfd\x04\x58\x85\x00\x00\x40\x30\x31\x30\x0a\x30\x32"
     "\x30\x0a\x02\x00\xe0\x20\x07\x18\x02\x32\xdc\x95\xa4"s,
#ifdef VORN_WITH_ZSTD
     true
#else
     false
#endif
   },
};

const std::string rows =
   "TcamActionTable,BCM88690_B0,0,,,,,1\nTcamActionTable,BCM88690_B0,0,,,,,2\n";
const std::string values = "table,chip,variant,entry,array,identifier,address,action\n" + rows;

Testing::Outcome decode( const std::string& input ) {
   return vorn( { "decode", "TcamActionTable", "--chip", "10", "--csv", "-" }, input );
}

class CompressedTest : public testing::TestWithParam<Compressed> {
protected:
   void SetUp() override {
      if( !GetParam().isServed ) {
         EXPECT_EQ( decode( GetParam().bytes ).err, "<stdin>: is compressed with " +
                                                       GetParam().name +
                                                       ", which this vorn was built without; "
                                                       "decompress it first\n" );
         GTEST_SKIP() << "built without it";
      }
   }
};

} // namespace

TEST_P( CompressedTest, isTakenAsWhatItHolds ) {
   EXPECT_EQ( decode( lines ).out, values );
   const auto outcome = decode( GetParam().bytes );
   EXPECT_EQ( outcome.out, values );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   // One after another, as `cat` puts them together.
   EXPECT_EQ( decode( GetParam().bytes + GetParam().bytes ).out, values + rows );
   // The same for a file, and for a verb that reads other lines.
   const Testing::TemporaryFolder folder;
   std::ofstream( folder / "images", std::ios::binary ) << GetParam().bytes;
   EXPECT_EQ( vorn( { "diff", "TcamActionTable", folder / "images", folder / "images", "--chip",
                      "10", "--summary" } )
                 .out,
              "entries: 2 the same\n" );
}

TEST_P( CompressedTest, isNeverTakenInPart ) {
   const std::string& whole = GetParam().bytes;
   for( std::size_t length = 4; length < whole.size(); ++length ) {
      const auto outcome = decode( whole.substr( 0, length ) );
      EXPECT_EQ( outcome.status, 1 ) << length;
      EXPECT_EQ( outcome.err, "<stdin>: the " + GetParam().name + " data is cut off\n" );
   }
   auto damaged = whole;
   damaged[whole.size() - 6] ^= 1;
   for( const std::string& input : { damaged, whole + "hello" } ) {
      const auto outcome = decode( input );
      EXPECT_EQ( outcome.status, 1 );
      EXPECT_TRUE(
         outcome.err.starts_with( "<stdin>: the " + GetParam().name + " data is damaged: " ) )
         << outcome.err;
   }
}

TEST_P( CompressedTest, endsWhereItIsToKeepGoing ) {
   const auto outcome =
      vorn( { "decode", "TcamActionTable", "--chip", "10", "--csv", "--keep-going", "-" },
            GetParam().bytes.substr( 0, GetParam().bytes.size() - 3 ) );
   EXPECT_EQ( outcome.status, 1 );
   EXPECT_EQ( Testing::linesOf( outcome.err ).size(), 2u ) << outcome.err;
}

INSTANTIATE_TEST_SUITE_P( Formats, CompressedTest, testing::ValuesIn( all ),
                          []( const auto& test ) { return test.param.name; } );
