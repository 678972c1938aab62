// The cells of CSV.
#include "CsvText.h"

#include "ImageText.h"

#include <Vorn/Text.h>

#include <algorithm>

namespace Vorn {

namespace {

// Reads a cell in quotes, which begins there with the first of them; where it ends.
std::size_t readQuoted( std::string_view line, Piece& cell ) {
   const std::size_t quote = cell.at++;
   for( std::size_t at = cell.at; at < line.size(); ++at ) {
      if( line[at] == '"' ) {
         if( at + 1 == line.size() || line[at + 1] != '"' ) {
            const auto end = skipBlanks( line, at + 1 );
            if( end < line.size() && line[end] != ',' ) {
               throw BadText( end, "a cell in quotes ends before " +
                                      inQuotes( line.substr( end ) ) +
                                      "; a comma follows it, and a quote in it is doubled" );
            }
            return end;
         }
         ++at;
      }
      cell.text += line[at];
   }
   throw BadText( quote, "the cell " + inQuotes( line.substr( quote ) ) +
                            " has no closing quote; a cell ends on its line" );
}

} // namespace

std::vector<Piece> cellsOf( std::string_view line ) {
   std::vector<Piece> cells;
   for( std::size_t at = 0;; ++at ) {
      Piece& cell = cells.emplace_back();
      cell.at = skipBlanks( line, at );
      if( cell.at < line.size() && line[cell.at] == '"' ) {
         at = readQuoted( line, cell );
      } else {
         const auto end = std::min( line.find( ',', at ), line.size() );
         cell.text = trimmed( line.substr( at, end - at ) );
         at = end;
      }
      cell.isGiven = !cell.text.empty();
      if( at == line.size() ) {
         return cells;
      }
   }
}

void requireCells( const std::vector<Piece>& cells, std::size_t count ) {
   if( cells.size() != count ) {
      throw BadText( cells.front().at, "the row has " + countOf( cells.size(), "cell" ) +
                                          ", the header " + std::to_string( count ) );
   }
}

} // namespace Vorn
