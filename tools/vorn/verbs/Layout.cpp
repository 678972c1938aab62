// `vorn layout`: the format of a table's entry, drawn and listed, and what changes between two.
#include "verbs/Layout.h"

#include "Arguments.h"
#include "Files.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/DifferenceForms.h"
#include "forms/DrawingText.h"
#include "forms/Json.h"

#include <Vorn/BitOrder.h>
#include <Vorn/Difference.h>
#include <Vorn/DrawingSvg.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Layout.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include <unistd.h>

namespace Vorn {

namespace {

const std::string bitNumbering =
   "Bit 0 is the least significant bit of byte 0. Each row is a 32-bit word of the entry, its most "
   "significant bit at the left.";
const std::string sharedBits = " Fields beside \"or\" share bits with those above them.";

// Whether the output is a terminal, and the locale says that it shows UTF-8.
bool isUnicodeTerminal() {
   for( const auto* const name : { "LC_ALL", "LC_CTYPE", "LANG" } ) {
      const char* const value = std::getenv( name );
      if( value && *value ) {
         const std::string_view locale( value );
         return ( locale.ends_with( "UTF-8" ) || locale.ends_with( "utf8" ) ) &&
                ::isatty( STDOUT_FILENO );
      }
   }
   return false;
}

BoxLines boxLinesFrom( const std::optional<std::string>& text ) {
   constexpr std::array<std::string_view, 2> names{ "ascii", "unicode" };
   if( !text ) {
      return isUnicodeTerminal() ? BoxLines::unicode : BoxLines::ascii;
   }
   const auto found = std::find( names.begin(), names.end(), *text );
   if( found == names.end() ) {
      throw Error( "unknown lines " + inQuotes( *text ) + suggestion( *text, names ) );
   }
   return found == names.begin() ? BoxLines::ascii : BoxLines::unicode;
}

std::string linesOf( const Layout& layout, BoxLines boxLines ) {
   const BitOrder order( layout );
   const Drawing drawing( order, textRoom() );
   std::string numbers;
   for( const Number& number : numbersOf( layout.info() ) ) {
      numbers.append( number.name ).append( ": " + std::to_string( number.value ) + ", " );
   }
   numbers += "fields: " + std::to_string( order.fields().size() ) +
              ", unused bits: " + std::to_string( order.unusedBits() );
   const std::string shared = order.lanes() > 1 ? sharedBits : "";
   return layout.pairText() + '\n' + wrapped( numbers ) + "\n\n" +
          drawnAsText( drawing, boxLines ) + '\n' + wrapped( bitNumbering + shared ) + "\n\n" +
          fieldList( drawing, Listed::all );
}

std::string jsonOf( const Layout& layout ) {
   const BitOrder order( layout );
   Json object;
   object["table"] = layout.table();
   object["chip"] = layout.chip().name;
   object["variant"] = layout.variant();
   object["kind"] = layout.info().isTable ? "table" : "register";
   for( const Number& number : numbersOf( layout.info() ) ) {
      object[std::string( number.name )] = number.value;
   }
   auto& fields = object["fields"] = Json::array();
   for( const BitOrder::Field& field : order.fields() ) {
      fields.push_back( { { "name", field.name },
                          { "offset", field.offset },
                          { "width", field.width },
                          { "identifier", field.identifier },
                          { "hardwareName", field.hardwareName },
                          { "readOnly", field.readOnly } } );
   }
   auto& unused = object["unused"] = Json::array();
   for( const BitOrder::Run& run : order.unused() ) {
      unused.push_back( { { "offset", run.offset }, { "width", run.width } } );
   }
   return jsonText( object ) + '\n';
}

// The one entry that a text writes.
struct GivenEntry {
   Layout layout;
   std::vector<U8> image; // all of its bytes
};

// Of the pair that is given, or of the variant of its tag where none is.
GivenEntry entryFrom( const LayoutArguments& arguments, const std::string& text ) {
   DumpOptions options;
   options.table = arguments.pair.table;
   options.chip = &chipOf( arguments.pair.chip );
   if( !arguments.pair.variant.empty() ) {
      options.variant = parseIndex( arguments.pair.variant, "variant", 0xff );
   }
   options.format = arguments.format;
   options.isStrict = true;
   DumpReader reader( options );
   try {
      reader.begin( std::span( &text, 1 ) );
      if( !reader.next() ) {
         throw Error( "there is no image" );
      }
      const DumpEntry& entry = reader.entry();
      GivenEntry given{ *entry.layout, { entry.image.begin(), entry.image.end() } };
      given.image.resize( given.layout.bytes() );
      if( reader.next() ) {
         throw Error( "the text has several images" );
      }
      return given;
   } catch( const Error& error ) {
      throw Error( "--image: " + error.message() );
   }
}

std::string entrySvg( const LayoutArguments& arguments ) {
   const GivenEntry last = entryFrom( arguments, arguments.images.back() );
   const BitOrder order( last.layout );
   const Drawing drawing( order, svgRoom() );
   if( arguments.images.size() == 1 ) {
      return imageAsSvg( drawing, last.layout.pairText(), last.image );
   }
   const GivenEntry first = entryFrom( arguments, arguments.images.front() );
   if( !( first.layout == last.layout ) ) {
      throw Error( "--image: the images are of " + first.layout.pairText() + " and " +
                   last.layout.pairText() + "; compare images of one pair" );
   }
   return changeAsSvg( drawing, last.layout.pairText(), first.image, last.image );
}

std::string differenceSvg( const Layout& from, const Layout& to ) {
   const BitOrder fromOrder( from );
   const BitOrder toOrder( to );
   return differenceAsSvg( Drawing( fromOrder, svgRoom() ), Drawing( toOrder, svgRoom() ),
                           differenceOf( from, to ), from.pairText(), to.pairText() );
}

// Gives the picture to its file; what is to be printed.
std::string written( const LayoutArguments& arguments, const std::string& picture ) {
   if( *arguments.svg == "-" ) {
      return picture;
   }
   writeFile( *arguments.svg, picture );
   return {};
}

// From "BCM88690_B0:3", or "10" for the variant 0.
Layout layoutFrom( const std::string& table, const std::string& pair ) {
   const auto colon = pair.find( ':' );
   return layoutOf( PairText{ table, pair.substr( 0, colon ),
                              colon == std::string::npos ? "0" : pair.substr( colon + 1 ) } );
}

void checkUsage( const CLI::App& verb ) {
   constexpr std::pair<const char*, const char*> exclusive[] = {
      { "--diff", "--chip" },  { "--diff", "--variant" }, { "--diff", "--image" },
      { "--diff", "--lines" }, { "--json", "--svg" },     { "--json", "--lines" },
      { "--svg", "--lines" },
   };
   for( const auto& [one, other] : exclusive ) {
      if( verb.count( one ) > 0 && verb.count( other ) > 0 ) {
         throw CLI::ExcludesError( one, other );
      }
   }
   if( verb.count( "--chip" ) == 0 && verb.count( "--diff" ) == 0 ) {
      throw CLI::RequiredError( "--chip or --diff" );
   }
   if( verb.count( "--diff" ) == 1 ) {
      throw CLI::RequiredError( "TO of --diff" );
   }
   if( verb.count( "--image" ) > 0 && verb.count( "--svg" ) == 0 ) {
      throw CLI::RequiresError( "--image", "--svg" );
   }
   if( verb.count( "--image" ) > 2 ) {
      throw CLI::ValidationError( "--image", "at most two images can be drawn; an image of several "
                                             "pieces stands in quotes" );
   }
}

} // namespace

std::string layout( const LayoutArguments& arguments ) {
   if( !arguments.difference.empty() ) {
      const Layout from = layoutFrom( arguments.pair.table, arguments.difference[0] );
      const Layout to = layoutFrom( arguments.pair.table, arguments.difference[1] );
      if( arguments.svg ) {
         return written( arguments, differenceSvg( from, to ) );
      }
      return arguments.json ? differenceJson( from, to ) : differenceLines( from, to );
   }
   if( !arguments.images.empty() ) {
      return written( arguments, entrySvg( arguments ) );
   }
   const BoxLines boxLines = boxLinesFrom( arguments.boxLines );
   const auto& [table, chip, variant] = arguments.pair;
   const Layout layout = layoutOf( { table, chip, variant.empty() ? "0" : variant } );
   if( arguments.json ) {
      return jsonOf( layout );
   }
   if( !arguments.svg ) {
      return linesOf( layout, boxLines );
   }
   const BitOrder order( layout );
   return written( arguments, drawnAsSvg( Drawing( order, svgRoom() ), layout.pairText() ) );
}

VerbRun addLayout( CLI::App& verb ) {
   const auto arguments = std::make_shared<LayoutArguments>();
   addPair( verb, arguments->pair );
   verb.get_option( "--chip" )->required( false );
   verb.add_flag( "--json", arguments->json, "Print one JSON object" );
   verb
      .add_option( "--svg", arguments->svg, "Write a picture to this file, - for standard output" )
      ->type_name( "FILE" );
   verb
      .add_option(
         "--image", arguments->images,
         "Draw the values of this image into the picture, or what changes to a second one" )
      ->type_name( "IMAGE" );
   addImageFormat( verb, arguments->format );
   verb.add_option( "--lines", arguments->boxLines, "Characters to draw with" )
      ->type_name( "ascii|unicode" );
   verb.add_option( "--diff", arguments->difference, "Print what changes between two pairs" )
      ->type_name( "FROM TO" )
      ->expected( 1, 2 ) // always two, but for one there is a better message
      ->allow_extra_args( false );
   verb.final_callback( [&verb] { checkUsage( verb ); } );
   describe( verb,
             "Draws an entry in rows of 32 bits and lists its fields in bit order: where each "
             "lies, its identifier and its name in the hardware's documents. A name that doesn't "
             "fit into its cell is replaced by a key, which the list explains. Fields that share "
             "bits are below one another, beside \"or\". Bits of no field are \"unused\".\n\n"
             "Bit 0 is the least significant bit of byte 0. The rows are the words that `vorn "
             "encode` prints, in their order, with the most significant bit at the left. They are "
             "drawn in unicode at a terminal with a UTF-8 locale, otherwise in ascii, unless "
             "--lines says which.\n\n"
             "With --image the cells of the picture show the values of an image, each that of its "
             "own bits; a field in several cells is listed with its whole value below. Of two "
             "images it shows old and new, and marks the cells that differ. The tag decides the "
             "variant unless --variant does. An image is written as for `vorn decode`, in quotes "
             "if it has several pieces.\n\n"
             "FROM and TO of --diff are a chip type, by name or number, or a chip type and a "
             "variant as CHIP:VARIANT. With --svg both formats are drawn, and the fields that are "
             "new, gone, moved, widened or narrowed are marked and listed.\n\n" +
                chipTypesParagraph(),
             "  vorn layout LifTable --chip BCM88690_B0 --variant 3\n"
             "  vorn layout LifTable --chip BCM88690_B0 --variant 3 --svg lif.svg\n"
             "  vorn layout EvecTable --chip 6 --svg evec.svg --image 0102030405060708\n"
             "  vorn layout LifTable --diff BCM88650_B0:6 BCM88660_A0:6" );
   return [arguments]( Output& output ) { output.write( layout( *arguments ) ); };
}

} // namespace Vorn
