// `vorn encode`: one entry image from fields on the command line.
#include "Verbs.h"

#include "Entry.h"
#include "Error.h"
#include "Plan.h"
#include "Text.h"
#include "Values.h"

namespace Vorn {

namespace {

void setField( Entry& entry, std::string_view argument ) {
   const auto equals = argument.find( '=' );
   if( equals == std::string_view::npos ) {
      throw Error( "bad argument " + inQuotes( argument ) + "; write a field as name=value" );
   }
   const auto name = argument.substr( 0, equals );
   const auto given = argument.substr( equals + 1 );
   entry.set( name, parseValue( given, name ), given );
}

std::string wordsOf( std::span<const U8> image ) {
   std::string text;
   for( std::size_t i = 0; i < image.size(); i += 4 ) {
      const U8 bytes[] = { image[i + 3], image[i + 2], image[i + 1], image[i] };
      text += i > 0 ? " 0x" : "0x";
      appendHex( text, bytes );
   }
   return text;
}

} // namespace

std::string encode( const EncodeArguments& arguments ) {
   const Plan plan( arguments.pair );
   Place place;
   place.entry = parseIndex( arguments.entry, "entry", 0xffffffff );
   place.array = parseIndex( arguments.array, "array", 0xffff );
   place.identifier = parseIndex( arguments.identifier, "identifier", 0xffff );
   const auto address = plan.address( place );
   Entry entry;
   entry.reset( plan );
   for( const auto& field : arguments.fields ) {
      setField( entry, field );
   }

   std::string text = "image: ";
   appendHex( text, entry.image(), " " );
   text += "\nwords: " + wordsOf( entry.image() ) + '\n';
   if( !address ) {
      return text + "address: none\n";
   }
   return text + "address: " + hexOf( address->schanAddress ) +
          "\naccessType: " + std::to_string( address->accessType ) +
          "\ndestBlock: " + std::to_string( address->destBlock ) + '\n';
}

} // namespace Vorn
