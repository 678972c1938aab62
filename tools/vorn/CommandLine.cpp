// The whole command line: its verbs and what they are given.
#include "CommandLine.h"

#include "Help.h"
#include "Text.h"
#include "Verbs.h"

#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

// The verbs, in the order in which the help lists them.
const ListedVerb allVerbs[] = {
   { "tables", "List the tables and registers", addTables },
   { "field", "Print where a field exists", addField },
   { "layout", "Draw the format of an entry", addLayout },
   { "encode", "Compose the image of one entry", addEncode },
   { "decode", "Print the fields of images", addDecode },
   { "diff", "Print what changes between two dumps", addDiff },
   { "stats", "Print what the fields of a dump hold", addStats },
   { "program", "Compose images from JSON lines or CSV", addProgram },
   { "identify", "Print what an image may be an entry of", addIdentify },
   { "address", "Print where entries lie", addAddress },
   { "locate", "Print what lies at an address", addLocate },
   { "export", "Print layouts for other programs", addExport },
   { "reference", "Write the reference of all tables", addReference },
   { "explore", "Show an entry in a browser", addExplore },
};

using Names = std::vector<std::string>;

std::string suggestionFrom( std::string_view wrong, const Names& right ) {
   return suggestion( wrong, std::vector<std::string_view>( right.begin(), right.end() ) );
}

Names optionNames( const CLI::App& app ) {
   Names names;
   for( const auto* option : app.get_options() ) {
      for( const auto& name : option->get_lnames() ) {
         names.push_back( "--" + name );
      }
   }
   return names;
}

Names verbNames( const CLI::App& app ) {
   Names names;
   for( const auto* verb : app.get_subcommands( {} ) ) {
      if( !verb->get_group().empty() ) {
         names.push_back( verb->get_name() );
      }
   }
   return names;
}

// A flag is given or not; CLI11 would also take --json=false.
void refuseValuesOfFlags( CLI::App& app ) {
   for( auto* option : app.get_options() ) {
      if( option->get_items_expected_max() == 0 ) {
         option->disable_flag_override();
      }
   }
   for( auto* verb : app.get_subcommands( {} ) ) {
      refuseValuesOfFlags( *verb );
   }
}

class CommandLine {
public:
   CommandLine( CommandWords words, const std::string& version );

   // Throws as CLI11 does.
   void parse( int argc, const char* const* argv ) {
      requireValues();
      app_.parse( argc, argv );
   }

   // What parse() made of it.
   void run( Output& output ) { runParsed( verbs_, output ); }

   std::string help() const { return app_.help(); }

   // What is wrong with the usage, after a failed parse().
   std::string usageError( const CLI::ParseError& error ) const;

private:
   void requireValues() const;

   CommandWords words_;
   CLI::App app_{ "Composes and decodes the entries of a packet processor's tables.", "vorn" };
   std::vector<Verb> verbs_;
};

CommandLine::CommandLine( CommandWords words, const std::string& version )
   : words_( std::move( words ) ) {
   app_.require_subcommand( 1 );
   app_.formatter( helpFormatter() );
   app_.set_version_flag( "--version", "vorn " + version, "Print the version and exit" );
   app_.footer(
      wrapped( "`vorn VERB --help` explains a verb.\n\n"
               "Bad input gets one line on standard error and exit status 1, wrong usage exit "
               "status 2. `vorn diff` has statuses of its own.\n\n"
               "Example:\n"
               "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 action=0x12345" ) );
   std::vector<ListedVerb> verbs( std::begin( allVerbs ), std::end( allVerbs ) );
   verbs.push_back( { "trace", "Run a verb with the library's trace",
                      [this]( CLI::App& verb ) { return addTrace( verb, allVerbs, words_ ); } } );
   verbs.push_back( { completeName, "Print what may come next", addComplete } );
   verbs_ = addVerbs( app_, verbs, words_ );
   verbs_.back().app->group( "" ); // for shells, not for people
   refuseValuesOfFlags( app_ );
}

// Requires that no option stands where another one's value is due: CLI11 would take it for the
// value.
void CommandLine::requireValues() const {
   const CLI::App* app = &app_;
   for( std::size_t i = 0; i + 1 < words_.size() && words_[i] != "--"; ++i ) {
      const auto& next = words_[i + 1];
      if( !words_[i].starts_with( '-' ) ) {
         for( const auto* const verb : app->get_subcommands( {} ) ) {
            app = verb->get_name() == words_[i] ? verb : app;
         }
         continue;
      }
      const auto* const option = app->get_option_no_throw( words_[i] );
      if( option && option->get_items_expected_max() > 0 && next.starts_with( "--" ) &&
          next != "--" ) {
         throw UsageError( words_[i] + " needs " + option->get_type_name() + ", which " +
                           inQuotes( next ) + " isn't; if it is meant as the value, write " +
                           words_[i] + '=' + shown( next ) );
      }
   }
}

// CLI11's message, in the words of our own messages where they differ, and where to find help.
std::string flawOf( const CLI::ParseError& error, const std::string& help ) {
   std::string text = error.what();
   if( error.get_name() == "ValidationError" ) {
      return text; // It comes from a verb, and says itself what is allowed.
   }
   if( error.get_name() != "ArgumentMismatch" ) {
      return text + help;
   }
   const std::string option = text.substr( 0, text.find_first_of( ": " ) );
   if( text.ends_with( " missing" ) ) {
      constexpr std::string_view before = "required ";
      const auto type = text.find( before ) + before.size();
      return option + " needs " + text.substr( type, text.rfind( ' ' ) - type ) + help;
   }
   if( text.ends_with( "flag override" ) ) {
      return "--" + option + " takes no value" + help;
   }
   return option + " is given twice" + help;
}

std::string CommandLine::usageError( const CLI::ParseError& error ) const {
   std::string command = "vorn";
   for( const CLI::App* app = &app_;; ) {
      const auto verbs = verbNames( *app );
      const auto help = "; see " + command + " --help";
      auto rest = app->remaining();
      std::erase( rest, "--" );
      if( !rest.empty() ) {
         const auto& given = rest.front();
         if( given.starts_with( '-' ) ) {
            return "unknown option " + inQuotes( given ) +
                   suggestionFrom( given, optionNames( *app ) );
         }
         return verbs.empty()
                   ? "unexpected argument " + inQuotes( given ) + help
                   : "unknown verb " + inQuotes( given ) + suggestionFrom( given, verbs );
      }
      const auto parsed = app->get_subcommands();
      if( parsed.empty() ) {
         return verbs.empty() ? flawOf( error, help )
                              : "a verb is required" + suggestionFrom( "", verbs );
      }
      app = parsed.front();
      command += ' ' + app->get_name();
   }
}

} // namespace

void runCommandLine( int argc, const char* const* argv, const std::string& version,
                     Output& output ) {
   CommandLine commandLine( { argv + 1, argv + std::max( argc, 1 ) }, version );
   try {
      commandLine.parse( argc, argv );
      commandLine.run( output );
   } catch( const CLI::CallForHelp& ) {
      output.write( commandLine.help() );
   } catch( const CLI::CallForVersion& call ) {
      output.write( call.what() + std::string( "\n" ) );
   } catch( const CLI::ParseError& error ) {
      throw UsageError( commandLine.usageError( error ) );
   } catch( ... ) {
      output.flush();
      throw;
   }
   output.flush();
}

} // namespace Vorn
