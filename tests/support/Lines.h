// The lines of a text.
#pragma once

#include <sstream>
#include <string>
#include <vector>

namespace Testing {

// Without their ends.
inline std::vector<std::string> linesOf( const std::string& text ) {
   std::vector<std::string> lines;
   std::istringstream in( text );
   for( std::string line; std::getline( in, line ); ) {
      lines.push_back( line );
   }
   return lines;
}

} // namespace Testing
