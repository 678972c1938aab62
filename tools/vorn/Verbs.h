// The verbs: what each takes on the command line, and what it does with it.
#pragma once

#include "Io.h"

#include <Vorn/Layout.h>

#include <functional>
#include <span>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace Vorn {

// Performs a verb with the arguments that parsing has left. Fails with an Error, before anything of
// the failing part is given to the output.
using VerbRun = std::function<void( Output& output )>;

// Each adds a verb's arguments to its part of the command line; they live as long as the VerbRun.
VerbRun addTables( CLI::App& verb );
VerbRun addField( CLI::App& verb );
VerbRun addEncode( CLI::App& verb );
VerbRun addDecode( CLI::App& verb );
VerbRun addDiff( CLI::App& verb );
VerbRun addStats( CLI::App& verb );
VerbRun addProgram( CLI::App& verb );
VerbRun addAddress( CLI::App& verb );
VerbRun addLocate( CLI::App& verb );
VerbRun addIdentify( CLI::App& verb );
VerbRun addLayout( CLI::App& verb );
VerbRun addReference( CLI::App& verb );
VerbRun addExport( CLI::App& verb );
VerbRun addExplore( CLI::App& verb );

// A verb as the help lists it.
struct ListedVerb {
   const char* name;
   const char* purpose;
   std::function<VerbRun( CLI::App& verb )> add;
};

// A verb on the command line, without a `run` if no word names it.
struct Verb {
   CLI::App* app;
   VerbRun run;
};

// The words of a command line after the program's name.
using CommandWords = std::vector<std::string>;

// Adds the verbs, but the arguments only of those that one of the words names, as most of a start
// would be spent on the others. Words that are to be completed may be about any verb.
std::vector<Verb> addVerbs( CLI::App& commandLine, std::span<const ListedVerb> verbs,
                            const CommandWords& words );

// These two have other verbs as their arguments.
VerbRun addTrace( CLI::App& verb, std::span<const ListedVerb> verbs, const CommandWords& words );
VerbRun addComplete( CLI::App& verb );
constexpr auto completeName = "complete";

// The library's own view of the pair, where `vorn trace` has switched its trace on: shows how it is
// made and what it says of each field, which the codec works out without views.
void traceView( const Layout& layout );

// Whether `vorn trace` has switched the trace on.
bool isTracing();

// Performs the verbs that parsing has found on the command line.
void runParsed( std::span<const Verb> verbs, Output& output );

} // namespace Vorn
