// vorn decode of whole memories, run for real: what other programs print of a thousand entries.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Testing::vorn;

using Arguments = std::vector<std::string>;

constexpr std::size_t count = 1000;

// Entries of LifTable on BCM88690_B0 variant 3, 80 bytes each, whose tag is 0x25 in 6 bits from bit
// 174.
std::string memory() {
   std::string bytes;
   for( std::size_t i = 0; i < count; ++i ) {
      std::string entry( 80, '\0' );
      entry[0] = static_cast<char>( i );
      entry[1] = static_cast<char>( i >> 8 );
      entry[21] = 0x40;
      entry[22] = 0x09;
      bytes += entry;
   }
   return bytes;
}

std::string digitsOf( std::string_view bytes, std::size_t perLine ) {
   constexpr char digits[] = "0123456789abcdef";
   std::string text;
   for( std::size_t i = 0; i < bytes.size(); ++i ) {
      const auto byte = static_cast<unsigned char>( bytes[i] );
      text += { digits[byte >> 4], digits[byte & 15] };
      text += ( i + 1 ) % perLine == 0 ? "\n" : "";
   }
   return text;
}

Arguments decode( const Arguments& more ) {
   Arguments all{ "decode", "LifTable", "--chip", "10", "--csv" };
   all.insert( all.end(), more.begin(), more.end() );
   return all;
}

// What objects of JSON with image and entry decode to.
std::string rows() {
   std::string objects;
   const auto lines = Testing::linesOf( digitsOf( memory(), 80 ) );
   for( std::size_t i = 0; i < lines.size(); ++i ) {
      objects += R"({"entry":)" + std::to_string( i ) + R"(,"image":")" + lines[i] + "\"}\n";
   }
   const auto outcome = vorn( decode( { "-" } ), objects );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( std::count( outcome.out.begin(), outcome.out.end(), '\n' ), count + 1 );
   return outcome.out;
}

// The same without the place, which lines of digits don't have.
std::string withoutPlaces( const std::string& rows ) {
   std::string text;
   std::size_t number = 0;
   for( std::string line : Testing::linesOf( rows ) ) {
      const std::string pair = "LifTable,BCM88690_B0,3,";
      if( line.starts_with( pair ) ) {
         const std::string place = std::to_string( number ) + ",0,0,0x";
         EXPECT_TRUE( line.substr( pair.size() ).starts_with( place ) ) << line;
         line.replace( pair.size(), line.find( ',', pair.size() + place.size() ) - pair.size(),
                       ",,," );
         ++number;
      }
      text += line + '\n';
   }
   return text;
}

// What the program prints of the memory; empty where it isn't installed.
std::string printedBy( const Arguments& command ) {
   return Testing::run( command[0], { command.begin() + 1, command.end() }, memory() ).out;
}

const std::string one = digitsOf( memory().substr( 80 * 5, 80 ), 0x1000 );

} // namespace

TEST( Dumps, whatOtherProgramsPrint ) {
   struct Case {
      Arguments command;
      Arguments options;
   };
   const Case cases[] = {
      { { "cat" }, {} },
      { { "hexdump", "-C" }, {} },
      { { "hexdump" }, {} },
      { { "xxd" }, {} },
      { { "xxd", "-p" }, { "--image-format", "stream" } },
      { { "od", "-v", "-An", "-tx4" }, { "--image-format", "words" } },
      { { "od", "-v", "-An", "-tx1" }, { "--image-format", "stream" } },
   };
   const auto right = rows();
   for( const auto& [command, options] : cases ) {
      const auto text = printedBy( command );
      if( text.empty() && command[0] != "cat" ) {
         continue; // It isn't installed.
      }
      Arguments arguments = options;
      arguments.push_back( "-" );
      const auto outcome = vorn( decode( arguments ), text );
      EXPECT_TRUE( outcome.out == right ) << command[0] << ' ' << command.back();
      EXPECT_EQ( outcome.err, "" ) << command[0];
      EXPECT_EQ( outcome.status, 0 );
   }
   Testing::expectPrinted( decode( { "-" } ), withoutPlaces( right ), digitsOf( memory(), 80 ) );
}

