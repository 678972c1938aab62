// vornBench FOLDER COUNTS [benchmark options]: measures all rows in one run and leaves the tables
// and what the chart is drawn from in the folder. COUNTS is the file of instruction counts. With
// options that pick some of the rows it prints their times instead.
#include "Report.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <iostream>

namespace Bench {
namespace {

// Gathers the processor time of each repetition.
class Gatherer : public benchmark::BenchmarkReporter {
public:
   bool ReportContext( const Context& ) override { return true; }
   void ReportRuns( const std::vector<Run>& runs ) override {
      for( const Run& run : runs ) {
         if( run.run_type == Run::RT_Iteration ) {
            times_[run.run_name.function_name].push_back( 1e9 * run.cpu_accumulated_time /
                                                          static_cast<double>( run.iterations ) );
         }
      }
   }

   // Nanoseconds for one operation; false if the row wasn't measured.
   bool timesOf( const Row& row, Sides& sides ) const {
      const auto library = times_.find( row.name + " library" );
      const auto baseline = times_.find( row.name + " baseline" );
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

void registerSide( const std::string& name, const std::function<void()>& body ) {
   benchmark::RegisterBenchmark( name.c_str(), [body]( benchmark::State& state ) {
      for( auto _ : state ) {
         body();
      }
   } );
}

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
   for( const Row& row : rows.rows ) {
      registerSide( row.name + " library", row.library );
      if( row.baseline ) {
         registerSide( row.name + " baseline", row.baseline );
      }
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
