// vorn decode, run for real: each form of output, images one by one and many, and wrong usage.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Testing::expectPrinted;
using Testing::vorn;

using Arguments = std::vector<std::string>;

Arguments decode( const Arguments& arguments, const Arguments& more = {} ) {
   Arguments all{ "decode" };
   all.insert( all.end(), arguments.begin(), arguments.end() );
   all.insert( all.end(), more.begin(), more.end() );
   return all;
}

void expectWrongUsage( const Arguments& arguments, const std::string& message ) {
   const auto outcome = vorn( decode( arguments ) );
   const std::string advice = message.ends_with( '?' ) ? "" : "; see vorn decode --help";
   EXPECT_EQ( outcome.err.substr( 0, outcome.err.find( '\n' ) ), "vorn: " + message + advice );
   EXPECT_EQ( outcome.out, "" );
   EXPECT_EQ( outcome.status, 2 );
}

// mappedPpPort in 9 bits from bit 0, portKeyGenVar in 32 bits from bit 9 and defaultPortLif in 20
// bits from bit 41, declared in the opposite order.
const Arguments port{ "VttInPpPortConfig0", "--chip", "10" };

const std::string portImage = "05de7d5bbd8b460200000000";
const std::string portFields = "defaultPortLif=0x12345 portKeyGenVar=0xdeadbeef mappedPpPort=0x5";
const std::string portPair = R"({"table":"VttInPpPortConfig0","chip":"BCM88690_B0","variant":0,)"
                             R"("entry":null,"array":null,"identifier":null,"address":null,)";
const std::string portHeader = "table,chip,variant,entry,array,identifier,address,defaultPortLif,"
                               "portKeyGenVar,mappedPpPort\n";
const std::string portRow = "VttInPpPortConfig0,BCM88690_B0,0,,,,,";

// The same with mappedPpPort 7 and defaultPortLif 0x54321.
const std::string otherImage = "07de7d5bbd43860a00000000";
const std::string otherFields = "defaultPortLif=0x54321 portKeyGenVar=0xdeadbeef mappedPpPort=0x7";

const Arguments action{ "TcamActionTable", "--chip", "2" };

} // namespace

TEST( Decode, text ) {
   expectPrinted( decode( port, { portImage } ),
                  "offset  width  field           value       decimal\n"
                  "     0      9  mappedPpPort    0x5         5\n"
                  "     9     32  portKeyGenVar   0xdeadbeef  3735928559\n"
                  "    41     20  defaultPortLif  0x12345     74565\n" );
}

TEST( Decode, singleLine ) {
   expectPrinted( decode( port, { "--single-line", portImage } ), portFields + '\n' );
}

TEST( Decode, json ) {
   // An image that ends at its last field stays as it is.
   for( const auto& image : { portImage, portImage.substr( 0, 16 ) } ) {
      expectPrinted( decode( port, { "--json", image } ),
                     portPair + R"("image":")" + image +
                        R"(","fields":{"defaultPortLif":74565,"portKeyGenVar":3735928559,)"
                        R"("mappedPpPort":5}})"
                        "\n" );
   }
}

TEST( Decode, csv ) {
   expectPrinted( decode( port, { "--csv", portImage } ),
                  portHeader + portRow + "74565,3735928559,5\n" );
   expectPrinted( decode( port, { "--csv", "-" } ),
                  portHeader + portRow + "74565,3735928559,5\n" + portRow +
                     "344865,3735928559,7\n" + portRow + "0,0,0\n" + portRow +
                     "1048575,4294967295,511\n",
                  portImage + '\n' + otherImage + '\n' + std::string( 24, '0' ) + '\n' +
                     std::string( 24, 'f' ) + '\n' );
   // Without images there is the header still.
   expectPrinted( decode( port, { "--csv", "-" } ), portHeader );
   expectPrinted( decode( { "--csv", "-" } ), "" );
}

