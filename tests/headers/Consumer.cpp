// What consumers do with the headers, for the compiler to warn about: buffers smaller than a word
// of the entry's grid and of any other size, lengths that only the run knows, every way to a field.
#include <Hardware/Registry.h>
#include <Hardware/Tables.h>
#include <Kelvar/BitBuf.h>

template<unsigned bytes, int width, int offset, class Value>
void primitives( int length, const U8* fill ) {
   U8 buffer[bytes];
   std::memcpy( buffer, fill, bytes );
   Value value{};
   auto* const image = reinterpret_cast<U8*>( &value );
   getBuf( buffer, length, image, sizeof value, width, offset );
   setBuf( buffer, length, image, sizeof value, width, offset );
   U8 copy[bytes];
   getBuf( buffer, sizeof buffer, image, sizeof value, width, offset );
   std::memcpy( copy, buffer, bytes );
   setBuf( copy, sizeof copy, image, sizeof value, width, offset );
   U32 words[( bytes + 3 ) / 4] = {};
   maskBuf( words, ( bytes + 3 ) / 4, words, ( bytes + 3 ) / 4, words, ( bytes + 3 ) / 4 );
}

// Of each kind of place: within a byte, over two words, up to the end, many words.
void primitivesOfEachSize( int length, const U8* fill ) {
   primitives<1, 3, 2, U8>( length, fill );
   primitives<2, 9, 5, U16>( length, fill );
   primitives<3, 12, 4, U32>( length, fill );
   primitives<3, 24, 0, U32>( length, fill );
   primitives<4, 32, 0, U32>( length, fill );
   primitives<5, 33, 3, U64>( length, fill );
   primitives<7, 50, 6, U64>( length, fill );
   primitives<9, 16, 56, U16>( length, fill );
   primitives<9, 64, 8, U64>( length, fill );
   primitives<11, 20, 60, U32>( length, fill );
   primitives<12, 64, 32, U64>( length, fill );
   primitives<13, 100, 4, Raw128>( length, fill );
   primitives<17, 128, 8, Raw128>( length, fill );
   primitives<19, 90, 60, Raw128>( length, fill );
   primitives<33, 256, 7, Raw256>( length, fill );
   primitives<64, 512, 0, Raw512>( length, fill );
}

// Every accessor of a class, over a buffer shorter than its entry.
template<class View>
void accessors( Hardware::ChipType chipType, U16 length, U8 variant ) {
   U8 buffer[3] = { 1, 2, 3 };
   View view( chipType, buffer, length, true, variant );
   typename View::WithStorage owner( chipType, variant );
   View::forEachField( [&]( auto field ) {
      if( field.valid( view ) && field.len( view ) + field.offset( view ) < length ) {
         if constexpr( !field.readOnly ) {
            field.set( owner, field.get( view ) );
            field.mask( view );
         }
      }
   } );
   static_cast<void>( owner.getAllFields() );
   static_cast<void>( View::allFieldsMask( chipType, variant ) );
}
template void accessors<Hardware::EvecTable>( Hardware::ChipType, U16, U8 );
template void accessors<Hardware::OutAcBank>( Hardware::ChipType, U16, U8 );
template void accessors<Hardware::TcamBankTable>( Hardware::ChipType, U16, U8 );

U64 byName( Hardware::ChipType chipType, U8 variant ) {
   U64 sum = 0;
   for( const std::string_view name : Hardware::classNames() ) {
      const auto view = Hardware::stringObj( name, chipType, variant );
      for( const Hardware::FieldInfo& field : Hardware::classFields( name ) ) {
         sum += view->stringField( field.name, 0 );
      }
   }
   return sum;
}
