// `vorn identify`: which tables and variants an entry image may be of.
#include "Arguments.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"

#include <Vorn/Compose.h>
#include <Vorn/Error.h>
#include <Vorn/Identify.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <memory>

namespace Vorn {

namespace {

using Json = nlohmann::ordered_json;

struct IdentifyArguments {
   std::string chip;
   std::vector<std::string> image; // its text, in any number of pieces
   std::string path;               // of a file of images, "-" for standard input; else empty
   ImageFormat format = ImageFormat::automatic;
   bool ruledOut = false;
   bool json = false;
};

Json jsonOf( const Identifier::Verdict& verdict ) {
   Json object;
   object["table"] = verdict.table;
   object["variants"] = verdict.variants.any ? Json() : Json( verdict.variants.variants );
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
      Json& made = groups.emplace_back();
      auto& tag = made["tag"] = Json::object();
      for( const auto& [field, value] : group.tag ) {
         tag[std::string( field.name )] = hexOf( value );
      }
      for( const auto& member : group.members ) {
         made["members"].push_back( jsonOf( member ) );
      }
   }
   if( ruledOut ) {
      auto& list = object["ruledOut"] = Json::array();
      for( const auto& verdict : verdicts.ruledOut ) {
         list.push_back( jsonOf( verdict ) );
         list.back()["reason"] = verdict.reason;
      }
   }
   return object.dump() + '\n';
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

void identify( const IdentifyArguments& arguments, Output& output ) {
   const Identifier identifier( chipOf( arguments.chip ) );
   for( const Layout& layout : identifier.layouts() ) {
      traceView( layout );
   }
   if( arguments.path.empty() ) {
      const Image image = imageOf( textOf( arguments.image ), arguments.format );
      output.write( said( identifier, image, "", arguments ) );
      return;
   }
   LineReader lines( arguments.path, [&output] { output.flush(); } );
   ImageReader reader( lines, arguments.format );
   while( reader.next() ) {
      const auto place = reader.place( reader.image().at );
      try {
         output.write( said( identifier, reader.image(), place, arguments ) );
      } catch( const Error& error ) {
         throw Error( place, error.message() );
      }
   }
}

} // namespace

Verb addIdentify( CLI::App& commandLine ) {
   CLI::App* const verb =
      commandLine.add_subcommand( "identify", "Print what an image may be an entry of" );
   const auto arguments = std::make_shared<IdentifyArguments>();
   verb->add_option( "IMAGE", arguments->image, "The image, or - for images from standard input" );
   verb->add_option( "--file", arguments->path, "File of images, - for standard input" )
      ->type_name( "FILE" );
   addChip( *verb, arguments->chip );
   addImageFormat( *verb, arguments->format );
   verb->add_flag( "--ruled-out", arguments->ruledOut, "Also print what it is not, and why" );
   verb->add_flag( "--json", arguments->json, "Print a JSON object for each image" );
   verb->callback( [arguments] { completeSource( arguments->image, arguments->path ); } );
   describe( *verb,
             "Prints a line for each table that has entries of the image's length and, where its "
             "variants have a tag, of the image's tag. Tables and variants in one group have both "
             "in common, so that nothing in the image distinguishes them. The likeliest group "
             "comes first, which is the one with the most matching bits of a tag; tables without "
             "a tag come last.\n\n"
             "An image that matches nothing is an error, except with --ruled-out, which prints "
             "why.\n\n"
             "`vorn decode --help` explains how an image, or a file of images, may be written. "
             "What an image says about its own table and variant is ignored.\n\n" +
                chipTypesParagraph(),
             "  vorn identify --chip BCM88690_B0 4523010000000000\n"
             "  vorn program entries.jsonl | vorn identify --chip BCM88690_B0 -" );
   return { verb, [arguments]( Output& output ) { identify( *arguments, output ); } };
}

} // namespace Vorn
