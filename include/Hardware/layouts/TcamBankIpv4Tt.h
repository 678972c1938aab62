// The IPv4 tunnel termination key: one layout on all its chip types.
#pragma once

#include <Hardware/detail/Description.h>

#define HARDWARE_FIELDS <Hardware/fields/TcamBankIpv4Tt.def>

namespace Hardware::Layouts::TcamBankIpv4Tt {

#include <Hardware/detail/FieldNumbers.inc>

// The width is far more than the fields need, on purpose: it sets the storage.
// clang-format off
inline constexpr auto newer = chips( 10, range( 12, 16 ) );

inline constexpr auto description = describe(
   layout(
      block( variants( 0 ), { newer }, {
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
      // chip types variants       width entries     arrayElements instanceCount
      { newer,     variants( 0 ), 20,   4294967295, 1,            1 },
   } ),
   fieldCounts( {
      { newer, variants( 0 ), 8 },
   } ),
   addresses( {
      //                                     step of     by identifier
      // chip types      variants       base entry array { accessType, destBlock }
      { chips( 10, 12 ), variants( 0 ), 0x0, 1,    0,    { { 10, 1 } } },
      { chips( 13 ),     variants( 0 ), 0x0, 1,    0,    { { 4, 5 } } },
      { chips( 14 ),     variants( 0 ), 0x0, 1,    0,    { { 28, 12 } } },
      { chips( 15, 16 ), variants( 0 ), 0x0, 1,    0,    { { 16, 15 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::TcamBankIpv4Tt

#undef HARDWARE_FIELDS
