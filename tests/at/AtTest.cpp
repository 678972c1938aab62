// What At does while a program is compiled, and what its own operations do with plain numbers.
#include "support/Assertions.h"

#include <Hardware/at/EvecTable.h>
#include <Hardware/at/FheiIveSizeReg.h>
#include <Hardware/at/IsemMgmtReq.h>
#include <Hardware/at/LifTable.h>
#include <Hardware/at/TcamActionTable.h>
#include <Hardware/at/TcamBankTable.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using Hardware::At;
using Lif = At<Hardware::LifTable, Hardware::BCM88690_B0, 0>;

constexpr Lif::Image golden = [] {
   Lif::Image image = Lif::blank();
   Lif lif( image );
   lif.vsiIs( 2000 );
   lif.vlanEditVid1Is( 100 );
   lif.learnEnableMask();
   return image;
}();

// vsi is bits 1 to 15, vlanEditVid1 95 to 106, learnEnable 120, the tag 58 in bits 174 to 179.
static_assert( golden[0] == 0xa0 && golden[1] == 0x0f );
static_assert( golden[12] == 0x32 && golden[15] == 1 );
static_assert( golden[21] == 0x80 && golden[22] == 0x0e );
static_assert( Lif::View( golden ).vsi() == 2000 && Lif::View( golden ).vlanEditVid1() == 100 );
static_assert( Lif::View( golden ).holdsTag() && Lif::View( golden ).resultType() == 58 );
static_assert( Lif::isVsiValid() && !Lif::isVrfValid() );
static_assert( Lif::vsiOffset() == 1 && Lif::vsiLen() == 15 && Lif::fieldCount() == 23 );
static_assert( Lif::width() == 20 && Lif::entries() == 4294967295 && Lif::isTable() );
static_assert( sizeof( Lif::Image ) == 80 && Lif::allFieldsMask().word( 2 ) == 0xfffffffffffff );

constexpr Lif::Image composed = [] {
   Lif::Fields fields = Lif::View( golden ).fields();
   fields.vsi = 7;
   fields.vlanEditVid2 = 0xfff;
   Lif::Image image = golden;
   image[79] = 0xff;
   Lif( image ).compose( fields );
   return image;
}();
static_assert( Lif::View( composed ).vsi() == 7 && Lif::View( composed ).vlanEditVid2() == 0xfff );
static_assert( Lif::View( composed ).vlanEditVid1() == 100 && composed[79] == 0 );
static_assert( Lif::View( composed ).fields() != Lif::View( golden ).fields() );

// Wide fields, over words and where an entry ends in half a word.
using Bank = At<Hardware::TcamBankTable, Hardware::BCM88690_B0, 0>;
constexpr Bank::Image bank = [] {
   Bank::Image image{};
   Raw512 value{};
   value.wordIs( 0, 0x0123456789abcdef );
   value.wordIs( 2, 0xffffffffff );
   Bank( image ).tcamCpuCmdDiIs( value );
   return image;
}();
static_assert( Bank::View( bank ).tcamCpuCmdDi().word( 0 ) == 0x0123456789abcdef );

constexpr bool hasAddress = [] {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   return At<Hardware::TcamActionTable, Hardware::BCM88690_B0, 0>::getSchanAddress(
             address, accessType, destBlock, 1, 5, 2 ) &&
          address == 0x1100000 + 5 + 2 * 2048 && accessType == 6 && destBlock == 6;
}();
static_assert( hasAddress );

// Pairs and fields are constraints.
template<unsigned chipType, unsigned variant>
concept IsLif = requires {
   typename At<Hardware::LifTable, static_cast<Hardware::ChipType>( chipType ), variant>;
};
static_assert( IsLif<10, 4> && !IsLif<10, 5> && !IsLif<11, 0> && !IsLif<10, 256> );
static_assert( Hardware::HasPair<Hardware::EvecTable, 4, 255> );
static_assert( !Hardware::HasPair<Hardware::EvecTable, 4, 256> );
template<class View>
concept HasVrf = requires( View view ) {
   view.vrf();
};
template<class View>
concept SetsVsi = requires( View view, U16 value ) {
   view.vsiIs( value );
};
template<class View>
concept SetsTag = requires( View view, U8 value ) {
   view.resultTypeIs( value );
};
template<class Fields>
concept HoldsVrf = requires( Fields fields ) {
   fields.vrf;
};
using Variant4 = At<Hardware::LifTable, Hardware::BCM88690_B0, 4>;
static_assert( !HasVrf<Lif> && HasVrf<Variant4> && HasVrf<Variant4::View> );
static_assert( !HoldsVrf<Lif::Fields> && HoldsVrf<Variant4::Fields> );
static_assert( SetsVsi<Lif> && !SetsVsi<Lif::View> && !SetsTag<Lif> );
template<class View>
concept HasAddress = requires( U32& address, U8& number ) {
   View::getSchanAddress( address, number, number, 0, 0, 0 );
};
static_assert( HasAddress<Lif> );
static_assert( !HasAddress<At<Hardware::LifTable, Hardware::Software, 0>> );

