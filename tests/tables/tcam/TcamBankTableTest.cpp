// TcamBankTable: a bank's CPU command word, with one wide field of 164 or 328 bits.
#include "support/Addresses.h"
#include "support/Contract.h"
#include "support/Tiling.h"

#include <Hardware/TcamActionTable.h>
#include <Hardware/TcamBankTable.h>

namespace {

using View = Hardware::TcamBankTable;
using Testing::Address;
using Testing::addressOf;
using Testing::Bits;
using Testing::bitsSetBy;
using Testing::expectTiling;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::lowOnes;
using Testing::toBits;

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamBankTable" );
   expected.storageBytes = 44;
   // clang-format off
   expected.fields = {
      NARROW_FIELD( U8,     tcamCpuCmdCmp,      TcamCpuCmdCmp,      324, "TCAM_CPU_CMD_CMP" ),
      WIDE_FIELD(   Raw512, tcamCpuCmdDi,       TcamCpuCmdDi,       325, "TCAM_CPU_CMD_DI" ),
      NARROW_FIELD( U8,     tcamCpuCmdRd,       TcamCpuCmdRd,       326, "TCAM_CPU_CMD_RD" ),
      NARROW_FIELD( U16,    tcamCpuCmdReserved, TcamCpuCmdReserved, 327, "TCAM_CPU_CMD_RESERVED" ),
      NARROW_FIELD( U8,     tcamCpuCmdValid,    TcamCpuCmdValid,    328, "TCAM_CPU_CMD_VALID" ),
      NARROW_FIELD( U8,     tcamCpuCmdWr,       TcamCpuCmdWr,       329, "TCAM_CPU_CMD_WR" ),
   };
   expected.layout = Testing::rowsOf( {
      { "0", { "2,3", "4-8", "10,12-16" }, {
         { "tcamCpuCmdWr",       { "0:1",   "0:2",    "0:2" } },
         { "tcamCpuCmdRd",       { "1:1",   "2:1",    "2:1" } },
         { "tcamCpuCmdCmp",      { "2:1",   "3:1",    "3:1" } },
         { "tcamCpuCmdDi",       { "3:164", "4:164",  "4:328" } },
         { "tcamCpuCmdValid",    { "167:2", "168:2",  "332:2" } },
         { "tcamCpuCmdReserved", { "169:9", "170:10", "-" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3",      "0", 6,  26880, 1, 6, 1, 1 },
      { "4,5,8",    "0", 6,  65536, 1, 6, 1, 1 },
      { "6,7",      "0", 6,  32768, 1, 6, 1, 1 },
      { "10,12,14", "0", 11, 65536, 1, 5, 2, 1 },
      { "13",       "0", 11, 65536, 1, 5, 1, 1 },
      { "15,16",    "0", 11, 32768, 1, 5, 1, 1 },
   };
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3",   "0", 0x1800000,  1, 0, { { 0, 53 } } },
      { "4,5",   "0", 0x1a000000, 1, 0, { { 0, 63 } } },
      { "6,7",   "0", 0x1a000000, 1, 0, { { 0, 63 } } },
      { "8",     "0", 0x1a000000, 1, 0, { { 0, 70 } } },
      { "10,12", "0", 0x1000000,  1, 0, { { 4, 6 }, { 6, 6 } } },
      { "13",    "0", 0x1000000,  1, 0, { { 28, 12 } } },
      { "14",    "0", 0x1000000,  1, 0, { { 16, 36 }, { 18, 36 } } },
      { "15,16", "0", 0x1000000,  1, 0, { { 0, 19 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( TcamBankTable, expectation() )

constexpr Hardware::ChipType firstChips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0 };
constexpr Hardware::ChipType middleChips[] = { Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                               Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                               Hardware::BCM88680_A0 };
constexpr Hardware::ChipType lateChips[] = { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0,
                                             Hardware::BCM88800_A0, Hardware::BCM88850_A0,
                                             Hardware::BCM88480_A0, Hardware::BCM88480_B0 };

TEST( TcamBankTable, FieldsFillTheEntryFromBitZero ) {
   for( const auto chipType : firstChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::tcamCpuCmdWrMask, &View::tcamCpuCmdRdMask,
                            &View::tcamCpuCmdCmpMask, &View::tcamCpuCmdDiMask,
                            &View::tcamCpuCmdValidMask, &View::tcamCpuCmdReservedMask },
                          0, 178 );
   }
   for( const auto chipType : middleChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::tcamCpuCmdWrMask, &View::tcamCpuCmdRdMask,
                            &View::tcamCpuCmdCmpMask, &View::tcamCpuCmdDiMask,
                            &View::tcamCpuCmdValidMask, &View::tcamCpuCmdReservedMask },
                          0, 180 );
   }
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      expectTiling<View>( view,
                          { &View::tcamCpuCmdWrMask, &View::tcamCpuCmdRdMask,
                            &View::tcamCpuCmdCmpMask, &View::tcamCpuCmdDiMask,
                            &View::tcamCpuCmdValidMask },
                          0, 334 );
   }
}

TEST( TcamBankTable, WholeEntryEndsWithTheLastField ) {
   U8 buffer[44];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   for( const auto chipType : firstChips ) {
      EXPECT_EQ( toBits( View( chipType, buffer, 44, false, 0 ).getAllFields() ), lowOnes( 178 ) );
   }
   for( const auto chipType : middleChips ) {
      EXPECT_EQ( toBits( View( chipType, buffer, 44, false, 0 ).getAllFields() ), lowOnes( 180 ) );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( toBits( View( chipType, buffer, 44, false, 0 ).getAllFields() ), lowOnes( 334 ) );
   }
}

TEST( TcamBankTable, ReservedIsGoneOnTheLateChips ) {
   for( const auto chipType : lateChips ) {
      View::WithStorage view( chipType, 0 );
      EXPECT_EQ( expressionOf( [&] { view.tcamCpuCmdReserved(); } ), "0" );
      EXPECT_FALSE( view.isTcamCpuCmdReservedValid() );
      EXPECT_FALSE( view.isFieldValid( 327 ) );
      EXPECT_EQ( view.fieldWidth( 327 ), 0 );
      EXPECT_EQ( expressionOf( [&] { view.fieldOffset( 327 ); } ), "0" );
      EXPECT_EQ( view.fieldCount(), 5 );
   }
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   const auto failure = failureOf( [&] { ten.tcamCpuCmdReservedLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->message, "BCM88690_B0 does not have field TCAM_CPU_CMD_RESERVED" );
}

TEST( TcamBankTable, LengthOfAnUnknownChipNamesTheField ) {
   Testing::Probe<View> view( Hardware::BCM88650_B0, nullptr, 0, false, 0 );
   view.pairIs( 9, 0 );
   const auto failure = failureOf( [&] { view.tcamCpuCmdWrLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "ChipType(9) does not have field TCAM_CPU_CMD_WR" );
}

TEST( TcamBankTable, DataIsReadFromItsOwnBitsAlone ) {
   U8 buffer[24];
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0xff } );
   EXPECT_EQ( toBits( View( Hardware::BCM88650_B0, buffer, 24, false, 0 ).tcamCpuCmdDi() ),
              lowOnes( 164 ) );

   // Bit 3 is the lowest of the value, bit 166 the highest.
   std::fill( std::begin( buffer ), std::end( buffer ), U8{ 0 } );
   buffer[0] = 0x0f;  // bits 0 to 3
   buffer[20] = 0xc0; // bits 166 and 167
   const Raw512 value = View( Hardware::BCM88650_B0, buffer, 24, false, 0 ).tcamCpuCmdDi();
   EXPECT_EQ( value.word( 0 ), 1u );
   EXPECT_EQ( value.word( 1 ), 0u );
   EXPECT_EQ( value.word( 2 ), 0x800000000u );
   for( unsigned word = 3; word < 8; ++word ) {
      EXPECT_EQ( value.word( word ), 0u );
   }
}

TEST( TcamBankTable, MaskOfTheDataSetsItsBitsAlone ) {
   View::WithStorage four( Hardware::BCM88375_A0, 0 );
   EXPECT_EQ( bitsSetBy( four, &View::tcamCpuCmdDiMask ), lowOnes( 168 ) ^ lowOnes( 4 ) );
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( bitsSetBy( two, &View::tcamCpuCmdDiMask ), lowOnes( 167 ) ^ lowOnes( 3 ) );
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( bitsSetBy( ten, &View::tcamCpuCmdDiMask ), lowOnes( 332 ) ^ lowOnes( 4 ) );
}

TEST( TcamBankTable, DataHasNoBoundAndDropsWhatIsAboveItsWidth ) {
   Raw512 ones;
   std::fill( ones.bytes(), ones.bytes() + 64, U8{ 0xff } );
   View::WithStorage two( Hardware::BCM88650_B0, 0 );
   two.tcamCpuCmdDiIs( ones );
   EXPECT_EQ( toBits( two.getAllFields() ), lowOnes( 167 ) ^ lowOnes( 3 ) );
   EXPECT_EQ( two.tcamCpuCmdValid(), 0 );
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   ten.tcamCpuCmdDiIs( ones );
   EXPECT_EQ( toBits( ten.getAllFields() ), lowOnes( 332 ) ^ lowOnes( 4 ) );
   EXPECT_EQ( ten.tcamCpuCmdValid(), 0 );
}

TEST( TcamBankTable, DataIsReadByNameInWordsOf64Bits ) {
   View::WithStorage ten( Hardware::BCM88690_B0, 0 );
   Raw512 value{};
   for( unsigned word = 0; word < 8; ++word ) {
      value.wordIs( word, 0x1111111111111111u * ( word + 1 ) );
   }
   ten.tcamCpuCmdDiIs( value );
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 0 ), 0x1111111111111111u );
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 1 ), 0x2222222222222222u );
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 4 ), 0x5555555555555555u );
   // 328 bits end eight bits into word 5.
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 5 ), 0x66u );
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 6 ), 0u );
   EXPECT_EQ( ten.stringField( "tcamCpuCmdDi", 7 ), 0u );

   // 164 bits end 36 bits into word 2.
   View::WithStorage eight( Hardware::BCM88680_A0, 0 );
   eight.tcamCpuCmdDiIs( value );
   EXPECT_EQ( eight.stringField( "tcamCpuCmdDi", 1 ), 0x2222222222222222u );
   EXPECT_EQ( eight.stringField( "tcamCpuCmdDi", 2 ), 0x333333333u );
   EXPECT_EQ( eight.stringField( "tcamCpuCmdDi", 3 ), 0u );
}

