// What is measured: rows of an operation of the library and a baseline for it.
#pragma once

#include <Kelvar/Types.h>

#include <functional>
#include <string>
#include <vector>

namespace Bench {

// The goal that a row counts for.
enum class Goal {
   field,        // one accessor, over many entries
   pair,         // all fields of a pair in declared order, entry by entry
   wide,         // one accessor of a wide field
   byIdentifier, // against the typed accessors
   byName,       // against one look-up in a map and the typed accessor
   object,       // against one look-up in a map and std::make_shared
   byHand,       // one fixed pair, out of line
   path,         // from the registry to the address
   traces,       // against the same build without trace sites
   calls,        // all fields of a pair over primitives that aren't inline
   format,       // the accessors of one format of a class; no baseline but the class's others
};

struct Row {
   Goal goal;
   std::string name;
   unsigned operations; // that one call of a side performs
   std::function<void()> library;
   std::function<void()> baseline; // empty for a format
};

// A class as its cost is drawn, and its rows: the setters and the getters of each format.
struct ClassFacts {
   std::string name;
   unsigned formats = 0;
   unsigned fields = 0;
   unsigned chipTypes = 0;
   std::vector<std::string> setters;
   std::vector<std::string> getters;
};

struct Rows {
   std::vector<Row> rows;
   std::vector<ClassFacts> classes;
};

// All rows, in the order of the goals. Ends the process if a baseline yields another result than
// the library.
Rows allRows();

// Its parts.
void addFieldRows( Rows& rows );
void addPairRows( Rows& rows );
void addWideRows( Rows& rows );
void addAccessRows( Rows& rows );
void addEntryRows( Rows& rows );
void addTraceRows( Rows& rows );
void addCallRows( Rows& rows );
void addFormatRows( Rows& rows );

// Ends the process, naming the row, if its two sides don't agree.
void require( bool agree, const std::string& row );

} // namespace Bench
