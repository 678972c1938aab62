// `vorn program`: turns JSON lines or CSV that name entries and fields into lines with image and
// address.
#include "verbs/Program.h"

#include "Arguments.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Dump.h>
#include <Vorn/Text.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace Vorn {

VerbRun addProgram( CLI::App& verb ) {
   const auto arguments = std::make_shared<ProgramArguments>();
   verb.add_option( "FILE", arguments->paths, "Files of JSON lines or CSV, - for standard input" )
      ->required();
   verb.add_flag_callback(
      "--csv", [arguments] { arguments->rows.emplace(); }, "The files are CSV" );
   addRecords( verb, *arguments );
   static constexpr std::string_view forms[] = { "json", "bytes", "words" };
   addForm( verb, arguments->form, forms );
   verb
      .add_option( "--count", arguments->count,
                   "Entries to expect from a pipe, for the progress line" )
      ->type_name( "N" );
   verb.callback( [arguments] { requireOneInput( arguments->paths ); } );
   describe(
      verb,
      "Reads a JSON object from each line, except blank lines and comments, which # begins. Files "
      "compressed with gzip or zstd are decompressed. The keys:\n"
      "  \"table\", \"chip\"                   names; the chip type also by number\n"
      "  \"variant\"                         0 if not given\n"
      "  \"entry\", \"array\", \"identifier\"    0 if not given\n"
      "  \"fields\"                          an object of field names and values\n"
      "  \"from\"                            an image to begin with instead of a fresh\n"
      "                                    entry, as `vorn encode --from` takes it\n"
      "\n"
      "Fields are written in the order of the line; where two overlap the later one wins. The "
      "output of `vorn decode --json` and of `vorn program` is accepted, too: an \"image\" is the "
      "image to begin with, \"address\" says which entry where \"entry\" doesn't, and null counts "
      "as not given.\n"
      "\n" +
         rowsParagraph() + "\n\n" + repeatsParagraph() + "\n\n" + notationsParagraphs() +
         " In JSON, all values but decimal numbers of at most 64 bits are in quotes.\n\n"
         "Prints a line of JSON for each entry, with the image as bytes in "
         "hexadecimal, entry byte 0 first, and the address; \"address\", \"accessType\" and "
         "\"destBlock\" are null where there is no address. With --output bytes or words "
         "the line is only the image, as those bytes or as 32-bit words.\n\n"
         "A bad line ends the program with exit status 1. The lines before it are printed, and "
         "nothing of the bad line or of any after it. With --keep-going it is reported on standard "
         "error, the lines after it are printed too, and the exit status is still 1. A line holds "
         "at most " +
         std::to_string( LineReader::longest ) +
         " bytes.\n\n"
         "If standard error is a terminal and standard output isn't, a line on it shows the "
         "progress of a file, or of a pipe with --count.",
      "  echo '{\"table\":\"TcamActionTable\",\"chip\":\"BCM88690_B0\",\"entry\":5,"
      "\"fields\":{\"action\":\"0x12345\"}}' | vorn program -\n"
      "  vorn program entries.jsonl --output bytes > images.txt\n"
      "  vorn program --csv ports.csv lifs.csv" );
   return [arguments]( Output& output ) { program( *arguments, output ); };
}

void addRecords( CLI::App& verb, ProgramArguments& arguments ) {
   verb.add_flag( "--allow-repeats", arguments.allowsRepeats,
                  "Accept lines that write to the same address" );
   verb.add_flag( "--keep-going", arguments.keepsGoing, "Go on after a bad line" );
}

void requireOneInput( const std::vector<std::string>& paths ) {
   if( std::count( paths.begin(), paths.end(), "-" ) > 1 ) {
      throw CLI::ValidationError( "FILE", "standard input is given twice" );
   }
}

std::string rowsParagraph() {
   return "The first row of a CSV file names the columns: fields, and as far as needed table, "
          "chip, variant, entry, array, identifier, address, image and from. Of two columns entry "
          "or address the second is a field, as some tables have one of that name. Each further "
          "row is an entry on a line of its own; an empty cell counts as not given. Cells may be "
          "quoted, and # begins a comment line. Fields that contradict each other in bits that "
          "they share are an error.";
}

std::string repeatsParagraph() {
   return "Two lines that write to the same address of a table's memory are an error that names "
          "both, unless --allow-repeats is given. Finding them takes 8 bytes of memory per entry "
          "where entries are adjacent, up to 120 where they are scattered.";
}

} // namespace Vorn
