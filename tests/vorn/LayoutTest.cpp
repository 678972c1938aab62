// vorn layout, run for real: drawings, lists, pictures and differences as on paper.
#include "Folders.h"
#include "Json.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using Testing::contentsOf;
using Testing::expectPrinted;
using Testing::onTerminal;
using Testing::TemporaryFolder;
using Testing::vorn;

using Arguments = std::vector<std::string>;

const std::string bitNumbering =
   "\n"
   "Bit 0 is the least significant bit of byte 0. Each row is a 32-bit word of the\n"
   "entry, its most significant bit at the left.";

class Variable {
public:
   Variable( const char* name, const char* value ) : name_( name ) { ::setenv( name, value, 1 ); }
   ~Variable() { ::unsetenv( name_ ); }
   Variable( const Variable& ) = delete;
   Variable& operator=( const Variable& ) = delete;

private:
   const char* name_;
};

} // namespace

TEST( Layout, aFieldAndBitsOfNone ) {
   expectPrinted( { "layout", "TcamActionTable", "--chip", "BCM88650_B0" },
                  "TcamActionTable on BCM88650_B0\n"
                  "words: 1, entries: 1024, arrayElements: 24, instances: 1, fields: 1, unused\n"
                  "bits: 12\n"
                  "\n"
                  "         3 3 2 2 2 2 2 2 2 2 2 2 1 1 1 1 1 1 1 1 1 1\n"
                  "word     1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0\n"
                  "        +-----------------------+---------------------------------------+\n"
                  "   0 31 |        unused         |                action                 | 0\n"
                  "        +-----------------------+---------------------------------------+\n" +
                     bitNumbering +
                     "\n"
                     "\n"
                     "bit  width  id  field   hardware name\n"
                     "  0     20   3  action  ACTION\n"
                     " 20     12      unused\n" );
}

// On this pair the bits 20 to 43 are one field or two others, and bit 44 has two names.
TEST( Layout, fieldsThatShareBits ) {
   expectPrinted( { "layout", "LifTable", "--chip", "4", "--variant", "2" },
                  "LifTable on BCM88375_A0 variant 2\n"
                  "words: 4, entries: 16384, arrayElements: 8, instances: 1, fields: 20, unused\n"
                  "bits: 14\n"
                  "\n"
                  "          3 3 2 2 2 2 2 2 2 2 2 2 1 1 1 1 1 1 1 1 1 1\n"
                  "word      1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0\n"
                  "         +-----------------------+-+-------------------------------------+\n"
                  "   0  31 |  outLifOrLabel[11:0]  |a|             destination             | 0\n"
                  "         +-----------------------+-+-------------------------------------+\n"
                  "  or     |   mplsVcLabel[11:0]   |\n"
                  "         +-------+---------------+-------+-----+-+-----------------------+\n"
                  "   1  63 |   d   |     vlanEditVid1      |  .  |b| outLifOrLabel[23:12]  | 32\n"
                  "         +-------+-----------------------+-----+-+-------+---------------+\n"
                  "                                               | | mpls  |  mplsVcLabel  |\n"
                  "  or                                           |c| Push  |    [19:12]    |\n"
                  "                                               | |Profile|               |\n"
                  "         +---------------------------+-+-+---+-+-+---+---+-------+-+-----+\n"
                  "   2  95 |     protectionPointer     |i|h| g | inLif |cosProfile |f|  e  | 64\n"
                  "         |                           | | |   |Profile|           | |     |\n"
                  "         +---------------------+-+---+-+-+---+-------+-----------+-+-+---+\n"
                  "   3 127 |       unused        |k|             sysInLif              | j | 96\n"
                  "         +---------------------+-+-----------------------------------+---+\n" +
                     bitNumbering +
                     " Fields beside \"or\" share bits with\n"
                     "those above them.\n"
                     "\n"
                     "bit  width  key   id  field                  hardware name\n"
                     "  0     19        61  destination            DESTINATION\n"
                     " 19      1    a   66  destinationValid       DESTINATION_VALID\n"
                     " 20     24       269  outLifOrLabel          OUT_LIF_OR_LABEL\n"
                     " 20     20       250  mplsVcLabel            MPLS_VC_LABEL\n"
                     " 40      4       249  mplsPushProfile        MPLS_PUSH_PROFILE\n"
                     " 44      1    b   80  eeiIsLabel             EEI_IS_LABEL\n"
                     " 44      1    c   83  eeiOrOutLifType        EEI_OR_OUT_LIF_TYPE\n"
                     " 45      3    .       unused\n"
                     " 48     12       355  vlanEditVid1           VLAN_EDIT_VID_1\n"
                     " 60      4    d  353  vlanEditPcpDeiProfile  VLAN_EDIT_PCP_DEI_PROFILE\n"
                     " 64      3    e  354  vlanEditProfile        VLAN_EDIT_PROFILE\n"
                     " 67      1    f  257  orientationIsHub       ORIENTATION_IS_HUB\n"
                     " 68      6        50  cosProfile             COS_PROFILE\n"
                     " 74      4       176  inLifProfile           IN_LIF_PROFILE\n"
                     " 78      2    g  365  vsiAssignmentMode      VSI_ASSIGNMENT_MODE\n"
                     " 80      1    h  256  oamLifSet              OAM_LIF_SET\n"
                     " 81      1    i  287  protectionPath         PROTECTION_PATH\n"
                     " 82     14       288  protectionPointer      PROTECTION_POINTER\n"
                     " 96      2    j  344  type                   TYPE\n"
                     " 98     18       321  sysInLif               SYS_IN_LIF\n"
                     "116      1    k   70  doubleDataEntry        DOUBLE_DATA_ENTRY\n"
                     "117     11    .       unused\n" );
}

