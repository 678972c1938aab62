// One image in one text: hexadecimal digits or JSON.
#pragma once

#include <Vorn/Images.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace Vorn {

constexpr bool isBlank( char c ) { return c == ' ' || ( c >= '\t' && c <= '\r' ); }

// Where the text continues after blanks, perhaps its end.
constexpr std::size_t skipBlanks( std::string_view text, std::size_t begin ) {
   while( begin < text.size() && isBlank( text[begin] ) ) {
      ++begin;
   }
   return begin;
}

// The text without blanks around it.
constexpr std::string_view trimmed( std::string_view text ) {
   while( !text.empty() && isBlank( text.back() ) ) {
      text.remove_suffix( 1 );
   }
   return text.substr( skipBlanks( text, 0 ) );
}

// What the text begins with, up to a blank.
constexpr std::string_view firstPiece( std::string_view text ) {
   std::size_t end = 0;
   while( end < text.size() && !isBlank( text[end] ) ) {
      ++end;
   }
   return text.substr( 0, end );
}

// The text without the byte order mark that a file may begin with.
constexpr std::string_view withoutMark( std::string_view text ) {
   constexpr std::string_view mark = "\xef\xbb\xbf";
   return text.substr( text.starts_with( mark ) ? mark.size() : 0 );
}

// Calls take( piece, at ) for the pieces of `text` between blanks. The text begins `at` bytes after
// the beginning of its line, here and below.
template<typename Take>
void forEachPiece( std::string_view text, std::size_t at, Take take ) {
   for( auto begin = skipBlanks( text, 0 ); begin < text.size(); ) {
      const auto piece = firstPiece( text.substr( begin ) );
      take( piece, at + begin );
      begin = skipBlanks( text, begin + piece.size() );
   }
}

// Whether `text` is hexadecimal digits and nothing else.
bool isDigits( std::string_view text );

// The number that at most 16 hexadecimal digits write.
U64 numberOf( std::string_view digits );

// Reads the image that `text` writes in digits; it is empty if all is blank.
void readDigits( std::string_view text, std::size_t at, ImageFormat format, Image& image );

// What a JSON object or a row of CSV says about the place of its image.
struct PlaceText {
   std::optional<U64> entry;
   std::optional<U64> array;
   std::optional<U64> identifier;
   std::optional<U64> address;
   std::size_t at = 0; // of the last of them
};

// Reads the image from JSON, and what a JSON object says about its pair and, if `place` isn't null,
// its place.
void readJson( std::string_view text, std::size_t at, ImageFormat format, Image& image,
               PlaceText* place = nullptr );

} // namespace Vorn
