// FheiIveSizeReg: the one register, and where it differs from a table.
#include "support/Contract.h"

#include <Hardware/FheiIveSizeReg.h>
#include <Hardware/TcamActionTable.h>

namespace {

using View = Hardware::FheiIveSizeReg;

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

} // namespace
