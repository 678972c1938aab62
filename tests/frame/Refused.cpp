// Descriptions that the compiler must refuse, with these messages. Nothing else may be refused.
#include "frame/SampleRegister.h"

#include "frame/ClassSource.h"

#include "frame/SoundDescription.h"

namespace Testing {

#define FLAW( flaw, ... ) static_assert( isSound<Field, ( __VA_ARGS__ )> );

FLAW( none, ofLayout( soundLayout ) )

#include "frame/Flaws.inc"

} // namespace Testing

// A class.

namespace Hardware::Layouts::SampleRegister {

#define HARDWARE_FIELDS "frame/SampleRegister.def"
#include <Hardware/detail/FieldNumbers.inc>
#undef HARDWARE_FIELDS

// refused: fieldOutsideMemory found BCM88680_A0 0
constexpr auto description =
   describe( layout( block( variants( 0, 1 ), { chips( 8 ) },
                            { { command, { at( 40, 20 ) } }, { found, { at( 96, 1 ) } } } ) ),
             dimensions( { { chips( 8 ), variants( 0, 1 ), 3, 1, 1, 1 } } ),
             fieldCounts( { { chips( 8 ), variants( 0, 1 ), 2 } } ),
             addresses( { { chips( 8 ), variants( 0, 1 ), 0x100, 0, 0, { { 0, 1 } } } } ) );

} // namespace Hardware::Layouts::SampleRegister

#define HARDWARE_VIEW SampleRegister
#define HARDWARE_FIELDS "frame/SampleRegister.def"
#include "frame/DefineRegister.inc"
