// `vorn encode`: one entry image from fields on the command line.
#include "Encode.h"

#include "Arguments.h"
#include "Entry.h"
#include "Error.h"
#include "Plan.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <memory>

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

Verb addEncode( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "encode", "Compose the image of one entry" );
   const auto arguments = std::make_shared<EncodeArguments>();
   addPair( *verb, arguments->pair );
   verb->add_option( "--entry", arguments->entry, "Entry of the table, 0 if not given" )
      ->type_name( "N" );
   verb->add_option( "--array", arguments->array, "Array element, 0 if not given" )
      ->type_name( "N" );
   verb
      ->add_option( "--identifier", arguments->identifier,
                    "Instance of the memory, 0 if not given" )
      ->type_name( "N" );
   verb->add_option( "field=value", arguments->fields,
                     "Fields to set; a value is decimal, or hexadecimal after 0x" );
   describe( *verb,
             "Prints the image as bytes, entry byte 0 first, and as 32-bit words, and the entry's "
             "address. Fields that are not given are 0, but for the tag. Fields are written in the "
             "given order; where two overlap the later one wins.\n\n" +
                chipTypesParagraph(),
             "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 --array 2 --identifier 1 "
             "action=0x12345" );
   return { verb, [arguments]( Output& output ) { output.write( encode( *arguments ) ); } };
}

} // namespace Vorn
