// An entry's format as a picture for documents.
#include <Vorn/DrawingSvg.h>

#include <Vorn/Bits.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

// All in pixels.
constexpr unsigned bitWidth = 28;
constexpr unsigned border = 16;
constexpr unsigned rowsLeft = 90; // before which the numbers of the words stand
constexpr unsigned pictureWidth = rowsLeft + 32 * bitWidth + border;
constexpr unsigned boxesTop = 62;
constexpr unsigned numbersHeight = 12; // of the bit numbers above the boxes
constexpr unsigned lineHeight = 13;
constexpr unsigned boxPadding = 6; // above and below the label
constexpr unsigned rowGap = 8;
constexpr unsigned legendColumns = 3;
constexpr unsigned keyWidth = 22;
constexpr unsigned legendLine = lineHeight + 2;
constexpr unsigned swatchSize = 11;

// A monospaced letter is about six tenths of the font's size wide.
constexpr unsigned fontSize = 11;
constexpr unsigned numberSize = 9;
constexpr unsigned titleSize = 16;

struct Kind {
   std::string_view fill;
   std::string_view stroke;
   std::string_view meaning;
};

constexpr Kind plain{ "#e8f1fb", "#34495e", "field" };
constexpr Kind again{ "#eaf6e6", "#34495e", "another reading of the bits above" };
constexpr Kind fixed{ "#fdeccb", "#34495e", "tag, read-only" };
constexpr Kind none{ "#f4f4f4", "#a0a0a0", "unused" };

// What changes.
constexpr Kind changed{ "#ffd479", "#b02a00", "changed" };
constexpr Kind isNew{ "#b9e8b4", "#1b6e1b", "new" };
constexpr Kind gone{ "#f6b9b3", "#8f1d14", "gone" };
constexpr Kind moved{ "#fff2a8", "#7a6500", "moved" };
constexpr Kind resized{ "#ffd479", "#8a4b00", "widened or narrowed" };

constexpr std::array kinds{
   &plain, &again, &fixed, &none, &changed, &isNew, &gone, &moved, &resized
};
constexpr std::ptrdiff_t firstChange = 4; // of them

// What a cell shows besides the field's name.
struct Note {
   std::vector<std::string> lines{}; // below the name
   std::string title{};              // in addition to what the browser shows
   const Kind* kind = nullptr;       // if not the cell's own
};

using NoteOf = std::function<Note( const DrawingCell& )>;

const Kind& kindOf( const DrawingCell& cell, bool isFirst ) {
   if( !cell.field ) {
      return none;
   }
   if( cell.field->readOnly ) {
      return fixed;
   }
   return isFirst ? plain : again;
}

std::string escaped( std::string_view text ) {
   std::string result;
   for( const char c : text ) {
      switch( c ) {
      case '<':
         result += "&lt;";
         break;
      case '>':
         result += "&gt;";
         break;
      case '&':
         result += "&amp;";
         break;
      case '"':
         result += "&quot;";
         break;
      default:
         result += c;
      }
   }
   return result;
}

std::string attribute( std::string_view name, std::string_view value ) {
   return ' ' + std::string( name ) + "=\"" + escaped( value ) + '"';
}

std::string attribute( std::string_view name, unsigned value ) {
   return attribute( name, std::to_string( value ) );
}

std::string rectangle( unsigned x, unsigned y, unsigned width, unsigned height, const Kind& kind ) {
   return "<rect" + attribute( "x", x ) + attribute( "y", y ) + attribute( "width", width ) +
          attribute( "height", height ) + attribute( "fill", kind.fill ) +
          attribute( "stroke", kind.stroke ) + "/>";
}

// `y` is the line that the letters stand on; `more` are attributes.
std::string text( unsigned x, unsigned y, std::string_view content, const std::string& more = "" ) {
   return "<text" + attribute( "x", x ) + attribute( "y", y ) + more + '>' + escaped( content ) +
          "</text>\n";
}

std::string anchor( std::string_view value ) { return attribute( "text-anchor", value ); }

std::string bitsText( unsigned low, unsigned high ) {
   return low == high ? "bit " + std::to_string( low )
                      : "bits " + std::to_string( low ) + " to " + std::to_string( high );
}

