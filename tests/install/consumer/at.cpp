// An entry of a pair that the compiler knows: nothing is linked.
#include <Hardware/at/TcamActionTable.h>

#include <cstdio>

int main() {
   using Action = Hardware::At<Hardware::TcamActionTable, Hardware::BCM88690_B0, 0>;
   Action::Image image = Action::blank();
   Action( image ).actionIs( 0x12345678 );
   std::printf( "%x %x %x %x\n", image[0], image[1], image[2], image[3] );
   return 0;
}
