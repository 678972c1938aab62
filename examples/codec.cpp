// Entries by names that are known at run time alone: one of them, and many at once.
#include <Vorn/Columns.h>
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

   std::vector<U8> dump; // images one after another
   for( U64 n = 0; n < 1000; ++n ) {
      lif.set( image, "vsi", n );
      dump.insert( dump.end(), image.begin(), image.end() );
   }
   std::vector<U32> vsis( 1000 );
   std::vector<U16> vids( 1000, 7 );
   // A column is unsigned and at least as wide as its field; a wide field takes its 64-bit words,
   // row by row.
   Vorn::Columns columns( lif );
   columns.add( "vsi", vsis );
   columns.add( "vlanEditVid1", vids );
   columns.decode( dump ); // one row an image; ( dump, stride ) where they lie further apart
   columns.encode( dump ); // sets just these fields in every image
   std::printf( "%u %u\n", vsis[999], vids[999] );
}