std::string tooltip( const DrawingCell& cell ) {
   if( !cell.field ) {
      return bitsText( cell.low, cell.high ) + " belong to no field";
   }
   const BitOrder::Field& field = *cell.field;
   return std::string( field.name ) + ": " + bitsText( field.offset, field.end() - 1 ) +
          ", identifier " + std::to_string( field.identifier ) + ", " +
          std::string( field.hardwareName ) + ( field.readOnly ? ", read-only" : "" );
}

class Picture {
public:
   explicit Picture( const std::string& title );

   // The name of the drawing that comes next, of several.
   void addName( const std::string& name );

   void add( const Drawing& drawing, const NoteOf& noteOf = {} );

   // Lines below what is there.
   void addLines( std::span<const std::string> lines );

   std::string made();

private:
   void addRow( const DrawingRow& row, const NoteOf& noteOf );
   void addStrip( const std::vector<DrawingCell>& strip, bool isFirst, const std::string& name,
                  const NoteOf& noteOf );
   void addCell( const DrawingCell& cell, const Note& note, const Kind& kind, unsigned height );
   void addKeys( const Drawing& drawing );
   void addKinds();

   std::string title_;
   std::string body_;
   unsigned top_ = boxesTop;        // of what comes next
   std::vector<const Kind*> kinds_; // of the cells met
};

Picture::Picture( const std::string& title ) : title_( title ) {
   body_ += text( border, 28, title,
                  attribute( "font-size", titleSize ) + attribute( "font-weight", "bold" ) );
   body_ += text( border, 46,
                  "Each row is a 32-bit word of the entry, its most significant bit at the left. "
                  "Bit 0 is the least significant bit of byte 0." );
}

void Picture::addName( const std::string& name ) {
   top_ += titleSize + rowGap;
   body_ += text( rowsLeft, top_, name, attribute( "font-weight", "bold" ) );
   top_ += rowGap;
}

void Picture::add( const Drawing& drawing, const NoteOf& noteOf ) {
   for( const DrawingRow& row : drawing.rows() ) {
      addRow( row, noteOf );
   }
   addKeys( drawing );
}

void Picture::addLines( std::span<const std::string> lines ) {
   for( const auto& line : lines ) {
      top_ += legendLine;
      body_ += text( rowsLeft, top_, line, attribute( "xml:space", "preserve" ) );
   }
   top_ += lines.empty() ? 0 : rowGap;
}

std::string Picture::made() {
   addKinds();
   const unsigned height = top_ + border;
   return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute( "width", pictureWidth ) +
          attribute( "height", height ) +
          attribute( "viewBox",
                     "0 0 " + std::to_string( pictureWidth ) + ' ' + std::to_string( height ) ) +
          attribute( "font-family", "DejaVu Sans Mono, Menlo, Consolas, monospace" ) +
          attribute( "font-size", fontSize ) + attribute( "fill", "#1b1b1b" ) + ">\n<title>" +
          escaped( title_ ) + "</title>\n<rect" + attribute( "width", pictureWidth ) +
          attribute( "height", height ) + " fill=\"#ffffff\"/>\n" + body_ + "</svg>\n";
}

void Picture::addRow( const DrawingRow& row, const NoteOf& noteOf ) {
   const std::string name = ( row.lastWord > row.firstWord ? "words " : "word " ) + row.wordText();
   for( const auto& strip : row.strips ) {
      const bool isFirst = &strip == &row.strips.front();
      addStrip( strip, isFirst, isFirst ? name : "or", noteOf );
   }
   top_ += rowGap;
}

void Picture::addStrip( const std::vector<DrawingCell>& strip, bool isFirst,
                        const std::string& name, const NoteOf& noteOf ) {
   std::size_t lines = 1;
   std::vector<Note> notes;
   for( const DrawingCell& cell : strip ) {
      notes.push_back( noteOf ? noteOf( cell ) : Note() );
      lines = std::max( lines, cell.label.size() + notes.back().lines.size() );
   }
   const auto height = static_cast<unsigned>( lines ) * lineHeight + 2 * boxPadding;
   top_ += numbersHeight;
   body_ += text( rowsLeft - 8, top_ + ( height + fontSize ) / 2 - 1, name, anchor( "end" ) );
   for( std::size_t i = 0; i < strip.size(); ++i ) {
      const Kind* const kind = notes[i].kind;
      addCell( strip[i], notes[i], kind ? *kind : kindOf( strip[i], isFirst ), height );
   }
   top_ += height;
}

