// A plug-in over the library: its program loads it, calls it and unloads it.
#include "../support/Classes.h"

#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

extern "C" __attribute__( ( visibility( "default" ) ) ) bool usePlugin() {
   const auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
   view->stringFieldIs( "vlanEditVid1", 100 );
   Hardware::LifTable::WithStorage typed( Hardware::BCM88690_B0, 0 );
   typed.vlanEditVid1Is( 100 );
   return view->stringField( "vlanEditVid1", 0 ) == typed.vlanEditVid1() &&
          typed.vlanEditVid1() == 100 && Hardware::classNames().size() == Testing::classCount &&
          !Hardware::chipTypeVariantValid( "TcamActionTable", Hardware::Software, 0 );
}
