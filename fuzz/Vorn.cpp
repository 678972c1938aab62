// vorn in this process, and what has to hold of whatever it prints.
#include "Vorn.h"

#include "Finding.h"

#include <CommandLine.h>
#include <Compression.h>
#include <Vorn/Error.h>
#include <forms/EntryForms.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace Fuzz {

using Testing::Bits;
using Testing::Image;

namespace {

constexpr ::off_t longestOutput = 1 << 20;

void require( bool isDone ) {
   if( !isDone ) {
      found( "no standard input or output" );
   }
}

// Puts a file without a name in place of standard input or output.
void replace( int descriptor ) {
   const int file = ::memfd_create( "vorn", MFD_CLOEXEC | MFD_ALLOW_SEALING );
   require( ::dup2( file, descriptor ) == descriptor );
   ::close( file );
}

void begin( std::string_view input ) {
   static const bool areReplaced = [] {
      replace( STDIN_FILENO );
      replace( STDOUT_FILENO );
      require( ::ftruncate( STDOUT_FILENO, longestOutput ) == 0 );
      require( ::fcntl( STDOUT_FILENO, F_ADD_SEALS, F_SEAL_GROW ) == 0 );
      return true;
   }();
   require( areReplaced && ::ftruncate( STDIN_FILENO, 0 ) == 0 );
   require( ::pwrite( STDIN_FILENO, input.data(), input.size(), 0 ) ==
            static_cast<::ssize_t>( input.size() ) );
   ::lseek( STDIN_FILENO, 0, SEEK_SET );
   ::lseek( STDOUT_FILENO, 0, SEEK_SET );
}

std::string printed() {
   std::string text( static_cast<std::size_t>( ::lseek( STDOUT_FILENO, 0, SEEK_CUR ) ), '\0' );
   require( ::pread( STDOUT_FILENO, text.data(), text.size(), 0 ) ==
            static_cast<::ssize_t>( text.size() ) );
   return text;
}

// Requires one line that any terminal shows as it is.
void requireLine( const std::string& text ) {
   // In UTF-8, else this throws, without the control characters below U+0020 and above U+007E.
   Json( text ).dump();
   bool isShown = !text.empty();
   for( std::size_t i = 0; i < text.size(); ++i ) {
      const auto byte = static_cast<U8>( text[i] );
      const auto next = i + 1 < text.size() ? static_cast<U8>( text[i + 1] ) : 0;
      isShown = isShown && byte >= 0x20 && byte != 0x7f && !( byte == 0xc2 && next < 0xa0 );
   }
   if( !isShown ) {
      found( "the error is not one line of text: " + Json( text ).dump() );
   }
}

const std::vector<Vorn::Layout>& everyLayout() {
   static const auto layouts = [] {
      std::vector<Vorn::Layout> all;
      for( const auto& chip : Vorn::allChips() ) {
         const auto more = Vorn::layoutsOn( chip );
         all.insert( all.end(), more.begin(), more.end() );
      }
      return all;
   }();
   return layouts;
}

Vorn::EncodeArguments bytesOf( const Vorn::PairText& pair ) {
   return { pair, {}, {}, {}, {}, Vorn::formNamed( "bytes" ) };
}

} // namespace

Outcome outcomeOf( const std::function<void( Vorn::Output& )>& part, std::string_view input ) {
   begin( input );
   Outcome outcome{ {}, {}, 0 };
   Vorn::Output output;
   try {
      part( output );
      output.flush();
   } catch( const Vorn::Error& error ) {
      outcome.status = dynamic_cast<const Vorn::UsageError*>( &error ) ? 2 : 1;
      outcome.error = error.what();
      requireLine( outcome.error );
      output.flush();
   }
   outcome.out = printed();
   return outcome;
}

bool isPlain( std::string_view input ) {
   Vorn::TextBytes source( input, "" );
   Vorn::PlainBytes bytes( source );
   std::string first( input.size() + 1, '\0' );
   try {
      first.resize( bytes.read( first.data(), first.size() ) );
      return first == input;
   } catch( const Vorn::Error& ) {
      return false;
   }
}

Outcome encoded( const Vorn::EncodeArguments& arguments ) {
   return outcomeOf( [&]( Vorn::Output& output ) { output.write( Vorn::encode( arguments ) ); } );
}

Outcome programmed( Vorn::ProgramArguments arguments, std::string_view input ) {
   arguments.paths = { "-" };
   arguments.allowsRepeats = true;
   return outcomeOf( [&]( Vorn::Output& output ) { Vorn::program( arguments, output ); }, input );
}

std::vector<std::string> linesPrinted( const std::string& text ) {
   if( !text.empty() && !text.ends_with( '\n' ) ) {
      found( "the last line printed has no end" );
   }
   return linesOf( text );
}

std::vector<Json> objectsIn( const std::string& lines ) {
   std::vector<Json> objects;
   for( const auto& line : linesPrinted( lines ) ) {
      objects.push_back( Json::parse( line ) );
   }
   return objects;
}

