// The verbs: what each takes on the command line, and what it does with it.
#pragma once

#include "Io.h"

#include <Vorn/Layout.h>

#include <functional>
#include <span>

namespace CLI {
class App;
}

namespace Vorn {

struct Verb {
   CLI::App* app; // its part of the command line

   // Performs the verb with the arguments that parsing has left. Fails with an Error, before
   // anything of the failing part is given to the output.
   std::function<void( Output& output )> run;
};

// Each adds a verb to the command line; its arguments live as long as its `run`.
Verb addTables( CLI::App& commandLine );
Verb addField( CLI::App& commandLine );
Verb addEncode( CLI::App& commandLine );
Verb addDecode( CLI::App& commandLine );
Verb addDiff( CLI::App& commandLine );
Verb addStats( CLI::App& commandLine );
Verb addProgram( CLI::App& commandLine );
Verb addAddress( CLI::App& commandLine );
Verb addLocate( CLI::App& commandLine );
Verb addIdentify( CLI::App& commandLine );
Verb addLayout( CLI::App& commandLine );
Verb addReference( CLI::App& commandLine );
Verb addExport( CLI::App& commandLine );
Verb addExplore( CLI::App& commandLine );

using AddVerb = Verb ( * )( CLI::App& commandLine );

// These two have other verbs as their arguments.
Verb addTrace( CLI::App& commandLine, std::span<const AddVerb> verbs );
Verb addComplete( CLI::App& commandLine );

// The library's own view of the pair, where `vorn trace` has switched its trace on: shows how it is
// made and what it says of each field, which the codec works out without views.
void traceView( const Layout& layout );

// Whether `vorn trace` has switched the trace on.
bool isTracing();

// Performs the verbs that parsing has found on the command line.
void runParsed( std::span<const Verb> verbs, Output& output );

} // namespace Vorn
