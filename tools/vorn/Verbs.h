// The verbs: what each takes on the command line, and what it does with it.
#pragma once

#include "Io.h"

#include <functional>

namespace CLI {
class App;
}

namespace Vorn {

struct Verb {
   CLI::App* app; // its part of the command line

   // Does it, with what parsing has left in the verb's arguments. Fails with an Error, before
   // anything of the failing part is given to the output.
   std::function<void( Output& output )> run;
};

// Each adds a verb to the command line; its arguments live as long as its `run`.
Verb addTables( CLI::App& commandLine );
Verb addEncode( CLI::App& commandLine );
Verb addDecode( CLI::App& commandLine );
Verb addProgram( CLI::App& commandLine );

} // namespace Vorn
