// What holds for the layout of every pair of every table: no bit is missed or drawn twice, nothing
// is too wide, and nothing runs out of its box.
#include "Json.h"
#include "RunVorn.h"

#include "Pairs.h"
#include "forms/DrawingText.h"
#include "verbs/Layout.h"

#include <Vorn/BitOrder.h>
#include <Vorn/DrawingSvg.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>

namespace {

using Testing::linesOf;

using Bits = std::vector<unsigned>; // how often each bit of an entry is met

void forEveryPair( const std::function<void( const Vorn::Layout& )>& action ) {
   for( const Vorn::Layout& layout : Testing::allLayouts() ) {
      SCOPED_TRACE( layout.pairText() );
      action( layout );
   }
}

void meet( Bits& bits, unsigned offset, unsigned width ) {
   ASSERT_LE( offset + width, bits.size() );
   for( unsigned bit = offset; bit < offset + width; ++bit ) {
      ++bits[bit];
   }
}

Bits coverage( const Vorn::Layout& layout ) {
   Bits bits( layout.bytes() * 8 );
   for( const auto& field : layout.fields() ) {
      meet( bits, field.offset, field.width );
   }
   return bits;
}

// Characters of UTF-8.
std::size_t columnsOf( const std::string& line ) {
   return static_cast<std::size_t>( std::count_if( line.begin(), line.end(), []( char c ) {
      return ( static_cast<U8>( c ) & 0xc0 ) != 0x80;
   } ) );
}

Vorn::LayoutArguments argumentsOf( const Vorn::Layout& layout ) {
   Vorn::LayoutArguments arguments;
   arguments.pair = { std::string( layout.table() ), layout.chip().name,
                      std::to_string( layout.variant() ) };
   return arguments;
}

void expectRoom( const Vorn::DrawingCell& cell, const Vorn::DrawingRoom& room ) {
   EXPECT_LE( cell.label.size(), std::max( room.lines, std::size_t( 1 ) ) );
   for( const auto& line : cell.label ) {
      EXPECT_LE( line.size(), room.columns( cell.bits() ) ) << line;
   }
}

void expectWholeDrawing( const Vorn::Layout& layout, const Vorn::DrawingRoom& room ) {
   const Vorn::BitOrder format( layout );
   const Vorn::Drawing drawing( format, room );
   const Bits covered = coverage( layout );
   std::map<std::string_view, Bits> drawn;
   Bits unused( covered.size() );
   unsigned word = 0;
   for( const auto& row : drawing.rows() ) {
      EXPECT_EQ( row.firstWord, word );
      word = row.lastWord + 1;
      const auto most =
         *std::max_element( covered.begin() + row.low(), covered.begin() + row.high() + 1 );
      EXPECT_EQ( row.strips.size(), std::max( most, 1u ) ) << row.wordText();
      for( const auto& strip : row.strips ) {
         unsigned next = row.low();
         for( const auto& cell : strip ) {
            EXPECT_GE( cell.low, next );
            EXPECT_LE( cell.high, row.high() );
            next = cell.high + 1;
            expectRoom( cell, room );
            EXPECT_FALSE( cell.field && cell.label.empty() );
            auto& bits = cell.field ? drawn[cell.field->name] : unused;
            bits.resize( covered.size() );
            meet( bits, cell.low, cell.high - cell.low + 1 );
         }
      }
   }
   EXPECT_EQ( word, layout.info().width );

   EXPECT_EQ( drawn.size(), layout.fields().size() );
   for( const auto& field : layout.fields() ) {
      Bits bits( covered.size() );
      meet( bits, field.offset, field.width );
      EXPECT_EQ( drawn[field.name], bits ) << field.name;
   }
   for( std::size_t bit = 0; bit < covered.size(); ++bit ) {
      EXPECT_EQ( unused[bit], covered[bit] == 0 ? 1u : 0u ) << bit;
   }
}

// An element of a picture, with what stands in it.
struct Element {
   std::string name;
   std::map<std::string, std::string> attributes;
   std::string text;
   std::vector<Element> children;