TEST( Dumps, linesThatAreNoEntries ) {
   Testing::expectRefused( { "decode", "LifTable", "--chip", "10", "--variant", "3", "-" },
                           "<stdin>:1:1: the image has 30 bytes; the fields of LifTable on "
                           "BCM88690_B0 variant 3 need 23, a whole entry has 80; --image-format "
                           "stream takes digits whose lines mean nothing",
                           digitsOf( memory(), 30 ) );
}

TEST( Dumps, whatIsLeftOver ) {
   const auto outcome = vorn( decode( { "-" } ), memory().substr( 0, 80 * 7 + 30 ) );
   EXPECT_EQ( std::count( outcome.out.begin(), outcome.out.end(), '\n' ), 8 );
   EXPECT_EQ( outcome.err, "<stdin>:0x230: 30 bytes are left over after 7 entries of LifTable on "
                           "BCM88690_B0 variant 0, which have 80 bytes each; --stride says where "
                           "entries lie further apart\n" );
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Dumps, aDumpThatIsCutOff ) {
   const auto text = printedBy( { "hexdump", "-C" } );
   if( text.empty() ) {
      GTEST_SKIP() << "there is no hexdump";
   }
   const auto outcome = vorn( decode( { "-" } ), text.substr( 0, text.find( "\n000000a0" ) + 1 ) );
   EXPECT_NE( outcome.err.find( "a hexdump ends in the offset of its end" ), std::string::npos )
      << outcome.err;
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Dumps, severalImagesOnTheCommandLine ) {
   const auto outcome = vorn( decode( { one, one } ) );
   EXPECT_EQ( std::count( outcome.out.begin(), outcome.out.end(), '\n' ), 3 ) << outcome.err;
   // Two words of an entry that needs one.
   Testing::expectRefused( { "decode", "TcamActionTable", "--chip", "10", "05000000", "00000000" },
                           "vorn: the arguments may be one image of 8 bytes or 2 images; write one "
                           "image as one argument, in quotes, or pipe the lines into -" );
}

TEST( Dumps, theTagAndTheVariant ) {
   const auto byTag = vorn( { "decode", "LifTable", "--chip", "10", "--single-line", one } );
   EXPECT_TRUE( byTag.out.starts_with( "LifTable BCM88690_B0 3: " ) ) << byTag.out;
   EXPECT_EQ( byTag.err, "" );
   const std::string doubt = "the image is not one of LifTable on BCM88690_B0 variant 1: its tag "
                             "resultType is 0x25, not 0x2, as in variant 3\n";
   const auto contradicted = vorn( decode( { "--variant", "1", one } ) );
   EXPECT_EQ( contradicted.err, "vorn: warning: " + doubt );
   EXPECT_EQ( contradicted.status, 0 );
   const auto strict = vorn( decode( { "--variant", "1", "--strict", one } ) );
   EXPECT_EQ( strict.err, "vorn: " + doubt );
   EXPECT_EQ( std::count( strict.out.begin(), strict.out.end(), 0x0a ), 0 );
   EXPECT_EQ( strict.status, 1 );
   std::string unknown = one;
   unknown.replace( 42, 4, "c005" );
   const auto none = vorn( decode( { unknown } ) );
   EXPECT_EQ( none.err, "vorn: no variant of LifTable on BCM88690_B0 has tag 0x17\n" );
   EXPECT_EQ( none.status, 1 );
}

TEST( Dumps, oneBigNumber ) {
   std::string number = "0x";
   for( std::size_t i = one.size(); i > 0; i -= 2 ) {
      number += one.substr( i - 2, 2 );
   }
   const auto right = vorn( decode( { one } ) ).out;
   Testing::expectPrinted( decode( { "--image-format", "number", number } ), right );
   // It has the tag as a number alone.
   Testing::expectPrinted( decode( { number } ), right );
   Testing::expectRefused(
      { "decode", "VttInPpPortConfig0", "--chip", "10", "0x05de7d5bbd8b460200000000" },
      "vorn: 0x and 24 digits may be bytes in their order or one number, its "
      "highest digit first; say --image-format bytes or --image-format "
      "number" );
}

