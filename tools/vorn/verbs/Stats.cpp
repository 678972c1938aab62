// `vorn stats`: what the fields of a dump hold.
#include "Arguments.h"
#include "Text.h"
#include "Verbs.h"
#include "forms/ImagePrinter.h"
#include "verbs/DumpWalk.h"

#include <Vorn/Error.h>
#include <Vorn/Statistics.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

namespace {

struct StatsArguments : DumpArguments {
   std::vector<std::string> words; // [TABLE] FILE...
   bool json = false;
};

using Names = std::optional<std::vector<std::string_view>>;

// The fields that are asked for, in that order.
std::vector<FieldStatistics> chosenOf( const Statistics& statistics, const Names& names ) {
   auto all = statistics.fields();
   if( !names ) {
      return all;
   }
   std::vector<FieldStatistics> chosen;
   for( const std::string_view name : *names ) {
      for( const FieldStatistics& field : all ) {
         if( field.field.name == name ) {
            chosen.push_back( field );
         }
      }
   }
   return chosen;
}

// As text that fits into a line with others.
std::string shortHex( const Value& value ) {
   constexpr std::size_t most = 34;
   constexpr std::size_t kept = 14;
   const auto text = hexOf( value );
   return text.size() <= most ? text
                              : text.substr( 0, kept ) + ".." + text.substr( text.size() - kept );
}

std::vector<U32> positionsIn( const Value& bits ) {
   std::vector<U32> positions;
   for( U32 bit = 0; bit < bits.bits(); ++bit ) {
      if( bits.word( bit / 64 ) >> bit % 64 & 1 ) {
         positions.push_back( bit );
      }
   }
   return positions;
}

// "bits 11-16 are always 0", or nothing.
std::string constantText( const Value& bits, char digit ) {
   const auto positions = positionsIn( bits );
   if( positions.empty() ) {
      return "";
   }
   return ( positions.size() == 1 ? "bit " : "bits " ) + rangesOf( positions ) +
          ( positions.size() == 1 ? " is" : " are" ) + " always " + digit;
}

std::string distinctText( const FieldStatistics& field ) {
   return ( field.isDistinctExact ? "" : "more than " ) + std::to_string( field.distinct );
}

// The output for a field, in paragraphs.
std::string accountOf( const FieldStatistics& field ) {
   if( field.set == 0 ) {
      return "never set";
   }
   if( field.distinct == 1 && field.isDistinctExact ) {
      return "always " + shortHex( field.least );
   }
   std::string text = "set in " + std::to_string( field.set ) + ", " + distinctText( field ) +
                      " distinct, " + shortHex( field.least ) + " to " +
                      shortHex( field.greatest ) + '\n';
   for( const auto& [value, entries] : field.frequent ) {
      text += ( &value == &field.frequent.front().value ? "most often " : ", " ) +
              shortHex( value ) + " (" + std::to_string( entries ) + ')';
   }
   for( const auto& constant :
        { constantText( field.alwaysZero, '0' ), constantText( field.alwaysOne, '1' ) } ) {
      text += constant.empty() ? "" : '\n' + constant;
   }
   return text;
}

std::string statisticsLines( const Statistics& statistics, const Names& names ) {
   constexpr std::size_t columns = 80;
   const auto fields = chosenOf( statistics, names );
   std::size_t width = 0;
   for( const FieldStatistics& field : fields ) {
      width = std::max( width, field.field.name.size() );
   }
   width += 2;
   std::string lines = statistics.layout().pairText() + ": " +
                       countOf( statistics.entries(), "entry", "entries" ) + '\n';
   if( statistics.entries() == 0 ) {
      return lines;
   }
   for( const FieldStatistics& field : fields ) {
      std::string begin( field.field.name );
      begin.resize( width, ' ' );
      const auto text = wrapped( accountOf( field ), columns - width );
      for( std::string_view rest = text; !rest.empty(); ) {
         const auto line = rest.substr( 0, rest.find( '\n' ) );
         rest.remove_prefix( std::min( line.size() + 1, rest.size() ) );
         lines.append( begin ).append( line ).append( "\n" );
         begin.assign( width, ' ' );
      }
   }
   return lines;
}

std::string statisticsJson( const Statistics& statistics, const Names& names ) {
   const Layout& layout = statistics.layout();
   std::string line = R"({"table":")" + std::string( layout.table() ) + R"(","chip":")" +
                      layout.chip().name + R"(","variant":)" + std::to_string( layout.variant() ) +
                      R"(,"entries":)" + std::to_string( statistics.entries() ) + R"(,"fields":{)";
   std::string_view between;
   for( const FieldStatistics& field : chosenOf( statistics, names ) ) {
      const auto add = [&]( std::string_view name, const Value& value ) {
         line.append( ",\"" ).append( name ).append( "\":" );
         appendJsonValue( line, value );
      };
      line.append( between ).append( "\"" ).append( field.field.name );
      between = ",";
      line += R"(":{"width":)" + std::to_string( field.field.width ) + R"(,"set":)" +
              std::to_string( field.set ) + R"(,"distinct":)" + std::to_string( field.distinct ) +
              R"(,"distinctIsExact":)" + ( field.isDistinctExact ? "true" : "false" );
      add( "least", field.least );
      add( "greatest", field.greatest );
      line += R"(,"frequent":[)";
      for( const auto& [value, entries] : field.frequent ) {
         line += &value == &field.frequent.front().value ? R"({"value":)" : R"(,{"value":)";
         appendJsonValue( line, value );
         line += R"(,"entries":)" + std::to_string( entries ) + '}';
      }
      line += ']';
      add( "alwaysOne", field.alwaysOne );
      add( "alwaysZero", field.alwaysZero );
      line += '}';
   }
   return line + "}}\n";
}

