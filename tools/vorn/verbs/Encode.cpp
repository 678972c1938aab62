// `vorn encode`: one entry image from fields on the command line.
#include "verbs/Encode.h"

#include "Arguments.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <memory>

namespace Vorn {

namespace {

void setField( Composer& composer, std::string_view argument ) {
   const auto equals = argument.find( '=' );
   if( equals == std::string_view::npos ) {
      throw Error( "bad argument " + inQuotes( argument ) + "; write a field as name=value" );
   }
   const auto name = argument.substr( 0, equals );
   const auto given = argument.substr( equals + 1 );
   if( given == maskWord ) {
      composer.fill( composer.open( name ) );
   } else if( const Value value = parseValue( given, name ); !composer.holds( name, value ) ) {
      composer.set( composer.open( name ), value, given );
   }
}

// Begins the entry with the image that is given.
void beginFrom( Composer& composer, const EncodeArguments& arguments ) {
   try {
      const Image from = imageOf( *arguments.from, arguments.fromFormat );
      requirePair( composer.layout(), from );
      composer.reset( from.bytes );
   } catch( const Error& error ) {
      throw Error( "--from: " + error.message() );
   }
}

} // namespace

std::string encode( const EncodeArguments& arguments ) {
   const Layout layout = layoutOf( arguments.pair );
   const EntryIndex index = indexOf( arguments.index );
   const auto address = layout.address( index );
   Composer composer( layout, Overlap::laterHolds );
   if( arguments.from ) {
      beginFrom( composer, arguments );
   }
   for( const auto& field : arguments.fields ) {
      setField( composer, field );
   }
   std::string text;
   arguments.form( text, { layout, index, address, composer.image() } );
   return text;
}

Verb addEncode( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "encode", "Compose the image of one entry" );
   const auto arguments = std::make_shared<EncodeArguments>();
   addPair( *verb, arguments->pair );
   addIndex( *verb, arguments->index );
   verb->add_option( "--from", arguments->from, "Image to begin with, a fresh entry if not given" )
      ->type_name( "IMAGE" );
   addImageFormat( *verb, arguments->fromFormat );
   static constexpr std::string_view forms[] = { "text", "bytes", "words", "json" };
   addForm( *verb, arguments->form, forms );
   verb
      ->add_flag_callback(
         "--json", [arguments] { arguments->form = formNamed( "json" ); },
         "The same as --output json" )
      ->excludes( verb->get_option( "--output" ) );
   verb->add_option( "field=value", arguments->fields, "Fields to set, and their values or mask" );
   describe( *verb,
             "Prints the image as bytes, entry byte 0 first, and as 32-bit words, and the entry's "
             "address; with --output only the bytes or the words, or a line of JSON as `vorn "
             "program` prints it.\n\n"
             "Fields that are not given are 0, except for the tag. With --from, they and all bits "
             "between fields are those of the image, which must be as long as an entry and have "
             "the pair's tag; `vorn decode --help` explains how an image may be written. Fields "
             "are written in the given order; where two overlap the later one wins.\n\n" +
                notationsParagraphs() + "\n\n" + chipTypesParagraph(),
             "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 --array 2 action=0x12345\n"
             "  vorn encode TcamBankIpv4Tt --chip 10 --output bytes ipv4Dip=10.0.0.1 vrf=mask\n"
             "  vorn encode EgressPerPortTable --chip 10 --from 400100000000000000000000 "
             "vlanDomain=6" );
   return { verb, [arguments]( Output& output ) { output.write( encode( *arguments ) ); } };
}

} // namespace Vorn
