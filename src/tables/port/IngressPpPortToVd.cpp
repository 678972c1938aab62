// The ingress VLAN domain of each port.
#include "frame/ClassSource.h"

#include <Hardware/IngressPpPortToVd.h>

#define HARDWARE_VIEW IngressPpPortToVd
#define HARDWARE_FIELDS <Hardware/fields/IngressPpPortToVd.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// Chip type 14 goes with 10 and 12 here; its VLAN domain on the egress side is wider.
// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 10, 12, 14 ), chips( 13, 15, 16 ) }, {
         { vlanDomain, { at( 0, 9 ), at( 0, 11 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,    256,    1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,    1024,   1,            1 },
   } ),
   fieldCounts( {
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 1 },
   } ),
   addresses( {
      //                                          step of       by identifier
      // chip types      variants       base      entry  array  { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x650000, 1,     0,     { { 16, 2 }, { 30, 9 } } },
      { chips( 13 ),     variants( 0 ), 0x650000, 1,     0,     { { 4, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x650000, 1,     0,     { { 0, 14 }, { 0, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x650000, 1,     0,     { { 16, 17 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineTable.inc"
