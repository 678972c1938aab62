// A text in a fixed buffer, for code that must neither allocate nor need a destructor.
#pragma once

#include <Kelvar/Types.h>

#include <charconv>
#include <concepts>
#include <string_view>

namespace Hardware::Frame {

// Appends strings and decimal numbers; what exceeds the buffer is dropped.
class Text {
public:
   Text() = default;

   template<class... Pieces>
   explicit Text( const Pieces&... pieces ) {
      ( append( pieces ), ... );
   }

   void append( std::string_view piece ) {
      length_ += piece.copy( characters_ + length_, sizeof characters_ - 1 - length_ );
      characters_[length_] = '\0';
   }
   void append( std::unsigned_integral auto number ) { appendNumber( number, 10 ); }
   void appendHex( U64 number ) { appendNumber( number, 16 ); }

   const char* c_str() const { return characters_; }
   std::string_view view() const { return { characters_, length_ }; }

private:
   void appendNumber( U64 number, int base ) {
      char digits[24];
      const auto end = std::to_chars( digits, digits + sizeof digits, number, base ).ptr;
      append( { digits, static_cast<std::size_t>( end - digits ) } );
   }

   std::size_t length_ = 0;
   char characters_[320] = {};
};

} // namespace Hardware::Frame
