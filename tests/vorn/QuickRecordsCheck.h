// Holds the quick path of records against the careful one.
#pragma once

#include "QuickRecords.h"

#include <Vorn/Error.h>
#include <Vorn/Record.h>
#include <Vorn/Text.h>

#include <optional>
#include <string>
#include <string_view>

namespace Testing {

inline std::string textOf( const Vorn::Composed& entry ) {
   const auto& [number, array, identifier] = entry.index;
   std::string text = entry.layout.pairText() + ' ';
   for( const U64 one : { number, array, identifier } ) {
      text += std::to_string( one ) + ' ';
   }
   if( entry.address ) {
      text += std::to_string( entry.address->schanAddress ) + ' ' +
              std::to_string( entry.address->accessType ) + ' ' +
              std::to_string( entry.address->destBlock ) + ' ';
   }
   Vorn::appendHex( text, entry.image );
   return text;
}

// What the quick path makes of the line; nothing where it leaves it.
inline std::optional<std::string> quickly( Vorn::QuickRecords& quick, std::string_view line ) {
   std::string padded( line.size() + Vorn::QuickRecords::padding, '9' ); // and no byte more
   line.copy( padded.data(), line.size() );
   const auto entry = quick.compose( std::string_view( padded ).substr( 0, line.size() ) );
   return entry ? std::optional( textOf( *entry ) ) : std::nullopt;
}

// What the careful one makes of it; nothing where it is refused.
inline std::optional<std::string> carefully( Vorn::RecordComposer& careful,
                                             std::string_view line ) {
   try {
      return textOf( careful.compose( line ) );
   } catch( const Vorn::Error& ) {
      return std::nullopt;
   }
}

} // namespace Testing
