// The contract of a table class as one generic walk, held against plain rows.
//
// A class's test states its rows in its own words and numbers:
//
//    Testing::Expectation expectation() {
//       using View = Hardware::TcamActionTable;
//       Testing::Expectation expected = Testing::tableUnderTest<View>( "TcamActionTable" );
//       expected.storageBytes = 8;
//       expected.fields = { NARROW_FIELD( U32, action, Action, 3, "ACTION" ) };
//       expected.layout = { { "2,3", "0", "action", 0, 20 }, ... };
//       expected.metadata = { { "2,3,6,7", "0", 1, 1024, 24, 1, 1, 1 }, ... };
//       expected.addresses = { { "2,3", "0", 0x1810000, 1, 1024, { { 0, 53 } } }, ... };
//       return expected;
//    }
//    CONTRACT_TESTS( TcamActionTable, expectation() )
//
// Chip types and variants are written as "10,12-16"; "any" is every variant of a chip type without
// variants.
#pragma once

#include "Assertions.h"
#include "Bits.h"

#include <Hardware/ChipType.h>
#include <Kelvar/BcmAsicBase.h>
#include <Oru/String.h>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace Testing {

// The accessors of one field, on a view of the class under test.
struct FieldUnderTest {
   std::string name;
   std::string capitalName;
   unsigned identifier;
   std::string hardwareName;
   std::string type; // as in signatures: "U8" to "U64", "Raw128" to "Raw512"
   unsigned typeBits;
   bool readOnly = false;

   std::function<Bits( const Kelvar::AsicBase& )> get;
   std::function<void( Kelvar::AsicBase&, const Bits& )> set; // none if read-only
   std::function<void( Kelvar::AsicBase& )> mask;             // none if read-only
   std::function<U16( const Kelvar::AsicBase& )> len;
   std::function<U16( const Kelvar::AsicBase& )> offset;
   std::function<bool( const Kelvar::AsicBase& )> valid;

   bool wide() const { return typeBits > 64; }
};

// One field's place on the pairs of a chip group and some variants.
struct LayoutRow {
   std::string chips;
   std::string variants;
   std::string field;
   unsigned offset;
   unsigned width;
};

// A layout table: columns are chip groups; a cell is "offset:width", or "-" for absent.
struct LayoutTable {
   std::string variants;
   std::vector<std::string> columns;
   struct Row {
      std::string field;
      std::vector<std::string> cells;
   };
   std::vector<Row> rows;
};

std::vector<LayoutRow> rowsOf( const std::vector<LayoutTable>& tables );

struct MetadataRow {
   std::string chips;
   std::string variants;
   unsigned width;
   unsigned entries;
   unsigned arrayElements;
   unsigned fieldCount;
   unsigned instanceCount;
   unsigned tableVariantCount; // of a register 0, which has none
};

struct InstanceRow {
   unsigned accessType;
   unsigned destBlock;
};

struct AddressRow {
   std::string chips;
   std::string variants;
   unsigned base;
   unsigned entryStep;
   unsigned arrayStep; // 0 where there is none
   std::vector<InstanceRow> instances;
};

struct TagFieldRow {
   std::string field;
   unsigned value;
};

// The tag fields of a pair, in the order in which they are stamped and verified.
struct TagRow {
   std::string chips;
   std::string variants;
   std::vector<TagFieldRow> fields;
};

// What a class must do, and the way to its operations.
struct Expectation {
   std::string name;
   bool isTable = true;
   bool registered = true; // false for the tests' own classes
   unsigned storageBytes = 0;
   std::vector<FieldUnderTest> fields; // in declared order
   std::vector<LayoutRow> layout;
   std::vector<MetadataRow> metadata;
   std::vector<AddressRow> addresses;
   std::vector<TagRow> tags;

