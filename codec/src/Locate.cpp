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
            // The division may have left a rest, so the address has the last word.
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

[[noreturn]] void refuseAddress( const std::vector<Memory>& memories, U32 address,
                                 const std::string& where ) {
   std::optional<Location> before;
   std::optional<Location> after;
   for( const Memory& memory : memories ) {
      const auto below = memory.before( address );
      if( below && ( !before || before->address.schanAddress < below->address.schanAddress ) ) {
         before = below;
      }
      const auto above = memory.after( address );
      if( above && ( !after || above->address.schanAddress < after->address.schanAddress ) ) {
         after = above;
      }
   }
   std::string message = "nothing lies at " + hexOf( address ) + where;
   if( before ) {
      message += "; below it " + textOf( *before );
   }
   if( after ) {
      message += "; above it " + textOf( *after );
   }
   throw Error( message );
}

} // namespace

std::vector<Location> locate( const Chip& chip, U32 address, std::optional<U8> destBlock ) {
   auto memories = memoriesOn( chip );
   if( memories.empty() ) {
      throw Error( "no memory of " + chip.name + " has an address" );
   }
   std::string where = " on " + chip.name;
   if( destBlock ) {
      narrow( memories, *destBlock, chip );
      where = " in block " + std::to_string( *destBlock ) + where;
   }
   std::vector<Location> locations;
   for( const Memory& memory : memories ) {
      const auto own = memory.at( address );
      locations.insert( locations.end(), own.begin(), own.end() );
   }
   if( locations.empty() ) {
      refuseAddress( memories, address, where );
   }
   return locations;
}

} // namespace Vorn