void Picture::addCell( const DrawingCell& cell, const Note& note, const Kind& kind,
                       unsigned height ) {
   const unsigned left = rowsLeft + ( 31 - cell.left() ) * bitWidth;
   const unsigned width = cell.bits() * bitWidth;
   const unsigned middle = left + width / 2;
   body_ += "<g><title>" + escaped( tooltip( cell ) + note.title ) + "</title>" +
            rectangle( left, top_, width, height, kind ) + '\n';
   const auto lines = static_cast<unsigned>( cell.label.size() + note.lines.size() );
   unsigned line = top_ + ( height - lines * lineHeight ) / 2 + fontSize - 1;
   for( const auto& label : cell.label ) {
      body_ += text( middle, line, label, anchor( "middle" ) );
      line += lineHeight;
   }
   for( const auto& value : note.lines ) {
      body_ += text( middle, line, value, anchor( "middle" ) + attribute( "fill", "#0b3d91" ) );
      line += lineHeight;
   }
   const std::string small = attribute( "font-size", numberSize ) + attribute( "fill", "#5a5a5a" );
   const unsigned above = top_ - 3;
   if( cell.low == cell.high ) {
      body_ += text( middle, above, std::to_string( cell.low ), anchor( "middle" ) + small );
   } else {
      body_ += text( left + 2, above, std::to_string( cell.high ), small );
      body_ += text( left + width - 2, above, std::to_string( cell.low ), anchor( "end" ) + small );
   }
   body_ += "</g>\n";
   if( std::find( kinds_.begin(), kinds_.end(), &kind ) == kinds_.end() ) {
      kinds_.push_back( &kind );
   }
}

void Picture::addKeys( const Drawing& drawing ) {
   std::vector<const BitOrder::Field*> fields;
   for( const BitOrder::Field& field : drawing.format().fields() ) {
      if( !drawing.key( field ).empty() ) {
         fields.push_back( &field );
      }
   }
   constexpr unsigned columnWidth = ( pictureWidth - rowsLeft ) / legendColumns;
   const auto count = static_cast<unsigned>( fields.size() );
   const unsigned lines = ( count + legendColumns - 1 ) / legendColumns;
   for( unsigned i = 0; i < count; ++i ) {
      const unsigned x = rowsLeft + i / lines * columnWidth;
      const unsigned y = top_ + ( i % lines + 1 ) * legendLine;
      body_ += text( x, y, drawing.key( *fields[i] ), attribute( "font-weight", "bold" ) );
      body_ += text( x + keyWidth, y, fields[i]->name );
   }
   top_ += lines * legendLine + ( lines > 0 ? rowGap : 0 );
}

// What the colours mean, where there are several, or there is a change.
void Picture::addKinds() {
   const auto isChange = []( const Kind* kind ) {
      return std::find( kinds.begin() + firstChange, kinds.end(), kind ) != kinds.end();
   };
   if( kinds_.size() < 2 && std::none_of( kinds_.begin(), kinds_.end(), isChange ) ) {
      return;
   }
   top_ += rowGap;
   unsigned x = rowsLeft;
   for( const Kind* const kind : kinds ) {
      if( std::find( kinds_.begin(), kinds_.end(), kind ) != kinds_.end() ) {
         body_ += rectangle( x, top_, swatchSize, swatchSize, *kind ) + '\n';
         x += swatchSize + 6;
         body_ += text( x, top_ + swatchSize - 2, kind->meaning );
         x += static_cast<unsigned>( kind->meaning.size() ) * 7 + 24;
      }
   }
   top_ += swatchSize;
}

// Letters as they stand side by side, of which some take several bytes.
std::size_t columnsOf( std::string_view letters ) {
   return columnOf( letters, letters.size() ) - 1;
}

constexpr std::string_view arrowApart = " \u2192 ";
constexpr std::string_view arrow = arrowApart.substr( 1, arrowApart.size() - 2 );