// Four words have nothing but the field of 164 bits.
TEST( Layout, wordsThatLookAlikeAreOneRow ) {
   expectPrinted( { "layout", "TcamBankTable", "--chip", "3", "--lines", "ascii" },
                  "TcamBankTable on BCM88660_A0\n"
                  "words: 6, entries: 26880, arrayElements: 1, instances: 1, fields: 6, unused\n"
                  "bits: 14\n"
                  "\n"
                  "          3 3 2 2 2 2 2 2 2 2 2 2 1 1 1 1 1 1 1 1 1 1\n"
                  "word      1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0 9 8 7 6 5 4 3 2 1 0\n"
                  "         +---------------------------------------------------------+-+-+-+\n"
                  "   0  31 |                   tcamCpuCmdDi[28:0]                    |c|b|a| 0\n"
                  "         +---------------------------------------------------------+-+-+-+\n"
                  " 1-4 159 |                     tcamCpuCmdDi[156:29]                      | 32\n"
                  "         +---------------------------+-----------------+---+-------------+\n"
                  "   5 191 |          unused           |   tcamCpuCmd    | d |tcamCpuCmdDi | 160\n"
                  "         |                           |    Reserved     |   |  [163:157]  |\n"
                  "         +---------------------------+-----------------+---+-------------+\n" +
                     bitNumbering +
                     "\n"
                     "\n"
                     "bit  width  key   id  field               hardware name\n"
                     "  0      1    a  329  tcamCpuCmdWr        TCAM_CPU_CMD_WR\n"
                     "  1      1    b  326  tcamCpuCmdRd        TCAM_CPU_CMD_RD\n"
                     "  2      1    c  324  tcamCpuCmdCmp       TCAM_CPU_CMD_CMP\n"
                     "  3    164       325  tcamCpuCmdDi        TCAM_CPU_CMD_DI\n"
                     "167      2    d  328  tcamCpuCmdValid     TCAM_CPU_CMD_VALID\n"
                     "169      9       327  tcamCpuCmdReserved  TCAM_CPU_CMD_RESERVED\n"
                     "178     14            unused\n" );
}

