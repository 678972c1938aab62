// `vorn tables`: what the registry holds.
#include "Arguments.h"
#include "Chips.h"
#include "Text.h"
#include "Verbs.h"

#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <set>

namespace Vorn {

namespace {

std::string listed( const std::set<U32>& numbers ) {
   std::string result;
   for( const U32 number : numbers ) {
      result.append( result.empty() ? "" : "," ).append( std::to_string( number ) );
   }
   return result;
}

std::vector<std::string> rowOf( std::string_view table ) {
   const auto pairs = pairsOf( table );
   bool isTable = true;
   std::set<U32> widths;
   std::set<U32> entries;
   for( const ChipVariants& pair : pairs ) {
      for( const U32 variant : pair.variants ) {
         const auto info = Hardware::pairInfo( table, pair.chip, static_cast<U8>( variant ) );
         isTable = info->isTable;
         widths.insert( info->width );
         entries.insert( info->entries );
      }
   }
   return { std::string( table ),
            isTable ? "table" : "register",
            std::to_string( Hardware::classFields( table ).size() ),
            listed( widths ),
            listed( entries ),
            textOf( pairs ) };
}

std::string tables() {
   std::vector<std::vector<std::string>> rows{ { "name", "kind", "fields", "words", "entries",
                                                 "chip types: variants" } };
   for( const auto table : Hardware::classNames() ) {
      rows.push_back( rowOf( table ) );
   }
   constexpr Align columns[] = { Align::left, Align::left, Align::right,
                                 Align::left, Align::left, Align::left };
   return columnsOf( columns, rows );
}

} // namespace

Verb addTables( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "tables", "List the tables and registers" );
   describe( *verb,
             "Prints a line for each table or register after a line of headings: its name and "
             "kind, how many fields it has, its width in 32-bit words and its number of entries "
             "(each as a list where chip types differ), and the numbers of its chip types with "
             "their variants.\n\n" +
                chipTypesParagraph(),
             "  vorn tables" );
   return { verb, []( Output& output ) { output.write( tables() ); } };
}

} // namespace Vorn
