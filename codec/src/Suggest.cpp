// The nearest right name for a wrong one.
#include <Vorn/Suggest.h>

#include "Letters.h"

#include <Vorn/Text.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Vorn {

namespace {

// No right name is longer than this; what is longer need not be compared.
constexpr std::size_t longestName = 100;

// Optimal string alignment, with the last three rows of the table kept.
unsigned distanceOfLetters( const std::string& left, const std::string& right ) {
   const std::size_t columns = right.size() + 1;
   std::vector<unsigned> beforeLast( columns );
   std::vector<unsigned> last( columns );
   std::vector<unsigned> current( columns );
   for( std::size_t j = 0; j < columns; ++j ) {
      current[j] = static_cast<unsigned>( j );
   }
   for( std::size_t i = 1; i <= left.size(); ++i ) {
      beforeLast.swap( last );
      last.swap( current );
      current[0] = static_cast<unsigned>( i );
      for( std::size_t j = 1; j < columns; ++j ) {
         const unsigned replaced = last[j - 1] + ( left[i - 1] != right[j - 1] ? 1 : 0 );
         current[j] = std::min( { last[j] + 1, current[j - 1] + 1, replaced } );
         if( i > 1 && j > 1 && left[i - 1] == right[j - 2] && left[i - 2] == right[j - 1] ) {
            current[j] = std::min( current[j], beforeLast[j - 2] + 1 );
         }
      }
   }
   return current[columns - 1];
}

} // namespace

unsigned editDistance( std::string_view left, std::string_view right ) {
   return distanceOfLetters( letters( left ), letters( right ) );
}

std::vector<std::string_view> allNearest( std::string_view wrong,
                                          std::span<const std::string_view> right ) {
   std::vector<std::string_view> best;
   if( wrong.size() > longestName ) {
      return best;
   }
   unsigned bestDistance = 0;
   for( const auto name : right ) {
      const unsigned d = editDistance( wrong, name );
      if( d > std::max( wrong.size(), name.size() ) / 3 || ( !best.empty() && d > bestDistance ) ) {
         continue;
      }
      if( d < bestDistance ) {
         best.clear();
      }
      best.push_back( name );
      bestDistance = d;
   }
   return best;
}

std::optional<std::string_view> nearest( std::string_view wrong,
                                         std::span<const std::string_view> right ) {
   const auto best = allNearest( wrong, right );
   return best.empty() ? std::nullopt : std::optional( best.front() );
}

std::string suggestion( std::string_view wrong, std::span<const std::string_view> right ) {
   if( const auto name = nearest( wrong, right ) ) {
      return "; did you mean " + std::string( *name ) + '?';
   }
   return right.empty() ? "; there is none" : "; allowed: " + listOf( right );
}

} // namespace Vorn
