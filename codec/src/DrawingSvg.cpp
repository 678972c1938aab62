// An entry's format as a picture for documents.
#include <Vorn/DrawingSvg.h>

#include <algorithm>

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
   explicit Picture( const Drawing& drawing ) : drawing_( drawing ) {}

   std::string make( const std::string& title );

private:
   void addRow( const DrawingRow& row );
   void addStrip( const std::vector<DrawingCell>& strip, bool isFirst, const std::string& name );
   void addCell( const DrawingCell& cell, const Kind& kind, unsigned height );
   void addKeys();
   void addKinds();

   const Drawing& drawing_;
   std::string body_;
   unsigned top_ = boxesTop;        // of what comes next
   std::vector<const Kind*> kinds_; // of the cells met
};

std::string Picture::make( const std::string& title ) {
   body_ += text( border, 28, title,
                  attribute( "font-size", titleSize ) + attribute( "font-weight", "bold" ) );
   body_ += text( border, 46,
                  "Each row is a 32-bit word of the entry, its most significant bit at the left. "
                  "Bit 0 is the least significant bit of byte 0." );
   for( const DrawingRow& row : drawing_.rows() ) {
      addRow( row );
   }
   addKeys();
   addKinds();
   const unsigned height = top_ + border;
   return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + attribute( "width", pictureWidth ) +
          attribute( "height", height ) +
          attribute( "viewBox",
                     "0 0 " + std::to_string( pictureWidth ) + ' ' + std::to_string( height ) ) +
          attribute( "font-family", "DejaVu Sans Mono, Menlo, Consolas, monospace" ) +
          attribute( "font-size", fontSize ) + attribute( "fill", "#1b1b1b" ) + ">\n<title>" +
          escaped( title ) + "</title>\n<rect" + attribute( "width", pictureWidth ) +
          attribute( "height", height ) + " fill=\"#ffffff\"/>\n" + body_ + "</svg>\n";
}

void Picture::addRow( const DrawingRow& row ) {
   const std::string name = ( row.lastWord > row.firstWord ? "words " : "word " ) + row.wordText();
   for( const auto& strip : row.strips ) {
      const bool isFirst = &strip == &row.strips.front();
      addStrip( strip, isFirst, isFirst ? name : "or" );
   }
   top_ += rowGap;
}

void Picture::addStrip( const std::vector<DrawingCell>& strip, bool isFirst,
                        const std::string& name ) {
   std::size_t lines = 1;
   for( const DrawingCell& cell : strip ) {
      lines = std::max( lines, cell.label.size() );
   }
   const auto height = static_cast<unsigned>( lines ) * lineHeight + 2 * boxPadding;
   top_ += numbersHeight;
   body_ += text( rowsLeft - 8, top_ + ( height + fontSize ) / 2 - 1, name, anchor( "end" ) );
   for( const DrawingCell& cell : strip ) {
      addCell( cell, kindOf( cell, isFirst ), height );
   }
   top_ += height;
}

void Picture::addCell( const DrawingCell& cell, const Kind& kind, unsigned height ) {
   const unsigned left = rowsLeft + ( 31 - cell.left() ) * bitWidth;
   const unsigned width = cell.bits() * bitWidth;
   const unsigned middle = left + width / 2;
   body_ += "<g><title>" + escaped( tooltip( cell ) ) + "</title>" +
            rectangle( left, top_, width, height, kind ) + '\n';
   const auto lines = static_cast<unsigned>( cell.label.size() );
   unsigned line = top_ + ( height - lines * lineHeight ) / 2 + fontSize - 1;
   for( const auto& label : cell.label ) {
      body_ += text( middle, line, label, anchor( "middle" ) );
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

void Picture::addKeys() {
   std::vector<const BitOrder::Field*> fields;
   for( const BitOrder::Field& field : drawing_.format().fields() ) {
      if( !drawing_.key( field ).empty() ) {
         fields.push_back( &field );
      }
   }
   constexpr unsigned columnWidth = ( pictureWidth - rowsLeft ) / legendColumns;
   constexpr unsigned legendLine = lineHeight + 2;
   const auto count = static_cast<unsigned>( fields.size() );
   const unsigned lines = ( count + legendColumns - 1 ) / legendColumns;
   for( unsigned i = 0; i < count; ++i ) {
      const unsigned x = rowsLeft + i / lines * columnWidth;
      const unsigned y = top_ + ( i % lines + 1 ) * legendLine;
      body_ += text( x, y, drawing_.key( *fields[i] ), attribute( "font-weight", "bold" ) );
      body_ += text( x + keyWidth, y, fields[i]->name );
   }
   top_ += lines * legendLine + ( lines > 0 ? rowGap : 0 );
}

// What the colours mean, where there are several.
void Picture::addKinds() {
   if( kinds_.size() < 2 ) {
      return;
   }
   top_ += rowGap;
   unsigned x = rowsLeft;
   for( const Kind* const kind : { &plain, &again, &fixed, &none } ) {
      if( std::find( kinds_.begin(), kinds_.end(), kind ) != kinds_.end() ) {
         body_ += rectangle( x, top_, swatchSize, swatchSize, *kind ) + '\n';
         x += swatchSize + 6;
         body_ += text( x, top_ + swatchSize - 2, kind->meaning );
         x += static_cast<unsigned>( kind->meaning.size() ) * 7 + 24;
      }
   }
   top_ += swatchSize;
}

} // namespace

std::string drawnAsSvg( const Drawing& drawing, const std::string& title ) {
   return Picture( drawing ).make( title );
}

DrawingRoom svgRoom() {
   return { []( unsigned bits ) -> std::size_t {
              return ( bits * bitWidth - 4 ) * 10 / ( fontSize * 6 + 2 );
           },
            3 };
}

} // namespace Vorn
