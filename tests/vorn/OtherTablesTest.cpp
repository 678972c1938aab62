// What TcamActionTable cannot show: wide fields, tags, overlaps, variants, registers, no address.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

using Testing::expectRefused;
using Testing::vorn;

std::string lastLineOf( const std::string& text ) {
   return text.substr( text.rfind( '\n', text.size() - 2 ) + 1 );
}

} // namespace

TEST( OtherTables, aPairWithoutAddress ) {
   const auto encoded = vorn( { "encode", "LifTable", "--chip", "Software" } );
   EXPECT_EQ( lastLineOf( encoded.out ), "address: none\n" );
   EXPECT_EQ( encoded.out.find( "destBlock" ), std::string::npos );
   EXPECT_EQ( encoded.status, 0 );

   const auto programmed =
      vorn( { "program", "-" }, R"({"table":"LifTable","chip":21,"fields":{"vlanEditVid1":1}})" );
   EXPECT_EQ( programmed.out,
              R"({"table":"LifTable","chip":"Software","variant":0,"entry":0,"array":0,)"
              R"("identifier":0,"image":"00000000000000000080)" +
                 std::string( 28, '0' ) +
                 R"(","address":null,"accessType":null,"destBlock":null})"
                 "\n" );
   expectRefused( { "encode", "LifTable", "--chip", "Software", "--entry", "1" },
                  "vorn: entry 1 is out of range in LifTable on Software; allowed: 0" );
}

TEST( OtherTables, aFreshEntryCarriesItsTag ) {
   const auto outcome = vorn( { "encode", "LifTable", "--chip", "10", "--variant", "3" } );
   // The tag of this variant, 0x25, in 6 bits from bit 174.
   EXPECT_TRUE( outcome.out.starts_with( "image:" +
                                         [] {
                                            std::string bytes;
                                            for( int i = 0; i < 80; ++i ) {
                                               bytes += i == 21 ? " 40" : i == 22 ? " 09" : " 00";
                                            }
                                            return bytes;
                                         }() +
                                         '\n' ) )
      << outcome.out;
}

TEST( OtherTables, aTagThatAgreesMayBeGiven ) {
   const std::vector<std::string> encode{ "encode", "LifTable", "--chip", "10", "--variant", "3" };
   auto withTag = encode;
   withTag.emplace_back( "resultType=0x25" );
   EXPECT_EQ( vorn( withTag ).out, vorn( encode ).out );
   EXPECT_EQ( vorn( withTag ).status, 0 );
}

TEST( OtherTables, aTagIsDecodedAndNotChecked ) {
   const auto outcome = vorn( { "decode", "--json", "LifTable", "--chip", "10", "--variant", "3",
                                std::string( 46, '0' ) } );
   EXPECT_NE( outcome.out.find( R"("resultType":0,)" ), std::string::npos ) << outcome.out;
   EXPECT_EQ( outcome.status, 0 );
}

TEST( OtherTables, wideFields ) {
   // 2^327 + 5, in a field of 328 bits from bit 4.
   std::string digits( 82, '0' );
   digits.front() = '8';
   digits.back() = '5';
   const std::string line = R"({"table":"TcamBankTable","chip":10,"fields":{"tcamCpuCmdDi":"0x)";
   const auto programmed = vorn( { "program", "-" }, line + digits + "\"}}" );
   const std::string image = "50" + std::string( 80, '0' ) + "080000";
   EXPECT_NE( programmed.out.find( "\"image\":\"" + image + '"' ), std::string::npos )
      << programmed.out << programmed.err;
   const auto decoded = vorn( { "decode", "--json", "TcamBankTable", "--chip", "10", image } );
   EXPECT_NE( decoded.out.find( "\"tcamCpuCmdDi\":\"0x" + digits + '"' ), std::string::npos )
      << decoded.out;

   expectRefused( { "program", "-" },
                  "<stdin>:1:61: value 0x1" + std::string( 57, '0' ) +
                     "... of field tcamCpuCmdDi is too large; its 328 bits in TcamBankTable on "
                     "BCM88690_B0 hold at most 2^328 - 1",
                  line + "1" + std::string( 82, '0' ) + "\"}}" );
}

TEST( OtherTables, whereFieldsOverlapTheLaterOneWins ) {
   // On the chip type Software mdbEntry covers the entry, vsi its bits 2 to 18.
   const auto imageOf = []( const std::string& fields ) {
      const auto out =
         vorn( { "program", "-" }, R"({"table":"LifTable","chip":21,"fields":{)" + fields + "}}" )
            .out;
      return out.substr( out.find( R"("image":")" ) + 9, 6 );
   };
   EXPECT_EQ( imageOf( R"("mdbEntry":"0xffffff","vsi":0)" ), "0300f8" );
   EXPECT_EQ( imageOf( R"("vsi":0,"mdbEntry":"0xffffff")" ), "ffffff" );
}

TEST( OtherTables, fieldsThatThePairLacks ) {
   expectRefused(
      { "encode", "LifTable", "--chip", "10", "actionProfileIndex=1" },
      "vorn: field actionProfileIndex does not exist in LifTable on BCM88690_B0 variant "
      "0, only on chip types and variants 2-8: 3,4; did you mean actionProfileIdx?" );
}

TEST( OtherTables, aTableThatDoesNotLookAtTheVariant ) {
   EXPECT_EQ( vorn( { "encode", "EvecTable", "--chip", "2", "--variant", "255" } ).out,
              vorn( { "encode", "EvecTable", "--chip", "2" } ).out );
   expectRefused( { "encode", "EvecTable", "--chip", "2", "--variant", "256" },
                  "vorn: EvecTable has no variant 256 on BCM88650_B0; allowed: 0-255" );
}

TEST( OtherTables, aRegisterHasOneEntry ) {
   const auto outcome = vorn( { "encode", "FheiIveSizeReg", "--chip", "4", "--identifier", "1",
                                "pphFheiIveSize=340282366920938463463374607431768211455" } );
   EXPECT_EQ( outcome.out, "image: ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff\n"
                           "words: 0xffffffff 0xffffffff 0xffffffff 0xffffffff\n"
                           "address: 0x1e8\n"
                           "accessType: 0\n"
                           "destBlock: 61\n" );
   expectRefused( { "encode", "FheiIveSizeReg", "--chip", "4", "--entry", "1" },
                  "vorn: entry 1 is out of range in FheiIveSizeReg on BCM88375_A0; allowed: 0" );
   expectRefused( { "encode", "FheiIveSizeReg", "--chip", "4",
                    "pphFheiIveSize=340282366920938463463374607431768211456" },
                  "vorn: value 340282366920938463463374607431768211456 of field pphFheiIveSize is "
                  "too large; its 128 bits in FheiIveSizeReg on BCM88375_A0 hold at most 2^128 - "
                  "1" );
}

TEST( OtherTables, entriesUpToThe32BitLimit ) {
   const auto outcome = vorn( { "encode", "LifTable", "--chip", "10", "--entry", "4294967294" } );
   EXPECT_EQ( outcome.status, 0 ) << outcome.err;
   expectRefused( { "encode", "LifTable", "--chip", "10", "--entry", "4294967295" },
                  "vorn: entry 4294967295 is out of range in LifTable on BCM88690_B0 variant 0; "
                  "allowed: 0 to 4294967294" );
}
