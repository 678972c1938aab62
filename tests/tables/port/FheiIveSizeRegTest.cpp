// FheiIveSizeReg: the one register, and where it differs from a table.
#include "support/Addresses.h"
#include "support/Contract.h"

#include <Hardware/FheiIveSizeReg.h>
#include <Hardware/Registry.h>
#include <Hardware/TcamActionTable.h>

#include <algorithm>

namespace {

using View = Hardware::FheiIveSizeReg;
using Testing::Address;
using Testing::addressOf;
using Testing::expressionOf;
using Testing::failureOf;
using Testing::hasNoAddress;

constexpr Hardware::ChipType chips[] = { Hardware::BCM88650_B0, Hardware::BCM88660_A0,
                                         Hardware::BCM88375_A0, Hardware::BCM88375_B0,
                                         Hardware::BCM88470_A0, Hardware::BCM88470_B0,
                                         Hardware::BCM88680_A0 };

Testing::Expectation expectation() {
   Testing::Expectation expected = Testing::registerUnderTest<View>( "FheiIveSizeReg" );
   expected.storageBytes = 16;
   expected.fields = {
      WIDE_FIELD( Raw128, pphFheiIveSize, PphFheiIveSize, 284, "PPH_FHEI_IVE_SIZE" ),
   };
   // clang-format off
   expected.layout = Testing::rowsOf( {
      { "0", { "2-8" }, {
         { "pphFheiIveSize", { "0:128" } },
      } },
   } );
   // chips, variants, width, entries, arrayElements, fieldCount, instanceCount, tableVariantCount
   expected.metadata = {
      { "2,3,6,7", "0", 4, 1, 1, 1, 1, 0 },
      { "4,5,8",   "0", 4, 1, 1, 1, 2, 0 },
   };
   expected.maxIdentifier = 0;
   expected.addrStride = 1;
   // chips, variants, base, entry step, array step, { accessType, destBlock } by identifier
   expected.addresses = {
      { "2,3", "0", 0x1ea, 0, 0, { { 0, 53 } } },
      { "4,5", "0", 0x1e8, 0, 0, { { 0, 60 }, { 0, 61 } } },
      { "6,7", "0", 0x1eb, 0, 0, { { 0, 60 } } },
      { "8",   "0", 0x1eb, 0, 0, { { 0, 64 }, { 0, 65 } } },
   };
   // clang-format on
   return expected;
}

CONTRACT_TESTS( FheiIveSizeReg, expectation() )

// What a table has and the register lacks, and the reverse. Each is asked of a table too, so that
// a misspelt question can't pass for an absent operation.
using Table = Hardware::TcamActionTable;

template<class V>
constexpr bool hasIsPrimary = requires( const V& view ) {
   view.isPrimary();
};
static_assert( hasIsPrimary<Table> && !hasIsPrimary<View> );

template<class V>
constexpr bool hasStaticEntries = requires {
   V::entries( U32{}, U8{} );
};
static_assert( hasStaticEntries<Table> && !hasStaticEntries<View> );

template<class V>
constexpr bool hasStaticMaxIdentifier = requires {
   V::maxIdentifier( U32{}, U8{} );
};
static_assert( !hasStaticMaxIdentifier<Table> && hasStaticMaxIdentifier<View> );

template<class V>
constexpr bool hasTableWidth = requires {
   V::tableWidth( U32{}, U8{} );
};
static_assert( hasTableWidth<Table> && !hasTableWidth<View> );

template<class V>
constexpr bool hasRegWidth = requires {
   V::regWidth( U32{}, U8{} );
};
static_assert( !hasRegWidth<Table> && hasRegWidth<View> );

template<class V>
constexpr bool hasStaticAddrStride = requires {
   V::addrStride( U32{}, U8{} );
};
static_assert( !hasStaticAddrStride<Table> && hasStaticAddrStride<View> );

template<class V>
constexpr bool hasAddrStrideTwin = requires( const V& view ) {
   view.addrStride();
};
static_assert( !hasAddrStrideTwin<Table> && hasAddrStrideTwin<View> );

template<class V>
constexpr bool hasArrayIndexMin = requires {
   V::arrayIndex_min( U32{}, U8{} );
};
static_assert( hasArrayIndexMin<Table> && !hasArrayIndexMin<View> );

template<class V>
constexpr bool hasArrayIndexMinTwin = requires( const V& view ) {
   view.arrayIndex_min();
};
static_assert( hasArrayIndexMinTwin<Table> && !hasArrayIndexMinTwin<View> );

template<class V>
constexpr bool hasIndexMin = requires {
   V::index_min( U32{}, U8{} );
};
static_assert( hasIndexMin<Table> && !hasIndexMin<View> );

template<class V>
constexpr bool hasIndexMinTwin = requires( const V& view ) {
   view.index_min();
};
static_assert( hasIndexMinTwin<Table> && !hasIndexMinTwin<View> );

template<class V>
constexpr bool hasTableVariantCountTwin = requires( const V& view ) {
   view.tableVariantCount();
};
static_assert( hasTableVariantCountTwin<Table> && !hasTableVariantCountTwin<View> );

// What both have.
template<class V>
constexpr bool hasTheCommonOperations = requires( const V& view ) {
   V::width( U32{}, U8{} );
   V::arrayElements( U32{}, U8{} );
   V::fieldCount( U32{}, U8{} );
   V::instanceCount( U32{}, U8{} );
   view.width();
   view.arrayElements();
   view.fieldCount();
   view.instanceCount();
   view.entries();
   view.maxIdentifier();
   view.tableVariantCount( U32{}, U8{} );
   view.isTable();
};
static_assert( hasTheCommonOperations<Table> && hasTheCommonOperations<View> );

// An operation that keeps the asserting body of the base class.
void expectDefault( const std::function<void()>& action, const std::string& expression,
                    const std::string& function ) {
   const auto failure = failureOf( action );
   ASSERT_TRUE( failure ) << function;
   EXPECT_EQ( failure->expression, expression );
   EXPECT_EQ( failure->file, "AsicBase.h" );
   EXPECT_NE( failure->line, 0u );
   EXPECT_EQ( failure->function, function );
   EXPECT_FALSE( failure->message );
}

TEST( FheiIveSizeReg, IsNoTable ) {
   EXPECT_FALSE( View::WithStorage( Hardware::BCM88650_B0, 0 ).isTable() );
   EXPECT_TRUE( Table::WithStorage( Hardware::BCM88650_B0, 0 ).isTable() );
   const auto view = Hardware::stringObj( "FheiIveSizeReg", Hardware::BCM88650_B0, 0 );
   EXPECT_FALSE( view->isTable() );
}

TEST( FheiIveSizeReg, HasNoEntries ) {
   for( const auto chip : chips ) {
      const View::WithStorage view( chip, 0 );
      expectDefault( [&] { view.entries(); }, "false && \"entries invalid for this class\"",
                     "virtual U32 Kelvar::AsicBase::entries() const" );
   }
}

TEST( FheiIveSizeReg, StatesALargestIdentifierWhereATableRefuses ) {
   for( const auto chip : chips ) {
      const View::WithStorage view( chip, 0 );
      EXPECT_EQ( view.maxIdentifier(), 0u );
      EXPECT_EQ( View::maxIdentifier( chip, 0 ), 0u );
      const Kelvar::AsicBase& base = view;
      EXPECT_EQ( base.maxIdentifier(), 0u );
   }
   const Table::WithStorage table( Hardware::BCM88650_B0, 0 );
   expectDefault( [&] { table.maxIdentifier(); },
                  "false && \"maxIdentifier invalid for this class\"",
                  "virtual U32 Kelvar::AsicBase::maxIdentifier() const" );
}

TEST( FheiIveSizeReg, CountsNoVariants ) {
   for( const auto chip : chips ) {
      const View::WithStorage view( chip, 0 );
      for( const U32 chipType : { 2u, 10u, 255u } ) {
         expectDefault( [&] { view.tableVariantCount( chipType, 0 ); }, "false",
                        "virtual U32 Kelvar::AsicBase::tableVariantCount(U32, U8) const" );
      }
   }
}

TEST( FheiIveSizeReg, StatesItsMetadataOnEachChip ) {
   struct Row {
      Hardware::ChipType chip;
      unsigned instanceCount;
   };
   for( const Row& row : { Row{ Hardware::BCM88650_B0, 1 }, Row{ Hardware::BCM88660_A0, 1 },
                           Row{ Hardware::BCM88375_A0, 2 }, Row{ Hardware::BCM88375_B0, 2 },
                           Row{ Hardware::BCM88470_A0, 1 }, Row{ Hardware::BCM88470_B0, 1 },
                           Row{ Hardware::BCM88680_A0, 2 } } ) {
      const View::WithStorage view( row.chip, 0 );
      EXPECT_EQ( view.instanceCount(), row.instanceCount );
      EXPECT_EQ( view.width(), 4 );
      EXPECT_EQ( View::regWidth( row.chip, 0 ), 4 );
      EXPECT_EQ( view.arrayElements(), 1u );
      EXPECT_EQ( view.addrStride(), 1u );
      EXPECT_EQ( View::addrStride( row.chip, 0 ), 1u );
      EXPECT_EQ( view.fieldCount(), 1 );
   }
}

TEST( FheiIveSizeReg, SecondInstanceHasAnAddressThoughTheLargestIdentifierIsZero ) {
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 0, 0 ), ( Address{ 0x1e8, 0, 60 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88375_A0, 0, 1, 0 ), ( Address{ 0x1e8, 0, 61 } ) );
   EXPECT_EQ( View::maxIdentifier( Hardware::BCM88375_A0, 0 ), 0u );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88375_A0, 0, 2, 0 ); } ),
              "identifier < 2" );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88680_A0, 0, 1, 0 ), ( Address{ 0x1eb, 0, 65 } ) );
   EXPECT_EQ( addressOf<View>( Hardware::BCM88470_B0, 0, 0, 0 ), ( Address{ 0x1eb, 0, 60 } ) );
   EXPECT_EQ( expressionOf( [] { addressOf<View>( Hardware::BCM88650_B0, 0, 1, 0 ); } ),
              "identifier < 1" );
}

