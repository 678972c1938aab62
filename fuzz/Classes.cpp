// The 22 classes, from their headers.
#include "Classes.h"

#include <Hardware/Tables.h>

namespace Fuzz {

namespace {

// A view whose members can be set directly.
template<class V>
struct Probe : V {
   using V::V;

   void pairIs( U8 chipType, U8 variant ) {
      this->chipType_ = chipType;
      this->variant_ = variant;
   }
};

template<class F>
Field fieldOf() {
   using V = typename F::View;
   using Value = typename F::Value;
   Field field{ F::identifier, F::name.data(), 8 * sizeof( Value ), {}, {}, {}, {}, {}, {} };
   field.get = []( const View& view ) {
      return Testing::toBits( F::get( static_cast<const V&>( view ) ) );
   };
   if constexpr( !F::readOnly ) {
      field.set = []( View& view, const Bits& value ) {
         F::set( static_cast<V&>( view ), Testing::fromBits<Value>( value ) );
      };
      field.mask = []( View& view ) { F::mask( static_cast<V&>( view ) ); };
   }
   field.len = []( const View& view ) { return F::len( static_cast<const V&>( view ) ); };
   field.offset = []( const View& view ) { return F::offset( static_cast<const V&>( view ) ); };
   field.valid = []( const View& view ) { return F::valid( static_cast<const V&>( view ) ); };
   return field;
}

template<class V>
Class classOf( const char* name, decltype( Class::holds ) holds ) {
   Class result{ name, V::storageSize, {}, {}, {}, {}, holds };
   V::forEachField(
      [&]( auto field ) { result.fields.push_back( fieldOf<decltype( field )>() ); } );
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

// The discriminator of class X is X::isX.
#define DISCRIMINATOR( name )                                                                      \
   []<class V>( V* ) -> decltype( Class::holds ) {                                                 \
      if constexpr( requires { &V::is##name; } ) {                                                 \
         return &V::is##name;                                                                      \
      } else {                                                                                     \
         return nullptr;                                                                           \
      }                                                                                            \
   }( static_cast<Hardware::name*>( nullptr ) )

} // namespace

const std::vector<Class>& classes() {
   static const std::vector<Class> classes = {
#define HARDWARE_CLASS( name ) classOf<Hardware::name>( #name, DISCRIMINATOR( name ) ),
#include <Hardware/detail/Classes.def>
   };
   return classes;
}

} // namespace Fuzz
