// `vorn decode`: the fields of entry images.
#include "verbs/Decode.h"

#include "Arguments.h"
#include "Verbs.h"

#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <CLI/CLI.hpp>

#include <memory>
#include <utility>

namespace Vorn {

namespace {

// Prints one image after another.
class Decoding {
public:
   explicit Decoding( const DecodeArguments& arguments )
      : changedFrom_( changedFromOf( arguments ) ),
        layouts_( arguments.pair ? std::optional( layoutOf( *arguments.pair ) ) : std::nullopt ),
        printer_( arguments.form, !arguments.pair ) {
      if( layouts_.own() ) {
         begin( *layouts_.own() );
      }
   }

   // The lines of the image, valid until the next call.
   std::string_view linesOf( const Image& image ) {
      const Layout& layout = layouts_.of( image );
      if( &layout != last_ ) {
         begin( layout );
      }
      layout.requireFields( image.bytes );
      return printer_.print(
         { layout, image.bytes,
           changedFrom_ ? std::span<const U8>( changedFrom_->bytes ) : std::span<const U8>() } );
   }

   std::string_view lastLines() { return printer_.finish( layouts_.own() ); }

private:
   static std::optional<Image> changedFromOf( const DecodeArguments& arguments ) {
      std::optional<Image> image;
      if( arguments.changedFrom ) {
         within( [&] { image = imageOf( *arguments.changedFrom, arguments.format ); } );
      }
      return image;
   }

   // To be called where images of another pair than the last one's follow.
   void begin( const Layout& layout ) {
      if( changedFrom_ ) {
         within( [&] {
            requirePair( layout, *changedFrom_ );
            layout.requireFields( changedFrom_->bytes );
         } );
      }
      if( !layouts_.own() ) {
         traceView( layout );
      }
      last_ = &layout;
   }

   // Does a step that --changed-from is the reason of.
   template<class Step>
   static void within( Step step ) {
      try {
         step();
      } catch( const Error& error ) {
         throw Error( "--changed-from: " + error.message() );
      }
   }

   std::optional<Image> changedFrom_;
   ImageLayouts layouts_;
   ImagePrinter printer_;
   const Layout* last_ = nullptr; // of the last image
};

// The lines of the image that the reader has read.
std::string_view printed( Decoding& decoding, const ImageReader& reader ) {
   try {
      return decoding.linesOf( reader.image() );
   } catch( const BadText& bad ) {
      throw Error( reader.place( bad.at() ), bad.message() );
   } catch( const Error& error ) {
      throw Error( reader.place( reader.image().at ), error.message() );
   }
}

} // namespace

void decode( const DecodeArguments& arguments, Output& output ) {
   Decoding decoding( arguments );
   if( arguments.path.empty() ) {
      output.write( decoding.linesOf( imageOf( textOf( arguments.image ), arguments.format ) ) );
   } else {
      LineReader lines( arguments.path, [&output] { output.flush(); } );
      ImageReader reader( lines, arguments.format );
      while( reader.next() ) {
         output.write( printed( decoding, reader ) );
      }
   }
   output.write( decoding.lastLines() );
}

namespace {

// What the command line says of the pair, each empty where it doesn't.
struct DecodeLine {
   PairText pair{ "", "", "" };
   DecodeArguments arguments;
};

// To be called when the command line is parsed.
void complete( DecodeLine& given ) {
   auto& [table, chip, variant] = given.pair;
   auto& [pair, image, path, format, form, changedFrom] = given.arguments;
   if( table == "-" || isJson( table ) ) {
      image.insert( image.begin(), std::exchange( table, {} ) );
   }
   completeSource( image, path );
   if( table.empty() && !( chip.empty() && variant.empty() ) ) {
      throw CLI::RequiresError( chip.empty() ? "--variant" : "--chip", "TABLE" );
   }
   if( !table.empty() ) {
      if( chip.empty() ) {
         throw CLI::RequiredError( "--chip" );
      }
      pair = { table, chip, variant.empty() ? "0" : variant };
   }
}

void addForms( CLI::App& verb, DecodeForm& form ) {
   const auto add = [&]( const char* name, DecodeForm chosen, const char* text ) {
      return verb.add_flag_callback(
         name, [&form, chosen] { form = chosen; }, text );
   };
   CLI::Option* const json = add( "--json", DecodeForm::json, "Print an object of JSON an image" );
   CLI::Option* const line =
      add( "--single-line", DecodeForm::singleLine, "Print name=value pairs, a line an image" );
   CLI::Option* const csv =
      add( "--csv", DecodeForm::csv, "Print names once, then a row of values an image" );
   json->excludes( line )->excludes( csv );
   line->excludes( csv );
}

} // namespace

Verb addDecode( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "decode", "Print the fields of images" );
   const auto given = std::make_shared<DecodeLine>();
   DecodeArguments* const arguments = &given->arguments;
   verb->add_option( "TABLE", given->pair.table, "Name of the table, as `vorn tables` prints it" );
   verb->add_option( "IMAGE", arguments->image, "The image, or - for images from standard input" );
   verb->add_option( "--file", arguments->path, "File of images, - for standard input" )
      ->type_name( "FILE" );
   verb->add_option( "--chip", given->pair.chip, "Chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb->add_option( "--variant", given->pair.variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
   addImageFormat( *verb, arguments->format );
   verb
      ->add_option( "--changed-from", arguments->changedFrom,
                    "Print only the fields that differ from this image, old and new" )
      ->type_name( "IMAGE" );
   addForms( *verb, arguments->form );
   verb->get_option( "--csv" )->excludes( verb->get_option( "--changed-from" ) );
   verb->callback( [given] { complete( *given ); } );
   describe(
      *verb,
      imagesParagraphs() +
         "\n\nA file has an image a line; only a hexdump takes several, up to its last line, which "
         "is an offset alone. Before an image its pair may stand: TABLE CHIP VARIANT and a colon. "
         "A JSON object has it in \"table\", \"chip\" and \"variant\". TABLE and --chip need not "
         "be given then; if they are, they must agree. What `vorn encode` and `vorn program` "
         "print can be piped into `vorn decode -`.\n\n"
         "An image has to reach to the end of the last field; bytes behind the entry are not "
         "looked at. A tag is shown like any field and not checked.\n\n"
         "Fields are in order of their offset, but in their declared order with --single-line, "
         "--json and --csv. Values are hexadecimal; those of --csv are decimal up to a width of "
         "64 bits and 0x and hexadecimal digits beyond, so that readers of data frames take them "
         "as numbers where they can. The columns of --csv are the fields of one pair.\n\n"
         "A bad image ends the program with exit status 1. The images before it have been printed "
         "then, and nothing of it or of any after it.\n\n" +
         chipTypesParagraph(),
      "  vorn decode TcamActionTable --chip BCM88690_B0 4523010000000000\n"
      "  vorn program entries.jsonl | vorn decode --single-line -" );
   return { verb, [given]( Output& output ) { decode( given->arguments, output ); } };
}

} // namespace Vorn
