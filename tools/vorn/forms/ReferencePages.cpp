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
#include <cctype>
#include <map>
#include <optional>
#include <span>
#include <utility>

namespace Vorn {

namespace {

constexpr auto indexFile = "index.md";
constexpr auto fieldsFile = "fields.md";

std::vector<Layout> layoutsOf( std::string_view table ) {
   std::vector<Layout> layouts;
   for( const ChipVariants& pair : pairsOf( table ) ) {
      for( const U32 variant : pair.variants ) {
         layouts.emplace_back( table, U64( pair.chip ), variant );
      }
   }
   return layouts;
}

// A fact, and the pairs that it holds for.
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

// What `factOf` returns for each pair, with the pairs that have the same fact grouped.
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

// A row for each distinct result of `cellsOf` that isn't empty, after its pairs.
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

// "0-19 on 2,3: 0<br>0-23 on 4-8: 0"
std::string placesText( std::string_view table, const Hardware::FieldInfo& field ) {
   std::string text;
   for( const FieldPlace& place :
        placesOf( { table, field.name, hardwareNameOf( field.identifier ), field.identifier,
                    field.readOnly, pairsWithField( table, field.identifier ) } ) ) {
      text.append( text.empty() ? "" : "<br>" ).append( std::to_string( place.offset ) );
      if( place.width > 1 ) {
         text.append( "-" ).append( std::to_string( place.offset + place.width - 1 ) );
      }
      text.append( " on " ).append( textOf( place.pairs ) );
   }
   return text;
}

std::string fields( std::string_view table ) {
   std::vector<Cells> rows{ { "field", "identifier", "hardware name", "type",
                              "bits on chip types: variants" } };
   for( const auto& field : Hardware::classFields( table ) ) {
      const std::string type = '`' + typeOf( table, field.identifier ) + '`';
      rows.push_back( { '`' + std::string( field.name ) + '`', std::to_string( field.identifier ),
                        '`' + std::string( hardwareNameOf( field.identifier ) ) + '`',
                        type + ( field.readOnly ? ", read-only" : "" ),
                        placesText( table, field ) } );
   }
   return "## Fields\n\n" + tableOf( rows );
}

std::string formatLink( std::size_t number, std::string_view words = "" ) {
   const std::string text = std::to_string( number );
   return std::string( "[" ).append( words ).append( text ) + "](#format-" + text + ')';
}

// In how many fields each two of the formats differ, by their first pairs.
using Distances = std::vector<std::vector<std::size_t>>;

Distances distancesOf( std::span<const Layout> formats ) {
   Distances distances( formats.size(), std::vector<std::size_t>( formats.size() ) );
   for( std::size_t one = 0; one < formats.size(); ++one ) {
      for( std::size_t other = 0; other < one; ++other ) {
         distances[one][other] = distances[other][one] =
            differenceOf( formats[one], formats[other] ).fields.size();
      }
   }
   return distances;
}

// The formats that differ from one of them in the fewest fields.
std::string nearest( std::span<const Layout> formats, const Distances& distances,
                     std::size_t one ) {
   std::vector<std::size_t> others;
   std::size_t count = 0;
   for( std::size_t other = 0; other < formats.size(); ++other ) {
      const std::size_t distance = distances[one][other];
      if( other == one || ( !others.empty() && distance > count ) ) {
         continue;
      }
      if( distance < count ) {
         others.clear();
      }
      count = distance;
      others.push_back( other );
   }
   std::string text;
   for( const std::size_t other : others ) {
      text.append( text.empty() ? "Differs least from " : ", " );
      text.append( formatLink( other + 1, "format " ) );
   }
   if( text.empty() ) {
      return text;
   }
   text.append( others.size() > 1 ? ", each in " : " in " ).append( countOf( count, "field" ) );
   if( others.size() == 1 && count <= 6 ) {
      const auto fields = differenceOf( formats[one], formats[others.front()] ).fields;
      for( const auto& field : fields ) {
         text.append( &field == &fields.front() ? ": `" : ", `" );
         text.append( field.name ).append( "`" );
      }
   }
   return text + ".\n\n";
}

std::string formats( std::span<const Layout> layouts ) {
   const auto groups =
      grouped( layouts, []( const Layout& layout ) { return BitOrder( layout ); } );
   std::vector<Layout> firsts;
   for( const auto& group : groups ) {
      firsts.emplace_back( layouts.front().table(), U64( group.pairs.front().chip ),
                           group.pairs.front().variants.front() );
   }
   const auto distances = distancesOf( firsts );
   std::vector<Cells> rows{ { "format", "chip types: variants", "fields", "unused bits" } };
   std::string drawings;
   for( const auto& group : groups ) {
      const std::string number = std::to_string( rows.size() );
      const std::string pairs = textOf( group.pairs );
      const Drawing drawing( group.fact, textRoom() );
      rows.push_back( { formatLink( rows.size() ), pairs,
                        std::to_string( group.fact.fields().size() ),
                        std::to_string( group.fact.unusedBits() ) } );
      drawings += "\n### Format " + number + "\n\nChip types and variants " + pairs + "\n\n" +
                  nearest( firsts, distances, rows.size() - 2 ) + "```text\n" +
                  drawnAsText( drawing, BoxLines::ascii ) + '\n' +
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

std::string fieldsPage() {
   std::map<std::string, Cells> byName; // in alphabetical order, ignoring case
   for( const FieldUse& use : usesOf( "*" ) ) {
      std::string key( use.name );
      std::transform( key.begin(), key.end(), key.begin(), []( unsigned char letter ) {
         return static_cast<char>( std::tolower( letter ) );
      } );
      const auto row =
         byName
            .try_emplace( key, Cells{ '`' + std::string( use.name ) + '`',
                                      std::to_string( use.identifier ),
                                      '`' + std::string( use.hardwareName ) + '`', "" } )
            .first;
      std::string& tables = row->second.back();
      tables.append( tables.empty() ? "[" : ", [" ).append( use.table ).append( "](" );
      tables.append( use.table ).append( ".md#fields)" );
   }
   std::vector<Cells> rows{ { "field", "identifier", "hardware name", "tables" } };
   for( auto& [key, cells] : byName ) {
      rows.push_back( std::move( cells ) );
   }
   return std::string(
             "# Fields\n\nAll fields by name, with the tables that have them. [Tables " ) +
          "and registers](" + indexFile + ").\n\n" + tableOf( rows );
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
   return std::string(
             "# Tables and registers\n\nWhat the library knows about each; [all fields by "
             "name](" ) +
          fieldsFile + "). Written by `vorn reference`.\n\n" + tableOf( tables ) +
          "\n## Chip types\n\n" + tableOf( chips ) +
          R"(
## How to read the pages
- **Chip types and variants.** `2,3: 0-4,6; 4-8: any` means chip types 2 and 3 with variants 0 to 4
  and 6, and chip types 4 to 8, which ignore the variant.
- **Memory.** The size of an entry in 32-bit words, the entries of each array element, the array
  elements of each instance, and the instances.
- **Addresses.** An entry lies at base + entry * entry step + array element * array step. The
  identifier selects the instance and changes only `accessType` and `destBlock`.
- **Tags.** The values of the read-only fields, which identify the format of an entry. Pairs that
  aren't listed have no tag.
- **Fields.** `48-59 on 2-8: 0-2` means bits 48 to 59 of the entry on chip types 2 to 8 with variants
  0 to 2.
- **Formats.** Pairs with the same fields at the same bits share a format. Each row of a drawing is a
  32-bit word of the entry, or several words that look alike, with the most significant bit at the
  left; bit 0 of an entry is the least significant bit of byte 0. The numbers beside a row are its
  highest and lowest bit. Fields beside "or" share bits with those above them. If a name doesn't fit,
  a key stands for it, which the list below the drawing explains. The cell `vsi[5:0]` holds bits 5 to
  0 of the field `vsi`. Bits of no field are `unused`, or a dot if that doesn't fit.
)";
}

} // namespace

std::vector<Page> referencePages() {
   std::vector<Page> pages{ { indexFile, indexPage() }, { fieldsFile, fieldsPage() } };
   for( const auto table : Hardware::classNames() ) {
      pages.push_back( { std::string( table ) + ".md", pageOf( table ) } );
   }
   return pages;
}

} // namespace Vorn
