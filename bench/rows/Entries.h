// Entries to measure on: a few, so that no access waits for the previous one.
#pragma once

#include "floor/Floor.h"

#include <Hardware/ChipType.h>

#include <array>
#include <cstddef>
#include <utility>

namespace Bench {

inline constexpr unsigned entryCount = 8;

// Calls `act` with each of a few things in order, without a loop, whose own instructions would
// count on both sides.
template<class Things, class Act>
[[gnu::always_inline]] inline void forEach( Things& things, const Act& act ) {
   [&things, &act ]<std::size_t... number>( std::index_sequence<number...> ) {
      ( act( things[number] ), ... );
   }
   ( std::make_index_sequence<entryCount>() );
}

// Everything that is compared has the same offset in its page: by that the processor first decides
// whether a load has to wait for a store.
inline constexpr std::size_t page = 4096;

// Views of one pair, each with an entry of its own.
template<class View>
class alignas( page ) Views {
public:
   Views( unsigned chipType, unsigned variant )
      : views_( make( static_cast<Hardware::ChipType>( chipType ), static_cast<U8>( variant ),
                      std::make_index_sequence<entryCount>() ) ) {}
   Views( const Views& ) = delete;
   Views& operator=( const Views& ) = delete;

   View& operator[]( std::size_t number ) { return views_[number]; }

private:
   using Storage = typename View::WithStorage;

   template<std::size_t... number>
   static std::array<Storage, entryCount> make( Hardware::ChipType chipType, U8 variant,
                                                std::index_sequence<number...> ) {
      return { ( static_cast<void>( number ), Storage( chipType, variant ) )... };
   }

   std::array<Storage, entryCount> views_;
};

// The floor's entries for a view of `Bytes` bytes.
template<unsigned Bytes>
class alignas( page ) Images {
public:
   Images() {
      for( unsigned number = 0; number < entryCount; ++number ) {
         images_[number] = { words_[number], Bytes };
      }
   }
   Images( const Images& ) = delete;
   Images& operator=( const Images& ) = delete;

   const Floor::Image& operator[]( std::size_t number ) { return images_[number]; }

private:
   U64 words_[entryCount][( Bytes + 7 ) / 8] = {};
   std::array<Floor::Image, entryCount> images_;
};

} // namespace Bench
