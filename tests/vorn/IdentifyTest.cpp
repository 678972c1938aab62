// vorn identify: held against the classes' own discriminators, and what it prints.
#include "Folders.h"
#include "Json.h"
#include "RunVorn.h"
#include "support/EveryClass.h"

#include <Vorn/Identify.h>

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Testing::expectRefused;
using Testing::Json;
using Testing::parsed;
using Testing::vorn;

using Pair = std::tuple<std::string, U32>; // table and variant

// The pairs whose entries are as long as the image and whose discriminator takes it for theirs.
std::set<Pair> takersOf( const Vorn::Chip& chip, const std::vector<U8>& image ) {
   const auto chipType = static_cast<Hardware::ChipType>( chip.number );
   std::set<Pair> takers;
   for( const Testing::ClassAccessors& table : Testing::everyClass() ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto number = static_cast<U8>( variant );
         const auto info = Hardware::pairInfo( table.name, chip.number, number );
         // There are no entries of this one, so it has a discriminator that takes none.
         const bool isTaken =
            chip.name == "Software" || table.holds == nullptr ||
            table.holds( chipType, image.data(), static_cast<U16>( image.size() ), number );
         if( info && ( info->hasVariants || variant == 0 ) && isTaken &&
             std::size_t( 4 ) * info->width == image.size() ) {
            takers.emplace( table.name, variant );
         }
      }
   }
   return takers;
}

std::set<Pair> pairsOf( const std::vector<Vorn::Identifier::Verdict>& verdicts ) {
   std::set<Pair> pairs;
   for( const auto& verdict : verdicts ) {
      for( const U32 variant : verdict.variants.variants ) {
         EXPECT_TRUE( pairs.emplace( verdict.table, variant ).second );
      }
   }
   return pairs;
}

std::string image( const std::string& table, const std::string& chip, const std::string& variant ) {
   return vorn( { "encode", table, "--chip", chip, "--variant", variant, "--output", "bytes" } )
      .out;
}

std::string identified( const std::string& chip, const std::string& text,
                        std::vector<std::string> more = {} ) {
   more.insert( more.begin(), { "identify", "--chip", chip, text } );
   const auto outcome = vorn( more );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   return outcome.out;
}

} // namespace

TEST( Identify, aFreshEntryIsWhatTheDiscriminatorsTakeItFor ) {
   for( const auto& chip : Vorn::allChips() ) {
      const Vorn::Identifier identifier( chip );
      const auto layouts = Vorn::layoutsOn( chip );
      for( const auto& layout : layouts ) {
         const auto entry = layout.blank();
         const auto verdicts = identifier.verdictsOn( entry );
         std::set<Pair> possible;
         for( const auto& group : verdicts.groups ) {
            possible.merge( pairsOf( group.members ) );
         }
         EXPECT_EQ( possible, takersOf( chip, entry ) ) << layout.pairText();
         EXPECT_TRUE( possible.contains( { std::string( layout.table() ), layout.variant() } ) );
         EXPECT_EQ( possible.size() + pairsOf( verdicts.ruledOut ).size(), layouts.size() );
      }
   }
}

TEST( Identify, variantsWithOneTagCannotBeDistinguished ) {
   EXPECT_EQ( identified( "BCM88690_B0", image( "LifTable", "10", "2" ) ),
              "group  table                   variants  reason\n"
              "    1  LifTable                0,2       tag: resultType 0x3a\n"
              "    2  TcamBankIpv4Tt          0         length alone, 80 bytes\n"
              "    2  TcamBankTableFormatter  0         length alone, 80 bytes\n" );
   EXPECT_EQ( identified( "14", image( "IsemMgmtReq", "14", "17" ) ),
              "group  table        variants   reason\n"
              "    1  IsemMgmtReq  17,18      tag: tid 0xf, entryType 0x0, vmv 0x3\n"
              "    2  IsemMgmtReq  7,8,19,20  length alone, 24 bytes\n" );
}

TEST( Identify, tagsTellTablesOfOneMemoryApart ) {
   EXPECT_EQ( identified( "10", image( "EpniIsidTable", "10", "0" ) ),
              "group  table          variants  reason\n"
              "    1  EpniIsidTable  0         tag: tid 0x4, entryType 0x0, vmv 0x1, resultType "
              "0x21\n" );
   EXPECT_EQ(
      identified( "10", image( "EsemMgmtReq", "10", "0" ) ),
      "group  table        variants  reason\n"
      "    1  EsemMgmtReq  0         tag: tid 0x4, entryType 0x0, resultType 0x9, vmv 0x1\n" );
}

