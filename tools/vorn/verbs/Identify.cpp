// `vorn identify`: which tables and variants an entry image may belong to.
#include "Arguments.h"
#include "CommandLine.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/Json.h"
#include "verbs/Failures.h"
#include "verbs/Program.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Identify.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace Vorn {

namespace {

struct IdentifyArguments {
   std::string chip;
   std::vector<std::string> image; // its text, in any number of pieces
   std::vector<std::string> paths; // of files of images, "-" for standard input
   ImageFormat format = ImageFormat::automatic;
   std::optional<std::string> stride; // bytes from one entry of a dump to the next, 0 if not given
   bool ofEach = false;               // images of files are answered one by one
   bool keepsGoing = false;           // after bad input
   bool ruledOut = false;
   bool json = false;
};

Json jsonOf( const Identifier::Verdict& verdict ) {
   Json object;
   object["table"] = verdict.table;
   object["variants"] = verdict.variants.any ? Json() : Json( verdict.variants.variants );
   return object;
}

Json jsonOf( const Identifier::Group& group ) {
   Json object;
   auto& tag = object["tag"] = Json::object();
   for( const auto& [field, value] : group.tag ) {
      tag[std::string( field.name )] = hexOf( value );
   }
   for( const auto& member : group.members ) {
      object["members"].push_back( jsonOf( member ) );
   }
   return object;
}

std::string jsonLine( const Identifier::Verdicts& verdicts, const std::string& place,
                      bool ruledOut ) {
   Json object;
   if( !place.empty() ) {
      object["place"] = place;
   }
   auto& groups = object["groups"] = Json::array();
   for( const auto& group : verdicts.groups ) {
      groups.push_back( jsonOf( group ) );
   }
   if( ruledOut ) {
      auto& list = object["ruledOut"] = Json::array();
      for( const auto& verdict : verdicts.ruledOut ) {
         list.push_back( jsonOf( verdict ) );
         list.back()["reason"] = verdict.reason;
      }
   }
   return jsonText( object ) + '\n';
}

std::string linesOf( const Identifier::Verdicts& verdicts, const std::string& place,
                     bool ruledOut ) {
   std::vector<std::vector<std::string>> rows{ { "group", "table", "variants", "reason" } };
   const auto addRows = [&]( const std::string& group,
                             const std::vector<Identifier::Verdict>& members ) {
      for( const auto& [table, variants, reason] : members ) {
         rows.push_back( { group, std::string( table ), variants.text(), reason } );
      }
   };
   for( std::size_t i = 0; i < verdicts.groups.size(); ++i ) {
      addRows( std::to_string( i + 1 ), verdicts.groups[i].members );
   }
   if( ruledOut ) {
      addRows( "none", verdicts.ruledOut );
   }
   constexpr Align columns[] = { Align::right, Align::left, Align::left, Align::left };
   return ( place.empty() ? "" : place + ":\n" ) + tableOf( columns, rows );
}

// The output for an image, which has a place if it is one of several.
std::string said( const Identifier& identifier, const Image& image, const std::string& place,
                  const IdentifyArguments& arguments ) {
   requireChip( identifier.chip(), image );
   const auto verdicts = identifier.verdictsOn( image.bytes );
   if( verdicts.groups.empty() && !arguments.ruledOut ) {
      identifier.refuse( image.bytes.size() );
   }
   return ( arguments.json ? jsonLine : linesOf )( verdicts, place, arguments.ruledOut );
}

std::string accountJson( const DumpIdentifier::Account& account, const std::string& name ) {
   Json object{ { "file", name },
                { "images", account.images },
                { "empty", account.empty },
                { "lengthAlone", account.byLength },
                { "fitNothing", account.others } };
   auto& groups = object["groups"] = Json::array();
   for( const auto& [bytes, group, images] : account.fits ) {
      Json& made = groups.emplace_back( Json{ { "images", images }, { "bytes", bytes } } );
      made.update( jsonOf( group ) );
   }
   return jsonText( object ) + '\n';
}

std::string accountLines( const DumpIdentifier::Account& account, const std::string& name ) {
   std::string lines = name + ": " + countOf( account.images, "image" ) + '\n';
   std::vector<std::vector<std::string>> rows{ { "images", "table", "variants", "reason" } };
   for( const auto& fit : account.fits ) {
      for( const auto& [table, variants, reason] : fit.group.members ) {
         rows.push_back(
            { std::to_string( fit.images ), std::string( table ), variants.text(), reason } );
      }
   }
   if( rows.size() > 1 ) {
      constexpr Align columns[] = { Align::right, Align::left, Align::left, Align::left };
      lines += tableOf( columns, rows );
   }
   const auto add = [&]( U64 count, const std::string& one, const std::string& more ) {
      if( count > 0 ) {
         lines += countOf( count, "image " + one, "images " + more ) + '\n';
      }
   };
   add( account.byLength, "has no tag and fits by its length alone",
        "have no tag and fit by their length alone" );
   add( account.empty, "is empty", "are empty" );
   const auto first = account.place + ": " + account.reason;
   add( account.others, "fits nothing: " + first, "fit nothing, the first of them: " + first );
   return lines;
}

// What becomes of the files of images, one after another.
class Identifying {
public:
   Identifying( const IdentifyArguments& arguments, const Identifier& identifier, Output& output )
      : arguments_( arguments ), identifier_( identifier ), output_( output ),
        counting_( identifier, arguments.format, strideOf( arguments.stride ) ) {}