   // Filled in by tableUnderTest and registerUnderTest.
   using Static = std::function<U32( U32, U8 )>;
   using Twin = std::function<U32( const Kelvar::AsicBase& )>;
   struct Metadata {
      std::string name;   // as in the signature of the static
      std::string result; // its result type
      Static ofPair;
      Twin ofView; // none where the static has no twin
   };
   std::vector<Metadata> statics;
   std::string entryType; // as in the signature of getAllFields
   unsigned entryBits = 0;
   std::size_t viewSize = 0;
   std::size_t storageViewSize = 0;
   std::function<std::unique_ptr<Kelvar::AsicBase>( Hardware::ChipType, U8*, U16, bool, U8 )> make;
   std::function<std::unique_ptr<Kelvar::AsicBase>( Hardware::ChipType, U8 )> makeWithStorage;
   // Of a view from `make`: sets its members.
   std::function<void( Kelvar::AsicBase&, U8*, U16 )> bufferIs;
   std::function<void( Kelvar::AsicBase&, U8, U8 )> pairIs;
   std::function<bool( Hardware::ChipType, U8 )> chipTypeVariantValid;
   std::function<Bits( const Kelvar::AsicBase& )> getAllFields;
   std::function<Raw4096( U32, U8 )> allFieldsMask;
   std::function<bool( U32, U8, U32&, U8&, U8&, U16, U32, U16 )> getSchanAddress;
   std::function<bool( const Kelvar::AsicBase& )> isPrimary;        // none in a register
   std::function<U32( const Kelvar::AsicBase& )> tableVariantCount; // the twin; none in a register
   unsigned maxIdentifier = 0;                                      // of a register
   unsigned addrStride = 1;                                         // of a register
   // Set by the test of a class that has one: `expected.discriminator = View::isLifTable`.
   std::function<bool( Hardware::ChipType, const U8*, U16, U8 )> discriminator;
};

// The parts of the walk, each over all pairs of the class.
void checkPairs( const Expectation& expected );
void checkDeclarations( const Expectation& expected );
void checkMetadata( const Expectation& expected );
void checkAccessors( const Expectation& expected );
void checkAbsentFields( const Expectation& expected );
void checkIdentifiersAndNames( const Expectation& expected );
void checkWholeEntry( const Expectation& expected );
void checkAddresses( const Expectation& expected );
void checkTags( const Expectation& expected );
void checkTraces( const Expectation& expected );

#define CONTRACT_TESTS( Class, expectation )                                                       \
   TEST( Class, HasItsPairsAlone ) { Testing::checkPairs( expectation ); }                         \
   TEST( Class, DeclaresItsFields ) { Testing::checkDeclarations( expectation ); }                 \
   TEST( Class, StatesItsMetadata ) { Testing::checkMetadata( expectation ); }                     \
   TEST( Class, AccessesItsFields ) { Testing::checkAccessors( expectation ); }                    \
   TEST( Class, RefusesAbsentFields ) { Testing::checkAbsentFields( expectation ); }               \
   TEST( Class, AnswersToItsIdentifiersAndNames ) {                                                \
      Testing::checkIdentifiersAndNames( expectation );                                            \
   }                                                                                               \
   TEST( Class, MasksWholeEntries ) { Testing::checkWholeEntry( expectation ); }                   \
   TEST( Class, ComputesAddresses ) { Testing::checkAddresses( expectation ); }                    \
   TEST( Class, StampsAndVerifiesTags ) { Testing::checkTags( expectation ); }                     \
   TEST( Class, TracesItsOperations ) { Testing::checkTraces( expectation ); }

// The type of a setter's argument, by the getter's type.
template<class Value>
using SetterArgument = std::conditional_t<( sizeof( Value ) <= 4 ), Value, const Value&>;

// A view whose members can be set behind its back: every operation reads them afresh.
template<class View>
struct Probe : View {
   using View::View;

   void bufferIs( U8* buf, U16 len ) {
      this->buf_ = buf;
      this->len_ = len;
   }
   void pairIs( U8 chipType, U8 variant ) {
      this->chipType_ = chipType;
      this->variant_ = variant;
   }
};

