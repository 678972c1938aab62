// `vorn diff`: what has changed from one dump, or one image, to another.
#include "Arguments.h"
#include "CommandLine.h"
#include "Terminal.h"
#include "Verbs.h"
#include "forms/Json.h"
#include "verbs/DumpWalk.h"
#include "verbs/Failures.h"

#include <Vorn/Chip.h>
#include <Vorn/Difference.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Images.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <tuple>
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
   SplitText split;
   bool isStrict = false;
   bool keepsGoing = false;
   DiffForm form = DiffForm::text;
};

DumpOptions optionsOf( const DiffArguments& arguments ) {
   DumpOptions options;
   if( arguments.words.size() > 2 ) {
      options.table = arguments.words[0];
   }
   if( !arguments.chip.empty() ) {
      options.chip = &chipOf( arguments.chip );
   }
   if( !arguments.variant.empty() ) {
      options.variant = parseIndex( arguments.variant, "variant", 0xff );
   }
   options.format = arguments.format;
   setSplit( options, arguments.split );
   options.isStrict = arguments.isStrict;
   return options;
}

// What two dumps are matched by: where an entry lies, or would if the images that don't say it lay
// one after another.
struct Key {
   std::string_view table;
   U8 chip;
   EntryIndex index;

   friend bool operator<( const Key& left, const Key& right ) {
      const auto tied = []( const Key& key ) {
         const auto& [entry, array, identifier] = key.index;
         return std::tuple( key.table, key.chip, identifier, array, entry );
      };
      return tied( left ) < tied( right );
   }
   friend bool operator==( const Key& left, const Key& right ) {
      return left.table == right.table && left.chip == right.chip && left.index == right.index;
   }
};

// An entry of a dump, and where it lies as far as its dump says it.
struct Item {
   Key key;
   DumpEntry entry;
   std::vector<U8> bytes; // of its image, once it is kept

   EntryState state() const { return { entry.layout, entry.image }; }

   void keep() {
      bytes.assign( entry.image.begin(), entry.image.end() );
      entry.image = bytes;
      entry.doubt = {};
   }
};

// The images of a file, or the one that the command line has.
class Side {
public:
   Side( std::string role, const std::string& word, const DiffArguments& arguments, Output& output )
      : role_( std::move( role ) ), options_( optionsOf( arguments ) ),
        keepsGoing_( arguments.keepsGoing ), output_( output ), reader_( options_ ) {
      if( isInput( word ) ) {
         bytes_ = std::make_unique<FileBytes>( word, [&output] { output.flush(); } );
         reader_.begin( *bytes_ );
         return;
      }
      try {
         if( word.find_first_of( "{:" ) == std::string::npos ) {
            imageOf( word, arguments.format );
         }
      } catch( const Error& error ) {
         throw Error( "no file " + inQuotes( word ) + ", and no image: " + error.message() );
      }
      reader_.begin( std::span( &word, 1 ) );
   }

   // The next entry, valid until the next call; null after the last.
   Item* next() {
      for( ;; ) {
         const U64 ordinal = ordinal_++;
         try {
            if( !reader_.next() ) {
               return nullptr;
            }
            item_.entry = reader_.entry();
         } catch( const Error& error ) {
            // An image of the command line has no place of its own.
            const Error placed( error.place(), ( bytes_ ? "" : role_ + ": " ) + error.message() );
            failures_.take( placed );
            continue;
         }
         const auto& [layout, image, entry, array, identifier, address, isEmpty, doubt] =
            item_.entry;
         const EntryIndex& first = options_.first;
         item_.key = { layout->table(), layout->chip().number,
                       entry ? EntryIndex{ *entry, array.value_or( 0 ), identifier.value_or( 0 ) }
                             : EntryIndex{ first.entry + ordinal, first.array, first.identifier } };
         if( !doubt.empty() ) {
            warn( std::string( doubt ) );
         }
         return &item_;
      }
   }

   // The entries that come next where they lie in memory, and the index of the first.
   DumpRun ahead( EntryIndex& index ) {
      const auto& [entry, array, identifier] = options_.first;
      DumpRun run;
      // next() reports what fails.
      if( !keepsGoing_ ) {
         run = reader_.ahead( DumpReader::Runs::ofAny );
      }
      index = run.first.value_or( EntryIndex{ entry + ordinal_, array, identifier } );
      return run;
   }
   void skip( std::size_t count ) {
      reader_.skip( count );
      ordinal_ += count;
   }

