// Uses the library before main, in it, and after it, also in a thread that runs on.
#include "EveryMoment.h"

#include <Hardware/Registry.h>

#include <thread>

namespace {

const struct First {
   First() { Testing::useLibrary( "constructor of the program's static object" ); }
   ~First() { Testing::useLibrary( "destructor of the program's static object" ); }
   First( const First& ) = delete;
   First& operator=( const First& ) = delete;
} first;

} // namespace

int main() {
   Testing::useLibrary( "main" );
   std::thread( [] {
      while( Hardware::chipTypeVariantValid( "OutAcBank", Hardware::BCM88690_B0, 0 ) ) {
         Testing::threadHasAsked();
      }
   } ).detach();
   Testing::waitForThread();
}
