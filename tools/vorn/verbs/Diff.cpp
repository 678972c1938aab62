// `vorn diff`: what has changed from one dump, or one image, to another.
#include "Arguments.h"
#include "CommandLine.h"
#include "Verbs.h"

#include <Vorn/Difference.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace Vorn {

namespace {

enum class DiffForm { text, json, csv, summary };

struct DiffArguments {
   std::vector<std::string> words; // [TABLE] BEFORE AFTER
   std::string chip;
   std::string variant;
   std::string fields;
   ImageFormat format = ImageFormat::automatic;
   DiffForm form = DiffForm::text;
};

std::optional<Layout> ownLayout( const DiffArguments& arguments ) {
   if( arguments.words.size() < 3 ) {
      return std::nullopt;
   }
   return layoutOf(
      { arguments.words[0], arguments.chip, arguments.variant.empty() ? "0" : arguments.variant } );
}

// The images of a file, or the one that the command line has.
class Side {
public:
   Side( const std::string& word, const DiffArguments& arguments, Output& output )
      : layouts_( ownLayout( arguments ) ) {
      if( word == "-" || std::filesystem::exists( word ) ) {
         lines_ = std::make_unique<LineReader>( word, [&output] { output.flush(); } );
         reader_ = std::make_unique<ImageReader>( *lines_, arguments.format );
         return;
      }
      try {
         single_ = imageOf( word, arguments.format );
      } catch( const Error& error ) {
         throw Error( "no file " + inQuotes( word ) + ", and no image: " + error.message() );
      }
   }

   // The next entry; none after the last.
   EntryState next() {
      if( reader_ ? !reader_->next() : std::exchange( isDone_, true ) ) {
         return {};
      }
      const Image& image = reader_ ? reader_->image() : single_;
      try {
         const Layout& layout = layouts_.of( image );
         layout.requireFields( image.bytes );
         return { &layout, image.bytes };
      } catch( const BadText& bad ) {
         throw Error( place( bad.at() ), bad.message() );
      } catch( const Error& error ) {
         throw Error( place( image.at ), error.message() );
      }
   }

private:
   std::string place( std::size_t at ) const {
      return reader_ ? reader_->place( at ) : std::string();
   }

   ImageLayouts layouts_;
   std::unique_ptr<LineReader> lines_;
   std::unique_ptr<ImageReader> reader_;
   Image single_;
   bool isDone_ = false; // the single image has been handed out
};

using Json = nlohmann::ordered_json;

// As a reader in any language takes it: wider numbers lose bits in many.
Json valueJson( const Value& value ) {
   return value.bits() <= 53 ? Json( value.word( 0 ) ) : Json( hexOf( value ) );
}

// Prints one entry after another, and counts them.
class Diffing {
public:
   Diffing( const DiffArguments& arguments, Output& output )
      : comparison_( arguments.fields ), form_( arguments.form ), output_( output ) {}

   void compare( U64 entry, const EntryState& before, const EntryState& after ) {
      const EntryChange change = comparison_.changeOf( before, after );
      ++counts_[change.text()];
      if( change.kind == EntryChange::Kind::none ) {
         return;
      }
      isDifferent_ = true;
      for( const Field& field : change.fields ) {
         ++fields_[field.name];
      }
      switch( form_ ) {
      case DiffForm::text:
         printText( entry, change, before, after );
         break;
      case DiffForm::json:
         printJson( entry, change, before, after );
         break;
      case DiffForm::csv:
         printCsv( entry, change, before, after );
         break;
      case DiffForm::summary:
         break;
      }
   }

   void finish() {
      if( form_ != DiffForm::text && form_ != DiffForm::summary ) {
         return;
      }
      if( form_ == DiffForm::text && !isDifferent_ ) {
         return;
      }
      std::string line;
      for( const char* const name : { "changed", "replaced", "added", "removed", "the same" } ) {
         if( const U64 count = counts_[name] ) {
            line += ( line.empty() ? "" : ", " ) + std::to_string( count ) + ' ' + name;
         }
      }
      output_.write( "entries: " + ( line.empty() ? "none" : line ) + '\n' );
      if( form_ == DiffForm::summary ) {
         for( const auto& [name, count] : fields_ ) {
            output_.write( "   " + std::string( name ) + ": " + std::to_string( count ) + '\n' );
         }
      }
   }

