// vorn's standard streams where they don't wait, and its end where it has too little memory, run
// for real.
#include "RunVorn.h"

#include <gtest/gtest.h>

namespace {

using Testing::errorWrites;
using Testing::Outcome;
using Testing::throughPipesThatDontWait;

using Arguments = std::vector<std::string>;

constexpr std::size_t kibibyte = 1024;
constexpr std::size_t mebibyte = 1024 * kibibyte;

Outcome vornWithMemory( std::size_t bytes, const Arguments& arguments,
                        std::string_view input = {} ) {
   Arguments all{ "--as=" + std::to_string( bytes ), "--", VORN_BINARY };
   all.insert( all.end(), arguments.begin(), arguments.end() );
   return Testing::run( "prlimit", all, input );
}

// A sanitizer's own memory is far beyond any limit.
bool startsInLittleMemory() { return vornWithMemory( 64 * mebibyte, { "--version" } ).status == 0; }

// The least memory, in steps, that is found to be enough. Calls `onTooLittle` with each outcome
// where it isn't.
template<class OnTooLittle>
std::size_t leastMemory( const Arguments& arguments, std::string_view input, std::size_t step,
                         OnTooLittle onTooLittle ) {
   const auto enough = Testing::vorn( arguments, input );
   std::size_t high = 64 * mebibyte;
   for( std::size_t low = 0; high - low > step; ) {
      const std::size_t limit = low + ( high - low ) / 2;
      const auto outcome = vornWithMemory( limit, arguments, input );
      const bool isEnough = outcome.status == enough.status && outcome.err == enough.err;
      ( isEnough ? high : low ) = limit;
      if( isEnough ) {
         EXPECT_EQ( outcome.out, enough.out );
      } else {
         onTooLittle( outcome );
      }
   }
   return high;
}

} // namespace

TEST( Streams, anOutputThatDoesNotWait ) {
   const Arguments layout{ "layout", "LifTable", "--chip", "10", "--variant", "3" };
   const auto outcome = throughPipesThatDontWait( layout, {} );
   EXPECT_EQ( outcome.out, Testing::vorn( layout ).out );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Streams, anInputThatDoesNotWait ) {
   const std::string line = R"({"table":"TcamActionTable","chip":2,"fields":{"action":1}})"
                            "\n";
   const auto outcome = throughPipesThatDontWait(
      { "program", "--allow-repeats", "--output=bytes", "-" }, { line, line } );
   EXPECT_EQ( outcome.out, "01000000\n01000000\n" );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
}

TEST( Streams, anErrorIsOneWrite ) {
   using Writes = std::vector<std::string>;
   EXPECT_EQ( errorWrites( { "encode", "LifTabel", "--chip", "2" } ),
              Writes{ "vorn: unknown table \"LifTabel\"; did you mean LifTable?\n" } );
   EXPECT_EQ( errorWrites( { "tabels" } ),
              Writes{ "vorn: unknown verb \"tabels\"; did you mean tables?\n" } );
   EXPECT_EQ( errorWrites( { "program", "-" }, R"({"feilds":{}})" ),
              Writes{ "<stdin>:1:2: unknown key \"feilds\"; did you mean fields?\n" } );
}

TEST( Memory, spellingsOfAPairDoNotAddUp ) {
   if( !startsInLittleMemory() ) {
      GTEST_SKIP() << "vorn doesn't start in 64 MiB";
   }
   const auto image = []( const std::string& chip, const std::string& variant ) {
      return "TcamActionTable " + chip + " 0x" + variant + ": 01000000\n";
   };
   const auto zeros = []( std::size_t count ) { return std::string( count, '0' ); };
   std::string many;
   for( std::size_t ofChip = 0; ofChip < 120; ++ofChip ) {
      for( std::size_t ofVariant = 1; ofVariant <= 100; ++ofVariant ) {
         many += image( "0x" + zeros( ofChip ) + '2', zeros( ofVariant ) );
      }
   }
   std::string allLong;
   for( std::size_t i = 0; i < 100; ++i ) {
      allLong += image( "2", zeros( 40000 + i ) );
   }
   const Arguments decode{ "decode", "--single-line", "-" };
   const auto least =
      leastMemory( decode, image( "2", zeros( 40000 ) ), mebibyte / 4, []( const Outcome& ) {} );
   for( const std::string& input : { many, allLong } ) {
      const auto outcome = vornWithMemory( least + 2 * mebibyte, decode, input );
      EXPECT_EQ( outcome.err, "" );
      EXPECT_EQ( outcome.status, 0 );
      EXPECT_TRUE( outcome.out == Testing::vorn( decode, input ).out );
   }
}

// Where memory is too little, vorn ends with one line, but where even the dynamic linker has too
// little.
TEST( Memory, tooLittle ) {
   if( !startsInLittleMemory() ) {
      GTEST_SKIP() << "vorn doesn't start in 64 MiB";
   }
   for( const Arguments& arguments : { Arguments{ "tabels" }, Arguments{ "tables" } } ) {
      std::size_t lines = 0;
      leastMemory( arguments, "", 4 * kibibyte, [&]( const Outcome& outcome ) {
         constexpr int linkerFailed = 127;
         if( outcome.status != linkerFailed ) {
            EXPECT_EQ( outcome.err, "vorn: out of memory\n" );
            EXPECT_EQ( outcome.status, 1 );
            ++lines;
         }
      } );
      EXPECT_GT( lines, 0u ) << arguments.front();
   }
}
