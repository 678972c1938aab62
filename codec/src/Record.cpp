// Records: JSON objects that say which entry to compose from which fields.
#include <Vorn/Record.h>

#include "JsonFlaw.h"

#include <Vorn/Error.h>
#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Vorn {

namespace {

using Key = Record::Key;

constexpr std::array<std::string_view, Record::keyCount> keyNames{ "table", "chip",  "variant",
                                                                   "entry", "array", "identifier",
                                                                   "from",  "fields" };

constexpr std::array<std::string_view, Record::keyCount> keyTypes{ "a string", "a name or a number",
                                                                   "a number", "a number",
                                                                   "a number", "a number",
                                                                   "a string", "an object" };

constexpr auto requiredKeys = { Key::table, Key::chip, Key::fields };

constexpr std::string_view punctuation = "{}[],:";
constexpr std::string_view delimiters = " \t\r{}[],:\"";

constexpr bool contains( std::string_view text, char c ) {
   return text.find( c ) != std::string_view::npos;
}

// The end of the token that begins there, if it is one that the JSON parser takes.
std::size_t tokenEnd( std::string_view line, std::size_t begin ) {
   if( contains( punctuation, line[begin] ) ) {
      return begin + 1;
   }
   if( line[begin] != '"' ) {
      return std::min( line.find_first_of( delimiters, begin ), line.size() );
   }
   std::size_t end = begin + 1;
   while( end < line.size() && line[end] != '"' ) {
      end += line[end] == '\\' ? 2 : 1;
   }
   return std::min( end + 1, line.size() );
}

// The beginning of the first token for which isIt( begin, end ) holds, else the end of the line.
template<class Predicate>
std::size_t beginOfToken( std::string_view line, Predicate isIt ) {
   constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
   std::size_t begin = line.starts_with( byteOrderMark ) ? byteOrderMark.size() : 0;
   while( ( begin = line.find_first_not_of( " \t\r", begin ) ) != std::string_view::npos ) {
      const std::size_t end = tokenEnd( line, begin );
      if( isIt( begin, end ) ) {
         return begin;
      }
      begin = end;
   }
   return line.size();
}

} // namespace

// Receives the JSON parser's events. Unlike a finished JSON value they still show a key that
// stands twice, and the order of the fields.
class RecordParser {
public:
   explicit RecordParser( Record& record ) : record_( record ) {}

   bool start_object( std::size_t ) {
      ++record_.token_;
      if( depth_ == 2 || ( depth_ == 1 && key_ != Key::fields ) ) {
         refuse( "an object" );
      }
      ++depth_;
      return true;
   }

   bool end_object() {
      if( --depth_ == 0 ) {
         requireKeys();
      }
      return true;
   }

   bool key( std::string& name ) {
      ++record_.token_;
      if( depth_ == 2 ) {
         if( record_.fieldCount_ == record_.fields_.size() ) {
            record_.fields_.emplace_back();
         }
         Record::FieldValue& field = record_.fields_[record_.fieldCount_++];
         field.name.swap( name );
         field.given.clear();
         field.token = record_.token_;
         return true;
      }
      const auto found = std::find( keyNames.begin(), keyNames.end(), name );
      if( found == keyNames.end() ) {
         throw Error( "unknown key " + inQuotes( name ) + suggestion( name, keyNames ) );
      }
      key_ = static_cast<Key>( found - keyNames.begin() );
      if( record_.has( key_ ) ) {
         throw Error( "key " + inQuotes( name ) + " is given twice" );
      }
      record_.tokens_[Record::indexOf( key_ )] = record_.token_ + 1;
      return true;
   }

   bool string( std::string& text ) {
      ++record_.token_;
      if( depth_ == 2 ) {
         Record::FieldValue& field = lastField();
         if( text != maskWord ) {
            field.value = parseValue( text, field.name );
         }
         field.given.swap( text );
         return true;
      }
      switch( depth_ == 1 ? key_ : Key::fields ) {
      case Key::table:
         record_.table_.swap( text );
         return true;
      case Key::chip:
         record_.chip_ = &chipOf( text );
         return true;
      case Key::from:
         record_.from_.swap( text );
         return true;
      default:
         refuse( "a string" );
      }
   }

