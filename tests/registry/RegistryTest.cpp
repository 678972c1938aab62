// The registry: views and validity by table name, and what it says of unknown names.
#include "support/Assertions.h"
#include "support/Traces.h"

#include <Hardware/Registry.h>
#include <Hardware/TcamActionTable.h>

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <atomic>
#include <barrier>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>
#include <thread>

namespace {

// What this thread allocates while it counts, and after how many allocations it is refused.
thread_local bool counting = false;
thread_local long allowed = -1; // negative: any number
std::atomic<long> allocations{ 0 };
std::atomic<long> releases{ 0 };

void* allocate( std::size_t size ) noexcept {
   if( counting ) {
      if( allowed == 0 ) {
         return nullptr;
      }
      allowed -= allowed > 0;
      ++allocations;
   }
   return std::malloc( size == 0 ? 1 : size );
}

void release( void* memory ) noexcept {
   releases += counting && memory != nullptr;
   std::free( memory );
}

} // namespace

void* operator new( std::size_t size ) {
   void* const memory = allocate( size );
   if( memory == nullptr ) {
      throw std::bad_alloc();
   }
   return memory;
}
void* operator new( std::size_t size, const std::nothrow_t& ) noexcept { return allocate( size ); }
void operator delete( void* memory ) noexcept { release( memory ); }
void operator delete( void* memory, std::size_t ) noexcept { release( memory ); }
void operator delete( void* memory, const std::nothrow_t& ) noexcept { release( memory ); }

