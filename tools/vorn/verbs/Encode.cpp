// `vorn encode`: entry images from fields on the command line or in files of CSV.
#include "verbs/Encode.h"

#include "Arguments.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/EntryForms.h"
#include "verbs/Program.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>
#include <Vorn/Rows.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>

#include <unistd.h>

namespace Vorn {

namespace {

void setField( Composer& composer, std::string_view argument ) {
   const auto equals = argument.find( '=' );
   if( equals == std::string_view::npos ) {
      throw Error( "bad argument " + inQuotes( argument ) + "; write a field as name=value" );
   }
   const auto name = argument.substr( 0, equals );
   const auto given = argument.substr( equals + 1 );
   if( given == maskWord ) {
      composer.fill( composer.open( name ) );
   } else if( const Value value = parseValue( given, name ); !composer.holds( name, value ) ) {
      composer.set( composer.open( name ), value, given );
   }
}

// Begins the entry with the image that is given.
void beginFrom( Composer& composer, const EncodeArguments& arguments ) {
   try {
      const Image from = imageOf( *arguments.from, arguments.fromFormat );
      requirePair( composer.layout(), from );
      composer.reset( from.bytes );
   } catch( const Error& error ) {
      throw Error( "--from: " + error.message() );
   }
}

} // namespace

std::string encode( const EncodeArguments& arguments ) {
   const Layout layout = layoutOf( arguments.pair );
   const EntryIndex index = indexOf( arguments.index );
   const auto address = layout.address( index );
   Composer composer( layout, Overlap::laterHolds );
   if( arguments.from ) {
      beginFrom( composer, arguments );
   }
   for( const auto& field : arguments.fields ) {
      setField( composer, field );
   }
   std::string text;
   arguments.form( text, { layout, index, address, composer.image() } );
   return text;
}

std::string wrappedText( const std::string& text, std::size_t columns ) {
   std::string wrapped;
   for( std::string_view rest = text; !rest.empty(); ) {
      auto line = rest.substr( 0, rest.find( '\n' ) );
      rest.remove_prefix( std::min( line.size() + 1, rest.size() ) );
      const auto indent = std::string( line.find( ' ' ) + 1, ' ' );
      for( std::size_t room = columns; line.size() > room; room = columns - indent.size() ) {
         // The last blank before which a blank and the backslash have room.
         const auto end = line.rfind( ' ', room - 2 );
         wrapped.append( line.substr( 0, end ) ).append( " \\\n" ).append( indent );
         line.remove_prefix( end + 1 );
      }
      wrapped.append( line ) += '\n';
   }
   return wrapped;
}

namespace {

// What the command line has where the entries are those of files.
struct RowsLine {
   ProgramArguments program;
   bool isGiven = false;
};

// Finds out which words are TABLE and FILEs. Wrong usage throws as CLI11 does.
void completeRows( RowsLine& line, EncodeArguments& arguments ) {
   auto& [table, chip, variant] = arguments.pair;
   std::vector<std::string>& paths = line.program.paths;
   paths = std::move( arguments.fields );
   if( !isTable( table ) ) {
      if( Vorn::nearest( table, allTables() ) ) {
         tableNamed( table );
      }
      if( !table.empty() ) {
         paths.insert( paths.begin(), std::move( table ) );
      }
      table.clear();
   }
   if( paths.empty() ) {
      throw CLI::RequiredError( "FILE" );
   }
   for( const std::string& path : paths ) {
      if( path.find( '=' ) != std::string::npos && ::access( path.c_str(), F_OK ) != 0 ) {
         throw CLI::ValidationError( "--csv", "takes files, and no field such as " +
                                                 inQuotes( path ) +
                                                 "; fields are columns of the files" );
      }
   }
   requireOneInput( paths );
}

void encodeRows( const RowsLine& line, const EncodeArguments& arguments, bool hasVariant,
                 Output& output ) {
   const auto& [table, chip, variant] = arguments.pair;
   ProgramArguments program = line.program;
   RowOptions& rows = program.rows.emplace();
   rows.table = table;
   rows.chip = chip.empty() ? nullptr : &chipOf( chip );
   if( hasVariant ) {
      rows.variant = parseIndex( variant, "variant", 0xff );
   }
   if( rows.chip && !table.empty() && ( hasVariant || !variantsOn( table, rows.chip->number ) ) ) {
      layoutOf( arguments.pair ); // An unknown one is wrong before any row is.
   }
   program.form = arguments.form;
   Vorn::program( program, output );
}

} // namespace

VerbRun addEncode( CLI::App& verb ) {
   const auto arguments = std::make_shared<EncodeArguments>();
   const auto rows = std::make_shared<RowsLine>();
   addPair( verb, arguments->pair );
   verb.get_option( "TABLE" )->required( false );
   verb.get_option( "--chip" )->required( false );
   addIndex( verb, arguments->index );
   verb.add_option( "--from", arguments->from, "Image to begin with, a fresh entry if not given" )
      ->type_name( "IMAGE" );
   addImageFormat( verb, arguments->fromFormat );
   static constexpr std::string_view forms[] = { "text", "bytes", "words", "json" };
   addForm( verb, arguments->form, forms );
   verb
      .add_flag_callback(
         "--json", [arguments] { arguments->form = formNamed( "json" ); },
         "The same as --output json" )
      ->excludes( verb.get_option( "--output" ) );
   CLI::Option* const csv =
      verb.add_flag( "--csv", rows->isGiven, "Read the entries from rows of CSV files" );
   for( const char* const other : { "--entry", "--array", "--identifier", "--from" } ) {
      csv->excludes( verb.get_option( other ) );
   }
   addRecords( verb, rows->program );
   for( const char* const other : { "--allow-repeats", "--keep-going" } ) {
      verb.get_option( other )->needs( csv );
   }
   verb.add_option( "field=value", arguments->fields,
                    "Fields to set, with their values; with --csv instead files, - for "
                    "standard input" );
   verb.callback( [&verb, arguments, rows] {
      if( rows->isGiven ) {
         return completeRows( *rows, *arguments );
      }
      for( const char* const needed : { "TABLE", "--chip" } ) {
         if( verb.count( needed ) == 0 ) {
            throw CLI::RequiredError( needed );
         }
      }
   } );
   describe(
      verb,
      "Prints the image as bytes, entry byte 0 first, and as 32-bit words, and the entry's "
      "address; with --output only the bytes or the words, or a line of JSON as `vorn "
      "program` prints it.\n\n"
      "Fields that are not given are 0, except for the tag. With --from, they and all bits "
      "between fields are those of the image, which must be as long as an entry and have "
      "the pair's tag; `vorn decode --help` explains how an image may be written. Fields "
      "are written in the given order; where two overlap the later one wins. On a terminal "
      "long lines are wrapped at 80 columns.\n\n"
      "With --csv the entries are rows of CSV files. " +
         rowsParagraph() +
         " TABLE, --chip and --variant replace columns that are missing; rows must agree with "
         "them. The entries are printed one after another. " +
         repeatsParagraph() +
         " A bad row ends the program with exit status 1, "
         "after the rows before it; with --keep-going it is reported, and the rows after it "
         "are printed too.\n\n" +
         notationsParagraphs() + "\n\n" + chipTypesParagraph(),
      "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 --array 2 action=0x12345\n"
      "  vorn encode TcamBankIpv4Tt --chip 10 --output bytes ipv4Dip=10.0.0.1 vrf=mask\n"
      "  vorn encode EgressPerPortTable --chip 10 --from 400100000000000000000000 "
      "vlanDomain=6\n"
      "  vorn encode TcamActionTable --chip 10 --csv actions.csv --output json" );
   return [&verb, arguments, rows]( Output& output ) {
      if( rows->isGiven ) {
         return encodeRows( *rows, *arguments, verb.count( "--variant" ) > 0, output );
      }
      const std::string text = encode( *arguments );
      const bool isText = arguments->form == formNamed( "text" );
      output.write( isText && ::isatty( STDOUT_FILENO ) ? wrappedText( text ) : text );
   };
}

} // namespace Vorn
