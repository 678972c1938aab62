// The tables, in Markdown.
#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <optional>
#include <ostream>
#include <sstream>

namespace Bench {

double median( std::vector<double> values ) {
   std::sort( values.begin(), values.end() );
   const std::size_t middle = values.size() / 2;
   return values.size() % 2 != 0 ? values[middle] : ( values[middle - 1] + values[middle] ) / 2;
}

Figures readCounts( const std::string& file, const Rows& rows ) {
   Figures counts;
   std::ifstream in( file );
   for( std::string line; std::getline( in, line ); ) {
      std::istringstream fields( line );
      std::string library;
      std::string baseline; // "-" where there is none
      std::string name;
      if( fields >> library >> baseline >> std::ws && std::getline( fields, name ) ) {
         counts[name] = { std::atof( library.c_str() ), std::atof( baseline.c_str() ) };
      }
   }
   for( const Row& row : rows.rows ) {
      if( counts.find( row.name ) == counts.end() ) {
         return {};
      }
   }
   return counts;
}

namespace {

std::string number( double value, int decimals = 2 ) {
   char text[32];
   std::snprintf( text, sizeof text, "%.*f", decimals, value );
   return text;
}

struct Named {
   std::string name;
   double value = 0;
};

// Several ratios as their mean and the worst of them.
struct Summary {
   unsigned count = 0;
   double sum = 0;
   Named worst;

   void add( const std::string& name, double ratio ) {
      ++count;
      sum += ratio;
      if( ratio > worst.value ) {
         worst = { name, ratio };
      }
   }
   double mean() const { return sum / count; }
};

double mean( const std::vector<std::string>& names, const Figures& figures ) {
   double sum = 0;
   for( const std::string& name : names ) {
      sum += figures.at( name ).library;
   }
   return sum / static_cast<double>( names.size() );
}

// The slowest of a class's formats against its fastest.
struct Spread {
   Named fastest;
   Named slowest;