TEST( Identify, theTagWithMoreBitsComesFirst ) {
   // 0x3a in 6 bits from bit 174, and 8 in 6 or 7 bits from bit 114 or 113.
   const auto both = []( const std::string& byte14 ) {
      return std::string( 28, '0' ) + byte14 + "000000000000800e" + std::string( 114, '0' );
   };
   EXPECT_EQ( identified( "13", both( "20" ) ),
              "group  table                   variants  reason\n"
              "    1  LifTable                0,2       tag: resultType 0x3a\n"
              "    2  OutAcBank               0         tag: resultType 0x8\n"
              "    3  TcamBankIpv4Tt          0         length alone, 80 bytes\n"
              "    3  TcamBankTableFormatter  0         length alone, 80 bytes\n" );
   EXPECT_EQ( identified( "14", both( "10" ) ),
              "group  table                   variants  reason\n"
              "    1  OutAcBank               0         tag: resultType 0x8\n"
              "    2  LifTable                0,2       tag: resultType 0x3a\n"
              "    3  TcamBankIpv4Tt          0         length alone, 80 bytes\n"
              "    3  TcamBankTableFormatter  0         length alone, 80 bytes\n" );
}

TEST( Identify, withoutTagsTheLengthAloneSpeaks ) {
   EXPECT_EQ( identified( "2", "45230100" ),
              "group  table            variants  reason\n"
              "    1  EpniIsidTable    any       length alone, 4 bytes\n"
              "    1  IvecTable        0,1       length alone, 4 bytes\n"
              "    1  IvectTable       0         length alone, 4 bytes\n"
              "    1  TcamActionTable  0         length alone, 4 bytes\n" );
   EXPECT_EQ( identified( "6", "0000000000000000" ),
              "group  table      variants  reason\n"
              "    1  EvecTable  any       length alone, 8 bytes\n" );
   // No tag, though a field has the name of one: what stands there is not compared.
   EXPECT_EQ( identified( "Software", std::string( 42, '0' ) + "ffffff" ),
              "group  table     variants  reason\n"
              "    1  LifTable  0         length alone, 24 bytes\n" );
}

TEST( Identify, whatIsRuledOutAndWhy ) {
   const auto lines = identified( "15", image( "LifTable", "15", "4" ), { "--ruled-out" } );
   for( const std::string line :
        { "    1  LifTable                4                     tag: resultType 0x21\n",
          " none  EvecFormatTable         0                     an entry has 4 bytes\n",
          " none  LifTable                0,2                   resultType is 0x21, not 0x3a\n",
          " none  LifTable                11                    resultType is 0x21, not 0x34\n",
          " none  OutAcBank               0                     resultType is 0x0, not 0x8\n",
          " none  IsemMgmtReq             0-20                  an entry has 24 bytes\n" } ) {
      std::istringstream wanted( line ), printed( lines );
      const std::vector<std::string> words{ std::istream_iterator<std::string>( wanted ), {} };
      bool isPrinted = false;
      for( std::string own; std::getline( printed, own ); ) {
         std::istringstream in( own );
         isPrinted =
            isPrinted ||
            words == std::vector<std::string>{ std::istream_iterator<std::string>( in ), {} };
      }
      EXPECT_TRUE( isPrinted ) << line << "in\n" << lines;
   }
   // Then it is no error that nothing is left.
   const auto none = vorn( { "identify", "--chip", "15", "00", "--ruled-out" } );
   EXPECT_EQ( none.status, 0 );
   EXPECT_EQ( none.out.find( "\n    1" ), std::string::npos );
}

TEST( Identify, json ) {
   const auto object =
      parsed( identified( "14", image( "IsemMgmtReq", "14", "17" ), { "--json", "--ruled-out" } ) );
   EXPECT_EQ( object["groups"],
              parsed( R"([ { "tag": { "tid": "0xf", "entryType": "0x0", "vmv": "0x3" },)"
                      R"("members": [ { "table": "IsemMgmtReq", "variants": [ 17, 18 ] } ] },)"
                      R"({ "tag": {}, "members":)"
                      R"([ { "table": "IsemMgmtReq", "variants": [ 7, 8, 19, 20 ] } ] } ])" ) );
   EXPECT_EQ( object["ruledOut"].back(),
              parsed( R"({ "table": "VttInPpPortConfig0", "variants": [ 0 ],)"
                      R"("reason": "an entry has 12 bytes" })" ) );
   EXPECT_EQ( identified( "6", "0000000000000000", { "--json" } ),
              R"({"groups":[{"tag":{},"members":[{"table":"EvecTable","variants":null}]}]})"
              "\n" );
}

