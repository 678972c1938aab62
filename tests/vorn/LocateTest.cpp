// vorn locate: every place of every memory is found again at its address, and nothing else is.
#include "RunVorn.h"

#include <Vorn/Locate.h>

#include <Hardware/Registry.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <unordered_map>

namespace {

using Testing::vorn;

// Where the view itself says that the place lies.
Vorn::Address addressOf( std::string_view table, U32 chip, U8 variant,
                         const Vorn::EntryIndex& index ) {
   Vorn::Address address;
   EXPECT_TRUE( Hardware::stringObj( table, static_cast<Hardware::ChipType>( chip ), variant )
                   ->getSchanAddress( address.schanAddress, address.accessType, address.destBlock,
                                      static_cast<U16>( index.identifier ),
                                      static_cast<U32>( index.entry ),
                                      static_cast<U16>( index.array ) ) );
   return address;
}

using PairAction =
   std::function<void( std::string_view table, U8 variant, const Hardware::PairInfo& info )>;

void forEveryAddressedPair( U32 chip, const PairAction& action ) {
   for( const auto table : Hardware::classNames() ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const auto info = Hardware::pairInfo( table, chip, static_cast<U8>( variant ) );
         if( info && info->hasAddress && ( info->hasVariants || variant == 0 ) ) {
            action( table, static_cast<U8>( variant ), *info );
         }
      }
   }
}

std::vector<Vorn::Location> allAt( const std::vector<Vorn::Memory>& memories, U32 address ) {
   std::vector<Vorn::Location> all;
   for( const auto& memory : memories ) {
      const auto own = memory.at( address );
      all.insert( all.end(), own.begin(), own.end() );
   }
   return all;
}

std::set<U64> firstMiddleLast( U64 count ) { return { 0, count / 2, count - 1 }; }

} // namespace

TEST( Locate, everyPlaceIsAmongTheAnswersForItsAddress ) {
   for( const auto& chip : Vorn::allChips() ) {
      const auto memories = Vorn::memoriesOn( chip );
      std::size_t pairs = 0;
      forEveryAddressedPair(
         chip.number, [&]( std::string_view table, U8 variant, const Hardware::PairInfo& info ) {
            ++pairs;
            for( const U64 entry : firstMiddleLast( info.entries ) ) {
               for( const U64 array : firstMiddleLast( info.arrayElements ) ) {
                  for( U64 identifier = 0; identifier < info.instanceCount; ++identifier ) {
                     const Vorn::EntryIndex index{ entry, array, identifier };
                     const auto address = addressOf( table, chip.number, variant, index );
                     const auto answers = allAt( memories, address.schanAddress );
                     const auto isIt = [&]( const Vorn::Location& found ) {
                        return found.layout.table() == table && found.layout.variant() == variant &&
                               found.index == index && found.address == address;
                     };
                     EXPECT_EQ( std::count_if( answers.begin(), answers.end(), isIt ), 1 )
                        << chip.name << ' ' << table << ' ' << unsigned( variant ) << ' ' << entry
                        << ' ' << array << ' ' << identifier;
                  }
               }
            }
         } );
      EXPECT_EQ( memories.size(), pairs ) << chip.name;
   }
}

// All places of chips whose memories are small enough to be walked, counted by address.
TEST( Locate, thereAreAsManyAnswersAsPlaces ) {
   for( const U64 number : { 2u, 4u, 8u } ) {
      const auto& chip = Vorn::chipOf( number );
      const auto memories = Vorn::memoriesOn( chip );
      std::unordered_map<U32, std::size_t> counts;
      std::set<U32> asked;
      forEveryAddressedPair(
         chip.number, [&]( std::string_view table, U8 variant, const Hardware::PairInfo& info ) {
            if( info.entries > 1000000 ) {
               return;
            }
            const auto view =
               Hardware::stringObj( table, static_cast<Hardware::ChipType>( number ), variant );
            for( U32 array = 0; array < info.arrayElements; ++array ) {
               U32 address = 0;
               U8 ignored = 0;
               for( U32 entry = 0; entry < info.entries; ++entry ) {
                  view->getSchanAddress( address, ignored, ignored, 0, entry,
                                         static_cast<U16>( array ) );
                  counts[address] += info.instanceCount;
                  if( entry == 0 || entry + 1 == info.entries ) {
                     asked.insert( { address - 1, address, address + 1 } );
                  }
               }
            }
         } );
      for( const U32 address : asked ) {
         auto answers = allAt( memories, address );
         std::erase_if( answers, []( const Vorn::Location& found ) {
            return found.layout.info().entries > 1000000;
         } );
         const auto found = counts.find( address );
         EXPECT_EQ( answers.size(), found == counts.end() ? 0 : found->second )
            << chip.name << ' ' << std::hex << address;
      }
   }
}

TEST( Locate, linesForAPerson ) {
   const auto outcome = vorn( { "locate", "--chip", "BCM88690_B0", "0x1101005" } );
   EXPECT_EQ(
      outcome.out,
      "table                   variants     entry  array  identifier  accessType  destBlock\n"
      "LifTable                0-4,6-11  17829893      0           0          10          1\n"
      "OutAcBank               0         17829893      0           0          10          1\n"
      "TcamActionTable         0                5      2           0           4          6\n"
      "TcamActionTable         0                5      2           1           6          6\n"
      "TcamBankIpv4Tt          0         17829893      0           0          10          1\n"
      "TcamBankTableFormatter  0         17829893      0           0          10          1\n" );
   // Memories that would have every address are explained.
   EXPECT_EQ( outcome.err,
              "vorn: 4294967295 entries mean that no size is stated: LifTable, OutAcBank, "
              "TcamBankIpv4Tt, TcamBankTableFormatter would have nearly every address; --bounded "
              "leaves such memories out\n" );
   EXPECT_EQ( outcome.status, 0 );
   Testing::expectPrinted(
      { "locate", "--chip", "BCM88690_B0", "--bounded", "0x1101005" },
      "table            variants  entry  array  identifier  accessType  destBlock\n"
      "TcamActionTable  0             5      2           0           4          6\n"
      "TcamActionTable  0             5      2           1           6          6\n" );
   Testing::expectRefused( { "locate", "--chip", "10", "--bounded", "0xfffffff0" },
                           "vorn: nothing lies at 0xfffffff0 on BCM88690_B0; below it 0x2f1007f is "
                           "entry 127 of IvecTable variant 2 in block 2" );
}

