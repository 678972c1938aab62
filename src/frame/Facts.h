// The facts of a class that its operations use at run time, and the sites at which they trace or
// fail.
#pragma once

#include "Cell.h"

#include <bit>
#include <cstddef>

namespace Hardware::Frame {

// Types of values and whole entries, smallest first; their sizes in bits are 8 << number.
enum class ValueType : U8 { u8, u16, u32, u64, raw128, raw256, raw512, raw1024 };

template<class Value>
inline constexpr ValueType
   valueTypeOf = static_cast<ValueType>( std::countr_zero( sizeof( Value ) ) );

constexpr unsigned bitsOf( ValueType type ) { return 8u << static_cast<unsigned>( type ); }

// The format of an invalid pair.
inline constexpr unsigned noFormat = 63;

// What the operations need of a pair besides its format. Number 0 is that of all invalid pairs.
struct PairFacts {
   U8 format = noFormat;
   bool hasAddress = false;
   U8 variantCount = 0; // 0 if the variant is ignored
   U8 tagCount = 0;
   U16 width = 0;
   U16 instanceCount = 0;
   U16 fieldCount = 0;
   U32 entries = 0;
   U32 arrayElements = 0;
   U32 base = 0;
   U32 entryStep = 0;
   U32 arrayStep = 0;
   U32 maxIdentifier = 0;
   U32 addrStride = 0;
   U8 accessType[instanceLimit] = {};
   U8 destBlock[instanceLimit] = {};
   TagField tag[tagFieldLimit] = {};

   // Branches that no test takes: the compiler alone compares facts.
   friend constexpr bool operator==( const PairFacts&, const PairFacts& ) = default;
};

// The operations of a class that trace or fail: first those of one field, then the others.
enum class Operation : U8 {
   get,
   set,
   mask,
   len,
   offset,
   valid,
   construct,
   handleBuf,
   discriminate,
   setField64,
   fieldWidth,
   fieldOffset,
   isFieldValid,
   stringField,
   stringFieldIs,
   getAllFields,
   allFieldsMask,
   getSchanAddress,
   width,
   arrayElements,
   fieldCount,
   instanceCount,
   arrayIndexMin,
   indexMin,
   entries,
   tableVariantCount,
   maxIdentifier,
   addrStride,
};

// Where something is traced or fails: the operation, its field if it has one, and the line of its
// declaration. Fits into a register.
struct Site {
   Operation operation;
   U8 field;
   U16 line;
};

constexpr Site siteOf( Operation operation, int line, U8 field = noField ) {
   return { operation, field, static_cast<U16>( line ) };
}

} // namespace Hardware::Frame