   bool isDifferent() const { return isDifferent_; }

private:
   static const Layout& layoutOf( const EntryState& before, const EntryState& after ) {
      return after.layout ? *after.layout : *before.layout;
   }

   static Value valueIn( const EntryState& state, const Field& field ) {
      return state.layout->value( state.image, field );
   }

   void printText( U64 entry, const EntryChange& change, const EntryState& before,
                   const EntryState& after ) {
      std::string text = "entry " + std::to_string( entry ) + ' ' + std::string( change.text() );
      if( change.kind == EntryChange::Kind::replaced ) {
         text += ": " + before.layout->pairText() + " -> " + after.layout->pairText() + '\n';
      } else {
         text += ": " + layoutOf( before, after ).pairText() + '\n';
      }
      for( const Field& field : change.fields ) {
         text += "   " + std::string( field.name ) + ": " + hexOf( valueIn( before, field ) ) +
                 " -> " + hexOf( valueIn( after, field ) ) + '\n';
      }
      if( change.kind == EntryChange::Kind::changed && change.fields.empty() ) {
         text += "   bits of no field\n";
      }
      output_.write( text );
   }

   void printJson( U64 entry, const EntryChange& change, const EntryState& before,
                   const EntryState& after ) {
      const Layout& layout = layoutOf( before, after );
      Json object{ { "table", layout.table() },     { "chip", layout.chip().name },
                   { "variant", layout.variant() }, { "entry", entry },
                   { "change", change.text() },     { "before", imageJson( before ) },
                   { "after", imageJson( after ) } };
      auto& fields = object["fields"] = Json::object();
      for( const Field& field : change.fields ) {
         fields[std::string( field.name )] = { { "old", valueJson( valueIn( before, field ) ) },
                                               { "new", valueJson( valueIn( after, field ) ) } };
      }
      output_.write( object.dump() + '\n' );
   }

   static Json imageJson( const EntryState& state ) {
      if( !state.layout ) {
         return {};
      }
      std::string digits;
      appendHex( digits,
                 state.image.first( std::min( state.image.size(), state.layout->bytes() ) ) );
      return digits;
   }

   void printCsv( U64 entry, const EntryChange& change, const EntryState& before,
                  const EntryState& after ) {
      if( !std::exchange( hasHeader_, true ) ) {
         output_.write( "table,chip,variant,entry,change,field,old,new\n" );
      }
      const Layout& layout = layoutOf( before, after );
      const std::string begin = std::string( layout.table() ) + ',' + layout.chip().name + ',' +
                                std::to_string( layout.variant() ) + ',' + std::to_string( entry ) +
                                ',' + std::string( change.text() ) + ',';
      for( const Field& field : change.fields ) {
         output_.write( begin + std::string( field.name ) + ',' +
                        hexOf( valueIn( before, field ) ) + ',' + hexOf( valueIn( after, field ) ) +
                        '\n' );
      }
      if( change.fields.empty() ) {
         output_.write( begin + ",,\n" );
      }
   }

