// Composed entries from lines of JSON or rows of CSV.
#pragma once

#include "Io.h"
#include "forms/EntryForms.h"

#include <Vorn/Rows.h>

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Vorn {

struct ProgramArguments {
   std::vector<std::string> paths; // of the files, "-" for standard input
   EntryForm form = formNamed( "json" );
   std::string count = "0";        // of entries in a pipe; 0 if it is not known
   std::optional<RowOptions> rows; // nothing: the files are lines of JSON, not CSV
   bool allowsRepeats = false;     // two entries at one place are no Error
   bool keepsGoing = false;        // after a bad line
};

// Prints the entry of each line of the files. The output for the lines before a bad one is passed
// to `output` before the Error is thrown. If it keeps going, Errors are reported on standard error,
// and it ends in HasFailed.
void program( const ProgramArguments& arguments, Output& output );

// Adds --allow-repeats and --keep-going.
void addRecords( CLI::App& verb, ProgramArguments& arguments );

// Requires that standard input is among the files at most once; otherwise wrong usage, as CLI11
// throws it.
void requireOneInput( const std::vector<std::string>& paths );

// What the help says of CSV, and of lines that write to the same address.
std::string rowsParagraph();
std::string repeatsParagraph();

} // namespace Vorn
