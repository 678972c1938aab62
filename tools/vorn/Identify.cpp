// `vorn identify`: which tables and variants an entry image may be of.
#include "Identify.h"

#include "Arguments.h"
#include "Entry.h"
#include "Error.h"
#include "Images.h"
#include "Terminal.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <set>

namespace Vorn {

namespace {

using Tag = std::vector<Plan::TagField>;

bool sameTag( const Tag& left, const Tag& right ) {
   const auto same = []( const Plan::TagField& a, const Plan::TagField& b ) {
      return a.field->offset == b.field->offset && a.field->width == b.field->width &&
             a.value == b.value;
   };
   return std::equal( left.begin(), left.end(), right.begin(), right.end(), same );
}

unsigned bitsOf( const Tag& tag ) {
   unsigned bits = 0;
   for( const auto& [field, value] : tag ) {
      bits += field->width;
   }
   return bits;
}

std::string reasonOf( const Plan& plan, const Tag& tag ) {
   if( tag.empty() ) {
      return "length alone, " + std::to_string( plan.imageBytes() ) + " bytes";
   }
   std::string text;
   for( const auto& [field, value] : tag ) {
      text.append( text.empty() ? "tag: " : ", " ).append( field->name ).append( " " );
      text.append( hexOf( value ) );
   }
   return text;
}

// Adds the pair to the variants of its table with this reason.
void add( std::vector<Identifier::Verdict>& verdicts, const Plan& plan,
          const std::string& reason ) {
   auto verdict = std::find_if( verdicts.begin(), verdicts.end(), [&]( const auto& other ) {
      return other.table == plan.table() && other.reason == reason;
   } );
   if( verdict == verdicts.end() ) {
      verdict = verdicts.emplace( verdict );
      verdict->table = plan.table();
      verdict->variants.chip = plan.chip().number;
      verdict->variants.any = !plan.info().hasVariants;
      verdict->reason = reason;
   }
   verdict->variants.variants.push_back( plan.variant() );
}

// Why the image is not of the pair; empty if it may be.
std::string flawOf( const Plan& plan, const Tag& tag, std::span<const U8> image ) {
   if( image.size() != plan.imageBytes() ) {
      return "an entry has " + std::to_string( plan.imageBytes() ) + " bytes";
   }
   for( const auto& [field, value] : tag ) {
      const Value found = valueIn( image, *field );
      if( found.words[0] != value ) {
         return std::string( field->name ) + " is " + hexOf( found ) + ", not " + hexOf( value );
      }
   }
   return {};
}

} // namespace

Identifier::Verdicts Identifier::verdictsOn( std::span<const U8> image ) const {
   Verdicts verdicts;
   auto& groups = verdicts.groups;
   for( const Plan& plan : plans_ ) {
      const Tag tag = plan.tag();
      if( const auto flaw = flawOf( plan, tag, image ); !flaw.empty() ) {
         add( verdicts.ruledOut, plan, flaw );
         continue;
      }
      auto group = std::find_if( groups.begin(), groups.end(),
                                 [&]( const Group& other ) { return sameTag( other.tag, tag ); } );
      if( group == groups.end() ) {
         group = groups.insert( group, { tag, {} } );
      }
      add( group->members, plan, reasonOf( plan, tag ) );
   }
   std::stable_sort( groups.begin(), groups.end(), []( const Group& left, const Group& right ) {
      return bitsOf( left.tag ) > bitsOf( right.tag );
   } );
   return verdicts;
}

void Identifier::refuse( std::size_t bytes ) const {
   std::set<std::size_t> lengths;
   for( const Plan& plan : plans_ ) {
      lengths.insert( plan.imageBytes() );
   }
   const std::string given = "the image has " + std::to_string( bytes ) + " bytes";
   if( lengths.contains( bytes ) ) {
      throw Error( given + ", but the tag of no such entry on " + chip_.name );
   }
   throw Error( given + "; an entry on " + chip_.name + " has " +
                rangesOf( std::vector<U32>( lengths.begin(), lengths.end() ) ) );
}

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
         tag[std::string( field->name )] = hexOf( value );
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

// What is said of an image, which has a place if it is one of several.
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
   if( arguments.path.empty() ) {
      std::string text;
      for( const std::string& piece : arguments.image ) {
         text += piece + ' ';
      }
      output.write( said( identifier, imageOf( text, arguments.format ), "", arguments ) );
      return;
   }
   ImageReader reader( arguments.path, arguments.format, [&output] { output.flush(); } );
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
             "in common, so that nothing in the image tells them apart. The likeliest group comes "
             "first: the more bits of a tag are as they must be, the less by chance. What has no "
             "tag comes last.\n\n"
             "An image that can be nothing is an error, but not with --ruled-out, which prints "
             "why.\n\n"
             "`vorn decode --help` tells how an image, or a file of images, may be written. What "
             "an image says of its own table and variant is not looked at.\n\n" +
                chipTypesParagraph(),
             "  vorn identify --chip BCM88690_B0 4523010000000000\n"
             "  vorn program entries.jsonl | vorn identify --chip BCM88690_B0 -" );
   return { verb, [arguments]( Output& output ) { identify( *arguments, output ); } };
}

} // namespace Vorn
