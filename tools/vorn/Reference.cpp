// `vorn reference`: the reference of all tables and registers, as pages of Markdown.
#include "Reference.h"

#include "Arguments.h"
#include "Chips.h"
#include "DrawingText.h"
#include "Error.h"
#include "Files.h"
#include "Format.h"
#include "Plan.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include <unistd.h>

namespace Vorn {

namespace {

constexpr auto indexFile = "index.md";

std::vector<Plan> plansOf( std::string_view table ) {
   std::vector<Plan> plans;
   for( const ChipVariants& pair : pairsOf( table ) ) {
      for( const U32 variant : pair.variants ) {
         plans.emplace_back( table, chipOf( U64( pair.chip ) ), variant );
      }
   }
   return plans;
}

// A fact, and the pairs it holds for.
template<class Fact>
struct Group {
   Fact fact;
   std::vector<ChipVariants> pairs;

   void add( const Plan& plan ) {
      if( pairs.empty() || pairs.back().chip != plan.chip().number ) {
         pairs.push_back( { plan.chip().number, {}, !plan.info().hasVariants } );
      }
      pairs.back().variants.push_back( plan.variant() );
   }
};

// What `factOf` says of each pair, with the pairs that it says the same of side by side.
template<class FactOf>
auto grouped( std::span<const Plan> plans, FactOf factOf ) {
   std::vector<Group<decltype( factOf( plans.front() ) )>> groups;
   for( const Plan& plan : plans ) {
      auto fact = factOf( plan );
      auto group = std::find_if( groups.begin(), groups.end(),
                                 [&]( const auto& other ) { return other.fact == fact; } );
      if( group == groups.end() ) {
         group = groups.insert( groups.end(), { std::move( fact ), {} } );
      }
      group->add( plan );
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
std::string tableOf( std::span<const Plan> plans, const Cells& headings, CellsOf cellsOf ) {
   std::vector<Cells> rows;
   const auto add = [&]( const std::string& pairs, const Cells& cells ) {
      rows.push_back( { pairs } );
      rows.back().insert( rows.back().end(), cells.begin(), cells.end() );
   };
   add( "chip types: variants", headings );
   for( const auto& group : grouped( plans, cellsOf ) ) {
      if( !group.fact.empty() ) {
         add( textOf( group.pairs ), group.fact );
      }
   }
   return tableOf( rows );
}

std::string memory( std::span<const Plan> plans ) {
   const auto cellsOf = []( const Plan& plan ) {
      Cells cells;
      for( const Number& number : numbersOf( plan.info() ) ) {
         cells.push_back( std::to_string( number.value ) );
      }
      return cells;
   };
   return "## Memory\n\n" +
          tableOf( plans, { "words", "entries", "array elements", "instances" }, cellsOf );
}

// How the address grows from one entry or array element to the next.
std::string stepText( const Plan& plan, const Address& base, U32 count, const Place& second ) {
   if( count < 2 ) {
      return "-";
   }
   return std::to_string( plan.address( second )->schanAddress - base.schanAddress );
}

Cells addressCells( const Plan& plan ) {
   const auto base = plan.address( {} );
   if( !base ) {
      return { "none", "-", "-", "-" };
   }
   const auto& info = plan.info();
   std::string instances;
   for( U64 identifier = 0; identifier < info.instanceCount; ++identifier ) {
      const Address instance = *plan.address( { 0, 0, identifier } );
      instances.append( identifier > 0 ? ", " : "" );
      if( info.instanceCount > 1 ) {
         instances.append( std::to_string( identifier ) ).append( ": " );
      }
      instances.append( std::to_string( instance.accessType ) ).append( " / " );
      instances.append( std::to_string( instance.destBlock ) );
   }
   return { hexOf( base->schanAddress ), stepText( plan, *base, info.entries, { 1, 0, 0 } ),
            stepText( plan, *base, info.arrayElements, { 0, 1, 0 } ), instances };
}

std::string addresses( std::span<const Plan> plans ) {
   return "## Addresses\n\n" +
          tableOf( plans,
                   { "base", "entry step", "array step", "identifier: accessType / destBlock" },
                   addressCells );
}

// The values of the tag's fields, or nothing where there is no tag.
Cells tagCells( const Plan& plan ) {
   std::string text;
   for( const auto& [field, value] : plan.tag() ) {
      text.append( text.empty() ? "`" : ", `" ).append( field->name ).append( "` " );
      text.append( hexOf( value ) );
   }
   return text.empty() ? Cells() : Cells{ text };
}

std::string tags( std::span<const Plan> plans ) {
   const bool any = std::any_of( plans.begin(), plans.end(),
                                 []( const Plan& plan ) { return !tagCells( plan ).empty(); } );
   return any ? "## Tags\n\n" + tableOf( plans, { "tag" }, tagCells ) + '\n' : "";
}

std::string fields( std::string_view table ) {
   std::vector<Cells> rows{ { "field", "identifier", "hardware name", "type",
                              "chip types: variants" } };
   for( const auto& field : Hardware::classFields( table ) ) {
      const std::string type =
         ( field.valueBits > 64 ? "`Raw" : "`U" ) + std::to_string( field.valueBits ) + '`';
      rows.push_back( { '`' + std::string( field.name ) + '`', std::to_string( field.identifier ),
                        '`' + std::string( hardwareName( field.identifier ) ) + '`',
                        type + ( field.readOnly ? ", read-only" : "" ),
                        textOf( pairsWithField( table, field.identifier ) ) } );
   }
   return "## Fields\n\n" + tableOf( rows );
}

std::string formats( std::span<const Plan> plans ) {
   const auto groups = grouped( plans, []( const Plan& plan ) { return Format( plan ); } );
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
   const auto plans = plansOf( table );
   return "# " + std::string( table ) + "\n\n[All tables and registers](" + indexFile +
          "), with what the words on this page mean.\n\n" + memory( plans ) + '\n' +
          addresses( plans ) + '\n' + tags( plans ) + fields( table ) + '\n' + formats( plans );
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

// A folder, made with those above it. Those that were not there go again unless they are kept.
class NewFolder {
public:
   explicit NewFolder( const std::filesystem::path& path ) {
      std::error_code code;
      for( auto part = path; !part.empty() && !exists( part, code ); part = part.parent_path() ) {
         made_.push_back( part );
      }
      create_directories( path, code );
      if( code ) {
         removeEmpty();
         throw Error( "cannot make the folder " + inQuotes( path.string() ) + ": " +
                      code.message() );
      }
   }
   ~NewFolder() { removeEmpty(); }
   NewFolder( const NewFolder& ) = delete;
   NewFolder& operator=( const NewFolder& ) = delete;

   void keep() { made_.clear(); }

private:
   void removeEmpty() {
      for( const auto& part : made_ ) {
         ::rmdir( part.c_str() );
      }
   }

   std::vector<std::filesystem::path> made_; // the innermost first
};

void writeReference( const std::string& path ) {
   const auto pages = referencePages();
   NewFolder folder( path );
   std::vector<FileText> files;
   for( const Page& page : pages ) {
      files.push_back( { std::filesystem::path( path ) / page.file, page.text } );
   }
   writeFiles( files );
   folder.keep();
}

} // namespace

std::vector<Page> referencePages() {
   std::vector<Page> pages{ { indexFile, indexPage() } };
   for( const auto table : Hardware::classNames() ) {
      pages.push_back( { std::string( table ) + ".md", pageOf( table ) } );
   }
   return pages;
}

Verb addReference( CLI::App& commandLine ) {
   CLI::App* const verb =
      commandLine.add_subcommand( "reference", "Write the reference of all tables" );
   const auto folder = std::make_shared<std::string>();
   verb->add_option( "DIR", *folder, "Folder of the pages, made if there is none" )->required();
   describe( *verb,
             "Writes a page of Markdown for each table or register, and index.md, into the folder: "
             "chip types and variants, dimensions, addresses, tags, fields, and a drawing of each "
             "format. Pages of these names that are there already are replaced, all of them or "
             "none; other files are left alone.",
             "  vorn reference reference" );
   return { verb, [folder]( Output& ) { writeReference( *folder ); } };
}

} // namespace Vorn
