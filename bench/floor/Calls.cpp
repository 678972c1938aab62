// The floor over primitives that aren't inline: the same functions with the same checks, each of
// which calls its primitive. A library of its own, the baseline for rows over such a platform.
#include "Require.h"

#include <Kelvar/BitBuf.h>

#include <type_traits>

namespace Floor {
namespace {

template<unsigned offset, unsigned width, class Value>
[[gnu::always_inline]] inline Value read( const Image& image ) {
   require( image.length >= ( offset + width + 7 ) / 8, "length" );
   Value value{};
   getBuf( reinterpret_cast<const U8*>( image.words ), static_cast<int>( image.length ),
           reinterpret_cast<U8*>( &value ), static_cast<int>( sizeof( Value ) ), width, offset );
   return value;
}

template<unsigned offset, unsigned width, class Value>
[[gnu::always_inline]] inline void write( const Image& image, const Value& value ) {
   require( image.length >= ( offset + width + 7 ) / 8, "length" );
   if constexpr( std::is_integral_v<Value> && bounded( width ) ) {
      require( value <= ones( width ), "bound" );
   }
   setBuf( reinterpret_cast<U8*>( image.words ), static_cast<int>( image.length ),
           reinterpret_cast<const U8*>( &value ), static_cast<int>( sizeof( Value ) ), width,
           offset );
}

} // namespace

#define PAIR( View, chipType, variant ) namespace View##_##chipType##_##variant {
#define TAG( Type, name, offset, width )                                                           \
   Type name( const Image& image ) { return read<offset, width, Type>( image ); }
#define FIELD( Type, name, offset, width )                                                         \
   TAG( Type, name, offset, width )                                                                \
   void name##Is( const Image& image, Type value ) { write<offset, width>( image, value ); }
#define WIDE( Type, name, offset, width )                                                          \
   TAG( Type, name, offset, width )                                                                \
   void name##Is( const Image& image, const Type& value ) { write<offset, width>( image, value ); }
#define END_PAIR }
#include "Pairs.def"

} // namespace Floor
