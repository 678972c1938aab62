// Holds the two ways over a dump against each other: many entries at once, and one by one.
#pragma once

#include "CommandLine.h"
#include "forms/ImagePrinter.h"
#include "verbs/DumpWalk.h"

#include <Vorn/Error.h>

#include <string>
#include <string_view>

namespace Testing {

struct Walked {
   std::string text;      // what is printed of the entries in this form, and the Error after them
   std::size_t lines = 0; // that were composed many at once

   bool operator==( const Walked& other ) const { return text == other.text; }
};

inline Walked walked( const Vorn::DumpArguments& arguments, Vorn::DecodeForm form,
                      bool takesBlocks ) {
   Walked result;
   Vorn::Output output;
   try {
      Vorn::DumpWalk walk( arguments, output );
      Vorn::ImagePrinter printer( form, !walk.reader().isOfOnePair() );
      if( const auto fields = walk.fields() ) {
         printer.choose( *fields );
      }
      printer.provide( walk.reader().layouts() );
      walk.takesBlocks = takesBlocks;
      walk.lineFor = [&]( const Vorn::Layout& layout ) { return printer.lineFor( layout ); };
      walk.onLines = [&]( std::string_view lines ) {
         result.text.append( printer.header() ).append( lines );
         result.lines += lines.size();
      };
      walk.onFile = [&]( const std::string& name ) { printer.nameFile( name ); };
      walk.run( [&]( const Vorn::DumpEntry& entry ) {
         result.text += printer.print( { entry, {} } );
      } );
      result.text += printer.header();
      walk.finish( "printed" );
   } catch( const Vorn::Error& error ) {
      result.text += error.place() + ": " + error.message() + '\n';
   } catch( const Vorn::HasFailed& ) {
      result.text += "has failed\n";
   }
   return result;
}

} // namespace Testing
