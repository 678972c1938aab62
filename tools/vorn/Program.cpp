// `vorn program`: JSON lines that name entries and fields into JSON lines with image and address.
#include "Program.h"

#include "Arguments.h"
#include "Entry.h"
#include "Error.h"
#include "Forms.h"
#include "Plan.h"
#include "Progress.h"
#include "Record.h"
#include "Values.h"
#include "Verbs.h"

#include <Hardware/Registry.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <string_view>
#include <tuple>

namespace Vorn {

namespace {

using Key = Record::Key;

// The key whose value is to blame where the registry doesn't have the record's pair.
Key wrongKeyOf( const Record& record ) {
   const auto tables = Hardware::classNames();
   if( std::find( tables.begin(), tables.end(), record.table() ) == tables.end() ) {
      return Key::table;
   }
   const bool isServed = variantsOn( record.table(), record.chip().number ).has_value();
   return isServed && record.has( Key::variant ) ? Key::variant : Key::chip;
}

// The same where the pair doesn't have the record's place.
Key wrongKeyOf( const Plan& plan, const Place& place ) {
   if( place.entry >= plan.info().entries ) {
      return Key::entry;
   }
   return place.array >= plan.info().arrayElements ? Key::array : Key::identifier;
}

// The pairs met so far. The registry is asked about each of them once.
class Pairs {
public:
   const Plan& of( Record& record ) {
      const PairKey key( record.table(), record.chip().number, record.variant() );
      if( last_ != plans_.end() && last_->first == key ) {
         return last_->second;
      }
      last_ = plans_.find( key );
      if( last_ == plans_.end() ) {
         record.lookAt( wrongKeyOf( record ) );
         Plan plan( record.table(), record.chip(), record.variant() );
         const PairKey lasting( plan.table(), plan.chip().number, plan.variant() );
         last_ = plans_.emplace( lasting, std::move( plan ) ).first;
      }
      return last_->second;
   }

private:
   using PairKey = std::tuple<std::string_view, U8, U64>;

   std::map<PairKey, Plan> plans_;
   std::map<PairKey, Plan>::iterator last_ = plans_.end();
};

class Programmer {
public:
   explicit Programmer( Form form ) : form_( form ) {}

   // The output line for an input line, valid until the next call.
   const std::string& lineFor( std::string_view input ) {
      record_.parse( input );
      const Plan& plan = pairs_.of( record_ );
      const auto address = addressOf( plan );
      if( record_.has( Key::from ) ) {
         record_.lookAt( Key::from );
         entry_.reset( plan, imageOf( record_.from() ) );
      } else {
         entry_.reset( plan );
      }
      for( const auto& field : record_.fields() ) {
         setField( field );
      }
      line_.clear();
      form_( line_, { plan, record_.place(), address, entry_.image() } );
      return line_;
   }

   // Where in the input line the last Error has its reason.
   std::size_t column() const { return record_.column(); }

private:
   std::optional<Address> addressOf( const Plan& plan ) {
      const Place place = record_.place();
      try {
         return plan.address( place );
      } catch( const Error& ) {
         record_.lookAt( wrongKeyOf( plan, place ) );
         throw;
      }
   }

   void setField( const Record::FieldValue& field ) {
      record_.lookAtName( field );
      const auto position = entry_.open( field.name );
      record_.lookAtValue( field );
      if( field.given == maskWord ) {
         entry_.fill( position );
      } else {
         entry_.set( position, field.value, field.given );
      }
   }

   Form form_;
   Pairs pairs_;
   Record record_;
   Entry entry_;
   std::string line_;
};

} // namespace

void program( const ProgramArguments& arguments, Output& output ) {
   const U64 count = parseIndex( arguments.count, "count", ~U64( 0 ) );
   Programmer programmer( arguments.form );
   Progress progress;
   U64 entries = 0;
   LineReader reader( arguments.path, [&] {
      output.flush();
      if( const U64 size = reader.size() ) {
         progress.show( reader.bytesRead(), size, entries );
      } else {
         progress.show( entries, count, entries );
      }
   } );
   for( std::string_view line; reader.next( line ); ) {
      if( line.find_first_not_of( " \t\r" ) == std::string_view::npos ) {
         continue;
      }
      const std::string* made = nullptr;
      try {
         made = &programmer.lineFor( line );
      } catch( const Error& error ) {
         throw Error( reader.place() + ':' + std::to_string( programmer.column() ),
                      error.message() );
      }
      output.write( *made );
      ++entries;
   }
}

Verb addProgram( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "program", "Compose images for JSON lines" );
   const auto arguments = std::make_shared<ProgramArguments>();
   verb->add_option( "FILE", arguments->path, "File of JSON lines, - for standard input" )
      ->required();
   static constexpr std::string_view forms[] = { "json", "bytes", "words" };
   addForm( *verb, arguments->form, forms );
   verb
      ->add_option( "--count", arguments->count,
                    "Entries to expect of a pipe, for the progress line" )
      ->type_name( "N" );
   describe( *verb,
             "Reads a JSON object from each line that is not blank:\n"
             "  \"table\", \"chip\"                   names; the chip type also by number\n"
             "  \"variant\"                         0 if not given\n"
             "  \"entry\", \"array\", \"identifier\"  0 if not given\n"
             "  \"fields\"                          an object of field names and values\n"
             "  \"from\"                            an image to begin with instead of a fresh\n"
             "                                    entry, as `vorn encode --from` takes it\n"
             "\n"
             "Fields are written in the order of the line; where two overlap the later one wins.\n"
             "\n" +
                notationsParagraphs() +
                " In JSON, all but decimal numbers of at most 64 bits stand in quotes.\n\n"
                "Prints for each a JSON object in one line, with the image as bytes in "
                "hexadecimal, entry byte 0 first, and the address; \"address\", \"accessType\" and "
                "\"destBlock\" are null where there is no address. With --output bytes or words "
                "the line is the image alone, as those bytes or as 32-bit words.\n\n"
                "A bad line ends the program with exit status 1. The lines before it have been "
                "printed then, and nothing of the bad line or of any after it. A line holds at "
                "most " +
                std::to_string( LineReader::longestLine ) +
                " bytes.\n\n"
                "While standard error is a terminal and standard output is none, a line there "
                "shows how far a file has come, or a pipe with --count.",
             "  echo '{\"table\":\"TcamActionTable\",\"chip\":\"BCM88690_B0\",\"entry\":5,"
             "\"fields\":{\"action\":\"0x12345\"}}' | vorn program -\n"
             "  vorn program entries.jsonl --output bytes > images.txt" );
   return { verb, [arguments]( Output& output ) { program( *arguments, output ); } };
}

} // namespace Vorn
