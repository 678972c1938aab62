// The typed accessors of a class as run-time data, over a buffer of any length.
#pragma once

#include "support/Contract.h"

#include <array>
#include <memory>
#include <vector>

namespace Testing {

// The image of any field's value.
using ValueImage = std::array<U8, 64>;

struct FieldAccessors {
   U32 identifier;
   const char* name;
   unsigned valueBytes;
   void ( *get )( const Kelvar::AsicBase& view, ValueImage& value );
   void ( *set )( Kelvar::AsicBase& view, const ValueImage& value ); // null if read-only
   void ( *mask )( Kelvar::AsicBase& view );                         // null if read-only
};

struct ClassAccessors {
   const char* name;
   U16 storageSize;
   std::vector<FieldAccessors> fields;
   // A view of the pair; its buffer is only there for the tag.
   std::unique_ptr<Kelvar::AsicBase> ( *make )( Hardware::ChipType chipType, U8 variant );
   void ( *bufferIs )( Kelvar::AsicBase& view, U8* buf, U16 len );
   std::unique_ptr<Kelvar::AsicBase> ( *construct )( Hardware::ChipType chipType, U8* buf, U16 len,
                                                     bool existingEntry, U8 variant );
   Bits ( *getAllFields )( const Kelvar::AsicBase& view );
   Raw4096 ( *allFieldsMask )( U32 chipType, U8 variant );
};

// In registry order.
const std::vector<ClassAccessors>& everyClass();

} // namespace Testing
