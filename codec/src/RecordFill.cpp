// Fills a record key by key, for the readers of JSON and of CSV.
#include "RecordFill.h"

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <type_traits>

namespace Vorn {

namespace {

void requireAtMost( RecordKey key, U64 number, U64 largest ) {
   if( number > largest ) {
      const bool isAddress = key == RecordKey::address;
      throw Error( std::string( nameOf( key ) ) + ' ' +
                   ( isAddress ? hexOf( number ) : std::to_string( number ) ) +
                   " is out of range; it is at most " +
                   ( isAddress ? hexOf( largest ) : std::to_string( largest ) ) );
   }
}

} // namespace

void RecordFill::begin( std::string_view line ) {
   record_.line_ = line;
   record_.numbers_ = {};
   record_.tokens_ = {};
   record_.token_ = 0;
   record_.byte_ = 0;
   record_.fieldCount_ = 0;
}

void RecordFill::lookAtByte( std::size_t byte ) {
   record_.token_ = 0;
   record_.byte_ = byte;
}

// Calls take() with the token of the value of the key, where the record keeps it.
template<class Take>
void RecordFill::withToken( RecordKey key, Take take ) {
   Record::Numbers& numbers = record_.numbers_;
   switch( key ) {
   case RecordKey::image:
      return take( numbers.imageToken );
   case RecordKey::address:
      return take( numbers.addressToken );
   case RecordKey::accessType:
      return take( numbers.accessTypeToken );
   case RecordKey::destBlock:
      return take( numbers.destBlockToken );
   case RecordKey::file:
      return take( numbers.fileToken );
   default:
      return take( record_.tokens_[static_cast<std::size_t>( key )] );
   }
}

bool RecordFill::isGiven( RecordKey key ) {
   bool is = false;
   withToken( key, [&]( auto& token ) { is = token != 0; } );
   return is;
}

void RecordFill::tokenIs( RecordKey key, std::size_t number ) {
   withToken( key, [&]( auto& token ) {
      token = static_cast<std::remove_reference_t<decltype( token )>>( number );
   } );
}

void RecordFill::open( RecordKey key, std::size_t token ) {
   if( isGiven( key ) ) {
      throw Error( "key " + inQuotes( nameOf( key ) ) + " is given twice" );
   }
   if( key == RecordKey::image && isGiven( RecordKey::from ) ) {
      throw Error( "\"from\" and \"image\" are both an image to begin with; give one" );
   }
   if( key == RecordKey::from && isGiven( RecordKey::image ) ) {
      throw Error( "\"image\" and \"from\" are both an image to begin with; give one" );
   }
   tokenIs( key, token );
}

void RecordFill::take( RecordKey key, U64 number ) {
   Record::Numbers& numbers = record_.numbers_;
   switch( key ) {
   case RecordKey::chip:
      record_.chip_ = &chipOf( number );
      break;
   case RecordKey::variant:
      numbers.variant = number;
      break;
   case RecordKey::entry:
      numbers.entry = number;
      break;
   case RecordKey::array:
      numbers.array = number;
      break;
   case RecordKey::identifier:
      numbers.identifier = number;
      break;
   case RecordKey::address:
      requireAtMost( key, number, 0xffffffff );
      numbers.address = number;
      break;
   default:
      requireAtMost( key, number, 0xff );
      ( key == RecordKey::accessType ? numbers.accessType : numbers.destBlock ) =
         static_cast<U16>( number );
   }
}

void RecordFill::take( RecordKey key, std::string& text ) {
   switch( key ) {
   case RecordKey::table:
      record_.table_.swap( text );
      break;
   case RecordKey::chip:
      record_.chip_ = &chipOf( text );
      break;
   case RecordKey::from:
   case RecordKey::image:
      record_.from_.swap( text );
      break;
   case RecordKey::file:
      break;
   default:
      take( key, parseIndex( text, nameOf( key ), 0xffffffff ) );
   }
}

Record::FieldValue& RecordFill::addField( std::string& name, std::size_t token ) {
   if( record_.fieldCount_ == record_.fields_.size() ) {
      record_.fields_.emplace_back();
   }
   Record::FieldValue& field = record_.fields_[record_.fieldCount_++];
   field.name.swap( name );
   field.given.clear();
   field.token = token;
   return field;
}

void RecordFill::takeValue( std::string& text ) {
   Record::FieldValue& field = lastField();
   if( text != maskWord ) {
      field.value = parseValue( text, field.name );
   }
   field.given.swap( text );
}

} // namespace Vorn
