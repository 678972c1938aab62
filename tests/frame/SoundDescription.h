// A sound description, of which the tests of flaws replace one part each, and two too large ones.
#pragma once

#include "frame/Tables.h"

namespace Testing {

using namespace Hardware::Frame;

enum Field : U8 { wide, narrow, tag };

inline constexpr Declaration declarations[] = {
   { "wide", "Wide", 100, ValueType::u32, false },
   { "narrow", "Narrow", 101, ValueType::u8, false },
   { "tag", "Tag", 102, ValueType::u8, true },
};

inline constexpr unsigned storage = 8;

inline constexpr auto soundLayout = layout( block( variants( 0, 1 ), { chips( 2 ), chips( 3 ) },
                                                   {
                                                      { wide, { at( 0, 17 ), at( 0, 32 ) } },
                                                      { narrow, { at( 32, 8 ), absent } },
                                                      { tag, { at( 40, 4 ), at( 60, 4 ) } },
                                                   } ) );
inline constexpr auto soundDimensions =
   dimensions( { { chips( 2, 3 ), variants( 0, 1 ), 2, 16, 1, 2 } } );
inline constexpr auto soundCounts =
   fieldCounts( { { chips( 2 ), variants( 0, 1 ), 3 }, { chips( 3 ), variants( 0, 1 ), 2 } } );
inline constexpr auto soundAddresses =
   addresses( { { chips( 2, 3 ), variants( 0, 1 ), 0x100, 1, 0, { { 1, 2 }, { 3, 4 } } } } );
inline constexpr auto soundTags = tags( { { chips( 2, 3 ), variants( 0, 1 ), { { tag, 15 } } } } );

// What is found in a description, by default with the sound declarations.
template<std::size_t Fields = 3>
constexpr Finding findingOf( const auto& description,
                             const Declaration ( &fields )[Fields] = declarations,
                             unsigned bytes = storage ) {
   return compile( description, fields, bytes ).finding;
}

// The same of the sound description with one other part.
constexpr Finding ofLayout( const auto& other ) {
   return findingOf( describe( other, soundDimensions, soundCounts, soundAddresses, soundTags ) );
}
constexpr Finding ofDimensions( const auto& other ) {
   return findingOf( describe( soundLayout, other, soundCounts, soundAddresses, soundTags ) );
}
constexpr Finding ofCounts( const auto& other ) {
   return findingOf( describe( soundLayout, soundDimensions, other, soundAddresses, soundTags ) );
}
constexpr Finding ofAddresses( const auto& other ) {
   return findingOf( describe( soundLayout, soundDimensions, soundCounts, other, soundTags ) );
}
constexpr Finding ofTags( const auto& other ) {
   return findingOf( describe( soundLayout, soundDimensions, soundCounts, soundAddresses, other ) );
}
constexpr Finding ofDeclarations( const Declaration ( &other )[3], unsigned bytes = storage ) {
   return findingOf(
      describe( soundLayout, soundDimensions, soundCounts, soundAddresses, soundTags ), other,
      bytes );
}

inline constexpr auto both = variants( 0, 1 );

// Two chip types with 31 variants each and one more, each of which has the field elsewhere.
inline constexpr auto manyLayouts = [] {
   Placements<64> placements{};
   for( unsigned number = 0; number < 64; ++number ) {
      placements.rows[number] = { wide, Chips{ U32{ 1 } << ( 2 + number / 31 ) },
                                  Variants{ U32{ 1 } << number % 31 },
                                  Cell{ static_cast<U16>( number ), 1 } };
   }
   return placements;
}();

// Nine chip types with 31 variants each, each of which has an address of its own.
inline constexpr Declaration oneDeclaration[] = { { "narrow", "Narrow", 101, ValueType::u8,
                                                    false } };
inline constexpr auto manyFacts = [] {
   constexpr Chips nine = chips( range( 0, 8 ) );
   constexpr Variants all = variants( range( 0, 30 ) );
   List<Address, 279> many{};
   for( unsigned number = 0; number < 279; ++number ) {
      many.rows[number] = { Chips{ U32{ 1 } << number / 31 },
                            Variants{ U32{ 1 } << number % 31 },
                            Base( number ),
                            1,
                            0,
                            { { 0, 0 } } };
   }
   return describe( layout( block( all, { nine }, { { 0, { at( 0, 8 ) } } } ) ),
                    dimensions( { { nine, all, 2, 16, 1, 1 } } ),
                    fieldCounts( { { nine, all, 1 } } ), many );
}();

} // namespace Testing
