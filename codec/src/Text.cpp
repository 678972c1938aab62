// Pieces of messages: what was given, lists, ranges, bytes.
#include <Vorn/Text.h>

#include "ImageText.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace Vorn {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

// Whether a byte goes on with a character of UTF-8.
bool isContinuation( char c ) { return ( static_cast<U8>( c ) & 0xc0 ) == 0x80; }

// The length of the character of UTF-8 that `text` begins with; 0 if that is none, or a control
// character.
std::size_t lengthOfCharacter( std::string_view text ) {
   struct Form {
      U8 mask; // of the bits that mark a first byte of this form
      U8 bits;
      U32 least; // any smaller number is of a shorter form, or a control character
   };
   constexpr Form forms[] = {
      { 0x80, 0x00, 0x20 }, { 0xe0, 0xc0, 0xa0 }, { 0xf0, 0xe0, 0x800 }, { 0xf8, 0xf0, 0x10000 }
   };
   const auto first = static_cast<U8>( text[0] );
   const auto form = std::find_if( std::begin( forms ), std::end( forms ), [&]( const Form& one ) {
      return ( first & one.mask ) == one.bits;
   } );
   const auto length = static_cast<std::size_t>( form - std::begin( forms ) ) + 1;
   if( form == std::end( forms ) || text.size() < length ) {
      return 0;
   }
   U32 number = first & ~U32( form->mask );
   for( const char c : text.substr( 1, length - 1 ) ) {
      if( !isContinuation( c ) ) {
         return 0;
      }
      number = number << 6 | ( static_cast<U8>( c ) & 0x3f );
   }
   const bool isSurrogate = number >= 0xd800 && number < 0xe000;
   const bool isShown =
      number >= form->least && number <= 0x10ffff && number != 0x7f && !isSurrogate;
   return isShown ? length : 0;
}

} // namespace

std::string shown( std::string_view text, std::size_t limit ) {
   std::string result;
   for( std::size_t at = 0; at < text.size(); ) {
      const auto length = lengthOfCharacter( text.substr( at ) );
      const auto end = at + std::max( length, std::size_t( 1 ) );
      if( end > limit ) {
         return result + "...";
      }
      if( length > 0 ) {
         result += text.substr( at, length );
      } else {
         const auto byte = static_cast<U8>( text[at] );
         result += { '\\', 'x', hexDigits[byte >> 4], hexDigits[byte & 15] };
      }
      at = end;
   }
   return result;
}

std::string inQuotes( std::string_view text ) { return '"' + shown( text ) + '"'; }

std::size_t columnOf( std::string_view line, std::size_t at ) {
   const auto before = line.substr( 0, at );
   // The bytes that begin a character.
   const auto characters =
      std::count_if( before.begin(), before.end(), std::not_fn( isContinuation ) );
   return static_cast<std::size_t>( characters ) + 1;
}

bool isBlankLine( std::string_view line ) {
   line = withoutMark( line ); // which the first line of a file may have
   const auto begin = skipBlanks( line, 0 );
   return begin == line.size() || line[begin] == '#';
}

bool isPrintable( std::string_view text, bool isCut ) {
   while( !text.empty() ) {
      const auto length = isBlank( text[0] ) ? 1 : lengthOfCharacter( text );
      if( length == 0 ) {
         const bool begins = static_cast<U8>( text[0] ) >= 0xc0;
         return isCut && begins && text.size() < 4 &&
                std::all_of( text.begin() + 1, text.end(), isContinuation );
      }
      text.remove_prefix( length );
   }
   return true;
}

std::string countOf( U64 count, std::string_view one, std::string_view more ) {
   std::string text = std::to_string( count ) + ' ';
   text += count == 1 || more.empty() ? one : more;
   return text + ( count == 1 || !more.empty() ? "" : "s" );
}

std::string listOf( std::span<const std::string_view> names, std::string_view between ) {
   std::string result;
   for( const auto name : names ) {
      result.append( result.empty() ? "" : between ).append( name );
   }
   return result;
}

std::string rangesOf( std::span<const U32> numbers ) {
   std::string result;
   for( std::size_t first = 0; first < numbers.size(); ) {
      std::size_t last = first;
      while( last + 1 < numbers.size() && numbers[last + 1] == numbers[last] + 1 ) {
         ++last;
      }
      if( last == first + 1 ) {
         last = first;
      }
      result.append( result.empty() ? "" : "," ).append( std::to_string( numbers[first] ) );
      if( last > first ) {
         result.append( "-" ).append( std::to_string( numbers[last] ) );
      }
      first = last + 1;
   }
   return result;
}

void appendHex( std::string& text, std::span<const U8> bytes, std::string_view between ) {
   if( bytes.empty() ) {
      return;
   }
   // Written in place: this is most of what a line of output costs.
   const std::size_t start = text.size();
   text.resize( start + bytes.size() * 2 + ( bytes.size() - 1 ) * between.size() );
   char* out = text.data() + start;
   if( between.empty() ) {
      writeHex( out, bytes );
      return;
   }
   for( std::size_t i = 0; i < bytes.size(); ++i ) {
      if( i > 0 ) {
         out = std::copy( between.begin(), between.end(), out );
      }
      *out++ = hexDigits[bytes[i] >> 4];
      *out++ = hexDigits[bytes[i] & 15];
   }
}

void appendWords( std::string& text, std::span<const U8> bytes ) {
   for( std::size_t i = 0; i + 4 <= bytes.size(); i += 4 ) {
      const U8 word[] = { bytes[i + 3], bytes[i + 2], bytes[i + 1], bytes[i] };
      text += i > 0 ? " 0x" : "0x";
      appendHex( text, word );
   }
}

} // namespace Vorn
