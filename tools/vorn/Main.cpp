// vorn: composes and decodes table entries on the command line.
#include "Error.h"
#include "Help.h"
#include "Io.h"
#include "Suggest.h"
#include "Terminal.h"
#include "Text.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace {

enum ExitStatus : int { success = 0, badInput = 1, wrongUsage = 2 };

// The verbs, in the order in which the help lists them.
constexpr Vorn::AddVerb addVerbs[] = {
   Vorn::addTables,   Vorn::addLayout,  Vorn::addEncode, Vorn::addDecode,    Vorn::addProgram,
   Vorn::addIdentify, Vorn::addAddress, Vorn::addLocate, Vorn::addReference,
};

using Names = std::vector<std::string>;

std::string suggestionFrom( std::string_view wrong, const Names& right ) {
   return Vorn::suggestion( wrong, std::vector<std::string_view>( right.begin(), right.end() ) );
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

// The command line: its verbs and what they are given.
class CommandLine {
public:
   CommandLine();

   // Throws as CLI11 does.
   void parse( int argc, char** argv ) { app_.parse( argc, argv ); }

   // What the last parse() made of it.
   void run( Vorn::Output& output ) { Vorn::runParsed( verbs_, output ); }

   std::string help() const { return app_.help(); }

   // What is wrong with the usage, after a failed parse().
   std::string usageError( const CLI::ParseError& error ) const;

private:
   CLI::App app_{ "Composes and decodes the entries of a packet processor's tables.", "vorn" };
   std::vector<Vorn::Verb> verbs_;
};

CommandLine::CommandLine() {
   app_.require_subcommand( 1 );
   app_.formatter( Vorn::helpFormatter() );
   app_.set_version_flag( "--version", "vorn " VORN_VERSION, "Print the version and exit" );
   app_.footer( Vorn::wrapped(
      "`vorn VERB --help` explains a verb.\n\n"
      "Bad input is told in one line on standard error and exits with 1, wrong usage "
      "exits with 2.\n\nExample:\n"
      "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 action=0x12345" ) );
   for( const auto add : addVerbs ) {
      verbs_.push_back( add( app_ ) );
   }
   verbs_.push_back( Vorn::addTrace( app_, addVerbs ) );
   for( const auto& verb : verbs_ ) {
      verb.app->group( "Verbs" );
   }
   verbs_.push_back( Vorn::addComplete( app_ ) );
   refuseValuesOfFlags( app_ );
}

// Points to the help, unless the message already says what is allowed.
std::string withHelp( const std::string& message, const std::string& command ) {
   return message.find( ';' ) == std::string::npos ? message + "; see " + command + " --help"
                                                   : message;
}

// CLI11's account of what is wrong, in the words of the other messages where it has its own.
std::string flawOf( const CLI::ParseError& error ) {
   const std::string text = error.what();
   if( error.get_name() != "ArgumentMismatch" ) {
      return text;
   }
   const std::string option = text.substr( 0, text.find_first_of( ": " ) );
   if( text.ends_with( " missing" ) ) {
      constexpr std::string_view before = "required ";
      const auto type = text.find( before ) + before.size();
      return option + " needs " + text.substr( type, text.rfind( ' ' ) - type );
   }
   if( text.ends_with( "flag override" ) ) {
      return "--" + option + " takes no value";
   }
   return option + " is given twice";
}

std::string CommandLine::usageError( const CLI::ParseError& error ) const {
   std::string command = "vorn";
   for( const CLI::App* app = &app_;; ) {
      const auto verbs = verbNames( *app );
      if( const auto rest = app->remaining(); !rest.empty() ) {
         const auto& given = rest.front();
         if( given.starts_with( '-' ) ) {
            return "unknown option " + Vorn::inQuotes( given ) +
                   suggestionFrom( given, optionNames( *app ) );
         }
         return verbs.empty()
                   ? withHelp( "unexpected argument " + Vorn::inQuotes( given ), command )
                   : "unknown verb " + Vorn::inQuotes( given ) + suggestionFrom( given, verbs );
      }
      const auto parsed = app->get_subcommands();
      if( parsed.empty() ) {
         return verbs.empty() ? withHelp( flawOf( error ), command )
                              : "a verb is required" + suggestionFrom( "", verbs );
      }
      app = parsed.front();
      command += ' ' + app->get_name();
   }
}

// `prefix` and `message` as one line on standard error.
void printError( std::string_view prefix, std::string_view message ) {
   std::cerr << Vorn::painted( Vorn::Paint::error, prefix, STDERR_FILENO ) << message << '\n';
}

int run( int argc, char** argv ) {
   Vorn::Output output;
   CommandLine commandLine;
   try {
      commandLine.parse( argc, argv );
   } catch( const CLI::CallForHelp& ) {
      output.write( commandLine.help() );
      output.flush();
      return success;
   } catch( const CLI::CallForVersion& version ) {
      output.write( version.what() + std::string( "\n" ) );
      output.flush();
      return success;
   } catch( const CLI::ParseError& error ) {
      printError( "vorn: ", commandLine.usageError( error ) );
      return wrongUsage;
   }
   try {
      commandLine.run( output );
   } catch( const Vorn::Error& ) {
      output.flush();
      throw;
   }
   output.flush();
   return success;
}

} // namespace

int main( int argc, char** argv ) {
   try {
      return run( argc, argv );
   } catch( const Vorn::Error& error ) {
      const std::string_view text = error.what();
      printError( text.substr( 0, text.size() - error.message().size() ), error.message() );
   } catch( const std::exception& error ) {
      printError( "vorn: ", error.what() );
   }
   return badInput;
}
