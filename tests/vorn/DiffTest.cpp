// vorn diff: which entries and fields change between two dumps, in each form and with each status.
#include "Folders.h"
#include "Json.h"
#include "RunVorn.h"

#include <Vorn/Compose.h>
#include <Vorn/Text.h>

#include <gtest/gtest.h>

#include <string>

namespace {

using Testing::Json;
using Testing::parsed;
using Testing::vorn;

const Vorn::Layout& lif() {
   static const Vorn::Layout layout( "LifTable", "BCM88690_B0" );
   return layout;
}

// A line of an image with these values.
std::string line( std::initializer_list<Vorn::FieldValue> values ) {
   std::string text;
   Vorn::appendHex( text, Vorn::compose( lif(), values ) );
   return text + '\n';
}

const std::string csvHeader =
   "table,chip,variant,entry,array,identifier,address,change,field,old,new\n";

const std::string zeroes = std::string( 160, '0' ) + '\n';

// vorn diff of a file of `before` and standard input of `after`.
Testing::Outcome diff( const std::string& before, const std::string& after,
                       std::vector<std::string> options = {} ) {
   const Testing::TemporaryFolder folder;
   const std::string path = folder / "before.txt";
   std::ofstream( path ) << before;
   options.insert( options.begin(), { "diff", "LifTable", path, "-", "--chip", "BCM88690_B0" } );
   return vorn( options, after );
}

const std::string before = line( { { "vsi", 2000 } } ) + line( { { "vsi", 1 } } ) +
                           line( { { "vsi", 7 }, { "learnEnable", 1 } } ) + zeroes;
const std::string after = line( { { "vsi", 2000 } } ) + line( { { "vsi", 2 } } ) +
                          line( { { "vsi", 8 } } ) + zeroes + line( { { "vsi", 5 } } );

} // namespace

TEST( Diff, linesForAPerson ) {
   const auto outcome = diff( before, after );
   EXPECT_EQ( outcome.out, "entry 1 changed: LifTable on BCM88690_B0 variant 0\n"
                           "   vsi: 0x1 -> 0x2\n"
                           "entry 2 changed: LifTable on BCM88690_B0 variant 0\n"
                           "   learnEnable: 0x1 -> 0x0\n"
                           "   vsi: 0x7 -> 0x8\n"
                           "entry 4 added: LifTable on BCM88690_B0 variant 0\n"
                           "entries: 2 changed, 1 added, 2 the same\n" );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 1 );
   EXPECT_EQ( diff( after, before, { "--summary" } ).out,
              "entries: 2 changed, 1 removed, 2 the same\n   learnEnable: 1\n   vsi: 2\n" );
}

TEST( Diff, nothingWithoutADifference ) {
   for( const char* const form : { "--json", "--csv", "--image-format=auto" } ) {
      const auto outcome = diff( before, before, { form } );
      EXPECT_EQ( outcome.out, "" );
      EXPECT_EQ( outcome.err, "" );
      EXPECT_EQ( outcome.status, 0 );
   }
   EXPECT_EQ( diff( before, before, { "--summary" } ).out, "entries: 4 the same\n" );
   // What is not asked for is no difference.
   EXPECT_EQ( diff( before, after.substr( 0, before.size() ), { "--fields", "vlanEdit*" } ).status,
              0 );
}

TEST( Diff, jsonAndCsv ) {
   const auto lines = Testing::linesOf( diff( before, after, { "--json" } ).out );
   ASSERT_EQ( lines.size(), 3u );
   EXPECT_EQ( parsed( lines[1] )["fields"],
              parsed( R"({"learnEnable":{"old":1,"new":0},"vsi":{"old":7,"new":8}})" ) );
   EXPECT_EQ( parsed( lines[1] )["entry"], 2 );
   EXPECT_EQ( parsed( lines[1] )["change"], "changed" );
   EXPECT_EQ( parsed( lines[2] )["before"], nullptr );
   EXPECT_EQ( parsed( lines[2] )["after"].get<std::string>() + '\n', line( { { "vsi", 5 } } ) );
   EXPECT_EQ( diff( before, after, { "--csv" } ).out,
              csvHeader +

                 "LifTable,BCM88690_B0,0,1,,,,changed,vsi,0x1,0x2\n"
                 "LifTable,BCM88690_B0,0,2,,,,changed,learnEnable,0x1,0x0\n"
                 "LifTable,BCM88690_B0,0,2,,,,changed,vsi,0x7,0x8\n"
                 "LifTable,BCM88690_B0,0,4,,,,added,,,\n" );
}

