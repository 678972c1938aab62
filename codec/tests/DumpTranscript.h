// Everything that a reader says of a dump, a line for each entry or Error, to compare its two ways
// of reading.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Testing {

using Transcript = std::vector<std::string>;

template<class Number>
std::string orNone( const std::optional<Number>& number ) {
   return number ? std::to_string( *number ) : "-";
}

inline std::string lineOf( const Vorn::DumpEntry& entry ) {
   std::string text = entry.layout->pairText() + ' ';
   Vorn::appendHex( text, entry.image );
   for( const auto& number : { entry.entry, entry.array, entry.identifier } ) {
      text += ' ' + orNone( number );
   }
   text += ' ' + orNone( entry.address );
   text += entry.isEmpty ? " empty " : " ";
   return text.append( entry.doubt );
}

inline std::string lineOf( const Vorn::Error& error ) {
   return error.place() + ": " + error.message();
}

// Entry by entry.
inline Transcript carefully( Vorn::DumpReader& reader ) {
   Transcript lines;
   for( bool goesOn = true; goesOn; ) {
      try {
         goesOn = reader.next();
         if( goesOn ) {
            lines.push_back( lineOf( reader.entry() ) );
         }
      } catch( const Vorn::Error& error ) {
         lines.push_back( lineOf( error ) );
      }
   }
   return lines;
}

// By runs, where there are any, of which `choose( count )` entries are taken at a time.
template<class Choose>
Transcript quickly( Vorn::DumpReader& reader, Vorn::DumpReader::Runs runs, Choose choose,
                    std::size_t& taken ) {
   Transcript lines;
   std::vector<U8> images;
   for( bool goesOn = true; goesOn; ) {
      try {
         const Vorn::DumpRun run = reader.ahead( runs );
         const std::size_t count = run.count == 0 ? 0 : choose( run.count );
         for( std::size_t i = 0; i < count; ++i ) {
            Vorn::DumpEntry entry;
            entry.layout = run.layout       ? run.layout
                           : run.layouts[i] ? run.layouts[i]
                                            : &reader.layouts().front();
            entry.image = run.images.subspan( i * run.stride, entry.layout->bytes() );
            if( run.first ) {
               entry.entry = run.first->entry + i;
               entry.array = run.first->array;
               entry.identifier = run.first->identifier;
            }
            if( run.address ) {
               entry.address = *run.address + static_cast<U32>( i ) * run.addressStep;
            }
            entry.isEmpty = run.layout ? run.areEmpty : !run.layouts[i];
            lines.push_back( lineOf( entry ) );
         }
         taken += count;
         if( count > 0 && count == run.count ) {
            const std::vector<U8> expected( run.images.begin(), run.images.end() );
            reader.take( run, images );
            if( images != expected ) {
               lines.push_back( "other images are taken" );
            }
         } else {
            reader.skip( count );
         }
         if( count < run.count || count == 0 ) {
            goesOn = reader.next();
            if( goesOn ) {
               lines.push_back( lineOf( reader.entry() ) );
            }
         }
      } catch( const Vorn::Error& error ) {
         lines.push_back( lineOf( error ) );
      }
   }
   return lines;
}

} // namespace Testing