namespace {

using Hardware::chipTypeVariantValid;
using Hardware::stringObj;
using Testing::expressionOf;
using Testing::failureOf;

static_assert( std::is_same_v<decltype( &stringObj ), std::shared_ptr<Kelvar::AsicBase> ( * )(
                                                         Oru::String, Hardware::ChipType, U8 )> );
static_assert( std::is_same_v<decltype( &chipTypeVariantValid ),
                              bool ( * )( Oru::String, Hardware::ChipType, U8 )> );

const std::vector<std::string>& unknownNames() {
   static const std::vector<std::string> unknown = {
      "",
      " ",
      "tcamactiontable",
      "TCAMACTIONTABLE",
      "TcamActionTabl",
      "TcamActionTables",
      " TcamActionTable",
      "TcamActionTable ",
      std::string( "TcamActionTable\0", 16 ),
      std::string( "TcamActionTable\0x", 17 ),
      "Hardware::TcamActionTable",
      "TcamActionTable::WithStorage",
      "VttInPpPortConfig",
      "VttInPpPortConfig1",
      "EvectTable",
      "action",
   };
   return unknown;
}

constexpr Hardware::ChipType chip( unsigned number ) {
   return static_cast<Hardware::ChipType>( number );
}

TEST( Registry, RefusesUnknownNamesInBothFunctions ) {
   for( const std::string& name : unknownNames() ) {
      // The name is looked up before the pair is looked at.
      for( const unsigned chipType : { 2u, 9u } ) {
         const auto making = failureOf( [&] { stringObj( name, chip( chipType ), 0 ); } );
         ASSERT_TRUE( making ) << name;
         EXPECT_EQ( making->expression, "\"objMapIter != objMap.end()\" == nullptr" );
         EXPECT_EQ( making->message, "invalid name given: " + name );
         EXPECT_EQ( making->file, "VornTunnelMetaInfo" );
         EXPECT_NE( making->line, 0u );
         EXPECT_EQ( making->function, "std::shared_ptr<Kelvar::AsicBase> "
                                      "Hardware::stringObj(Oru::String, Hardware::ChipType, U8)" );

         const auto asking =
            failureOf( [&] { chipTypeVariantValid( name, chip( chipType ), 0 ); } );
         ASSERT_TRUE( asking ) << name;
         EXPECT_EQ( asking->expression, "\"objMapIter != objMap.end()\" == nullptr" );
         EXPECT_EQ( asking->message, "invalid name given: " + name );
         EXPECT_EQ( asking->file, "VornTunnelMetaInfo" );
         EXPECT_NE( asking->line, 0u );
         EXPECT_EQ( asking->function, "bool Hardware::chipTypeVariantValid(Oru::String, "
                                      "Hardware::ChipType, U8)" );
      }
   }
}

TEST( Registry, KeepsTheCallersName ) {
   const Oru::String name( "TcamBankTableFormatter" );
   stringObj( name, Hardware::BCM88690_B0, 0 );
   chipTypeVariantValid( name, Hardware::BCM88690_B0, 0 );
   EXPECT_TRUE( name == "TcamBankTableFormatter" );
}

TEST( Registry, MakesATcamActionTable ) {
   const auto view = stringObj( "TcamActionTable", Hardware::BCM88650_B0, 0 );
   EXPECT_EQ( view->width(), 1 );
   EXPECT_EQ( view->entries(), 1024u );
   ASSERT_EQ( view->len(), 8 );
   EXPECT_TRUE( std::all_of( view->buf(), view->buf() + 8, []( U8 byte ) { return byte == 0; } ) );
   EXPECT_TRUE( view->isTable() );
   view->stringFieldIs( "action", 0xabcde );
   EXPECT_EQ( view->stringField( "action", 0 ), 0xabcdeu );
   view->setField64( 3, 0x12345 );
   EXPECT_EQ( view->buf()[0], 0x45 );
   EXPECT_EQ( view->buf()[1], 0x23 );
   EXPECT_EQ( view->buf()[2], 0x01 );
   EXPECT_EQ( view->buf()[3], 0x00 );
}

TEST( Registry, StampsTheTagOfAFreshEntry ) {
   const auto view = stringObj( "OutAcBank", Hardware::BCM88690_B0, 0 );
   EXPECT_EQ( view->stringField( "resultType", 0 ), 8u );
   ASSERT_EQ( view->len(), 80 );
   // The tag's 6 bits lie at bit 114: bit 3 of them is bit 117, in byte 14.
   for( unsigned byte = 0; byte < 80; ++byte ) {
      EXPECT_EQ( view->buf()[byte], byte == 14 ? 0x20 : 0 ) << byte;
   }
}

TEST( Registry, RefusesAPairInTheConstructorAndAnswersFalseForIt ) {
   const auto failure = failureOf( [] { stringObj( "TcamActionTable", chip( 9 ), 0 ); } );
   ASSERT_TRUE( failure );
   EXPECT_EQ( failure->expression, "\"0\" == nullptr" );
   EXPECT_EQ( failure->message, "chipType: ChipType(9) variant: 0 not in metainfo for "
                                "TcamActionTable!" );
   EXPECT_EQ( failure->function, "Hardware::TcamActionTable::TcamActionTable(Hardware::ChipType, "
                                 "U8*, U16, bool, U8)" );
   EXPECT_FALSE( chipTypeVariantValid( "TcamActionTable", chip( 9 ), 0 ) );
   EXPECT_FALSE( chipTypeVariantValid( "TcamActionTable", Hardware::BCM88650_B0, 1 ) );
   EXPECT_FALSE( chipTypeVariantValid( "TcamActionTable", Hardware::Software, 0 ) );
   EXPECT_TRUE( chipTypeVariantValid( "LifTable", Hardware::Software, 0 ) );
   EXPECT_EQ( stringObj( "LifTable", Hardware::Software, 0 )->chipType(), 21 );
}

TEST( Registry, ViewsAreIndependentOfEachOther ) {
   const auto one = stringObj( "TcamActionTable", Hardware::BCM88690_B0, 0 );
   const auto other = stringObj( "TcamActionTable", Hardware::BCM88690_B0, 0 );
   EXPECT_NE( one, other );
   EXPECT_NE( one->buf(), other->buf() );
   one->stringFieldIs( "action", 7 );
   EXPECT_EQ( other->stringField( "action", 0 ), 0u );
}

TEST( Registry, TracesTheConstructionAndNothingElse ) {
   EXPECT_EQ(
      Testing::tracesOf( 8, [] { stringObj( "TcamActionTable", Hardware::BCM88650_B0, 0 ); } ),
      std::vector<std::string>{ "TcamActionTable chipType: BCM88650_B0 variant: 0" } );
   EXPECT_TRUE( Testing::tracesOf( 8, [] {
                   chipTypeVariantValid( "TcamActionTable", Hardware::BCM88650_B0, 0 );
                   chipTypeVariantValid( "TcamActionTable", Hardware::BCM88650_B0, 1 );
                } ).empty() );
}

struct Count {
   long allocations;
   long releases;
};

// What this thread allocates and releases in `action`.
template<class Action>
Count countOf( Action action ) {
   allocations = 0;
   releases = 0;
   counting = true;
   action();
   counting = false;
   return { allocations, releases };
}

TEST( SharedOwnership, KeepsViewAndCountInOneAllocation ) {
   for( const std::string_view name : Hardware::classNames() ) {
      const auto chipType = chipTypeVariantValid( name, chip( 10 ), 0 ) ? chip( 10 ) : chip( 2 );
      std::shared_ptr<Kelvar::AsicBase> view = stringObj( name, chipType, 0 );
      Oru::String own( name );
      const auto making = countOf( [&] { view = stringObj( std::move( own ), chipType, 0 ); } );
      EXPECT_EQ( making.allocations, 1 ) << name;
      EXPECT_EQ( view.use_count(), 1 ) << name;
      // The block outlives the view as long as somebody may still ask for the count.
      std::weak_ptr<Kelvar::AsicBase> watcher = view;
      const auto dropping = countOf( [&] { view.reset(); } );
      EXPECT_TRUE( watcher.expired() ) << name;
      EXPECT_EQ( dropping.releases, 0 ) << name;
      const auto forgetting = countOf( [&] { watcher.reset(); } );
      EXPECT_EQ( forgetting.releases, 1 ) << name;
   }
}

TEST( SharedOwnership, EntryLivesWithTheLastOwner ) {
   auto first = stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
   const std::shared_ptr<const Kelvar::AsicBase> last = first;
   EXPECT_EQ( first.use_count(), 2 );
   first->buf()[79] = 0x5a;
   first.reset();
   EXPECT_EQ( last.use_count(), 1 );
   EXPECT_EQ( last->buf()[79], 0x5a );
}

TEST( SharedOwnership, FailedConstructionReleasesTheBlock ) {
   const auto fail = [] {
      return expressionOf( [] { stringObj( "TcamActionTable", chip( 9 ), 0 ); } );
   };
   EXPECT_EQ( fail(), "\"0\" == nullptr" );
   const auto count = countOf( fail );
   EXPECT_NE( count.allocations, 0 );
   EXPECT_EQ( count.releases, count.allocations );
}

// Calls both functions on `threads` threads at once. The allocations beyond one for each view, or
// nothing if an answer was wrong.
std::optional<long> callTogether( int threads ) {
   allocations = 0;
   std::atomic<bool> right{ true };
   std::barrier<> start( threads );
   std::vector<std::thread> running;
   for( int number = 0; number < threads; ++number ) {
      running.emplace_back( [number, &right, &start] {
         const char* const name = number % 4 < 2 ? "TcamActionTable" : "TcamBankTableFormatter";
         Oru::String toMake( name );
         Oru::String toAsk( name );
         std::shared_ptr<Kelvar::AsicBase> view;
         const auto make = [&] {
            view = stringObj( std::move( toMake ), Hardware::BCM88690_B0, 0 );
         };
         bool valid = false;
         const auto ask = [&] {
            valid = chipTypeVariantValid( std::move( toAsk ), Hardware::BCM88690_B0, 0 );
         };
         start.arrive_and_wait();
         counting = true;
         if( number % 2 == 0 ) {
            make();
            ask();
         } else {
            ask();
            make();
         }
         counting = false;
         if( !valid || view->len() != ( number % 4 < 2 ? 8 : 80 ) ) {
            right = false;
         }
      } );
   }
   for( std::thread& thread : running ) {
      thread.join();
   }
   return right ? std::optional( allocations - threads ) : std::nullopt;
}

// The same as the first calls of a new process, which ends through its exit handlers and gives the
// number as its status.
std::optional<long> firstCalls( int threads ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   std::optional<long> built;
   EXPECT_EXIT(
      {
         const auto count = callTogether( threads );
         std::exit( count ? static_cast<int>( *count ) : 0 );
      },
      [&built]( int status ) {
         if( WIFEXITED( status ) && WEXITSTATUS( status ) != 0 ) {
            built = WEXITSTATUS( status );
         }
         return built.has_value();
      },
      "" );
   return built;
}

TEST( Concurrency, FirstCallsOfEightThreadsBuildEachMapOnce ) {
   // A new process comes back to this line: nothing may depend on what an earlier one found.
   std::vector<std::optional<long>> built;
   for( const int threads : { 1, 8, 8, 8, 8, 8 } ) {
      built.push_back( firstCalls( threads ) );
   }
   // More than one for each name in each map: nobody had called before.
   EXPECT_GT( built.front(), 44 );
   EXPECT_EQ( built, std::vector( built.size(), built.front() ) );
}

TEST( Concurrency, LaterCallsAllocateTheirViewsAlone ) {
   callTogether( 1 );
   for( unsigned turn = 0; turn < 20; ++turn ) {
      EXPECT_EQ( callTogether( 8 ), 0 );
   }
}

// In a new process: refuses memory to the first calls again and again, then serves them.
bool survivesRefusedFirstCalls() {
   const auto refused = []( long after, const auto& call ) {
      counting = true;
      allowed = after;
      bool thrown = false;
      try {
         call();
      } catch( const std::bad_alloc& ) {
         thrown = true;
      }
      counting = false;
      allowed = -1;
      return thrown;
   };
   for( long after = 0; after < 20; ++after ) {
      if( !refused( after, [] { stringObj( "LifTable", Hardware::BCM88690_B0, 0 ); } ) ||
          !refused( after, [] { chipTypeVariantValid( "LifTable", Hardware::Software, 0 ); } ) ) {
         return false;
      }
   }
   return stringObj( "LifTable", Hardware::BCM88690_B0, 0 )->len() == 80 &&
          chipTypeVariantValid( "LifTable", Hardware::Software, 0 );
}

TEST( Lifecycle, FailedFirstCallIsTriedAgain ) {
   GTEST_FLAG_SET( death_test_style, "threadsafe" );
   EXPECT_EXIT( std::exit( survivesRefusedFirstCalls() ? 0 : 1 ), testing::ExitedWithCode( 0 ),
                "" );
}

TEST( Facts, OfUnknownNamesAreEmpty ) {
   for( const std::string& name : unknownNames() ) {
      EXPECT_TRUE( Hardware::classFields( name ).empty() ) << name;
      EXPECT_FALSE( Hardware::pairInfo( name, 2, 0 ) ) << name;
      EXPECT_FALSE( Hardware::pairInfo( name, 10, 0 ) ) << name;
      EXPECT_EQ( Hardware::pairFields( name, 10, 0, nullptr, 0 ), 0u ) << name;
      EXPECT_FALSE( Hardware::pairAddress( name, 10, 0 ) ) << name;
   }
}

TEST( Facts, OfInvalidPairsAreEmpty ) {
   EXPECT_TRUE( Hardware::pairInfo( "TcamActionTable", 2, 0 ) );
   EXPECT_FALSE( Hardware::pairInfo( "TcamActionTable", 2, 1 ) );
   for( const U32 chipType : { 0u, 9u, 21u, 255u, 258u, 0x80000002u, 0xffffffffu } ) {
      EXPECT_FALSE( Hardware::pairInfo( "TcamActionTable", chipType, 0 ) ) << chipType;
      EXPECT_EQ( Hardware::pairFields( "TcamActionTable", chipType, 0, nullptr, 0 ), 0u );
      EXPECT_FALSE( Hardware::pairAddress( "TcamActionTable", chipType, 0 ) ) << chipType;
   }
}

TEST( Facts, OfFieldsFillNoMoreThanTheirRoom ) {
   Hardware::PairField fields[24] = {};
   ASSERT_EQ( Hardware::pairFields( "LifTable", 10, 0, fields, 2 ), 23u );
   EXPECT_NE( fields[1].identifier, 0u );
   EXPECT_EQ( fields[2].identifier, 0u );
   ASSERT_EQ( Hardware::pairFields( "LifTable", 10, 0, fields, 24 ), 23u );
   const auto* const tag = std::find_if(
      fields, fields + 23, []( const auto& field ) { return field.name == "resultType"; } );
   EXPECT_EQ( tag->identifier, 296u );
   EXPECT_EQ( tag->hardwareName, "RESULT_TYPE" );
   EXPECT_EQ( tag->offset, 174 );
   EXPECT_EQ( tag->width, 6 );
   EXPECT_TRUE( tag->readOnly );
   EXPECT_EQ( tag->constant, 58 );
}

TEST( Facts, OfAddresses ) {
   const auto action = Hardware::pairAddress( "TcamActionTable", 10, 0 );
   ASSERT_TRUE( action );
   EXPECT_EQ( action->base, 0x1100000u );
   EXPECT_EQ( action->entryStep, 1u );
   EXPECT_EQ( action->arrayStep, 2048u );
   EXPECT_EQ( action->accessTypes[0], 4 );
   EXPECT_EQ( action->accessTypes[1], 6 );
   EXPECT_EQ( action->destBlocks[0], 6 );
   EXPECT_EQ( action->destBlocks[1], 6 );
   EXPECT_FALSE( Hardware::pairAddress( "LifTable", 21, 0 ) );
}

TEST( Facts, AreNotTraced ) {
   EXPECT_TRUE( Testing::tracesOf( 8, [] {
                   Hardware::classNames();
                   Hardware::classFields( "LifTable" );
                   Hardware::pairInfo( "LifTable", 10, 0 );
                   Hardware::pairInfo( "LifTable", 9, 0 );
                   Hardware::pairFields( "LifTable", 10, 0, nullptr, 0 );
                   Hardware::pairAddress( "LifTable", 10, 0 );
                } ).empty() );
}

} // namespace