TEST( Identify, severalImagesEachAtItsPlace ) {
   const auto outcome = vorn( { "identify", "--chip", "6", "--each", "-" },
                              "0000000000000000\n\n  0102030405060708\n" );
   EXPECT_EQ( outcome.out, "<stdin>:1:1:\n"
                           "group  table      variants  reason\n"
                           "    1  EvecTable  any       length alone, 8 bytes\n"
                           "<stdin>:3:3:\n"
                           "group  table      variants  reason\n"
                           "    1  EvecTable  any       length alone, 8 bytes\n" );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_EQ(
      vorn( { "identify", "--chip", "6", "--json", "--each", "--file", "-" }, "0000000000000000" )
         .out,
      R"({"place":"<stdin>:1:1","groups":[{"tag":{},"members":[{"table":"EvecTable",)"
      R"("variants":null}]}]})"
      "\n" );
}

TEST( Identify, theImagesBeforeABadOneArePrinted ) {
   const std::string lines = "0000000000000000\n00\n0000000000000000\n";
   const std::string answer = "group  table      variants  reason\n"
                              "    1  EvecTable  any       length alone, 8 bytes\n";
   const std::string wrong =
      "<stdin>:2:1: the image has 1 bytes; an entry on BCM88470_A0 has 4,8,12,16,24,80\n";
   const auto outcome = vorn( { "identify", "--chip", "6", "--each", "-" }, lines );
   EXPECT_EQ( outcome.out, "<stdin>:1:1:\n" + answer );
   EXPECT_EQ( outcome.err, wrong );
   EXPECT_EQ( outcome.status, 1 );

   const auto going = vorn( { "identify", "--chip", "6", "--each", "--keep-going", "-" }, lines );
   EXPECT_EQ( going.out, "<stdin>:1:1:\n" + answer + "<stdin>:3:1:\n" + answer );
   EXPECT_EQ( going.err, wrong + "vorn: 1 error, 2 images identified\n" );
   EXPECT_EQ( going.status, 1 );
}

namespace {

// 1 entry of LifTable's variant 4 on chip type 10, 2 of 0 or 2, 1 without a tag, 2 empty ones.
std::string sixEntries() {
   const std::string one = image( "LifTable", "10", "4" );
   const std::string other = image( "LifTable", "10", "0" );
   const std::string empty = std::string( 160, '0' ) + '\n';
   return empty + other + one + other + "01" + empty.substr( 2 ) + empty;
}

const std::string fitsOfSix = "images  table                   variants  reason\n"
                              "     2  LifTable                0,2       tag: resultType 0x3a\n"
                              "     1  LifTable                4         tag: resultType 0x21\n"
                              "     4  TcamBankIpv4Tt          0         length alone, 80 bytes\n"
                              "     4  TcamBankTableFormatter  0         length alone, 80 bytes\n"
                              "1 image has no tag and fits by its length alone\n"
                              "2 images are empty\n";

std::string bytesOf( const std::string& digits ) {
   std::string bytes;
   std::istringstream lines( digits );
   for( std::string line; std::getline( lines, line ); ) {
      for( std::size_t i = 0; i < line.size(); i += 2 ) {
         bytes += static_cast<char>( std::stoi( line.substr( i, 2 ), nullptr, 16 ) );
      }
   }
   return bytes;
}

std::string xxdOf( const std::string& bytes ) {
   std::string rows;
   for( std::size_t i = 0; i < bytes.size(); i += 16 ) {
      char text[80];
      std::snprintf( text, sizeof( text ), "%08zx: ", i );
      rows += text;
      for( std::size_t at = i; at < std::min( i + 16, bytes.size() ); ++at ) {
         std::snprintf( text, sizeof( text ), "%02x%s", static_cast<U8>( bytes[at] ),
                        at % 2 == 1 ? " " : "" );
         rows += text;
      }
      rows += " ................\n";
   }
   return rows;
}

std::string counted( const std::string& input, std::vector<std::string> more = {} ) {
   more.insert( more.begin(), { "identify", "--chip", "10", "-" } );
   const auto outcome = vorn( more, input );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   return outcome.out;
}

} // namespace