TEST( Dumps, entriesThatNobodyHasWritten ) {
   auto bytes = memory().substr( 0, 80 * 10 );
   std::fill( bytes.begin() + 160, bytes.end(), '\0' );
   const auto outcome = vorn( decode( { "-" } ), bytes );
   EXPECT_EQ( std::count( outcome.out.begin(), outcome.out.end(), '\n' ), 3 );
   EXPECT_EQ( outcome.err, "vorn: 8 of 10 entries are empty; --empty prints them\n" );
   EXPECT_EQ( outcome.status, 0 );
   const auto all = vorn( decode( { "--variant", "3", "--empty", "-" } ), bytes );
   EXPECT_EQ( std::count( all.out.begin(), all.out.end(), '\n' ), 11 ) << all.err;
}

TEST( Dumps, theTableOfAnAddress ) {
   const auto encoded =
      vorn( { "encode", "TcamActionTable", "--chip", "10", "--entry", "5", "action=7" } ).out;
   const auto at = encoded.find( "address: 0x" ) + 9;
   const auto address = encoded.substr( at, encoded.find( '\n', at ) - at );
   Testing::expectPrinted( { "decode", "--chip", "10", "--single-line", "-" },
                           "TcamActionTable BCM88690_B0 0 entry=5 array=0 address=" + address +
                              ": action=0x7\n",
                           address + ": 0x00000007 0x00000000\n" );
   const auto nothing = vorn( { "decode", "--chip", "10", "-" }, "0x1: 0x00000007\n" );
   EXPECT_TRUE(
      nothing.err.starts_with( "<stdin>:1:6: no entry at 0x1 on BCM88690_B0 has 4 bytes" ) )
      << nothing.err;
   EXPECT_EQ( nothing.status, 1 );
}

TEST( Dumps, filesInPlaceOfImages ) {
   const Testing::TemporaryFolder folder;
   const std::string digits = folder / "digits";
   const std::string record = folder / "record";
   const std::string none = folder / "none";
   std::ofstream( digits ) << "05000000\n06000000\n";
   std::ofstream( record ) << R"({"table":"TcamActionTable","chip":2,"image":"07000000"})" << '\n';
   const auto decode = []( Arguments words ) {
      words.insert( words.begin(), "decode" );
      words.push_back( "--single-line" );
      return words;
   };
   const std::string printed = "action=0x5\naction=0x6\n";
   Testing::expectPrinted( decode( { "TcamActionTable", "--chip", "2", digits } ), printed );
   Testing::expectPrinted( decode( { digits, "TcamActionTable", "--chip", "2" } ), printed );
   Testing::expectPrinted( decode( { record } ), "TcamActionTable BCM88650_B0 0: action=0x7\n" );
   const auto both = vorn( decode( { record, digits, "--chip", "2" } ) );
   EXPECT_EQ( both.out, record + ":TcamActionTable BCM88650_B0 0: action=0x7\n" );
   EXPECT_EQ( both.status, 1 );
   for( const Arguments& words : { Arguments{ none },
                                   { none, "--chip", "2" },
                                   { "TcamActionTable", "--chip", "2", none } } ) {
      Testing::expectRefused( decode( words ),
                              "vorn: cannot open " + none + ": No such file or directory" );
   }
   // What is an image, or a table, is no file; of an image that is one, too, a note says so.
   std::ofstream( folder / "45000000" ) << "05000000\n";
   std::ofstream( folder / "TcamActionTable" ) << "05000000\n";
   const auto image =
      Testing::run( "sh", { "-c", "cd '" + std::string( folder.path() ) +
                                     "' && '" VORN_BINARY "' decode TcamActionTable --chip 2 "
                                     "--single-line 45000000" } );
   EXPECT_EQ( image.out, "action=0x45\n" );
   EXPECT_EQ( image.err, "vorn: 45000000 is taken as the digits of an image; --file 45000000 takes "
                         "the file of this name\n" );
   EXPECT_EQ( image.status, 0 );
}