TEST( Decode, wideFields ) {
   const std::string input = std::string( 32, '0' ) + "\n01" + std::string( 28, '0' ) + "80\n" +
                             std::string( 32, 'f' ) + "\nffffffffffff1f" + std::string( 18, '0' ) +
                             "\n00000000000020" + std::string( 18, '0' ) + '\n';
   const Arguments size{ "decode", "FheiIveSizeReg", "--chip", "4", "-" };
   const std::string values[] = { "0", "0x80000000000000000000000000000001",
                                  "0xffffffffffffffffffffffffffffffff", "0x1fffffffffffff",
                                  "0x20000000000000" };
   std::string csv = "table,chip,variant,entry,array,identifier,address,pphFheiIveSize\n";
   for( const auto& value : values ) {
      csv += "FheiIveSizeReg,BCM88375_A0,0,,,,," + ( value == "0" ? "0x0" : value ) + '\n';
   }
   Arguments arguments = size;
   arguments.emplace_back( "--csv" );
   expectPrinted( arguments, csv, input );

   // In JSON it is the value that counts: 53 bits are a number, more a string.
   arguments.back() = "--json";
   const auto lines = Testing::linesOf( vorn( arguments, input ).out );
   const std::string asJson[] = { "0", '"' + values[1] + '"', '"' + values[2] + '"',
                                  "9007199254740991", '"' + values[4] + '"' };
   ASSERT_EQ( lines.size(), std::size( asJson ) );
   for( std::size_t i = 0; i < lines.size(); ++i ) {
      EXPECT_TRUE( lines[i].ends_with( R"("fields":{"pphFheiIveSize":)" + asJson[i] + "}}" ) )
         << lines[i];
   }
}

TEST( Decode, theWaysToWriteAnImage ) {
   const Arguments line = decode( port, { "--single-line" } );
   for( const Arguments& image :
        { Arguments{ portImage }, Arguments{ "--image-format", "bytes", "0x" + portImage },
          Arguments{ "--image-format", "number", "0x2468bbd5b7dde05" },
          Arguments{ "05", "de", "7d", "5b", "bd", "8b", "46", "02" },
          Arguments{ "0x5b7dde05", "0x02468bbd", "0x00000000" },
          Arguments{ "words: 0x5b7dde05 0x02468bbd 0x00000000" },
          Arguments{ "--image-format", "words", "5b7dde05", "2468bbd" },
          Arguments{
             R"({"table":"VttInPpPortConfig0","chip":10,"image":"05de7d5bbd8b4602"})" } } ) {
      Arguments arguments = line;
      arguments.insert( arguments.end(), image.begin(), image.end() );
      expectPrinted( arguments, portFields + '\n' );
   }
}

TEST( Decode, oneWordIsAWordAndFourBytesAreBytes ) {
   const std::pair<Arguments, std::string> cases[] = {
      { { "0x00012345" }, "action=0x12345\n" },
      { { "00012345" }, "action=0x30100\n" },
      { { "--image-format", "bytes", "0x00012345" }, "action=0x30100\n" },
      { { "--image-format", "words", "00012345" }, "action=0x12345\n" },
      { { "--image-format", "auto", "0x012345" }, "action=0x52301\n" },
   };
   for( const auto& [image, fields] : cases ) {
      Arguments arguments = decode( action, { "--single-line" } );
      arguments.insert( arguments.end(), image.begin(), image.end() );
      expectPrinted( arguments, fields );
   }
}

TEST( Decode, manyImages ) {
   const std::string input = portImage + "\n\n  0x07 de7d5b\tbd43860a \r\n" + portImage;
   expectPrinted( decode( port, { "--single-line", "-" } ),
                  portFields + '\n' + otherFields + '\n' + portFields + '\n', input );
   expectPrinted( decode( port, { "-" } ),
                  "offset  width  field           value       decimal\n"
                  "     0      9  mappedPpPort    0x5         5\n"
                  "     9     32  portKeyGenVar   0xdeadbeef  3735928559\n"
                  "    41     20  defaultPortLif  0x12345     74565\n"
                  "\n"
                  "offset  width  field           value       decimal\n"
                  "     0      9  mappedPpPort    0x7         7\n"
                  "     9     32  portKeyGenVar   0xdeadbeef  3735928559\n"
                  "    41     20  defaultPortLif  0x54321     344865\n",
                  portImage + '\n' + otherImage + '\n' );
   expectPrinted( decode( port, { "-" } ), "" );
}

TEST( Decode, aFile ) {
   const Testing::TemporaryFolder folder;
   const std::string path = folder / "images.txt";
   std::ofstream( path ) << portImage << '\n' << otherImage << '\n';
   expectPrinted( decode( port, { "--single-line", "--file", path } ),
                  portFields + '\n' + otherFields + '\n' );
   std::ofstream( path ) << portImage << '\n' << "\n" << otherImage.substr( 0, 15 ) << '\n';
   const auto outcome = vorn( decode( port, { "--single-line", "--file", path } ) );
   EXPECT_EQ( outcome.out, portFields + '\n' );
   EXPECT_EQ( outcome.err, path + ":3:1: an odd number of digits in \"07de7d5bbd43860\"; write two "
                                  "hexadecimal digits for each byte, entry byte 0 first\n" );
   EXPECT_EQ( outcome.status, 1 );
   Testing::expectRefused( decode( port, { "--file", folder / "none" } ),
                           "vorn: cannot open " + ( folder / "none" ) +
                              ": No such file or directory" );
}

