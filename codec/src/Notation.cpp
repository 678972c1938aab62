// The notations in which people write the values of fields.
#include <Vorn/Notation.h>

#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include <arpa/inet.h>

namespace Vorn {

namespace {

struct Row {
   std::string_view name;
   unsigned bytes; // of an address; 0 for numbers
};

constexpr std::array<Row, 6> rows{ { { "decimal", 0 },
                                     { "hexadecimal", 0 },
                                     { "binary", 0 },
                                     { "IPv4", 4 },
                                     { "IPv6", 16 },
                                     { "MAC", 6 } } };

constexpr auto names = [] {
   std::array<std::string_view, rows.size()> result;
   std::transform( rows.begin(), rows.end(), result.begin(),
                   []( const Row& row ) { return row.name; } );
   return result;
}();

const Row& rowOf( Notation notation ) { return rows[static_cast<std::size_t>( notation )]; }

// Divides, and returns the remainder.
U64 divide( Value::Words& number, U64 divisor ) {
   U64 rest = 0;
   for( std::size_t i = number.size(); i-- > 0; ) {
      const U64 high = rest << 32 | number[i] >> 32;
      const U64 low = high % divisor << 32 | ( number[i] & 0xffffffff );
      number[i] = high / divisor << 32 | low / divisor;
      rest = low % divisor;
   }
   return rest;
}

std::string decimalOf( const Value& value ) {
   constexpr U64 billion = 1'000'000'000;
   if( value.bits() <= 64 ) {
      return std::to_string( value.word( 0 ) );
   }
   Value::Words number = value.words();
   std::string text;
   while( Value( number ).bits() > 0 ) {
      const std::string digits = std::to_string( divide( number, billion ) );
      const bool isFirst = Value( number ).bits() == 0;
      text.insert( 0, ( isFirst ? "" : std::string( 9 - digits.size(), '0' ) ) + digits );
   }
   return text;
}

std::string binaryOf( const Value& value ) {
   std::string text = "0b";
   for( unsigned bit = std::max( value.bits(), 1u ); bit-- > 0; ) {
      text += ( value.word( bit / 64 ) >> bit % 64 & 1 ) != 0 ? '1' : '0';
   }
   return text;
}

std::string addressOf( const Value& value, Notation notation ) {
   const auto& [name, count] = rowOf( notation );
   if( value.bits() > 8 * count ) {
      throw Error( hexOf( value ) + " is no " + std::string( name ) + " address, which has " +
                   std::to_string( 8 * count ) + " bits" );
   }
   std::array<U8, 16> bytes{}; // as they are sent
   for( unsigned i = 0; i < count; ++i ) {
      const unsigned shift = 8 * ( count - 1 - i );
      bytes[i] = static_cast<U8>( value.word( shift / 64 ) >> shift % 64 );
   }
   if( notation == Notation::mac ) {
      std::string text;
      appendHex( text, std::span( bytes ).first( count ), ":" );
      return text;
   }
   char text[INET6_ADDRSTRLEN];
   ::inet_ntop( notation == Notation::ipv4 ? AF_INET : AF_INET6, bytes.data(), text,
                sizeof( text ) );
   return text;
}

} // namespace

std::span<const std::string_view> notationNames() { return names; }

Notation notationNamed( std::string_view name ) {
   const auto found = std::find( names.begin(), names.end(), name );
   if( found == names.end() ) {
      throw Error( "unknown notation " + inQuotes( name ) + suggestion( name, names ) );
   }
   return static_cast<Notation>( found - names.begin() );
}

std::vector<Notation> notationsOf( unsigned width ) {
   std::vector<Notation> result;
   for( std::size_t i = 0; i < rows.size(); ++i ) {
      if( rows[i].bytes == 0 || 8 * rows[i].bytes == width ) {
         result.push_back( static_cast<Notation>( i ) );
      }
   }
   return result;
}

std::string textOf( const Value& value, Notation notation ) {
   switch( notation ) {
   case Notation::decimal:
      return decimalOf( value );
   case Notation::hexadecimal:
      return hexOf( value );
   case Notation::binary:
      return binaryOf( value );
   default:
      return addressOf( value, notation );
   }
}

} // namespace Vorn
