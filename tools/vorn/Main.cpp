// vorn: composes and decodes table entries on the command line.
#include "Error.h"
#include "Io.h"
#include "Suggest.h"
#include "Text.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

enum ExitStatus : int { success = 0, badInput = 1, wrongUsage = 2 };

std::vector<std::string> optionNames( const CLI::App& app ) {
   std::vector<std::string> names;
   for( const auto* option : app.get_options() ) {
      for( const auto& name : option->get_lnames() ) {
         names.push_back( "--" + name );
      }
   }
   return names;
}

std::string suggestionFrom( std::string_view wrong, const std::vector<std::string>& right ) {
   return Vorn::suggestion( wrong, std::vector<std::string_view>( right.begin(), right.end() ) );
}

// The command line: its verbs and what they are given.
class CommandLine {
public:
   CommandLine();

   // Throws as CLI11 does.
   void parse( int argc, char** argv ) { app_.parse( argc, argv ); }

   // What the last parse() made of it.
   void run( Vorn::Output& output );

   std::string help() const { return app_.help(); }

   // What is wrong with the usage, after a failed parse(): CLI11's account, but for a wrong verb or
   // option our own, which has a suggestion.
   std::string usageError( const CLI::ParseError& error ) const;

private:
   std::vector<std::string> verbNames() const;

   CLI::App app_{ "Composes and decodes the entries of a packet processor's tables.", "vorn" };
   std::vector<Vorn::Verb> verbs_;
};

CommandLine::CommandLine() {
   app_.require_subcommand( 1 );
   app_.get_formatter()->label( "SUBCOMMAND", "VERB" );
   app_.set_version_flag( "--version", "vorn " VORN_VERSION, "Print the version and exit" );
   app_.footer( Vorn::wrapped(
      "`vorn VERB --help` explains a verb.\n\n"
      "Bad input is told in one line on standard error and exits with 1, wrong usage "
      "exits with 2.\n\nExample:\n"
      "  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 action=0x12345" ) );
   for( const auto add : { Vorn::addTables, Vorn::addEncode, Vorn::addDecode, Vorn::addProgram } ) {
      verbs_.push_back( add( app_ ) );
      verbs_.back().app->group( "Verbs" );
   }
}

void CommandLine::run( Vorn::Output& output ) {
   for( const auto& verb : verbs_ ) {
      if( verb.app->parsed() ) {
         verb.run( output );
      }
   }
}

std::string CommandLine::usageError( const CLI::ParseError& error ) const {
   const auto verbs = app_.get_subcommands();
   for( const auto& given : app_.remaining() ) {
      if( !given.starts_with( '-' ) ) {
         return "unknown verb " + Vorn::inQuotes( given ) + suggestionFrom( given, verbNames() );
      }
   }
   for( const auto& given : app_.remaining( true ) ) {
      if( given.starts_with( '-' ) ) {
         const auto options = optionNames( verbs.empty() ? app_ : *verbs.front() );
         return "unknown option " + Vorn::inQuotes( given ) + suggestionFrom( given, options );
      }
   }
   if( verbs.empty() ) {
      return "a verb is required" + suggestionFrom( "", verbNames() );
   }
   return error.what();
}

std::vector<std::string> CommandLine::verbNames() const {
   std::vector<std::string> names;
   for( const auto* verb : app_.get_subcommands( {} ) ) {
      names.push_back( verb->get_name() );
   }
   return names;
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
      std::cerr << "vorn: " << commandLine.usageError( error ) << "\n\n" << commandLine.help();
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
      std::cerr << error.what() << '\n';
   } catch( const std::exception& error ) {
      std::cerr << "vorn: " << error.what() << '\n';
   }
   return badInput;
}