TEST( TcamBankTable, DataHasNoWayInByIdentifierOrName ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( view.fieldWidth( 325 ), 328 );
   EXPECT_EQ( view.fieldOffset( 325 ), 4 );
   EXPECT_TRUE( view.isFieldValid( 325 ) );
   EXPECT_EQ( expressionOf( [&] { view.setField64( 325, 0 ); } ), "false" );
   const auto failure = failureOf( [&] { view.stringFieldIs( "tcamCpuCmdDi", 0 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "false" );
   EXPECT_FALSE( failure->message );
}

TEST( TcamBankTable, BoundsFollowTheWidthsOfTheChip ) {
   const auto refused = []( Hardware::ChipType chipType, void ( View::*set )( U8 ), U8 value ) {
      View::WithStorage view( chipType, 0 );
      return expressionOf( [&] { ( view.*set )( value ); } );
   };
   for( const auto chipType : firstChips ) {
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 1 ), "none" );
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 2 ), "tcamCpuCmdWr <= 0x1" );
      View::WithStorage view( chipType, 0 );
      view.tcamCpuCmdReservedIs( 0x1ff );
      EXPECT_EQ( view.tcamCpuCmdReserved(), 0x1ff );
      EXPECT_EQ( expressionOf( [&] { view.tcamCpuCmdReservedIs( 0x200 ); } ),
                 "tcamCpuCmdReserved <= 0x1ff" );
   }
   for( const auto chipType : middleChips ) {
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 3 ), "none" );
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 4 ), "tcamCpuCmdWr <= 0x3" );
      View::WithStorage view( chipType, 0 );
      view.tcamCpuCmdReservedIs( 0x3ff );
      EXPECT_EQ( view.tcamCpuCmdReserved(), 0x3ff );
      EXPECT_EQ( expressionOf( [&] { view.tcamCpuCmdReservedIs( 0x400 ); } ),
                 "tcamCpuCmdReserved <= 0x3ff" );
   }
   for( const auto chipType : lateChips ) {
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 3 ), "none" );
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdWrIs, 4 ), "tcamCpuCmdWr <= 0x3" );
   }
   for( const auto chipType :
        { Hardware::BCM88650_B0, Hardware::BCM88375_A0, Hardware::BCM88690_B0 } ) {
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdRdIs, 2 ), "tcamCpuCmdRd <= 0x1" );
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdCmpIs, 2 ), "tcamCpuCmdCmp <= 0x1" );
      EXPECT_EQ( refused( chipType, &View::tcamCpuCmdValidIs, 4 ), "tcamCpuCmdValid <= 0x3" );
   }
}

