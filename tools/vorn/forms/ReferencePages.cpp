// The reference of all tables and registers, as pages of Markdown.
#include "forms/ReferencePages.h"

#include "forms/DrawingText.h"

#include <Vorn/BitOrder.h>
#include <Vorn/Chip.h>
#include <Vorn/Difference.h>
#include <Vorn/Fields.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <optional>
#include <span>
#include <utility>

namespace Vorn {

namespace {

constexpr auto indexFile = "index.md";

std::vector<Layout> layoutsOf( std::string_view table ) {
   std::vector<Layout> layouts;
   for( const ChipVariants& pair : pairsOf( table ) ) {
      for( const U32 variant : pair.variants ) {
         layouts.emplace_back( table, U64( pair.chip ), variant );
      }
   }
   return layouts;
}

// A fact, and the pairs it holds for.
template<class Fact>
struct Group {
   Fact fact;
   std::vector<ChipVariants> pairs;

   void add( const Layout& layout ) {
      if( pairs.empty() || pairs.back().chip != layout.chip().number ) {
         pairs.push_back( { layout.chip().number, {}, !layout.info().hasVariants } );
      }
      pairs.back().variants.push_back( layout.variant() );
   }
};

// What `factOf` says of each pair, with the pairs that it says the same of side by side.
template<class FactOf>
auto grouped( std::span<const Layout> layouts, FactOf factOf ) {
   std::vector<Group<decltype( factOf( layouts.front() ) )>> groups;
   for( const Layout& layout : layouts ) {
      auto fact = factOf( layout );
      auto group = std::find_if( groups.begin(), groups.end(),
                                 [&]( const auto& other ) { return other.fact == fact; } );
      if( group == groups.end() ) {
         group = groups.insert( groups.end(), { std::move( fact ), {} } );
      }
      group->add( layout );
   }
   return groups;
}

using Cells = std::vector<std::string>;

std::string rowOf( const Cells& cells ) {
   std::string row = "|";
   for( const auto& cell : cells ) {
      row.append( " " ).append( cell ).append( " |" );
   }
   return row + '\n';
}

// The first of the rows is the heading.
std::string tableOf( const std::vector<Cells>& rows ) {
   std::string text = rowOf( rows.front() ) + '|';
   for( std::size_t i = 0; i < rows.front().size(); ++i ) {
      text += "---|";
   }
   text += '\n';
   for( const auto& row : std::span( rows ).subspan( 1 ) ) {
      text += rowOf( row );
   }
   return text;
}

// A row for each kind of cells that `cellsOf` makes of the pairs, if any, after the pairs it is
// for.
template<class CellsOf>
std::string tableOf( std::span<const Layout> layouts, const Cells& headings, CellsOf cellsOf ) {
   std::vector<Cells> rows;
   const auto add = [&]( const std::string& pairs, const Cells& cells ) {
      rows.push_back( { pairs } );
      rows.back().insert( rows.back().end(), cells.begin(), cells.end() );
   };
   add( "chip types: variants", headings );
   for( const auto& group : grouped( layouts, cellsOf ) ) {
      if( !group.fact.empty() ) {
         add( textOf( group.pairs ), group.fact );
      }
   }
   return tableOf( rows );
}

std::string memory( std::span<const Layout> layouts ) {
   const auto cellsOf = []( const Layout& layout ) {
      Cells cells;
      for( const Number& number : numbersOf( layout.info() ) ) {
         cells.push_back( std::to_string( number.value ) );
      }
      return cells;
   };
   return "## Memory\n\n" +
          tableOf( layouts, { "words", "entries", "array elements", "instances" }, cellsOf );
}

// How the address grows from one entry or array element to the next.
std::string stepText( const Layout& layout, const Address& base, U32 count,
                      const EntryIndex& second ) {
   if( count < 2 ) {
      return "-";
   }
   return std::to_string( layout.address( second )->schanAddress - base.schanAddress );
}

Cells addressCells( const Layout& layout ) {
   const auto base = layout.address( {} );
   if( !base ) {
      return { "none", "-", "-", "-" };
   }
   const auto& info = layout.info();
   std::string instances;
   for( U64 identifier = 0; identifier < info.instanceCount; ++identifier ) {
      const Address instance = *layout.address( { 0, 0, identifier } );
      instances.append( identifier > 0 ? ", " : "" );
      if( info.instanceCount > 1 ) {
         instances.append( std::to_string( identifier ) ).append( ": " );
      }
      instances.append( std::to_string( instance.accessType ) ).append( " / " );
      instances.append( std::to_string( instance.destBlock ) );
   }
   return { hexOf( base->schanAddress ), stepText( layout, *base, info.entries, { 1, 0, 0 } ),
            stepText( layout, *base, info.arrayElements, { 0, 1, 0 } ), instances };
}

std::string addresses( std::span<const Layout> layouts ) {
   return "## Addresses\n\n" +
          tableOf( layouts,
                   { "base", "entry step", "array step", "identifier: accessType / destBlock" },
                   addressCells );
}

// The values of the tag's fields, or nothing where there is no tag.
Cells tagCells( const Layout& layout ) {
   std::string text;
   for( const auto& [field, value] : layout.tag() ) {
      text.append( text.empty() ? "`" : ", `" ).append( field.name ).append( "` " );
      text.append( hexOf( value ) );
   }
   return text.empty() ? Cells() : Cells{ text };
}

std::string tags( std::span<const Layout> layouts ) {
   const bool any = std::any_of( layouts.begin(), layouts.end(), []( const Layout& layout ) {
      return !tagCells( layout ).empty();
   } );
   return any ? "## Tags\n\n" + tableOf( layouts, { "tag" }, tagCells ) + '\n' : "";
}

std::string fields( std::string_view table ) {
   std::vector<Cells> rows{ { "field", "identifier", "hardware name", "type",
                              "chip types: variants" } };
   for( const auto& field : Hardware::classFields( table ) ) {
      const std::string type = '`' + typeOf( table, field.identifier ) + '`';
      rows.push_back( { '`' + std::string( field.name ) + '`', std::to_string( field.identifier ),
                        '`' + std::string( hardwareNameOf( field.identifier ) ) + '`',
                        type + ( field.readOnly ? ", read-only" : "" ),
                        textOf( pairsWithField( table, field.identifier ) ) } );
   }
   return "## Fields\n\n" + tableOf( rows );
}

std::string formats( std::span<const Layout> layouts ) {
   const auto groups =
      grouped( layouts, []( const Layout& layout ) { return BitOrder( layout ); } );
   std::vector<Cells> rows{ { "format", "chip types: variants", "fields", "unused bits" } };
   std::string drawings;
   for( const auto& group : groups ) {
      const std::string number = std::to_string( rows.size() );
      const std::string pairs = textOf( group.pairs );
      const Drawing drawing( group.fact, textRoom() );
      rows.push_back( { '[' + number + "](#format-" + number + ')', pairs,
                        std::to_string( group.fact.fields().size() ),
                        std::to_string( group.fact.unusedBits() ) } );
      drawings += "\n### Format " + number + "\n\nChip types and variants " + pairs +
                  "\n\n```text\n" + drawnAsText( drawing, BoxLines::ascii ) + '\n' +
                  fieldList( drawing, Listed::places ) + "```\n";
   }
   return "## Formats\n\n" + tableOf( rows ) + drawings;
}

std::string pageOf( std::string_view table ) {
   const auto layouts = layoutsOf( table );
   return "# " + std::string( table ) + "\n\n[All tables and registers](" + indexFile +
          "), with what the words on this page mean.\n\n" + memory( layouts ) + '\n' +
          addresses( layouts ) + '\n' + tags( layouts ) + fields( table ) + '\n' +
          formats( layouts );
}

std::string indexPage() {
   std::vector<Cells> tables{ { "name", "kind", "fields", "chip types: variants" } };
   for( const auto table : Hardware::classNames() ) {
      const std::string name( table );
      const auto pairs = pairsOf( table );
      const auto info = Hardware::pairInfo( table, pairs.front().chip,
                                            static_cast<U8>( pairs.front().variants.front() ) );
      tables.push_back( { '[' + name + "](" + name + ".md)", info->isTable ? "table" : "register",
                          std::to_string( Hardware::classFields( table ).size() ),
                          textOf( pairs ) } );
   }
   std::vector<Cells> chips{ { "number", "chip type" } };
   for( const Chip& chip : allChips() ) {
      chips.push_back( { std::to_string( chip.number ), '`' + chip.name + '`' } );
   }
   return "# Tables and registers\n\n"
          "What the library knows of each. `vorn reference` has written these pages.\n\n" +
          tableOf( tables ) + "\n## Chip types\n\n" + tableOf( chips ) +
          R"(
## How to read the pages
- **Chip types and variants.** `2,3: 0-4,6; 4-8: any` are the chip types 2 and 3 with the variants 0
  to 4 and 6, and the chip types 4 to 8, which don't look at the variant.
- **Memory.** An entry has so many 32-bit words. Of each of the memory's instances, each array
  element has so many entries.
- **Addresses.** An entry lies at base + entry * entry step + array element * array step. The
  identifier, which selects the instance, changes `accessType` and `destBlock` alone.
- **Tags.** The values of the read-only fields, by which the format of an entry is told. Pairs that
  aren't listed have no tag.
- **Formats.** Pairs with the same fields at the same bits share a format. Each row of a drawing is a
  32-bit word of the entry, or several words that would look alike, with the most significant bit at
  the left; bit 0 of an entry is the least significant bit of byte 0. The numbers beside a row are
  its highest and its lowest bit. Fields beside "or" share bits with those above them. Where a name
  doesn't fit, a key stands for it, which the list below the drawing explains. The cell `vsi[5:0]`
  holds the bits 5 to 0 of the field `vsi`. Bits of no field are `unused`, or a dot where that
  doesn't fit.
)";
}

} // namespace

std::vector<Page> referencePages() {
   std::vector<Page> pages{ { indexFile, indexPage() } };
   for( const auto table : Hardware::classNames() ) {
      pages.push_back( { std::string( table ) + ".md", pageOf( table ) } );
   }
   return pages;
}

} // namespace Vorn
