// `vorn decode`: the fields of entry images.
#include "verbs/Decode.h"

#include "Arguments.h"
#include "CommandLine.h"
#include "Terminal.h"
#include "Verbs.h"

#include <Vorn/Chip.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <set>
#include <span>
#include <utility>

namespace Vorn {

namespace {

// Prints one image after another.
class Decoding {
public:
   explicit Decoding( const DecodeArguments& arguments )
      : arguments_( arguments ), changedFrom_( changedFromOf( arguments ) ),
        reader_( optionsOf( arguments ) ), printer_( arguments.form, !reader_.isOfOnePair() ) {
      printer_.provide( reader_.layouts() );
      if( reader_.own() ) {
         begin( *reader_.own() );
      }
   }

   // The images of the arguments, or of the file.
   void printArguments( Output& output ) {
      reader_.begin( std::span<const std::string>( arguments_.image ) );
      printAll( output );
   }
   void printFile( const std::string& path, Output& output ) {
      try {
         FileBytes bytes( path, [&output] { output.flush(); } );
         reader_.begin( bytes );
         if( arguments_.paths.size() > 1 ) {
            printer_.nameFile( bytes.name() );
         }
         printAll( output );
      } catch( const Error& error ) {
         keepGoing( error, output );
      }
   }

   // To be called at the end.
   void finish( Output& output ) {
      output.write( printer_.finish() );
      if( empty_ == 0 && untold_ == 0 && bad_ == 0 ) {
         return;
      }
      output.flush();
      if( empty_ > 0 ) {
         printError( "vorn: ", std::to_string( empty_ ) + " of " + std::to_string( images_ ) +
                                  ( empty_ == 1 ? " entries is" : " entries are" ) +
                                  " empty; --empty prints them" );
      }
      if( untold_ > 0 ) {
         printWarning( "", std::to_string( untold_ ) + " more images like these" );
      }
      if( bad_ > 0 ) {
         printError( "vorn: ", std::to_string( bad_ ) + ( bad_ == 1 ? " error, " : " errors, " ) +
                                  std::to_string( images_ - empty_ ) + " images printed" );
         throw HasFailed();
      }
   }

private:
   static constexpr std::size_t mostWarnings = 8;

   static DumpOptions optionsOf( const DecodeArguments& arguments ) {
      DumpOptions options;
      if( arguments.pair ) {
         const auto& [table, chip, variant] = *arguments.pair;
         options.table = table;
         options.chip = &chipOf( chip );
         if( !variant.empty() ) {
            options.variant = parseIndex( variant, "variant", 0xff );
         }
      } else if( !arguments.chip.empty() ) {
         options.chip = &chipOf( arguments.chip );
      }
      options.format = arguments.format;
      options.stride =
         static_cast<std::size_t>( parseIndex( arguments.stride, "stride", 1 << 20 ) );
      options.first = indexOf( arguments.first );
      options.isStrict = arguments.isStrict;
      return options;
   }

   static std::optional<Image> changedFromOf( const DecodeArguments& arguments ) {
      std::optional<Image> image;
      if( arguments.changedFrom ) {
         within( [&] { image = imageOf( *arguments.changedFrom, arguments.format ); } );
      }
      return image;
   }

   void printAll( Output& output ) {
      for( ;; ) {
         try {
            if( !reader_.next() ) {
               return;
            }
            print( output );
         } catch( const Error& error ) {
            keepGoing( error, output );
         }
      }
   }

   void print( Output& output ) {
      const DumpEntry& entry = reader_.entry();
      ++images_;
      if( entry.isEmpty && !arguments_.printsEmpty ) {
         ++empty_;
         return;
      }
      if( !entry.doubt.empty() ) {
         warn( std::string( entry.doubt ), output );
      }
      try {
         if( entry.layout != last_ ) {
            begin( *entry.layout );
         }
         const auto before =
            changedFrom_ ? std::span<const U8>( changedFrom_->bytes ) : std::span<const U8>();
         output.write( printer_.print( { entry, before } ) );
      } catch( const Error& error ) {
         throw Error( reader_.place(), error.message() );
      }
   }

   void warn( const std::string& doubt, Output& output ) {
      if( told_.contains( doubt ) || told_.size() == mostWarnings ) {
         ++untold_;
         return;
      }
      told_.insert( doubt );
      output.flush();
      printWarning( reader_.place(), doubt );
   }

   void keepGoing( const Error& error, Output& output ) {
      if( !arguments_.keepsGoing ) {
         throw error;
      }
      output.flush();
      printError( error );
      ++bad_;
   }