TEST( Layout, unicodeLines ) {
   const auto outcome =
      vorn( { "layout", "TcamActionTable", "--chip", "4", "--lines", "unicode" } );
   EXPECT_NE( outcome.out.find( "\n"
                                "        ┌───────────────┬───────────────────────────────────────"
                                "────────┐\n"
                                "   0 31 │    unused     │                    action             "
                                "        │ 0\n"
                                "        └───────────────┴───────────────────────────────────────"
                                "────────┘\n" ),
              std::string::npos )
      << outcome.out;
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Layout, unicodeLinesAtATerminalAlone ) {
   const Arguments arguments{ "layout", "TcamActionTable", "--chip", "4" };
   const auto hasUnicode = [&]( bool terminal ) {
      const auto outcome = terminal ? onTerminal( arguments, {}, 80, true ) : vorn( arguments );
      EXPECT_EQ( outcome.status, 0 );
      const auto text = outcome.out + outcome.err;
      EXPECT_NE( text.find( "action" ), std::string::npos );
      return text.find( "│" ) != std::string::npos;
   };
   {
      const Variable locale( "LC_ALL", "C.UTF-8" );
      EXPECT_TRUE( hasUnicode( true ) );
      EXPECT_FALSE( hasUnicode( false ) );
   }
   {
      const Variable locale( "LC_ALL", "en_US.ISO-8859-1" );
      const Variable weaker( "LANG", "en_US.UTF-8" );
      EXPECT_FALSE( hasUnicode( true ) );
   }
   {
      const Variable empty( "LC_ALL", "" );
      const Variable locale( "LANG", "de_DE.utf8" );
      EXPECT_TRUE( hasUnicode( true ) );
   }
}

TEST( Layout, json ) {
   expectPrinted( { "layout", "TcamActionTable", "--chip", "10", "--json" },
                  R"({"table":"TcamActionTable","chip":"BCM88690_B0","variant":0,"kind":"table",)"
                  R"("words":2,"entries":2048,"arrayElements":24,"instances":2,)"
                  R"("fields":[{"name":"action","offset":0,"width":32,"identifier":3,)"
                  R"("hardwareName":"ACTION","readOnly":false}],)"
                  R"("unused":[{"offset":32,"width":32}]})"
                  "\n" );
}

TEST( Layout, jsonOfATagAndOfARegister ) {
   const auto object = Testing::parsed(
      vorn( { "layout", "LifTable", "--chip", "13", "--variant", "3", "--json" } ).out );
   const auto& tag = object["fields"].back();
   EXPECT_EQ( tag["name"], "resultType" );
   EXPECT_EQ( tag["offset"], 174 );
   EXPECT_EQ( tag["width"], 6 );
   EXPECT_EQ( tag["readOnly"], true );
   EXPECT_EQ( object["variant"], 3 );
   EXPECT_EQ( object["words"], 20 );

   const auto other =
      Testing::parsed( vorn( { "layout", "FheiIveSizeReg", "--chip", "2", "--json" } ).out );
   EXPECT_EQ( other["kind"], "register" );
   EXPECT_EQ( other["unused"], Testing::Json::array() );
}

TEST( Layout, aPicture ) {
   const TemporaryFolder folder;
   const std::string file = folder / "action.svg";
   expectPrinted( { "layout", "TcamActionTable", "--chip", "2", "--svg", file }, "" );
   const auto picture = contentsOf( file );
   EXPECT_TRUE( picture.starts_with( "<svg xmlns=\"http://www.w3.org/2000/svg\" " ) );
   EXPECT_TRUE( picture.ends_with( "</svg>\n" ) );
   // 20 of 32 bits of 28 pixels each, and the bits that it ends with.
   EXPECT_NE( picture.find( "<g><title>action: bits 0 to 19, identifier 3, ACTION</title>"
                            "<rect x=\"426\" y=\"74\" width=\"560\" " ),
              std::string::npos )
      << picture;
   EXPECT_NE( picture.find( ">action</text>" ), std::string::npos );
   EXPECT_NE( picture.find( ">19</text>" ), std::string::npos );
   EXPECT_NE( picture.find( "<title>bits 20 to 31 belong to no field</title>" ),
              std::string::npos );

   expectPrinted( { "layout", "TcamActionTable", "--chip", "2", "--svg", "-" }, picture );
}