   double number( const std::string& attribute ) const {
      return std::stod( attributes.at( attribute ) );
   }
};

// Reads the element at `text`, and takes it from there. What isn't well-formed throws.
Element parsed( std::string_view& text ) {
   const auto expect = [&]( std::string_view what ) {
      if( !text.starts_with( what ) ) {
         throw std::runtime_error( "no " + std::string( what ) + " at " +
                                   std::string( text.substr( 0, 40 ) ) );
      }
      text.remove_prefix( what.size() );
   };
   const auto until = [&]( std::string_view ends ) {
      const auto end = text.find_first_of( ends );
      if( end == std::string_view::npos ) {
         throw std::runtime_error( "no end" );
      }
      const std::string part( text.substr( 0, end ) );
      for( auto at = part.find_first_of( "&<" ); at != std::string::npos;
           at = part.find_first_of( "&<", at + 1 ) ) {
         const auto rest = std::string_view( part ).substr( at );
         if( !rest.starts_with( "&lt;" ) && !rest.starts_with( "&gt;" ) &&
             !rest.starts_with( "&amp;" ) && !rest.starts_with( "&quot;" ) ) {
            throw std::runtime_error( "bad text " + part );
         }
      }
      text.remove_prefix( end );
      return part;
   };
   Element element;
   expect( "<" );
   element.name = until( " />" );
   while( text.starts_with( ' ' ) ) {
      expect( " " );
      const auto name = until( "=" );
      expect( "=\"" );
      if( !element.attributes.emplace( name, until( "\"" ) ).second ) {
         throw std::runtime_error( "twice " + name );
      }
      expect( "\"" );
   }
   if( text.starts_with( '/' ) ) {
      expect( "/>" );
      return element;
   }
   expect( ">" );
   for( ;; ) {
      element.text += until( "<" );
      if( text.starts_with( "</" ) ) {
         expect( "</" + element.name + '>' );
         return element;
      }
      element.children.push_back( parsed( text ) );
   }
}

struct Box {
   double left, top, right, bottom;

   bool holds( const Box& other ) const {
      return left <= other.left && top <= other.top && right >= other.right &&
             bottom >= other.bottom;
   }
   bool meets( const Box& other ) const {
      return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
   }
};

Box boxOf( const Element& rectangle ) {
   const double left = rectangle.attributes.count( "x" ) ? rectangle.number( "x" ) : 0;
   const double top = rectangle.attributes.count( "y" ) ? rectangle.number( "y" ) : 0;
   return { left, top, left + rectangle.number( "width" ), top + rectangle.number( "height" ) };
}

// Around the letters of a monospaced font.
Box boxOfText( const Element& text, double defaultSize ) {
   const double size =
      text.attributes.count( "font-size" ) ? text.number( "font-size" ) : defaultSize;
   const double width = 0.602 * size * static_cast<double>( text.text.size() );
   const auto anchor = text.attributes.find( "text-anchor" );
   const double x = text.number( "x" ) - ( anchor == text.attributes.end() ? 0
                                           : anchor->second == "middle"    ? width / 2
                                                                           : width );
   const double y = text.number( "y" );
   return { x, y - 0.73 * size, x + width, y };
}

} // namespace

TEST( EveryFormat, everyBitIsInAFieldOrUnused ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const Vorn::BitOrder format( layout );
      const Bits covered = coverage( layout );
      Bits unused( covered.size() );
      unsigned sum = 0;
      for( const auto& run : format.unused() ) {
         meet( unused, run.offset, run.width );
         sum += run.width;
         // As long as can be.
         EXPECT_GT( run.width, 0u );
         EXPECT_TRUE( run.offset == 0 || covered[run.offset - 1] > 0 );
         const auto end = run.offset + run.width;
         EXPECT_TRUE( end == covered.size() || covered[end] > 0 );
      }
      EXPECT_EQ( format.unusedBits(), sum );
      for( std::size_t bit = 0; bit < covered.size(); ++bit ) {
         EXPECT_EQ( unused[bit], covered[bit] == 0 ? 1u : 0u ) << bit;
      }
   } );
}

TEST( EveryFormat, lanesAreAsFewAsCanBe ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const Vorn::BitOrder format( layout );
      const Bits covered = coverage( layout );
      EXPECT_EQ( format.lanes(),
                 std::max( *std::max_element( covered.begin(), covered.end() ), 1u ) );
      std::vector<Bits> lanes( format.lanes(), Bits( covered.size() ) );
      for( const auto& field : format.fields() ) {
         ASSERT_LT( field.lane, format.lanes() );
         meet( lanes[field.lane], field.offset, field.width );
      }
      for( const auto& lane : lanes ) {
         EXPECT_LE( *std::max_element( lane.begin(), lane.end() ), 1u );
      }
   } );
}

TEST( EveryFormat, fieldsAreInBitOrder ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const Vorn::BitOrder format( layout );
      ASSERT_EQ( format.fields().size(), layout.fields().size() );
      unsigned last = 0;
      for( const auto& field : format.fields() ) {
         EXPECT_GE( field.offset, last );
         last = field.offset;
      }
   } );
}