TEST( At, composeFailsWithTheSettersTextAndWritesNothing ) {
   Lif::Image image = golden;
   Lif::Fields fields;
   fields.vsi = 0x8000;
   fields.vlanEditVid1 = 0x1000; // declared before vsi
   const auto failure = Testing::failureOf( [&] { Lif( image ).compose( fields ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "vlanEditVid1 <= 0xfff" );
   EXPECT_EQ( failure->file, "VornTunnelMetaInfo" );
   EXPECT_EQ( failure->function, "void Hardware::LifTable::vlanEditVid1Is(U16)" );
   EXPECT_TRUE( image == golden );
}

TEST( At, takesSpansAndLengthsThatSuffice ) {
   std::vector<U8> bytes( 16 );
   using Older = At<Hardware::LifTable, Hardware::BCM88650_B0, 0>;
   Older lif( bytes );
   lif.destinationIs( U16{ 0x1234 } );
   EXPECT_EQ( Older::View( bytes.data(), 16 ).destination(), 0x1234u );
   EXPECT_EQ( bytes[1], 0x12 );
   const std::span<U8> shorter( bytes.data(), 15 );
   EXPECT_EQ( Testing::expressionOf( [&] { Older{ shorter }; } ), "len_ >= 16" );
   EXPECT_EQ( Testing::expressionOf( [&] { Older::View( bytes.data(), 15 ); } ), "len_ >= 16" );
}

TEST( At, takesIntegersThatLoseNothing ) {
   Lif::Image image = Lif::blank();
   Lif lif( image );
   lif.vlanEditVid1Is( 4095 );
   lif.vlanEditVid2Is( U8{ 200 } );
   lif.learnEnableIs( true );
   lif.vsiIs( Hardware::BCM88480_B0 );
   EXPECT_EQ( lif.vlanEditVid1(), 4095 );
   EXPECT_EQ( lif.vlanEditVid2(), 200 );
   EXPECT_EQ( lif.learnEnable(), 1 );
   EXPECT_EQ( lif.vsi(), 16u );
}

// Each At has a separate type, which shows how often a lambda is instantiated.
template<class Each>
int instances = 0;

TEST( WithPair, callsTheFormatsOwnAt ) {
   std::vector<int*> counters;
   unsigned calls = 0;
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         Lif::Image image{};
         const bool called = Hardware::withPair<Hardware::LifTable>(
            static_cast<Hardware::ChipType>( chipType ), static_cast<U8>( variant ),
            [&]( auto pair ) {
               using Pair = typename decltype( pair )::At;
               int* const counter = &instances<Pair>;
               if( ( *counter )++ == 0 ) {
                  counters.push_back( counter );
               }
               image = Pair::blank();
               if constexpr( requires( Pair at ) { at.vsi(); } ) {
                  Pair( image ).vsiIs( 1 );
               }
            } );
         calls += called;
      }
   }
   EXPECT_EQ( calls, 114u );
   EXPECT_EQ( counters.size(), 31u );
}

TEST( WithPair, keepsToTheChipTypesItIsGiven ) {
   const auto served = []( Hardware::ChipType chipType, U8 variant ) {
      return Hardware::withPair<Hardware::LifTable, Hardware::BCM88690_B0, Hardware::BCM88850_A0>(
         chipType, variant, []( auto ) {} );
   };
   EXPECT_TRUE( served( Hardware::BCM88690_B0, 11 ) );
   EXPECT_TRUE( served( Hardware::BCM88850_A0, 0 ) );
   EXPECT_FALSE( served( Hardware::BCM88690_B0, 5 ) );
   EXPECT_FALSE( served( Hardware::BCM88800_A0, 0 ) );
   EXPECT_FALSE( served( static_cast<Hardware::ChipType>( 200 ), 0 ) );
   // None of the class's.
   EXPECT_FALSE( ( Hardware::withPair<Hardware::LifTable, Hardware::BCM88375_A0>(
      Hardware::BCM88690_B0, 0, []( auto ) {} ) ) );
}

TEST( WithPair, findsAnyVariantWhereNoneIsLookedAt ) {
   for( const U8 variant : { U8{ 0 }, U8{ 30 }, U8{ 31 }, U8{ 255 } } ) {
      EXPECT_TRUE(
         Hardware::withPair<Hardware::EvecTable>( Hardware::BCM88375_A0, variant, []( auto ) {} ) );
   }
}

} // namespace
