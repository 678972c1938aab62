// Turns lines of JSON and rows of CSV into composed entries, with several threads.
#include "CommandLine.h"
#include "Pipeline.h"
#include "Places.h"
#include "Progress.h"
#include "QuickRecords.h"
#include "Terminal.h"
#include "Verbs.h"
#include "verbs/Failures.h"
#include "verbs/Program.h"

#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Record.h>
#include <Vorn/Rows.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

// What the lines of a file have in common.
struct Source {
   std::string name;
   std::string header; // of CSV
};

// Whole lines of a file, and what has been made of them.
struct Lines {
   struct Bad {
      Error error;
      std::size_t made; // before it, in bytes
   };
   // An entry that has an address.
   struct Placed {
      const Layout* layout;
      EntryIndex index;
      Address address;
      U64 line;
      std::string_view text;
      std::size_t begin; // of what is made of it
      std::size_t end;
   };

   // Begins again, in the memory that there is.
   void take( std::string_view lines ) {
      text.reserve( lines.size() + QuickRecords::padding );
      text = lines;
      text.resize( lines.size() + QuickRecords::padding );
      size = lines.size();
      made.clear();
      entries = 0;
      bad.clear();
      placed.clear();
   }

   std::shared_ptr<const Source> source;
   std::string text; // and QuickRecords::padding bytes
   std::size_t size = 0;
   U64 number = 0; // of the first one
   std::string made;
   U64 entries = 0;
   U64 bytesRead = 0; // of the file, up to their end
   std::vector<Bad> bad;
   std::vector<Placed> placed; // empty where repeats are allowed
};

// Calls take( line, number ) for each line of the text until it returns false.
template<class Take>
void forEachLine( std::string_view text, U64 number, Take take ) {
   for( ; !text.empty(); ++number ) {
      const auto line = text.substr( 0, text.find( '\n' ) );
      text.remove_prefix( std::min( line.size() + 1, text.size() ) );
      if( !take( line, number ) ) {
         return;
      }
   }
}

// How many lines end in the text.
U64 endsIn( std::string_view text ) {
   U64 ends = 0;
   for( auto at = text.find( '\n' ); at != text.npos; at = text.find( '\n', at + 1 ) ) {
      ++ends;
   }
   return ends;
}

// Composes the entries of lines: plain records quickly, the others by the careful parser, which
// also says what is wrong with a bad one and where.
class Composing {
public:
   explicit Composing( const ProgramArguments& arguments ) : arguments_( arguments ) {
      if( arguments.rows ) {
         rows_.emplace( *arguments.rows );
      }
   }

   void compose( Lines& lines ) {
      begin( lines.source );
      forEachLine( { lines.text.data(), lines.size }, lines.number,
                   [&]( std::string_view line, U64 number ) {
                      const auto made = lines.made.size();
                      try {
                         take( lines, line, number );
                      } catch( const Error& error ) {
                         lines.made.resize( made );
                         lines.bad.push_back( { error, made } );
                      }
                      return lines.bad.empty() || arguments_.keepsGoing;
                   } );
   }

   // Whether the line names the columns of CSV; sets those of the source.
   bool takeHeader( Source& source, std::string_view line, U64 number ) {
      try {
         if( !rows_->header( line ) ) {
            return false;
         }
      } catch( const Error& error ) {
         throw Error( place( source, number, rows_->column() ), error.message() );
      }
      source.header = line;
      return true;
   }

   // "entries.csv:3:17", where the line says the place of its entry.
   std::string placeOf( const Lines& lines, const Lines::Placed& placed ) {
      begin( lines.source );
      if( rows_ ) {
         rows_->compose( placed.text );
         rows_->lookAtPlace();
      } else {
         careful_.compose( placed.text );
         careful_.lookAtPlace();
      }
      return place( *lines.source, placed.line, column() );
   }

private:
   static std::string place( const Source& source, U64 line, std::size_t column ) {
      return source.name + ':' + std::to_string( line ) + ':' + std::to_string( column );
   }

   std::size_t column() const { return rows_ ? rows_->column() : careful_.column(); }

   void begin( const std::shared_ptr<const Source>& source ) {
      if( source != source_ ) {
         source_ = source;
         if( rows_ ) {
            rows_->header( source->header );
         }
      }
   }

