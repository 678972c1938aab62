// A small class whose description the compiler must refuse: a macro chooses the flaw.
#include "frame/SampleRegister.h"

#include "frame/ClassSource.h"

#define HARDWARE_VIEW SampleRegister
#define HARDWARE_FIELDS "frame/SampleRegister.def"

namespace Hardware::Layouts::SampleRegister {

#include <Hardware/detail/FieldNumbers.inc>

#ifdef REFUSED_countDisagrees
constexpr U16 count = 1;
#else
constexpr U16 count = 2;
#endif
#ifdef REFUSED_fieldPlacedTwice
constexpr U8 second = command;
#else
constexpr U8 second = found;
#endif
#ifdef REFUSED_typeTooWide
constexpr Cell commandCell = at( 40, 16 );
#else
constexpr Cell commandCell = at( 40, 20 );
#endif
#ifdef REFUSED_fieldOutsideMemory
constexpr Cell foundCell = at( 96, 1 );
#else
constexpr Cell foundCell = at( 60, 1 );
#endif
#ifdef REFUSED_tagFieldNotReadOnly
constexpr auto someTags = tags( { { chips( 4 ), variants( 0 ), { { found, 1 } } } } );
#else
constexpr List<Tag, 0> someTags;
#endif

constexpr auto description =
   describe( layout( block( variants( 0 ), { chips( 4 ) },
                            { { command, { commandCell } }, { second, { foundCell } } } ) ),
             dimensions( { { chips( 4 ), variants( 0 ), 3, 1, 1, 1 } } ),
             fieldCounts( { { chips( 4 ), variants( 0 ), count } } ),
             addresses( { { chips( 4 ), variants( 0 ), 0x100, 0, 0, { { 0, 1 } } } } ), someTags );

} // namespace Hardware::Layouts::SampleRegister

#include "frame/DefineRegister.inc"