TEST( Decode, hexdumpsOneAfterAnother ) {
   const std::string first = "00000000  05 de 7d 5b bd 8b 46 02                       |..}[..F.|\n";
   const std::string second =
      "00000000  07 de 7d 5b bd 43 86 0a                       |..}[.C..|\n";
   const std::string end = "00000008\n";
   const std::string part = "00000018  07 de 7d 5b bd 43 86 0a                       |..}[.C..|\n"
                            "00000020\n";
   const std::string both = portFields + '\n' + otherFields + '\n';
   for( const auto& input :
        { first + end + second + end, first + end + "\n" + second + end, first + end + part,
          first + end + otherImage + '\n', portImage + '\n' + second + end } ) {
      expectPrinted( decode( port, { "--single-line", "-" } ), both, input );
   }
   expectPrinted( decode( port, { "--single-line", "--image-format", "hexdump", "-" } ), both,
                  "00000000  05 de 7d 5b\n00000004  bd 8b 46 02\n00000008\n"
                  "00000000  07 de 7d 5b\n00000004  bd 43 86 0a\n00000008\n" );
}

TEST( Decode, mixedTables ) {
   const std::string input = "VttInPpPortConfig0 10 0: " + portImage +
                             "\n"
                             "TcamActionTable BCM88650_B0 0:0x00012345\n" +
                             R"({"table":"TcamActionTable","chip":4,"image":[255,255,255,255]})" +
                             "\nVttInPpPortConfig0 BCM88690_B0 0:\n"
                             "00000000  07 de 7d 5b bd 43 86 0a  00 00 00 00       |..}[.C......|\n"
                             "0000000c\n";
   expectPrinted( decode( { "--single-line", "-" } ),
                  "VttInPpPortConfig0 BCM88690_B0 0: " + portFields +
                     "\nTcamActionTable BCM88650_B0 0: action=0x12345\n"
                     "TcamActionTable BCM88375_A0 0: action=0xffffff\n"
                     "VttInPpPortConfig0 BCM88690_B0 0: " +
                     otherFields + '\n',
                  input );
   const auto text = vorn( decode( { "-" } ), input ).out;
   EXPECT_TRUE( text.starts_with( "VttInPpPortConfig0 on BCM88690_B0\noffset  width" ) ) << text;
   EXPECT_NE( text.find( "74565\n\nTcamActionTable on BCM88650_B0\noffset" ), std::string::npos )
      << text;
}

TEST( Decode, whatTheImageAndTheCommandLineBothSay ) {
   for( const std::string line :
        { "TcamActionTable 2 0: 01000000", "TcamActionTable BCM88650_B0: 01000000",
          "TcamActionTable: 01000000", R"({"chip":"BCM88650_B0","image":"01000000"})",
          R"({"variant":0,"image":"01000000"})" } ) {
      expectPrinted( decode( action, { "--single-line", "-" } ), "action=0x1\n", line );
   }
   Testing::expectRefused( decode( action, { "-" } ),
                           "<stdin>:1:1: the image is one of FheiIveSizeReg, not of "
                           "TcamActionTable",
                           "FheiIveSizeReg 2 0: 01000000" );
}

TEST( Decode, whatOtherVerbsPrint ) {
   const Arguments fields{ "mappedPpPort=5", "portKeyGenVar=0xdeadbeef", "defaultPortLif=0x12345" };
   Arguments encode{ "encode", port[0], port[1], port[2] };
   encode.insert( encode.end(), fields.begin(), fields.end() );
   const auto encoded = vorn( encode );
   ASSERT_EQ( encoded.status, 0 ) << encoded.err;
   expectPrinted( decode( port, { "--single-line", "-" } ), portFields + '\n' + portFields + '\n',
                  encoded.out + encoded.out );

   const auto programmed =
      vorn( { "program", "-" },
            R"({"table":"VttInPpPortConfig0","chip":10,"entry":9,"fields":{"mappedPpPort":5,)"
            R"("portKeyGenVar":)"
            R"("0xdeadbeef","defaultPortLif":"0x12345"}})" );
   ASSERT_EQ( programmed.status, 0 ) << programmed.err;
   const std::string place = "entry=9 array=0 identifier=0 address=0x760009: ";
   expectPrinted( decode( port, { "--single-line", "-" } ), place + portFields + '\n',
                  programmed.out );
   expectPrinted( decode( { "--single-line", "-" } ),
                  "VttInPpPortConfig0 BCM88690_B0 0 " + place + portFields + '\n', programmed.out );

   const auto decoded = vorn( decode( { "--json", "-" } ), programmed.out );
   expectPrinted( decode( { "--json", "-" } ), decoded.out, decoded.out );
   expectPrinted( { "program", "-" }, programmed.out, decoded.out );
   expectPrinted( { "program", "-" }, programmed.out, programmed.out );
}