namespace {

// What the title of a cell in the picture and its letters are.
bool shows( const std::string& picture, const std::string& title, const std::string& letters ) {
   const auto at = picture.find( "<g><title>" + title + "</title>" );
   EXPECT_NE( at, std::string::npos ) << title;
   const auto end = picture.find( "</g>", at );
   return picture.substr( at, end - at ).find( '>' + letters + "</text>" ) != std::string::npos;
}

std::size_t countIn( const std::string& text, const std::string& part ) {
   std::size_t count = 0;
   for( auto at = text.find( part ); at != std::string::npos; at = text.find( part, at + 1 ) ) {
      ++count;
   }
   return count;
}

} // namespace

TEST( Layout, thePictureOfAnImage ) {
   const std::string image = "0d" + std::string( 38, '0' ) + "80010000";
   const auto picture =
      vorn( { "layout", "TcamBankTable", "--chip", "3", "--svg", "-", "--image", image } ).out;
   const std::string di = "tcamCpuCmdDi: bits 3 to 166, identifier 325, TCAM_CPU_CMD_DI, value 0x1";
   const std::string valid =
      "tcamCpuCmdValid: bits 167 to 168, identifier 328, TCAM_CPU_CMD_VALID, value 0x3";
   const std::string wr = "tcamCpuCmdWr: bit 0, identifier 329, TCAM_CPU_CMD_WR, value 0x1";
   EXPECT_TRUE( shows( picture, di, "0x1" ) );
   EXPECT_TRUE( shows( picture, valid, "0x3" ) );
   EXPECT_TRUE( shows( picture, wr, "0x1" ) );
   EXPECT_NE( picture.find( ">tcamCpuCmdDi = 0x1</text>" ), std::string::npos );

   const std::string later = "0c" + std::string( 38, '0' ) + "80000000";
   const auto change = vorn( { "layout", "TcamBankTable", "--chip", "3", "--svg", "-", "--image",
                               image, "--image", later } )
                          .out;
   EXPECT_TRUE( shows( change, di, "0x1" ) );
   EXPECT_TRUE( shows( change, valid + " \u2192 0x1", "3 \u2192 1" ) );
   EXPECT_TRUE( shows( change, wr + " \u2192 0x0", "1\u21920" ) );
   // Two cells, and what the colour means.
   EXPECT_EQ( countIn( change, "fill=\"#ffd479\"" ), 3u );
   EXPECT_NE( change.find( ">changed</text>" ), std::string::npos );
   EXPECT_EQ( countIn( picture, "#ffd479" ), 0u );
   // The colour's meaning is said where there is no other, too.
   const auto all = vorn( { "layout", "TcamActionTable", "--chip", "10", "--svg", "-", "--image",
                            "0000000000000000", "ffffffffffffffff" } )
                       .out;
   EXPECT_EQ( countIn( all, "<g>" ), 2u );
   EXPECT_NE( all.find( ">changed</text>" ), std::string::npos );
}

TEST( Layout, theTagDecidesTheVariantOfThePicture ) {
   const auto image =
      vorn( { "encode", "LifTable", "--chip", "10", "--variant", "4", "--output", "bytes" } ).out;
   const auto picture =
      vorn( { "layout", "LifTable", "--chip", "10", "--svg", "-", "--image", image } ).out;
   EXPECT_NE( picture.find( "<title>LifTable on BCM88690_B0 variant 4</title>" ),
              std::string::npos );
}