TEST( TcamBankTable, ByNameTheValueIsCutBeforeTheBound ) {
   View::WithStorage view( Hardware::BCM88650_B0, 0 );
   view.stringFieldIs( "tcamCpuCmdRd", 0x101 );
   EXPECT_EQ( view.tcamCpuCmdRd(), 1 );
   EXPECT_EQ( view.buf()[0], 0x02 );
   EXPECT_EQ( expressionOf( [&] { view.stringFieldIs( "tcamCpuCmdRd", 0x102 ); } ),
              "tcamCpuCmdRd <= 0x1" );
}

TEST( TcamBankTable, ValidityOfTheValidField ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_TRUE( view.isTcamCpuCmdValidValid() );
   view.tcamCpuCmdValidIs( 3 );
   EXPECT_EQ( view.tcamCpuCmdValid(), 3 );
   EXPECT_EQ( view.tcamCpuCmdValidOffset(), 332 );
   EXPECT_EQ( view.buf()[41], 0x30 );
}

TEST( TcamBankTable, LengthTestsOfTheData ) {
   U8 buffer[42] = {};
   for( const auto chipType : { Hardware::BCM88650_B0, Hardware::BCM88375_A0 } ) {
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 20, false, 0 ).tcamCpuCmdDi(); } ),
                 "len_ >= 21" );
      EXPECT_EQ( expressionOf( [&] { View( chipType, buffer, 21, false, 0 ).tcamCpuCmdDi(); } ),
                 "none" );
   }
   EXPECT_EQ(
      expressionOf( [&] { View( Hardware::BCM88480_B0, buffer, 41, false, 0 ).tcamCpuCmdDi(); } ),
      "len_ >= 42" );
   EXPECT_EQ(
      expressionOf( [&] { View( Hardware::BCM88480_B0, buffer, 42, false, 0 ).tcamCpuCmdDi(); } ),
      "none" );
}

