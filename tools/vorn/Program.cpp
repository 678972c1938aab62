// `vorn program`: JSON lines that name entries and fields into JSON lines with image and address.
#include "Arguments.h"
#include "Entry.h"
#include "Error.h"
#include "Plan.h"
#include "Record.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

namespace Vorn {

namespace {

// A plan, and what all lines of its pair begin with.
struct Prepared {
   explicit Prepared( Plan made );

   Plan plan;
   std::string head;
};

Prepared::Prepared( Plan made ) : plan( std::move( made ) ) {
   head.append( R"({"table":")" ).append( plan.table() );
   head.append( R"(","chip":")" ).append( plan.chip().name );
   head.append( R"(","variant":)" ).append( std::to_string( plan.variant() ) );
   head.append( R"(,"entry":)" );
}

// The pairs met so far. The registry is asked about each of them once.
class Pairs {
public:
   const Prepared& of( const Record& record ) {
      const Key key( record.table(), record.chip().number, record.variant() );
      if( last_ != prepared_.end() && last_->first == key ) {
         return last_->second;
      }
      last_ = prepared_.find( key );
      if( last_ == prepared_.end() ) {
         Plan plan( record.table(), record.chip(), record.variant() );
         const Key lasting( plan.table(), plan.chip().number, plan.variant() );
         last_ = prepared_.emplace( lasting, Prepared( std::move( plan ) ) ).first;
      }
      return last_->second;
   }

private:
   using Key = std::tuple<std::string_view, U8, U64>;

   std::map<Key, Prepared> prepared_;
   std::map<Key, Prepared>::iterator last_ = prepared_.end();
};

void appendNumber( std::string& text, U64 number, int base = 10 ) {
   char digits[20];
   const auto end = std::to_chars( std::begin( digits ), std::end( digits ), number, base ).ptr;
   text.append( digits, end );
}

class Programmer {
public:
   // The output line for an input line, valid until the next call.
   const std::string& lineFor( std::string_view input ) {
      record_.parse( input );
      const Prepared& pair = pairs_.of( record_ );
      const auto address = pair.plan.address( record_.place() );
      entry_.reset( pair.plan );
      for( const auto& field : record_.fields() ) {
         entry_.set( field.name, field.value, field.given );
      }
      compose( pair, address );
      return line_;
   }

private:
   void compose( const Prepared& pair, const std::optional<Address>& address ) {
      const Place& place = record_.place();
      line_ = pair.head;
      appendNumber( line_, place.entry );
      line_ += R"(,"array":)";
      appendNumber( line_, place.array );
      line_ += R"(,"identifier":)";
      appendNumber( line_, place.identifier );
      line_ += R"(,"image":")";
      appendHex( line_, entry_.image() );
      if( address ) {
         line_ += R"(","address":"0x)";
         appendNumber( line_, address->schanAddress, 16 );
         line_ += R"(","accessType":)";
         appendNumber( line_, address->accessType );
         line_ += R"(,"destBlock":)";
         appendNumber( line_, address->destBlock );
         line_ += "}\n";
      } else {
         line_ += R"(","address":null,"accessType":null,"destBlock":null})";
         line_ += '\n';
      }
   }

   Pairs pairs_;
   Record record_;
   Entry entry_;
   std::string line_;
};

// Turns the lines of the file, or of standard input for "-", into lines of `output`. The lines
// before a bad one are given to `output` before the Error is thrown.
void program( const std::string& path, Output& output ) {
   Programmer programmer;
   LineReader reader( path, [&output] { output.flush(); } );
   for( std::string_view line; reader.next( line ); ) {
      if( line.find_first_not_of( " \t\r" ) == std::string_view::npos ) {
         continue;
      }
      const std::string* made = nullptr;
      try {
         made = &programmer.lineFor( line );
      } catch( const Error& error ) {
         throw Error( reader.place(), error.message() );
      }
      output.write( *made );
   }
}

} // namespace

Verb addProgram( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "program", "Compose images for JSON lines" );
   const auto path = std::make_shared<std::string>();
   verb->add_option( "FILE", *path, "File of JSON lines, - for standard input" )->required();
   describe( *verb,
             "Reads a JSON object from each line that is not blank: \"table\", \"chip\" (name or "
             "number), \"variant\", \"entry\", \"array\", \"identifier\" (0 if not given) and "
             "\"fields\", an object of field names and values. A value is a number, or a string in "
             "decimal or in hexadecimal after 0x, which may have any width. Fields are written in "
             "the order of the line; where two overlap the later one wins.\n\n"
             "Prints for each a JSON object in one line, with the image as bytes in hexadecimal, "
             "entry byte 0 first, and the address; \"address\", \"accessType\" and \"destBlock\" "
             "are null where there is no address.\n\n"
             "A bad line ends the program with exit status 1. The lines before it have been "
             "printed then, and nothing of the bad line or of any after it. A line holds at most " +
                std::to_string( LineReader::longestLine ) + " bytes.",
             "  echo '{\"table\":\"TcamActionTable\",\"chip\":\"BCM88690_B0\",\"entry\":5,"
             "\"fields\":{\"action\":\"0x12345\"}}' | vorn program -" );
   return { verb, [path]( Output& output ) { program( *path, output ); } };
}

} // namespace Vorn