TEST( Locate, manyAddressesHaveTheirsInFront ) {
   const std::string places =
      " address  table          variants  entry  array  identifier  accessType  destBlock\n"
      "0x130ffe  EpniIsidTable  any        4094      0           0           0          3\n"
      "0x130fff  EpniIsidTable  any        4095      0           0           0          3\n"
      "0x140000  OutAcBank      0-2           0      0           0           0          3\n";
   const std::vector<std::string> command{ "locate", "--chip", "2", "--dest-block", "3" };
   const auto withMore = [&]( std::vector<std::string> more ) {
      more.insert( more.begin(), command.begin(), command.end() );
      return more;
   };
   Testing::expectPrinted( withMore( { "0x130ffe", "0x130fff", "0x140000" } ), places );
   Testing::expectPrinted( withMore( { "-" } ), places,
                           "# what the log says\n0x130ffe-0x130fff\r\n\n1310720 # the same\n" );
   Testing::expectPrinted( withMore( { "0x130ffe-0x130fff", "-" } ), places, "0x140000" );
   const auto gap = vorn( withMore( { "0x130ffe-0x140000" } ) );
   EXPECT_EQ( gap.out, places );
   EXPECT_EQ( gap.err,
              "vorn: nothing lies at 61440 of the 61443 addresses from 0x130ffe to 0x140000\n" );
   EXPECT_EQ( gap.status, 0 );
}

TEST( Locate, manyAddressesAreRefusedAtTheirPlace ) {
   const std::vector<std::string> command{ "locate", "--chip", "2", "--dest-block", "3", "-" };
   const auto outcome = vorn( command, "0x130fff\n 0x130ffe,0x13100g 0x140000\n" );
   EXPECT_EQ( Testing::linesOf( outcome.out ).size(), 3u );
   EXPECT_EQ(
      outcome.err,
      "<stdin>:2:11: bad number \"0x13100g\" for address; write hexadecimal digits after 0x\n" );
   EXPECT_EQ( outcome.status, 1 );
   Testing::expectRefused( command,
                           "<stdin>:1:1: nothing lies from 0x131000 to 0x13ffff in block 3 on "
                           "BCM88650_B0; below it 0x130fff is entry 4095 of EpniIsidTable in block "
                           "3; above it 0x140000 is entry 0 of array element 0 of OutAcBank "
                           "variant 0 in block 3",
                           "0x131000-0x13ffff" );
   Testing::expectRefused(
      { "locate", "--chip", "2", "5-3" },
      "vorn: range 5-3 of addresses ends before it begins; did you mean 3-5?" );
   Testing::expectRefused( { "locate", "--chip", "2", "0x130fff", "5-" },
                           "vorn: bad range \"5-\" of addresses; write it as first-last" );
}

TEST( Locate, variantsThatLieElsewhereHaveTheirOwnLine ) {
   // Bank 1 of variant 0 is where banks 2 of the other variants are.
   EXPECT_EQ( vorn( { "locate", "--chip", "4", "--dest-block", "52", "0x101000" } ).out,
              "table      variants  entry  array  identifier  accessType  destBlock\n"
              "OutAcBank  0             0      1           0           0         52\n"
              "OutAcBank  1,2           0      2           0           0         52\n" );
}

TEST( Locate, aTableWithoutVariantsHasAny ) {
   EXPECT_EQ( vorn( { "locate", "--chip", "5", "--dest-block=0x30", "0x2601ff" } ).out,
              "table      variants  entry  array  identifier  accessType  destBlock\n"
              "EvecTable  any         511      0           0           0         48\n" );
}

TEST( Locate, aBlockNarrows ) {
   EXPECT_EQ( vorn( { "locate", "--chip", "14", "--dest-block", "25", "0x2270011" } ).out,
              "table      variants  entry  array  identifier  accessType  destBlock\n"
              "IvecTable  0            17      0           1          26         25\n" );
}

TEST( Locate, jsonIsWhatAddressPrints ) {
   const auto located =
      vorn( { "locate", "--chip", "6", "--dest-block", "58", "0x68ffff", "--json" } );
   std::string expected;
   for( unsigned variant = 0; variant < 7; ++variant ) {
      expected +=
         vorn( { "address", "LifTable", "--chip", "6", "--variant", std::to_string( variant ),
                 "--entry", "32767", "--array", "1", "--json" } )
            .out;
   }
   EXPECT_EQ( located.out, expected );
   EXPECT_EQ( located.status, 0 );
}

TEST( Locate, theNearestPlacesWhereNothingLies ) {
   Testing::expectRefused( { "locate", "--chip", "6", "--dest-block", "58", "0x67ffff" },
                           "vorn: nothing lies at 0x67ffff in block 58 on BCM88470_A0; below it "
                           "0x4300ff is entry 255 of IvectTable in block 58; above it 0x680000 is "
                           "entry 0 of array element 0 of LifTable variant 0 in block 58" );
}
