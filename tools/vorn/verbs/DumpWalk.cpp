// What verbs over whole dumps share: their arguments, and the walk over the entries.
#include "verbs/DumpWalk.h"

#include "CommandLine.h"
#include "Terminal.h"

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <span>
#include <utility>

namespace Vorn {

namespace {

DumpOptions optionsOf( const DumpArguments& arguments ) {
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
   setSplit( options, arguments.split );
   options.isStrict = arguments.isStrict;
   return options;
}

// Does a step; its Errors begin with the option.
template<class Step>
auto within( const std::string& option, const std::string& text, Step step ) {
   try {
      return step();
   } catch( const BadText& bad ) {
      throw Error( option + ':' + std::to_string( columnOf( text, bad.at() ) ), bad.message() );
   }
}

// Whether the argument is an address and a colon, perhaps with an image, and so no table.
bool isAddressed( const std::string& text ) {
   return text.starts_with( "0x" ) && text.find( ':' ) != std::string::npos;
}

} // namespace

DumpWalk::DumpWalk( const DumpArguments& arguments, Output& output )
   : arguments_( arguments ), output_( output ), reader_( optionsOf( arguments ) ),
     pipeline_( []( DumpBlock& block, std::size_t ) { block.work(); },
                [this]( DumpBlock& block ) { finishBlock( block ); } ) {
   if( !arguments.where.empty() ) {
      within( "--where", arguments.where, [&] {
         filter_.emplace( arguments.where, possibleLayouts( reader_, arguments.chip ) );
      } );
   }
}

std::vector<Layout> possibleLayouts( const DumpReader& reader, const std::string& ofChip ) {
   const auto own = reader.layouts();
   std::vector<Layout> layouts( own.begin(), own.end() );
   if( layouts.empty() ) {
      for( const Chip& chip : allChips() ) {
         if( ofChip.empty() || chip.number == chipOf( ofChip ).number ) {
            const auto more = layoutsOn( chip );
            layouts.insert( layouts.end(), more.begin(), more.end() );
         }
      }
   }
   return layouts;
}

std::optional<std::vector<std::string_view>> DumpWalk::fields() const {
   if( arguments_.fields.empty() ) {
      return std::nullopt;
   }
   return within( "--fields", arguments_.fields, [&] {
      return fieldNamesIn( arguments_.fields, possibleLayouts( reader_, arguments_.chip ) );
   } );
}

void DumpWalk::run( const std::function<void( const DumpEntry& )>& visit ) {
   visit_ = visit;
   if( arguments_.paths.empty() ) {
      reader_.begin( std::span<const std::string>( arguments_.image ) );
      readAll();
   }
   for( const std::string& path : arguments_.paths ) {
      try {
         readFile( path );
      } catch( const Error& error ) {
         failures_.take( error );
      }
   }
}

void DumpWalk::readFile( const std::string& path ) {
   const FileBytes* reading = nullptr;
   // What has been read is answered before there is a wait for more.
   FileBytes bytes( path, [&] {
      if( reading && !reading->isReady() ) {
         pipeline_.drain();
         output_.flush();
      }
   } );
   reading = &bytes;
   reader_.begin( bytes );
   if( arguments_.paths.size() > 1 && onFile ) {
      onFile( bytes.name() );
   }
   readAll();
}

void DumpWalk::readAll() {
   plan();
   for( ;; ) {
      try {
         if( takeBlock() ) {
            continue;
         }
         pipeline_.drain();
         if( !reader_.next() ) {
            return;
         }
         take();
      } catch( const Error& error ) {
         pipeline_.drain();
         failures_.take( error );
      }
   }
}

void DumpWalk::plan() {
   plans_.clear();
   hasLines_ = false;
   for( const Layout& layout : reader_.layouts() ) {
      const Filter* const filter = filter_ ? filter_->filterOf( layout ) : nullptr;
      plans_.push_back( { &layout, layout.bytes(), filter ? std::optional( *filter ) : std::nullopt,
                          filter_ && !filter, lineFor ? lineFor( layout ) : nullptr } );
   }
}

// Takes the plain entries that come next; false where there are none.
bool DumpWalk::takeBlock() {
   // Fewer bytes are what somebody types, or what lies between others.
   constexpr std::size_t enough = 1 << 14;
   if( !takesBlocks ) {
      return false;
   }
   const DumpRun run = reader_.ahead( DumpReader::Runs::ofAny );
   if( run.count == 0 ) {
      return false;
   }
   DumpBlock block = pipeline_.spare();
   block.take( reader_, run, plans_, arguments_.printsEmpty );
   const bool isMany = hasLines_ && block.bytes() >= enough;
   pipeline_.give( std::move( block ), isMany );
   return true;
}

void DumpWalk::finishBlock( DumpBlock& block ) {
   images_ += block.images();
   empty_ += block.empty();
   for( const auto& [layout, entries] : block.leftOut() ) {
      filter_->leaveOut( *layout, entries );
   }
   const auto lines = block.lines();
   if( !lines.empty() ) {
      onLines( lines );
   }
   // To look at entries of which few are kept is less work than to share them.
   hasLines_ = 8 * lines.size() >= block.bytes();
   for( const std::size_t number : block.kept() ) {
      visit_( block.entry( number ) );
   }
   done_ += block.taken();
}

void DumpWalk::take() {
   const DumpEntry& entry = reader_.entry();
   ++images_;
   if( !entry.doubt.empty() ) {
      warn( std::string( entry.doubt ) );
   }
   if( entry.isEmpty && !arguments_.printsEmpty ) {
      ++empty_;
      return;
   }
   try {
      if( filter_ && !filter_->matches( *entry.layout, entry.image ) ) {
         return;
      }
      visit_( entry );
   } catch( const Error& error ) {
      throw Error( reader_.place(), error.message() );
   }
   ++done_;
}

void DumpWalk::warn( const std::string& doubt ) {
   if( reported_.contains( doubt ) || reported_.size() == mostWarnings ) {
      ++unreported_;
      return;
   }
   reported_.insert( doubt );
   output_.flush();
   printWarning( reader_.place(), doubt );
}

void DumpWalk::finish( std::string_view done ) {
   const auto leftOut = filter_ ? filter_->leftOut() : std::span<const PairFilter::LeftOut>();
   if( empty_ == 0 && unreported_ == 0 && failures_.count() == 0 && leftOut.empty() ) {
      return;
   }
   output_.flush();
   if( empty_ > 0 ) {
      note( std::to_string( empty_ ) + " of " + std::to_string( images_ ) +
            ( empty_ == 1 ? " entries is" : " entries are" ) + " empty; --empty prints them" );
   }
   for( const auto& [layout, reason, entries] : leftOut ) {
      note( countOf( entries, "image" ) + " of " + layout.pairText() +
            " can't fulfil --where: " + reason );
   }
   if( unreported_ > 0 ) {
      printWarning( "", countOf( unreported_, "more image" ) + " like these" );
   }
   failures_.finish( countOf( done_, "image" ) + ' ' + std::string( done ) );
}

void DumpLine::completeInto( DumpArguments& arguments ) {
   auto& [table, chip, variant] = pair;
   auto& image = arguments.image;
   auto& paths = arguments.paths;
   const auto requireOne = [&] {
      if( std::count( paths.begin(), paths.end(), "-" ) +
             std::count( image.begin(), image.end(), "-" ) >
          1 ) {
         throw CLI::ValidationError( "FILE", "standard input is given twice" );
      }
   };
   requireOne();
   if( table == "-" || isJson( table ) || isAddressed( table ) ) {
      image.insert( image.begin(), std::exchange( table, {} ) );
   }
   if( paths.empty() ) {
      if( !isTable( table ) && areFiles( { table }, arguments.format ) ) {
         image.insert( image.begin(), std::exchange( table, {} ) );
      }
      if( areFiles( image, arguments.format ) ) {
         paths = std::exchange( image, {} );
      }
   }
   // --file takes all names up to the next option.
   if( table.empty() && paths.size() > 1 && isTable( paths.back() ) ) {
      table = std::move( paths.back() );
      paths.pop_back();
   }
   if( image.empty() && paths.empty() ) {
      // What stands alone where the TABLE is due may be the image, or a wrong name.
      if( !table.empty() && isTable( table ) && chip.empty() ) {
         throw CLI::RequiredError( "--chip, and IMAGE or --file, are required",
                                   CLI::ExitCodes::RequiredError );
      }
      if( table.empty() || isTable( table ) ) {
         throw CLI::RequiredError( "IMAGE or --file" );
      }
      if( nearest( table, allTables() ) ) {
         tableNamed( table );
      }
      throw CLI::RequiredError( "TABLE" );
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
      arguments.pair = { table, chip, variant };
   }
   arguments.chip = chip;
}

void addDump( CLI::App& verb, PairText& pair, DumpArguments& arguments ) {
   verb.add_option( "--chip", pair.chip, "Chip type, by name or number" )
      ->type_name( "NAME|NUMBER" );
   verb.add_option( "--variant", pair.variant, "Variant of the table, by the tag if not given" )
      ->type_name( "V" );
   addImageFormat( verb, arguments.format );
   addSplit( verb, arguments.split );
   verb.add_flag( "--empty", arguments.printsEmpty,
                  "Include empty entries: zeroes that fit no tag" );
   verb.add_flag( "--keep-going", arguments.keepsGoing, "Go on after a bad image" );
   verb.add_flag( "--strict", arguments.isStrict, "Treat warnings as errors" );
}

void addChoice( CLI::App& verb, DumpArguments& arguments ) {
   verb.add_option( "--fields", arguments.fields, "Only these fields; * and ? are wildcards" )
      ->type_name( "NAME,..." );
   verb.add_option( "--where", arguments.where, "Only entries that fulfil this condition" )
      ->type_name( "EXPR" );
   // An empty list or condition is none.
   verb.get_option( "--fields" )->check( []( const std::string& text ) {
      return text.empty() ? std::string( "a name is missing; write fields as vsi,vlanEditVid1" )
                          : std::string();
   } );
   verb.get_option( "--where" )->check( []( const std::string& text ) {
      return text.find_first_not_of( " \t\n" ) == std::string::npos
                ? std::string( "the condition is empty; write one such as vsi >= 2000" )
                : std::string();
   } );
}

std::string whereParagraphs() {
   return "Conditions of --where, in quotes for the shell:\n"
          "  vsi == 2000, != < <= > >=   a field and a value, or two fields; unsigned\n"
          "  vsi in 100..200             within a range, its ends included\n"
          "  vsi in { 1, 5, 100..200 }   one of a set; also `not in`\n"
          "  destination & 0xff == 3     only the bits of a mask\n"
          "  learnEnable                 not zero\n"
          "  ! a, a && b, a || b, ( a )  in this order of precedence; also not, and, or\n"
          "Values may be written as `vorn encode` takes them, addresses too. Entries of a variant "
          "that lacks a field of the condition don't fulfil it; how many there are is reported on "
          "standard error.";
}

} // namespace Vorn
