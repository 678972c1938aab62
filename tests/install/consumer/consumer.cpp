// Composes one entry by type and by name, and prints its word and its address.
#include <Hardware/Registry.h>
#include <Hardware/TcamActionTable.h>

#include <cstdio>

int main() {
   Hardware::TcamActionTable::WithStorage typed( Hardware::BCM88690_B0, 0 );
   typed.actionIs( 0x12345678 );

   const auto named = Hardware::stringObj( "TcamActionTable", Hardware::BCM88690_B0, 0 );
   named->stringFieldIs( "action", typed.action() );

   const auto* const derived = dynamic_cast<const Hardware::TcamActionTable*>( named.get() );
   if( derived == nullptr || derived->getAllFields() != typed.getAllFields() ) {
      return 1;
   }
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;
   if( !named->getSchanAddress( address, accessType, destBlock, 1, 5, 2 ) ) {
      return 1;
   }
   std::printf( "%llx at 0x%x, %d, %d\n", static_cast<unsigned long long>( derived->action() ),
                address, accessType, destBlock );
   return 0;
}
