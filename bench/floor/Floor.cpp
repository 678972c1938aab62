// The floor's functions over 64-bit words: every offset, width and bound is a constant.
#include "Require.h"

namespace Floor {
namespace {

// Where a field lies in the entry's words.
template<unsigned offset, unsigned width>
struct Place {
   static constexpr unsigned bytes = ( offset + width + 7 ) / 8;
   static constexpr unsigned first = offset / 64;
   static constexpr unsigned last = ( offset + width - 1 ) / 64;
   static constexpr unsigned shift = offset % 64;
};

template<unsigned offset, unsigned width>
[[gnu::always_inline]] inline U64 read( const Image& image ) {
   using At = Place<offset, width>;
   require( image.length >= At::bytes, "length" );
   U64 bits = image.words[At::first] >> At::shift;
   if constexpr( At::first != At::last ) {
      bits |= image.words[At::last] << ( 64 - At::shift );
   }
   return bits & ones( width );
}

template<unsigned offset, unsigned width>
[[gnu::always_inline]] inline void write( const Image& image, U64 value ) {
   using At = Place<offset, width>;
   require( image.length >= At::bytes, "length" );
   if constexpr( bounded( width ) ) {
      require( value <= ones( width ), "bound" );
   }
   value &= ones( width );
   U64* const words = image.words;
   U64& low = words[At::first];
   low = ( low & ~( ones( width ) << At::shift ) ) | value << At::shift;
   if constexpr( At::first != At::last ) {
      // Keeps the compiler from making one vector of both words: its load would have to wait for
      // earlier stores of single words.
      __asm__( "" : "+m"( low ) );
      U64& high = words[At::last];
      high = ( high & ~( ones( width ) >> ( 64 - At::shift ) ) ) | value >> ( 64 - At::shift );
   }
}

// Wide fields: shift and merge, word by word.

template<unsigned offset, unsigned width, class Value>
[[gnu::always_inline]] inline Value readWide( const Image& image ) {
   using At = Place<offset, width>;
   require( image.length >= At::bytes, "length" );
   Value value{};
   for( unsigned word = 0; 64 * word < width; ++word ) {
      U64 bits = image.words[At::first + word] >> At::shift;
      if( At::shift != 0 && At::first + word < At::last ) {
         bits |= image.words[At::first + word + 1] << ( 64 - At::shift ) % 64;
      }
      const unsigned left = width - 64 * word;
      value.words[word] = left >= 64 ? bits : bits & ones( left );
   }
   return value;
}

template<unsigned offset, unsigned width, class Value>
[[gnu::always_inline]] inline void writeWide( const Image& image, const Value& value ) {
   using At = Place<offset, width>;
   require( image.length >= At::bytes, "length" );
   for( unsigned word = At::first; word <= At::last; ++word ) {
      // The bits of the field that this word holds.
      const unsigned begin = word == At::first ? At::shift : 0;
      const unsigned end = word == At::last ? ( offset + width - 1 ) % 64 + 1 : 64;
      const U64 mask = ones( end - begin ) << begin;
      const unsigned number = word - At::first;
      U64 bits = 64 * number < width ? value.words[number] << At::shift : 0;
      if( At::shift != 0 && number > 0 ) {
         bits |= value.words[number - 1] >> ( 64 - At::shift ) % 64;
      }
      U64& to = image.words[word];
      to = ( to & ~mask ) | ( bits & mask );
   }
}

} // namespace

#define PAIR( View, chipType, variant ) namespace View##_##chipType##_##variant {
#define TAG( Type, name, offset, width )                                                           \
   Type name( const Image& image ) { return static_cast<Type>( read<offset, width>( image ) ); }
#define FIELD( Type, name, offset, width )                                                         \
   TAG( Type, name, offset, width )                                                                \
   void name##Is( const Image& image, Type value ) { write<offset, width>( image, value ); }
#define WIDE( Type, name, offset, width )                                                          \
   Type name( const Image& image ) { return readWide<offset, width, Type>( image ); }              \
   void name##Is( const Image& image, const Type& value ) {                                        \
      writeWide<offset, width>( image, value );                                                    \
   }
#define END_PAIR }
#include "Pairs.def"

namespace LifTable_10_0 {

void stampTag( const Image& image ) { write<174, 6>( image, 58 ); }

bool hasTag( const U8* buf, U16 len ) {
   return len >= 23 && ( buf[21] >> 6 | ( buf[22] & 0xf ) << 2 ) == 58;
}

Raw1024 allFields( const Image& image ) {
   require( image.length >= 80, "length" );
   Raw1024 entry{};
   entry.words[0] = image.words[0];
   entry.words[1] = image.words[1];
   entry.words[2] = image.words[2] & ones( 52 );
   return entry;
}

bool address( U32& schanAddress, U8& accessType, U8& destBlock, U16 identifier, U32 tableEntry,
              U16 arrayIndex ) {
   require( tableEntry < 4294967295, "tableEntry" );
   require( arrayIndex == 0, "arrayIndex" );
   schanAddress = tableEntry;
   require( identifier == 0, "identifier" );
   destBlock = 1;
   accessType = 10;
   return true;
}

} // namespace LifTable_10_0
} // namespace Floor
