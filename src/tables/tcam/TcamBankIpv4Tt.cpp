// The IPv4 tunnel termination key: one layout on all its chip types.
#include "frame/ClassSource.h"

#include <Hardware/TcamBankIpv4Tt.h>

#define HARDWARE_VIEW TcamBankIpv4Tt
#define HARDWARE_FIELDS <Hardware/fields/TcamBankIpv4Tt.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// The width is far more than the fields need, on purpose: it sets the storage.
// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 10, range( 12, 16 ) ) }, {
         { layerType,         { at( 0, 5 ) } },
         { ipv4TunnelType,    { at( 5, 4 ) } },
         { ipv4Sip,           { at( 9, 32 ) } },
         { ipv4Dip,           { at( 41, 32 ) } },
         { vrf,               { at( 73, 16 ) } },
         { vrfSelectionLabel, { at( 89, 8 ) } },
         { ipProtocol,        { at( 97, 8 ) } },
         { ipv4Tos,           { at( 105, 8 ) } },
      } ) ),
   dimensions( {
      // chip types                   variants       width entries     arrayElements instanceCount
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 20,   4294967295, 1,            1 },
   } ),
   fieldCounts( {
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 8 },
   } ),
   addresses( {
      //                                     step of       by identifier
      // chip types      variants       base entry  array  { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x0, 1,     0,     { { 10, 1 } } },
      { chips( 13 ),     variants( 0 ), 0x0, 1,     0,     { { 4, 5 } } },
      { chips( 14 ),     variants( 0 ), 0x0, 1,     0,     { { 28, 12 } } },
      { chips( 15, 16 ), variants( 0 ), 0x0, 1,     0,     { { 16, 15 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineTable.inc"