   EntryComparison comparison_;
   DiffForm form_;
   Output& output_;
   std::map<std::string_view, U64> counts_; // of entries, by what has become of them
   std::map<std::string_view, U64> fields_; // of entries, by the field that has changed
   bool isDifferent_ = false;
   bool hasHeader_ = false;
};

void diff( const DiffArguments& arguments, Output& output ) {
   const auto& words = arguments.words;
   Diffing diffing( arguments, output );
   Side before( words[words.size() - 2], arguments, output );
   Side after( words.back(), arguments, output );
   for( U64 entry = 0;; ++entry ) {
      const EntryState one = before.next();
      const EntryState other = after.next();
      if( !one.layout && !other.layout ) {
         break;
      }
      try {
         diffing.compare( entry, one, other );
      } catch( const BadText& bad ) {
         throw Error( "--fields:" + std::to_string( columnOf( arguments.fields, bad.at() ) ),
                      bad.message() );
      }
   }
   diffing.finish();
   if( diffing.isDifferent() ) {
      throw HasDifferences();
   }
}

void checkUsage( const DiffArguments& arguments ) {
   const auto& words = arguments.words;
   if( words.size() < 2 ) {
      throw CLI::RequiredError( words.empty() ? "BEFORE" : "AFTER" );
   }
   if( words.size() > 3 ) {
      throw CLI::ValidationError( "AFTER", "unexpected argument " + inQuotes( words[3] ) +
                                              "; an image of several pieces stands in quotes" );
   }
   if( words.size() == 3 && arguments.chip.empty() ) {
      throw CLI::RequiredError( "--chip" );
   }
   if( words.size() == 2 && !( arguments.chip.empty() && arguments.variant.empty() ) ) {
      throw CLI::RequiresError( arguments.chip.empty() ? "--variant" : "--chip", "TABLE" );
   }
   if( words[words.size() - 2] == "-" && words.back() == "-" ) {
      throw CLI::ValidationError( "AFTER", "standard input can be one of BEFORE and AFTER only" );
   }
}

} // namespace

Verb addDiff( CLI::App& commandLine ) {
   CLI::App* const verb =
      commandLine.add_subcommand( "diff", "Print what changes between two dumps" );
   const auto arguments = std::make_shared<DiffArguments>();
   verb->add_option( "TABLE BEFORE AFTER", arguments->words,
                     "Name of the table, and two files or images; - for standard input" );
   verb->add_option( "--chip", arguments->chip, "Chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb->add_option( "--variant", arguments->variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
   verb->add_option( "--fields", arguments->fields, "Compare these alone; * and ? may stand" )
      ->type_name( "NAME,..." );
   addImageFormat( *verb, arguments->format );
   const auto add = [&]( const char* name, DiffForm form, const char* text ) {
      return verb->add_flag_callback(
         name, [arguments, form] { arguments->form = form; }, text );
   };
   CLI::Option* const json = add( "--json", DiffForm::json, "Print an object of JSON an entry" );
   CLI::Option* const csv = add( "--csv", DiffForm::csv, "Print a row a field that differs" );
   CLI::Option* const summary = add( "--summary", DiffForm::summary, "Print counts alone" );
   json->excludes( csv )->excludes( summary );
   csv->excludes( summary );
   verb->final_callback( [arguments] { checkUsage( *arguments ); } );
   describe( *verb,
             "Compares two files of images entry by entry, or two images. BEFORE and AFTER are "
             "files where there are such, else images. The images are those that `vorn decode` "
             "takes; where they don't say their pair, TABLE and --chip do.\n\n"
             "An entry is added or removed where one side has none, or zeroes alone that have not "
             "its tag; replaced where it is of another pair; changed where fields differ. A field "
             "that holds narrower ones, such as mdbEntry, is left out where the change lies in "
             "these, unless --fields names it. With --fields, what differs elsewhere is no "
             "difference.\n\n"
             "In JSON, numbers beyond 53 bits are strings.\n\n"
             "The exit status is 0 without a difference, 1 with one, and 2 for bad input.\n\n" +
                chipTypesParagraph(),
             "  vorn diff LifTable --chip BCM88690_B0 before.txt after.txt\n"
             "  vorn diff --summary before.jsonl after.jsonl" );
   return { verb, [arguments]( Output& output ) {
              try {
                 diff( *arguments, output );
              } catch( const Error& error ) {
                 // With the status of trouble, as 1 stands for a difference.
                 throw UsageError( error.place(), error.message() );
              }
           } };
}

} // namespace Vorn
