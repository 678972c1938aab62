// Composed entries from lines of JSON.
#pragma once

#include "Io.h"
#include "forms/EntryForms.h"

#include <string>

namespace Vorn {

struct ProgramArguments {
   std::string path; // of the lines, "-" for standard input
   EntryForm form = formNamed( "json" );
   std::string count = "0"; // of entries in a pipe; 0 if it is not known
};

// Prints a line for each line of the file. The output for the lines before a bad one is passed to
// `output` before the Error is thrown.
void program( const ProgramArguments& arguments, Output& output );

} // namespace Vorn
