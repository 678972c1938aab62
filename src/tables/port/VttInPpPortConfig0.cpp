// The port mapping, key variable and default logical interface of each port.
#include "frame/ClassSource.h"

#include <Hardware/VttInPpPortConfig0.h>

#define HARDWARE_VIEW VttInPpPortConfig0
#define HARDWARE_FIELDS <Hardware/fields/VttInPpPortConfig0.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// A mapped port is a bit wider where one instance holds all the ports, and moves what follows.
// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 10, 12, 14 ), chips( 13, 15, 16 ) }, {
         { mappedPpPort,   { at( 0, 9 ),   at( 0, 10 ) } },
         { portKeyGenVar,  { at( 9, 32 ),  at( 10, 32 ) } },
         { defaultPortLif, { at( 41, 20 ), at( 42, 20 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 3,    256,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 3,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 3 },
   } ),
   addresses( {
      //                                          step of       by identifier
      // chip types      variants       base      entry  array  { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x760000, 1,     0,     { { 18, 2 }, { 0, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x760000, 1,     0,     { { 6, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x760000, 1,     0,     { { 2, 14 }, { 2, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x760000, 1,     0,     { { 24, 12 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineTable.inc"