   U64 bad() const { return failures_.count(); }

   const DumpReader& reader() const { return reader_; }

private:
   void warn( const std::string& doubt ) {
      constexpr std::size_t most = 8;
      if( reported_.size() < most && reported_.insert( doubt ).second ) {
         output_.flush();
         printWarning( reader_.place(), doubt );
      }
   }

   std::string role_; // "BEFORE" or "AFTER"
   DumpOptions options_;
   bool keepsGoing_;
   Output& output_;
   std::unique_ptr<FileBytes> bytes_;
   DumpReader reader_;
   Item item_;
   U64 ordinal_ = 0; // of the next image
   Failures failures_{ keepsGoing_, output_ };
   std::set<std::string> reported_; // doubts
};

// As readers in any language can take it: many lose bits of wider numbers.
Json valueJson( const Value& value ) {
   return value.bits() <= 53 ? Json( value.word( 0 ) ) : Json( hexOf( value ) );
}

// Prints one entry after another, and counts them.
class Diffing {
public:
   Diffing( const DiffArguments& arguments, Output& output )
      : comparison_( arguments.fields ), form_( arguments.form ), output_( output ) {}

   // Either may be missing, but not both.
   void compare( const Item* beforeItem, const Item* afterItem ) {
      const Item& entry = afterItem ? *afterItem : *beforeItem;
      const EntryState before = beforeItem ? beforeItem->state() : EntryState();
      const EntryState after = afterItem ? afterItem->state() : EntryState();
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

   // Takes note of entries that are the same.
   void addSame( U64 count ) { counts_[EntryChange().text()] += count; }

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

   void printText( const Item& entry, const EntryChange& change, const EntryState& before,
                   const EntryState& after ) {
      const auto& [number, array, identifier] = entry.key.index;
      const auto& info = layoutOf( before, after ).info();
      std::string text = "entry " + std::to_string( number );
      text += info.arrayElements > 1 ? " array " + std::to_string( array ) : "";
      text += info.instanceCount > 1 ? " identifier " + std::to_string( identifier ) : "";
      text += ' ' + std::string( change.text() );
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

   void printJson( const Item& entry, const EntryChange& change, const EntryState& before,
                   const EntryState& after ) {
      const Layout& layout = layoutOf( before, after );
      const auto& [array, identifier, address] = placeOf( entry );
      Json object{ { "table", layout.table() },
                   { "chip", layout.chip().name },
                   { "variant", layout.variant() },
                   { "entry", entry.key.index.entry },
                   { "array", array ? Json( *array ) : Json() },
                   { "identifier", identifier ? Json( *identifier ) : Json() },
                   { "address", address ? Json( hexOf( *address ) ) : Json() },
                   { "change", change.text() },
                   { "before", imageJson( before ) },
                   { "after", imageJson( after ) } };
      auto& fields = object["fields"] = Json::object();
      for( const Field& field : change.fields ) {
         fields[std::string( field.name )] = { { "old", valueJson( valueIn( before, field ) ) },
                                               { "new", valueJson( valueIn( after, field ) ) } };
      }
      output_.write( jsonText( object ) + '\n' );
   }

   // Where it lies besides its number, as far as its dump says it.
   static std::tuple<std::optional<U64>, std::optional<U64>, std::optional<U32>>
   placeOf( const Item& item ) {
      return { item.entry.array, item.entry.identifier, item.entry.address };
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

   void printCsv( const Item& entry, const EntryChange& change, const EntryState& before,
                  const EntryState& after ) {
      if( !std::exchange( hasHeader_, true ) ) {
         output_.write( "table,chip,variant,entry,array,identifier,address,change,field,old,"
                        "new\n" );
      }
      const Layout& layout = layoutOf( before, after );
      const auto& [array, identifier, address] = placeOf( entry );
      std::string begin = std::string( layout.table() ) + ',' + layout.chip().name + ',' +
                          std::to_string( layout.variant() ) + ',' +
                          std::to_string( entry.key.index.entry ) + ',';
      begin += array ? std::to_string( *array ) : "";
      begin += ',' + ( identifier ? std::to_string( *identifier ) : "" );
      begin += ',' + ( address ? hexOf( *address ) : "" );
      begin += ',' + std::string( change.text() ) + ',';
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

// Finds the entry of the one dump for each of the other. Where a place occurs again, the n-th time
// in one dump is matched with the n-th in the other.
class Matching {
public:
   Matching( Side& before, Side& after, Diffing& diffing )
      : before_( before ), after_( after ), diffing_( diffing ) {}

   void run() {
      while( skipSame() || step() ) {
      }
   }

private:
   using Kept = std::map<Key, std::deque<Item>>;

   // Passes over entries that are the same bytes; whether there are any.
   bool skipSame() {
      if( !keptBefore_.empty() || !keptAfter_.empty() ) {
         return false;
      }
      EntryIndex begin;
      EntryIndex otherBegin;
      const DumpRun run = before_.ahead( begin );
      const DumpRun other = after_.ahead( otherBegin );
      const std::size_t most = std::min( run.count, other.count );
      if( most == 0 || begin != otherBegin || run.stride != other.stride ) {
         return false;
      }
      const std::size_t bytes = run.images.size() - ( run.count - 1 ) * run.stride;
      const auto isSame = [&]( std::size_t from, std::size_t size ) {
         return std::memcmp( run.images.data() + from, other.images.data() + from, size ) == 0;
      };
      std::size_t count = 0;
      if( isSame( 0, ( most - 1 ) * run.stride + bytes ) ) {
         count = most;
      } else {
         while( count < most && isSame( count * run.stride, bytes ) ) {
            ++count;
         }
      }
      before_.skip( count );
      after_.skip( count );
      diffing_.addSame( count );
      return count > 0;
   }

   // Compares the next entries; false at the end.
   bool step() {
      Item* const before = hasBefore_ ? before_.next() : nullptr;
      Item* const after = hasAfter_ ? after_.next() : nullptr;
      if( before && after && before->key == after->key && keptBefore_.empty() &&
          keptAfter_.empty() ) {
         diffing_.compare( before, after );
         return true;
      }
      if( before ) {
         if( auto other = taken( keptAfter_, before->key ) ) {
            diffing_.compare( before, &*other );
         } else {
            keep( keptBefore_, *before );
         }
      }
      if( after ) {
         if( auto other = taken( keptBefore_, after->key ) ) {
            diffing_.compare( &*other, after );
         } else {
            keep( keptAfter_, *after );
         }
      }
      hasBefore_ = before != nullptr;
      hasAfter_ = after != nullptr;
      // What is kept has no counterpart where the other dump has ended.
      if( !before ) {
         giveUp( keptAfter_, [&]( const Item& item ) { diffing_.compare( nullptr, &item ); } );
      }
      if( !after ) {
         giveUp( keptBefore_, [&]( const Item& item ) { diffing_.compare( &item, nullptr ); } );
      }
      return before || after;
   }

   static std::optional<Item> taken( Kept& kept, const Key& key ) {
      const auto found = kept.find( key );
      if( found == kept.end() ) {
         return std::nullopt;
      }
      std::optional<Item> item( std::move( found->second.front() ) );
      item->entry.image = item->bytes;
      found->second.pop_front();
      if( found->second.empty() ) {
         kept.erase( found );
      }
      return item;
   }

   static void keep( Kept& kept, const Item& item ) {
      auto& items = kept[item.key];
      items.push_back( item );
      items.back().keep();
   }

   template<class Do>
   static void giveUp( Kept& kept, Do compare ) {
      for( const auto& [key, items] : kept ) {
         std::for_each( items.begin(), items.end(), compare );
      }
      kept.clear();
   }

   Side& before_;
   Side& after_;
   Diffing& diffing_;
   bool hasBefore_ = true;
   bool hasAfter_ = true;
   Kept keptBefore_; // those that the other dump hasn't had yet
   Kept keptAfter_;
};

void diff( const DiffArguments& arguments, Output& output ) {
   const auto& words = arguments.words;
   Diffing diffing( arguments, output );
   Side before( "BEFORE", words[words.size() - 2], arguments, output );
   Side after( "AFTER", words.back(), arguments, output );
   try {
      if( !arguments.fields.empty() ) {
         // Before there is a difference, if any.
         fieldNamesIn( arguments.fields, possibleLayouts( before.reader(), arguments.chip ) );
      }
      Matching( before, after, diffing ).run();
   } catch( const BadText& bad ) {
      throw Error( "--fields:" + std::to_string( columnOf( arguments.fields, bad.at() ) ),
                   bad.message() );
   }
   diffing.finish();
   if( const U64 bad = before.bad() + after.bad() ) {
      throw Error( countOf( bad, "error" ) );
   }
   if( diffing.isDifferent() ) {
      throw HasDifferences();
   }
}

void checkUsage( const DiffArguments& arguments ) {
   const auto& words = arguments.words;
   const bool hasTable = !words.empty() && isTable( words[0] );
   if( const std::size_t dumps = words.size() - ( hasTable ? 1 : 0 ); dumps < 2 ) {
      throw CLI::RequiredError( dumps == 0 ? "BEFORE" : "AFTER" );
   }
   if( words.size() > 3 ) {
      throw CLI::ValidationError( "AFTER", "unexpected argument " + inQuotes( words[3] ) +
                                              "; an image of several pieces stands in quotes" );
   }
   if( words.size() == 3 && arguments.chip.empty() ) {
      throw CLI::RequiredError( "--chip" );
   }
   if( words.size() == 2 && arguments.chip.empty() && !arguments.variant.empty() ) {
      throw CLI::RequiresError( "--variant", "TABLE" );
   }
   if( words[words.size() - 2] == "-" && words.back() == "-" ) {
      throw CLI::ValidationError( "AFTER", "standard input can be one of BEFORE and AFTER only" );
   }
}

} // namespace

VerbRun addDiff( CLI::App& verb ) {
   const auto arguments = std::make_shared<DiffArguments>();
   verb.add_option( "TABLE BEFORE AFTER", arguments->words,
                    "Name of the table, and two files or images; - for standard input" );
   verb.add_option( "--chip", arguments->chip, "Chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb
      .add_option( "--variant", arguments->variant,
                   "Variant of the table, by the tag if not given" )
      ->type_name( "V" );
   verb
      .add_option( "--fields", arguments->fields,
                   "Compare only these fields; * and ? are wildcards" )
      ->type_name( "NAME,..." );
   addImageFormat( verb, arguments->format );
   addSplit( verb, arguments->split );
   verb.add_flag( "--keep-going", arguments->keepsGoing, "Go on after a bad image" );
   verb.add_flag( "--strict", arguments->isStrict, "Treat warnings as errors" );
   const auto add = [&]( const char* name, DiffForm form, const char* text ) {
      return verb.add_flag_callback(
         name, [arguments, form] { arguments->form = form; }, text );
   };
   CLI::Option* const json = add( "--json", DiffForm::json, "Print a JSON object per entry" );
   CLI::Option* const csv = add( "--csv", DiffForm::csv, "Print a row per field that differs" );
   CLI::Option* const summary = add( "--summary", DiffForm::summary, "Print only counts" );
   json->excludes( csv )->excludes( summary );
   csv->excludes( summary );
   verb.final_callback( [arguments] { checkUsage( *arguments ); } );
   describe(
      verb,
      "Compares two dumps entry by entry, or two images. BEFORE and AFTER are files if such "
      "files exist, otherwise images, each in any form that `vorn decode` takes; if they don't say "
      "their pair, TABLE and --chip do.\n\n"
      "Entries are matched by where they lie: entry, array, identifier or address. Images that "
      "don't say so are numbered in order, from --first-entry on. If a place occurs twice, the "
      "second is matched with the second in the other dump.\n\n"
      "An entry is added or removed if one side has none, or only zeroes without its tag; "
      "replaced if it is of another pair; changed if fields differ. A field that contains "
      "narrower ones, such as mdbEntry, is left out if the change lies in these, unless --fields "
      "names it. With --fields, only these fields are compared. Entries that only one dump has "
      "are printed at the end.\n\n"
      "In JSON, numbers beyond 53 bits are strings.\n\n"
      "The exit status is 0 if nothing differs, 1 if something does, and 2 for bad input, even "
      "with --keep-going.\n\n" +
         chipTypesParagraph(),
      "  vorn diff LifTable --chip BCM88690_B0 before.txt after.txt\n"
      "  vorn diff LifTable --chip BCM88690_B0 --json before.bin.gz after.hexdump\n"
      "  vorn diff --summary before.jsonl after.jsonl" );
   return [arguments]( Output& output ) {
      try {
         diff( *arguments, output );
      } catch( const Error& error ) {
         // With the status of trouble, as 1 stands for a difference.
         throw UsageError( error.place(), error.message() );
      }
   };
}

} // namespace Vorn