TEST( FheiIveSizeReg, TestsTheIndicesInOrderAndWritesTheAddressBeforeTheLast ) {
   U32 address = 7;
   U8 accessType = 8;
   U8 destBlock = 9;
   const auto ask = [&]( U16 identifier, U32 tableEntry, U16 arrayIndex ) {
      return expressionOf( [&, identifier, tableEntry, arrayIndex] {
         View::getSchanAddress( 2, 0, address, accessType, destBlock, identifier, tableEntry,
                                arrayIndex );
      } );
   };
   EXPECT_EQ( ask( 1, 1, 1 ), "tableEntry == 0" );
   EXPECT_EQ( ask( 1, 0, 1 ), "arrayIndex < 1" );
   EXPECT_EQ( address, 7u );
   EXPECT_EQ( ask( 1, 0, 0 ), "identifier < 1" );
   EXPECT_EQ( address, 0x1eau );
   EXPECT_EQ( accessType, 8 );
   EXPECT_EQ( destBlock, 9 );
   EXPECT_EQ( ask( 0, 0, 0 ), "none" );
   EXPECT_EQ( accessType, 0 );
   EXPECT_EQ( destBlock, 53 );
}

TEST( FheiIveSizeReg, HasNoAddressOnOtherPairs ) {
   EXPECT_TRUE( hasNoAddress<View>( Hardware::BCM88650_B0, 1 ) );
   for( const unsigned chipType : { 0u, 1u, 9u, 10u, 12u, 16u, 21u } ) {
      EXPECT_TRUE( hasNoAddress<View>( static_cast<Hardware::ChipType>( chipType ), 0 ) );
   }
}