TEST( IdentifyDump, everyFormIsCountedAlike ) {
   const auto lines = sixEntries();
   const auto bytes = bytesOf( lines );
   std::string words;
   std::string stream = lines;
   for( std::size_t i = 0; i < bytes.size(); i += 4 ) {
      char text[16];
      std::snprintf( text, sizeof( text ), " %02x%02x%02x%02x%s", static_cast<U8>( bytes[i + 3] ),
                     static_cast<U8>( bytes[i + 2] ), static_cast<U8>( bytes[i + 1] ),
                     static_cast<U8>( bytes[i] ), i % 16 == 12 ? "\n" : "" );
      words += text;
   }
   std::erase( stream, '\n' );
   for( std::size_t at = 60; at < stream.size(); at += 61 ) {
      stream.insert( at, "\n" );
   }
   std::string csv = "image,entry\n";
   std::string addresses;
   std::istringstream each( lines );
   for( std::string line; std::getline( each, line ); ) {
      csv += line + ",0\n";
      addresses += "0x1000: " + line + '\n';
   }
   const std::string expected = "<stdin>: 6 images\n" + fitsOfSix;
   EXPECT_EQ( counted( lines ), expected );
   EXPECT_EQ( counted( "\xef\xbb\xbf# a memory\r\n" + lines ), expected );
   EXPECT_EQ( counted( bytes ), expected );
   EXPECT_EQ( counted( xxdOf( bytes ) ), expected );
   EXPECT_EQ( counted( words, { "--image-format", "words" } ), expected );
   EXPECT_EQ( counted( stream, { "--image-format", "stream" } ), expected );
   EXPECT_EQ( counted( csv ), expected );
   EXPECT_EQ( counted( addresses ), expected );
}

TEST( IdentifyDump, json ) {
   EXPECT_EQ( counted( bytesOf( sixEntries() ), { "--json" } ),
              R"({"file":"<stdin>","images":6,"empty":2,"lengthAlone":1,"fitNothing":0,"groups":[)"
              R"({"images":2,"bytes":80,"tag":{"resultType":"0x3a"},"members":)"
              R"([{"table":"LifTable","variants":[0,2]}]},)"
              R"({"images":1,"bytes":80,"tag":{"resultType":"0x21"},"members":)"
              R"([{"table":"LifTable","variants":[4]}]},)"
              R"({"images":4,"bytes":80,"tag":{},"members":)"
              R"([{"table":"TcamBankIpv4Tt","variants":[0]},)"
              R"({"table":"TcamBankTableFormatter","variants":[0]}]}]})"
              "\n" );
}

TEST( IdentifyDump, entriesFurtherApart ) {
   std::string apart;
   const auto bytes = bytesOf( sixEntries() );
   for( std::size_t at = 0; at < bytes.size(); at += 80 ) {
      apart += bytes.substr( at, 80 ) + std::string( 48, '\x55' );
   }
   const std::string expected = "<stdin>: 6 images\n" + fitsOfSix;
   EXPECT_EQ( counted( apart, { "--stride", "128" } ), expected );
   EXPECT_EQ( counted( apart.substr( 0, apart.size() - 20 ), { "--stride", "128" } ), expected );
}

TEST( IdentifyDump, whatFitsNothingIsCounted ) {
   EXPECT_EQ(
      counted( "0000\n" + image( "LifTable", "10", "4" ) + "000000\n" ),
      "<stdin>: 3 images\n"
      "images  table                   variants  reason\n"
      "     1  LifTable                4         tag: resultType 0x21\n"
      "     1  TcamBankIpv4Tt          0         length alone, 80 bytes\n"
      "     1  TcamBankTableFormatter  0         length alone, 80 bytes\n"
      "2 images fit nothing, the first of them: <stdin>:1:1: the image has 2 bytes; an entry "
      "on BCM88690_B0 has 4,8,12,24,36,44,80\n" );
   EXPECT_EQ( counted( "" ), "<stdin>: 0 images\n" );
}

TEST( IdentifyDump, refused ) {
   const std::vector<std::string> identify{ "identify", "--chip", "10", "-" };
   expectRefused( identify,
                  "<stdin>:1:1: the image has 1 bytes; an entry on BCM88690_B0 has "
                  "4,8,12,24,36,44,80; no other image fits, either",
                  "00\n00\n" );
   expectRefused( identify,
                  "<stdin>: the dump has 800 bytes, whose entries may have 4,8,80, and no tag "
                  "decides; --stride says how many",
                  std::string( 800, '\0' ) );
   expectRefused( identify,
                  "<stdin>: the dump has 83 bytes, which are no whole number of entries; an entry "
                  "on BCM88690_B0 has 4,8,12,24,36,44,80",
                  std::string( 83, '\1' ) );
   expectRefused( { "identify", "--chip", "10", "--stride", "3", "-" },
                  "vorn: a stride of 3 bytes is too short; an entry on BCM88690_B0 has 4", "00\n" );
   expectRefused( identify, "<stdin>:1:25: the image is one of BCM88480_A0, not of BCM88690_B0",
                  "LifTable BCM88480_A0 4: 00\n" );
}

