// A text that comes in pieces, as from a pipe.
#pragma once

#include <Vorn/Dump.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

namespace Fuzz {

class Pieces : public Vorn::ByteSource {
public:
   // `size` is the most bytes of a piece; the text must outlive this object.
   Pieces( std::string_view text, std::size_t size, std::string name )
      : rest_( text ), size_( size ), name_( std::move( name ) ) {}

   std::size_t read( char* to, std::size_t size ) override {
      const auto length = rest_.copy( to, std::min( size, size_ ) );
      rest_.remove_prefix( length );
      return length;
   }
   std::string name() const override { return name_; }

private:
   std::string_view rest_;
   std::size_t size_;
   std::string name_;
};

} // namespace Fuzz