TEST( Decode, changedFrom ) {
   const Arguments changed = decode( port, { "--changed-from", portImage } );
   const auto with = [&]( const Arguments& more ) {
      Arguments arguments = changed;
      arguments.insert( arguments.end(), more.begin(), more.end() );
      return arguments;
   };
   expectPrinted( with( { otherImage } ), "offset  width  field           old      new\n"
                                          "     0      9  mappedPpPort    0x5      0x7\n"
                                          "    41     20  defaultPortLif  0x12345  0x54321\n" );
   expectPrinted( with( { "--single-line", otherImage } ),
                  "defaultPortLif=0x12345->0x54321 mappedPpPort=0x5->0x7\n" );
   expectPrinted( with( { "--json", otherImage } ),
                  portPair + R"("image":")" + otherImage +
                     R"(","changed":{"defaultPortLif":{"old":74565,"new":344865},)"
                     R"("mappedPpPort":{"old":5,"new":7}}})"
                     "\n" );
   // Bits 61 to 95 are in no field.
   const std::string same = "05de7d5bbd8b46e2ffffffff";
   expectPrinted( with( { same } ), "no field differs\n" );
   expectPrinted( with( { "--single-line", "-" } ), "\nmappedPpPort=0x5->0x4\n\n",
                  same + "\n04de7d5bbd8b4602\n" + portImage + '\n' );
   expectPrinted( with( { "--json", same } ),
                  portPair + R"("image":")" + same + R"(","changed":{}})" + "\n" );
}

TEST( Decode, changedFromAWideField ) {
   const std::string zeros( 30, '0' );
   expectPrinted( { "decode", "FheiIveSizeReg", "--chip", "4", "--single-line", "--changed-from",
                    zeros + "00", zeros + "80" },
                  "pphFheiIveSize=0x0->0x80000000000000000000000000000000\n" );
}

TEST( Decode, anAnswerDoesNotWaitForFurtherInput ) {
   EXPECT_EQ( Testing::answerTo( decode( action, { "--single-line", "-" } ), "05000000\n" ),
              "action=0x5\n" );
   EXPECT_EQ( Testing::answerTo( decode( action, { "--single-line", "-" } ),
                                 "00000000  06 00 00 00  |....|\n00000004\n" ),
              "action=0x6\n" );
}

TEST( Decode, moreLinesThanAnyBufferHolds ) {
   std::string input;
   std::string output = "table,chip,variant,entry,array,identifier,address,action\n";
   for( int i = 0; i < 50000; ++i ) {
      const char digit = "0123456789abcdef"[i % 16];
      input += { '0', digit, '0', '0', '0', '0', '0', '0', '\n' };
      output += "TcamActionTable,BCM88650_B0,0,,,,," + std::to_string( i % 16 ) + '\n';
   }
   // Not EXPECT_EQ, which would print all of it.
   EXPECT_TRUE( vorn( decode( action, { "--csv", "-" } ), input ).out == output );
}

TEST( Decode, wrongUsage ) {
   const Arguments action2{ "TcamActionTable", "--chip", "2" };
   const auto with = [&]( const Arguments& more ) {
      Arguments arguments = action2;
      arguments.insert( arguments.end(), more.begin(), more.end() );
      return arguments;
   };
   expectWrongUsage( {}, "IMAGE or --file is required" );
   expectWrongUsage( action2, "IMAGE or --file is required" );
   expectWrongUsage( { "TcamActionTable", "01000000" }, "--chip is required" );
   expectWrongUsage( { "--variant", "0", "-" }, "--variant requires TABLE" );
   expectWrongUsage( with( { "01000000", "--file", "-" } ), "--file excludes IMAGE" );
   expectWrongUsage( with( { "--image-format", "word", "01000000" } ),
                     "--image-format: unknown format \"word\"; did you mean words?" );
   for( const auto& [one, other] :
        { std::pair( "--json", "--csv" ), std::pair( "--json", "--single-line" ),
          std::pair( "--single-line", "--csv" ) } ) {
      expectWrongUsage( with( { one, other, "01000000" } ),
                        std::string( one ) + " excludes " + other );
   }
   expectWrongUsage( with( { "--csv", "--changed-from", "00000000", "01000000" } ),
                     "--changed-from excludes --csv" );
}
