// The codec's columns as C functions, which the bench in Python times beside its own batches.
#include <Vorn/Columns.h>

#include <cstring>

extern "C" {

__attribute__( ( visibility( "default" ) ) ) void* vornBenchColumns( const char* table, U8 chip );
__attribute__( ( visibility( "default" ) ) ) void vornBenchAdd( void* columns, const char* name,
                                                                void* data, std::size_t elements,
                                                                std::size_t elementBytes );
__attribute__( ( visibility( "default" ) ) ) void
vornBenchDecode( const void* columns, const U8* images, std::size_t bytes );

// Sets the columns in images that are blank first, as a new image is.
__attribute__( ( visibility( "default" ) ) ) void vornBenchEncode( const void* columns, U8* images,
                                                                   std::size_t bytes );
}

void* vornBenchColumns( const char* table, U8 chip ) {
   return new Vorn::Columns( Vorn::Layout( table, chip, 0 ) );
}

void vornBenchAdd( void* columns, const char* name, void* data, std::size_t elements,
                   std::size_t elementBytes ) {
   static_cast<Vorn::Columns*>( columns )->add( name, data, elements, elementBytes );
}

void vornBenchDecode( const void* columns, const U8* images, std::size_t bytes ) {
   static_cast<const Vorn::Columns*>( columns )->decode( { images, bytes } );
}

void vornBenchEncode( const void* columns, U8* images, std::size_t bytes ) {
   const auto& own = *static_cast<const Vorn::Columns*>( columns );
   const auto blank = own.layout().blank();
   for( std::size_t at = 0; at < bytes; at += blank.size() ) {
      std::memcpy( images + at, blank.data(), blank.size() );
   }
   own.encode( { images, bytes } );
}
