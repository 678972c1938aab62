// `vorn decode`: the fields of entry images.
#include "Decode.h"

#include "Arguments.h"
#include "Chips.h"
#include "Decoder.h"
#include "Entry.h"
#include "Error.h"
#include "ImageText.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <array>
#include <map>
#include <memory>
#include <tuple>
#include <utility>

namespace Vorn {

namespace {

// A pair, and the image of it to compare with, loaded; empty where there is none.
struct Pair {
   Decoder decoder;
   std::vector<U8> before;
};

// The pairs of the images met so far. The registry is asked about each of them once.
class Pairs {
public:
   // Finds the pair that the command line names, if it names one.
   explicit Pairs( const DecodeArguments& arguments );

   // The pair that the command line names, or nothing.
   const Pair* own() const { return own_; }

   // The pair of an image. What is wrong about it is a BadText.
   const Pair& of( const Image& image );

private:
   using Texts = std::array<std::string, 3>;

   // A pair has spellings without end, of any length: "1", "0x1", "0x01". What is kept of them
   // stays below a megabyte.
   static constexpr std::size_t mostSpellings = 1024;
   static constexpr std::size_t longestSpelling = 128;

   const Pair& known( const Image& image );
   const Pair& find( const Image& image );
   const Pair& make( Plan plan );

   std::optional<Image> changedFrom_;
   std::map<std::tuple<std::string_view, U8, U8>, Pair> pairs_;
   std::map<Texts, const Pair*> found_; // by what some of the images have said of their pairs
   const Pair* own_ = nullptr;
   Texts texts_;                // what the last image said
   const Pair* last_ = nullptr; // and its pair
};

Pairs::Pairs( const DecodeArguments& arguments ) {
   if( arguments.changedFrom ) {
      try {
         changedFrom_ = imageOf( *arguments.changedFrom, arguments.format );
      } catch( const Error& error ) {
         throw Error( "--changed-from: " + error.message() );
      }
   }
   if( arguments.pair ) {
      own_ = last_ = &make( Plan( *arguments.pair ) );
   }
}

const Pair& Pairs::of( const Image& image ) {
   const std::array pieces{ &image.table, &image.chip, &image.variant };
   bool isLast = last_ != nullptr;
   for( std::size_t i = 0; i < pieces.size(); ++i ) {
      const std::string_view said = pieces[i]->isGiven ? pieces[i]->text : std::string_view();
      if( said != texts_[i] ) {
         texts_[i] = said;
         isLast = false;
      }
   }
   if( !isLast ) {
      last_ = nullptr;
      last_ = &known( image );
   }
   return *last_;
}

// The pair that texts_ say.
const Pair& Pairs::known( const Image& image ) {
   if( const auto found = found_.find( texts_ ); found != found_.end() ) {
      return *found->second;
   }
   const Pair& pair = find( image );
   const auto& [table, chip, variant] = texts_;
   if( table.size() + chip.size() + variant.size() <= longestSpelling ) {
      if( found_.size() == mostSpellings ) {
         found_.clear();
      }
      found_.emplace( texts_, &pair );
   }
   return pair;
}

const Pair& Pairs::find( const Image& image ) {
   // Does a step that `piece` is the reason of.
   const auto within = [&]( const Piece& piece, auto step ) -> decltype( auto ) {
      try {
         return step();
      } catch( const Error& error ) {
         throw BadText( piece.isGiven ? piece.at : image.at, error.message() );
      }
   };
   if( own_ ) {
      within( image.table, [&] { requirePair( own_->decoder.plan(), image ); } );
      return *own_;
   }
   if( !image.table.isGiven || !image.chip.isGiven ) {
      throw BadText( image.at, std::string( "the image doesn't say its " ) +
                                  ( image.table.isGiven ? "chip type" : "table" ) +
                                  "; give TABLE and --chip, or write TABLE CHIP VARIANT and a "
                                  "colon before the image" );
   }
   const std::string& table = image.table.text;
   const Chip& chip =
      within( image.chip, [&]() -> const Chip& { return chipOf( image.chip.text ); } );
   const U64 variant = within( image.variant, [&] {
      return image.variant.isGiven ? parseIndex( image.variant.text, "variant", 0xff ) : 0;
   } );
   const Piece& reason = variantsOn( table, chip.number ) ? image.variant
                         : pairsOf( table ).empty()       ? image.table
                                                          : image.chip;
   return make( within( reason, [&] { return Plan( table, chip, variant ); } ) );
}

const Pair& Pairs::make( Plan plan ) {
   const std::tuple key( plan.table(), plan.chip().number, plan.variant() );
   if( const auto known = pairs_.find( key ); known != pairs_.end() ) {
      return known->second;
   }
   Pair pair{ Decoder( std::move( plan ) ), {} };
   if( changedFrom_ ) {
      try {
         requirePair( pair.decoder.plan(), *changedFrom_ );
         pair.decoder.load( changedFrom_->bytes, pair.before );
      } catch( const Error& error ) {
         throw Error( "--changed-from: " + error.message() );
      }
   }
   return pairs_.emplace( key, std::move( pair ) ).first->second;
}

// Decodes one image after another.
class Decoding {
public:
   explicit Decoding( const DecodeArguments& arguments )
      : pairs_( arguments ), printer_( arguments.form, pairs_.own() == nullptr ) {}

   // The lines of the image, valid until the next call.
   std::string_view linesOf( const Image& image ) {
      const auto& [decoder, before] = pairs_.of( image );
      decoder.load( image.bytes, loaded_ );
      return printer_.print( { decoder, image.bytes, loaded_, before } );
   }

   std::string_view lastLines() {
      return printer_.finish( pairs_.own() ? &pairs_.own()->decoder : nullptr );
   }

private:
   Pairs pairs_;
   Printer printer_;
   std::vector<U8> loaded_;
};

// The lines of the image that the reader has read.
std::string_view linesOf( Decoding& decoding, const ImageReader& reader ) {
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
      std::string text;
      for( const std::string& piece : arguments.image ) {
         text += piece + ' ';
      }
      output.write( decoding.linesOf( imageOf( text, arguments.format ) ) );
   } else {
      ImageReader reader( arguments.path, arguments.format, [&output] { output.flush(); } );
      while( reader.next() ) {
         output.write( linesOf( decoding, reader ) );
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
