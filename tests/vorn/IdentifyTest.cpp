// vorn identify: held against the classes' own discriminators, and what it prints.
#include "RunVorn.h"
#include "support/EveryClass.h"

#include <Vorn/Identify.h>

#include <Hardware/Registry.h>

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Json = nlohmann::ordered_json;
using Testing::expectRefused;
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
   const auto object = Json::parse(
      identified( "14", image( "IsemMgmtReq", "14", "17" ), { "--json", "--ruled-out" } ) );
   EXPECT_EQ(
      object["groups"],
      Json::parse( R"([ { "tag": { "tid": "0xf", "entryType": "0x0", "vmv": "0x3" },)"
                   R"("members": [ { "table": "IsemMgmtReq", "variants": [ 17, 18 ] } ] },)"
                   R"({ "tag": {}, "members":)"
                   R"([ { "table": "IsemMgmtReq", "variants": [ 7, 8, 19, 20 ] } ] } ])" ) );
   EXPECT_EQ( object["ruledOut"].back(),
              Json::parse( R"({ "table": "VttInPpPortConfig0", "variants": [ 0 ],)"
                           R"("reason": "an entry has 12 bytes" })" ) );
   EXPECT_EQ( identified( "6", "0000000000000000", { "--json" } ),
              R"({"groups":[{"tag":{},"members":[{"table":"EvecTable","variants":null}]}]})"
              "\n" );
}

TEST( Identify, severalImagesEachAtItsPlace ) {
   const auto outcome =
      vorn( { "identify", "--chip", "6", "-" }, "0000000000000000\n\n  0102030405060708\n" );
   EXPECT_EQ( outcome.out, "<stdin>:1:1:\n"
                           "group  table      variants  reason\n"
                           "    1  EvecTable  any       length alone, 8 bytes\n"
                           "<stdin>:3:3:\n"
                           "group  table      variants  reason\n"
                           "    1  EvecTable  any       length alone, 8 bytes\n" );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_EQ(
      vorn( { "identify", "--chip", "6", "--json", "--file", "-" }, "0000000000000000" ).out,
      R"({"place":"<stdin>:1:1","groups":[{"tag":{},"members":[{"table":"EvecTable",)"
      R"("variants":null}]}]})"
      "\n" );
}

TEST( Identify, theImagesBeforeABadOneArePrinted ) {
   const auto outcome =
      vorn( { "identify", "--chip", "6", "-" }, "0000000000000000\n00\n0000000000000000\n" );
   EXPECT_EQ( outcome.out, "<stdin>:1:1:\n"
                           "group  table      variants  reason\n"
                           "    1  EvecTable  any       length alone, 8 bytes\n" );
   EXPECT_EQ( outcome.err, "<stdin>:2:1: the image has 1 bytes; an entry on BCM88470_A0 has "
                           "4,8,12,16,24,80\n" );
   EXPECT_EQ( outcome.status, 1 );
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
