// `vorn address`: where an entry lies, or each of a range of entries.
#include "Arguments.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <memory>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

struct AddressArguments {
   PairText pair;
   IndexText index; // its entry may be a range
   bool json = false;
};

constexpr Align alignments[] = { Align::right, Align::right, Align::right,
                                 Align::right, Align::right, Align::right };

const std::vector<std::string> headings{ "entry",   "array",      "identifier",
                                         "address", "accessType", "destBlock" };

std::vector<std::string> rowOf( const EntryIndex& index, const Address& address ) {
   return { std::to_string( index.entry ),        std::to_string( index.array ),
            std::to_string( index.identifier ),   hexOf( address.schanAddress ),
            std::to_string( address.accessType ), std::to_string( address.destBlock ) };
}

// The first and the last entry of "5" or "5-7".
std::pair<U64, U64> rangeFrom( const std::string& text ) {
   const auto dash = text.find( '-', 1 );
   const auto entry = [&]( const std::string& number ) {
      return parseIndex( number, "entry", 0xffffffff );
   };
   if( dash == std::string::npos ) {
      const U64 only = entry( text );
      return { only, only };
   }
   const auto before = text.substr( 0, dash );
   const auto after = text.substr( dash + 1 );
   if( after.empty() ) {
      throw Error( "bad range " + inQuotes( text ) + " for entry; write it as first-last" );
   }
   const std::pair range( entry( before ), entry( after ) );
   if( range.second < range.first ) {
      throw Error( "range " + shown( text ) + " for entry ends before it begins; did you mean " +
                   shown( after ) + '-' + shown( before ) + '?' );
   }
   return range;
}

Address existing( const Layout& layout, const EntryIndex& index ) {
   if( const auto address = layout.address( index ) ) {
      return *address;
   }
   throw Error( layout.pairText() + " has no address" );
}

void address( const AddressArguments& arguments, Output& output ) {
   const Layout layout = layoutOf( arguments.pair );
   const auto [first, last] = rangeFrom( arguments.index.entry );
   EntryIndex index = indexOf( { "0", arguments.index.array, arguments.index.identifier } );
   // The last one first: it is the widest, and out of range if any is.
   index.entry = last;
   const auto widths =
      widthsOf( std::vector{ headings, rowOf( index, existing( layout, index ) ) } );
   if( !arguments.json ) {
      output.write( headingsOf( alignments, widths, headings ) );
   }
   for( index.entry = first; index.entry <= last; ++index.entry ) {
      const Address found = existing( layout, index );
      output.write( arguments.json ? addressLine( layout, index, found )
                                   : lineOf( alignments, widths, rowOf( index, found ) ) );
   }
}

} // namespace

VerbRun addAddress( CLI::App& verb ) {
   const auto arguments = std::make_shared<AddressArguments>();
   addPair( verb, arguments->pair );
   addIndex( verb, arguments->index );
   verb.get_option( "--entry" )
      ->description( "Entry of the table, or a range of entries; 0 if not given" )
      ->type_name( "N|N-M" );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for each entry" );
   describe(
      verb,
      "Prints a line for each entry after a line of headings: where the entry lies on the "
      "chip's S-channel, and the access type and destination block that go with the address. "
      "`vorn locate` answers the opposite question.\n\n" +
         chipTypesParagraph(),
      "  vorn address TcamActionTable --chip BCM88690_B0 --entry 5-7 --array 2" );
   return [arguments]( Output& output ) { address( *arguments, output ); };
}

} // namespace Vorn