// "0x12", or the digits alone where there is no room for more.
std::string valueText( const Value& value, std::size_t columns ) {
   const auto text = hexOf( value );
   return text.size() <= columns ? text : text.substr( 2 );
}

// The two in as few lines as there is room for.
std::vector<std::string> changeText( const Value& before, const Value& after,
                                     std::size_t columns ) {
   for( const std::string_view between : { arrowApart, arrow } ) {
      for( const std::size_t prefix : { 0U, 2U } ) {
         std::string text = hexOf( before ).substr( prefix );
         text.append( between ).append( hexOf( after ).substr( prefix ) );
         if( columnsOf( text ) <= columns ) {
            return { text };
         }
      }
   }
   return { valueText( before, columns ), std::string( arrow ) + valueText( after, columns - 1 ) };
}

// The bits of an image, as cells and fields show them.
class Bits {
public:
   explicit Bits( std::span<const U8> image ) : image_( image ) {}

   // The value of at most 512 bits; of more it has no meaning but that it is zero if they are.
   Value at( unsigned offset, unsigned width ) const {
      std::array<U64, 8> words{};
      for( unsigned begin = 0; begin < width; begin += 64 ) {
         words[std::min( begin / 64, 7U )] |= Detail::bitsAt(
            image_.data(), image_.size(), offset + begin, std::min( width - begin, 64U ) );
      }
      return Value( words );
   }
   Value at( const DrawingCell& cell ) const { return at( cell.low, cell.high - cell.low + 1 ); }
   Value at( const BitOrder::Field& field ) const { return at( field.offset, field.width ); }

   // Whether the cell's bits are those of the other image.
   bool areSame( const Bits& other, const DrawingCell& cell ) const {
      for( unsigned bit = cell.low; bit <= cell.high; ++bit ) {
         if( at( bit, 1 ) != other.at( bit, 1 ) ) {
            return false;
         }
      }
      return true;
   }

private:
   std::span<const U8> image_;
};

// Whether a value holds the cell's bits.
bool isShown( const DrawingCell& cell ) { return cell.high - cell.low < Value::maxBits; }

// Lines of at most as many columns as the picture is wide.
void appendLines( std::vector<std::string>& lines, std::string text ) {
   constexpr std::size_t most = 132;
   constexpr std::string_view indent = "   ";
   while( text.size() > most ) {
      lines.emplace_back( text, 0, most );
      text = std::string( indent ) + text.substr( most );
   }
   lines.push_back( std::move( text ) );
}

// The fields that are in several cells, which show a part of their values each.
std::vector<const BitOrder::Field*> fieldsInParts( const Drawing& drawing ) {
   std::vector<const BitOrder::Field*> fields;
   for( const DrawingRow& row : drawing.rows() ) {
      for( const auto& strip : row.strips ) {
         for( const DrawingCell& cell : strip ) {
            if( cell.field && cell.low == cell.field->offset &&
                cell.high + 1 < cell.field->end() ) {
               fields.push_back( cell.field );
            }
         }
      }
   }
   return fields;
}

} // namespace

std::string drawnAsSvg( const Drawing& drawing, const std::string& title ) {
   Picture picture( title );
   picture.add( drawing );
   return picture.made();
}

std::string imageAsSvg( const Drawing& drawing, const std::string& title,
                        std::span<const U8> image ) {
   const Bits bits( image );
   Picture picture( title );
   picture.add( drawing, [&]( const DrawingCell& cell ) {
      const Value value = bits.at( cell );
      Note note;
      if( cell.field ) {
         note.lines = { valueText( value, svgRoom().columns( cell.bits() ) ) };
         note.title = ", value " + hexOf( bits.at( *cell.field ) );
      } else if( value.bits() > 0 ) {
         note.lines = { isShown( cell ) ? valueText( value, svgRoom().columns( cell.bits() ) )
                                        : "not 0" };
      }
      return note;
   } );
   std::vector<std::string> lines;
   for( const BitOrder::Field* const field : fieldsInParts( drawing ) ) {
      appendLines( lines, std::string( field->name ) + " = " + hexOf( bits.at( *field ) ) );
   }
   picture.addLines( lines );
   return picture.made();
}

