// The bytes and lines of a dump, with their places.
#include "DumpInput.h"

#include "ImageText.h"

#include <Vorn/Text.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace Vorn {

namespace {

// How much of an endless line is examined.
constexpr std::size_t longestLook = 1 << 16;

} // namespace

ByteSource::~ByteSource() = default;

TextBytes::TextBytes( std::string_view text, std::string name )
   : rest_( text ), name_( std::move( name ) ) {}

TextBytes::~TextBytes() = default;

std::size_t TextBytes::read( char* to, std::size_t size ) {
   const auto length = rest_.copy( to, size );
   rest_.remove_prefix( length );
   return length;
}

std::string TextBytes::name() const { return name_; }

ByteLines::ByteLines( ByteSource& source ) : source_( source ), buffer_( 1 << 18 ) {}

ByteLines::~ByteLines() = default;

bool ByteLines::next( std::string_view& line ) {
   ++number_;
   for( std::size_t searched = 0;; ) {
      const auto all = rest();
      const auto lineEnd = all.find( '\n', searched );
      const bool isFound = lineEnd != all.npos;
      const std::size_t length = isFound ? lineEnd : all.size();
      if( length > longest ) {
         throw Error( place(), "the line is longer than " + std::to_string( longest ) + " bytes" );
      }
      if( isFound || !readMore() ) {
         line = rest().substr( 0, length );
         begin_ += length + ( isFound ? 1 : 0 );
         return isFound || length > 0;
      }
      searched = length;
   }
}

std::string ByteLines::place() const { return source_.name() + ':' + std::to_string( number_ ); }

bool ByteLines::readMore() {
   std::memmove( buffer_.data(), buffer_.data() + begin_, end_ - begin_ );
   end_ -= std::exchange( begin_, 0 );
   if( end_ == buffer_.size() ) {
      buffer_.resize( 2 * buffer_.size() );
   }
   const auto count = source_.read( buffer_.data() + end_, buffer_.size() - end_ );
   end_ += count;
   return count > 0;
}

std::string_view ByteLines::takeRest() {
   const auto all = rest();
   begin_ = end_;
   return all;
}

void ByteLines::skip( std::size_t bytes, std::size_t lines ) {
   begin_ += bytes;
   number_ += lines;
}

std::size_t DumpSource::read( char* to, std::size_t size ) {
   hasFailed_ = true;
   const auto count = source_.read( to, size );
   hasFailed_ = false;
   return count;
}

std::string_view DumpInput::firstLine() {
   for( std::size_t at = 0;; ) {
      const auto all = rest();
      const auto lineEnd = all.find( '\n', at );
      auto line = all.substr( at, lineEnd == all.npos ? lineEnd : lineEnd - at );
      if( lineEnd == all.npos && line.size() < longestLook && all.size() < longest && readMore() ) {
         continue;
      }
      if( at == 0 ) {
         line = withoutMark( line );
      }
      if( lineEnd == all.npos || !isBlankLine( line ) ) {
         return line;
      }
      at = lineEnd + 1;
   }
}

std::string_view DumpInput::secondLine() {
   for( ;; ) {
      const auto first = firstLine();
      const auto all = rest();
      const auto end = static_cast<std::size_t>( first.data() - all.data() ) + first.size();
      const auto after = all.substr( std::min( end + 1, all.size() ) );
      const auto lineEnd = after.find( '\n' );
      if( lineEnd != after.npos || after.size() >= longestLook || !readMore() ) {
         return after.substr( 0, lineEnd );
      }
   }
}

bool DumpInput::isText() {
   const auto line = firstLine();
   return isPrintable( line.substr( 0, longestLook ), line.size() >= longestLook );
}

std::string_view DumpInput::bytes() {
   if( rest().empty() ) {
      readMore();
   }
   return takeRest();
}

bool DumpInput::next( std::string_view& line ) {
   if( !std::exchange( isAgain_, false ) ) {
      if( !nextLine() ) {
         return false;
      }
      if( std::exchange( isFirst_, false ) ) {
         line_ = withoutMark( line_ );
      }
      line_ = withoutComment( line_ );
   }
   line = line_;
   return true;
}

// Sets line_ to the next line; after one that is too long to the one that follows it.
bool DumpInput::nextLine() {
   line_ = {};
   while( isTooLong_ && ( !rest().empty() || readMore() ) ) {
      const auto end = rest().find( '\n' );
      isTooLong_ = end == std::string_view::npos;
      ByteLines::skip( isTooLong_ ? rest().size() : end + 1, 0 );
   }
   isTooLong_ = true;
   const bool isThere = ByteLines::next( line_ );
   isTooLong_ = false;
   return isThere;
}

// In JSON and in the characters of a hexdump, "#" is a character like others.
std::string_view DumpInput::withoutComment( std::string_view line ) const {
   const auto hash = line.find( '#' );
   if( hash == line.npos ) {
      return line;
   }
   const auto begin = skipBlanks( line, 0 );
   if( begin == hash ) {
      return line.substr( 0, hash );
   }
   const auto first = firstPiece( line.substr( begin ) );
   const bool isRow = first.ends_with( ':' ) && isDigits( first.substr( 0, first.size() - 1 ) );
   const bool isText = isRow || isJson( line.substr( begin ) ) || line.find( '{' ) < hash ||
                       line.find( '|' ) < hash || line.find( "  >" ) < hash;
   return isText ? line : line.substr( 0, hash );
}

std::string DumpInput::place( std::size_t at ) const {
   return place() + ':' + std::to_string( columnOf( line_, at ) );
}

} // namespace Vorn