TEST( FheiIveSizeReg, IsWrittenAsOneValueAndReadByNameAsTwoWords ) {
   for( const auto chip : chips ) {
      View::WithStorage view( chip, 0 );
      const Raw128 value{ { 0x0123456789abcdef, 0xfedcba9876543210 } };
      view.pphFheiIveSizeIs( value );
      EXPECT_EQ( view.pphFheiIveSize(), value );
      EXPECT_EQ( view.getAllFields(), value );
      EXPECT_EQ( view.stringField( "pphFheiIveSize", 0 ), 0x0123456789abcdefu );
      EXPECT_EQ( view.stringField( "pphFheiIveSize", 1 ), 0xfedcba9876543210u );
      EXPECT_EQ( view.buf()[0], 0xef );
      EXPECT_EQ( view.buf()[15], 0xfe );
      view.pphFheiIveSizeMask();
      EXPECT_EQ( view.pphFheiIveSize(), ( Raw128{ { ~U64{ 0 }, ~U64{ 0 } } } ) );
   }
}

TEST( FheiIveSizeReg, HasNoFieldForANarrowSetter ) {
   View::WithStorage view( Hardware::BCM88680_A0, 0 );
   for( U32 identifier = 0; identifier <= 400; ++identifier ) {
      EXPECT_EQ( expressionOf( [&] { view.setField64( identifier, 0 ); } ), "false" ) << identifier;
   }
   const auto wide = failureOf( [&] { view.stringFieldIs( "pphFheiIveSize", 1 ); } );
   ASSERT_TRUE( wide );
   EXPECT_EQ( wide->expression, "false" );
   EXPECT_FALSE( wide->message );
   const auto unknown = failureOf( [&] { view.stringFieldIs( "pphFheiIveSiz", 1 ); } );
   ASSERT_TRUE( unknown );
   EXPECT_EQ( unknown->expression, "\"false\" == nullptr" );
   EXPECT_EQ( unknown->message, "fieldName not found or is const." );
   EXPECT_EQ( view.pphFheiIveSize(), Raw128{} );
}