TEST( LayoutDiff, aPictureOfBoth ) {
   const auto picture =
      vorn( { "layout", "TcamBankTable", "--diff", "3", "10", "--svg", "-" } ).out;
   for( const char* const text :
        { ">words: 6 -&gt; 11<", ">widened: tcamCpuCmdWr, bit 0 -&gt; bits 0 to 1<",
          ">moved: tcamCpuCmdRd, bit 1 -&gt; bit 2<",
          ">moved, widened: tcamCpuCmdDi, bits 3 to 166 -&gt; bits 4 to 331<",
          ">gone: tcamCpuCmdReserved, bits 169 to 177<", ">0 fields unchanged<",
          "; moved to bit 2</title>", "; moved from bit 1</title>", "; gone</title>" } ) {
      EXPECT_NE( picture.find( text ), std::string::npos ) << text;
   }
   // A cell and what its colour means; two cells and the same.
   EXPECT_EQ( countIn( picture, "fill=\"#f6b9b3\"" ), 2u );
   const auto added = vorn( { "layout", "LifTable", "--diff", "2:6", "3:6", "--svg", "-" } ).out;
   EXPECT_EQ( countIn( added, "fill=\"#b9e8b4\"" ), 3u );
   EXPECT_NE( added.find( ">16 fields unchanged<" ), std::string::npos );
}

TEST( Layout, aPictureReplacesAFile ) {
   const TemporaryFolder folder;
   const std::string file = folder / "old.svg";
   const std::string link = folder / "link.svg";
   std::ofstream( file ) << std::string( 100000, 'x' );
   std::filesystem::create_symlink( file, link );
   expectPrinted( { "layout", "TcamActionTable", "--chip", "2", "--svg", link }, "" );
   EXPECT_TRUE( contentsOf( file ).ends_with( "</svg>\n" ) );
   EXPECT_EQ( contentsOf( file ).find( 'x' + std::string( "xx" ) ), std::string::npos );
   EXPECT_TRUE( std::filesystem::is_symlink( link ) );
   const std::filesystem::directory_iterator files( folder.path() );
   EXPECT_EQ( std::distance( begin( files ), end( files ) ), 2 );
}

TEST( Layout, badInputLeavesThePictureAlone ) {
   const TemporaryFolder folder;
   const std::string file = folder / "old.svg";
   std::ofstream( file ) << "old";
   EXPECT_EQ( vorn( { "layout", "TcamActionTable", "--chip", "9", "--svg", file } ).status, 1 );
   EXPECT_EQ( contentsOf( file ), "old" );
}

TEST( Layout, theExamplesOfTheHelpWork ) {
   const TemporaryFolder folder;
   for( const Arguments& arguments :
        { Arguments{ "layout", "LifTable", "--chip", "BCM88690_B0", "--variant", "3" },
          Arguments{ "layout", "LifTable", "--diff", "BCM88650_B0:6", "BCM88660_A0:6" } } ) {
      const auto help = vorn( { "layout", "--help" } ).out;
      std::string line = "  vorn";
      for( const auto& argument : arguments ) {
         line += ' ' + argument;
      }
      EXPECT_NE( help.find( line + '\n' ), std::string::npos ) << line << help;
      EXPECT_EQ( vorn( arguments ).status, 0 );
   }
}

TEST( LayoutDiff, newFields ) {
   expectPrinted( { "layout", "LifTable", "--diff", "2:6", "BCM88660_A0:6" },
                  "LifTable: BCM88650_B0 variant 6 -> BCM88660_A0 variant 6\n"
                  "\n"
                  "change  field         bit  width\n"
                  "new     skipEthernet  1    1\n"
                  "new     useInLif      2    1\n"
                  "\n"
                  "16 fields unchanged\n" );
}