   void take( Lines& lines, std::string_view line, U64 number ) {
      if( line.size() > ByteLines::longest ) {
         throw Error( source_->name + ':' + std::to_string( number ),
                      "the line is longer than " + std::to_string( ByteLines::longest ) +
                         " bytes" );
      }
      if( isBlankLine( line ) ) {
         return;
      }
      try {
         if( const auto entry = composed( line ) ) {
            append( lines, *entry, line, number );
         }
      } catch( const Error& error ) {
         const bool mayBeRows = number == 1 && !rows_ && namesColumns( line );
         throw Error( place( *source_, number, column() ),
                      mayBeRows ? "this is CSV; give --csv" : error.message() );
      }
   }

   static bool namesColumns( std::string_view line ) {
      try {
         return RowComposer().header( line );
      } catch( const Error& ) {
         return false;
      }
   }

   std::optional<Composed> composed( std::string_view line ) {
      if( rows_ ) {
         return rows_->compose( line );
      }
      auto plain = quick_.compose( line );
      return plain ? plain : careful_.compose( line );
   }

   void append( Lines& lines, const Composed& entry, std::string_view line, U64 number ) {
      if( &entry.layout != last_ ) {
         last_ = &entry.layout;
         traceView( *last_ );
      }
      const auto begin = lines.made.size();
      arguments_.form( lines.made, entry );
      ++lines.entries;
      if( entry.address && !arguments_.allowsRepeats ) {
         lines.placed.push_back( { &entry.layout, entry.index, *entry.address, number, line, begin,
                                   lines.made.size() } );
      }
   }

   const ProgramArguments& arguments_;
   std::shared_ptr<const Source> source_;
   QuickRecords quick_;
   RecordComposer careful_;
   std::optional<RowComposer> rows_;
   const Layout* last_ = nullptr;
};

// "entry 5 array 2 of TcamActionTable on BCM88690_B0"
std::string entryText( const Lines::Placed& placed ) {
   const auto& [entry, array, identifier] = placed.index;
   const auto part = []( const char* name, U64 number ) {
      return number == 0 ? std::string() : name + std::to_string( number );
   };
   return "entry " + std::to_string( entry ) + part( " array ", array ) +
          part( " identifier ", identifier ) + " of " + std::string( placed.layout->table() ) +
          " on " + placed.layout->chip().name;
}

class Run {
public:
   Run( const ProgramArguments& arguments, Output& output )
      : arguments_( arguments ), output_( output ),
        count_( parseIndex( arguments.count, "count", ~U64( 0 ) ) ) {}

   void take( const std::string& path ) {
      try {
         FileBytes bytes( path, [this] { beforeRead(); } );
         bytes_ = &bytes;
         bytesRead_ = 0;
         read( bytes );
         pipeline_.drain();
      } catch( const Error& error ) {
         bytes_ = nullptr;
         if( hasEnded_ ) {
            throw;
         }
         pipeline_.drain(); // what comes before it
         failures_.take( error );
      }
      bytes_ = nullptr;
   }

   void finish() { failures_.finish( countOf( entries_, "entry", "entries" ) + " printed" ); }

private:
   // Does a step after whose failure nothing goes on.
   template<class Step>
   void orEnd( Step step ) {
      hasEnded_ = true;
      step();
      hasEnded_ = false;
   }

   Composing& composing( std::size_t thread ) {
      if( !composing_[thread] ) {
         composing_[thread] = std::make_unique<Composing>( arguments_ );
      }
      return *composing_[thread];
   }

   // What has been read is answered before there is a wait for more.
   void beforeRead() {
      if( !bytes_ ) {
         return;
      }
      if( !bytes_->isReady() ) {
         pipeline_.drain();
         orEnd( [this] { output_.flush(); } );
      }
      if( const U64 size = bytes_->size() ) {
         progress_.show( bytesRead_, size, entries_ );
      } else {
         progress_.show( entries_, count_, entries_ );
      }
   }

   void read( FileBytes& bytes );
   void give( std::string_view text, U64 number );
   void finishLines( Lines& lines );

