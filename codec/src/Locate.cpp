// What lies at an address of a chip's S-channel.
#include <Vorn/Locate.h>

#include <Vorn/Error.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

namespace Vorn {

Memory::Memory( Layout layout )
   : layout_( std::move( layout ) ), base_( layout_.address( {} )->schanAddress ),
     identifiers_( layout_.info().instanceCount ) {
   if( layout_.info().entries > 1 ) {
      entryStep_ = layout_.address( { 1, 0, 0 } )->schanAddress - base_;
   }
   if( layout_.info().arrayElements > 1 ) {
      arrayStep_ = layout_.address( { 0, 1, 0 } )->schanAddress - base_;
   }
   std::iota( identifiers_.begin(), identifiers_.end(), U16( 0 ) );
}

Location Memory::locationOf( U64 entry, U64 array, U64 identifier ) const {
   const EntryIndex index{ entry, array, identifier };
   return { layout_, index, *layout_.address( index ) };
}

std::vector<Location> Memory::at( U32 address ) const {
   std::vector<Location> result;
   for( const U16 identifier : identifiers_ ) {
      for( U32 array = 0; array < layout_.info().arrayElements; ++array ) {
         const U32 distance = address - firstOf( array );
         const U32 entry = entryStep_ == 0 ? 0 : distance / entryStep_;
         if( entry < layout_.info().entries ) {
            // The division may leave a remainder, so the address decides.
            const Location candidate = locationOf( entry, array, identifier );
            if( candidate.address.schanAddress == address ) {
               result.push_back( candidate );
            }
         }
      }
   }
   return result;
}

std::optional<Location> Memory::before( U32 address ) const {
   std::optional<Location> best;
   for( U32 array = 0; array < layout_.info().arrayElements; ++array ) {
      const U32 first = firstOf( array );
      if( first < address ) {
         const U32 reached = entryStep_ == 0 ? 0 : ( address - 1 - first ) / entryStep_;
         const auto candidate = locationOf( std::min( reached, layout_.info().entries - 1 ), array,
                                            identifiers_.front() );
         if( !best || best->address.schanAddress < candidate.address.schanAddress ) {
            best = candidate;
         }
      }
   }
   return best;
}

std::optional<Location> Memory::after( U32 address ) const {
   std::optional<Location> best;
   for( U32 array = 0; array < layout_.info().arrayElements; ++array ) {
      const U32 first = firstOf( array );
      U64 entry = 0;
      if( first <= address ) {
         entry = entryStep_ == 0 ? 1 : U64( address - first ) / entryStep_ + 1;
      }
      if( entry < layout_.info().entries ) {
         const auto candidate = locationOf( entry, array, identifiers_.front() );
         if( !best || candidate.address.schanAddress < best->address.schanAddress ) {
            best = candidate;
         }
      }
   }
   return best;
}

std::vector<U8> Memory::blocks() const {
   std::vector<U8> result;
   for( const U16 identifier : identifiers_ ) {
      result.push_back( layout_.address( { 0, 0, identifier } )->destBlock );
   }
   return result;
}

bool Memory::narrow( U8 destBlock ) {
   std::erase_if( identifiers_, [&]( U16 identifier ) {
      return layout_.address( { 0, 0, identifier } )->destBlock != destBlock;
   } );
   return !identifiers_.empty();
}

std::vector<Memory> memoriesOn( const Chip& chip ) {
   std::vector<Memory> memories;
   for( Layout& layout : layoutsOn( chip ) ) {
      if( layout.info().hasAddress ) {
         memories.emplace_back( std::move( layout ) );
      }
   }
   return memories;
}

namespace {

// Leaves the memories and instances in the block.
void narrow( std::vector<Memory>& memories, U8 destBlock, const Chip& chip ) {
   std::set<U32> blocks;
   for( const Memory& memory : memories ) {
      const auto own = memory.blocks();
      blocks.insert( own.begin(), own.end() );
   }
   std::erase_if( memories, [&]( Memory& memory ) { return !memory.narrow( destBlock ); } );
   if( memories.empty() ) {
      throw Error( "no memory of " + chip.name + " lies in block " + std::to_string( destBlock ) +
                   "; allowed: " + rangesOf( std::vector( blocks.begin(), blocks.end() ) ) );
   }
}

// "0x8200ff is entry 255 of LifProfileAttributes in block 2".
std::string textOf( const Location& found ) {
   std::string text =
      hexOf( found.address.schanAddress ) + " is entry " + std::to_string( found.index.entry );
   if( found.layout.info().arrayElements > 1 ) {
      text += " of array element " + std::to_string( found.index.array );
   }
   return text + " of " + std::string( found.layout.table() ) + found.layout.variantText() +
          " in block " + std::to_string( found.address.destBlock );
}

} // namespace

AddressRange parseAddresses( std::string_view text ) {
   const auto addressIn = []( std::string_view one ) {
      constexpr U64 largest = 0xffffffff;
      const U64 address = parseIndex( one, "address", largest );
      if( address > largest ) {
         throw Error( "address " + shown( one ) + " is out of range; it is at most " +
                      std::to_string( largest ) );
      }
      return static_cast<U32>( address );
   };
   const auto dash = text.find( '-', 1 );
   if( dash == std::string_view::npos ) {
      const U32 only = addressIn( text );
      return { only, only };
   }
   const auto before = text.substr( 0, dash );
   const auto after = text.substr( dash + 1 );
   if( after.empty() ) {
      throw Error( "bad range " + inQuotes( text ) + " of addresses; write it as first-last" );
   }
   const AddressRange range{ addressIn( before ), addressIn( after ) };
   if( range.last < range.first ) {
      throw Error( "range " + shown( text ) + " of addresses ends before it begins; did you mean " +
                   shown( after ) + '-' + shown( before ) + '?' );
   }
   return range;
}

Locator::Locator( const Chip& chip, std::optional<U8> destBlock, bool boundedOnly )
   : memories_( memoriesOn( chip ) ) {
   if( boundedOnly ) {
      std::erase_if( memories_, []( const Memory& memory ) { return memory.isUnbounded(); } );
   }
   if( memories_.empty() ) {
      throw Error( "no memory of " + chip.name + " has an address" );
   }
   where_ = " on " + chip.name;
   if( destBlock ) {
      narrow( memories_, *destBlock, chip );
      where_ = " in block " + std::to_string( *destBlock ) + where_;
   }
}

std::vector<Location> Locator::at( U32 address ) const {
   std::vector<Location> locations;
   for( const Memory& memory : memories_ ) {
      const auto own = memory.at( address );
      locations.insert( locations.end(), own.begin(), own.end() );
   }
   return locations;
}

std::optional<U32> Locator::next( U64 address ) const {
   std::optional<U32> nearest;
   if( address > 0xffffffff ) {
      return nearest;
   }
   const auto wanted = static_cast<U32>( address );
   for( const Memory& memory : memories_ ) {
      if( !memory.at( wanted ).empty() ) {
         return wanted;
      }
      const auto above = memory.after( wanted );
      if( above && ( !nearest || above->address.schanAddress < *nearest ) ) {
         nearest = above->address.schanAddress;
      }
   }
   return nearest;
}

void Locator::refuse( const AddressRange& range ) const {
   std::optional<Location> before;
   std::optional<Location> after;
   for( const Memory& memory : memories_ ) {
      const auto below = memory.before( range.first );
      if( below && ( !before || before->address.schanAddress < below->address.schanAddress ) ) {
         before = below;
      }
      const auto above = memory.after( range.last );
      if( above && ( !after || above->address.schanAddress < after->address.schanAddress ) ) {
         after = above;
      }
   }
   std::string message = "nothing lies " +
                         ( range.first == range.last
                              ? "at " + hexOf( range.first )
                              : "from " + hexOf( range.first ) + " to " + hexOf( range.last ) ) +
                         where_;
   if( before ) {
      message += "; below it " + textOf( *before );
   }
   if( after ) {
      message += "; above it " + textOf( *after );
   }
   throw Error( message );
}

std::vector<Location> locate( const Chip& chip, U32 address, std::optional<U8> destBlock ) {
   const Locator locator( chip, destBlock );
   auto locations = locator.at( address );
   if( locations.empty() ) {
      locator.refuse( { address, address } );
   }
   return locations;
}

} // namespace Vorn
