// vornColumnsBench FILE [benchmark options]: columns against the typed accessors and against
// memcpy, all narrow fields of LifTable on chip type 10. Writes the tables, in Markdown, to the
// file.
#include "../rows/Pairs.h"
#include "../speed/Report.h"

#include <Vorn/Columns.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <random>

namespace Bench {
namespace {

using Pair = Floor::LifTable_10_0::Pair;
using View = Hardware::LifTable;

constexpr std::size_t imageBytes = View::storageSize;
constexpr auto chip = static_cast<Hardware::ChipType>( Pair::chipType );
constexpr U8 variant = Pair::variant;

// Numbers that fit into a cache, and one that doesn't.
constexpr std::size_t few = 1000;
constexpr std::size_t many = 1'000'000;

View viewOf( U8* image, bool existing ) {
   return View( chip, image, imageBytes, existing, variant );
}

// Images, and a column for each narrow field.
class Data {
public:
   Data( std::size_t rows, bool narrowest, bool settable )
      : layout_( "LifTable", Pair::chipType, Pair::variant ), images_( rows * imageBytes ),
        columns_( layout_ ) {
      std::mt19937_64 random( 1 );
      for( U8& byte : images_ ) {
         byte = static_cast<U8>( random() );
      }
      for( std::size_t row = 0; row < rows; ++row ) {
         viewOf( images_.data() + row * imageBytes, false ); // sets the tag
      }
      for( const Vorn::Field& field : layout_.fields() ) {
         if( field.width <= 64 && !( settable && field.readOnly ) ) {
            const std::size_t bytes = !narrowest || field.width > 32 ? 8
                                      : field.width > 16             ? 4
                                      : field.width > 8              ? 2
                                                                     : 1;
            arrays_.emplace_back( rows * bytes / sizeof( U64 ) + 1 );
            columns_.add( field.name, static_cast<void*>( arrays_.back().data() ), rows, bytes );
         }
      }
      columns_.decode( images_ );
   }

   std::size_t fields() const { return arrays_.size(); }
   std::size_t rows() const { return images_.size() / imageBytes; }
   std::vector<U8>& images() { return images_; }
   void decode() const { columns_.decode( images_ ); }
   void encode() { columns_.encode( images_ ); }
   U64* array( std::size_t number ) { return arrays_[number].data(); }

private:
   Vorn::Layout layout_;
   std::vector<U8> images_;
   std::deque<std::vector<U64>> arrays_;
   Vorn::Columns columns_;
};

// The same with typed accessors, in columns of the getters' types.
class Typed {
public:
   explicit Typed( std::size_t rows ) : data_( rows, false, false ) {
      for( std::size_t row = 0; row < rows && rows <= few; ++row ) {
         views_.emplace_back( chip, imageAt( row ), imageBytes, true, variant );
      }
   }

   void decode() {
      forEachRow( [this]( View& view, std::size_t row ) {
         std::size_t number = 0;
         forEachField<Pair>( [&]<class Field>( const char* ) {
            if constexpr( !Field::wide ) {
               reinterpret_cast<typename Field::Value*>( data_.array( number++ ) )[row] =
                  ( view.*Field::get )();
            }
         } );
      } );
   }

   void encode() {
      forEachRow( [this]( View& view, std::size_t row ) {
         std::size_t number = 0;
         forEachField<Pair>( [&]<class Field>( const char* ) {
            if constexpr( !Field::wide ) {
               const auto* const values =
                  reinterpret_cast<const typename Field::Value*>( data_.array( number++ ) );
               if constexpr( Field::settable ) {
                  ( view.*Field::set )( values[row] );
               }
            }
         } );
      } );
   }

private:
   U8* imageAt( std::size_t row ) { return data_.images().data() + row * imageBytes; }

   // Views are made beforehand if they fit into the cache, too.
   template<class Act>
   void forEachRow( const Act& act ) {
      for( std::size_t row = 0; row < views_.size(); ++row ) {
         act( views_[row], row );
      }
      for( std::size_t row = views_.size(); row < data_.rows(); ++row ) {
         View view = viewOf( imageAt( row ), true );
         act( view, row );
      }
   }