   // To be called where images of another pair than the last one's follow.
   void begin( const Layout& layout ) {
      if( changedFrom_ ) {
         within( [&] {
            requirePair( layout, *changedFrom_ );
            layout.requireFields( changedFrom_->bytes );
         } );
      }
      traceView( layout );
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

   const DecodeArguments& arguments_;
   std::optional<Image> changedFrom_;
   DumpReader reader_;
   ImagePrinter printer_;
   const Layout* last_ = nullptr; // of the last image
   std::set<std::string> told_;   // warnings
   U64 images_ = 0;
   U64 empty_ = 0;
   U64 untold_ = 0; // warnings
   U64 bad_ = 0;
};

} // namespace

void decode( const DecodeArguments& arguments, Output& output ) {
   Decoding decoding( arguments );
   if( arguments.paths.empty() ) {
      decoding.printArguments( output );
   }
   for( const std::string& path : arguments.paths ) {
      decoding.printFile( path, output );
   }
   decoding.finish( output );
}

namespace {

// What the command line says of the pair, each empty where it doesn't.
struct DecodeLine {
   PairText pair{ "", "", "" };
   DecodeArguments arguments;
};

// Whether the argument is an address and a colon, perhaps with an image, and so no table.
bool isAddressed( const std::string& text ) {
   return text.starts_with( "0x" ) && text.find( ':' ) != std::string::npos;
}

// To be called when the command line is parsed.
void complete( DecodeLine& given ) {
   auto& [table, chip, variant] = given.pair;
   auto& image = given.arguments.image;
   auto& paths = given.arguments.paths;
   if( table == "-" || isJson( table ) || isAddressed( table ) ) {
      image.insert( image.begin(), std::exchange( table, {} ) );
   }
   // --file takes all names up to the next option.
   const auto tables = allTables();
   if( table.empty() && paths.size() > 1 &&
       std::find( tables.begin(), tables.end(), paths.back() ) != tables.end() ) {
      table = std::move( paths.back() );
      paths.pop_back();
   }
   if( !image.empty() && paths.empty() &&
       std::all_of( image.begin(), image.end(), []( const auto& one ) { return one == "-"; } ) ) {
      paths.assign( 1, "-" );
      image.clear();
   }
   if( image.empty() && paths.empty() ) {
      throw CLI::RequiredError( "IMAGE" );
   }
   if( !image.empty() && !paths.empty() ) {
      throw CLI::ExcludesError( "--file", "IMAGE" );
   }
   if( table.empty() && !variant.empty() && chip.empty() ) {
      throw CLI::RequiresError( "--variant", "TABLE" );
   }
   if( !table.empty() ) {
      if( chip.empty() ) {
         throw CLI::RequiredError( "--chip" );
      }
      given.arguments.pair = { table, chip, variant };
   }
   given.arguments.chip = chip;
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
   verb->add_option( "--file", arguments->paths, "Files of images, - for standard input" )
      ->type_name( "FILE" );
   verb->add_option( "--chip", given->pair.chip, "Chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb
      ->add_option( "--variant", given->pair.variant,
                    "Variant of the table, by the tag if not given" )
      ->type_name( "V" );
   addImageFormat( *verb, arguments->format );
   verb->add_option( "--stride", arguments->stride, "Bytes from an entry of a dump to the next" )
      ->type_name( "BYTES" );
   verb
      ->add_option( "--first-entry", arguments->first.entry,
                    "First entry of a dump, 0 if not given" )
      ->type_name( "N" );
   verb->add_option( "--array", arguments->first.array, "Array element of a dump, 0 if not given" )
      ->type_name( "N" );
   verb
      ->add_option( "--identifier", arguments->first.identifier,
                    "Instance of a dump, 0 if not given" )
      ->type_name( "N" );
   verb->add_flag( "--empty", arguments->printsEmpty,
                   "Also print entries that nobody has written" );
   verb->add_flag( "--keep-going", arguments->keepsGoing, "Go on after a bad image" );
   verb->add_flag( "--strict", arguments->isStrict, "Take warnings for errors" );
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
         "\n\nA file, or - for standard input, is recognised by its first line, and what gzip or "
         "zstd has compressed by its first bytes. What is no text is binary. The rows of `hexdump "
         "-C`, `hexdump` and `xxd` are a dump, and so are binary "
         "files, `xxd -p` with --image-format stream, and `od -v -An -tx4` with --image-format "
         "words: entries one after another, whose bytes are split by the entry's length. What is "
         "left over is an error. Every other line is an image, which has exactly the bytes of an "
         "entry or those up to the end of the last field, perhaps rounded up to 4 or 8; in CSV "
         "the header names the column \"image\". # begins a comment.\n\n"
         "0x and more than eight digits in one piece may be bytes or one number, its highest "
         "digit first; if the tag doesn't decide, --image-format has to: bytes or number.\n\n"
         "An image may be preceded by its pair, TABLE CHIP VARIANT and a colon, or by its "
         "address, 0x and a colon. A JSON object and the columns of CSV may have \"table\", "
         "\"chip\", \"variant\", \"entry\", \"array\", \"identifier\" and \"address\". TABLE and "
         "--chip may then be left out; if given, they must agree; an address needs --chip alone. "
         "The output of `vorn encode` and `vorn program` can be piped into `vorn decode -`.\n\n"
         "Without --variant the tag decides, if the table has tags. With it, a tag that "
         "contradicts it is a warning, with --strict an error. Entries of zeroes that fit no tag "
         "are empty: they are left out and counted.\n\n"
         "Fields are in order of their offset, with --single-line, --json and --csv in declared "
         "order. Values are hexadecimal; those of --csv are decimal up to a width of 64 bits and "
         "0x and hexadecimal digits beyond, so that readers of data frames take them as numbers "
         "where they can. The columns of --csv are the fields of one pair.\n\n"
         "A bad image ends the program with exit status 1. The images before it are printed, and "
         "nothing of it or of any after it. With --keep-going bad images are reported on standard "
         "error and the others printed; the exit status is still 1. Of several files, each line "
         "of the forms for people has the name of its file and a colon before it.\n\n" +
         chipTypesParagraph(),
      "  vorn decode TcamActionTable --chip BCM88690_B0 4523010000000000\n"
      "  vorn program entries.jsonl | vorn decode --single-line -\n"
      "  vorn decode LifTable --chip BCM88690_B0 --csv --file lif.bin" );
   return { verb, [given]( Output& output ) { decode( given->arguments, output ); } };
}

} // namespace Vorn