std::string linesBefore( const std::string& error, const std::string& input ) {
   std::size_t number = 0;
   std::size_t column = 0;
   if( std::sscanf( error.c_str(), "<stdin>:%zu:%zu: ", &number, &column ) != 2 ) {
      found( "the error has no place: " + error );
   }
   // The place may be the end of the input, after the last line.
   auto lines = linesOf( input );
   lines.emplace_back();
   if( number < 1 || number > lines.size() || column < 1 ||
       column > lines[number - 1].size() + 1 ) {
      found( "the place is outside of the input: " + error );
   }
   std::string before;
   for( std::size_t i = 0; i + 1 < number; ++i ) {
      before += lines[i] + '\n';
   }
   return before;
}

const Vorn::PairText& somePair( FuzzedDataProvider& input ) {
   static const auto pairs = [] {
      std::vector<Vorn::PairText> all;
      for( const Vorn::Layout& layout : everyLayout() ) {
         all.push_back( { std::string( layout.table() ), layout.chip().name,
                          std::to_string( layout.variant() ) } );
      }
      return all;
   }();
   return someOf( input, pairs );
}

const Vorn::Layout& someLayout( FuzzedDataProvider& input ) {
   return someOf( input, everyLayout() );
}

Vorn::PairText pairIn( const Json& object ) {
   const auto textOf = []( const Json& value ) {
      return value.is_string() ? value.get<std::string>() : value.dump();
   };
   return { object.at( "table" ), textOf( object.at( "chip" ) ),
            object.contains( "variant" ) ? textOf( object.at( "variant" ) ) : "0" };
}

Image imageIn( const std::string& digits ) {
   Image image;
   for( std::size_t i = 0; i < digits.size(); i += 2 ) {
      image.push_back( static_cast<U8>( std::stoul( digits.substr( i, 2 ), nullptr, 16 ) ) );
   }
   return image;
}

std::string digitsOf( const Image& image ) {
   std::string digits;
   for( const U8 byte : image ) {
      std::array<char, 3> pair{};
      std::snprintf( pair.data(), pair.size(), "%02x", unsigned( byte ) );
      digits += pair.data();
   }
   return digits;
}

Testing::Image tagged( const Vorn::Layout& layout, Testing::Image image ) {
   image.resize( layout.bytes() );
   for( const auto& [field, value] : layout.tag() ) {
      Testing::bitsAtAre( image, field.offset, field.width, Testing::toBits( value ) );
   }
   return image;
}

std::string valueText( const Json& value ) {
   return value.is_string() ? value.get<std::string>() : Vorn::hexOf( value.get<U64>() );
}

std::optional<Bits> numberIn( std::string text ) {
   std::array<U8, 16> address{};
   const auto sent = [&]( std::size_t bytes ) {
      Bits bits;
      for( std::size_t i = 0; i < bytes; ++i ) {
         bits = bits << 8 | Bits( address[i] );
      }
      return bits;
   };
   if( ::inet_pton( AF_INET, text.c_str(), address.data() ) == 1 ) {
      return sent( 4 );
   }
   if( ::inet_pton( AF_INET6, text.c_str(), address.data() ) == 1 ) {
      return sent( 16 );
   }
   const bool isMac = text.find_first_of( ":-." ) != std::string::npos;
   std::erase_if( text, []( char c ) { return c == ':' || c == '-' || c == '.' || c == '_'; } );
   const auto hasLetter = [&]( char letter ) {
      return !isMac && text.size() > 1 && ( text[1] | 0x20 ) == letter;
   };
   const unsigned digitBits = isMac || hasLetter( 'x' ) ? 4 : hasLetter( 'b' ) ? 1 : 0;
   if( digitBits == 0 ) {
      U64 number = 0;
      const auto [end, failure] = std::from_chars( text.data(), text.data() + text.size(), number );
      return failure == std::errc() ? std::optional( Testing::toBits( number ) ) : std::nullopt;
   }
   Bits bits;
   for( const char digit : text.substr( isMac ? 0 : 2 ) ) {
      bits = bits << digitBits | Bits( std::stoul( std::string( 1, digit ), nullptr, 16 ) );
   }
   return bits;
}

void requireRoundTrip( const Json& decoded ) {
   const auto layout = Vorn::layoutOf( pairIn( decoded ) );
   const std::string digits = decoded.at( "image" );
   const Image image = imageIn( digits );
   auto arguments = bytesOf( pairIn( decoded ) );
   Image right = imageIn( linesPrinted( encoded( arguments ).out ).at( 0 ) );
   for( const auto& field : layout.fields() ) {
      const std::string name( field.name );
      const std::string value = valueText( decoded.at( "fields" ).at( name ) );
      const Bits bits = Testing::bitsAt( image, field.offset, field.width );
      if( numberIn( value ) != bits ) {
         found( name + " is not " + value + " in " + decoded.dump() );
      }
      if( !field.readOnly ) {
         Testing::bitsAtAre( right, field.offset, field.width, bits );
         arguments.fields.push_back( name + '=' + value );
      }
   }
   if( encoded( arguments ).out != digitsOf( right ) + '\n' ) {
      found( "another image is encoded of " + decoded.dump() );
   }
   // From the image itself, if its tag is right.
   arguments.from = digits;
   if( const Outcome again = encoded( arguments );
       again.error.empty() && again.out != digits + '\n' ) {
      found( "another image is encoded from that of " + decoded.dump() );
   }
}

} // namespace Fuzz
