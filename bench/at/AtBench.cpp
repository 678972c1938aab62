// What At costs beside views of one fixed layout, written out by hand, beside a memcpy of the
// entry, and for pairs known at run time beside the typed accessors. Prints ratios of one run:
//
//    vornAtBench
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
#include <vector>

namespace {

// A view of one fixed layout as one writes it: inline, bounds checked, on 64-bit words.
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

// Entries one after the other, and the values that go into their fields.
struct Work {
   std::vector<U8> entries = std::vector<U8>( entryCount * 80 );
   std::vector<U8> copies = std::vector<U8>( entryCount * 80 );
   U64 values[8][fieldLimit] = {};
   U64 sum = 0;
};

template<class Action>
double secondsOf( Action action ) {
   const auto begin = std::chrono::steady_clock::now();
   for( unsigned round = 0; round < rounds; ++round ) {
      action();
      __asm__ volatile( "" ::: "memory" );
   }
   return std::chrono::duration<double>( std::chrono::steady_clock::now() - begin ).count();
}

// The least of many runs, all ways in turn.
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
constexpr struct {
   Hardware::ChipType chipType;
   U8 variant;
} mixed[] = { { Hardware::BCM88690_B0, 0 }, { Hardware::BCM88800_A0, 1 },
              { Hardware::BCM88850_A0, 0 }, { Hardware::BCM88690_V6_B0, 7 },
              { Hardware::BCM88480_A0, 1 }, { Hardware::BCM88480_B0, 7 },
              { Hardware::BCM88690_B0, 7 }, { Hardware::BCM88800_A0, 0 } };
#define SEVEN( FIELD )                                                                             \
   FIELD( statObjectCmd, 0 )                                                                       \
   FIELD( statObjectId, 1 )                                                                        \
   FIELD( actionProfileIdx, 2 )                                                                    \
   FIELD( vlanEditVid1, 3 )                                                                        \
   FIELD( vlanEditPcpDeiProfile, 4 )                                                               \
   FIELD( vlanEditProfile, 5 )                                                                     \
   FIELD( propagationProf, 6 )

void printMixed( Work& work ) {
   for( auto& values : work.values ) {
      for( U64& value : values ) {
         value = static_cast<U64>( std::rand() ) & 1;
      }
   }
   std::vector<Hardware::LifTable*> views;
   for( unsigned entry = 0; entry < entryCount; ++entry ) {
      const auto& pair = mixed[( entry * 5 + entry / 8 ) % 8];
      views.push_back( new Hardware::LifTable( pair.chipType, work.entries.data() + entry * 80, 80,
                                               false, pair.variant ) );
   }
   const auto withPairs = [&]( auto each ) {
      for( unsigned entry = 0; entry < entryCount; ++entry ) {
         const auto chipType = static_cast<Hardware::ChipType>( views[entry]->chipType() );
         Hardware::withPair<Hardware::LifTable>(
            chipType, views[entry]->variant(), [&]( auto pair ) {
               typename decltype( pair )::At lif( work.entries.data() + entry * 80, 80 );
               if constexpr( requires { lif.vlanEditVid1(), lif.statObjectCmd(); } ) {
                  each( lif, work.values[entry % 8] );
               }
            } );
      }
   };
   const auto typed = [&]( auto each ) {
      for( unsigned entry = 0; entry < entryCount; ++entry ) {
         each( *views[entry], work.values[entry % 8] );
      }
   };
#define SET( name, number ) lif.name##Is( static_cast<decltype( lif.name() )>( values[number] ) );
#define GET( name, number ) work.sum += lif.name();
   const auto set = []( auto& lif, const U64* values ) { SEVEN( SET ) };
   const auto get = [&]( auto& lif, const U64* ) { SEVEN( GET ) };
   const auto least = leastOf( [&] { typed( set ); }, [&] { withPairs( set ); },
                               [&] { typed( get ); }, [&] { withPairs( get ); } );
   std::printf( "%-30s compose %.2f decode %.2f\n", "withPair / typed, mixed pairs",
                least[1] / least[0], least[3] / least[2] );
   for( const auto* view : views ) {
      delete view;
   }
}

} // namespace

int main() {
   Work work;
   OfLifTable::print( work );
   OfIsemMgmtReq::print( work );
   OfFwdActProfileTable::print( work );
   OfTcamActionTable::print( work );
   printMixed( work );
   // What was read is used.
   return work.sum == 1 ? EXIT_FAILURE : EXIT_SUCCESS;
}