   void take( const std::string& path ) {
      try {
         if( arguments_.ofEach ) {
            answerEach( path );
         } else {
            count( path );
         }
      } catch( const Error& error ) {
         failures_.take( error );
      }
   }

   void finish() { failures_.finish( countOf( images_, "image" ) + " identified" ); }

private:
   void answerEach( const std::string& path ) {
      LineReader lines( path, [this] { output_.flush(); } );
      constexpr std::size_t looked = 64;
      lines.readMore();
      const std::string begin( lines.rest().substr( 0, looked ) );
      ImageReader reader( lines, arguments_.format );
      for( bool isFirst = true;; isFirst = false ) {
         std::string place;
         try {
            if( !reader.next() ) {
               return;
            }
            place = reader.place( reader.image().at );
            output_.write( said( identifier_, reader.image(), place, arguments_ ) );
            ++images_;
         } catch( const Error& error ) {
            if( isFirst && place.empty() && !isPrintable( begin, begin.size() == looked ) ) {
               throw Error( lines.name(),
                            "the file is binary, and --each takes lines of text; leave --each out, "
                            "or print the BYTES of each entry on a line with `xxd -p -c BYTES`" );
            }
            const bool isOfLine = error.place().starts_with( lines.place() + ':' );
            if( place.empty() && !isOfLine ) {
               throw; // Nothing can be read after it.
            }
            failures_.take( place.empty() ? error : Error( place, error.message() ) );
         }
      }
   }

   void count( const std::string& path ) {
      FileBytes bytes( path, [this] { output_.flush(); } );
      counting_.begin( bytes );
      for( bool isThere = true; isThere; ) {
         try {
            isThere = counting_.next();
         } catch( const Error& error ) {
            failures_.take( error );
         }
      }
      const auto account = counting_.account();
      if( account.others > 0 && account.others == account.images ) {
         throw Error( account.place,
                      account.reason +
                         ( account.images > 1 ? "; no other image fits, either" : "" ) );
      }
      output_.write( ( arguments_.json ? accountJson : accountLines )( account, bytes.name() ) );
      images_ += account.images;
   }

