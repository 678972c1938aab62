// `vorn locate`: the memories, entries and array elements at an address.
#include "Arguments.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/EntryForms.h"

#include <Vorn/Error.h>
#include <Vorn/Locate.h>
#include <Vorn/Pairs.h>
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
   std::vector<std::string> addresses; // each an address, a range, or "-"
   std::optional<std::string> destBlock;
   bool boundedOnly = false;
   bool json = false;
};

std::optional<U8> blockOf( const LocateArguments& arguments ) {
   if( !arguments.destBlock ) {
      return std::nullopt;
   }
   constexpr U64 largest = 0xff;
   const U64 block = parseIndex( *arguments.destBlock, "dest-block", largest );
   if( block > largest ) {
      throw Error( "dest-block " + shown( *arguments.destBlock ) +
                   " is out of range; it is at most " + std::to_string( largest ) );
   }
   return static_cast<U8>( block );
}

using Row = std::vector<std::string>;

// A row for each place at an address; variants with the same place share the row.
std::vector<Row> rowsOf( const std::vector<Location>& places ) {
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
   std::vector<Row> rows;
   for( const auto& [found, variants] : lines ) {
      rows.push_back( { std::string( found.layout.table() ), variants.text(),
                        std::to_string( found.index.entry ), std::to_string( found.index.array ),
                        std::to_string( found.index.identifier ),
                        std::to_string( found.address.accessType ),
                        std::to_string( found.address.destBlock ) } );
   }
   return rows;
}

// Prints the places of one address after another.
class Locating {
public:
   explicit Locating( const LocateArguments& arguments, Output& output )
      : locator_( chipOf( arguments.chip ), blockOf( arguments ), arguments.boundedOnly ),
        output_( output ), json_( arguments.json ) {
      if( arguments.addresses.size() > 1 || arguments.addresses.front() == "-" ||
          isRange( parseAddresses( arguments.addresses.front() ) ) ) {
         headings_.insert( headings_.begin(), "address" );
         alignments_.insert( alignments_.begin(), Align::right );
      }
   }

   // An Error where nothing lies in the range.
   void print( const AddressRange& range ) {
      U64 found = 0;
      for( auto address = locator_.next( range.first ); address && *address <= range.last;
           address = locator_.next( U64( *address ) + 1 ) ) {
         print( *address );
         ++found;
      }
      if( found == 0 ) {
         locator_.refuse( range );
      }
      if( found < range.count() ) {
         finish();
         note( "nothing lies at " + std::to_string( range.count() - found ) + " of the " +
               std::to_string( range.count() ) + " addresses from " + hexOf( range.first ) +
               " to " + hexOf( range.last ) );
      }
   }

   // Passes on what has been printed so far.
   void finish() {
      if( rows_.empty() ) {
         return;
      }
      auto widths = widthsOf( rows_ );
      for( std::size_t i = 0; i < widths.size(); ++i ) {
         widths[i] =
            std::max( { widths[i], headings_[i].size(), i < widths_.size() ? widths_[i] : 0 } );
      }
      if( widths_.empty() ) {
         output_.write( headingsOf( alignments_, widths, headings_ ) );
      }
      for( const Row& row : rows_ ) {
         output_.write( lineOf( alignments_, widths, row ) );
      }
      rows_.clear();
      widths_ = widths;
   }

private:
   static constexpr std::size_t most = 4096; // rows whose columns are aligned at once

   static bool isRange( const AddressRange& range ) { return range.first != range.last; }

   void print( U32 address ) {
      const auto places = locator_.at( address );
      for( const Location& found : places ) {
         traceView( found.layout );
      }
      explainUnbounded( places );
      if( json_ ) {
         for( const Location& found : places ) {
            output_.write( addressLine( found.layout, found.index, found.address ) );
         }
         return;
      }
      for( Row& row : rowsOf( places ) ) {
         if( headings_.size() > row.size() ) {
            row.insert( row.begin(), hexOf( address ) );
         }
         rows_.push_back( std::move( row ) );
      }
      if( rows_.size() >= most ) {
         finish();
      }
   }

