// The contract of a table class as one generic walk, checked against plain rows.
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
#include "Literal.h"
#include "Probe.h"

#include <Hardware/ChipType.h>
#include <Kelvar/BcmAsicBase.h>
#include <Oru/String.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace Testing {

// The type of a setter's argument, by the getter's type.
template<class Value>
using SetterArgument = std::conditional_t<( sizeof( Value ) <= 4 ), Value, const Value&>;

// Accessors as operations of the base class: what a view's own can be cast to.
template<class Value>
using Getter = Value ( Kelvar::AsicBase::* )() const;
template<class Value>
using Setter = void ( Kelvar::AsicBase::* )( SetterArgument<Value> );

// One field and its accessors, on a view of the class under test.
struct FieldUnderTest {
   Literal name;
   Literal capitalName;
   unsigned identifier;
   Literal hardwareName;
   Literal type; // as in signatures: "U8" to "U64", "Raw128" to "Raw512"
   unsigned typeBits;
   bool readOnly;

   template<template<class> class Accessor>
   using OfAnyType = std::variant<Accessor<U8>, Accessor<U16>, Accessor<U32>, Accessor<U64>,
                                  Accessor<Raw128>, Accessor<Raw256>, Accessor<Raw512>>;
   OfAnyType<Getter> getter;
   Getter<U16> lenGetter;
   Getter<U16> offsetGetter;
   Getter<bool> validGetter;
   OfAnyType<Setter> setter;             // null if read-only
   void ( Kelvar::AsicBase::*masker )(); // null if read-only

   Bits get( const Kelvar::AsicBase& view ) const;
   void set( Kelvar::AsicBase& view, const Bits& bits ) const;
   void mask( Kelvar::AsicBase& view ) const { ( view.*masker )(); }
   U16 len( const Kelvar::AsicBase& view ) const { return ( view.*lenGetter )(); }
   U16 offset( const Kelvar::AsicBase& view ) const { return ( view.*offsetGetter )(); }
   bool valid( const Kelvar::AsicBase& view ) const { return ( view.*validGetter )(); }

   bool wide() const { return typeBits > 64; }
};

// One field's place on the pairs of a chip group and some variants.
struct LayoutRow {
   Literal chips;
   Literal variants;
   Literal field;
   unsigned offset;
   unsigned width;
};

// A layout table: columns are chip groups; a cell is "offset:width", or "-" for absent. After the
// last column and cell the arrays are empty.
struct LayoutTable {
   static constexpr std::size_t maxColumns = 8;

   Literal variants;
   Literal columns[maxColumns];
   struct Row {
      Literal field;
      Literal cells[maxColumns];
   };
   std::vector<Row> rows;
};

std::vector<LayoutRow> rowsOf( const std::vector<LayoutTable>& tables );

struct MetadataRow {
   Literal chips;
   Literal variants;
   unsigned width;
   unsigned entries;
   unsigned arrayElements;
   unsigned fieldCount;
   unsigned instanceCount;
   unsigned tableVariantCount; // of a register 0, which has none
};

struct InstanceRow {
   static constexpr unsigned none = ~0u;

   unsigned accessType = none;
   unsigned destBlock = none;

   constexpr bool empty() const { return accessType == none; }
};

struct AddressRow {
   Literal chips;
   Literal variants;
   unsigned base;
   unsigned entryStep;
   unsigned arrayStep; // 0 where there is none
   InstanceRow instances[8];
};

struct TagFieldRow {
   Literal field;
   unsigned value;

   constexpr bool empty() const { return field.empty(); }
};

// The tag fields of a pair, in the order in which they are stamped and verified.
struct TagRow {
   Literal chips;
   Literal variants;
   TagFieldRow fields[4];
};