   const ProgramArguments& arguments_;
   Output& output_;
   U64 count_;
   Progress progress_;
   U64 entries_ = 0;
   U64 bytesRead_ = 0; // of the file, as far as entries are printed
   Failures failures_{ arguments_.keepsGoing, output_, &progress_ };
   bool hasEnded_ = false;
   FileBytes* bytes_ = nullptr;
   std::shared_ptr<Source> source_;
   Places places_;
   std::vector<std::unique_ptr<Composing>> composing_{ Pipeline<Lines>::mostThreads };
   const bool isTraced_ = isTracing();
   Pipeline<Lines> pipeline_{ [this]( Lines& lines, std::size_t thread ) {
                                composing( thread ).compose( lines );
                             },
                              [this]( Lines& lines ) { orEnd( [&] { finishLines( lines ); } ); } };
};

// Prints what has been made of the lines, and fails in their order.
void Run::finishLines( Lines& lines ) {
   const std::string_view made = lines.made;
   std::size_t printed = 0;
   const auto print = [&]( std::size_t end ) {
      output_.write( made.substr( printed, end - printed ) );
      printed = end;
   };
   auto bad = lines.bad.begin();
   const auto failUpTo = [&]( std::size_t end ) {
      for( ; bad != lines.bad.end() && bad->made <= end; ++bad ) {
         print( bad->made );
         failures_.take( bad->error );
      }
   };
   entries_ += lines.entries;
   bytesRead_ = lines.bytesRead;
   for( const Lines::Placed& placed : lines.placed ) {
      const auto earlier = places_.add( *placed.layout, placed.index, placed.address, placed.line );
      if( earlier ) {
         failUpTo( placed.begin );
         print( placed.begin );
         --entries_;
         failures_.take( Error( composing( 0 ).placeOf( lines, placed ),
                                entryText( placed ) + " is programmed at " + *earlier +
                                   " already; --allow-repeats takes both" ) );
         printed = placed.end;
      }
   }
   failUpTo( made.size() );
   print( made.size() );
}

// Has whole lines composed, the first of which has this number.
void Run::give( std::string_view text, U64 number ) {
   Lines lines = pipeline_.spare();
   lines.take( text );
   lines.source = source_;
   lines.number = number;
   lines.bytesRead = bytes_->bytesRead();
   // Small pieces are those of a pipe that somebody writes to line by line.
   constexpr std::size_t enough = 1 << 15;
   const bool isMany = text.size() >= enough && number > 1 && !isTraced_;
   pipeline_.give( std::move( lines ), isMany );
}

void Run::read( FileBytes& bytes ) {
   source_ = std::make_shared<Source>( Source{ bytes.name(), {} } );
   places_.begin( bytes.name() );
   ByteLines input( bytes );
   bool isHeaderDue = arguments_.rows.has_value();
   bool isTooLong = false; // what comes up to the next end of a line belongs to a bad one
   U64 number = 1;
   for( bool isEnd = false; !isEnd; ) {
      isEnd = !input.readMore();
      auto text = input.rest();
      const auto pass = [&]( std::size_t size ) {
         const auto ends = endsIn( text.substr( 0, size ) );
         number += ends;
         input.skip( size, ends );
         text = input.rest();
      };
      if( isTooLong ) {
         const auto end = text.find( '\n' );
         isTooLong = end == std::string_view::npos;
         pass( isTooLong ? text.size() : end + 1 );
      }
      std::size_t size = isEnd ? text.size() : text.rfind( '\n' ) + 1;
      if( size == 0 && text.size() > ByteLines::longest ) {
         size = text.size();
         isTooLong = true;
      }
      if( isHeaderDue ) {
         std::size_t header = 0;
         forEachLine( text.substr( 0, size ), number, [&]( std::string_view line, U64 at ) {
            isHeaderDue = !composing( 0 ).takeHeader( *source_, line, at );
            header = std::min(
               static_cast<std::size_t>( line.data() - text.data() ) + line.size() + 1, size );
            return isHeaderDue;
         } );
         pass( header );
         size -= header;
      }
      if( size > 0 ) {
         give( text.substr( 0, size ), number );
         pass( size );
      }
   }
}

} // namespace

void program( const ProgramArguments& arguments, Output& output ) {
   Run run( arguments, output );
   for( const std::string& path : arguments.paths ) {
      run.take( path );
   }
   run.finish();
}

} // namespace Vorn
