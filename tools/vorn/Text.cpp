// Text for people: wrapped paragraphs and aligned columns.
#include "Text.h"

#include <Vorn/Text.h>

#include <algorithm>
#include <iterator>

namespace Vorn {

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
