// vornBench FOLDER COUNTS [benchmark options]: measures all rows in one run and leaves the tables
// and what the chart is drawn from in the folder. COUNTS is the file of instruction counts. With
// options that pick some of the rows it prints their times instead.
#include "Report.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <iostream>

namespace Bench {
namespace {

// Rows that are compared take turns: other load on the machine affects all of them.
struct Group {
   std::string name;
   std::map<std::string, std::function<void()>> sides;
};

std::string libraryOf( const std::string& row ) { return row + " library"; }
std::string baselineOf( const std::string& row ) { return row + " baseline"; }

// Each row with its baseline; the setters of all formats of a class, and the getters.
std::vector<Group> groupsOf( const Rows& rows ) {
   std::vector<Group> groups;
   std::map<std::string, std::function<void()>> formats;
   for( const Row& row : rows.rows ) {
      if( row.goal == Goal::format ) {
         formats[row.name] = row.library;
      } else {
         groups.push_back( { row.name,
                             { { libraryOf( row.name ), row.library },
                               { baselineOf( row.name ), row.baseline } } } );
      }
   }
   for( const ClassFacts& facts : rows.classes ) {
      const auto add = [&]( const char* which, const std::vector<std::string>& names ) {
         Group group = { facts.name + which, {} };
         for( const std::string& name : names ) {
            group.sides[libraryOf( name )] = formats.at( name );
         }
         if( !names.empty() ) {
            groups.push_back( group );
         }
      };
      add( " setters", facts.setters );
      add( " getters", facts.getters );
   }
   return groups;
}

// Processor time of this thread in nanoseconds.
double processorTime() {
   timespec time;
   clock_gettime( CLOCK_THREAD_CPUTIME_ID, &time );
   return 1e9 * static_cast<double>( time.tv_sec ) + static_cast<double>( time.tv_nsec );
}

double timeOf( const std::function<void()>& body, unsigned calls ) {
   const double begin = processorTime();
   for( unsigned call = 0; call < calls; ++call ) {
      body();
   }
   return processorTime() - begin;
}

// Nanoseconds of a turn: long enough that reading the clock doesn't count.
constexpr double turn = 1e5;

void measure( const Group& group, benchmark::State& state ) {
   struct Turns {
      const std::string* name;
      const std::function<void()>* body;
      unsigned calls;
      double sum;
   };
   std::vector<Turns> sides;
   for( const auto& [name, body] : group.sides ) {
      constexpr unsigned few = 8;
      timeOf( body, few );
      const double calls = turn * few / timeOf( body, few );
      sides.push_back( { &name, &body, static_cast<unsigned>( std::max( calls, 1.0 ) ), 0 } );
   }
   for( auto _ : state ) {
      for( Turns& side : sides ) {
         side.sum += timeOf( *side.body, side.calls );
      }
   }
   for( const Turns& side : sides ) {
      state.counters[*side.name] =
         side.sum / static_cast<double>( state.iterations() ) / side.calls;
   }
}

// Collects the time of each side in each repetition.
class Gatherer : public benchmark::BenchmarkReporter {
public:
   bool ReportContext( const Context& ) override { return true; }
   void ReportRuns( const std::vector<Run>& runs ) override {
      for( const Run& run : runs ) {
         if( run.run_type == Run::RT_Iteration ) {
            for( const auto& [side, time] : run.counters ) {
               times_[side].push_back( time );
            }
         }
      }
   }

   // Nanoseconds for one operation; false if the row wasn't measured.
   bool timesOf( const Row& row, Sides& sides ) const {
      const auto library = times_.find( libraryOf( row.name ) );
      const auto baseline = times_.find( baselineOf( row.name ) );
      if( library == times_.end() || ( row.baseline && baseline == times_.end() ) ) {
         return false;
      }
      sides.library = median( library->second ) / row.operations;
      sides.baseline = row.baseline ? median( baseline->second ) / row.operations : 0;
      return true;
   }

private:
   std::map<std::string, std::vector<double>> times_;
};

std::string processor() {
   std::ifstream in( "/proc/cpuinfo" );
   for( std::string line; std::getline( in, line ); ) {
      if( line.starts_with( "model name" ) ) {
         return line.substr( line.find( ':' ) + 2 );
      }
   }
   return "unknown processor";
}

int run( const std::string& folder, const std::string& countsFile ) {
   const Rows rows = allRows();
   for( const Group& group : groupsOf( rows ) ) {
      benchmark::RegisterBenchmark(
         group.name.c_str(), [group]( benchmark::State& state ) { measure( group, state ); } );
   }
   Gatherer gatherer;
   benchmark::RunSpecifiedBenchmarks( &gatherer );

   Figures times;
   for( const Row& row : rows.rows ) {
      Sides sides;
      if( gatherer.timesOf( row, sides ) ) {
         times[row.name] = sides;
      }
   }
   if( times.size() != rows.rows.size() ) {
      for( const auto& [name, sides] : times ) {
         std::printf( "%8.2f ns %8.2f ns  %s\n", sides.library, sides.baseline, name.c_str() );
      }
      return 0;
   }
   std::ofstream tables( folder + "/tables.md" );
   tables << "Processor: " << processor() << ". Compiler: " VORN_BENCH_COMPILER
          << ". Flags: `" VORN_BENCH_FLAGS "`.\n\n";
   writeTables( tables, rows, times, readCounts( countsFile, rows ) );
   std::ofstream growth( folder + "/growth.dat" );
   writeGrowth( growth, rows, times );
   tables.close();
   growth.close();
   return tables && growth ? 0 : 1;
}

} // namespace
} // namespace Bench

int main( int argc, char** argv ) {
   benchmark::Initialize( &argc, argv );
   if( argc != 3 ) {
      std::cerr << "usage: vornBench FOLDER COUNTS [benchmark options]\n";
      return 2;
   }
   return Bench::run( argv[1], argv[2] );
}
