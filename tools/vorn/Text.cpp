// Text for people: quoting what was given, lists, ranges, hexadecimal bytes and aligned columns.
#include "Text.h"

#include <algorithm>

namespace Vorn {

namespace {

constexpr char hexDigits[] = "0123456789abcdef";

} // namespace

std::string shown( std::string_view text, std::size_t limit ) {
   std::size_t end = std::min( text.size(), limit );
   // A UTF-8 sequence is kept or cut as a whole.
   while( end < text.size() && end > 0 && ( static_cast<U8>( text[end] ) & 0xc0 ) == 0x80 ) {
      --end;
   }
   std::string result;
   for( const char c : text.substr( 0, end ) ) {
      const auto byte = static_cast<U8>( c );
      if( byte < 0x20 || byte == 0x7f ) {
         result += { '\\', 'x', hexDigits[byte >> 4], hexDigits[byte & 15] };
      } else {
         result += c;
      }
   }
   return end < text.size() ? result + "..." : result;
}

std::string inQuotes( std::string_view text ) { return '"' + shown( text ) + '"'; }

std::size_t columnOf( std::string_view line, std::size_t at ) {
   const auto before = line.substr( 0, at );
   // The bytes that begin a character.
   const auto characters = std::count_if( before.begin(), before.end(), []( char c ) {
      return ( static_cast<U8>( c ) & 0xc0 ) != 0x80;
   } );
   return static_cast<std::size_t>( characters ) + 1;
}

std::string wrapped( std::string_view text, std::size_t columns ) {
   std::string result;
   while( !text.empty() ) {
      const auto end = text.find( '\n' );
      auto paragraph = text.substr( 0, end );
      text.remove_prefix( end == std::string_view::npos ? text.size() : end + 1 );
      while( paragraph.size() > columns && paragraph.front() != ' ' ) {
         const auto space = paragraph.rfind( ' ', columns );
         if( space == std::string_view::npos ) {
            break;
         }
         result.append( paragraph.substr( 0, space ) ).append( "\n" );
         paragraph.remove_prefix( space + 1 );
      }
      result.append( paragraph ).append( text.empty() ? "" : "\n" );
   }
   return result;
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
   for( std::size_t i = 0; i < bytes.size(); ++i ) {
      if( i > 0 ) {
         out = std::copy( between.begin(), between.end(), out );
      }
      *out++ = hexDigits[bytes[i] >> 4];
      *out++ = hexDigits[bytes[i] & 15];
   }
}

std::vector<std::size_t> widthsOf( std::span<const std::vector<std::string>> rows ) {
   std::vector<std::size_t> widths( rows.empty() ? 0 : rows.front().size() );
   for( const auto& row : rows ) {
      for( std::size_t i = 0; i < widths.size(); ++i ) {
         widths[i] = std::max( widths[i], row[i].size() );
      }
   }
   return widths;
}

std::string lineOf( std::span<const Align> columns, std::span<const std::size_t> widths,
                    const std::vector<std::string>& row ) {
   std::string line;
   for( std::size_t i = 0; i < row.size(); ++i ) {
      const std::string padding( widths[i] - row[i].size(), ' ' );
      line += i > 0 ? "  " : "";
      line += columns[i] == Align::right ? padding + row[i] : row[i] + padding;
   }
   line.erase( line.find_last_not_of( ' ' ) + 1 );
   return line + '\n';
}

std::string columnsOf( std::span<const Align> columns,
                       std::span<const std::vector<std::string>> rows ) {
   const auto widths = widthsOf( rows );
   std::string result;
   for( const auto& row : rows ) {
      result += lineOf( columns, widths, row );
   }
   return result;
}

} // namespace Vorn
