// The whole command line: its verbs and what they are given.
#pragma once

#include "Io.h"

#include <Vorn/Error.h>

#include <exception>
#include <string>

namespace Vorn {

// Wrong usage, which ends the program with status 2.
class UsageError : public Error {
public:
   using Error::Error;
};

// Thrown at the end of a verb that has found differences, which ends the program with status 1.
class HasDifferences : public std::exception {};

// Thrown at the end of a verb that has kept going after bad input, which is reported already: the
// status is 1.
class HasFailed : public std::exception {};

// Does what the arguments say, of which the first is the program's own name. What was printed
// before an exception is written, too.
void runCommandLine( int argc, const char* const* argv, const std::string& version,
                     Output& output );

} // namespace Vorn
