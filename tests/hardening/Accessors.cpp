// The accessors of all classes.
#include "Accessors.h"

#include <Hardware/Tables.h>

#include <cstring>

namespace Testing {

namespace {

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

template<class Field>
FieldAccessors accessorsOf() {
   using View = typename Field::View;
   using Value = typename Field::Value;
   FieldAccessors accessors{ Field::identifier, Field::name.data(), sizeof( Value ), {}, {}, {} };
   accessors.get = []( const Kelvar::AsicBase& view, ValueImage& image ) {
      const Value value = Field::get( static_cast<const View&>( view ) );
      std::memcpy( image.data(), &value, sizeof value );
   };
   if constexpr( !Field::readOnly ) {
      accessors.set = []( Kelvar::AsicBase& view, const ValueImage& image ) {
         Value value;
         std::memcpy( &value, image.data(), sizeof value );
         Field::set( static_cast<View&>( view ), value );
      };
      accessors.mask = []( Kelvar::AsicBase& view ) { Field::mask( static_cast<View&>( view ) ); };
   }
   return accessors;
}

std::vector<ClassAccessors> accessorsOfClasses() {
   std::vector<ClassAccessors> classes;
   Hardware::forEachClass( [&]( auto each ) {
      using View = typename decltype( each )::View;
      ClassAccessors accessors{ each.name.data(), View::storageSize,   {},
                                makeProbe<View>,  probeBufferIs<View>, constructView<View>,
                                wholeEntry<View>, View::allFieldsMask };
      View::forEachField(
         [&]( auto field ) { accessors.fields.push_back( accessorsOf<decltype( field )>() ); } );
      classes.push_back( accessors );
   } );
   return classes;
}

} // namespace

const std::vector<ClassAccessors>& everyClass() {
   static const std::vector<ClassAccessors> classes = accessorsOfClasses();
   return classes;
}

} // namespace Testing
