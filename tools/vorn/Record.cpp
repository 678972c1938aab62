// One line of `vorn program`: a JSON object that says which entry to compose from which fields.
#include "Record.h"

#include "Error.h"
#include "Suggest.h"
#include "Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstring>

namespace Vorn {

namespace {

enum Key : std::size_t { table, chip, variant, entry, array, identifier, fields };

constexpr std::array<std::string_view, 7> keyNames{ "table", "chip",       "variant", "entry",
                                                    "array", "identifier", "fields" };

constexpr std::array<std::string_view, 7> keyTypes{
   "a string", "a name or a number", "a number", "a number", "a number", "a number", "an object",
};

constexpr auto requiredKeys = { Key::table, Key::chip, Key::fields };

} // namespace

// Receives the JSON parser's events. Unlike a finished JSON value they still show a key that
// stands twice, and the order of the fields.
class RecordParser {
public:
   explicit RecordParser( Record& record ) : record_( record ) {}

   bool start_object( std::size_t ) {
      if( depth_ == 1 && key_ != Key::fields ) {
         refuse( "an object" );
      } else if( depth_ == 2 ) {
         refuse( "an object" );
      }
      ++depth_;
      return true;
   }

   bool end_object() {
      if( --depth_ == 0 ) {
         for( const Key key : requiredKeys ) {
            if( !seen_[key] ) {
               throw Error( "missing key " + inQuotes( keyNames[key] ) +
                            "; every line needs table, chip and fields" );
            }
         }
      }
      return true;
   }

   bool key( std::string& name ) {
      if( depth_ == 2 ) {
         if( record_.fieldCount_ == record_.fields_.size() ) {
            record_.fields_.emplace_back();
         }
         Record::FieldValue& field = record_.fields_[record_.fieldCount_++];
         field.name.swap( name );
         field.given.clear();
         return true;
      }
      const auto found = std::find( keyNames.begin(), keyNames.end(), name );
      if( found == keyNames.end() ) {
         throw Error( "unknown key " + inQuotes( name ) + suggestion( name, keyNames ) );
      }
      key_ = static_cast<Key>( found - keyNames.begin() );
      if( seen_[key_] ) {
         throw Error( "key " + inQuotes( name ) + " is given twice" );
      }
      seen_[key_] = true;
      return true;
   }

   bool string( std::string& text ) {
      if( depth_ == 2 ) {
         Record::FieldValue& field = lastField();
         field.value = parseValue( text, field.name );
         field.given.swap( text );
      } else if( depth_ == 1 && key_ == Key::table ) {
         record_.table_.swap( text );
      } else if( depth_ == 1 && key_ == Key::chip ) {
         record_.chip_ = &chipOf( text );
      } else {
         refuse( "a string" );
      }
      return true;
   }

   bool number_unsigned( U64 number ) {
      if( depth_ == 2 ) {
         lastField().value = Value( number );
         return true;
      }
      switch( depth_ == 1 ? key_ : Key::fields ) {
      case Key::chip:
         record_.chip_ = &chipOf( number );
         return true;
      case Key::variant:
         record_.variant_ = number;
         return true;
      case Key::entry:
         record_.place_.entry = number;
         return true;
      case Key::array:
         record_.place_.array = number;
         return true;
      case Key::identifier:
         record_.place_.identifier = number;
         return true;
      case Key::table:
      case Key::fields:
         break;
      }
      refuse( "a number" );
   }

   // Called for what begins with a minus sign.
   bool number_integer( std::int64_t number ) {
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      throw Error( "negative value " + std::to_string( number ) + " for " + valueName() +
                   "; a value is 0 or more" );
   }

   // Called for fractions and exponents, and for integers beyond 64 bits.
   bool number_float( double, const std::string& text ) {
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      const bool integer = text.find_first_not_of( "0123456789" ) == std::string::npos;
      throw Error( "bad number " + shown( text ) + " for " + valueName() +
                   ( integer ? "; an integer beyond 64 bits is written as a string"
                             : "; a value is an integer of 0 or more" ) );
   }

   bool boolean( bool value ) { refuse( value ? "true" : "false" ); }
   bool null() { refuse( "null" ); }
   bool start_array( std::size_t ) { refuse( "an array" ); }

   // Never called: arrays are refused and the text has no binary values.
   bool end_array() { return false; }
   bool binary( nlohmann::json::binary_t& ) { return false; }

   bool parse_error( std::size_t position, const std::string& token,
                     const nlohmann::detail::exception& exception ) {
      if( exception.id == numberOverflow ) {
         return number_float( 0, token );
      }
      // What follows the parser's own account of the place, which counts lines within the line.
      constexpr std::string_view column = "column ";
      std::string_view reason = exception.what();
      reason.remove_prefix( std::min( reason.find( column ), reason.size() ) );
      reason.remove_prefix( std::min( reason.find( ": " ), reason.size() ) );
      throw Error( "not valid JSON at column " + std::to_string( position ) +
                   shown( reason, 160 ) );
   }

private:
   static constexpr int numberOverflow = 406;

   Record::FieldValue& lastField() { return record_.fields_[record_.fieldCount_ - 1]; }

   // Whether a number of any kind may stand here.
   bool takesNumber() const {
      return depth_ == 2 || ( depth_ == 1 && key_ != Key::table && key_ != Key::fields );
   }

   std::string valueName() {
      if( depth_ == 0 ) {
         return "a line";
      }
      return depth_ == 2 ? shown( lastField().name ) : std::string( keyNames[key_] );
   }

   // Ends with what may stand where `what` was found.
   [[noreturn]] void refuse( std::string_view what ) {
      const std::string given = ", not " + std::string( what );
      if( depth_ == 0 ) {
         throw Error( "a line holds one JSON object" + given );
      }
      if( depth_ == 1 ) {
         throw Error( "the value of " + inQuotes( keyNames[key_] ) + " is " +
                      std::string( keyTypes[key_] ) + given );
      }
      throw Error( "the value of field " + inQuotes( lastField().name ) +
                   " is a number or a string" + given );
   }

   Record& record_;
   int depth_ = 0; // of objects: 1 in the line's own, 2 in its "fields"
   Key key_ = Key::table;
   std::array<bool, keyNames.size()> seen_{};
};

void Record::parse( std::string_view line ) {
   if( std::memchr( line.data(), '\0', line.size() ) ) {
      // The JSON parser would take it for the end of the text.
      throw Error( "not valid JSON: the line holds a zero byte" );
   }
   chip_ = nullptr;
   variant_ = 0;
   place_ = {};
   fieldCount_ = 0;
   RecordParser parser( *this );
   nlohmann::json::sax_parse( line.begin(), line.end(), &parser );
}

} // namespace Vorn
