// The values of fields: unsigned numbers of up to 512 bits, read from text and written to it.
#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <span>

#include <arpa/inet.h>

namespace Vorn {

namespace {

constexpr unsigned notADigit = 255;

constexpr unsigned digitOf( char c ) {
   if( c >= '0' && c <= '9' ) {
      return static_cast<unsigned>( c - '0' );
   }
   if( c >= 'a' && c <= 'f' ) {
      return static_cast<unsigned>( c - 'a' + 10 );
   }
   if( c >= 'A' && c <= 'F' ) {
      return static_cast<unsigned>( c - 'A' + 10 );
   }
   return notADigit;
}

// number = number * base + digit; whether that fits.
bool appendDigit( Value::Words& number, unsigned base, unsigned digit ) {
   U64 carry = digit;
   for( U64& word : number ) {
      const U64 low = ( word & 0xffffffff ) * base + carry;
      const U64 high = ( word >> 32 ) * base + ( low >> 32 );
      word = ( high << 32 ) | ( low & 0xffffffff );
      carry = high >> 32;
   }
   return carry == 0;
}

struct Base {
   std::string_view prefix; // in lower case
   unsigned base;
   std::size_t easyDigits;  // cannot overflow one word, and are nearly always all there are
   std::string_view digits; // what has to follow
};

constexpr Base bases[] = { { "0x", 16, 16, "hexadecimal digits after 0x" },
                           { "0b", 2, 64, "binary digits after 0b" },
                           { "", 10, 19, "decimal digits" } };

const Base& baseOf( std::string_view text ) {
   const bool hasPrefix = text.size() >= 2 && text[0] == '0';
   const char letter = hasPrefix ? static_cast<char>( text[1] | 0x20 ) : ' ';
   return bases[letter == 'x' ? 0 : letter == 'b' ? 1 : 2];
}

// Whether the text is digits after a 0, which other programs take for octal.
bool looksOctal( std::string_view text ) {
   return text.size() > 1 && text[0] == '0' && std::all_of( text.begin(), text.end(), []( char c ) {
             return ( c >= '0' && c <= '9' ) || c == '_';
          } );
}

bool readNumber( std::string_view text, Value& value ) {
   const Base& base = baseOf( text );
   if( looksOctal( text ) ) {
      return false;
   }
   Value::Words number{};
   const auto digits = text.substr( base.prefix.size() );
   std::size_t count = 0;
   bool fits = true;
   for( std::size_t i = 0; i < digits.size(); ++i ) {
      const unsigned digit = digitOf( digits[i] );
      if( digit >= base.base ) {
         if( digits[i] == '_' && i > 0 && digits[i - 1] != '_' && i + 1 < digits.size() ) {
            continue;
         }
         return false;
      }
      if( count++ < base.easyDigits ) {
         number[0] = number[0] * base.base + digit;
      } else {
         fits = fits && appendDigit( number, base.base, digit );
      }
   }
   value = !fits                      ? Value::tooLarge()
           : count <= base.easyDigits ? Value( number[0] )
                                      : Value( number );
   return count > 0;
}

bool readInternetAddress( int family, std::size_t size, std::string_view text, Value& value ) {
   std::array<U8, 16> bytes{};
   // A copy, because inet_pton reads up to a zero byte.
   if( ::inet_pton( family, std::string( text ).c_str(), bytes.data() ) != 1 ) {
      return false;
   }
   Value::Words number{};
   for( std::size_t i = 0; i < size; ++i ) {
      number[i / 8] |= U64( bytes[size - 1 - i] ) << 8 * ( i % 8 );
   }
   value = Value( number );
   return true;
}

// How a MAC address may be written.
struct Grouping {
   char separator;
   std::size_t groups;
   std::size_t digits; // of each
};

constexpr Grouping groupings[] = { { ':', 6, 2 }, { '-', 6, 2 }, { '.', 3, 4 } };

bool readMacAddress( const Grouping& grouping, std::string_view text, Value& value ) {
   const std::size_t stride = grouping.digits + 1;
   if( text.size() != grouping.groups * stride - 1 ) {
      return false;
   }
   U64 number = 0;
   for( std::size_t i = 0; i < text.size(); ++i ) {
      if( i % stride == grouping.digits ) {
         if( text[i] != grouping.separator ) {
            return false;
         }
      } else if( const unsigned digit = digitOf( text[i] ); digit != notADigit ) {
         number = number << 4 | digit;
      } else {
         return false;
      }
   }
   value = Value( number );
   return true;
}

// Whether `text` is an address. Each notation has a number of groups of its own, so the order in
// which they are tried doesn't matter.
bool readAddress( std::string_view text, Value& value ) {
   if( text.find_first_not_of( "0123456789abcdefABCDEF.:-" ) != std::string_view::npos ) {
      return false;
   }
   return std::any_of( std::begin( groupings ), std::end( groupings ),
                       [&]( const Grouping& grouping ) {
                          return readMacAddress( grouping, text, value );
                       } ) ||
          readInternetAddress( AF_INET, 4, text, value ) ||
          readInternetAddress( AF_INET6, 16, text, value );
}

// What a value with such a character is to look like, the most telling character first.
struct Shape {
   char character;
   std::string_view advice;
};

constexpr Shape shapes[] = {
   { '/', "write an address without a prefix length" },
   { ':', "write a MAC address as 00:1c:73:00:00:01 or an IPv6 address as 2001:db8::1" },
   { '.', "write an IPv4 address as 10.0.0.1 or a MAC address as 001c.7300.0001" },
   { '-', "write a MAC address as 00-1c-73-00-00-01" },
};

// Whether three digits follow each comma and apostrophe, as in 1,000,000.
bool groupsThousands( std::string_view text ) {
   constexpr std::string_view marks = ",'";
   for( auto mark = text.find_first_of( marks ); mark != std::string_view::npos; ) {
      const auto next = text.find_first_of( marks, mark + 1 );
      if( std::min( next, text.size() ) - mark != 4 ) {
         return false;
      }
      mark = next;
   }
   return true;
}

// The number that was probably meant: without what people put between digits, or after 0x.
std::string numberNear( std::string_view text ) {
   if( !groupsThousands( text ) ) {
      return {};
   }
   std::string bare( text );
   std::erase_if( bare, []( char c ) {
      return std::string_view( " _',+" ).find( c ) != std::string_view::npos;
   } );
   for( const std::string& meant : { bare, "0x" + bare } ) {
      Value value;
      if( meant.size() < 40 && readNumber( meant, value ) ) {
         return meant;
      }
   }
   return {};
}

// How to write a number that looks octal: as it would be in decimal digits, or in octal ones.
std::string octalAdvice( std::string_view text ) {
   const auto first = std::min( text.find_first_not_of( "0_" ), text.size() - 1 );
   std::string advice = "a leading 0 may mean octal; write " + std::string( text.substr( first ) );
   U64 octal = 0;
   for( const char c : text.substr( first ) ) {
      if( c > '7' && c != '_' ) {
         return advice;
      }
      octal = c == '_' ? octal : octal * 8 + digitOf( c );
   }
   return octal < 8 || text.size() - first > 20 ? advice : advice + " or " + hexOf( octal );
}

std::string adviceOn( std::string_view text, bool isValue ) {
   if( looksOctal( text ) ) {
      return octalAdvice( text );
   }
   const Base& base = baseOf( text );
   for( const Shape& shape : shapes ) {
      // Nothing but a number begins with 0x; a MAC address may begin with 0b.
      if( isValue && base.base != 16 && text.find( shape.character ) != std::string_view::npos ) {
         return std::string( shape.advice );
      }
   }
   if( const auto number = numberNear( text ); !number.empty() ) {
      return "did you mean " + number + '?';
   }
   if( !base.prefix.empty() ) {
      return "write " + std::string( base.digits );
   }
   if( isValue && nearest( text, { &maskWord, 1 } ) ) {
      return "did you mean mask?";
   }
   return std::string( "write decimal digits, hexadecimal digits after 0x" ) +
          ( isValue ? ", binary digits after 0b, an IPv4, IPv6 or MAC address, or mask"
                    : " or binary digits after 0b" );
}

[[noreturn]] void refuse( std::string_view text, std::string_view name, bool isValue ) {
   if( text.size() > 1 && text[0] == '-' && digitOf( text[1] ) < 10 ) {
      throw Error( "negative value " + shown( text ) + " for " + shown( name ) +
                   "; a value is 0 or more" );
   }
   throw Error( ( isValue ? "bad value " : "bad number " ) + inQuotes( text ) + " for " +
                shown( name ) + "; " + adviceOn( text, isValue ) );
}

} // namespace

Value::Value( const Words& words ) : words_( words ) {
   auto count = static_cast<unsigned>( words_.size() );
   while( count > 1 && words_[count - 1] == 0 ) {
      --count;
   }
   bits_ = ( count - 1 ) * 64 + static_cast<unsigned>( std::bit_width( words_[count - 1] ) );
}

Value Value::onesOf( unsigned width ) {
   Words words{};
   for( unsigned i = 0; i < words.size() && i * 64 < width; ++i ) {
      words[i] = ~U64( 0 ) >> ( 64 - std::min( width - i * 64, 64u ) );
   }
   return Value( words );
}

Value Value::tooLarge() {
   Value value;
   value.bits_ = maxBits + 1;
   return value;
}

void Value::refuseNegative( long long number ) {
   throw Error( "negative value " + std::to_string( number ) + "; a value is 0 or more" );
}

std::strong_ordering Value::compared( const Value& other ) const {
   if( bits_ != other.bits_ ) {
      return bits_ <=> other.bits_;
   }
   const auto [own, theirs] =
      std::mismatch( words_.rbegin(), words_.rend(), other.words_.rbegin() );
   return own == words_.rend() ? std::strong_ordering::equal : *own <=> *theirs;
}

std::optional<Value> numberIn( std::string_view text ) {
   Value value;
   return readNumber( text, value ) ? std::optional( value ) : std::nullopt;
}

Value parseNumber( std::string_view text, std::string_view name ) {
   const auto value = numberIn( text );
   if( !value ) {
      refuse( text, name, false );
   }
   return *value;
}

Value parseValue( std::string_view text, std::string_view name ) {
   Value value;
   if( !readNumber( text, value ) && !readAddress( text, value ) ) {
      refuse( text, name, true );
   }
   return value;
}

U64 parseIndex( std::string_view text, std::string_view name, U64 largest ) {
   const Value value = parseNumber( text, name );
   if( value.bits() > 64 ) {
      throw Error( std::string( name ) + ' ' + shown( text ) + " is out of range; it is at most " +
                   std::to_string( largest ) );
   }
   return value.word( 0 );
}

std::string hexOf( const Value& value ) {
   std::string result;
   appendHex( result, value );
   return result;
}

void appendHex( std::string& text, const Value& value ) {
   char digits[2 + Value::maxBits / 4];
   text.append( digits, writeHex( digits, value ) );
}

std::string largestOf( unsigned width ) {
   return width <= 64 ? hexOf( ~U64( 0 ) >> ( 64 - width ) )
                      : "2^" + std::to_string( width ) + " - 1";
}

} // namespace Vorn
