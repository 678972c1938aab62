// The typed operations of all classes as run-time data, on views over a buffer of any length.
#pragma once

#include "Bits.h"

#include <Hardware/ChipType.h>
#include <Kelvar/AsicBase.h>

#include <memory>
#include <vector>

namespace Testing {

// Of one field, on views of its class.
struct FieldAccessors {
   U32 identifier;
   const char* name;
   unsigned valueBits; // of the getter's type
   Bits ( *get )( const Kelvar::AsicBase& );
   void ( *set )( Kelvar::AsicBase&, const Bits& ); // null if read-only
   void ( *mask )( Kelvar::AsicBase& );             // null if read-only
   U16 ( *len )( const Kelvar::AsicBase& );
   U16 ( *offset )( const Kelvar::AsicBase& );
   bool ( *valid )( const Kelvar::AsicBase& );

   bool wide() const { return valueBits > 64; }
   bool readOnly() const { return set == nullptr; }
};

struct ClassAccessors {
   const char* name;
   U16 storageBytes;
   std::vector<FieldAccessors> fields; // in declared order
   std::unique_ptr<Kelvar::AsicBase> ( *make )( Hardware::ChipType, U8* buf, U16 len,
                                                bool existingEntry, U8 variant );
   // Set the members of a view from `make` directly.
   void ( *bufferIs )( Kelvar::AsicBase&, U8* buf, U16 len );
   void ( *pairIs )( Kelvar::AsicBase&, U8 chipType, U8 variant );
   Bits ( *getAllFields )( const Kelvar::AsicBase& );
   Raw4096 ( *allFieldsMask )( U32 chipType, U8 variant );
   // The discriminator; null where the class has none.
   bool ( *holds )( Hardware::ChipType, const U8* buf, U16 len, U8 variant );

   // A view of a valid pair without a buffer.
   std::unique_ptr<Kelvar::AsicBase> viewOf( Hardware::ChipType chipType, U8 variant ) const;
};

// In registry order.
const std::vector<ClassAccessors>& everyClass();

} // namespace Testing
