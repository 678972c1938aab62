// The cost of At against hand-written views of one fixed layout, against a memcpy of the entry,
// and, for pairs known at run time, against the typed accessors; and the cost of these against a
// call of an empty function. Prints ratios from one run:
//
//    vornAtBench
#include "floor/Floor.h"

#include <Hardware/FwdActProfileTable.h>
#include <Hardware/IsemMgmtReq.h>
#include <Hardware/LifTable.h>
#include <Hardware/TcamActionTable.h>
#include <Hardware/at/FwdActProfileTable.h>
#include <Hardware/at/IsemMgmtReq.h>
#include <Hardware/at/LifTable.h>
#include <Hardware/at/TcamActionTable.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace {

// A hand-written view of one fixed layout: inline, bounds checked, on 64-bit words.
template<unsigned offset, unsigned width, unsigned bytes>
struct ByHand {
   static constexpr unsigned first = offset / 64 * 8;
   static constexpr unsigned last = ( offset + width - 1 ) / 64 * 8;
   static constexpr unsigned shift = offset % 64;
   static constexpr U64 ones = ~U64{ 0 } >> ( 64 - width );
   static constexpr std::size_t lastBytes = last + 8 <= bytes ? 8 : 4;

   static U64 get( const U8* entry ) {
      U64 low = 0;
      std::memcpy( &low, entry + first, first == last ? lastBytes : 8 );
      if constexpr( first == last ) {
         return low >> shift & ones;
      } else {
         U64 high = 0;
         std::memcpy( &high, entry + last, lastBytes );
         return ( low >> shift | high << ( 64 - shift ) ) & ones;
      }
   }
   // `Value` is the type that the field has.
   template<class Value>
   static void set( U8* entry, Value argument ) {
      const U64 value = argument;
      if( value > ones ) [[unlikely]] {
         std::abort();
      }
      U64 low = 0;
      constexpr std::size_t firstBytes = first == last ? lastBytes : 8;
      std::memcpy( &low, entry + first, firstBytes );
      low = ( low & ~( ones << shift ) ) | value << shift;
      std::memcpy( entry + first, &low, firstBytes );
      if constexpr( first != last ) {
         U64 high = 0;
         std::memcpy( &high, entry + last, lastBytes );
         high = ( high & ~( ones >> ( 64 - shift ) ) ) | value >> ( 64 - shift );
         std::memcpy( entry + last, &high, lastBytes );
      }
   }
};

constexpr unsigned entryCount = 256;
constexpr unsigned rounds = 40;
constexpr unsigned fieldLimit = 80;

// Consecutive entries, and the values for their fields.
struct Work {
   std::vector<U8> entries = std::vector<U8>( entryCount * 80 );
   std::vector<U8> copies = std::vector<U8>( entryCount * 80 );
   U64 values[8][fieldLimit] = {};
   U64 sum = 0;
};

// A separate function for each way: compilers stop optimising functions that are too large.
template<class Action>
[[gnu::noinline]] void call( const Action& action ) {
   action();
}

template<class Action>
double secondsOf( const Action& action ) {
   const auto begin = std::chrono::steady_clock::now();
   for( unsigned round = 0; round < rounds; ++round ) {
      call( action );
      __asm__ volatile( "" ::: "memory" );
   }
   return std::chrono::duration<double>( std::chrono::steady_clock::now() - begin ).count();
}

// The minimum of many runs, alternating between all ways.
template<class... Actions>
std::vector<double> leastOf( Actions... actions ) {
   std::vector<double> least( sizeof...( actions ), 1e9 );
   for( unsigned run = 0; run < 40; ++run ) {
      std::size_t way = 0;
      ( ( least[way] = std::min( least[way], secondsOf( actions ) ), ++way ), ... );
   }
   return least;
}

template<class Each>
void forEachEntry( Work& work, unsigned bytes, Each each ) {
   for( unsigned entry = 0; entry < entryCount; ++entry ) {
      each( work.entries.data() + entry * bytes, work.values[entry % 8] );
   }
}

#define CLASS LifTable
#define PAIR Hardware::BCM88690_B0, 0
#define FIELDS "LifTable.def"
#include "AtRows.inc"

#define CLASS IsemMgmtReq
#define PAIR Hardware::BCM88690_B0, 3
#define FIELDS "IsemMgmtReq.def"
#include "AtRows.inc"

#define CLASS FwdActProfileTable
#define PAIR Hardware::BCM88850_A0, 0
#define FIELDS "FwdActProfileTable.def"
#include "AtRows.inc"

#define CLASS TcamActionTable
#define PAIR Hardware::BCM88650_B0, 0
#define FIELDS "TcamActionTable.def"
#include "AtRows.inc"

// Seven fields of entries whose pairs change from one to the next.
struct Pair {
   Hardware::ChipType chipType;
   U8 variant;
};
constexpr Pair mixed[] = { { Hardware::BCM88690_B0, 0 }, { Hardware::BCM88800_A0, 1 },
                           { Hardware::BCM88850_A0, 0 }, { Hardware::BCM88690_V6_B0, 7 },
                           { Hardware::BCM88480_A0, 1 }, { Hardware::BCM88480_B0, 7 },
                           { Hardware::BCM88690_B0, 7 }, { Hardware::BCM88800_A0, 0 } };
