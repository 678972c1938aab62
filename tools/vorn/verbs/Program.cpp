// `vorn program`: JSON lines that name entries and fields into JSON lines with image and address.
#include "verbs/Program.h"

#include "Arguments.h"
#include "Progress.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Record.h>
#include <Vorn/Value.h>

#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

namespace Vorn {

void program( const ProgramArguments& arguments, Output& output ) {
   const U64 count = parseIndex( arguments.count, "count", ~U64( 0 ) );
   RecordComposer composer;
   const Layout* last = nullptr;
   std::string made;
   Progress progress;
   U64 entries = 0;
   LineReader reader( arguments.path, [&] {
      output.flush();
      if( const U64 size = reader.size() ) {
         progress.show( reader.bytesRead(), size, entries );
      } else {
         progress.show( entries, count, entries );
      }
   } );
   for( std::string_view line; reader.next( line ); ) {
      if( line.find_first_not_of( " \t\r" ) == std::string_view::npos ) {
         continue;
      }
      made.clear();
      try {
         const Composed entry = composer.compose( line );
         if( &entry.layout != last ) {
            last = &entry.layout;
            traceView( *last );
         }
         arguments.form( made, entry );
      } catch( const Error& error ) {
         throw Error( reader.place() + ':' + std::to_string( composer.column() ), error.message() );
      }
      output.write( made );
      ++entries;
   }
}

Verb addProgram( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "program", "Compose images for JSON lines" );
   const auto arguments = std::make_shared<ProgramArguments>();
   verb->add_option( "FILE", arguments->path, "File of JSON lines, - for standard input" )
      ->required();
   static constexpr std::string_view forms[] = { "json", "bytes", "words" };
   addForm( *verb, arguments->form, forms );
   verb
      ->add_option( "--count", arguments->count,
                    "Entries to expect of a pipe, for the progress line" )
      ->type_name( "N" );
   describe(
      *verb,
      "Reads a JSON object from each line that is not blank, decompressed where gzip or zstd "
      "has compressed the file:\n"
      "  \"table\", \"chip\"                   names; the chip type also by number\n"
      "  \"variant\"                         0 if not given\n"
      "  \"entry\", \"array\", \"identifier\"  0 if not given\n"
      "  \"fields\"                          an object of field names and values\n"
      "  \"from\"                            an image to begin with instead of a fresh\n"
      "                                    entry, as `vorn encode --from` takes it\n"
      "\n"
      "Fields are written in the order of the line; where two overlap the later one wins.\n"
      "\n" +
         notationsParagraphs() +
         " In JSON, all but decimal numbers of at most 64 bits stand in quotes.\n\n"
         "Prints for each a JSON object in one line, with the image as bytes in "
         "hexadecimal, entry byte 0 first, and the address; \"address\", \"accessType\" and "
         "\"destBlock\" are null where there is no address. With --output bytes or words "
         "the line is the image alone, as those bytes or as 32-bit words.\n\n"
         "A bad line ends the program with exit status 1. The lines before it are printed, and "
         "nothing of the bad line or of any after it. A line holds at most " +
         std::to_string( LineReader::longest ) +
         " bytes.\n\n"
         "If standard error is a terminal and standard output isn't, a line there shows the "
         "progress of a file, or of a pipe with --count.",
      "  echo '{\"table\":\"TcamActionTable\",\"chip\":\"BCM88690_B0\",\"entry\":5,"
      "\"fields\":{\"action\":\"0x12345\"}}' | vorn program -\n"
      "  vorn program entries.jsonl --output bytes > images.txt" );
   return { verb, [arguments]( Output& output ) { program( *arguments, output ); } };
}

} // namespace Vorn