   Spread( const std::vector<std::string>& names, const Figures& figures ) {
      for( const std::string& name : names ) {
         const double value = figures.at( name ).library;
         if( fastest.name.empty() || value < fastest.value ) {
            fastest = { name, value };
         }
         if( value > slowest.value ) {
            slowest = { name, value };
         }
      }
   }
   double ratio() const { return slowest.value / fastest.value; }
};

Summary summaryOf( Goal goal, const Rows& rows, const Figures& figures ) {
   Summary summary;
   for( const Row& row : rows.rows ) {
      if( row.goal == goal ) {
         summary.add( row.name, figures.at( row.name ).ratio() );
      }
   }
   return summary;
}

Summary spreadOf( const Rows& rows, const Figures& figures ) {
   Summary summary;
   for( const ClassFacts& facts : rows.classes ) {
      for( const auto& names : { facts.setters, facts.getters } ) {
         if( !names.empty() ) {
            const Spread spread( names, figures );
            summary.add( spread.slowest.name, spread.ratio() );
         }
      }
   }
   return summary;
}

// From the class with the fewest formats to the one with the most.
Summary growthOf( const Rows& rows, const Figures& figures ) {
   const auto find = [&rows]( const char* name ) {
      return *std::find_if( rows.classes.begin(), rows.classes.end(),
                            [name]( const ClassFacts& facts ) { return facts.name == name; } );
   };
   const ClassFacts small = find( "TcamActionTable" );
   const ClassFacts large = find( "IsemMgmtReq" );
   Summary summary;
   summary.add( "setters", mean( large.setters, figures ) / mean( small.setters, figures ) );
   summary.add( "getters", mean( large.getters, figures ) / mean( small.getters, figures ) );
   return summary;
}

struct Aim {
   const char* what;
   const char* against;
   std::optional<Goal> goal;
   double limit;
   bool onAverage;
};

constexpr Aim aims[] = {
   { "typed setter and getter, each field", "floor", Goal::field, 2.0, false },
   { "typed setter and getter, on average", "floor", Goal::field, 1.5, true },
   { "all fields of a pair, composed and decoded", "floor", Goal::pair, 2.0, false },
   { "setter and getter of a wide field", "shift and merge by hand", Goal::wide, 1.5, false },
   { "`setField64`, `fieldWidth`, `fieldOffset`", "typed accessors", Goal::byIdentifier, 1.5,
     false },
   { "`stringField`, `stringFieldIs`", "a map's look-up and the typed accessor", Goal::byName, 2.0,
     false },
   { "`stringObj`", "a map's look-up and `std::make_shared`", Goal::object, 1.5, false },
   { "`getSchanAddress`, `getAllFields`, `isLifTable`", "by hand for one pair", Goal::byHand, 1.5,
     false },
   { "the path of one entry", "by hand for one pair", Goal::path, 2.0, false },
   { "the fields of a pair over primitives that aren't inline", "a floor that calls them too",
     Goal::calls, 2.0, false },
   { "disabled tracing, on average", "no trace sites", Goal::traces, 1.1, true },
};

void writeAim( std::ostream& out, const std::string& what, const std::string& against, double limit,
               const Summary& summary, bool onAverage, const std::string& instructions ) {
   const double measured = onAverage ? summary.mean() : summary.worst.value;
   out << "| " << what << " | " << against << " | " << number( limit, 1 ) << " | "
       << number( measured ) << " | " << ( measured <= limit ? "yes" : "**no**" ) << " | "
       << ( onAverage ? "" : summary.worst.name ) << " | " << instructions << " |\n";
}

void writeAims( std::ostream& out, const Rows& rows, const Figures& times, const Figures& counts ) {
   out << "| what | against | at most | measured | met | where it is worst | the same in "
          "instructions |\n"
          "|---|---|---|---|---|---|---|\n";
   const auto instructions = [&counts]( const auto& summarise, bool onAverage ) {
      if( counts.empty() ) {
         return std::string();
      }
      const Summary summary = summarise();
      return number( onAverage ? summary.mean() : summary.worst.value );
   };
   for( const Aim& aim : aims ) {
      const Goal goal = *aim.goal;
      writeAim( out, aim.what, aim.against, aim.limit, summaryOf( goal, rows, times ),
                aim.onAverage,
                instructions( [&] { return summaryOf( goal, rows, counts ); }, aim.onAverage ) );
   }
   writeAim( out, "the slowest format of each class", "the class's fastest", 1.3,
             spreadOf( rows, times ), false,
             instructions( [&] { return spreadOf( rows, counts ); }, false ) );
   writeAim( out, "the accessors of `IsemMgmtReq`", "those of `TcamActionTable`", 1.5,
             growthOf( rows, times ), false,
             instructions( [&] { return growthOf( rows, counts ); }, false ) );
}

void writeRows( std::ostream& out, const Rows& rows, const Figures& times, const Figures& counts ) {
   out << "| row | library | baseline | ratio | instructions | of the baseline |\n"
          "|---|---|---|---|---|---|\n";
   for( const Row& row : rows.rows ) {
      if( row.goal == Goal::field || row.goal == Goal::format ) {
         continue;
      }
      const Sides& time = times.at( row.name );
      out << "| " << row.name << " | " << number( time.library ) << " ns | "
          << number( time.baseline ) << " ns | " << number( time.ratio() ) << " | ";
      if( const auto count = counts.find( row.name ); count != counts.end() ) {
         out << number( count->second.library, 1 ) << " | " << number( count->second.baseline, 1 )
             << " |\n";
      } else {
         out << " | |\n";
      }
   }
}

void writeFields( std::ostream& out, const Rows& rows, const Figures& times ) {
   // By the pair that a name begins with, setters and getters apart.
   std::vector<std::string> order;
   std::map<std::string, std::pair<Summary, Summary>> pairs;
   for( const Row& row : rows.rows ) {
      if( row.goal == Goal::field ) {
         const std::size_t end = row.name.find( '.' );
         const std::string pair = row.name.substr( 0, end );
         if( pairs.find( pair ) == pairs.end() ) {
            order.push_back( pair );
         }
         auto& [setters, getters] = pairs[pair];
         Summary& summary = row.name.ends_with( "Is" ) ? setters : getters;
         summary.add( row.name.substr( end + 1 ), times.at( row.name ).ratio() );
      }
   }
   out << "| pair | setters, mean | worst | getters, mean | worst |\n|---|---|---|---|---|\n";
   for( const std::string& pair : order ) {
      const auto& [setters, getters] = pairs[pair];
      out << "| " << pair;
      for( const Summary* summary : { &setters, &getters } ) {
         out << " | " << number( summary->mean() ) << " | " << number( summary->worst.value )
             << " `" << summary->worst.name << "`";
      }
      out << " |\n";
   }
}

void writeClasses( std::ostream& out, const Rows& rows, const Figures& times ) {
   out << "| class | formats | fields | chip types | setter | slowest to fastest format | getter | "
          "slowest to fastest format |\n"
          "|---|---|---|---|---|---|---|---|\n";
   for( const ClassFacts& facts : rows.classes ) {
      out << "| " << facts.name << " | " << facts.formats << " | " << facts.fields << " | "
          << facts.chipTypes;
      for( const auto* names : { &facts.setters, &facts.getters } ) {
         if( names->empty() ) {
            out << " | | ";
         } else {
            out << " | " << number( mean( *names, times ) ) << " ns | "
                << number( Spread( *names, times ).ratio() );
         }
      }
      out << " |\n";
   }
}

} // namespace

void writeTables( std::ostream& out, const Rows& rows, const Figures& times,
                  const Figures& counts ) {
   out << "### Goals\n\n";
   writeAims( out, rows, times, counts );
   out << "\n### One operation\n\n";
   writeRows( out, rows, times, counts );
   out << "\n### The accessors of each field, against the floor\n\n";
   writeFields( out, rows, times );
   out << "\n### The accessors of each class\n\n";
   writeClasses( out, rows, times );
}

void writeGrowth( std::ostream& out, const Rows& rows, const Figures& times ) {
   for( const ClassFacts& facts : rows.classes ) {
      if( !facts.setters.empty() ) {
         out << facts.name << ' ' << facts.formats << ' ' << facts.fields << ' ' << facts.chipTypes
             << ' ' << number( mean( facts.setters, times ), 3 ) << ' '
             << number( mean( facts.getters, times ), 3 ) << '\n';
      }
   }
}

} // namespace Bench