   Data data_;
   std::deque<View> views_;
};

// Median nanoseconds of each benchmark, by its name.
class Medians : public benchmark::BenchmarkReporter {
public:
   bool ReportContext( const Context& ) override { return true; }
   void ReportRuns( const std::vector<Run>& runs ) override {
      for( const Run& run : runs ) {
         if( run.run_type == Run::RT_Iteration ) {
            times_[run.run_name.function_name].push_back( run.GetAdjustedCPUTime() );
         }
      }
   }
   double operator[]( const std::string& name ) const { return median( times_.at( name ) ); }

private:
   std::map<std::string, std::vector<double>> times_;
};

void add( const std::string& name, std::function<void()> act ) {
   benchmark::RegisterBenchmark( name.c_str(), [act = std::move( act )]( benchmark::State& state ) {
      for( auto _ : state ) {
         act();
         benchmark::ClobberMemory();
      }
   } )->Unit( benchmark::kNanosecond );
}

std::string nameOf( const char* what, std::size_t rows ) {
   return what + ( ' ' + std::to_string( rows ) );
}

void addRows( std::size_t rows ) {
   const auto typed = std::make_shared<Typed>( rows );
   add( nameOf( "typed decode", rows ), [typed] { typed->decode(); } );
   add( nameOf( "typed encode", rows ), [typed] { typed->encode(); } );
   const auto narrowest = std::make_shared<Data>( rows, true, false );
   add( nameOf( "narrowest decode", rows ), [narrowest] { narrowest->decode(); } );
   const auto settable = std::make_shared<Data>( rows, true, true );
   add( nameOf( "narrowest encode", rows ), [settable] { settable->encode(); } );
   const auto wide = std::make_shared<Data>( rows, false, false );
   add( nameOf( "U64 decode", rows ), [wide] { wide->decode(); } );
   const auto wideSettable = std::make_shared<Data>( rows, false, true );
   add( nameOf( "U64 encode", rows ), [wideSettable] { wideSettable->encode(); } );
   const auto copy = std::make_shared<std::vector<U8>>( rows * imageBytes );
   add( nameOf( "memcpy", rows ), [narrowest, copy] {
      std::memcpy( copy->data(), narrowest->images().data(), copy->size() );
      benchmark::DoNotOptimize( copy->data() );
   } );
}

// The cost of making columns of all fields of a given layout.
void addSetUp() {
   const auto layout = std::make_shared<Vorn::Layout>( "LifTable", Pair::chipType, Pair::variant );
   const auto array = std::make_shared<U64>();
   add( "set-up", [layout, array] {
      Vorn::Columns columns( *layout );
      for( const Vorn::Field& field : layout->fields() ) {
         if( field.width <= 64 ) {
            columns.add( field.name, static_cast<void*>( array.get() ), 1, sizeof( U64 ) );
         }
      }
      benchmark::DoNotOptimize( columns );
   } );
}

std::string textOf( double number, int decimals = 2 ) {
   char text[32];
   std::snprintf( text, sizeof text, "%.*f", decimals, number );
   return text;
}

void writeTables( std::ostream& out, const Medians& times ) {
   out << "| what | against | at most | measured | met |\n|---|---|---|---|---|\n";
   const auto goal = [&]( const char* what, const char* against, const std::string& name,
                          const std::string& baseline, double limit ) {
      const double ratio = times[name] / times[baseline];
      out << "| " << what << " | " << against << " | " << textOf( limit ) << " | "
          << textOf( ratio ) << " | " << ( ratio <= limit ? "yes" : "**no**" ) << " |\n";
   };
   const auto byRows = [&]( const char* what, const char* name, const char* baseline,
                            std::size_t rows, double limit ) {
      goal( what, "typed accessors", nameOf( name, rows ), nameOf( baseline, rows ), limit );
   };
   goal( "decoding a million images", "`memcpy` of them", nameOf( "narrowest decode", many ),
         nameOf( "memcpy", many ), 1.5 );
   byRows( "decoding in cache", "narrowest decode", "typed decode", few, 0.1 );
   byRows( "encoding in cache", "narrowest encode", "typed encode", few, 0.25 );
   byRows( "encoding a million images", "narrowest encode", "typed encode", many, 0.25 );
   byRows( "decoding one image", "narrowest decode", "typed decode", 1, 1 );
   byRows( "encoding one image", "narrowest encode", "typed encode", 1, 1 );

   constexpr std::size_t fields = 22;
   constexpr std::size_t settable = 21;
   out << "\n| images | typed, decode | narrowest | `U64` | typed, encode | narrowest | `U64` |\n"
          "|---|---|---|---|---|---|---|\n";
   for( const std::size_t rows : { std::size_t{ 1 }, std::size_t{ 10 }, few, many } ) {
      out << "| " << rows;
      for( const char* verb : { " decode", " encode" } ) {
         for( const char* way : { "typed", "narrowest", "U64" } ) {
            const std::string name = way + std::string( verb );
            const auto values = ( verb == std::string( " decode" ) ? fields : settable ) * rows;
            out << " | "
                << textOf( times[nameOf( name.c_str(), rows )] / static_cast<double>( values ) )
                << " ns";
         }
      }
      out << " |\n";
   }
   const double gain =
      ( times[nameOf( "typed decode", few )] - times[nameOf( "narrowest decode", few )] ) /
      static_cast<double>( few );
   out << "\nMaking the columns of all 22 fields takes " << textOf( times["set-up"] / 1000, 1 )
       << " µs, which pays off after some " << textOf( times["set-up"] / gain, 0 )
       << "\nimages, as columns take less time for each than typed accessors.\n";
}

int run( const char* file ) {
   for( const std::size_t rows : { std::size_t{ 1 }, std::size_t{ 10 }, few, many } ) {
      addRows( rows );
   }
   addSetUp();
   Medians medians;
   benchmark::RunSpecifiedBenchmarks( &medians );
   std::ofstream out( file );
   writeTables( out, medians );
   out.close();
   return out ? 0 : 1;
}

} // namespace
} // namespace Bench

int main( int argc, char** argv ) {
   benchmark::Initialize( &argc, argv );
   if( argc != 2 ) {
      std::cerr << "usage: vornColumnsBench FILE [benchmark options]\n";
      return 2;
   }
   return Bench::run( argv[1] );
}