   // Explains unbounded memories once, before the first such place.
   void explainUnbounded( const std::vector<Location>& places ) {
      if( isExplained_ || std::none_of( places.begin(), places.end(), []( const Location& found ) {
             return Memory( found.layout ).isUnbounded();
          } ) ) {
         return;
      }
      isExplained_ = true;
      std::vector<std::string_view> tables;
      for( const Memory& memory : locator_.memories() ) {
         const auto table = memory.layout().table();
         if( memory.isUnbounded() && ( tables.empty() || tables.back() != table ) ) {
            tables.push_back( table );
         }
      }
      note( "4294967295 entries mean that no size is stated: " + listOf( tables ) +
            " would have nearly every address; --bounded leaves such memories out" );
   }

   Locator locator_;
   Output& output_;
   bool json_;
   bool isExplained_ = false;
   std::vector<std::string> headings_{ "table",      "variants",   "entry",    "array",
                                       "identifier", "accessType", "destBlock" };
   std::vector<Align> alignments_{ Align::left,  Align::left,  Align::right, Align::right,
                                   Align::right, Align::right, Align::right };
   std::vector<Row> rows_;
   std::vector<std::size_t> widths_; // of the rows that are printed
};

// The addresses in the lines of standard input.
void locateLines( Locating& locating, Output& output ) {
   constexpr std::string_view blanks = " \t\r,";
   LineReader reader( "-", [&] {
      locating.finish();
      output.flush();
   } );
   for( std::string_view line; reader.next( line ); ) {
      const auto text = line.substr( 0, line.find( '#' ) );
      for( auto at = text.find_first_not_of( blanks ); at != std::string_view::npos; ) {
         const auto end = std::min( text.find_first_of( blanks, at ), text.size() );
         try {
            locating.print( parseAddresses( text.substr( at, end - at ) ) );
         } catch( const Error& error ) {
            locating.finish();
            throw Error( reader.place() + ':' + std::to_string( columnOf( line, at ) ),
                         error.message() );
         }
         at = text.find_first_not_of( blanks, end );
      }
   }
}

void locate( const LocateArguments& arguments, Output& output ) {
   // A bad address of the command line is reported before anything is printed.
   for( const std::string& address : arguments.addresses ) {
      if( address != "-" ) {
         parseAddresses( address );
      }
   }
   Locating locating( arguments, output );
   for( const std::string& address : arguments.addresses ) {
      if( address == "-" ) {
         locateLines( locating, output );
         continue;
      }
      try {
         locating.print( parseAddresses( address ) );
      } catch( const Error& ) {
         locating.finish();
         throw;
      }
   }
   locating.finish();
}

} // namespace

VerbRun addLocate( CLI::App& verb ) {
   const auto arguments = std::make_shared<LocateArguments>();
   verb
      .add_option( "ADDRESS", arguments->addresses,
                   "Addresses on the chip's S-channel, ranges of them, or - for standard input" )
      ->required();
   addChip( verb, arguments->chip );
   verb.add_option( "--dest-block", arguments->destBlock, "Only what lies in this block" )
      ->type_name( "N" );
   verb.add_flag( "--bounded", arguments->boundedOnly,
                  "Leave out memories whose number of entries isn't stated" );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for each variant and place" );
   describe(
      verb,
      "Prints a line for each place that has the address, after a line of headings: memories "
      "in different blocks may have addresses in common, and so may the instances of one "
      "memory and the variants of a table. `vorn address` answers the opposite question.\n\n"
      "Where nothing lies at the address, the message names the nearest places around it "
      "and the exit status is 1.\n\n"
      "Several addresses may be given, and ranges as FIRST-LAST: then each line begins with the "
      "address. In standard input they are separated by blanks, commas or ends of lines; # begins "
      "a comment. Addresses of a range at which nothing lies are counted on standard error.\n\n"
      "4294967295 entries mean that no number of entries is stated: the memory would have nearly "
      "every address. A note on standard error says so before such a memory is printed; --bounded "
      "leaves it out.\n\n" +
         chipTypesParagraph(),
      "  vorn locate --chip BCM88690_B0 --dest-block 6 0x1101005\n"
      "  vorn locate --chip BCM88690_B0 --bounded 0x1101000-0x110100f 0x65000c" );
   return [arguments]( Output& output ) { locate( *arguments, output ); };
}

} // namespace Vorn
