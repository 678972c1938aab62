// Arguments and texts of help that several verbs share.
#include "Arguments.h"

#include "Io.h"
#include "Text.h"
#include "Verbs.h"

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <CLI/CLI.hpp>

#include <algorithm>

namespace Vorn {

bool isTable( std::string_view name ) {
   const auto tables = allTables();
   return std::find( tables.begin(), tables.end(), name ) != tables.end();
}

Layout layoutOf( const PairText& pair ) {
   const U64 variant = parseIndex( pair.variant, "variant", 0xff );
   Layout layout( pair.table, pair.chip, variant );
   traceView( layout );
   return layout;
}

void addChip( CLI::App& verb, std::string& chip ) {
   verb.add_option( "--chip", chip, "Chip type, by name or number" )
      ->required()
      ->type_name( "NAME|NUMBER" );
}

void addPair( CLI::App& verb, PairText& pair ) {
   verb.add_option( "TABLE", pair.table, "Name of the table, as `vorn tables` prints it" )
      ->required();
   addChip( verb, pair.chip );
   verb.add_option( "--variant", pair.variant, "Variant of the table, 0 if not given" )
      ->type_name( "V" );
}

void addIndex( CLI::App& verb, IndexText& index ) {
   verb.add_option( "--entry", index.entry, "Entry of the table, 0 if not given" )
      ->type_name( "N" );
   verb.add_option( "--array", index.array, "Array element, 0 if not given" )->type_name( "N" );
   verb.add_option( "--identifier", index.identifier, "Instance of the memory, 0 if not given" )
      ->type_name( "N" );
}

EntryIndex indexOf( const IndexText& index ) {
   return { parseIndex( index.entry, "entry", 0xffffffff ),
            parseIndex( index.array, "array", 0xffff ),
            parseIndex( index.identifier, "identifier", 0xffff ) };
}

void addImageFormat( CLI::App& verb, ImageFormat& format ) {
   const auto take = [&format]( const std::string& text ) {
      const auto names = imageFormatNames();
      const auto found = std::find( names.begin(), names.end(), text );
      if( found == names.end() ) {
         throw CLI::ValidationError( "--image-format", "unknown format " + inQuotes( text ) +
                                                          suggestion( text, names ) );
      }
      format = static_cast<ImageFormat>( found - names.begin() );
   };
   verb
      .add_option_function<std::string>( "--image-format", take,
                                         "How to read digits, auto if not given" )
      ->type_name( listOf( imageFormatNames(), "|" ) );
}

std::string textOf( const std::vector<std::string>& pieces ) {
   std::string text;
   for( const std::string& piece : pieces ) {
      text += piece + ' ';
   }
   return text;
}

void describe( CLI::App& verb, const std::string& paragraphs, const std::string& examples ) {
   verb.footer( wrapped( paragraphs + "\n\nExample:\n" + examples ) );
}

std::string chipTypesParagraph() {
   std::vector<U32> numbers;
   for( const Chip& chip : allChips() ) {
      numbers.push_back( chip.number );
   }
   return "Chip types: " + listOfChips( numbers );
}

std::string notationsParagraphs() {
   return "Values:\n"
          "  2000, 1_000_000        decimal; underscores may separate digits of any base\n"
          "  0xffff, 0b1010_0101    hexadecimal, binary\n"
          "  10.0.0.1               IPv4 address: 0x0a000001\n"
          "  2001:db8::1            IPv6 address: 0x20010db8000000000000000000000001\n"
          "  00:1c:73:00:00:01      MAC address: 0x001c73000001; also 00-1c-73-00-00-01 and\n"
          "                         001c.7300.0001\n"
          "  mask                   ones in all bits of the field\n\n"
          "The form determines the notation: six groups of two digits are a MAC address, anything "
          "else with colons is an IPv6 address. An address is its bytes, in transmission order, "
          "read as one number.";
}

bool areFiles( const std::vector<std::string>& words, ImageFormat format ) {
   const auto isFile = []( const std::string& word ) {
      // No image has a dot or a slash.
      return ( word != "-" && isInput( word ) ) || ( word.find_first_of( "./" ) != word.npos &&
                                                     word.find_first_of( " {[:" ) == word.npos );
   };
   if( !words.empty() && std::count( words.begin(), words.end(), "-" ) == std::ssize( words ) ) {
      return true;
   }
   if( std::none_of( words.begin(), words.end(), isFile ) ) {
      return false;
   }
   try {
      imageOf( textOf( words ), format );
   } catch( const Error& ) {
      return true;
   }
   for( const std::string& word : words ) {
      if( isInput( word ) ) {
         note( word + " is taken as the digits of an image; --file " + word +
               " takes the file of this name" );
      }
   }
   return false;
}

std::size_t strideOf( const std::optional<std::string>& text ) {
   if( !text ) {
      return 0;
   }
   const auto stride = static_cast<std::size_t>( parseIndex( *text, "stride", 1 << 20 ) );
   if( stride == 0 ) {
      throw Error( "a stride of 0 bytes is too short; it is at least the bytes of an entry" );
   }
   return stride;
}

void addSplit( CLI::App& verb, SplitText& split ) {
   verb.add_option( "--stride", split.stride, "Bytes from one entry of a dump to the next" )
      ->type_name( "BYTES" );
   verb.add_option( "--first-entry", split.firstEntry, "First entry of a dump, 0 if not given" )
      ->type_name( "N" );
   verb.add_option( "--array", split.array, "Array element of a dump, 0 if not given" )
      ->type_name( "N" );
   verb.add_option( "--identifier", split.identifier, "Instance of a dump, 0 if not given" )
      ->type_name( "N" );
}

void setSplit( DumpOptions& options, const SplitText& split ) {
   options.stride = strideOf( split.stride );
   options.first = indexOf( { split.firstEntry.value_or( "0" ), split.array, split.identifier } );
   options.hasFirst = split.firstEntry.has_value();
}

std::string imagesParagraphs() {
   return "An image may be written as bytes: two hexadecimal digits for each, entry byte 0 first, "
          "in pieces of any length with or without 0x before each; as 32-bit words, as `vorn "
          "encode` prints them: 0x and eight digits each, the word of the lowest bytes first; as "
          "the lines of `hexdump -C`; or as JSON: a string of digits, an array of numbers or "
          "strings, or an object with such an \"image\", as `vorn program` and `vorn decode "
          "--json` print them.\n\n"
          "0x and eight digits are a word, even if it is the only one: 0x00012345 is the bytes "
          "45 23 01 00. Without 0x, or with --image-format bytes, they are the bytes 00 01 23 45. "
          "A mixture of such words and other pieces is refused. The numbers of a JSON array are "
          "words if one is above 255, otherwise bytes; on the command line an array must be in an "
          "object. --image-format words reads each piece or number as a word.";
}

} // namespace Vorn
