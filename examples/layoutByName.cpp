// An entry by names that are known at run time alone: its fields, its image, and bad input.
#include <Vorn/Layout.h>

#include <cstdio>
#include <vector>

int main() {
   const Vorn::Layout lif( "LifTable", "BCM88690_B0", 0 ); // a chip by name or number, "10" too
   for( const Vorn::Field& field : lif.fields() ) {        // those of this pair, in declared order
      std::printf( "%.*s %.*s %u at %u, %u bits%s\n", int( field.name.size() ), field.name.data(),
                   int( field.hardwareName.size() ), field.hardwareName.data(), field.identifier,
                   field.offset, field.width, field.readOnly ? ", tag" : "" );
   }

   std::vector<U8> image = lif.blank(); // lif.bytes() bytes: zero but for the tag
   lif.set( image, "vsi", 2000 );       // 64 bits or less; a Vorn::Value for any width
   const std::vector<U8> seen = image;
   const U64 vsi = lif.get( seen, "vsi" );                  // reading takes a const image
   const Vorn::Value whole = lif.value( seen, "mdbEntry" ); // any width
   std::printf( "vsi %lu, mdbEntry %s\n", vsi, Vorn::hexOf( whole ).c_str() );
   try {
      lif.set( image, "vsi", 0x8000 );
   } catch( const Vorn::Error& error ) {
      std::puts( error.what() );
   }
}
