// What the JSON parser finds wrong with a text, in the words of our messages.
#pragma once

#include <Vorn/Text.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <string_view>

namespace Vorn {

class JsonFlaw {
public:
   explicit JsonFlaw( const nlohmann::detail::exception& exception )
      : id_( exception.id ), reason_( exception.what() ) {
      // In the parser's message, what it was doing stands before a dash, and what it read after it.
      constexpr std::string_view dash = " - ";
      if( const auto before = reason_.find( dash ); before != std::string::npos ) {
         reason_.erase( 0, before + dash.size() );
      }
      reason_.erase( std::min( reason_.find( "; last read: " ), reason_.size() ) );
   }

   // Whether the text is a number too large to hold, which JSON itself allows.
   bool isOverflow() const { return id_ == 406; }

   // Whether the reason begins so, for example "invalid string".
   bool is( std::string_view kind ) const { return reason_.starts_with( kind ); }

   std::string message() const { return "not valid JSON: " + shown( reason_, 160 ); }

   // What to do about a text that goes on in the next line, as JSON that is printed for people
   // does; else nothing.
   std::string lineAdvice( std::string_view text ) const {
      const auto last = text.find_last_not_of( " \t\r" );
      const bool goesOn = is( "unexpected end of input" ) && last != std::string_view::npos &&
                          std::string_view( "{[," ).find( text[last] ) != std::string_view::npos;
      return goesOn ? "; an object stands on one line: `jq -c .` writes it so, and `jq -c '.[]'` "
                      "those of an array"
                    : "";
   }

private:
   int id_;
   std::string reason_;
};

} // namespace Vorn