TEST( Diff, aFieldThatHoldsOthersIsLeftOut ) {
   const auto named = diff( line( { { "vsi", 1 } } ), line( { { "vsi", 2 } } ),
                            { "--csv", "--fields", "mdbEntry" } );
   EXPECT_EQ( Testing::linesOf( named.out ).size(), 2u );
   EXPECT_NE( named.out.find( ",changed,mdbEntry,0x" ), std::string::npos ) << named.out;
   // Beyond the last field there are bits of none.
   std::string beyond = line( { { "vsi", 1 } } );
   beyond[150] = 'f';
   EXPECT_EQ( diff( line( { { "vsi", 1 } } ), beyond ).out,
              "entry 0 changed: LifTable on BCM88690_B0 variant 0\n   bits of no field\n"
              "entries: 1 changed\n" );
}

TEST( Diff, whereEntriesLie ) {
   const auto entry = []( int number, int vsi ) {
      return R"({"table":"LifTable","chip":"BCM88690_B0","entry":)" + std::to_string( number ) +
             R"(,"image":")" + line( { { "vsi", static_cast<U64>( vsi ) } } ).substr( 0, 160 ) +
             "\"}\n";
   };
   // The same entries in another order, but for one that is changed, one that is gone, one more.
   const auto outcome =
      diff( entry( 7, 1 ) + entry( 2, 2 ) + entry( 5, 3 ) + entry( 9, 4 ),
            entry( 5, 30 ) + entry( 3, 6 ) + entry( 7, 1 ) + entry( 9, 4 ), { "--csv" } );
   EXPECT_EQ( outcome.out, csvHeader + "LifTable,BCM88690_B0,0,5,0,0,0x5,changed,vsi,0x3,0x1e\n"
                                       "LifTable,BCM88690_B0,0,3,0,0,0x3,added,,,\n"
                                       "LifTable,BCM88690_B0,0,2,0,0,0x2,removed,,,\n" );
   // A place that occurs twice.
   EXPECT_EQ( diff( entry( 7, 1 ) + entry( 7, 2 ), entry( 7, 1 ) + entry( 7, 3 ) ).out,
              "entry 7 changed: LifTable on BCM88690_B0 variant 0\n   vsi: 0x2 -> 0x3\n"
              "entries: 1 changed, 1 the same\n" );
   // Images that don't say their place are numbered.
   EXPECT_EQ( diff( entry( 101, 1 ) + entry( 100, 2 ),
                    line( { { "vsi", 2 } } ) + line( { { "vsi", 1 } } ), { "--first-entry=100" } )
                 .status,
              0 );
}

// Two binary dumps of mixed variants, and one of them as text.
TEST( Diff, wholeMemories ) {
   std::string memory;
   for( unsigned i = 0; i < 3000; ++i ) {
      const Vorn::Layout layout( "LifTable", "BCM88690_B0", i % 3 );
      const auto image = i % 7 == 0
                            ? std::vector<U8>( 80 )
                            : Vorn::compose( layout, { { "globInLif", Vorn::Value( i % 16 ) } } );
      memory.append( image.begin(), image.end() );
   }
   std::string changed = memory;
   changed[2000 * 80] = static_cast<char>( changed[2000 * 80] ^ 1 );
   changed.replace( 2502 * 80, 80, std::string( 80, '\0' ) );
   std::string digits;
   for( std::size_t i = 0; i < changed.size(); i += 80 ) {
      Vorn::appendHex( digits, std::span( reinterpret_cast<const U8*>( changed.data() ) + i, 80 ) );
      digits += '\n';
   }
   const std::string expected = "entries: 1 changed, 1 removed, 2998 the same\n";
   for( const std::string& other : { changed, digits } ) {
      const auto outcome = diff( memory, other, { "--summary" } );
      EXPECT_EQ( outcome.out.substr( 0, expected.size() ), expected );
      EXPECT_EQ( outcome.err, "" );
      EXPECT_EQ( outcome.status, 1 );
   }
   EXPECT_EQ( diff( memory, memory ).status, 0 );
   EXPECT_EQ( diff( memory, memory + "left" ).err,
              "<stdin>:0x3a980: 4 bytes are left over after 3000 entries of LifTable on "
              "BCM88690_B0 variant 0, which have 80 bytes each; --stride says where entries lie "
              "further apart\n" );
}

