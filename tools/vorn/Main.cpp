// vorn: composes and decodes table entries on the command line.
#include "Chips.h"
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

std::string chipTypesFooter() {
   std::vector<U32> numbers;
   for( const Vorn::Chip& chip : Vorn::allChips() ) {
      numbers.push_back( chip.number );
   }
   return "Chip types: " + Vorn::listOfChips( numbers );
}

void addPair( CLI::App& verb, Vorn::PairText& pair ) {
   verb.add_option( "TABLE", pair.table, "Name of the table, as `vorn tables` prints it" )
      ->required();
   verb.add_option( "--chip", pair.chip, "Chip type, by name or number" )
      ->required()
      ->type_name( "NAME|NUMBER" );
   verb.add_option( "--variant", pair.variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
}

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

   void addTables();
   void addEncode();
   void addDecode();
   void addProgram();

   CLI::App app_{ "Composes and decodes the entries of a packet processor's tables.", "vorn" };
   CLI::App* tables_ = nullptr;
   CLI::App* encode_ = nullptr;
   CLI::App* decode_ = nullptr;
   CLI::App* program_ = nullptr;
   Vorn::EncodeArguments encodeArguments_;
   Vorn::DecodeArguments decodeArguments_;
   std::string programFile_;
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
   addTables();
   addEncode();
   addDecode();
   addProgram();
   for( auto* verb : app_.get_subcommands( {} ) ) {
      verb->group( "Verbs" );
   }
}

void CommandLine::addTables() {
   tables_ = app_.add_subcommand( "tables", "List the tables and registers" );
   tables_->footer(
      Vorn::wrapped( "Prints a line for each table or register after a line of headings: its name "
                     "and kind, how many fields it has, its width in 32-bit words and its number "
                     "of entries (each as a list where chip types differ), and the numbers of its "
                     "chip types with their variants.\n\n" +
                     chipTypesFooter() + "\n\nExample:\n  vorn tables" ) );
}

void CommandLine::addEncode() {
   encode_ = app_.add_subcommand( "encode", "Compose the image of one entry" );
   auto& arguments = encodeArguments_;
   addPair( *encode_, arguments.pair );
   encode_->add_option( "--entry", arguments.entry, "Entry of the table, 0 if not given" )
      ->type_name( "N" );
   encode_->add_option( "--array", arguments.array, "Array element, 0 if not given" )
      ->type_name( "N" );
   encode_
      ->add_option( "--identifier", arguments.identifier, "Instance of the memory, 0 if not given" )
      ->type_name( "N" );
   encode_->add_option( "field=value", arguments.fields,
                        "Fields to set; a value is decimal, or hexadecimal after 0x" );
   encode_->footer(
      Vorn::wrapped( "Prints the image as bytes, entry byte 0 first, and as 32-bit words, and the "
                     "entry's address. Fields that are not given are 0, but for the tag. Fields "
                     "are written in the given order; where two overlap the later one wins.\n\n" +
                     chipTypesFooter() +
                     "\n\nExample:\n  vorn encode TcamActionTable --chip BCM88690_B0 --entry 5 "
                     "--array 2 --identifier 1 action=0x12345" ) );
}

void CommandLine::addDecode() {
   decode_ = app_.add_subcommand( "decode", "Print the fields of an image" );
   auto& arguments = decodeArguments_;
   addPair( *decode_, arguments.pair );
   decode_->add_flag( "--json", arguments.json, "Print one JSON object" );
   decode_->add_option( "HEX", arguments.image, "The image as hexadecimal digits" )->required();
   decode_->footer(
      Vorn::wrapped( "The image is two digits for each byte, entry byte 0 first, in one or several "
                     "pieces, each with or without 0x before it. It has to reach to the end of the "
                     "last field; bytes behind the entry are not looked at. A tag is shown like "
                     "any field and not checked.\n\n"
                     "With --json the fields are in their declared order, else by offset.\n\n" +
                     chipTypesFooter() +
                     "\n\nExample:\n  vorn decode TcamActionTable --chip BCM88690_B0 "
                     "4523010000000000" ) );
}

void CommandLine::addProgram() {
   program_ = app_.add_subcommand( "program", "Compose images for JSON lines" );
   program_->add_option( "FILE", programFile_, "File of JSON lines, - for standard input" )
      ->required();
   program_->footer( Vorn::wrapped(
      "Reads a JSON object from each line that is not blank: \"table\", \"chip\" (name or "
      "number), \"variant\", \"entry\", \"array\", \"identifier\" (0 if not given) and "
      "\"fields\", an object of field names and values. A value is a number, or a string in "
      "decimal or in hexadecimal after 0x, which may have any width. Fields are written in the "
      "order of the line; where two overlap the later one wins.\n\n"
      "Prints for each a JSON object in one line, with the image as bytes in hexadecimal, entry "
      "byte 0 first, and the address; \"address\", \"accessType\" and \"destBlock\" are null "
      "where there is no address.\n\n"
      "A bad line ends the program with exit status 1. The lines before it have been printed "
      "then, and nothing of the bad line or of any after it. A line holds at most " +
      std::to_string( Vorn::LineReader::longestLine ) +
      " bytes.\n\n"
      "Example:\n  echo '{\"table\":\"TcamActionTable\",\"chip\":\"BCM88690_B0\",\"entry\":5,"
      "\"fields\":{\"action\":\"0x12345\"}}' | vorn program -" ) );
}

void CommandLine::run( Vorn::Output& output ) {
   if( tables_->parsed() ) {
      output.write( Vorn::tables() );
   } else if( encode_->parsed() ) {
      output.write( Vorn::encode( encodeArguments_ ) );
   } else if( decode_->parsed() ) {
      output.write( Vorn::decode( decodeArguments_ ) );
   } else if( program_->parsed() ) {
      Vorn::program( programFile_, output );
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
