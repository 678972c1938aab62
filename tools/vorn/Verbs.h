// The four verbs. Each fails with an Error, before anything of the failing part is written.
#pragma once

#include "Io.h"
#include "Plan.h"

#include <string>
#include <vector>

namespace Vorn {

// The lines of `vorn tables`.
std::string tables();

struct EncodeArguments {
   PairText pair;
   std::string entry = "0";
   std::string array = "0";
   std::string identifier = "0";
   std::vector<std::string> fields; // "name=value"
};

// The lines of `vorn encode`.
std::string encode( const EncodeArguments& arguments );

struct DecodeArguments {
   PairText pair;
   std::vector<std::string> image; // hexadecimal digits, in any number of pieces
   bool json = false;
};

// The lines of `vorn decode`.
std::string decode( const DecodeArguments& arguments );

// Turns the lines of the file, or of standard input for "-", into lines of `output`. The lines
// before a bad one are given to `output` before the Error is thrown.
void program( const std::string& path, Output& output );

} // namespace Vorn