void stats( const StatsArguments& arguments, Output& output ) {
   DumpWalk walk( arguments, output );
   const auto names = walk.fields();
   std::deque<Statistics> all;
   Statistics* last = nullptr;
   const auto of = [&]( const Layout& layout ) -> Statistics& {
      if( !last || !( last->layout() == layout ) ) {
         const auto found = std::find_if( all.begin(), all.end(), [&]( const Statistics& one ) {
            return one.layout() == layout;
         } );
         last = found == all.end() ? &all.emplace_back( layout ) : &*found;
      }
      return *last;
   };
   if( walk.reader().isOfOnePair() ) {
      of( *walk.reader().own() );
   }
   walk.takesBlocks = true;
   walk.run( [&]( const DumpEntry& entry ) { of( *entry.layout ).add( entry.image ); } );
   if( all.empty() && !arguments.json ) {
      output.write( "no entries\n" );
   }
   for( const Statistics& one : all ) {
      output.write( &one != &all.front() && !arguments.json ? "\n" : "" );
      output.write( ( arguments.json ? statisticsJson : statisticsLines )( one, names ) );
   }
   walk.finish( "counted" );
}

} // namespace

VerbRun addStats( CLI::App& verb ) {
   struct Given {
      DumpLine line;
      StatsArguments arguments;
   };
   const auto given = std::make_shared<Given>();
   StatsArguments* const arguments = &given->arguments;
   verb.add_option( "TABLE FILE", arguments->words,
                    "Name of the table, and files of images; - for standard input" );
   addDump( verb, given->line.pair, *arguments );
   addChoice( verb, *arguments );
   verb.add_flag( "--json", arguments->json, "Print a JSON object for each pair" );
   verb.callback( [given] {
      auto& words = given->arguments.words;
      if( !words.empty() && isTable( words.front() ) ) {
         given->line.pair.table = words.front();
         words.erase( words.begin() );
      }
      if( words.empty() ) {
         throw CLI::RequiredError( "FILE" );
      }
      given->arguments.paths = words;
      given->line.completeInto( given->arguments );
   } );
   describe( verb,
             "Prints for each field in how many entries it isn't zero, how many distinct values it "
             "has, the least and the greatest, the most frequent ones with the number of their "
             "entries, and which of its bits are the same in every entry. Entries of several "
             "variants or tables are counted separately, those of several files together. Long "
             "values are shortened, except with --json. Beyond " +
                std::to_string( Statistics::mostDistinct ) +
                " distinct values of a field no further ones are counted, and the output says "
                "so.\n\n"
                "`vorn decode --help` explains how a file may be written.\n\n" +
                whereParagraphs() + "\n\n" + chipTypesParagraph(),
             "  vorn stats LifTable --chip BCM88690_B0 lif.bin\n"
             "  vorn stats --fields vsi --where 'learnEnable == 1' entries.jsonl" );
   return [given]( Output& output ) { stats( given->arguments, output ); };
}

} // namespace Vorn
