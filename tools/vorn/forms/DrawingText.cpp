// An entry's format as text of at most 80 columns: the drawing, and the list of its fields.
#include "forms/DrawingText.h"

#include "Text.h"

#include <Vorn/Text.h>

#include <algorithm>
#include <array>

namespace Vorn {

namespace {

constexpr std::size_t pageColumns = 80;

// What stands for bits of no field where the word "unused" doesn't fit.
constexpr std::string_view unusedKey = ".";

// Boxes and what is written in them, on a grid of characters: two columns for a bit, and one more.
class Boxes {
public:
   static constexpr std::size_t columnOf( unsigned bit ) { return std::size_t{ 2 } * ( 31 - bit ); }

   explicit Boxes( std::size_t lines ) : lines_( lines, Line( columnOf( 0 ) + 3 ) ) {}

   // A box around the cell whose rules are at the lines `top` and `bottom`, with its label.
   void draw( const DrawingCell& cell, std::size_t top, std::size_t bottom );

   std::string line( std::size_t number, BoxLines style ) const;

private:
   enum Way : unsigned char { up = 1, down = 2, toLeft = 4, toRight = 8 };

   struct Place {
      unsigned char ways = 0; // in which a line leaves the middle of the place
      char letter = '\0';
   };
   using Line = std::vector<Place>;

   void mark( std::size_t line, std::size_t column, Way way ) {
      lines_[line][column].ways |= static_cast<unsigned char>( way );
   }

   // What stands for each set of ways.
   static constexpr std::array<std::string_view, 16> ascii{
      " ", "|", "|", "|", "-", "+", "+", "+", "-", "+", "+", "+", "-", "+", "+", "+"
   };
   static constexpr std::array<std::string_view, 16> unicode{ " ", "│", "│", "│", "─", "┘",
                                                              "┐", "┤", "─", "└", "┌", "├",
                                                              "─", "┴", "┬", "┼" };