#define TESTING_READERS( Type, field, Field )                                                      \
   static_assert( std::is_same_v<decltype( &View::field ), Type ( View::* )() const> );            \
   static_assert( std::is_same_v<decltype( &View::field##Len ), U16 ( View::* )() const> );        \
   static_assert( std::is_same_v<decltype( &View::field##Offset ), U16 ( View::* )() const> );     \
   static_assert( std::is_same_v<decltype( &View::is##Field##Valid ), bool ( View::* )() const> ); \
   accessors.get = []( const Kelvar::AsicBase& view ) {                                            \
      return Testing::toBits( static_cast<const View&>( view ).field() );                          \
   };                                                                                              \
   accessors.len = []( const Kelvar::AsicBase& view ) {                                            \
      return static_cast<const View&>( view ).field##Len();                                        \
   };                                                                                              \
   accessors.offset = []( const Kelvar::AsicBase& view ) {                                         \
      return static_cast<const View&>( view ).field##Offset();                                     \
   };                                                                                              \
   accessors.valid = []( const Kelvar::AsicBase& view ) {                                          \
      return static_cast<const View&>( view ).is##Field##Valid();                                  \
   };

#define TESTING_FIELD( Type, field, Field, identifier, hardwareName )                              \
   [] {                                                                                            \
      Testing::FieldUnderTest accessors{                                                           \
         #field, #Field, identifier, hardwareName, #Type, 8 * sizeof( Type ), false, {},           \
         {},     {},     {},         {},           {}                                              \
      };                                                                                           \
      TESTING_READERS( Type, field, Field )                                                        \
      static_assert( std::is_same_v<decltype( &View::field##Is ),                                  \
                                    void ( View::* )( Testing::SetterArgument<Type> )> );          \
      static_assert( std::is_same_v<decltype( &View::field##Mask ), void ( View::* )()> );         \
      accessors.set = []( Kelvar::AsicBase& view, const Testing::Bits& bits ) {                    \
         static_cast<View&>( view ).field##Is( Testing::fromBits<Type>( bits ) );                  \
      };                                                                                           \
      accessors.mask = []( Kelvar::AsicBase& view ) { static_cast<View&>( view ).field##Mask(); }; \
      return accessors;                                                                            \
   }()

// A field of up to 64 bits; one of more; one without setter and mask.
#define NARROW_FIELD( Type, field, Field, identifier, hardwareName )                               \
   TESTING_FIELD( Type, field, Field, identifier, hardwareName )
#define WIDE_FIELD( Type, field, Field, identifier, hardwareName )                                 \
   TESTING_FIELD( Type, field, Field, identifier, hardwareName )
#define READ_ONLY_FIELD( Type, field, Field, identifier, hardwareName )                            \
   [] {                                                                                            \
      Testing::FieldUnderTest accessors{                                                           \
         #field, #Field, identifier, hardwareName, #Type, 8 * sizeof( Type ), true, {},            \
         {},     {},     {},         {},           {}                                              \
      };                                                                                           \
      TESTING_READERS( Type, field, Field )                                                        \
      static_assert( ![]<class V>( V* ) {                                                          \
         return requires( V v ) { v.field##Is( Type{} ); };                                        \
      }( static_cast<View*>( nullptr ) ) );                                                        \
      static_assert( ![]<class V>( V* ) {                                                          \
         return requires( V v ) { v.field##Mask(); };                                              \
      }( static_cast<View*>( nullptr ) ) );                                                        \
      return accessors;                                                                            \
   }()

// What tables and registers have in common.
template<class View>
Expectation viewUnderTest( const std::string& name ) {
   static_assert( sizeof( View ) == sizeof( Kelvar::AsicBase ) );
   static_assert( std::is_base_of_v<Kelvar::BcmAsicBase, View> );
   static_assert( std::is_base_of_v<View, typename View::WithStorage> );
   static_assert( sizeof( Probe<View> ) == sizeof( View ) );
   using Whole = decltype( std::declval<const View&>().getAllFields() );
   Expectation expected;
   expected.name = name;
   expected.entryBits = 8 * sizeof( Whole );
   expected.entryType =
      ( sizeof( Whole ) <= 8 ? "U" : "Raw" ) + std::to_string( expected.entryBits );
   expected.viewSize = sizeof( View );
   expected.storageViewSize = sizeof( typename View::WithStorage );
   expected.make = []( Hardware::ChipType chipType, U8* buf, U16 len, bool existingEntry,
                       U8 variant ) -> std::unique_ptr<Kelvar::AsicBase> {
      return std::make_unique<Probe<View>>( chipType, buf, len, existingEntry, variant );
   };
   expected.bufferIs = []( Kelvar::AsicBase& view, U8* buf, U16 len ) {
      static_cast<Probe<View>&>( view ).bufferIs( buf, len );
   };
   expected.pairIs = []( Kelvar::AsicBase& view, U8 chipType, U8 variant ) {
      static_cast<Probe<View>&>( view ).pairIs( chipType, variant );
   };
   expected.makeWithStorage = []( Hardware::ChipType chipType,
                                  U8 variant ) -> std::unique_ptr<Kelvar::AsicBase> {
      return std::make_unique<typename View::WithStorage>( chipType, variant );
   };
   expected.chipTypeVariantValid = View::chipTypeVariantValid;
   expected.getAllFields = []( const Kelvar::AsicBase& view ) {
      return toBits( static_cast<const View&>( view ).getAllFields() );
   };
   expected.allFieldsMask = []( U32 chipType, U8 variant ) {
      return View::allFieldsMask( chipType, variant );
   };
   expected.getSchanAddress = []( U32 chipType, U8 variant, U32& address, U8& accessType,
                                  U8& destBlock, U16 identifier, U32 tableEntry, U16 arrayIndex ) {
      return View::getSchanAddress( chipType, variant, address, accessType, destBlock, identifier,
                                    tableEntry, arrayIndex );
   };
   return expected;
}

#define TESTING_STATIC( result, operation )                                                        \
   expected.statics.push_back(                                                                     \
      { #operation, #result,                                                                       \
        []( U32 chipType, U8 variant ) -> U32 {                                                    \
           static_assert(                                                                          \
              std::is_same_v<decltype( View::operation( chipType, variant ) ), result> );          \
           return View::operation( chipType, variant );                                            \
        },                                                                                         \
        []( const Kelvar::AsicBase& view ) -> U32 {                                                \
           return static_cast<const View&>( view ).operation();                                    \
        } } )
#define TESTING_STATIC_ALONE( result, operation )                                                  \
   expected.statics.push_back(                                                                     \
      { #operation,                                                                                \
        #result,                                                                                   \
        []( U32 chipType, U8 variant ) -> U32 { return View::operation( chipType, variant ); },    \
        {} } )

template<class View>
Expectation tableUnderTest( const std::string& name ) {
   Expectation expected = viewUnderTest<View>( name );
   TESTING_STATIC( U16, width );
   TESTING_STATIC_ALONE( U16, tableWidth );
   TESTING_STATIC( U32, arrayIndex_min );
   TESTING_STATIC( U32, arrayElements );
   TESTING_STATIC( U32, index_min );
   TESTING_STATIC( U32, entries );
   TESTING_STATIC( U16, fieldCount );
   TESTING_STATIC( U16, instanceCount );
   expected.isPrimary = []( const Kelvar::AsicBase& view ) {
      return static_cast<const View&>( view ).isPrimary();
   };
   expected.tableVariantCount = []( const Kelvar::AsicBase& view ) {
      return static_cast<const View&>( view ).tableVariantCount();
   };
   return expected;
}

template<class View>
Expectation registerUnderTest( const std::string& name ) {
   Expectation expected = viewUnderTest<View>( name );
   expected.isTable = false;
   TESTING_STATIC( U16, width );
   TESTING_STATIC_ALONE( U16, regWidth );
   TESTING_STATIC( U32, arrayElements );
   TESTING_STATIC( U32, maxIdentifier );
   TESTING_STATIC( U32, addrStride );
   TESTING_STATIC( U16, fieldCount );
   TESTING_STATIC( U16, instanceCount );
   return expected;
}

#undef TESTING_STATIC
#undef TESTING_STATIC_ALONE

} // namespace Testing