   bool number_unsigned( U64 number ) {
      ++record_.token_;
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      if( depth_ == 2 ) {
         lastField().value = Value( number );
      } else if( key_ == Key::chip ) {
         record_.chip_ = &chipOf( number );
      } else {
         record_.numbers_[Record::indexOf( key_ )] = number;
      }
      return true;
   }

   // Called for what begins with a minus sign.
   bool number_integer( std::int64_t number ) {
      ++record_.token_;
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      throw Error( "negative value " + std::to_string( number ) + " for " + valueName() +
                   "; a value is 0 or more" );
   }

   // Called for fractions and exponents, and for integers beyond 64 bits.
   bool number_float( double, const std::string& text ) {
      ++record_.token_;
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      const bool integer = text.find_first_not_of( "0123456789" ) == std::string::npos;
      throw Error( "bad number " + shown( text ) + " for " + valueName() +
                   ( integer ? "; an integer beyond 64 bits is written as a string"
                             : "; a value is an integer of 0 or more" ) );
   }

   bool boolean( bool value ) { return refuseNext( value ? "true" : "false" ); }
   bool null() { return refuseNext( "null" ); }
   bool start_array( std::size_t ) { return refuseNext( "an array" ); }

   // Never called: arrays are refused and the text has no binary values.
   bool end_array() { return false; }
   bool binary( nlohmann::json::binary_t& ) { return false; }

   // `position` is the number of bytes read, the last of them part of what is wrong.
   bool parse_error( std::size_t position, const std::string& token,
                     const nlohmann::detail::exception& exception ) {
      const JsonFlaw flaw( exception );
      if( flaw.isOverflow() ) {
         return number_float( 0, token );
      }
      record_.token_ = 0;
      record_.byte_ = flaw.is( "invalid string" )
                         ? position - 1
                         : beginOfWrongToken( position, flaw.is( "invalid" ) );
      const bool isBareValue = depth_ == 2 && flaw.is( "invalid literal" );
      throw Error( flaw.message() +
                   ( isBareValue ? "; all values but decimal numbers stand in quotes" : "" ) );
   }

private:
   // An invalid token may be recognised only by what follows it.
   std::size_t beginOfWrongToken( std::size_t position, bool isInvalid ) const {
      const auto line = record_.line_;
      if( isInvalid && ( position > line.size() || contains( delimiters, line[position - 1] ) ) ) {
         --position;
      }
      return beginOfToken( line, [&]( std::size_t, std::size_t end ) { return end >= position; } );
   }

   Record::FieldValue& lastField() { return record_.fields_[record_.fieldCount_ - 1]; }

   void requireKeys() {
      for( const Key key : requiredKeys ) {
         if( !record_.has( key ) ) {
            record_.token_ = 1;
            throw Error( "missing key " + inQuotes( nameOf( key ) ) +
                         "; every line needs table, chip and fields" );
         }
      }
   }

   static std::string_view nameOf( Key key ) { return keyNames[Record::indexOf( key )]; }

   // Whether a number of any kind may stand here.
   bool takesNumber() const {
      return depth_ == 2 ||
             ( depth_ == 1 && key_ != Key::table && key_ != Key::from && key_ != Key::fields );
   }

   std::string valueName() {
      return depth_ == 2 ? shown( lastField().name ) : std::string( nameOf( key_ ) );
   }

   bool refuseNext( std::string_view what ) {
      ++record_.token_;
      refuse( what );
   }

   // Ends with what may stand where `what` was found.
   [[noreturn]] void refuse( std::string_view what ) {
      const std::string given = ", not " + std::string( what );
      if( depth_ == 0 ) {
         throw Error( "a line holds one JSON object" + given );
      }
      if( depth_ == 1 ) {
         throw Error( "the value of " + inQuotes( nameOf( key_ ) ) + " is " +
                      std::string( keyTypes[Record::indexOf( key_ )] ) + given );
      }
      throw Error( "the value of field " + inQuotes( lastField().name ) +
                   " is a number or a string" + given );
   }

   Record& record_;
   int depth_ = 0; // of objects: 1 in the line's own, 2 in its "fields"
   Key key_ = Key::table;
};