   std::vector<Line> lines_;
};

void Boxes::draw( const DrawingCell& cell, std::size_t top, std::size_t bottom ) {
   const std::size_t left = columnOf( cell.left() );
   const std::size_t right = columnOf( cell.right() ) + 2;
   for( std::size_t column = left; column < right; ++column ) {
      for( const std::size_t line : { top, bottom } ) {
         mark( line, column, toRight );
         mark( line, column + 1, toLeft );
      }
   }
   for( std::size_t line = top; line < bottom; ++line ) {
      for( const std::size_t column : { left, right } ) {
         mark( line, column, down );
         mark( line + 1, column, up );
      }
   }
   const std::vector<std::string> noLabel{ std::string( unusedKey ) };
   const auto& label = cell.label.empty() ? noLabel : cell.label;
   std::size_t line = top + 1 + ( bottom - top - 1 - label.size() ) / 2;
   for( const auto& text : label ) {
      std::size_t column = left + 1 + ( right - left - 1 - text.size() ) / 2;
      for( const char c : text ) {
         lines_[line][column++].letter = c;
      }
      ++line;
   }
}

std::string Boxes::line( std::size_t number, BoxLines style ) const {
   const auto& signs = style == BoxLines::unicode ? unicode : ascii;
   std::string text;
   for( const Place& place : lines_[number] ) {
      if( place.letter != '\0' ) {
         text += place.letter;
      } else {
         text += signs[place.ways];
      }
   }
   text.erase( text.find_last_not_of( ' ' ) + 1 );
   return text;
}

std::size_t heightOf( const std::vector<DrawingCell>& strip ) {
   std::size_t height = 1;
   for( const DrawingCell& cell : strip ) {
      height = std::max( height, cell.label.size() );
   }
   return height;
}

std::string padded( const std::string& text, std::size_t width ) {
   return std::string( width - std::min( width, text.size() ), ' ' ) + text;
}

// What stands beside a line of boxes.
struct Margin {
   std::string word;
   std::string high; // the highest bit
   std::string low;
};

// The numbers of a word's bits above the boxes, in two lines.
std::string bitNumbers( std::size_t wordColumns, std::size_t margin ) {
   std::string tens( margin + Boxes::columnOf( 0 ) + 2, ' ' );
   std::string ones = tens;
   ones.replace( 0, wordColumns, padded( "word", wordColumns ) );
   for( unsigned bit = 0; bit < 32; ++bit ) {
      const std::size_t column = margin + Boxes::columnOf( bit ) + 1;
      tens[column] = bit < 10 ? ' ' : static_cast<char>( '0' + bit / 10 );
      ones[column] = static_cast<char>( '0' + bit % 10 );
   }
   tens.erase( tens.find_last_not_of( ' ' ) + 1 );
   return tens + '\n' + ones + '\n';
}

} // namespace

std::string drawnAsText( const Drawing& drawing, BoxLines style ) {
   std::size_t count = 1;
   for( const DrawingRow& row : drawing.rows() ) {
      for( const auto& strip : row.strips ) {
         count += heightOf( strip ) + 1;
      }
   }
   Boxes boxes( count );
   std::vector<Margin> margins( count );
   std::size_t top = 0;
   std::size_t wordColumns = 4;
   for( const DrawingRow& row : drawing.rows() ) {
      wordColumns = std::max( wordColumns, row.wordText().size() );
      for( const auto& strip : row.strips ) {
         const std::size_t bottom = top + heightOf( strip ) + 1;
         for( const DrawingCell& cell : strip ) {
            boxes.draw( cell, top, bottom );
         }
         margins[( top + bottom ) / 2] =
            &strip == &row.strips.front()
               ? Margin{ row.wordText(), std::to_string( row.high() ), std::to_string( row.low() ) }
               : Margin{ "or", "", "" };
         top = bottom;
      }
   }

   const std::size_t bitColumns = std::to_string( drawing.format().words() * 32 - 1 ).size();
   const std::size_t margin = wordColumns + 1 + bitColumns + 1;
   std::string text = bitNumbers( wordColumns, margin );
   for( std::size_t line = 0; line < count; ++line ) {
      const auto& [word, high, low] = margins[line];
      std::string made = padded( word, wordColumns ) + ' ' + padded( high, bitColumns ) + ' ' +
                         boxes.line( line, style );
      if( !low.empty() ) {
         made += ' ' + low;
      }
      text += made + '\n';
   }
   return text;
}

namespace {

struct ListLine {
   std::string bit;
   std::string width;
   std::string key;
   std::string identifier;
   std::string name;
   std::string hardwareName;
};

std::vector<ListLine> listLines( const Drawing& drawing ) {
   const BitOrder& format = drawing.format();
   const auto hasDot = []( const DrawingRow& row ) {
      const auto& strip = row.strips.front();
      return std::any_of( strip.begin(), strip.end(),
                          []( const DrawingCell& cell ) { return cell.label.empty(); } );
   };
   const bool dots = std::any_of( drawing.rows().begin(), drawing.rows().end(), hasDot );
   std::vector<ListLine> lines{ { "bit", "width", "key", "id", "field", "hardware name" } };
   auto run = format.unused().begin();
   const auto unusedBefore = [&]( unsigned offset ) {
      for( ; run != format.unused().end() && run->offset < offset; ++run ) {
         lines.push_back( { std::to_string( run->offset ), std::to_string( run->width ),
                            std::string( dots ? unusedKey : "" ), "", "unused", "" } );
      }
   };
   for( const BitOrder::Field& field : format.fields() ) {
      unusedBefore( field.offset );
      lines.push_back(
         { std::to_string( field.offset ), std::to_string( field.width ), drawing.key( field ),
           std::to_string( field.identifier ), std::string( field.name ),
           std::string( field.hardwareName ) + ( field.readOnly ? ", read-only" : "" ) } );
   }
   unusedBefore( format.words() * 32 );
   return lines;
}

// Appends `last` to each line from one column on, which is chosen so that as few as possible have
// to go to a line of their own.
std::string withLastColumn( std::span<const std::string> lines, std::span<const ListLine> last ) {
   const auto fits = [&]( std::size_t i, std::size_t column ) {
      return last[i].hardwareName.empty() ||
             ( lines[i].size() + 2 <= column &&
               column + last[i].hardwareName.size() <= pageColumns );
   };
   std::size_t best = 0;
   std::size_t mostFitting = 0;
   for( std::size_t column = 0; column < pageColumns; ++column ) {
      std::size_t fitting = 0;
      for( std::size_t i = 0; i < lines.size(); ++i ) {
         fitting += fits( i, column );
      }
      if( fitting > mostFitting ) {
         best = column;
         mostFitting = fitting;
      }
   }
   std::string text;
   for( std::size_t i = 0; i < lines.size(); ++i ) {
      const auto& name = last[i].hardwareName;
      text += lines[i];
      if( !name.empty() ) {
         const bool own = !fits( i, best );
         const std::size_t column = std::min( best, pageColumns - name.size() );
         text.append( own ? "\n" : "" );
         text.append( column - ( own ? 0 : lines[i].size() ), ' ' ).append( name );
      }
      text += '\n';
   }
   return text;
}

} // namespace

std::string fieldList( const Drawing& drawing, Listed listed ) {
   const auto lines = listLines( drawing );
   const bool keys = std::any_of( lines.begin() + 1, lines.end(),
                                  []( const ListLine& line ) { return !line.key.empty(); } );
   std::vector<Align> columns{ Align::right, Align::right };
   if( keys ) {
      columns.push_back( Align::right );
   }
   if( listed == Listed::all ) {
      columns.push_back( Align::right );
   }
   columns.push_back( Align::left );
   std::vector<std::vector<std::string>> rows;
   for( const ListLine& line : lines ) {
      auto& row = rows.emplace_back( std::vector{ line.bit, line.width } );
      if( keys ) {
         row.push_back( line.key );
      }
      if( listed == Listed::all ) {
         row.push_back( line.identifier );
      }
      row.push_back( line.name );
   }
   if( listed == Listed::places ) {
      return columnsOf( columns, rows );
   }
   const auto widths = widthsOf( rows );
   std::vector<std::string> starts;
   for( const auto& row : rows ) {
      starts.push_back( lineOf( columns, widths, row ) );
      starts.back().pop_back();
   }
   return withLastColumn( starts, lines );
}

DrawingRoom textRoom() {
   return { []( unsigned bits ) -> std::size_t { return 2 * bits - 1; }, 3 };
}

} // namespace Vorn