   const IdentifyArguments& arguments_;
   const Identifier& identifier_;
   Output& output_;
   DumpIdentifier counting_;
   U64 images_ = 0;
   Failures failures_{ arguments_.keepsGoing, output_ };
};

void identify( const IdentifyArguments& arguments, Output& output ) {
   const Identifier identifier( chipOf( arguments.chip ) );
   for( const Layout& layout : identifier.layouts() ) {
      traceView( layout );
   }
   if( arguments.paths.empty() ) {
      const Image image = imageOf( textOf( arguments.image ), arguments.format );
      output.write( said( identifier, image, "", arguments ) );
      return;
   }
   Identifying identifying( arguments, identifier, output );
   for( const std::string& path : arguments.paths ) {
      identifying.take( path );
   }
   identifying.finish();
}

void completeUsage( IdentifyArguments& arguments ) {
   auto& [chip, image, paths, format, stride, ofEach, keepsGoing, ruledOut, json] = arguments;
   if( !image.empty() && !paths.empty() ) {
      throw CLI::ExcludesError( "--file", "IMAGE" );
   }
   if( areFiles( image, format ) ) {
      paths = std::exchange( image, {} );
   }
   if( image.empty() && paths.empty() ) {
      throw CLI::RequiredError( "IMAGE or --file" );
   }
   requireOneInput( paths );
   // What an image is not, and why, is said of each.
   ofEach = ofEach || ruledOut;
}

} // namespace

VerbRun addIdentify( CLI::App& verb ) {
   const auto arguments = std::make_shared<IdentifyArguments>();
   verb.add_option( "IMAGE", arguments->image,
                    "The image, files of images, or - for standard input" );
   verb.add_option( "--file", arguments->paths, "Files of images, - for standard input" )
      ->type_name( "FILE" );
   addChip( verb, arguments->chip );
   addImageFormat( verb, arguments->format );
   verb.add_option( "--stride", arguments->stride, "Bytes from one entry of a dump to the next" )
      ->type_name( "BYTES" );
   verb.add_flag( "--each", arguments->ofEach,
                  "Report on each image of a file, in one line or more" );
   verb.add_flag( "--ruled-out", arguments->ruledOut,
                  "Also print what each image is not, and why" );
   verb.add_flag( "--keep-going", arguments->keepsGoing, "Go on after bad input" );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for the image or each file" );
   verb.callback( [arguments] { completeUsage( *arguments ); } );
   describe( verb,
             "Prints a line for each table that has entries of the image's length and, where its "
             "variants have a tag, of the image's tag. Tables and variants in one group have both "
             "in common, so that nothing in the image distinguishes them. The likeliest group "
             "comes first, which is the one with the most matching bits of a tag; tables without "
             "a tag come last.\n\n"
             "An image that matches nothing is an error, except with --ruled-out, which prints "
             "why.\n\n"
             "The images of a file, or of standard input (-), are counted. A line for each table "
             "and the variants of one tag has the number of images that fit them; an image may "
             "fit several. Then come the numbers of images that have no tag and fit by their "
             "length alone, that are empty, which are zeroes without a tag, and that fit "
             "nothing, with the place of the first of these. It is an error if no image fits. "
             "With --each, each image of a file of lines is reported as one on the command line "
             "is, with its place; --ruled-out implies it.\n\n"
             "`vorn decode --help` explains how an image, or a file of images, may be written. "
             "What an image says about its own table and variant is ignored. In a dump of "
             "bytes alone the tags decide how long the entries are; where they can't, --stride "
             "must.\n\n"
             "Bad input ends the program with exit status 1, and nothing of its file is counted. "
             "With --keep-going it is reported on standard error and the rest is counted; the "
             "exit status is still 1.\n\n" +
                chipTypesParagraph(),
             "  vorn identify --chip BCM88690_B0 4523010000000000\n"
             "  vorn identify --chip BCM88690_B0 --file memory.bin\n"
             "  vorn program entries.jsonl | vorn identify --chip BCM88690_B0 --each -" );
   return [arguments]( Output& output ) { identify( *arguments, output ); };
}

} // namespace Vorn
