// The one register: a single field of 128 bits, in one or two instances.
#include "frame/ClassSource.h"

#include <Hardware/FheiIveSizeReg.h>

#define HARDWARE_VIEW FheiIveSizeReg
#define HARDWARE_FIELDS <Hardware/fields/FheiIveSizeReg.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// A stated maxIdentifier of 0 beside an instanceCount of 2 is right: addresses go by the latter.
// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( range( 2, 8 ) ) }, {
         { pphFheiIveSize, { at( 0, 128 ) } },
      } ) ),
   dimensions( {
      //                                                  array    instance max        addr
      // chip types          variants       width entries elements count    identifier stride
      { chips( 2, 3, 6, 7 ), variants( 0 ), 4,    1,      1,       1,       0,         1 },
      { chips( 4, 5, 8 ),    variants( 0 ), 4,    1,      1,       2,       0,         1 },
   } ),
   fieldCounts( {
      { chips( range( 2, 8 ) ), variants( 0 ), 1 },
   } ),
   addresses( {
      //                                     step of       by identifier
      // chip types    variants       base   entry  array  { accessType, destBlock }
      { chips( 2, 3 ), variants( 0 ), 0x1ea, 0,     0,     { { 0, 53 } } },
      { chips( 4, 5 ), variants( 0 ), 0x1e8, 0,     0,     { { 0, 60 }, { 0, 61 } } },
      { chips( 6, 7 ), variants( 0 ), 0x1eb, 0,     0,     { { 0, 60 } } },
      { chips( 8 ),    variants( 0 ), 0x1eb, 0,     0,     { { 0, 64 }, { 0, 65 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineRegister.inc"
