// Every pair of a class through At and through its view, all operations of both compared. What is
// instantiated for each pair is a switch over its fields; the comparison itself is Walk.cpp.
#pragma once

#include "support/Assertions.h"
#include "support/EveryClass.h"

#include <Hardware/ChipType.h>
#include <Kelvar/AsicBase.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Testing {

// What is done with a field: `valid`, `len` and `offset` yield a number, `get` the value.
enum class Op { valid, get, set, mask, len, offset };

// Numbers that both sides state without arguments.
using Facts = std::vector<U64>;

struct Address {
   U32 schanAddress = 0;
   U8 accessType = 0;
   U8 destBlock = 0;

   bool operator==( const Address& ) const = default;
};

// A pair through At. `act` returns false where the pair lacks the field.
struct WalkedPair {
   Hardware::ChipType chipType;
   unsigned variant;
   unsigned bytes;
   bool isOwn; // or the At of another pair of the format, whose expression an absent field fails
   bool ( *act )( U8* entry, std::size_t length, Op op, unsigned field, Bits& value );
   Facts ( *facts )();
   void ( *blank )( U8* storage );
   bool ( *holdsTag )( const U8* entry, std::size_t length );
   Bits ( *getAllFields )( U8* entry, std::size_t length );
   Raw4096 ( *allFieldsMask )();
   void ( *recompose )( const U8* from, U8* to, std::size_t length ); // compose( fields() )
   void ( *setField64 )( U8* entry, std::size_t length, U32 fieldId, U64 value );
   U16 ( *fieldWidth )( U32 fieldId );
   U16 ( *fieldOffset )( U32 fieldId );
   bool ( *isFieldValid )( U32 fieldId );
   bool ( *getSchanAddress )( Address& address, U16 identifier, U32 tableEntry, U16 arrayIndex );
};

// Compares all operations, and which pairs there are on the chip types from first to last.
void expectTheSame( const std::string& className, Facts ( *factsOfView )( const Kelvar::AsicBase& ),
                    const std::vector<WalkedPair>& pairs, unsigned first, unsigned last );

// Notes that a test walks these chip types of a class; true.
bool walkIs( const std::string& className, unsigned first, unsigned last );

template<class View>
Facts factsOf( const View& view ) {
   Facts facts{ view.width(),   view.arrayElements(), view.fieldCount(), view.instanceCount(),
                view.isTable(), view.chipType(),      view.variant() };
   if constexpr( requires { view.entries(), view.tableVariantCount(); } ) {
      facts.insert( facts.end(), { view.entries(), view.tableVariantCount(), view.arrayIndex_min(),
                                   view.index_min(), view.isPrimary() } );
   } else {
      facts.insert( facts.end(), { view.maxIdentifier(), view.addrStride() } );
   }
   return facts;
}

} // namespace Testing
