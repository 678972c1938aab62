// One image in one text: hexadecimal digits or JSON.
#include "ImageText.h"

#include "JsonFlaw.h"

#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

constexpr U8 notADigit = 0xff;

constexpr auto digitValues = [] {
   std::array<U8, 256> values{};
   values.fill( notADigit );
   for( U8 digit = 0; digit < 16; ++digit ) {
      values[static_cast<U8>( "0123456789abcdef"[digit] )] = digit;
      values[static_cast<U8>( "0123456789ABCDEF"[digit] )] = digit;
   }
   return values;
}();

constexpr U8 valueOf( char digit ) { return digitValues[static_cast<U8>( digit )]; }

bool hasPrefix( std::string_view piece ) {
   return piece.starts_with( "0x" ) || piece.starts_with( "0X" );
}

constexpr std::size_t wordDigits = 8;

// What digits are to write.
struct Wanted {
   std::string_view wrongCount; // if all are digits
   std::string_view advice;
};

constexpr Wanted wantedBytes{ "an odd number of digits",
                              "write two hexadecimal digits for each byte, entry byte 0 first" };
constexpr Wanted wantedWord{ "more than eight digits",
                             "write one to eight hexadecimal digits for each word" };

constexpr Wanted wantedNumber{ "", "write one number in hexadecimal digits, the highest first" };

// The character of UTF-8 that begins there.
std::string_view characterAt( std::string_view text, std::size_t begin ) {
   std::size_t end = begin + 1;
   while( end < text.size() && ( static_cast<U8>( text[end] ) & 0xc0 ) == 0x80 ) {
      ++end;
   }
   return text.substr( begin, end - begin );
}

// Ends with what is wrong about a piece whose digits begin at `from`.
[[noreturn]] void refuseDigits( std::string_view piece, std::size_t from, std::size_t at,
                                const Wanted& wanted ) {
   std::string what( from == piece.size() ? "no digits" : wanted.wrongCount );
   for( std::size_t i = from; i < piece.size(); ++i ) {
      if( valueOf( piece[i] ) == notADigit ) {
         what = "bad digit " + inQuotes( characterAt( piece, i ) );
         at += i;
         break;
      }
   }
   throw BadText( at, what + " in " + inQuotes( piece ) + "; " + std::string( wanted.advice ) );
}

// Appends the bytes of the pairs of digits that the text begins with; the length of these.
std::size_t appendPairs( std::vector<U8>& bytes, std::string_view text ) {
   std::size_t length = 0;
   for( ; length + 2 <= text.size(); length += 2 ) {
      const unsigned high = valueOf( text[length] );
      const unsigned low = valueOf( text[length + 1] );
      if( ( high | low ) == notADigit ) {
         break;
      }
      bytes.push_back( static_cast<U8>( high << 4 | low ) );
   }
   return length;
}

void appendWord( std::vector<U8>& bytes, U64 word ) {
   for( unsigned byte = 0; byte < 4; ++byte ) {
      bytes.push_back( static_cast<U8>( word >> 8 * byte ) );
   }
}

// Takes the pieces of one image, and finds out whether they are bytes or words.
class Digits {
public:
   Digits( std::vector<U8>& bytes, ImageFormat format ) : bytes_( bytes ), format_( format ) {}

   // Takes the piece that the text begins with, up to a blank. The length of the piece.
   std::size_t take( std::string_view text, std::size_t at ) {
      const std::size_t from = hasPrefix( text ) ? 2 : 0;
      if( format_ == ImageFormat::number ) {
         return takeNumber( firstPiece( text ), from, at );
      }
      if( format_ == ImageFormat::words ) {
         return takeWord( firstPiece( text ), from, at );
      }
      const std::size_t length = from + appendPairs( bytes_, text.substr( from ) );
      if( length == from || ( length < text.size() && !isBlank( text[length] ) ) ) {
         refuseDigits( firstPiece( text ), from, at, wantedBytes );
      }
      if( from > 0 && length == from + wordDigits ) {
         lastWord_ = at;
         ++words_;
      } else {
         ++others_;
      }
      return length;
   }

