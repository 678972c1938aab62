// The entries of a text or a dump, kept in memory.
#include "Entries.h"

#include <Vorn/Error.h>

namespace Explorer {

namespace {

std::string withMore( const std::string& first, std::size_t count, std::string_view what ) {
   return count < 2 ? first
                    : first + " (and " + std::to_string( count - 1 ) + " more " +
                         std::string( what ) + ( count > 2 ? "s" : "" ) + ')';
}

} // namespace

Entries Entries::ofArgument( std::string_view text, const Vorn::DumpOptions& options ) {
   const std::vector<std::string> arguments{ std::string( text ) };
   Vorn::DumpReader reader( options );
   reader.begin( arguments );
   Entries entries;
   entries.readAll( reader );
   return entries;
}

Entries Entries::ofFile( std::string_view bytes, const std::string& name,
                         const Vorn::DumpOptions& options ) {
   Vorn::TextBytes source( bytes, name );
   Vorn::DumpReader reader( options );
   reader.begin( source );
   Entries entries;
   entries.readAll( reader );
   return entries;
}

void Entries::readAll( Vorn::DumpReader& reader ) {
   for( ;; ) {
      try {
         if( const Vorn::DumpRun run = reader.ahead(); run.count > 0 ) {
            add( run );
            reader.skip( run.count );
            continue;
         }
         if( !reader.next() ) {
            break;
         }
         const Vorn::DumpEntry& entry = reader.entry();
         add( entry );
         if( !entry.doubt.empty() && ++warnings_ == 1 ) {
            const std::string place = reader.place();
            warning_ = ( place.empty() ? "" : place + ": " ) + "warning: ";
            warning_ += entry.doubt;
         }
      } catch( const Vorn::Error& error ) {
         if( ++errors_ == 1 ) {
            error_ = error.what();
         }
      }
   }
   layoutOf_.clear();
}

std::size_t Entries::numberOf( const Vorn::Layout& layout ) {
   const auto [known, isNew] = layoutOf_.try_emplace( &layout, layouts_.size() );
   if( isNew ) {
      layouts_.push_back( layout );
   }
   return known->second;
}

void Entries::add( const Vorn::DumpEntry& entry ) {
   rows_.push_back( { numberOf( *entry.layout ), bytes_.size(), entry.image.size(), entry.entry,
                      entry.array, entry.identifier, entry.isEmpty } );
   bytes_.insert( bytes_.end(), entry.image.begin(), entry.image.end() );
}

void Entries::add( const Vorn::DumpRun& run ) {
   const std::size_t layout = numberOf( *run.layout );
   const std::size_t bytes = run.layout->bytes();
   for( std::size_t i = 0; i < run.count; ++i ) {
      Row row{ layout, bytes_.size() + i * run.stride, bytes, {}, {}, {}, run.areEmpty };
      if( run.first ) {
         row.entry = run.first->entry + i;
         row.array = run.first->array;
         row.identifier = run.first->identifier;
      }
      rows_.push_back( row );
   }
   bytes_.insert( bytes_.end(), run.images.begin(), run.images.end() );
}

Entries::Entry Entries::at( std::size_t index ) const {
   const Row& row = rows_.at( index );
   return { &layouts_[row.layout],
            std::span( bytes_ ).subspan( row.begin, row.bytes ),
            row.entry,
            row.array,
            row.identifier,
            row.isEmpty };
}

std::string Entries::message() const {
   return errors_ > 0 ? withMore( error_, errors_, "error" )
                      : withMore( warning_, warnings_, "warning" );
}

} // namespace Explorer