std::string changeAsSvg( const Drawing& drawing, const std::string& title,
                         std::span<const U8> before, std::span<const U8> after ) {
   const Bits old( before );
   const Bits now( after );
   Picture picture( title );
   picture.add( drawing, [&]( const DrawingCell& cell ) {
      const std::size_t columns = svgRoom().columns( cell.bits() );
      const Value from = old.at( cell );
      const Value to = now.at( cell );
      const bool isSame = old.areSame( now, cell );
      Note note;
      note.kind = isSame ? nullptr : &changed;
      if( !cell.field ) {
         if( !isSame ) {
            note.lines = isShown( cell ) ? changeText( from, to, columns )
                                         : std::vector<std::string>{ "differ" };
         }
         return note;
      }
      note.lines =
         isSame ? std::vector{ valueText( to, columns ) } : changeText( from, to, columns );
      const auto whole = hexOf( old.at( *cell.field ) );
      const auto wholeNow = hexOf( now.at( *cell.field ) );
      note.title = ", value " + whole;
      note.title += whole == wholeNow ? "" : std::string( arrowApart ) + wholeNow;
      return note;
   } );
   std::vector<std::string> lines;
   for( const BitOrder::Field* const field : fieldsInParts( drawing ) ) {
      const auto from = hexOf( old.at( *field ) );
      const auto to = hexOf( now.at( *field ) );
      if( from == to ) {
         appendLines( lines, std::string( field->name ) + " = " + to );
      } else {
         appendLines( lines, std::string( field->name ) + " = " + from );
         appendLines( lines, std::string( field->name.size(), ' ' ) + " -> " + to );
      }
   }
   picture.addLines( lines );
   return picture.made();
}

namespace {

// "bits 3 to 166", or a word for none.
std::string sideText( const std::optional<Difference::Bits>& bits ) {
   return bits ? bitsText( bits->offset, bits->offset + bits->width - 1 ) : "none";
}

// A change of a field is marked in the drawings of both pairs.
Note noteOn( const DrawingCell& cell, const Difference& difference, bool isFrom ) {
   const auto& fields = difference.fields;
   const auto found =
      std::find_if( fields.begin(), fields.end(), [&]( const Difference::Field& field ) {
         return cell.field && field.name == cell.field->name;
      } );
   Note note;
   if( found == fields.end() ) {
      return note;
   }
   const auto& [name, from, to] = *found;
   note.kind = !to ? &gone : !from ? &isNew : from->width != to->width ? &resized : &moved;
   note.title = "; " + found->change();
   if( from && to ) {
      note.title += isFrom ? " to " + sideText( to ) : " from " + sideText( from );
   }
   return note;
}

} // namespace

std::string differenceAsSvg( const Drawing& from, const Drawing& to, const Difference& difference,
                             const std::string& fromTitle, const std::string& toTitle ) {
   Picture picture( fromTitle + std::string( arrowApart ) + toTitle );
   const auto add = [&]( const Drawing& drawing, const std::string& name, bool isFrom ) {
      picture.addName( name );
      picture.add( drawing, [&difference, isFrom]( const DrawingCell& cell ) {
         return noteOn( cell, difference, isFrom );
      } );
   };
   add( from, fromTitle, true );
   add( to, toTitle, false );
   std::vector<std::string> lines;
   for( const Difference::Number& number : difference.numbers ) {
      lines.push_back( std::string( number.name ) + ": " + std::to_string( number.from ) + " -> " +
                       std::to_string( number.to ) );
   }
   for( const Difference::Field& field : difference.fields ) {
      std::string line = field.change();
      line.append( ": " ).append( field.name ).append( ", " );
      line += !field.to     ? sideText( field.from )
              : !field.from ? sideText( field.to )
                            : sideText( field.from ) + " -> " + sideText( field.to );
      lines.push_back( std::move( line ) );
   }
   lines.push_back( difference.isNone() ? "no difference"
                                        : countOf( difference.unchanged, "field" ) + " unchanged" );
   picture.addLines( lines );
   return picture.made();
}

DrawingRoom svgRoom() {
   return { []( unsigned bits ) -> std::size_t {
              return ( bits * bitWidth - 4 ) * 10 / ( fontSize * 6 + 2 );
           },
            3 };
}

} // namespace Vorn
