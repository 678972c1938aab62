// `vorn export`: layouts for other programs.
#include "Arguments.h"
#include "Verbs.h"
#include "forms/Exports.h"

#include <Vorn/Chip.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>

namespace Vorn {

namespace {

using ExportForm = std::string ( * )( std::span<const Layout> layouts );

constexpr std::string_view exportFormNames[] = { "c-header", "json-schema", "csv" };
constexpr ExportForm exportForms[] = { cHeader, recordSchema, layoutCsv };

struct ExportArguments {
   PairText pair;
   bool all = false;
   ExportForm form = nullptr;
};

std::vector<Layout> layoutsOf( const ExportArguments& arguments ) {
   if( !arguments.all ) {
      return { layoutOf( arguments.pair ) };
   }
   if( !arguments.pair.chip.empty() ) {
      return layoutsOn( chipOf( arguments.pair.chip ) );
   }
   std::vector<Layout> layouts;
   for( const Chip& chip : allChips() ) {
      const auto own = layoutsOn( chip );
      layouts.insert( layouts.end(), own.begin(), own.end() );
   }
   return layouts;
}

void checkSelection( const CLI::App& verb ) {
   if( verb.count( "--all" ) == 0 ) {
      if( verb.count( "TABLE" ) == 0 ) {
         throw CLI::RequiredError( "TABLE or --all" );
      }
      if( verb.count( "--chip" ) == 0 ) {
         throw CLI::RequiredError( "--chip" );
      }
      return;
   }
   for( const auto* const other : { "TABLE", "--variant" } ) {
      if( verb.count( other ) > 0 ) {
         throw CLI::ExcludesError( "--all", other );
      }
   }
}

} // namespace

VerbRun addExport( CLI::App& verb ) {
   const auto arguments = std::make_shared<ExportArguments>();
   addPair( verb, arguments->pair );
   verb.get_option( "TABLE" )->required( false );
   verb.get_option( "--chip" )->required( false );
   verb.add_flag( "--all", arguments->all,
                  "All tables and variants of the chip type, or of all chip types" );
   const auto take = [arguments]( const std::string& name ) {
      const auto found =
         std::find( std::begin( exportFormNames ), std::end( exportFormNames ), name );
      if( found == std::end( exportFormNames ) ) {
         throw CLI::ValidationError( "--format", "unknown format " + inQuotes( name ) +
                                                    suggestion( name, exportFormNames ) );
      }
      arguments->form = exportForms[found - std::begin( exportFormNames )];
   };
   verb.add_option_function<std::string>( "--format", take, "What to print" )
      ->required()
      ->type_name( listOf( exportFormNames, "|" ) );
   verb.final_callback( [&verb] { checkSelection( verb ); } );
   describe(
      verb,
      "c-header prints a C11 header for firmware: offset, width and mask of each field, "
      "and inline functions that get and set it in an array of bytes. It needs nothing but "
      "<stdint.h> and <stdbool.h>; its first comment says what it contains.\n\n"
      "json-schema prints a JSON Schema (draft 2020-12) of the records that `vorn "
      "program` takes for entries of these pairs, one record at a time. It knows the fields, "
      "their bounds and the notations of values; it takes an address only for a field that "
      "holds all its bits.\n\n"
      "csv prints a line of comma-separated values for each field of each pair after a line "
      "of headings. The variant is \"any\" where it is ignored; the tag is what a "
      "read-only field holds in every entry.\n\n" +
         chipTypesParagraph(),
      "  vorn export --format c-header LifTable --chip BCM88690_B0 --variant 3 > lif.h\n"
      "  vorn export --format json-schema --all --chip BCM88690_B0 > record.schema.json\n"
      "  vorn export --format csv --all > layouts.csv" );
   return
      [arguments]( Output& output ) { output.write( arguments->form( layoutsOf( *arguments ) ) ); };
}

} // namespace Vorn
