// The typed accessors of a class as run-time data, over a buffer of any length.
#pragma once

#include "support/Contract.h"

#include <Hardware/FieldId.h>

#include <array>
#include <cstring>
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

template<class View, class Value, auto get>
void getImage( const Kelvar::AsicBase& view, ValueImage& image ) {
   const Value value = ( static_cast<const View&>( view ).*get )();
   std::memcpy( image.data(), &value, sizeof value );
}

template<class View, class Value, auto set>
void setImage( Kelvar::AsicBase& view, const ValueImage& image ) {
   Value value;
   std::memcpy( &value, image.data(), sizeof value );
   ( static_cast<View&>( view ).*set )( value );
}

template<class View, auto mask>
void callMask( Kelvar::AsicBase& view ) {
   ( static_cast<View&>( view ).*mask )();
}

template<class View>
std::unique_ptr<Kelvar::AsicBase> makeProbe( Hardware::ChipType chipType, U8 variant ) {
   U8 entry[View::storageSize] = {};
   auto view = std::make_unique<Probe<View>>( chipType, entry, View::storageSize, false, variant );
   view->bufferIs( nullptr, 0 );
   return view;
}

template<class View>
void probeBufferIs( Kelvar::AsicBase& view, U8* buf, U16 len ) {
   static_cast<Probe<View>&>( view ).bufferIs( buf, len );
}

template<class View>
std::unique_ptr<Kelvar::AsicBase> constructView( Hardware::ChipType chipType, U8* buf, U16 len,
                                                 bool existingEntry, U8 variant ) {
   return std::make_unique<View>( chipType, buf, len, existingEntry, variant );
}

template<class View>
Bits wholeEntry( const Kelvar::AsicBase& view ) {
   return toBits( static_cast<const View&>( view ).getAllFields() );
}

// Defined for each class by Accessors.inc.
template<class View>
ClassAccessors accessorsOf();

// In registry order.
const std::vector<ClassAccessors>& everyClass();

} // namespace Testing