void Record::parse( std::string_view line ) {
   line_ = line;
   numbers_ = {};
   tokens_ = {};
   token_ = 0;
   fieldCount_ = 0;
   // The JSON parser would take it for the end of the text.
   if( byte_ = line.find( '\0' ); byte_ != std::string_view::npos ) {
      throw Error( "not valid JSON: the line holds a zero byte" );
   }
   RecordParser parser( *this );
   nlohmann::json::sax_parse( line.begin(), line.end(), &parser );
}

std::size_t Record::column() const {
   std::size_t left = token_;
   const auto isIt = [&]( std::size_t begin, std::size_t ) {
      return !contains( "}],:", line_[begin] ) && --left == 0;
   };
   return columnOf( line_, token_ == 0 ? byte_ : beginOfToken( line_, isIt ) );
}

namespace {

// The key whose value is to blame where the registry doesn't have the record's pair.
Key wrongKeyOf( const Record& record ) {
   const auto tables = allTables();
   if( std::find( tables.begin(), tables.end(), record.table() ) == tables.end() ) {
      return Key::table;
   }
   const bool isServed = variantsOn( record.table(), record.chip().number ).has_value();
   return isServed && record.has( Key::variant ) ? Key::variant : Key::chip;
}

// The same where the pair doesn't have such an entry.
Key wrongKeyOf( const Layout& layout, const EntryIndex& index ) {
   if( index.entry >= layout.info().entries ) {
      return Key::entry;
   }
   return index.array >= layout.info().arrayElements ? Key::array : Key::identifier;
}

} // namespace

Composed RecordComposer::compose( std::string_view line ) {
   record_.parse( line );
   Composer& composer = composerOf();
   const auto address = addressIn( composer.layout() );
   if( record_.has( Key::from ) ) {
      record_.lookAt( Key::from );
      const Image from = imageOf( record_.from() );
      requirePair( composer.layout(), from );
      composer.reset( from.bytes );
   } else {
      composer.reset();
   }
   for( const auto& field : record_.fields() ) {
      setField( composer, field );
   }
   return { composer.layout(), record_.index(), address, composer.image() };
}

Composer& RecordComposer::composerOf() {
   const PairKey key( record_.table(), record_.chip().number, record_.variant() );
   if( last_ != composers_.end() && last_->first == key ) {
      return last_->second;
   }
   last_ = composers_.find( key );
   if( last_ == composers_.end() ) {
      record_.lookAt( wrongKeyOf( record_ ) );
      const Layout layout( record_.table(), record_.chip().number, record_.variant() );
      const PairKey lasting( layout.table(), layout.chip().number, layout.variant() );
      last_ = composers_.emplace( lasting, Composer( layout, Overlap::laterHolds ) ).first;
   }
   return last_->second;
}

std::optional<Address> RecordComposer::addressIn( const Layout& layout ) {
   const EntryIndex index = record_.index();
   try {
      return layout.address( index );
   } catch( const Error& ) {
      record_.lookAt( wrongKeyOf( layout, index ) );
      throw;
   }
}

void RecordComposer::setField( Composer& composer, const Record::FieldValue& given ) {
   record_.lookAtName( given );
   const Field& field = composer.open( given.name );
   record_.lookAtValue( given );
   if( given.given == maskWord ) {
      composer.fill( field );
   } else {
      composer.set( field, given.value, given.given );
   }
}

std::string recordOf( const Layout& layout, const EntryIndex& index, std::span<const U8> image ) {
   nlohmann::ordered_json record{
      { "table", layout.table() },     { "chip", layout.chip().name },
      { "variant", layout.variant() }, { "entry", index.entry },
      { "array", index.array },        { "identifier", index.identifier },
   };
   const auto settings = settingsOf( layout, image );
   if( const auto composed = compose( layout, settings, Overlap::laterHolds );
       !std::equal( composed.begin(), composed.end(), image.begin(), image.end() ) ) {
      std::string from;
      appendHex( from, image );
      record["from"] = from;
   }
   auto& fields = record["fields"] = nlohmann::ordered_json::object();
   for( const FieldValue& setting : settings ) {
      fields[std::string( setting.name )] = hexOf( setting.value );
   }
   return record.dump();
}

} // namespace Vorn