TEST( TcamBankTable, EntryOfSixWordsServesTheFieldsButNotTheWholeEntry ) {
   U8 buffer[24] = {};
   View view( Hardware::BCM88650_B0, buffer, 24, false, 0 );
   Raw512 value{};
   value.wordIs( 2, 0xfffffffff );
   view.tcamCpuCmdWrIs( 1 );
   view.tcamCpuCmdRdIs( 1 );
   view.tcamCpuCmdCmpIs( 1 );
   view.tcamCpuCmdDiIs( value );
   view.tcamCpuCmdValidIs( 2 );
   view.tcamCpuCmdReservedIs( 0x155 );
   EXPECT_EQ( view.tcamCpuCmdWr(), 1 );
   EXPECT_EQ( view.tcamCpuCmdRd(), 1 );
   EXPECT_EQ( view.tcamCpuCmdCmp(), 1 );
   EXPECT_EQ( view.tcamCpuCmdDi(), value );
   EXPECT_EQ( view.tcamCpuCmdValid(), 2 );
   EXPECT_EQ( view.tcamCpuCmdReserved(), 0x155 );
   EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 44" );
}

TEST( TcamBankTable, OwnsElevenWordsOnEveryChip ) {
   EXPECT_EQ( View::WithStorage( Hardware::BCM88650_B0, 0 ).len(), 44 );
   EXPECT_EQ( View::WithStorage( Hardware::BCM88680_A0, 0 ).len(), 44 );
   EXPECT_EQ( View::WithStorage( Hardware::BCM88690_B0, 0 ).len(), 44 );
   EXPECT_EQ( View::width( 2, 0 ), 6 );
   EXPECT_EQ( View::width( 10, 0 ), 11 );
}

