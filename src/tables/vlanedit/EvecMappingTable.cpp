// The 4096 selections of an egress VLAN edit command: one layout on all chip types.
#include "frame/ClassSource.h"

#include <Hardware/EvecMappingTable.h>

#define HARDWARE_VIEW EvecMappingTable
#define HARDWARE_FIELDS <Hardware/fields/EvecMappingTable.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 10, range( 12, 16 ) ) }, {
         { egressVlanEditCommand, { at( 0, 7 ) } },
         { removeTxTag,           { at( 7, 1 ) } },
         { vlanMirror,            { at( 8, 2 ) } },
         { vlanMembership,        { at( 10, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width entries arrayElements instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,    4096,   1,            2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,    4096,   1,            1 },
   } ),
   fieldCounts( {
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 4 },
   } ),
   addresses( {
      //                                           step of       by identifier
      // chip types      variants       base       entry  array  { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x1820000, 1,     0,     { { 30, 2 }, { 12, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x1820000, 1,     0,     { { 8, 4 } } },
      { chips( 14 ),     variants( 0 ), 0x1820000, 1,     0,     { { 30, 13 }, { 30, 25 } } },
      { chips( 15, 16 ), variants( 0 ), 0x1820000, 1,     0,     { { 24, 9 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineTable.inc"
