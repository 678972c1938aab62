// The 22 classes, each from its header and its list of fields.
#include "Classes.h"

#include <Hardware/FieldId.h>

namespace Fuzz {

namespace {

// A view whose members can be set behind its back.
template<class V>
struct Probe : V {
   using V::V;

   void pairIs( U8 chipType, U8 variant ) {
      this->chipType_ = chipType;
      this->variant_ = variant;
   }
};

template<class V>
Class classOfView( const char* name ) {
   Class result{ name, V::storageSize, {}, {}, {}, {}, {} };
   result.make = []( Hardware::ChipType chipType, U8* buf, U16 len, bool existingEntry,
                     U8 variant ) -> std::unique_ptr<View> {
      return std::make_unique<Probe<V>>( chipType, buf, len, existingEntry, variant );
   };
   result.pairIs = []( View& view, U8 chipType, U8 variant ) {
      static_cast<Probe<V>&>( view ).pairIs( chipType, variant );
   };
   result.getAllFields = []( const View& view ) {
      return Testing::toBits( static_cast<const V&>( view ).getAllFields() );
   };
   return result;
}

template<class V, auto getter>
Bits get( const View& view ) {
   return Testing::toBits( ( static_cast<const V&>( view ).*getter )() );
}

template<class V, class Value, auto setter>
void set( View& view, const Bits& value ) {
   ( static_cast<V&>( view ).*setter )( Testing::fromBits<Value>( value ) );
}

template<class V, auto masker>
void mask( View& view ) {
   ( static_cast<V&>( view ).*masker )();
}

template<class V, auto asked>
auto query( const View& view ) {
   return ( static_cast<const V&>( view ).*asked )();
}

} // namespace

} // namespace Fuzz

#define EACH_CLASS "Class.inc"
#include "registry/EachClass.inc"

namespace Fuzz {

const std::vector<Class>& classes() {
   static const std::vector<Class> classes = {
#define VIEW( name ) classOf( static_cast<Hardware::name*>( nullptr ) ),
#include "registry/Classes.def"
   };
   return classes;
}

} // namespace Fuzz
