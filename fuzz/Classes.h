// The classes as the fuzzers take them: how to make a view, and the operations that its base class
// doesn't have.
#pragma once

#include "support/Bits.h"

#include <Hardware/ChipType.h>
#include <Kelvar/AsicBase.h>

#include <memory>
#include <vector>

namespace Fuzz {

using Testing::Bits;
using View = Kelvar::AsicBase;

// The typed accessors of one field, on views of its class.
struct Field {
   U32 identifier;
   const char* name;
   unsigned valueBits; // of the getter's type

   Bits ( *get )( const View& );
   void ( *set )( View&, const Bits& ); // null if read-only
   void ( *mask )( View& );             // null if read-only
   U16 ( *len )( const View& );
   U16 ( *offset )( const View& );
   bool ( *valid )( const View& );

   bool wide() const { return valueBits > 64; }
   bool readOnly() const { return set == nullptr; }
};

struct Class {
   const char* name;
   unsigned storageBytes;
   std::vector<Field> fields;

   std::unique_ptr<View> ( *make )( Hardware::ChipType, U8* buf, U16 len, bool existingEntry,
                                    U8 variant );
   // Sets the members of a view from `make` directly.
   void ( *pairIs )( View&, U8 chipType, U8 variant );
   Bits ( *getAllFields )( const View& );
   // The discriminator; null where the class has none.
   bool ( *holds )( Hardware::ChipType, const U8* buf, U16 len, U8 variant );
};

const std::vector<Class>& classes();

} // namespace Fuzz