TEST( LayoutDiff, everyKindOfChange ) {
   expectPrinted( { "layout", "TcamBankTable", "--diff", "3", "10:0" },
                  "TcamBankTable: BCM88660_A0 -> BCM88690_B0\n"
                  "words: 6 -> 11\n"
                  "entries: 26880 -> 65536\n"
                  "instances: 1 -> 2\n"
                  "\n"
                  "change          field               bit         width\n"
                  "widened         tcamCpuCmdWr        0           1 -> 2\n"
                  "moved           tcamCpuCmdRd        1 -> 2      1\n"
                  "moved           tcamCpuCmdCmp       2 -> 3      1\n"
                  "moved, widened  tcamCpuCmdDi        3 -> 4      164 -> 328\n"
                  "moved           tcamCpuCmdValid     167 -> 332  2\n"
                  "gone            tcamCpuCmdReserved  169         9\n"
                  "\n"
                  "0 fields unchanged\n" );
   expectPrinted( { "layout", "--diff", "BCM88470_A0", "BCM88660_A0:0", "TcamBankTable" },
                  "TcamBankTable: BCM88470_A0 -> BCM88660_A0\n"
                  "entries: 32768 -> 26880\n"
                  "\n"
                  "change           field               bit         width\n"
                  "narrowed         tcamCpuCmdWr        0           2 -> 1\n"
                  "moved            tcamCpuCmdRd        2 -> 1      1\n"
                  "moved            tcamCpuCmdCmp       3 -> 2      1\n"
                  "moved            tcamCpuCmdDi        4 -> 3      164\n"
                  "moved            tcamCpuCmdValid     168 -> 167  2\n"
                  "moved, narrowed  tcamCpuCmdReserved  170 -> 169  10 -> 9\n"
                  "\n"
                  "0 fields unchanged\n" );
}

TEST( LayoutDiff, numbersAlone ) {
   expectPrinted( { "layout", "TcamActionTable", "--diff", "4", "6" },
                  "TcamActionTable: BCM88375_A0 -> BCM88470_A0\n"
                  "entries: 2048 -> 1024\n"
                  "1 field unchanged\n" );
}

TEST( LayoutDiff, none ) {
   expectPrinted( { "layout", "LifTable", "--diff", "4:5", "5:5" },
                  "LifTable: BCM88375_A0 variant 5 -> BCM88375_B0 variant 5\n"
                  "no difference\n" );
   // The same bits under other names are other fields.
   expectPrinted( { "layout", "LifTable", "--diff", "5:5", "8:5" },
                  "LifTable: BCM88375_B0 variant 5 -> BCM88680_A0 variant 5\n"
                  "\n"
                  "change  field         bit  width\n"
                  "gone    inLifDataLsb  0    57\n"
                  "new     lsb           0    57\n"
                  "new     msb           57   57\n"
                  "gone    inLifDataMsb  57   57\n"
                  "\n"
                  "2 fields unchanged\n" );
}

TEST( LayoutDiff, json ) {
   expectPrinted( { "layout", "TcamActionTable", "--json", "--diff", "3", "15" },
                  R"({"table":"TcamActionTable","from":{"chip":"BCM88660_A0","variant":0},)"
                  R"("to":{"chip":"BCM88480_A0","variant":0},)"
                  R"("numbers":{"words":{"from":1,"to":2}},)"
                  R"("fields":[{"name":"action","change":"widened",)"
                  R"("from":{"offset":0,"width":20},"to":{"offset":0,"width":32}}],)"
                  R"("unchanged":0})"
                  "\n" );
   expectPrinted( { "layout", "LifTable", "--json", "--diff", "2:6", "3:6" },
                  R"({"table":"LifTable","from":{"chip":"BCM88650_B0","variant":6},)"
                  R"("to":{"chip":"BCM88660_A0","variant":6},"numbers":{},)"
                  R"("fields":[{"name":"skipEthernet","change":"new","from":null,)"
                  R"("to":{"offset":1,"width":1}},)"
                  R"({"name":"useInLif","change":"new","from":null,)"
                  R"("to":{"offset":2,"width":1}}],"unchanged":16})"
                  "\n" );
}
