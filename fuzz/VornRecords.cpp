// Any bytes as the lines of `vorn program`, and the right ones among them as arguments of `vorn
// encode`.
//
// Both have to take the same and to make the same of it, in each form of the output, and that has
// to be what a model with one bool for each bit makes of it. `vorn decode` has to take it, too.
// Before a line that it refuses program prints what it made of the lines before, and nothing else.
#include "Finding.h"
#include "Notations.h"
#include "Vorn.h"

#include <verbs/Decode.h>
#include <verbs/Program.h>

#include <algorithm>
#include <set>
#include <utility>

namespace Fuzz {
namespace {

using Testing::Bits;
using Testing::Image;
using Vorn::EncodeArguments;

Outcome programmed( const std::string& form, const std::string& input ) {
   Vorn::ProgramArguments arguments;
   arguments.form = Vorn::formNamed( form );
   return Fuzz::programmed( std::move( arguments ), input );
}

std::string textOf( const Json& value ) {
   return value.is_string() ? value.get<std::string>() : value.dump();
}

// The record as arguments.
EncodeArguments argumentsOf( const Json& record ) {
   EncodeArguments arguments{ pairIn( record ), {}, {}, {}, {}, Vorn::formNamed( "json" ) };
   const auto take = [&]( const char* key, std::string& to ) {
      if( record.contains( key ) ) {
         to = textOf( record.at( key ) );
      }
   };
   take( "entry", arguments.index.entry );
   take( "array", arguments.index.array );
   take( "identifier", arguments.index.identifier );
   if( record.contains( "from" ) ) {
      arguments.from = textOf( record.at( "from" ) );
   }
   for( const auto& [name, value] : record.at( "fields" ).items() ) {
      arguments.fields.push_back( name + '=' + textOf( value ) );
   }
   return arguments;
}

// Whether the line is an object whose keys and types are those of a record, with no key twice.
bool isRecord( const std::string& line ) {
   // The JSON parser would take a zero byte for the end of the line.
   if( line.find( '\0' ) != std::string::npos || !Json::accept( line ) ) {
      return false;
   }
   std::set<std::pair<int, std::string>> keys;
   bool isTwice = false;
   const Json object = Json::parse( line, [&]( int depth, Json::parse_event_t event, Json& key ) {
      isTwice = isTwice || ( event == Json::parse_event_t::key &&
                             !keys.emplace( depth, key.get<std::string>() ).second );
      return true;
   } );
   const auto isString = []( const Json& value ) { return value.is_string(); };
   const auto isNumber = []( const Json& value ) { return value.is_number_unsigned(); };
   const auto isEither = [=]( const Json& value ) {
      return isString( value ) || isNumber( value );
   };
   const auto areFields = [=]( const Json& value ) {
      return value.is_object() && std::all_of( value.begin(), value.end(), isEither );
   };
   const auto isRight = [=]( const std::string& key, const Json& value ) {
      return key == "table" || key == "from" ? isString( value )
             : key == "chip"                 ? isEither( value )
             : key == "fields"               ? areFields( value )
             : key == "variant" || key == "entry" || key == "array" || key == "identifier"
                ? isNumber( value )
                : false;
   };
   bool areRight = !isTwice && object.is_object() && object.contains( "table" ) &&
                   object.contains( "chip" ) && object.contains( "fields" );
   for( const auto& [key, value] : object.items() ) {
      areRight = areRight && isRight( key, value );
   }
   return areRight;
}

// Requires that the image is what the arguments say, as far as the model can read it.
void requireModel( const EncodeArguments& arguments, const Image& image ) {
   const auto layout = Vorn::layoutOf( arguments.pair );
   Image model = arguments.from ? Vorn::imageOf( *arguments.from ).bytes : layout.blank();
   model.resize( layout.bytes() );
   for( const auto& argument : arguments.fields ) {
      const auto equals = argument.find( '=' );
      const auto& field = layout.field( argument.substr( 0, equals ) );
      const auto given = argument.substr( equals + 1 );
      const auto value = given == "mask" ? Testing::lowOnes( field.width ) : numberIn( given );
      if( !value ) {
         return;
      }
      if( ( *value >> field.width ).any() ) {
         found( argument + " is taken, which is too large" );
      }
      Testing::bitsAtAre( model, field.offset, field.width, *value );
   }
   if( model != image ) {
      found( "the image is " + digitsOf( image ) + ", not " + digitsOf( model ) );
   }
}

void requireRight( const std::string& record, const std::string& made ) {
   // What is printed may have more keys, which encode has no arguments for.
   if( !isRecord( record ) ) {
      return;
   }
   const auto arguments = argumentsOf( Json::parse( record ) );
   const Outcome byEncode = encoded( arguments );
   if( byEncode.out != made + '\n' ) {
      found( "encode makes " + byEncode.out + byEncode.error + " of " + record );
   }
   requireModel( arguments, imageIn( Json::parse( made ).at( "image" ) ) );
}

void requireRefused( const std::string& record, const std::string& error ) {
   if( isRecord( record ) && encoded( argumentsOf( Json::parse( record ) ) ).error.empty() ) {
      found( "encode takes " + record + ", but program says " + error );
   }
}

// Requires that the other forms have the same images.
void requireForms( const std::string& input, const std::vector<Json>& objects ) {
   const auto bytes = linesPrinted( programmed( "bytes", input ).out );
   const auto words = linesPrinted( programmed( "words", input ).out );
   bool areSame = bytes.size() == objects.size() && words.size() == objects.size();
   for( std::size_t i = 0; areSame && i < objects.size(); ++i ) {
      const std::string image = objects[i].at( "image" );
      areSame = bytes[i] == image && Vorn::imageOf( words[i] ).bytes == imageIn( image );
   }
   if( !areSame ) {
      found( "other images as bytes or as words" );
   }
}

// Requires that what is printed can be decoded.
void requireDecodable( const std::string& printed, std::size_t count ) {
   Vorn::DecodeArguments arguments;
   arguments.paths = { "-" };
   arguments.form = Vorn::DecodeForm::json;
   arguments.printsEmpty = true; // a record may set its tag to 0
   const Outcome outcome =
      outcomeOf( [&]( Vorn::Output& output ) { Vorn::decode( arguments, output ); }, printed );
   const auto decoded = objectsIn( outcome.out );
   if( outcome.status != 0 || decoded.size() != count ) {
      found( "decode says " + outcome.error );
   }
   std::for_each( decoded.begin(), decoded.end(), requireRoundTrip );
}

void run( const std::string& input ) {
   if( !isPlain( input ) ) {
      return;
   }
   const std::string mark = "\xef\xbb\xbf"; // of UTF-8
   std::vector<std::string> records;
   for( const auto& line : linesOf( input ) ) {
      const auto begin =
         line.find_first_not_of( " \t\v\f\r", line.starts_with( mark ) ? mark.size() : 0 );
      if( begin != std::string::npos && line[begin] != '#' ) {
         records.push_back( line );
      }
   }
   const Outcome outcome = programmed( "json", input );
   const auto made = linesPrinted( outcome.out );
   if( made.size() + ( outcome.status == 0 ? 0 : 1 ) > records.size() ||
       ( outcome.status == 0 && made.size() < records.size() ) ) {
      found( "not a line for each record" );
   }
   for( std::size_t i = 0; i < made.size(); ++i ) {
      requireRight( records[i], made[i] );
   }
   requireForms( input, objectsIn( outcome.out ) );
   requireDecodable( outcome.out, made.size() );
   if( outcome.status != 0 ) {
      requireRefused( records[made.size()], outcome.error );
      if( programmed( "json", linesBefore( outcome.error, input ) ) !=
          Outcome{ outcome.out, "", 0 } ) {
         found( "something of a bad record is printed" );
      }
   }
}

void runMade( FuzzedDataProvider& input ) {
   std::string records;
   for( auto left = input.ConsumeIntegralInRange( 1, 3 ); left > 0; --left ) {
      const auto& pair = somePair( input );
      const auto layout = Vorn::layoutOf( pair );
      Json record{ { "table", pair.table },
                   { "chip", pair.chip },
                   { "variant", layout.variant() } };
      record["entry"] = input.ConsumeIntegralInRange( 0u, layout.info().entries );
      auto& fields = record["fields"] = Json::object();
      for( auto count = input.ConsumeIntegralInRange( 0, 4 ); count > 0; --count ) {
         const auto fieldsOf = layout.fields();
         const auto& field = someOf( input, fieldsOf );
         fields[std::string( field.name )] = someValue( input, field.width );
      }
      if( input.ConsumeBool() ) {
         record["from"] = digitsOf( tagged( layout, input.ConsumeBytes<U8>( layout.bytes() ) ) );
      }
      records += record.dump() + '\n';
   }
   run( records );
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   FuzzedDataProvider input( data, size );
   // The choice is in the last byte, after the text.
   if( input.ConsumeBool() ) {
      Fuzz::runMade( input );
   } else {
      Fuzz::run( input.ConsumeRemainingBytesAsString() );
   }
   return 0;
}
