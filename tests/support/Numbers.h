// Lists of numbers, as the rows of the tests write them.
#pragma once

#include <set>
#include <sstream>
#include <string>

namespace Testing {

// "10,12-16" as a set of numbers.
inline std::set<unsigned> numbersIn( const std::string& list ) {
   std::set<unsigned> numbers;
   std::istringstream parts( list );
   for( std::string part; std::getline( parts, part, ',' ); ) {
      const auto dash = part.find( '-' );
      const unsigned first = static_cast<unsigned>( std::stoul( part ) );
      const unsigned last = dash == std::string::npos
                               ? first
                               : static_cast<unsigned>( std::stoul( part.substr( dash + 1 ) ) );
      for( unsigned number = first; number <= last; ++number ) {
         numbers.insert( number );
      }
   }
   return numbers;
}

} // namespace Testing