TEST( EveryFormat, theDrawingShowsEachBitOfEachField ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      expectWholeDrawing( layout, Vorn::textRoom() );
      expectWholeDrawing( layout, Vorn::svgRoom() );
   } );
}

TEST( EveryFormat, aFieldIsNamedOrHasAKeyOfItsOwn ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const Vorn::BitOrder format( layout );
      const Vorn::Drawing drawing( format, Vorn::textRoom() );
      std::set<std::string> keys;
      for( const auto& field : format.fields() ) {
         if( !drawing.key( field ).empty() ) {
            EXPECT_TRUE( keys.insert( drawing.key( field ) ).second ) << field.name;
         }
      }
      for( const auto& row : drawing.rows() ) {
         for( const auto& strip : row.strips ) {
            for( const auto& cell : strip ) {
               if( cell.field ) {
                  std::string label;
                  for( const auto& line : cell.label ) {
                     label += line;
                  }
                  EXPECT_TRUE( label == drawing.key( *cell.field ) ||
                               label.starts_with( cell.field->name ) )
                     << label;
               }
            }
         }
      }
   } );
}

TEST( EveryFormat, noLineIsBeyond80Columns ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      auto arguments = argumentsOf( layout );
      arguments.boxLines = "ascii";
      const auto plain = Vorn::layout( arguments );
      arguments.boxLines = "unicode";
      const auto unicode = Vorn::layout( arguments );
      for( const auto& text : { plain, unicode } ) {
         for( const auto& line : linesOf( text ) ) {
            EXPECT_LE( columnsOf( line ), 80u ) << line;
            EXPECT_FALSE( line.ends_with( ' ' ) ) << line;
         }
      }
      EXPECT_TRUE( std::all_of( plain.begin(), plain.end(),
                                []( char c ) { return c == '\n' || ( c >= ' ' && c <= '~' ); } ) );
      EXPECT_EQ( columnsOf( unicode ), plain.size() );
   } );
}

TEST( EveryFormat, theListNamesEachField ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const auto lines = linesOf( Vorn::layout( argumentsOf( layout ) ) );
      auto line = std::find_if( lines.begin(), lines.end(), []( const auto& text ) {
         return text.find( "hardware name" ) != std::string::npos;
      } );
      ASSERT_NE( line, lines.end() );
      std::string list = " "; // its words, a space after each: a long name has a line of its own
      while( ++line != lines.end() ) {
         std::istringstream words( *line );
         for( std::string word; words >> word; ) {
            list += word + ' ';
         }
      }
      const Vorn::BitOrder format( layout );
      for( const auto& field : format.fields() ) {
         const std::string names =
            ' ' + std::to_string( field.identifier ) + ' ' + std::string( field.name ) + ' ' +
            std::string( field.hardwareName ) + ( field.readOnly ? ", read-only " : " " );
         const std::string place =
            ' ' + std::to_string( field.offset ) + ' ' + std::to_string( field.width );
         const auto at = list.find( names );
         ASSERT_NE( at, std::string::npos ) << names;
         std::string_view before( list.data(), at );
         if( !before.ends_with( place ) ) {
            EXPECT_TRUE( before.size() > 2 && before[before.size() - 2] == ' ' ) << field.name;
            before.remove_suffix( 2 ); // a key
         }
         EXPECT_TRUE( before.ends_with( place ) ) << field.name;
      }
   } );
}

TEST( EveryFormat, jsonHoldsTheSame ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      auto arguments = argumentsOf( layout );
      arguments.json = true;
      const auto object = Testing::parsed( Vorn::layout( arguments ) );
      EXPECT_EQ( object["table"], layout.table() );
      EXPECT_EQ( object["chip"], layout.chip().name );
      EXPECT_EQ( object["variant"], layout.variant() );
      EXPECT_EQ( object["entries"], layout.info().entries );
      const Vorn::BitOrder format( layout );
      ASSERT_EQ( object["fields"].size(), format.fields().size() );
      for( std::size_t i = 0; i < format.fields().size(); ++i ) {
         const auto& field = format.fields()[i];
         EXPECT_EQ( object["fields"][i], ( Testing::Json{ { "name", field.name },
                                                          { "offset", field.offset },
                                                          { "width", field.width },
                                                          { "identifier", field.identifier },
                                                          { "hardwareName", field.hardwareName },
                                                          { "readOnly", field.readOnly } } ) );
      }
      EXPECT_EQ( object["unused"].size(), format.unused().size() );
   } );
}

