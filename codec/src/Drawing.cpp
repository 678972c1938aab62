// What a drawing of an entry shows, as text or as a picture: rows of 32 bits, cut into cells.
#include <Vorn/Drawing.h>

#include <algorithm>

namespace Vorn {

namespace {

// "a" to "z", "A" to "Z", "2" to "9", then "aa" and so on. What looks like another is left out.
std::string keyNumber( std::size_t number ) {
   constexpr std::string_view letters = "abcdefghijkmnopqrstuvwxyzABCDEFGHJKLMNPQRSTUVWXYZ23456789";
   std::string key( 1, letters[number % letters.size()] );
   return number < letters.size() ? key : keyNumber( number / letters.size() - 1 ) + key;
}

bool isUpper( char c ) { return c >= 'A' && c <= 'Z'; }

// Where the next word of a name in camel case ends, from `begin`.
std::size_t wordEnd( std::string_view name, std::size_t begin ) {
   std::size_t end = begin + 1;
   while( end < name.size() && name[end] != '[' &&
          !( isUpper( name[end] ) && !isUpper( name[end - 1] ) ) ) {
      ++end;
   }
   return end;
}

std::vector<std::string> labelOf( const DrawingCell& cell, const DrawingRoom& room ) {
   const std::size_t columns = room.columns( cell.bits() );
   if( !cell.field ) {
      return broken( "unused", columns, 1 );
   }
   const BitOrder::Field& field = *cell.field;
   const std::string name( field.name );
   if( cell.high - cell.low + 1 < field.width ) {
      auto part = broken( name + '[' + std::to_string( cell.high - field.offset ) + ':' +
                             std::to_string( cell.low - field.offset ) + ']',
                          columns, room.lines );
      if( !part.empty() ) {
         return part;
      }
   }
   return broken( name, columns, room.lines );
}

// A key in as many lines as it takes.
std::vector<std::string> stacked( std::string_view key, std::size_t columns ) {
   std::vector<std::string> lines;
   for( ; !key.empty(); key.remove_prefix( std::min( columns, key.size() ) ) ) {
      lines.emplace_back( key.substr( 0, columns ) );
   }
   return lines;
}

// Adds those of the bits that lie in the row to its first strip in which they are free.
void addPart( DrawingRow& row, const BitOrder::Field* field, unsigned offset, unsigned width ) {
   const unsigned low = std::max( offset, row.low() );
   const unsigned end = std::min( offset + width, row.high() + 1 );
   if( low >= end ) {
      return;
   }
   auto strip = std::find_if( row.strips.begin(), row.strips.end(), [&]( const auto& cells ) {
      return std::all_of( cells.begin(), cells.end(), [&]( const DrawingCell& cell ) {
         return cell.high < low || cell.low >= end;
      } );
   } );
   if( strip == row.strips.end() ) {
      strip = row.strips.emplace( strip );
   }
   strip->push_back( { field, low, end - 1 } );
}

// Whether the rows look the same: each of their strips shows one field, or none, over all its bits.
bool continues( const DrawingRow& row, const DrawingRow& next ) {
   const auto isWhole = []( const std::vector<DrawingCell>& strip ) {
      return strip.size() == 1 && strip.front().bits() == 32;
   };
   return std::equal(
      row.strips.begin(), row.strips.end(), next.strips.begin(), next.strips.end(),
      [&]( const std::vector<DrawingCell>& left, const std::vector<DrawingCell>& right ) {
         return isWhole( left ) && isWhole( right ) && left.front().field == right.front().field;
      } );
}

} // namespace

std::string DrawingRow::wordText() const {
   return std::to_string( firstWord ) +
          ( lastWord > firstWord ? '-' + std::to_string( lastWord ) : "" );
}

Drawing::Drawing( const BitOrder& format, const DrawingRoom& room )
   : format_( format ), keys_( format.fields().size() ) {
   cut();
   label( room );
}

std::size_t Drawing::indexOf( const BitOrder::Field& field ) const {
   return static_cast<std::size_t>( &field - format_.fields().data() );
}

void Drawing::cut() {
   std::vector<const BitOrder::Field*> fields;
   for( const BitOrder::Field& field : format_.fields() ) {
      fields.push_back( &field );
   }
   std::stable_sort( fields.begin(), fields.end(),
                     []( const BitOrder::Field* left, const BitOrder::Field* right ) {
                        return left->lane < right->lane;
                     } );
   for( unsigned word = 0; word < format_.words(); ++word ) {
      DrawingRow row{ word, word, {} };
      for( const BitOrder::Field* const field : fields ) {
         addPart( row, field, field->offset, field->width );
      }
      for( const BitOrder::Run& run : format_.unused() ) {
         addPart( row, nullptr, run.offset, run.width );
      }
      for( auto& strip : row.strips ) {
         std::sort( strip.begin(), strip.end(),
                    []( const DrawingCell& left, const DrawingCell& right ) {
                       return left.low < right.low;
                    } );
      }
      if( rows_.empty() || !continues( rows_.back(), row ) ) {
         rows_.push_back( std::move( row ) );
         continue;
      }
      rows_.back().lastWord = word;
      for( auto& strip : rows_.back().strips ) {
         strip.front().high = row.high();
      }
   }
}

void Drawing::label( const DrawingRoom& room ) {
   std::vector<bool> needsKey( keys_.size() );
   std::vector<DrawingCell*> unlabelled;
   for( DrawingRow& row : rows_ ) {
      for( auto& strip : row.strips ) {
         for( DrawingCell& cell : strip ) {
            cell.label = labelOf( cell, room );
            if( cell.field && cell.label.empty() ) {
               needsKey[indexOf( *cell.field )] = true;
               unlabelled.push_back( &cell );
            }
         }
      }
   }
   std::size_t number = 0;
   for( std::size_t i = 0; i < keys_.size(); ++i ) {
      if( needsKey[i] ) {
         keys_[i] = keyNumber( number++ );
      }
   }
   for( DrawingCell* const cell : unlabelled ) {
      cell->label = stacked( key( *cell->field ), room.columns( cell->bits() ) );
   }
}

std::vector<std::string> broken( std::string_view name, std::size_t columns, std::size_t lines ) {
   std::vector<std::string> result( 1 );
   for( std::size_t begin = 0; begin < name.size(); ) {
      const std::size_t end = wordEnd( name, begin );
      const auto word = name.substr( begin, end - begin );
      if( result.back().size() + word.size() > columns && !result.back().empty() ) {
         result.emplace_back();
      }
      result.back() += word;
      if( result.back().size() > columns || result.size() > lines ) {
         return {};
      }
      begin = end;
   }
   return result;
}

} // namespace Vorn
