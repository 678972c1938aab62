// The typed operations of all classes, from their headers.
#include "EveryClass.h"

#include "Probe.h"

#include <Hardware/Tables.h>

namespace Testing {

namespace {

using Base = Kelvar::AsicBase;

template<class Field>
FieldAccessors accessorsOf() {
   using View = typename Field::View;
   using Value = typename Field::Value;
   FieldAccessors accessors{
      Field::identifier, Field::name.data(), 8 * sizeof( Value ), {}, {}, {}, {}, {}, {}
   };
   accessors.get = []( const Base& view ) {
      return toBits( Field::get( static_cast<const View&>( view ) ) );
   };
   if constexpr( !Field::readOnly ) {
      accessors.set = []( Base& view, const Bits& value ) {
         Field::set( static_cast<View&>( view ), fromBits<Value>( value ) );
      };
      accessors.mask = []( Base& view ) { Field::mask( static_cast<View&>( view ) ); };
   }
   accessors.len = []( const Base& view ) {
      return Field::len( static_cast<const View&>( view ) );
   };
   accessors.offset = []( const Base& view ) {
      return Field::offset( static_cast<const View&>( view ) );
   };
   accessors.valid = []( const Base& view ) {
      return Field::valid( static_cast<const View&>( view ) );
   };
   return accessors;
}

template<class View>
ClassAccessors classOf( const char* name, decltype( ClassAccessors::holds ) holds ) {
   ClassAccessors accessors{
      name, View::storageSize, {}, {}, {}, {}, {}, View::allFieldsMask, holds
   };
   View::forEachField(
      [&]( auto field ) { accessors.fields.push_back( accessorsOf<decltype( field )>() ); } );
   accessors.make = []( Hardware::ChipType chipType, U8* buf, U16 len, bool existingEntry,
                        U8 variant ) -> std::unique_ptr<Base> {
      return std::make_unique<Probe<View>>( chipType, buf, len, existingEntry, variant );
   };
   accessors.bufferIs = []( Base& view, U8* buf, U16 len ) {
      static_cast<Probe<View>&>( view ).bufferIs( buf, len );
   };
   accessors.pairIs = []( Base& view, U8 chipType, U8 variant ) {
      static_cast<Probe<View>&>( view ).pairIs( chipType, variant );
   };
   accessors.getAllFields = []( const Base& view ) {
      return toBits( static_cast<const View&>( view ).getAllFields() );
   };
   return accessors;
}

// The discriminator of class X is X::isX.
#define DISCRIMINATOR( name )                                                                      \
   []<class View>( View* ) -> decltype( ClassAccessors::holds ) {                                  \
      if constexpr( requires { &View::is##name; } ) {                                              \
         return &View::is##name;                                                                   \
      } else {                                                                                     \
         return nullptr;                                                                           \
      }                                                                                            \
   }( static_cast<Hardware::name*>( nullptr ) )

} // namespace

std::unique_ptr<Base> ClassAccessors::viewOf( Hardware::ChipType chipType, U8 variant ) const {
   Image entry( storageBytes );
   auto view = make( chipType, entry.data(), storageBytes, false, variant );
   bufferIs( *view, nullptr, 0 );
   return view;
}

const std::vector<ClassAccessors>& everyClass() {
   static const std::vector<ClassAccessors> classes = {
#define HARDWARE_CLASS( name ) classOf<Hardware::name>( #name, DISCRIMINATOR( name ) ),
#include <Hardware/detail/Classes.def>
   };
   return classes;
}

} // namespace Testing
