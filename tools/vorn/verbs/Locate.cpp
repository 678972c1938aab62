// `vorn locate`: the memories, entries and array elements at an address.
#include "Arguments.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Error.h>
#include <Vorn/Locate.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <utility>

namespace Vorn {

namespace {

struct LocateArguments {
   std::string chip;
   std::string address;
   std::optional<std::string> destBlock;
   bool json = false;
};

U64 parseUpTo( U64 largest, const std::string& text, const std::string& name ) {
   const U64 number = parseIndex( text, name, largest );
   if( number > largest ) {
      throw Error( name + ' ' + shown( text ) + " is out of range; it is at most " +
                   std::to_string( largest ) );
   }
   return number;
}

// A line for each place; variants that have it in common share the line.
std::string linesOf( const std::vector<Location>& places ) {
   std::vector<std::pair<Location, ChipVariants>> lines;
   for( const Location& found : places ) {
      const auto same = std::find_if( lines.begin(), lines.end(), [&]( const auto& line ) {
         return line.first.layout.table() == found.layout.table() &&
                line.first.index == found.index && line.first.address == found.address;
      } );
      auto& line =
         same != lines.end()
            ? *same
            : lines.emplace_back(
                 found,
                 ChipVariants{ found.layout.chip().number, {}, !found.layout.info().hasVariants } );
      line.second.variants.push_back( found.layout.variant() );
   }
   std::vector<std::vector<std::string>> rows{ { "table", "variants", "entry", "array",
                                                 "identifier", "accessType", "destBlock" } };
   for( const auto& [found, variants] : lines ) {
      rows.push_back( { std::string( found.layout.table() ), variants.text(),
                        std::to_string( found.index.entry ), std::to_string( found.index.array ),
                        std::to_string( found.index.identifier ),
                        std::to_string( found.address.accessType ),
                        std::to_string( found.address.destBlock ) } );
   }
   constexpr Align columns[] = { Align::left,  Align::left,  Align::right, Align::right,
                                 Align::right, Align::right, Align::right };
   return tableOf( columns, rows );
}

std::string locate( const LocateArguments& arguments ) {
   const Chip& chip = chipOf( arguments.chip );
   const auto address = static_cast<U32>( parseUpTo( 0xffffffff, arguments.address, "address" ) );
   std::optional<U8> block;
   if( arguments.destBlock ) {
      block = static_cast<U8>( parseUpTo( 0xff, *arguments.destBlock, "dest-block" ) );
   }
   const auto places = locate( chip, address, block );
   for( const Location& found : places ) {
      traceView( found.layout );
   }
   if( !arguments.json ) {
      return linesOf( places );
   }
   std::string lines;
   for( const Location& found : places ) {
      lines += addressLine( found.layout, found.index, found.address );
   }
   return lines;
}

} // namespace

Verb addLocate( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "locate", "Print what lies at an address" );
   const auto arguments = std::make_shared<LocateArguments>();
   verb->add_option( "ADDRESS", arguments->address, "Address on the chip's S-channel" )->required();
   addChip( *verb, arguments->chip );
   verb->add_option( "--dest-block", arguments->destBlock, "Only what lies in this block" )
      ->type_name( "N" );
   verb->add_flag( "--json", arguments->json, "Print a JSON object for each variant and place" );
   describe(
      *verb,
      "Prints a line for each place that has the address, after a line of headings: memories "
      "in different blocks may have addresses in common, and so may the instances of one "
      "memory and the variants of a table. `vorn address` answers the opposite question.\n\n"
      "Where nothing lies at the address, the message names the nearest places around it "
      "and the exit status is 1.\n\n" +
         chipTypesParagraph(),
      "  vorn locate --chip BCM88690_B0 --dest-block 6 0x1101005" );
   return { verb, [arguments]( Output& output ) { output.write( locate( *arguments ) ); } };
}

} // namespace Vorn
