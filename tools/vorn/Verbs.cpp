#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace Vorn {

namespace {

bool needsArguments( const ListedVerb& verb, const CommandWords& words ) {
   return std::any_of( words.begin(), words.end(), [&]( const std::string& word ) {
      return word == verb.name || word == completeName;
   } );
}

} // namespace

std::vector<Verb> addVerbs( CLI::App& commandLine, std::span<const ListedVerb> verbs,
                            const CommandWords& words ) {
   std::vector<Verb> added;
   for( const ListedVerb& verb : verbs ) {
      CLI::App* const app = commandLine.add_subcommand( verb.name, verb.purpose );
      app->group( "Verbs" );
      added.push_back( { app, needsArguments( verb, words ) ? verb.add( *app ) : VerbRun() } );
   }
   return added;
}

void runParsed( std::span<const Verb> verbs, Output& output ) {
   for( const Verb& verb : verbs ) {
      if( verb.app->parsed() ) {
         verb.run( output );
      }
   }
}

} // namespace Vorn