   void finish() {
      if( format_ == ImageFormat::bytes || words_ == 0 ) {
         return;
      }
      if( others_ > 0 ) {
         throw BadText( lastWord_,
                        "0x and eight digits among other pieces may be a word or four bytes; say "
                        "--image-format words or --image-format bytes" );
      }
      for( std::size_t i = 0; i < bytes_.size(); i += 4 ) {
         std::swap( bytes_[i], bytes_[i + 3] );
         std::swap( bytes_[i + 1], bytes_[i + 2] );
      }
   }

private:
   std::size_t takeWord( std::string_view piece, std::size_t from, std::size_t at ) {
      const auto digits = piece.substr( from );
      if( !isDigits( digits ) || digits.size() > wordDigits ) {
         refuseDigits( piece, from, at, wantedWord );
      }
      appendWord( bytes_, numberOf( digits ) );
      return piece.size();
   }

   std::size_t takeNumber( std::string_view piece, std::size_t from, std::size_t at ) {
      const auto digits = piece.substr( from );
      if( !isDigits( digits ) ) {
         refuseDigits( piece, from, at, wantedNumber );
      }
      if( others_++ > 0 ) {
         throw BadText( at, "a second piece " + inQuotes( piece ) + "; " +
                               std::string( wantedNumber.advice ) );
      }
      std::string even( digits.size() % 2, '0' );
      even.append( digits );
      appendPairs( bytes_, even );
      std::reverse( bytes_.begin(), bytes_.end() );
      return piece.size();
   }

   std::vector<U8>& bytes_;
   ImageFormat format_;
   std::size_t words_ = 0; // pieces that look like one
   std::size_t others_ = 0;
   std::size_t lastWord_ = 0;
};

// A character of a JSON text. It records how far the parser has read.
class Cursor {
public:
   using iterator_category = std::input_iterator_tag;
   using value_type = char;
   using difference_type = std::ptrdiff_t;
   using pointer = const char*;
   using reference = const char&;

   Cursor( const char* at, const char*& read ) : at_( at ), read_( &read ) {}

   reference operator*() const { return *at_; }
   Cursor& operator++() {
      *read_ = ++at_;
      return *this;
   }
   bool operator==( const Cursor& other ) const { return at_ == other.at_; }
   bool operator!=( const Cursor& other ) const { return at_ != other.at_; }

private:
   const char* at_;
   const char** read_;
};

// Receives the JSON parser's events for a text that is one image.
class JsonImage {
public:
   JsonImage( std::string_view text, std::size_t at, ImageFormat format, Image& image,
              PlaceText* place )
      : text_( text ), at_( at ), read_( text.data() ), format_( format ), image_( image ),
        place_( place ), digits_( image.bytes, format ) {}

   void parse() {
      nlohmann::json::sax_parse( Cursor( text_.data(), read_ ),
                                 Cursor( text_.data() + text_.size(), read_ ), this );
   }

   bool start_object( std::size_t ) {
      refuseIfWanted( depth_ > 0, "an object", 1 );
      isObject_ = isObject_ || depth_ == 0;
      ++depth_;
      return true;
   }

   bool end_object() {
      if( --depth_ == 0 && !hasImage_ ) {
         throw BadText( at_, "missing key \"image\"" );
      }
      return true;
   }

   bool key( std::string& name ) {
      if( depth_ > 1 ) {
         return true;
      }
      const auto found = std::find( keyNames.begin(), keyNames.end(), name );
      key_ = static_cast<Key>( found - keyNames.begin() );
      if( key_ == Key::other ) {
         openPlace( name );
         return true;
      }
      number_ = nullptr;
      bool& isGiven = key_ == Key::image ? hasImage_ : pieceOf( key_ ).isGiven;
      if( isGiven ) {
         throw BadText( stringBegin(), "key " + inQuotes( name ) + " is given twice" );
      }
      isGiven = true;
      return true;
   }

   bool string( std::string& text ) {
      if( isPlace() ) {
         try {
            const Value number = parseNumber( text, placeName_ );
            takePlace( number.bits() > 64 ? ~U64( 0 ) : number.word( 0 ), stringBegin() );
         } catch( const BadText& ) {
            throw;
         } catch( const Error& error ) {
            throw BadText( stringBegin() + 1, error.message() );
         }
      } else if( inArray_ ) {
         requireKind( Kind::strings, stringBegin() );
         takeElement( text );
      } else if( isWanted() ) {
         takeString( text );
      }
      return true;
   }

   bool number_unsigned( U64 number ) {
      if( isPlace() ) {
         takePlace( number, numberBegin() );
      } else if( inArray_ ) {
         requireKind( Kind::numbers, numberBegin() );
         takeNumber( number );
      } else if( isWanted() ) {
         if( !takesNumber() ) {
            refuse( "a number", numberBegin() );
         }
         take( std::to_string( number ), numberBegin() );
      }
      return true;
   }

