// The classes, and how many classes, fields and pairs there are, stated once for all tests.
#pragma once

#include "Literal.h"

#include <cstddef>
#include <iterator>

namespace Testing {

struct StatedClass {
   Literal name;
   unsigned storageBytes;
   unsigned fields; // over all pairs
   unsigned pairs;
   Literal chips;
   bool hasDiscriminator;
};

inline constexpr StatedClass statedClasses[] = {
#define CLASS( name, Entry, ... ) { #name, __VA_ARGS__ },
#include "Classes.def"
};

inline constexpr std::size_t classCount = std::size( statedClasses );
inline constexpr std::size_t fieldCount = [] {
   std::size_t count = 0;
   for( const StatedClass& one : statedClasses ) {
      count += one.fields;
   }
   return count;
}();
inline constexpr std::size_t pairCount = [] {
   std::size_t count = 0;
   for( const StatedClass& one : statedClasses ) {
      count += one.pairs;
   }
   return count;
}();

// The chip types of a class, as "10,12-16".
constexpr Literal chipsOf( std::string_view name ) {
   for( const StatedClass& one : statedClasses ) {
      if( one.name == name ) {
         return one.chips;
      }
   }
   return {};
}

} // namespace Testing
