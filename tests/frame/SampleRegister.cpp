// SampleRegister: two variants, two instances, and dimensions that don't enter into the address.
#include "frame/SampleRegister.h"

#include "frame/ClassSource.h"

#define HARDWARE_VIEW SampleRegister
#define HARDWARE_FIELDS "frame/SampleRegister.def"

namespace Hardware::Layouts::SampleRegister {

#include <Hardware/detail/FieldNumbers.inc>

// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0, 1 ), { chips( 4 ), chips( 8 ) }, {
         { command, { at( 40, 20 ), at( 41, 20 ) } },
         { found,   { absent,       at( 61, 1 ) } },
      } ) ),
   dimensions( {
      { chips( 4, 8 ), variants( 0, 1 ), 3, 1, 1, 2, 5, 8 },
   } ),
   fieldCounts( {
      { chips( 4 ), variants( 0, 1 ), 1 },
      { chips( 8 ), variants( 0, 1 ), 2 },
   } ),
   addresses( {
      { chips( 4 ), variants( 0, 1 ), 0x100, 0, 0, { { 0, 1 }, { 0, 2 } } },
      { chips( 8 ), variants( 0, 1 ), 0x200, 0, 0, { { 0, 3 }, { 9, 3 } } },
   } ) );
// clang-format on

} // namespace Hardware::Layouts::SampleRegister

#include "frame/DefineRegister.inc"