TEST( EveryFormat, nothingInThePictureOverlapsOrRunsOut ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      auto arguments = argumentsOf( layout );
      arguments.svg = "-";
      const auto picture = Vorn::layout( arguments );
      std::string_view rest = picture;
      Element svg;
      ASSERT_NO_THROW( svg = parsed( rest ) );
      EXPECT_EQ( rest, "\n" );
      EXPECT_EQ( svg.name, "svg" );
      const Box whole{ 0, 0, svg.number( "width" ), svg.number( "height" ) };
      std::vector<Box> taken; // by cells, and by texts outside of cells
      std::set<std::string> titles;
      for( const auto& element : svg.children ) {
         if( element.name == "text" ) {
            taken.push_back( boxOfText( element, svg.number( "font-size" ) ) );
         } else if( element.name == "g" ) {
            ASSERT_GE( element.children.size(), 2u );
            titles.insert(
               element.children[0].text.substr( 0, element.children[0].text.find( ':' ) ) );
            const Box cell = boxOf( element.children[1] );
            taken.push_back( cell );
            for( const auto& text : std::span( element.children ).subspan( 2 ) ) {
               const Box box = boxOfText( text, svg.number( "font-size" ) );
               if( text.attributes.count( "font-size" ) ) {
                  taken.push_back( box ); // a bit number, above the cell
                  EXPECT_GE( box.left, cell.left );
                  EXPECT_LE( box.right, cell.right );
               } else {
                  EXPECT_TRUE( cell.holds( box ) ) << text.text;
               }
            }
         }
      }
      for( std::size_t i = 0; i < taken.size(); ++i ) {
         EXPECT_TRUE( whole.holds( taken[i] ) ) << i;
         for( std::size_t j = 0; j < i; ++j ) {
            EXPECT_FALSE( taken[i].meets( taken[j] ) )
               << taken[i].left << ',' << taken[i].top << ' ' << taken[j].left << ','
               << taken[j].top;
         }
      }
      for( const auto& field : layout.fields() ) {
         EXPECT_TRUE( titles.count( std::string( field.name ) ) ) << field.name;
      }
   } );
}

TEST( EveryFormat, aPictureShowsTheValueOfEachField ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      const Vorn::BitOrder order( layout );
      const std::vector<U8> ones( layout.bytes(), 0xff );
      const auto picture =
         Vorn::imageAsSvg( Vorn::Drawing( order, Vorn::svgRoom() ), layout.pairText(), ones );
      for( const auto& field : layout.fields() ) {
         std::string title( field.hardwareName );
         title += field.readOnly ? ", read-only" : "";
         title += ", value 0x" + std::string( 1, "137f"[( field.width - 1 ) % 4] ) +
                  std::string( ( field.width - 1 ) / 4, 'f' );
         EXPECT_NE( picture.find( title + "</title>" ), std::string::npos ) << title;
      }
   } );
}

TEST( EveryFormat, aFormatIsNoDifferentFromItself ) {
   forEveryPair( []( const Vorn::Layout& layout ) {
      Vorn::LayoutArguments arguments = argumentsOf( layout );
      const auto side = arguments.pair.chip + ':' + arguments.pair.variant;
      arguments.difference = { side, side };
      EXPECT_TRUE( Vorn::layout( arguments ).ends_with( "\nno difference\n" ) );
   } );
}

TEST( Broken, whereWordsOfANameBegin ) {
   using Lines = std::vector<std::string>;
   EXPECT_EQ( Vorn::broken( "inLifProfile", 12, 1 ), Lines{ "inLifProfile" } );
   EXPECT_EQ( Vorn::broken( "inLifProfile", 11, 1 ), Lines{} );
   EXPECT_EQ( Vorn::broken( "inLifProfile", 11, 2 ), ( Lines{ "inLif", "Profile" } ) );
   EXPECT_EQ( Vorn::broken( "inLifProfile", 7, 2 ), ( Lines{ "inLif", "Profile" } ) );
   EXPECT_EQ( Vorn::broken( "inLifProfile", 6, 3 ), Lines{} );
   EXPECT_EQ( Vorn::broken( "vsi[16:6]", 6, 2 ), ( Lines{ "vsi", "[16:6]" } ) );
   EXPECT_EQ( Vorn::broken( "vlanEditVid1", 8, 2 ), ( Lines{ "vlanEdit", "Vid1" } ) );
   EXPECT_EQ( Vorn::broken( "ipQualifierAdditionalHeader2Nd", 10, 5 ),
              ( Lines{ "ip", "Qualifier", "Additional", "Header2Nd" } ) );
}
