// Strings in the rows of the tests.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace Testing {

// A literal: a list of them is constant data, where one of std::string is code. It is a std::string
// wherever one is asked for.
class Literal : public std::string_view {
public:
   constexpr Literal() = default;
   constexpr Literal( const char* text ) : std::string_view( text, __builtin_strlen( text ) ) {}

   operator std::string() const { return std::string( data(), size() ); }

   friend std::string operator+( const std::string& left, Literal right ) {
      return std::string( left ).append( right );
   }
   friend std::string operator+( Literal left, const std::string& right ) {
      return std::string( left ).append( right );
   }
   friend void PrintTo( Literal literal, std::ostream* out ) {
      *out << '"' << std::string_view( literal ) << '"';
   }
};

} // namespace Testing