// Entries have eight bytes, the first ones 1, 2, 3 and 4.
TEST( Dumps, offsetsThatBeginElsewhere ) {
   const Testing::TemporaryFolder folder;
   const auto fileOf = [&]( unsigned begin ) {
      const std::string path = folder / std::to_string( begin );
      char rows[200];
      std::snprintf( rows, sizeof rows,
                     "%08x  01 00 00 00 00 00 00 00  02 00 00 00 00 00 00 00  |................|\n"
                     "%08x  03 00 00 00 00 00 00 00  04 00 00 00 00 00 00 00  |................|\n"
                     "%08x\n",
                     begin, begin + 16, begin + 32 );
      std::ofstream( path ) << rows;
      return path;
   };
   const auto decode = [&]( unsigned begin, const Arguments& more ) {
      Arguments all{ "decode",        "TcamActionTable", "--chip",       "10",
                     "--single-line", "--file",          fileOf( begin ) };
      all.insert( all.end(), more.begin(), more.end() );
      return all;
   };
   const auto printed = []( unsigned first ) {
      std::string lines;
      for( unsigned i = 0; i < 4; ++i ) {
         lines += "entry=" + std::to_string( first + i ) +
                  " array=0 identifier=0 address=0x110000" + std::to_string( first + i ) +
                  ": action=0x" + std::to_string( 1 + i ) + '\n';
      }
      return lines;
   };
   const auto doubt = [&]( unsigned begin, const std::string& text ) {
      return folder / std::to_string( begin ) + ":0x0: warning: the dump begins at offset " + text;
   };
   for( const auto& [begin, text] :
        { std::pair( 0x10U, "0x10, but is taken from entry 0 on; --first-entry 2 takes it by its "
                            "offset\n" ),
          std::pair( 0x14U, "0x14, 4 bytes into entry 2, but is taken from entry 0 on; "
                            "--first-entry says which entry begins there\n" ),
          std::pair( 0x40000000U, "0x40000000, but is taken from entry 0 on; --first-entry says "
                                  "which entry begins there\n" ) } ) {
      const auto outcome = vorn( decode( begin, {} ) );
      EXPECT_EQ( outcome.out, printed( 0 ) );
      EXPECT_EQ( outcome.err, doubt( begin, text ) );
      EXPECT_EQ( outcome.status, 0 );
      EXPECT_EQ( vorn( decode( begin, { "--strict" } ) ).status, 1 );
      for( const unsigned first : { 0U, 2U } ) {
         Testing::expectPrinted( decode( begin, { "--first-entry", std::to_string( first ) } ),
                                 printed( first ) );
      }
   }
   Testing::expectPrinted( decode( 0, {} ), printed( 0 ) );
   const auto diff =
      vorn( { "diff", "TcamActionTable", "--chip", "10", fileOf( 0 ), fileOf( 0x10 ) } );
   EXPECT_EQ( diff.out, "" );
   EXPECT_EQ( diff.err, doubt( 0x10, "0x10, but is taken from entry 0 on; --first-entry 2 takes it "
                                     "by its offset\n" ) );
   EXPECT_EQ( diff.status, 0 );
}

TEST( Dumps, keepGoingOverSeveralFiles ) {
   const Testing::TemporaryFolder folder;
   const std::string first = folder / "first";
   const std::string second = folder / "second";
   std::ofstream( first ) << "05000000\nzz\n06000000\n";
   std::ofstream( second ) << "07000000 # the last\n";
   const auto outcome = vorn( { "decode", "TcamActionTable", "--chip", "2", "--single-line",
                                "--keep-going", "--file", first, second, folder / "none" } );
   EXPECT_EQ( outcome.out,
              first + ":action=0x5\n" + first + ":action=0x6\n" + second + ":action=0x7\n" );
   EXPECT_TRUE( outcome.err.starts_with( first + ":2:1: bad image \"zz\"" ) ) << outcome.err;
   EXPECT_TRUE( outcome.err.ends_with( "No such file or directory\nvorn: 2 errors, 3 images "
                                       "printed\n" ) )
      << outcome.err;
   EXPECT_EQ( outcome.status, 1 );
}

TEST( Dumps, numbersThatLookOctal ) {
   Testing::expectRefused( { "encode", "LifTable", "--chip", "10", "vsi=010" },
                           "vorn: bad value \"010\" for vsi; a leading 0 may mean octal; write 10 "
                           "or 0x8" );
}