// What a class must do, and how to call its operations.
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
   struct Metadata {
      Literal name;   // as in the signature of the static
      Literal result; // its result type
      U32 ( *ofPair )( U32, U8 );
      U32 ( *ofView )( const Kelvar::AsicBase& ); // null where the static has no twin
   };
   std::vector<Metadata> statics;
   std::string entryType; // as in the signature of getAllFields
   unsigned entryBits = 0;
   std::size_t viewSize = 0;
   std::size_t storageViewSize = 0;
   using View = std::unique_ptr<Kelvar::AsicBase>;
   View ( *make )( Hardware::ChipType, U8*, U16, bool, U8 ) = nullptr;
   View ( *makeWithStorage )( Hardware::ChipType, U8 ) = nullptr;
   // Of a view from `make`: sets its members.
   void ( *bufferIs )( Kelvar::AsicBase&, U8*, U16 ) = nullptr;
   void ( *pairIs )( Kelvar::AsicBase&, U8, U8 ) = nullptr;
   bool ( *chipTypeVariantValid )( Hardware::ChipType, U8 ) = nullptr;
   Bits ( *getAllFields )( const Kelvar::AsicBase& ) = nullptr;
   Raw4096 ( *allFieldsMask )( U32, U8 ) = nullptr;
   bool ( *getSchanAddress )( U32, U8, U32&, U8&, U8&, U16, U32, U16 ) = nullptr;
   bool ( *isPrimary )( const Kelvar::AsicBase& ) = nullptr;        // null in a register
   U32 ( *tableVariantCount )( const Kelvar::AsicBase& ) = nullptr; // the twin; null in a register
   unsigned maxIdentifier = 0;                                      // of a register
   unsigned addrStride = 1;                                         // of a register
   // Set by the test of a class that has one: `expected.discriminator = View::isLifTable`.
   bool ( *discriminator )( Hardware::ChipType, const U8*, U16, U8 ) = nullptr;
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
   const Testing::Expectation& expectationOf##Class() {                                            \
      static const Testing::Expectation expected = expectation;                                    \
      return expected;                                                                             \
   }                                                                                               \
   TEST( Class, HasItsPairsAlone ) { Testing::checkPairs( expectationOf##Class() ); }              \
   TEST( Class, DeclaresItsFields ) { Testing::checkDeclarations( expectationOf##Class() ); }      \
   TEST( Class, StatesItsMetadata ) { Testing::checkMetadata( expectationOf##Class() ); }          \
   TEST( Class, AccessesItsFields ) { Testing::checkAccessors( expectationOf##Class() ); }         \
   TEST( Class, RefusesAbsentFields ) { Testing::checkAbsentFields( expectationOf##Class() ); }    \
   TEST( Class, AnswersToItsIdentifiersAndNames ) {                                                \
      Testing::checkIdentifiersAndNames( expectationOf##Class() );                                 \
   }                                                                                               \
   TEST( Class, MasksWholeEntries ) { Testing::checkWholeEntry( expectationOf##Class() ); }        \
   TEST( Class, ComputesAddresses ) { Testing::checkAddresses( expectationOf##Class() ); }         \
   TEST( Class, StampsAndVerifiesTags ) { Testing::checkTags( expectationOf##Class() ); }          \
   TEST( Class, TracesItsOperations ) { Testing::checkTraces( expectationOf##Class() ); }

// A field from what its class declares, which must be of exactly these types.
template<class View, class Type, class Get, class Len, class Offset, class Valid>
FieldUnderTest readOnlyField( const char* name, const char* capitalName, unsigned identifier,
                              const char* hardwareName, const char* type, Get get, Len len,
                              Offset offset, Valid valid ) {
   static_assert( std::is_same_v<Get, Type ( View::* )() const> );
   static_assert( std::is_same_v<Len, U16 ( View::* )() const> );
   static_assert( std::is_same_v<Offset, U16 ( View::* )() const> );
   static_assert( std::is_same_v<Valid, bool ( View::* )() const> );
   return { name,
            capitalName,
            identifier,
            hardwareName,
            type,
            8 * sizeof( Type ),
            true,
            static_cast<Getter<Type>>( get ),
            static_cast<Getter<U16>>( len ),
            static_cast<Getter<U16>>( offset ),
            static_cast<Getter<bool>>( valid ),
            Setter<Type>(),
            nullptr };
}

template<class View, class Type, class Set, class Mask>
FieldUnderTest writableField( FieldUnderTest field, Set set, Mask mask ) {
   static_assert( std::is_same_v<Set, void ( View::* )( SetterArgument<Type> )> );
   static_assert( std::is_same_v<Mask, void ( View::* )()> );
   field.readOnly = false;
   field.setter = static_cast<Setter<Type>>( set );
   field.masker = static_cast<void ( Kelvar::AsicBase::* )()>( mask );
   return field;
}

#define TESTING_READ_ONLY_FIELD( Type, field, Field, identifier, hardwareName )                    \
   Testing::readOnlyField<View, Type>( #field, #Field, identifier, hardwareName, #Type,            \
                                       &View::field, &View::field##Len, &View::field##Offset,      \
                                       &View::is##Field##Valid )
#define TESTING_FIELD( Type, field, Field, identifier, hardwareName )                              \
   Testing::writableField<View, Type>(                                                             \
      TESTING_READ_ONLY_FIELD( Type, field, Field, identifier, hardwareName ), &View::field##Is,   \
      &View::field##Mask )

// A field of up to 64 bits; one of more; one without setter and mask.
#define NARROW_FIELD( Type, field, Field, identifier, hardwareName )                               \
   TESTING_FIELD( Type, field, Field, identifier, hardwareName )
#define WIDE_FIELD( Type, field, Field, identifier, hardwareName )                                 \
   TESTING_FIELD( Type, field, Field, identifier, hardwareName )
#define READ_ONLY_FIELD( Type, field, Field, identifier, hardwareName )                            \
   [] {                                                                                            \
      static_assert( ![]<class V>( V* ) {                                                          \
         return requires( V v ) { v.field##Is( Type{} ); };                                        \
      }( static_cast<View*>( nullptr ) ) );                                                        \
      static_assert( ![]<class V>( V* ) {                                                          \
         return requires( V v ) { v.field##Mask(); };                                              \
      }( static_cast<View*>( nullptr ) ) );                                                        \
      return TESTING_READ_ONLY_FIELD( Type, field, Field, identifier, hardwareName );              \
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
      { #operation, #result,                                                                       \
        []( U32 chipType, U8 variant ) -> U32 { return View::operation( chipType, variant ); },    \
        nullptr } )

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
