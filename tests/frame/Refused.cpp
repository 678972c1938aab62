// Descriptions that the compiler must refuse. Before each stands what its message must name: flaw,
// field, chip type and variant. Nothing else may be refused.
#include "frame/SampleRegister.h"

#include "frame/ClassSource.h"

#include "frame/SoundDescription.h"

namespace Testing {

#define REFUSED( name, ... )                                                                       \
   constexpr auto name = __VA_ARGS__;                                                              \
   static_assert( isSound<Field, compile( name, declarations, storage ).finding> );

constexpr auto withLayout( const auto& other ) {
   return describe( other, soundDimensions, soundCounts, soundAddresses, soundTags );
}
constexpr auto withDimensions( const auto& other ) {
   return describe( soundLayout, other, soundCounts, soundAddresses, soundTags );
}
constexpr auto withCounts( const auto& other ) {
   return describe( soundLayout, soundDimensions, other, soundAddresses, soundTags );
}
constexpr auto withAddresses( const auto& other ) {
   return describe( soundLayout, soundDimensions, soundCounts, other, soundTags );
}
constexpr auto withTags( const auto& other ) {
   return describe( soundLayout, soundDimensions, soundCounts, soundAddresses, other );
}
constexpr auto both = variants( 0, 1 );

static_assert(
   isSound<Field, compile( withLayout( soundLayout ), declarations, storage ).finding> );

// Declarations.

constexpr auto sound = withLayout( soundLayout );
#define REFUSED_DECLARATIONS( name, bytes, ... )                                                   \
   constexpr Declaration name[] = __VA_ARGS__;                                                     \
   static_assert( isSound<Field, compile( sound, name, bytes ).finding> );

// refused: fieldRepeated narrow chipType variant
REFUSED_DECLARATIONS( repeated, storage,
                      { declarations[0],
                        { "wide", "Wide", 1, ValueType::u8, false },
                        declarations[2] } )
// refused: capitalNameDiffers narrow chipType variant
REFUSED_DECLARATIONS( differing, storage,
                      { declarations[0],
                        { "narrow", "Narow", 1, ValueType::u8, false },
                        declarations[2] } )
// refused: typeTooNarrow wide chipType variant
REFUSED_DECLARATIONS( tooNarrow, storage,
                      { { "wide", "Wide", 1, ValueType::u16, false },
                        declarations[1],
                        declarations[2] } )
// refused: typeTooWide tag chipType variant
REFUSED_DECLARATIONS( tooWide, storage,
                      { declarations[0],
                        declarations[1],
                        { "tag", "Tag", 1, ValueType::u16, true } } )
// refused: storageDisagrees field chipType variant
REFUSED_DECLARATIONS( storedWider, storage + 4,
                      { declarations[0], declarations[1], declarations[2] } )

// Layout.

// refused: unknownField 3 chipType variant
REFUSED( unknown, withLayout( layout( soundLayout, block( both, { chips( 2 ) },
                                                          { { 3, { at( 50, 1 ) } } } ) ) ) )
// refused: cellLeftOut narrow chipType variant
REFUSED( leftOut, withLayout( layout( block( both, { chips( 2 ), chips( 3 ) },
                                             { { narrow, { at( 0, 8 ) } } } ) ) ) )
// refused: surplusCell wide chipType variant
REFUSED( oneSurplus, withLayout( layout( block( both, { chips( 2 ), chips( 3 ) },
                                                { { wide, { absent, absent, absent } } } ) ) ) )
// refused: surplusCell tag chipType variant
REFUSED( manySurplus,
         withLayout( layout( block( both, { chips( 2 ) },
                                    { { tag, { absent, at( 0, 1 ), absent, absent } } } ) ) ) )
// refused: fieldPlacedTwice narrow BCM88650_B0 1
REFUSED( placedTwice,
         withLayout( layout( soundLayout, block( variants( 1 ), { chips( 2 ) },
                                                 { { narrow, { at( 50, 8 ) } } } ) ) ) )
// refused: fieldNowhere wide chipType variant
REFUSED( nowhere,
         withLayout( layout( block( both, { chips( 2, 3 ) },
                                    { { narrow, { at( 0, 8 ) } }, { tag, { at( 8, 4 ) } } } ) ) ) )
// refused: fieldOutsideMemory tag BCM88660_A0 0
REFUSED( outside, withLayout( layout( block( both, { chips( 2 ), chips( 3 ) },
                                             { { wide, { at( 0, 17 ), at( 0, 32 ) } },
                                               { narrow, { at( 32, 8 ), absent } },
                                               { tag, { at( 60, 4 ), at( 61, 4 ) } } } ) ) ) )
// refused: tooManyFormats field BCM88375_A0 1
REFUSED( manyFormats, withLayout( manyLayouts ) )

// Dimensions.

// refused: pairDimensionedTwice field BCM88660_A0 1
REFUSED( twice, withDimensions( dimensions( { { chips( 2, 3 ), both, 2, 16, 1, 2 },
                                              { chips( 3 ), variants( 1 ), 2, 16, 1, 2 } } ) ) )
// refused: fieldsWithoutPair wide BCM88650_B0 1
REFUSED( fewer, withDimensions( dimensions( { { chips( 2, 3 ), variants( 0 ), 2, 16, 1, 2 } } ) ) )
// refused: pairWithoutFields field Software 0
REFUSED( more, withDimensions( dimensions( { { chips( 2, 3, 21 ), both, 2, 16, 1, 2 } } ) ) )
// refused: someVariantsOnly field BCM88650_B0 variant
REFUSED( onSome, withDimensions( List<Dimension, 1>{
                    { { { chips( 2, 3 ), Variants{ ~U32{ 1 } }, 2, 16, 1, 2 } } } } ) )
// refused: tooManyFacts field BCM88680_A0 7
static_assert( isSound<Field, compile( manyFacts, oneDeclaration, storage ).finding> );

// Field counts.

// refused: countWithoutPair field BCM88375_A0 variant
REFUSED( countElsewhere,
         withCounts( fieldCounts( { { chips( 2, 4 ), both, 3 }, { chips( 3 ), both, 2 } } ) ) )
// refused: countDisagrees field BCM88660_A0 0
REFUSED( countWrong, withCounts( fieldCounts( { { chips( 2, 3 ), both, 3 } } ) ) )
// refused: countMissing field BCM88650_B0 1
REFUSED( countLacking, withCounts( fieldCounts( { { chips( 2 ), variants( 0 ), 3 },
                                                  { chips( 3 ), both, 2 } } ) ) )

// Addresses.

// refused: pairAddressedTwice field BCM88650_B0 0
REFUSED( addressedTwice,
         withAddresses( addresses( { { chips( 2, 3 ), both, 0, 1, 0, { { 0, 0 }, { 0, 0 } } },
                                     { chips( 2 ), variants( 0 ), noAddress } } ) ) )
// refused: addressWithoutPair field BCM88375_A0 0
REFUSED( addressElsewhere,
         withAddresses( addresses( { { chips( 4 ), variants( 0 ), 0, 1, 0, {} } } ) ) )
// refused: instancesDisagree field BCM88650_B0 0
REFUSED( oneInstance,
         withAddresses( addresses( { { chips( 2, 3 ), both, 0, 1, 0, { { 0, 0 } } } } ) ) )
// refused: noAddress field BCM88660_A0 1
REFUSED( unaddressed, withAddresses( addresses( { { chips( 2 ), both, noAddress },
                                                  { chips( 3 ), variants( 0 ), noAddress } } ) ) )

// Tags.

// refused: pairTaggedTwice field BCM88660_A0 1
REFUSED( taggedTwice, withTags( tags( { { chips( 2, 3 ), both, { { tag, 1 } } },
                                        { chips( 3 ), variants( 1 ), { { tag, 2 } } } } ) ) )
// refused: tagWithoutPair field BCM88375_A0 0
REFUSED( tagElsewhere, withTags( tags( { { chips( 4 ), variants( 0 ), { { tag, 1 } } } } ) ) )
// refused: tagFieldNotReadOnly narrow BCM88650_B0 0
REFUSED( settable, withTags( tags( { { chips( 2 ), both, { { narrow, 1 } } } } ) ) )
// refused: tagFieldAbsent tag BCM88660_A0 0
REFUSED( tagAbsent, describe( layout( block( both, { chips( 2 ), chips( 3 ) },
                                             { { wide, { at( 0, 17 ), at( 0, 32 ) } },
                                               { narrow, { at( 32, 8 ), absent } },
                                               { tag, { at( 40, 4 ), absent } } } ) ),
                              soundDimensions,
                              fieldCounts( { { chips( 2 ), both, 3 }, { chips( 3 ), both, 1 } } ),
                              soundAddresses, soundTags ) )
// refused: tagOutsideField tag BCM88650_B0 0
REFUSED( tagTooGreat, withTags( tags( { { chips( 2, 3 ), both, { { tag, 16 } } } } ) ) )
// refused: readOnlyFieldWithoutTag tag chipType variant
REFUSED( stampedNowhere, withTags( tags( { { chips( 2, 3 ), both, { untagged } } } ) ) )
// refused: untagged tag BCM88660_A0 0
REFUSED( tagLacking, withTags( tags( { { chips( 2 ), both, { { tag, 1 } } } } ) ) )

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
