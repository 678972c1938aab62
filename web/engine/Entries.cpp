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

void Entries::add( const Vorn::DumpEntry& entry ) {
   const auto [known, isNew] = layoutOf_.try_emplace( entry.layout, layouts_.size() );
   if( isNew ) {
      layouts_.push_back( *entry.layout );
   }
   rows_.push_back( { known->second, bytes_.size(), entry.image.size(), entry.entry, entry.array,
                      entry.identifier, entry.isEmpty } );
   bytes_.insert( bytes_.end(), entry.image.begin(), entry.image.end() );
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
