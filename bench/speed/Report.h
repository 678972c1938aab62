// Medians of the measurements, and the tables made from them.
#pragma once

#include "rows/Row.h"

#include <iosfwd>
#include <map>

namespace Bench {

// Library and baseline; the baseline of a format is 0.
struct Sides {
   double library = 0;
   double baseline = 0;

   double ratio() const { return library / baseline; }
};

using Figures = std::map<std::string, Sides>; // by row, for one operation

double median( std::vector<double> values );

// Instructions of each row, as scripts/measure/instructions.sh writes them; empty without a file.
Figures readCounts( const std::string& file, const Rows& rows );

// The tables of docs/performance.md.
void writeTables( std::ostream& out, const Rows& rows, const Figures& times,
                  const Figures& counts );

// A line for each class: name, formats, fields, chip types, nanoseconds of a setter and a getter.
void writeGrowth( std::ostream& out, const Rows& rows, const Figures& times );

} // namespace Bench
