// Views in many threads at once: the first use of what is built on first use, views of their own,
// and traces switched meanwhile. The thread sanitizer reports a race.
#include "support/Bits.h"

#include <Hardware/OutAcBank.h>
#include <Hardware/Registry.h>
#include <Oru/Trace.h>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <barrier>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

namespace {

constexpr unsigned threadCount = 16;

// Calls `action` with 0 to threadCount - 1, each in a thread; all start at once.
void together( const std::function<void( unsigned )>& action ) {
   std::barrier start( threadCount );
   std::vector<std::thread> threads;
   for( unsigned number = 0; number < threadCount; ++number ) {
      threads.emplace_back( [&, number] {
         start.arrive_and_wait();
         action( number );
      } );
   }
   for( std::thread& thread : threads ) {
      thread.join();
   }
}

// Runs `action` in processes that have not called the library before, and lets them end as
// processes do. The tests' own process must not call it outside of them.
void expectInNewProcesses( const std::function<void()>& action ) {
   constexpr unsigned processCount = 10;
   for( unsigned process = 0; process < processCount; ++process ) {
      std::fflush( nullptr );
      const pid_t child = fork();
      ASSERT_NE( child, -1 );
      if( child == 0 ) {
         action();
         std::exit( testing::Test::HasFailure() ? 1 : 0 );
      }
      int status = 0;
      ASSERT_EQ( waitpid( child, &status, 0 ), child );
      ASSERT_TRUE( WIFEXITED( status ) && WEXITSTATUS( status ) == 0 ) << "status " << status;
   }
}

struct Pair {
   std::string_view name;
   Hardware::ChipType chipType;
   U8 variant;

   auto view() const { return Hardware::stringObj( name, chipType, variant ); }
   bool valid() const { return Hardware::chipTypeVariantValid( name, chipType, variant ); }
};

// A pair of a thread's own choice.
const Pair& pairOf( unsigned number ) {
   static constexpr std::array pairs = {
      Pair{ "LifTable", Hardware::BCM88690_B0, 0 },
      Pair{ "OutAcBank", Hardware::BCM88800_A0, 0 },
      Pair{ "TcamActionTable", Hardware::BCM88650_B0, 0 },
      Pair{ "IsemMgmtReq", Hardware::BCM88480_B0, 0 },
      Pair{ "FwdActProfileTable", Hardware::BCM88690_B0, 0 },
   };
   return pairs[number % pairs.size()];
}

// Sets and reads each narrow field of the view again and again, beside an image of the thread's
// own. Returns what differed.
unsigned mistakesOnOwnView( unsigned number, unsigned turns ) {
   const Pair& pair = pairOf( number );
   const auto view = pair.view();
   std::mt19937 random( number );
   Testing::Image image( view->buf(), view->buf() + view->len() );
   unsigned mistakes = 0;
   for( unsigned turn = 0; turn < turns; ++turn ) {
      for( const auto& field : Hardware::classFields( pair.name ) ) {
         if( field.valueBits > 64 || !view->isFieldValid( field.identifier ) ) {
            continue;
         }
         const U16 offset = view->fieldOffset( field.identifier );
         const U16 width = view->fieldWidth( field.identifier );
         if( !field.readOnly ) {
            const Testing::Bits value = Testing::randomBits( width, random );
            Testing::bitsAtAre( image, offset, width, value );
            if( turn % 2 == 0 ) {
               view->setField64( field.identifier, value.to_ullong() );
            } else {
               view->stringFieldIs( Oru::String( field.name ), value.to_ullong() );
            }
         }
         mistakes += view->stringField( Oru::String( field.name ), 0 ) !=
                     Testing::bitsAt( image, offset, width ).to_ullong();
      }
   }
   return mistakes + !std::equal( image.begin(), image.end(), view->buf() );
}

TEST( FirstUse, OfStringObj ) {
   expectInNewProcesses( [] {
      together( []( unsigned number ) {
         const auto view = pairOf( number ).view();
         EXPECT_EQ( view->chipType(), pairOf( number ).chipType );
      } );
   } );
}

TEST( FirstUse, OfChipTypeVariantValid ) {
   expectInNewProcesses(
      [] { together( []( unsigned number ) { EXPECT_TRUE( pairOf( number ).valid() ); } ); } );
}

TEST( FirstUse, OfBothAndThenOfViews ) {
   expectInNewProcesses( [] {
      together( []( unsigned number ) {
         if( number % 2 == 0 ) {
            EXPECT_TRUE( pairOf( number ).valid() );
         }
         EXPECT_EQ( mistakesOnOwnView( number, 1 ), 0u );
      } );
   } );
}

TEST( FirstUse, OfTheTraceHandleByAnAccessor ) {
   expectInNewProcesses( [] {
      together( []( unsigned number ) {
         // A static operation that traces and needs no view.
         EXPECT_NE( Hardware::OutAcBank::fieldCount( Hardware::BCM88690_B0, 0 ), 0 );
         U8 entry[Hardware::OutAcBank::storageSize] = {};
         Hardware::OutAcBank view( Hardware::BCM88690_B0, entry, sizeof entry, false, 0 );
         EXPECT_EQ( view.resultType(), 8 ) << number;
      } );
   } );
}

TEST( Threads, WorkOnViewsOfTheirOwn ) {
   expectInNewProcesses( [] {
      together( []( unsigned number ) { EXPECT_EQ( mistakesOnOwnView( number, 5 ), 0u ); } );
   } );
}

TEST( Threads, WorkWhileOneOfThemSwitchesTraces ) {
   expectInNewProcesses( [] {
      std::atomic<unsigned> lines{ 0 };
      std::atomic<unsigned> strange{ 0 };
      std::atomic<unsigned> working{ threadCount - 1 };
      Oru::traceSinkIs( [&]( const std::string& line ) {
         ++lines;
         strange += line.find( "chipType: " ) == std::string::npos &&
                    line.find( "Hardware::" ) == std::string::npos;
      } );
      const auto level8Is = []( bool on ) {
         Oru::traceLevelIs( "KelvarVornTunnelMetaInfo", 8, on );
      };
      level8Is( true );
      EXPECT_TRUE( pairOf( 0 ).view() );
      EXPECT_EQ( lines, 1u );
      together( [&]( unsigned number ) {
         if( number == 0 ) {
            for( bool on = false; working != 0; on = !on ) {
               level8Is( on );
               std::this_thread::yield();
            }
         } else {
            EXPECT_EQ( mistakesOnOwnView( number, 2 ), 0u );
            --working;
         }
      } );
      level8Is( false );
      Oru::traceSinkIs( {} );
      EXPECT_EQ( strange, 0u );
   } );
}

} // namespace