TEST( IdentifyDump, goesOnAfterBadLines ) {
   const std::string lines = "zz\n" + image( "LifTable", "10", "4" ) + "0000 0\n";
   const auto outcome = vorn(
      {
         "identify",
         "--chip",
         "10",
         "--keep-going",
         "-",
      },
      lines );
   EXPECT_TRUE( outcome.out.starts_with( "<stdin>: 1 image\n" ) ) << outcome.out;
   EXPECT_EQ(
      outcome.err,
      "<stdin>:1:1: bad image \"zz\"; write hexadecimal digits, perhaps with TABLE CHIP "
      "VARIANT and a colon before them\n"
      "<stdin>:3:6: an odd number of digits in \"0\"; write two hexadecimal digits for each "
      "byte, entry byte 0 first\n"
      "vorn: 2 errors, 1 image identified\n" );
   EXPECT_EQ( outcome.status, 1 );
   // Of a hexdump that is cut off, what comes before counts.
   const auto rows = xxdOf( bytesOf( sixEntries() ) );
   const auto cut =
      vorn( { "identify", "--chip", "10", "--keep-going", "-" }, rows + "000001e0: 0g\n" );
   EXPECT_EQ( cut.out, "<stdin>: 6 images\n" + fitsOfSix );
   EXPECT_EQ( cut.status, 1 );
}

TEST( IdentifyDump, filesEachForItself ) {
   const Testing::TemporaryFolder folder;
   std::ofstream( folder / "six" ) << sixEntries();
   std::ofstream( folder / "one" ) << image( "OutAcBank", "15", "0" );
   std::ofstream( folder / "45230100" ) << "no image";
   const auto both = vorn( { "identify", "--chip", "10", folder / "six", folder / "six" } );
   const std::string once = ( folder / "six" ) + ": 6 images\n" + fitsOfSix;
   EXPECT_EQ( both.out, once + once );
   EXPECT_EQ( vorn( { "identify", "--chip", "15", "--file", folder / "one" } ).status, 0 );
   expectRefused( { "identify", "--chip", "10", folder / "none", folder / "six" },
                  "vorn: cannot open " + ( folder / "none" ) + ": No such file or directory" );
   // What is an image is none of a file, and may be longer than a file's name.
   expectRefused( { "identify", "--chip", "10", std::string( 800, '0' ) },
                  "vorn: the image has 400 bytes; an entry on BCM88690_B0 has 4,8,12,24,36,44,80" );
   EXPECT_EQ( Testing::run( "sh", { "-c", "cd '" + std::string( folder.path() ) +
                                             "' && '" VORN_BINARY "' identify --chip 2 45230100" } )
                 .out,
              identified( "2", "45230100" ) );
}

TEST( Identify, saysThatAFileForEachIsBinary ) {
   for( const std::string& file : { std::string( 8, '\0' ), std::string( "\x45\x23\x01\0\0\0", 6 ),
                                    std::string( "\x7f\xff\xff\xff\xff\xff\n" ) } ) {
      const auto outcome = vorn( { "identify", "--chip", "10", "--each", "-" }, file );
      EXPECT_EQ( outcome.out, "" );
      EXPECT_EQ(
         outcome.err,
         "<stdin>: the file is binary, and --each takes lines of text; leave --each out, or "
         "print the BYTES of each entry on a line with `xxd -p -c BYTES`\n" );
      EXPECT_EQ( outcome.status, 1 );
   }
}

TEST( Identify, whatEncodeAndProgramPrintIsRead ) {
   for( const std::string form : { "text", "bytes", "words", "json" } ) {
      const auto entry =
         vorn( { "encode", "FwdActProfileTable", "--chip", "16", "--output", form } );
      const auto outcome = vorn( { "identify", "--chip", "16", "-" }, entry.out );
      EXPECT_NE( outcome.out.find( "FwdActProfileTable" ), std::string::npos ) << form;
      EXPECT_EQ( outcome.err, "" ) << form;
   }
}