TEST( TcamBankTable, AddressesOfItsBounds ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88650_B0, 0, 0, 26879 ),
              ( Address{ 0x18068ff, 0, 53 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88650_B0, 0, 0, 26880 ); } ),
              "tableEntry < 26880" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 0, 65535 ),
              ( Address{ 0x1a00ffff, 0, 63 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88470_A0, 0, 0, 32768 ); } ),
              "tableEntry < 32768" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 0, 5 ), ( Address{ 0x1000005, 4, 6 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88690_B0, 0, 1, 5 ), ( Address{ 0x1000005, 6, 6 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 0, 5 ), ( Address{ 0x1000005, 16, 36 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88850_A0, 0, 1, 5 ), ( Address{ 0x1000005, 18, 36 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88690_V6_B0, 0, 2, 0 ); } ),
              "identifier <= 1" );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88800_A0, 0, 1, 0 ); } ),
              "identifier <= 0" );
   EXPECT_TRUE( Testing::hasNoAddress<View>( Hardware::BCM88650_B0, 1 ) );
}

TEST( TcamBankTable, LiesInTheBlockOfItsActions ) {
   const auto expectOneBlock = []( Hardware::ChipType chipType, unsigned identifier ) {
      EXPECT_EQ( addressOf<View>( chipType, 0, identifier, 0 ).destBlock,
                 addressOf<Hardware::TcamActionTable>( chipType, 0, identifier, 0 ).destBlock )
         << chipType;
   };
   for( const auto chipType : firstChips ) {
      expectOneBlock( chipType, 0 );
   }
   for( const auto chipType : middleChips ) {
      expectOneBlock( chipType, 0 );
   }
   for( const auto chipType : lateChips ) {
      expectOneBlock( chipType, 0 );
   }
   for( const auto chipType :
        { Hardware::BCM88690_B0, Hardware::BCM88690_V6_B0, Hardware::BCM88850_A0 } ) {
      expectOneBlock( chipType, 1 );
   }
}

TEST( TcamBankTable, DoesNotKnowTheFieldOfItsActions ) {
   View::WithStorage view( Hardware::BCM88690_B0, 0 );
   EXPECT_FALSE( view.isFieldValid( 3 ) );
   EXPECT_FALSE( view.isFieldValid( 0 ) );
   EXPECT_FALSE( view.isFieldValid( 46 ) );
   EXPECT_EQ( expressionOf( [&] { view.fieldWidth( 3 ); } ), "false" );
}

} // namespace
