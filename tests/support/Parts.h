// Fields that are further names of other fields: the parts fill the whole, low bits first.
#pragma once

#include "Bits.h"
#include "Contract.h"

#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Testing {

struct Part {
   Literal field;
   unsigned width;
};

inline unsigned widthOf( const std::vector<Part>& parts ) {
   unsigned width = 0;
   for( const Part& part : parts ) {
      width += part.width;
   }
   return width;
}

inline const FieldUnderTest& fieldOf( const Expectation& expected, std::string_view name ) {
   const auto field = std::find_if( expected.fields.begin(), expected.fields.end(),
                                    [&]( const FieldUnderTest& one ) { return one.name == name; } );
   if( field == expected.fields.end() ) {
      throw std::invalid_argument( expected.name + " has no field " + std::string( name ) );
   }
   return *field;
}

// On one pair: `parts` begin at `offset`, follow each other without gap or overlap and end where
// `whole` does; what is written through the parts is read through the whole, and the reverse.
inline void expectParts( const Expectation& expected, unsigned chipType, unsigned variant,
                         const std::string& whole, unsigned offset,
                         const std::vector<Part>& parts ) {
   SCOPED_TRACE( expected.name + " (" + std::to_string( chipType ) + ", " +
                 std::to_string( variant ) + ") " + whole );
   std::mt19937 random( 31 * chipType + variant );
   Image image = randomImage( expected.storageBytes, random );
   const auto view =
      expected.make( static_cast<Hardware::ChipType>( chipType ), image.data(),
                     static_cast<U16>( image.size() ), false, static_cast<U8>( variant ) );

   Bits together;
   unsigned end = offset;
   for( const Part& part : parts ) {
      const FieldUnderTest& field = fieldOf( expected, part.field );
      EXPECT_EQ( field.offset( *view ), end ) << part.field;
      EXPECT_EQ( field.len( *view ), part.width ) << part.field;
      Bits value = bitsAt( image, end, part.width ); // of a read-only part: its tag
      if( !field.readOnly ) {
         value = randomBits( part.width, random );
         field.set( *view, value );
      }
      together |= value << ( end - offset );
      end += part.width;
   }

   const FieldUnderTest& field = fieldOf( expected, whole );
   EXPECT_EQ( field.offset( *view ), offset );
   EXPECT_EQ( field.len( *view ), end - offset );
   EXPECT_EQ( field.get( *view ), together );

   const Bits value = randomBits( end - offset, random );
   field.set( *view, value );
   unsigned begin = 0;
   for( const Part& part : parts ) {
      EXPECT_EQ( fieldOf( expected, part.field ).get( *view ),
                 value >> begin & lowOnes( part.width ) )
         << part.field;
      begin += part.width;
   }
}

} // namespace Testing