TEST( Diff, keepsGoing ) {
   const auto outcome = diff( before, "00zz\n" + after.substr( 161 ), { "--keep-going" } );
   EXPECT_EQ( Testing::linesOf( outcome.out ).back(),
              "entries: 2 changed, 1 added, 1 removed, 1 the same" );
   EXPECT_EQ( Testing::linesOf( outcome.err ).back(), "vorn: 1 error" );
   EXPECT_EQ( outcome.status, 2 );
}

TEST( Diff, twoImages ) {
   const auto outcome = vorn( { "diff", "TcamActionTable 10 0: 0500000000000000",
                                "TcamActionTable 10 0: 0600000000000000", "--csv" } );
   EXPECT_EQ( outcome.out, csvHeader +

                              "TcamActionTable,BCM88690_B0,0,0,,,,changed,action,0x5,0x6\n" );
   EXPECT_EQ( outcome.status, 1 );
   EXPECT_EQ( vorn( { "diff", "TcamActionTable 10 0: 0500000000000000",
                      "LifTable 10 0: " + zeroes.substr( 0, 160 ) } )
                 .status,
              1 );
}

TEST( Diff, anImageLongerThanAnyFilesName ) {
   const std::string image( 800, '0' );
   const auto outcome = vorn( { "diff", "TcamActionTable", "--chip", "10", image, image } );
   EXPECT_EQ( outcome.err,
              "vorn: BEFORE: the image has 400 bytes; the fields of TcamActionTable on BCM88690_B0 "
              "need 4, a whole entry has 8\n" );
   EXPECT_EQ( outcome.status, 2 );
}

TEST( Diff, troubleHasAStatusOfItsOwn ) {
   const auto refused = [&]( const Testing::Outcome& outcome, const std::string& message ) {
      EXPECT_EQ( outcome.err, message + '\n' );
      EXPECT_EQ( outcome.status, 2 );
   };
   refused( diff( before, "00zz\n" ),
            "<stdin>:1:3: bad digit \"z\" in \"00zz\"; write two hexadecimal digits for each byte, "
            "entry byte 0 first" );
   refused(
      diff( before, after, { "--fields", "vsi,vsj" } ),
      "--fields:5: no field \"vsj\" in LifTable on BCM88690_B0 variant 0; did you mean vsi?" );
   refused(
      vorn( { "diff", "nothere", "00" } ),
      "vorn: no file \"nothere\", and no image: bad image \"nothere\"; write hexadecimal digits, "
      "perhaps with TABLE CHIP VARIANT and a colon before them" );
   refused( vorn( { "diff", "00" } ), "vorn: AFTER is required; see vorn diff --help" );
   refused( vorn( { "diff" } ), "vorn: BEFORE is required; see vorn diff --help" );
   refused( vorn( { "diff", "LifTable", "00", "01" } ),
            "vorn: --chip is required; see vorn diff --help" );
   refused(
      vorn( { "diff", "LifTable", "00", "01", "02", "--chip", "2" } ),
      "vorn: AFTER: unexpected argument \"02\"; an image of several pieces stands in quotes" );
   refused( vorn( { "diff", "-", "-" } ),
            "vorn: AFTER: standard input can be one of BEFORE and AFTER only" );
}
