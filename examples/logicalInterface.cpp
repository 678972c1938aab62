// The path of one entry: a logical interface from its name to its image and address, and back.
#include <Hardware/FieldId.h>
#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

#include <cstdio>
#include <memory>

int main() {
   const auto chip = Hardware::BCM88690_B0;
   const U8 variant = 0;
   const U32 interface = 4097;

   // A view by name owns its entry: zeroed, with the variant's tag stamped.
   if( !Hardware::chipTypeVariantValid( "LifTable", chip, variant ) ) {
      return 1;
   }
   const std::shared_ptr<Kelvar::AsicBase> view = Hardware::stringObj( "LifTable", chip, variant );

   // By name, by identifier, and, on the view's own class, by typed setter.
   view->stringFieldIs( "vlanEditVid1", 100 );
   view->setField64( Hardware::FieldId::vlanEditVid2, 200 );
   auto& lif = dynamic_cast<Hardware::LifTable&>( *view );
   lif.vsiIs( 2000 );
   lif.vlanEditProfileIs( 9 );
   lif.learnEnableIs( 1 );
   lif.destinationIs( 0x84001 );

   // The image to write, and where to write it.
   const Raw1024 image = lif.getAllFields();
   std::printf( "image" );
   for( unsigned word = 0; word < 3; ++word ) {
      std::printf( " %016llx", static_cast<unsigned long long>( image.word( word ) ) );
   }
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   if( !view->getSchanAddress( address, accessType, destBlock, 0, interface, 0 ) ) {
      return 1;
   }
   std::printf( "\naddress 0x%x, access type %d, block %d\n", address, accessType, destBlock );

   // An image that was read from the chip: does it carry the variant's tag? Then a view over it,
   // which verifies the tag and leaves the entry as it is.
   Raw1024 read = image;
   if( !Hardware::LifTable::isLifTable( chip, read.bytes(), sizeof read, variant ) ||
       Hardware::LifTable::isLifTable( chip, read.bytes(), sizeof read, 1 ) ) {
      return 1;
   }
   const Hardware::LifTable existing( chip, read.bytes(), sizeof read, true, variant );
   std::printf( "read back: vlanEditVid1 %u, vlanEditVid2 %u, vsi %u\n", existing.vlanEditVid1(),
                existing.vlanEditVid2(), existing.vsi() );
   return 0;
}