   bool number_integer( std::int64_t ) { return refuseNumber(); }
   bool number_float( double, const std::string& ) { return refuseNumber(); }
   bool boolean( bool value ) {
      return value ? refuseIfWanted( true, "true", 4 ) : refuseIfWanted( true, "false", 5 );
   }
   bool null() { return refuseIfWanted( true, "null", 4 ); }

   bool start_array( std::size_t ) {
      refuseIfWanted( inArray_ || ( isObject_ && key_ != Key::image ), "an array", 1 );
      if( isWanted() ) {
         inArray_ = true;
         image_.at = read() - 1;
      }
      ++depth_;
      return true;
   }

   bool end_array() {
      --depth_;
      if( std::exchange( inArray_, false ) ) {
         finishArray();
      }
      return true;
   }

   // Never called: the text has no binary values.
   bool binary( nlohmann::json::binary_t& ) { return false; }

   bool parse_error( std::size_t position, const std::string&,
                     const nlohmann::detail::exception& exception ) {
      const JsonFlaw flaw( exception );
      if( flaw.isOverflow() ) {
         return refuseNumber();
      }
      const auto begin = flaw.is( "invalid string" ) || position > text_.size()
                            ? position - 1
                            : tokenBegin( position );
      throw BadText( at_ + begin, flaw.message() + flaw.lineAdvice( text_ ) );
   }

private:
   enum class Key : std::size_t { image, table, chip, variant, other };
   static constexpr std::array<std::string_view, 4> keyNames{ "image", "table", "chip", "variant" };
   static constexpr std::array<std::string_view, 4> keyTypes{ "a string or an array", "a string",
                                                              "a name or a number", "a number" };

   // What an array is made of.
   enum class Kind { nothing, strings, numbers };

   // Takes note of a key that says where the entry lies.
   void openPlace( std::string_view name ) {
      number_ = nullptr;
      if( place_ ) {
         number_ = name == "entry"        ? &place_->entry
                   : name == "array"      ? &place_->array
                   : name == "identifier" ? &place_->identifier
                   : name == "address"    ? &place_->address
                                          : nullptr;
         placeName_ = name;
      }
   }

   bool isPlace() const { return number_ && depth_ == 1; }

   void takePlace( U64 number, std::size_t at ) {
      if( *number_ ) {
         throw BadText( at, "key " + inQuotes( placeName_ ) + " is given twice" );
      }
      *number_ = number;
      place_->at = at;
   }

   Piece& pieceOf( Key key ) {
      return key == Key::table ? image_.table : key == Key::chip ? image_.chip : image_.variant;
   }

   // Whether a value that comes now is looked at.
   bool isWanted() const {
      return depth_ == 0 || inArray_ || ( depth_ == 1 && isObject_ && key_ != Key::other );
   }

   // Where the token begins that ends there, in the text.
   std::size_t tokenBegin( std::size_t end ) const {
      constexpr std::string_view punctuation = "{}[],: \t\r\n";
      if( text_[end - 1] == '"' ) {
         return std::min( text_.rfind( '"', end - 2 ), end - 1 );
      }
      return std::min( text_.find_last_of( punctuation, end - 1 ) + 1, end - 1 );
   }

   // Where in the line the parser is, and where the string or number begins that it has just read.
   std::size_t read() const { return at_ + static_cast<std::size_t>( read_ - text_.data() ); }
   std::size_t stringBegin() const { return at_ + tokenBegin( read() - at_ ); }
   std::size_t numberBegin() const {
      // The parser may have read one character more.
      const auto end = text_.find_last_of( "0123456789", read() - at_ - 1 ) + 1;
      return at_ + tokenBegin( end );
   }

   void take( std::string&& text, std::size_t at ) {
      pieceOf( key_ ) = { std::move( text ), at, true };
   }

   void takeString( std::string& text ) {
      if( key_ == Key::variant ) {
         refuse( "a string", stringBegin() );
      }
      if( key_ == Key::image ) {
         image_.at = stringBegin();
         readDigits( text, stringBegin() + 1, format_, image_ );
      } else {
         take( std::move( text ), stringBegin() + 1 );
      }
   }

   void requireKind( Kind kind, std::size_t at ) {
      if( kind_ != Kind::nothing && kind_ != kind ) {
         throw BadText( at, "an array holds numbers or strings, not both" );
      }
      kind_ = kind;
   }

   void takeElement( std::string_view text ) {
      const auto begin = stringBegin() + 1;
      if( firstPiece( text ).size() != text.size() ) {
         throw BadText( begin, "more than a byte or word in " + inQuotes( text ) );
      }
      digits_.take( text, begin );
   }

