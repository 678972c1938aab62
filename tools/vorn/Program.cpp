// `vorn program`: JSON lines that name entries and fields into JSON lines with image and address.
#include "Verbs.h"

#include "Entry.h"
#include "Error.h"
#include "Plan.h"
#include "Record.h"
#include "Text.h"
#include "Values.h"

#include <charconv>
#include <map>
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

} // namespace

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

} // namespace Vorn
