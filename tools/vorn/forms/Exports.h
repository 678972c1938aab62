// Layouts for other programs: C headers, JSON Schemas of records, and tables of values.
#pragma once

#include <Vorn/Layout.h>

#include <span>
#include <string>

namespace Vorn {

// A C11 header of offsets, widths, masks and inline accessors over bytes; its first comment says
// what it has.
std::string cHeader( std::span<const Layout> layouts );

// A JSON Schema (2020-12) of the records that `vorn program` takes for entries of these pairs.
std::string recordSchema( std::span<const Layout> layouts );

// A line of comma-separated values for each field after a line of headings.
std::string layoutCsv( std::span<const Layout> layouts );

// "LifTable_BCM88690_B0_3": a pair in names of other languages; the variant is left out where there
// is no other.
std::string symbolOf( const Layout& layout );

} // namespace Vorn