   void takeNumber( U64 number ) {
      const U64 largest = format_ == ImageFormat::bytes ? 0xff : 0xffffffff;
      if( number > largest ) {
         throw BadText( numberBegin(), "number " + std::to_string( number ) + " is too large; a " +
                                          ( largest == 0xff ? "byte is at most 255"
                                                            : "word is at most 4294967295" ) );
      }
      largest_ = std::max( largest_, number );
      numbers_.push_back( static_cast<U32>( number ) );
   }

   void finishArray() {
      digits_.finish();
      for( const U32 number : numbers_ ) {
         if( format_ == ImageFormat::words || largest_ > 0xff ) {
            appendWord( image_.bytes, number );
         } else {
            image_.bytes.push_back( static_cast<U8>( number ) );
         }
      }
   }

   // Whether a number may stand here.
   bool takesNumber() const {
      return inArray_ || ( isObject_ && ( key_ == Key::chip || key_ == Key::variant ) );
   }

   bool refuseNumber() {
      if( isWanted() || isPlace() ) {
         const auto begin = numberBegin();
         if( !isPlace() && !takesNumber() ) {
            refuse( "a number", begin );
         }
         const auto number = text_.substr( begin - at_, read() - begin );
         throw BadText( begin, "bad number " +
                                  shown( number.substr( 0, number.find_first_of( ",]} \t" ) ) ) +
                                  "; write an integer of 0 or more" );
      }
      return true;
   }

   bool refuseIfWanted( bool isWrong, std::string_view what, std::size_t length ) {
      if( isPlace() && what != "null" ) {
         throw BadText( read() - length, "the value of " + inQuotes( placeName_ ) +
                                            " is a number, not " + std::string( what ) );
      }
      if( isWrong && isWanted() ) {
         refuse( what, read() - length );
      }
      return true;
   }

   // Ends with what may stand where `what` was found.
   [[noreturn]] void refuse( std::string_view what, std::size_t at ) const {
      const std::string given = ", not " + std::string( what );
      if( inArray_ || !isObject_ ) {
         const bool areObjects = inArray_ && what == "an object";
         throw BadText( at,
                        "an array holds the bytes or words of one image" + given +
                           ( areObjects ? "; `jq -c '.[]'` writes each object on a line" : "" ) );
      }
      const auto key = static_cast<std::size_t>( key_ );
      throw BadText( at, "the value of " + inQuotes( keyNames[key] ) + " is " +
                            std::string( keyTypes[key] ) + given );
   }

   std::string_view text_;
   std::size_t at_;
   const char* read_;
   ImageFormat format_;
   Image& image_;
   PlaceText* place_;
   std::optional<U64>* number_ = nullptr; // of the place, which the last key has named
   std::string placeName_;
   Digits digits_;
   std::vector<U32> numbers_;
   U64 largest_ = 0;
   Kind kind_ = Kind::nothing;
   Key key_ = Key::image; // also of a text that is no object
   int depth_ = 0;        // of objects and arrays
   bool isObject_ = false;
   bool inArray_ = false; // of the image
   bool hasImage_ = false;
};

} // namespace

bool isDigits( std::string_view text ) {
   return !text.empty() && std::none_of( text.begin(), text.end(),
                                         []( char c ) { return valueOf( c ) == notADigit; } );
}

U64 numberOf( std::string_view digits ) {
   U64 number = 0;
   for( const char digit : digits ) {
      number = number << 4 | valueOf( digit );
   }
   return number;
}

bool isJson( std::string_view text ) {
   return !text.empty() && std::string_view( "{[\"" ).find( text[0] ) != std::string_view::npos;
}

void readDigits( std::string_view text, std::size_t at, ImageFormat format, Image& image ) {
   Digits digits( image.bytes, format );
   for( auto begin = skipBlanks( text, 0 ); begin < text.size(); ) {
      const auto length = digits.take( text.substr( begin ), at + begin );
      begin = skipBlanks( text, begin + length );
   }
   digits.finish();
}

void readJson( std::string_view text, std::size_t at, ImageFormat format, Image& image,
               PlaceText* place ) {
   // The parser would take it for the end of the text.
   if( const auto zero = text.find( '\0' ); zero != std::string_view::npos ) {
      throw BadText( at + zero, "not valid JSON: a zero byte" );
   }
   JsonImage( text, at, format, image, place ).parse();
}

} // namespace Vorn