#define SEVEN( FIELD )                                                                             \
   FIELD( U8, statObjectCmd )                                                                      \
   FIELD( U32, statObjectId )                                                                      \
   FIELD( U8, actionProfileIdx )                                                                   \
   FIELD( U16, vlanEditVid1 )                                                                      \
   FIELD( U8, vlanEditPcpDeiProfile )                                                              \
   FIELD( U8, vlanEditProfile )                                                                    \
   FIELD( U8, propagationProf )

// Their values, as a forwarding agent has them.
struct Seven {
#define FIELD( Type, name ) Type name = static_cast<Type>( std::rand() & 1 );
   SEVEN( FIELD )
#undef FIELD
};

void printMixed( Work& work ) {
   const std::vector<Seven> values( 8 );
   std::vector<Pair> pairs;
   std::vector<std::unique_ptr<Hardware::LifTable>> views;
   for( unsigned entry = 0; entry < entryCount; ++entry ) {
      const Pair& pair = pairs.emplace_back( mixed[( entry * 5 + entry / 8 ) % 8] );
      views.push_back( std::make_unique<Hardware::LifTable>(
         pair.chipType, work.entries.data() + entry * 80, 80, false, pair.variant ) );
   }
   const auto withPairs = [&]( auto each ) {
      for( unsigned entry = 0; entry < entryCount; ++entry ) {
         Hardware::withPair<Hardware::LifTable>(
            pairs[entry].chipType, pairs[entry].variant, [&]( auto pair ) {
               typename decltype( pair )::At lif( work.entries.data() + entry * 80, 80 );
               if constexpr( requires { lif.vlanEditVid1(), lif.statObjectCmd(); } ) {
                  each( lif, values[entry % 8] );
               }
            } );
      }
   };
   const auto keptViews = [&]( auto each ) {
      for( unsigned entry = 0; entry < entryCount; ++entry ) {
         each( *views[entry], values[entry % 8] );
      }
   };
   // What withPair does: from buffer and pair to the fields.
   const auto newViews = [&]( auto each ) {
      for( unsigned entry = 0; entry < entryCount; ++entry ) {
         Hardware::LifTable lif( pairs[entry].chipType, work.entries.data() + entry * 80, 80, false,
                                 pairs[entry].variant );
         each( lif, values[entry % 8] );
      }
   };
#define SET( Type, name ) lif.name##Is( given.name );
#define GET( Type, name ) sum += lif.name();
   const auto set = []( auto& lif, const Seven& given ) { SEVEN( SET ) };
   const auto get = [&work]( const auto& forEach ) {
      U64 sum = 0;
      forEach( [&sum]( const auto& lif, const Seven& ) { SEVEN( GET ) } );
      work.sum += sum;
   };
   const auto least =
      leastOf( [&] { withPairs( set ); }, [&] { newViews( set ); }, [&] { keptViews( set ); },
               [&] { get( withPairs ); }, [&] { get( newViews ); }, [&] { get( keptViews ); } );
   std::printf( "%-30s compose %.2f decode %.2f; views that are kept: compose %.2f decode %.2f\n",
                "withPair / typed, mixed pairs", least[0] / least[1], least[3] / least[4],
                least[0] / least[2], least[3] / least[5] );
}

// Each accessor of a pair beside a function that does nothing, also in a shared library.
void printTyped( Work& work ) {
   std::vector<std::unique_ptr<Hardware::LifTable>> views;
   for( unsigned entry = 0; entry < 8; ++entry ) {
      views.push_back( std::make_unique<Hardware::LifTable>(
         Hardware::BCM88690_B0, work.entries.data() + entry * 80, 80, false, 0 ) );
   }
   const auto forEachView = [&]( auto each ) {
      for( unsigned round = 0; round < entryCount / 8; ++round ) {
         for( const auto& view : views ) {
            each( *view );
         }
      }
   };
   const auto least = leastOf(
      [&] {
         forEachView( []( const auto& view ) {
#define FIELD( name, offset, width ) Floor::nothingIs( &view, 1 );
#include "LifTable.def"
#undef FIELD
         } );
      },
      [&] {
         forEachView( []( auto& view ) {
#define FIELD( name, offset, width ) view.name##Is( 1 );
#include "LifTable.def"
#undef FIELD
         } );
      },
      [&] {
         forEachView( []( const auto& view ) {
#define FIELD( name, offset, width ) static_cast<void>( Floor::nothing( &view ) );
#include "LifTable.def"
#undef FIELD
         } );
      },
      [&] {
         forEachView( []( const auto& view ) {
#define FIELD( name, offset, width ) static_cast<void>( view.name() );
#include "LifTable.def"
#undef FIELD
         } );
      } );
   std::printf( "%-30s set %.2f get %.2f\n", "typed / call of nothing", least[1] / least[0],
                least[3] / least[2] );
}

} // namespace

int main() {
   Work work;
   OfLifTable::print( work );
   OfIsemMgmtReq::print( work );
   OfFwdActProfileTable::print( work );
   OfTcamActionTable::print( work );
   printMixed( work );
   printTyped( work );
   // Uses the values that were read.
   return work.sum == 1 ? EXIT_FAILURE : EXIT_SUCCESS;
}
