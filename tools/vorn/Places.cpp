// Where entries have been composed, to find those that are composed twice.
#include "Places.h"

#include <Vorn/Chip.h>

#include <algorithm>
#include <limits>

namespace Vorn {

void Places::begin( const std::string& file ) { files_.push_back( { file, lines_ } ); }

std::optional<std::string> Places::add( const Layout& layout, const EntryIndex& index,
                                        const Address& address, U64 line ) {
   const Bank bank{ &layout, index.array, index.identifier, address.accessType, address.destBlock };
   if( !last_ || lastBank_ != bank ) {
      const Memory memory( layout.table(), layout.chip().number, index.array, index.identifier,
                           address.accessType, address.destBlock );
      last_ = &memories_[memory];
      lastBank_ = bank;
      page_ = nullptr;
   }
   const U32 number = address.schanAddress / pageEntries;
   if( !page_ || lastPage_ != number ) {
      page_ = &last_->try_emplace( number ).first->second;
      lastPage_ = number;
   }
   lines_ = files_.back().before + line;
   U32& first = ( *page_ )[address.schanAddress % pageEntries];
   if( first != 0 ) {
      return placeOf( first );
   }
   // Lines without end are no reason to fail.
   first = static_cast<U32>( std::min<U64>( lines_, std::numeric_limits<U32>::max() ) );
   return std::nullopt;
}

std::string Places::placeOf( U32 line ) const {
   if( line == std::numeric_limits<U32>::max() ) {
      return "an earlier line";
   }
   const auto after = std::find_if( files_.begin() + 1, files_.end(),
                                    [&]( const File& file ) { return file.before >= line; } );
   const File& file = *( after - 1 );
   return file.name + ':' + std::to_string( line - file.before );
}

} // namespace Vorn
