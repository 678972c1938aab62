// Every pair of every table, for tests that walk over all of them.
#pragma once

#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <string>
#include <vector>

namespace Testing {

inline std::vector<Vorn::Layout> allLayouts() {
   std::vector<Vorn::Layout> layouts;
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      const auto own = Vorn::layoutsOn( chip );
      layouts.insert( layouts.end(), own.begin(), own.end() );
   }
   return layouts;
}

// The text of the Error that `action` throws; "none" if it returns.
template<class Action>
std::string errorOf( Action action ) {
   try {
      action();
   } catch( const Vorn::Error& error ) {
      return error.what();
   }
   return "none";
}

} // namespace Testing
