// `vorn program`: JSON lines that name entries and fields into JSON lines with image and address.
#include "verbs/Program.h"

#include "Arguments.h"
#include "Pipeline.h"
#include "Progress.h"
#include "QuickRecords.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Compose.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Record.h>
#include <Vorn/Value.h>

#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

// Whole lines of the input, and what has been made of them.
struct Lines {
   std::string text; // and QuickRecords::padding bytes
   std::size_t size = 0;
   U64 number = 0; // of the first one
   std::string made;
   U64 entries = 0;
   U64 bytesRead = 0;          // of the file, up to their end
   std::optional<Error> error; // of the line after those that `made` is of
};

// Composes the entries of lines: the plain ones quickly, the others by the careful parser, which
// also says what is wrong with a bad one and where.
class Composing {
public:
   Composing( EntryForm form, std::string name ) : form_( form ), name_( std::move( name ) ) {}

   void compose( Lines& lines ) {
      U64 number = lines.number;
      for( std::string_view rest( lines.text.data(), lines.size ); !rest.empty(); ++number ) {
         const auto end = std::min( rest.find( '\n' ), rest.size() );
         const auto line = rest.substr( 0, end );
         rest.remove_prefix( std::min( end + 1, rest.size() ) );
         const auto place = [&] { return name_ + ':' + std::to_string( number ); };
         if( line.size() > ByteLines::longest ) {
            lines.error.emplace( place(), "the line is longer than " +
                                             std::to_string( ByteLines::longest ) + " bytes" );
            return;
         }
         if( line.find_first_not_of( " \t\r" ) == std::string_view::npos ) {
            continue;
         }
         try {
            const auto plain = quick_.compose( line );
            append( lines.made, plain ? *plain : careful_.compose( line ) );
            ++lines.entries;
         } catch( const Error& error ) {
            lines.error.emplace( place() + ':' + std::to_string( careful_.column() ),
                                 error.message() );
            return;
         }
      }
   }

private:
   void append( std::string& made, const Composed& entry ) {
      if( &entry.layout != last_ ) {
         last_ = &entry.layout;
         traceView( *last_ );
      }
      form_( made, entry );
   }

   EntryForm form_;
   std::string name_; // of the file
   QuickRecords quick_;
   RecordComposer careful_;
   const Layout* last_ = nullptr;
};

} // namespace

void program( const ProgramArguments& arguments, Output& output ) {
   const U64 count = parseIndex( arguments.count, "count", ~U64( 0 ) );
   Progress progress;
   U64 entries = 0;
   U64 bytesRead = 0;
   const auto finish = [&]( Lines& lines ) {
      output.write( lines.made );
      entries += lines.entries;
      bytesRead = lines.bytesRead;
      if( lines.error ) {
         throw *lines.error;
      }
   };
   std::function<void()> beforeRead = [] {};
   FileBytes bytes( arguments.path, [&] { beforeRead(); } );
   std::vector<std::unique_ptr<Composing>> composing( Pipeline<Lines>::mostThreads );
   const auto work = [&]( Lines& lines, std::size_t thread ) {
      if( !composing[thread] ) {
         composing[thread] = std::make_unique<Composing>( arguments.form, bytes.name() );
      }
      composing[thread]->compose( lines );
   };
   Pipeline<Lines> pipeline( work, finish );
   // What has been read is answered before there is a wait for more.
   beforeRead = [&] {
      if( !bytes.isReady() ) {
         pipeline.drain();
         output.flush();
      }
      if( const U64 size = bytes.size() ) {
         progress.show( bytesRead, size, entries );
      } else {
         progress.show( entries, count, entries );
      }
   };
   ByteLines input( bytes );
   const bool isTraced = isTracing();
   U64 number = 1;
   for( bool isEnd = false; !isEnd; ) {
      isEnd = !input.readMore();
      const auto rest = input.rest();
      const auto last = rest.rfind( '\n' );
      const auto size = isEnd || rest.size() > 2 * ByteLines::longest ? rest.size() : last + 1;
      if( size == 0 ) {
         continue;
      }
      Lines lines;
      lines.text.reserve( size + QuickRecords::padding );
      lines.text.assign( rest.data(), size );
      lines.text.resize( size + QuickRecords::padding );
      lines.size = size;
      lines.number = number;
      lines.bytesRead = bytes.bytesRead();
      const auto ends = static_cast<U64>( std::count( rest.begin(), rest.begin() + size, '\n' ) );
      number += ends;
      input.skip( size, ends );
      // Small pieces are those of a pipe that somebody writes to line by line.
      constexpr std::size_t enough = 1 << 15;
      const bool isMany = size >= enough && lines.number > 1 && !isTraced;
      pipeline.give( std::move( lines ), isMany );
   }
   pipeline.drain();
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
