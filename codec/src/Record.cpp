// Records: JSON objects that say which entry to compose from which fields.
#include <Vorn/Record.h>

#include "ImageText.h"
#include "JsonFlaw.h"
#include "RecordFill.h"

#include <Vorn/Error.h>
#include <Vorn/Locate.h>
#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Vorn {

namespace {

using Key = Record::Key;

constexpr std::array<std::string_view, recordKeyNames.size()> keyTypes{
   "a string", "a name or a number", "a number",  "a number", "a number",
   "a number", "a string",           "an object", "a string", "a number or a string",
   "a number", "a number",           "a string"
};

// The keys that are suggested for a wrong one.
constexpr auto ownKeyNames = std::span( recordKeyNames ).first( 10 );

constexpr auto requiredKeys = { Key::table, Key::chip, Key::fields };

constexpr std::string_view punctuation = "{}[],:";
constexpr std::string_view delimiters = " \t\r\n{}[],:\"";

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
   std::size_t begin = line.size() - withoutMark( line ).size();
   while( ( begin = line.find_first_not_of( " \t\r\n", begin ) ) != std::string_view::npos ) {
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
   explicit RecordParser( Record& record ) : record_( record ), fill_( record ) {}

   bool start_object( std::size_t ) {
      ++record_.token_;
      if( depth_ == 2 || ( depth_ == 1 && key_ != RecordKey::fields ) ) {
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
         fill_.addField( name, record_.token_ );
         return true;
      }
      const auto found = std::find( recordKeyNames.begin(), recordKeyNames.end(), name );
      if( found == recordKeyNames.end() ) {
         throw Error( "unknown key " + inQuotes( name ) + suggestion( name, ownKeyNames ) );
      }
      key_ = static_cast<RecordKey>( found - recordKeyNames.begin() );
      fill_.open( key_, record_.token_ + 1 );
      return true;
   }

   bool string( std::string& text ) {
      ++record_.token_;
      if( depth_ == 2 ) {
         fill_.takeValue( text );
         return true;
      }
      constexpr std::array texts{ RecordKey::table, RecordKey::chip,    RecordKey::from,
                                  RecordKey::image, RecordKey::address, RecordKey::file };
      if( depth_ != 1 || std::find( texts.begin(), texts.end(), key_ ) == texts.end() ) {
         refuse( "a string" );
      }
      fill_.take( key_, text );
      return true;
   }

   bool number_unsigned( U64 number ) {
      ++record_.token_;
      if( !takesNumber() ) {
         refuse( "a number" );
      }
      if( depth_ == 2 ) {
         fill_.lastField().value = Value( number );
      } else {
         fill_.take( key_, number );
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
   bool null() {
      constexpr std::array needed{ RecordKey::table, RecordKey::chip, RecordKey::fields };
      if( depth_ != 1 || std::find( needed.begin(), needed.end(), key_ ) != needed.end() ) {
         return refuseNext( "null" );
      }
      ++record_.token_;
      fill_.leave( key_ );
      return true;
   }
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
      if( flaw.is( "unexpected number literal; expected '}'" ) ) {
         requireNotOctal();
      }
      const bool isBareValue = depth_ == 2 && flaw.is( "invalid literal" );
      throw Error( flaw.message() + flaw.lineAdvice( record_.line_ ) +
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

   // Requires that the value at byte_ has no 0 before other digits: JSON takes that for a value of
   // its own.
   void requireNotOctal() {
      const auto begin = record_.byte_;
      const auto token = record_.line_.substr( begin, tokenEnd( record_.line_, begin ) - begin );
      if( token.size() > 1 && token[0] == '0' ) {
         parseNumber( token, valueName() );
      }
   }

   void requireKeys() {
      for( const Key key : requiredKeys ) {
         if( !record_.has( key ) && !( key == Key::fields && record_.isPrinted() ) ) {
            record_.token_ = 1;
            throw Error( "missing key " + inQuotes( recordKeyNames[Record::indexOf( key )] ) +
                         "; every line needs table, chip and fields" );
         }
      }
   }

   // Whether a number of any kind may stand here.
   bool takesNumber() const {
      constexpr std::array others{ RecordKey::table, RecordKey::from, RecordKey::fields,
                                   RecordKey::image, RecordKey::file };
      return depth_ == 2 ||
             ( depth_ == 1 && std::find( others.begin(), others.end(), key_ ) == others.end() );
   }

   std::string valueName() {
      return depth_ == 2 ? shown( fill_.lastField().name ) : std::string( nameOf( key_ ) );
   }

   bool refuseNext( std::string_view what ) {
      ++record_.token_;
      refuse( what );
   }

   // Ends with what may stand where `what` was found.
   [[noreturn]] void refuse( std::string_view what ) {
      const std::string given = ", not " + std::string( what );
      if( depth_ == 0 ) {
         const bool isArray = what == "an array";
         throw Error( "a line holds one JSON object" + given +
                      ( isArray ? "; `jq -c '.[]'` writes each object on a line" : "" ) );
      }
      if( depth_ == 1 ) {
         throw Error( "the value of " + inQuotes( nameOf( key_ ) ) + " is " +
                      std::string( keyTypes[static_cast<std::size_t>( key_ )] ) + given );
      }
      throw Error( "the value of field " + inQuotes( fill_.lastField().name ) +
                   " is a number or a string" + given );
   }

   Record& record_;
   RecordFill fill_;
   int depth_ = 0; // of objects: 1 in the line's own, 2 in its "fields"
   RecordKey key_ = RecordKey::table;
};

void Record::parse( std::string_view line ) {
   RecordFill( *this ).begin( line );
   // The JSON parser would take it for the end of the text.
   if( const auto zero = line.find( '\0' ); zero != std::string_view::npos ) {
      byte_ = zero;
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

std::optional<U32> Record::address() const {
   return numbers_.addressToken ? std::optional( static_cast<U32>( numbers_.address ) )
                                : std::nullopt;
}

std::optional<U8> Record::accessType() const {
   return numbers_.accessTypeToken ? std::optional( static_cast<U8>( numbers_.accessType ) )
                                   : std::nullopt;
}

std::optional<U8> Record::destBlock() const {
   return numbers_.destBlockToken ? std::optional( static_cast<U8>( numbers_.destBlock ) )
                                  : std::nullopt;
}

Composed RecordComposer::compose( std::string_view line ) {
   record_.parse( line );
   return composeRecord( Overlap::laterHolds );
}

// The entry of the record that has been read.
Composed RecordComposer::composeRecord( Overlap overlap ) {
   Composer& composer = composerOf();
   composer.overlap_ = overlap;
   if( record_.address() && !record_.has( Key::entry ) ) {
      locate( composer.layout() );
   }
   const auto address = addressIn( composer.layout() );
   requirePlace( address );
   begin( composer );
   if( record_.isPrinted() ) {
      const std::vector<U8> image( composer.image().begin(), composer.image().end() );
      for( const auto& field : record_.fields() ) {
         const Layout& layout = composer.layout();
         const bool isSame = field.given != maskWord && layout.has( field.name ) &&
                             layout.value( image, layout.field( field.name ) ) == field.value;
         if( !isSame ) {
            composer.layout().requireEntry(
               composer.image() ); // one that nobody has written is none
            setField( composer, field );
         }
      }
   } else {
      for( const auto& field : record_.fields() ) {
         setField( composer, field );
      }
   }
   return { composer.layout(), record_.index(), address, composer.image() };
}

void RecordComposer::lookAtPlace() {
   const auto& numbers = record_.numbers_;
   record_.token_ = record_.has( Key::entry ) ? record_.tokens_[Record::indexOf( Key::entry )]
                    : numbers.addressToken    ? numbers.addressToken
                                              : record_.tokens_[Record::indexOf( Key::table )];
}

// Begins the entry with the image of the line, or as a fresh one.
void RecordComposer::begin( Composer& composer ) {
   if( !record_.has( Key::from ) && !record_.isPrinted() ) {
      composer.reset();
      return;
   }
   record_.token_ = record_.isPrinted() ? record_.numbers_.imageToken
                                        : record_.tokens_[Record::indexOf( Key::from )];
   const Layout& layout = composer.layout();
   Image from = imageOf( record_.from() );
   requirePair( layout, from );
   if( record_.isPrinted() && from.bytes.size() < layout.bytes() ) {
      // It ends at its last field, as images of dumps may.
      layout.requireFields( from.bytes );
      from.bytes.resize( layout.bytes() );
   }
   const auto isZero = []( U8 byte ) { return byte == 0; };
   if( record_.isPrinted() && from.bytes.size() == layout.bytes() &&
       std::all_of( from.bytes.begin(), from.bytes.end(), isZero ) ) {
      composer.clear();
   } else {
      composer.reset( from.bytes );
   }
}

// Finds the entry of the line by its address.
void RecordComposer::locate( const Layout& layout ) {
   const U32 address = *record_.address();
   record_.token_ = record_.numbers_.addressToken;
   for( const Location& found : Memory( layout ).at( address ) ) {
      const auto& [entry, array, identifier] = found.index;
      if( ( record_.has( Key::array ) && array != record_.numbers_.array ) ||
          ( record_.has( Key::identifier ) && identifier != record_.numbers_.identifier ) ||
          ( record_.destBlock() && found.address.destBlock != *record_.destBlock() ) ) {
         continue;
      }
      record_.numbers_.entry = entry;
      record_.numbers_.array = array;
      record_.numbers_.identifier = identifier;
      return;
   }
   throw Error( "no entry of " + layout.pairText() + " lies at " + hexOf( address ) );
}

// Requires that the address in the line, or the part of it that is given, is the entry's.
void RecordComposer::requirePlace( const std::optional<Address>& address ) {
   const auto require = [&]( std::string_view name, auto given, U32 token, U64 own, auto textOf ) {
      if( !given || ( address && *given == own ) ) {
         return;
      }
      record_.token_ = token;
      const std::string entry = " of entry " + std::to_string( record_.numbers_.entry );
      throw Error( std::string( name ) + ' ' + textOf( *given ) + " is not that" + entry +
                   ( address ? ", which is " + textOf( own ) : ", which has no address" ) );
   };
   const auto& numbers = record_.numbers_;
   const auto asDecimal = []( U64 number ) { return std::to_string( number ); };
   require( "address", record_.address(), numbers.addressToken, address ? address->schanAddress : 0,
            []( U64 number ) { return hexOf( number ); } );
   require( "accessType", record_.accessType(), numbers.accessTypeToken,
            address ? address->accessType : 0, asDecimal );
   require( "destBlock", record_.destBlock(), numbers.destBlockToken,
            address ? address->destBlock : 0, asDecimal );
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
   if( given.given != maskWord && composer.holds( given.name, given.value ) ) {
      return;
   }
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