TEST( FheiIveSizeReg, AnswersToOneIdentifierAlone ) {
   const View::WithStorage view( Hardware::BCM88470_A0, 0 );
   EXPECT_TRUE( view.isFieldValid( 284 ) );
   EXPECT_EQ( view.fieldWidth( 284 ), 128 );
   EXPECT_EQ( view.fieldOffset( 284 ), 0 );
   EXPECT_FALSE( view.isFieldValid( 283 ) );
   EXPECT_EQ( expressionOf( [&] { view.fieldWidth( 285 ); } ), "false" );
}

TEST( FheiIveSizeReg, NeedsAllSixteenBytes ) {
   U8 buffer[16] = {};
   View view( Hardware::BCM88650_B0, buffer, 15, false, 0 );
   EXPECT_EQ( expressionOf( [&] { view.pphFheiIveSize(); } ), "len_ >= 16" );
   EXPECT_EQ( expressionOf( [&] { view.pphFheiIveSizeIs( Raw128{} ); } ), "len_ >= 16" );
   EXPECT_EQ( expressionOf( [&] { view.pphFheiIveSizeMask(); } ), "len_ >= 16" );
   EXPECT_EQ( expressionOf( [&] { view.getAllFields(); } ), "len_ >= 16" );
   EXPECT_EQ( view.pphFheiIveSizeLen(), 128 );
   EXPECT_EQ( view.pphFheiIveSizeOffset(), 0 );
}

TEST( FheiIveSizeReg, RefusesAVariantAndAChipOfItsMembers ) {
   U8 buffer[16] = {};
   Testing::Probe<View> view( Hardware::BCM88650_B0, buffer, U16{ 16 }, false, U8{ 0 } );
   view.pairIs( 2, 1 );
   EXPECT_EQ( expressionOf( [&] { view.pphFheiIveSize(); } ), "variant_ == 0" );
   EXPECT_EQ( expressionOf( [&] { View::regWidth( 2, 1 ); } ), "variant == 0" );
   view.pairIs( 10, 0 );
   EXPECT_EQ( expressionOf( [&] { view.pphFheiIveSize(); } ), "0" );
   const auto failure = failureOf( [&] { view.pphFheiIveSizeLen(); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "BCM88690_B0 does not have field PPH_FHEI_IVE_SIZE" );
}

} // namespace
