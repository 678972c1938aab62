// `vorn decode`: the fields of entry images.
#include "verbs/Decode.h"

#include "Arguments.h"
#include "Verbs.h"

#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <CLI/CLI.hpp>

#include <memory>

namespace Vorn {

namespace {

// Does a step; its Errors begin with --changed-from.
template<class Step>
void within( Step step ) {
   try {
      step();
   } catch( const Error& error ) {
      throw Error( "--changed-from: " + error.message() );
   }
}

// Requires that the image can be compared with those of the layout.
void requireComparable( const Image& changedFrom, const Layout& layout ) {
   within( [&] {
      requirePair( layout, changedFrom );
      layout.requireFields( changedFrom.bytes );
   } );
}

} // namespace

void decode( const DecodeArguments& arguments, Output& output ) {
   Image changedFrom;
   if( arguments.changedFrom ) {
      within( [&] { changedFrom = imageOf( *arguments.changedFrom, arguments.format ); } );
   }
   DumpWalk walk( arguments, output );
   const DumpReader& reader = walk.reader();
   ImagePrinter printer( arguments.form, !reader.isOfOnePair() );
   const auto fields = walk.fields();
   if( fields ) {
      printer.choose( *fields );
   }
   printer.provide( reader.layouts() );
   const Layout* last = nullptr;
   const auto begin = [&]( const Layout& layout ) {
      if( arguments.changedFrom ) {
         requireComparable( changedFrom, layout );
      }
      traceView( layout );
      last = &layout;
   };
   if( reader.own() ) {
      begin( *reader.own() );
   }
   walk.onFile = [&]( const std::string& name ) { printer.nameFile( name ); };
   walk.takesBlocks = !arguments.changedFrom && !isTracing();
   walk.lineFor = [&]( const Layout& layout ) { return printer.lineFor( layout ); };
   walk.onLines = [&]( std::string_view lines ) {
      output.write( printer.header() );
      output.write( lines );
   };
   walk.run( [&]( const DumpEntry& entry ) {
      if( entry.layout != last ) {
         begin( *entry.layout );
      }
      output.write( printer.print( { entry, changedFrom.bytes } ) );
   } );
   output.write( printer.header() );
   walk.finish( "printed" );
}

namespace {

void addForms( CLI::App& verb, DecodeForm& form ) {
   const auto add = [&]( const char* name, DecodeForm chosen, const char* text ) {
      return verb.add_flag_callback(
         name, [&form, chosen] { form = chosen; }, text );
   };
   CLI::Option* const json = add( "--json", DecodeForm::json, "Print a JSON object per image" );
   CLI::Option* const line =
      add( "--single-line", DecodeForm::singleLine, "Print name=value pairs, one line per image" );
   CLI::Option* const csv =
      add( "--csv", DecodeForm::csv, "Print the names once, then a row of values per image" );
   json->excludes( line )->excludes( csv );
   line->excludes( csv );
}

} // namespace

VerbRun addDecode( CLI::App& verb ) {
   struct Given {
      DumpLine line;
      DecodeArguments arguments;
   };
   const auto given = std::make_shared<Given>();
   DecodeArguments* const arguments = &given->arguments;
   verb.add_option( "TABLE", given->line.pair.table,
                    "Name of the table, as `vorn tables` prints it" );
   verb.add_option( "IMAGE", arguments->image,
                    "The image, files of images, or - for standard input" );
   verb.add_option( "--file", arguments->paths, "Files of images, - for standard input" )
      ->type_name( "FILE" );
   addDump( verb, given->line.pair, *arguments );
   addChoice( verb, *arguments );
   verb
      .add_option( "--changed-from", arguments->changedFrom,
                   "Print only the fields that differ from this image, old and new" )
      ->type_name( "IMAGE" );
   addForms( verb, arguments->form );
   verb.get_option( "--csv" )->excludes( verb.get_option( "--changed-from" ) );
   verb.callback( [given] { given->line.completeInto( given->arguments ); } );
   describe(
      verb,
      imagesParagraphs() +
         "\n\nAn argument that is no image but names a file is read as with --file; one that is "
         "both is an image, and a note says so. The form of a file, or of standard input (-), is "
         "recognised by the first line, and compression with gzip or zstd by the first bytes. What "
         "isn't text is binary. The rows of `hexdump -C`, `hexdump`, `xxd` and `od -tx4` are a "
         "dump, and so are binary files, `xxd -p` with --image-format stream, and `od -v -An -tx4` "
         "with --image-format words: entries one after another, whose bytes are split by the "
         "entry's length, from entry 0 or --first-entry on; offsets that begin elsewhere are a "
         "warning if --first-entry isn't given. Bytes left over are an error. Every other line is "
         "an image, which has exactly the bytes of an entry or those up to the end of the last "
         "field, perhaps rounded up to 4 or 8 bytes; in CSV the header names the column "
         "\"image\". # begins a comment.\n\n"
         "0x and more than eight digits in one piece may be bytes or one number, its highest "
         "digit first; if the tag doesn't decide, --image-format must: bytes or number.\n\n"
         "An image may be preceded by its pair, TABLE CHIP VARIANT and a colon, or by its "
         "address, 0x and a colon. A JSON object and the columns of CSV may have \"table\", "
         "\"chip\", \"variant\", \"entry\", \"array\", \"identifier\" and \"address\". TABLE and "
         "--chip may then be left out; if given, they must agree; an address needs only --chip. "
         "The output of `vorn encode` and `vorn program` can be piped into `vorn decode -`.\n\n"
         "Without --variant the tag decides, if the table has tags. With it, a tag that "
         "contradicts it is a warning, with --strict an error. Entries of zeroes that fit no tag "
         "are empty: they are left out and counted.\n\n"
         "Fields are in order of offset; with --single-line, --json and --csv in declared order. "
         "Values are hexadecimal. With --csv they are decimal up to a width of 64 bits, so that "
         "readers of data frames take them as numbers, and 0x and hexadecimal digits beyond; with "
         "--json they are numbers up to 53 bits, which every reader can hold, and such strings "
         "beyond.\n\n"
         "The place of an entry comes before its fields, as far as it is known: entry, array, "
         "identifier and address. --json and --csv add table, chip and variant; what is "
         "unknown is null or empty. The columns of --csv are the fields that any variant of the "
         "table has on the chip type, or those of --variant; a cell is empty if the entry's "
         "variant "
         "lacks the field. `vorn program` takes the output of --json.\n\n" +
         whereParagraphs() +
         "\n\n"
         "A bad image ends the program with exit status 1. The images before it are printed, and "
         "nothing of it or of any after it. With --keep-going bad images are reported on standard "
         "error and the others printed; the exit status is still 1. With several files, each line "
         "of the other forms begins with the name of its file and a colon; --json has a "
         "\"file\", --csv such a column.\n\n" +
         chipTypesParagraph(),
      "  vorn decode TcamActionTable --chip BCM88690_B0 4523010000000000\n"
      "  vorn program entries.jsonl | vorn decode --single-line -\n"
      "  vorn decode LifTable --chip BCM88690_B0 --csv --file lif.bin\n"
      "  vorn decode LifTable --chip 10 --fields vsi,vlan* --where 'vsi >= 2000' --file lif.bin" );
   return [given]( Output& output ) { decode( given->arguments, output ); };
}

} // namespace Vorn
