// The attributes of the logical interface profiles: 256 rows with one field.
#include "frame/ClassSource.h"

#include <Hardware/LifProfileAttributes.h>

#define HARDWARE_VIEW LifProfileAttributes
#define HARDWARE_FIELDS <Hardware/fields/LifProfileAttributes.def>
#include "frame/DefineFieldNumbers.inc"

namespace Hardware {
namespace {

using namespace Frame;

// clang-format off
constexpr auto description = describe(
   layout(
      block( variants( 0 ), { chips( 10, range( 12, 16 ) ) }, {
         { daNotFoundDestinationProfile, { at( 0, 2 ) } },
      } ) ),
   dimensions( {
      // chip types          variants       width  entries  arrayElements  instanceCount
      { chips( 10, 12, 14 ), variants( 0 ), 1,     256,     1,             2 },
      { chips( 13, 15, 16 ), variants( 0 ), 1,     256,     1,             1 },
   } ),
   fieldCounts( {
      { chips( 10, range( 12, 16 ) ), variants( 0 ), 1 },
   } ),
   addresses( {
      // chip types      variants       base      entry step  array step  { accessType, destBlock } by identifier
      { chips( 10, 12 ), variants( 0 ), 0x820000, 1,          0,          { { 18, 2 }, { 0, 10 } } },
      { chips( 13 ),     variants( 0 ), 0x820000, 1,          0,          { { 6, 10 } } },
      { chips( 14 ),     variants( 0 ), 0x820000, 1,          0,          { { 2, 14 }, { 2, 26 } } },
      { chips( 15, 16 ), variants( 0 ), 0x820000, 1,          0,          { { 24, 12 } } },
   } ) );
// clang-format on

} // namespace
} // namespace Hardware

#include "frame/DefineTable.inc"
