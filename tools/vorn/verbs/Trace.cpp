// `vorn trace`: another verb, with what the library traces of it.
#include "Arguments.h"
#include "Verbs.h"

#include <Hardware/Registry.h>
#include <Oru/Trace.h>

#include <CLI/CLI.hpp>

namespace Vorn {

namespace {

constexpr auto traceName = "KelvarVornTunnelMetaInfo";

} // namespace

bool isTracing() {
   static const Oru::TraceHandle handle( traceName, true );
   return handle.enabled( Oru::TraceFacility::level8 );
}

void traceView( const Layout& layout ) {
   if( !isTracing() ) {
      return;
   }
   const auto view = Hardware::stringObj( layout.table(), layout.chip().type(), layout.variant() );
   for( const auto& field : Hardware::classFields( layout.table() ) ) {
      if( view->isFieldValid( field.identifier ) ) {
         view->fieldOffset( field.identifier );
         view->fieldWidth( field.identifier );
      }
   }
}

VerbRun addTrace( CLI::App& verb, std::span<const ListedVerb> verbs, const CommandWords& words ) {
   verb.require_subcommand( 1 );
   const auto traced = addVerbs( verb, verbs, words );
   describe(
      verb,
      "Does what the verb does, and prints a line to standard error for each call of the "
      "library that traces: at level 8 every call of an accessor, at level 0 a failed look-up "
      "of an address. Standard output and the exit status are the verb's own.",
      "  vorn trace decode TcamActionTable --chip BCM88690_B0 4523010000000000" );
   return [traced]( Output& output ) {
      for( const int level : { 0, 8 } ) {
         Oru::traceLevelIs( traceName, level, true );
      }
      runParsed( traced, output );
   };
}

} // namespace Vorn
