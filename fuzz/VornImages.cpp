// Any bytes as the images that `vorn decode` reads from standard input; or any images, written in
// any of the possible ways, which it has to read as these images.
//
// Images that it takes have to hold in every form of the output what they hold as JSON, which
// decodes and encodes to itself. Before an image that it refuses it prints the images before, and
// nothing else. A line is the same image as an argument of the command line.
#include "Finding.h"
#include "Vorn.h"

#include <verbs/Decode.h>

#include <Vorn/Fields.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <set>
#include <sstream>

namespace Fuzz {
namespace {

using Testing::Image;
using Vorn::DecodeArguments;
using Vorn::DecodeForm;

Outcome decoded( const DecodeArguments& arguments, const std::string& input = {} ) {
   return outcomeOf( [&]( Vorn::Output& output ) { Vorn::decode( arguments, output ); }, input );
}

using Cells = std::multiset<std::vector<std::string>>;

// Names and values of all fields, as JSON and the table for people have them.
Cells cellsIn( const std::vector<Json>& objects ) {
   Cells cells;
   for( const auto& object : objects ) {
      for( const auto& [name, value] : object.at( "fields" ).items() ) {
         cells.insert( { name, valueText( value ) } );
      }
   }
   return cells;
}

Cells cellsIn( const std::string& table ) {
   Cells cells;
   for( const auto& line : linesPrinted( table ) ) {
      std::istringstream in( line );
      unsigned offset = 0;
      unsigned width = 0;
      std::string name;
      std::string value;
      if( in >> offset >> width >> name >> value ) {
         cells.insert( { name, value } );
      }
   }
   return cells;
}

constexpr const char* placeKeys[] = { "entry", "array", "identifier", "address" };

std::string plain( const Json& value ) {
   return value.is_null() ? "" : value.is_string() ? value.get<std::string>() : value.dump();
}

std::string singleLines( const std::vector<Json>& objects, bool namePair ) {
   std::string text;
   for( const auto& object : objects ) {
      const auto pair = pairIn( object );
      std::string line = namePair ? pair.table + ' ' + pair.chip + ' ' + pair.variant : "";
      for( const auto* const key : placeKeys ) {
         if( const auto number = plain( object.at( key ) ); !number.empty() ) {
            line += ( line.empty() ? "" : " " ) + std::string( key ) + '=' + number;
         }
      }
      line += line.empty() ? "" : ":";
      for( const auto& [name, value] : object.at( "fields" ).items() ) {
         line += ( line.empty() ? "" : " " ) + name + '=' + valueText( value );
      }
      text += line + '\n';
   }
   return text;
}

// The rows of the images up to the first one that has other fields than the columns. `own` is the
// pair that the command line says.
std::string csvOf( const std::vector<Json>& objects, const Vorn::PairText* own ) {
   const auto first = Vorn::layoutOf( pairIn( objects.front() ) );
   auto layouts = Vorn::layoutsOn( first.chip() );
   std::erase_if( layouts, [&]( const auto& layout ) { return layout.table() != first.table(); } );
   if( own && !own->variant.empty() ) {
      layouts.assign( 1, Vorn::layoutOf( *own ) );
   }
   const auto columns = Vorn::fieldNamesIn( {}, layouts );
   std::string rows = "table,chip,variant,entry,array,identifier,address";
   for( const auto name : columns ) {
      rows += ',' + std::string( name );
   }
   rows += '\n';
   for( const auto& object : objects ) {
      const auto& fields = object.at( "fields" );
      const auto pair = Vorn::layoutOf( pairIn( object ) );
      const auto isColumn = [&]( const auto& field ) {
         return std::find( columns.begin(), columns.end(), field.name ) != columns.end();
      };
      if( !std::all_of( pair.fields().begin(), pair.fields().end(), isColumn ) ) {
         return rows;
      }
      rows += plain( object.at( "table" ) ) + ',' + plain( object.at( "chip" ) ) + ',' +
              plain( object.at( "variant" ) );
      for( const auto* const key : placeKeys ) {
         rows += ',' + plain( object.at( key ) );
      }
      for( const auto name : columns ) {
         rows += ',';
         if( pair.has( name ) ) {
            const std::string value = valueText( fields.at( std::string( name ) ) );
            rows += pair.field( name ).width > 64
                       ? value
                       : std::to_string( std::stoull( value, nullptr, 16 ) );
         }
      }
      rows += '\n';
   }
   return rows;
}

// Requires that the other forms print what is printed as JSON.
void requireForms( DecodeArguments arguments, const std::string& input, const Outcome& asJson ) {
   const auto objects = objectsIn( asJson.out );
   if( objects.empty() ) {
      return;
   }
   arguments.form = DecodeForm::text;
   if( cellsIn( decoded( arguments, input ).out ) != cellsIn( objects ) ) {
      found( "other fields in the table" );
   }
   arguments.form = DecodeForm::singleLine;
   if( const Outcome lines = decoded( arguments, input );
       lines.out != singleLines( objects, !arguments.pair ) || lines.error != asJson.error ) {
      found( "other fields in single lines" );
   }
   arguments.form = DecodeForm::csv;
   if( decoded( arguments, input ).out !=
       csvOf( objects, arguments.pair ? &*arguments.pair : nullptr ) ) {
      found( "other fields in CSV" );
   }
}

// Requires of images of one pair that those fields are printed that differ from the first one's.
void requireChanges( DecodeArguments arguments, const std::string& input,
                     const std::vector<Json>& objects ) {
   const Json& first = objects.front();
   arguments.changedFrom = first.at( "image" );
   std::string right;
   for( Json object : objects ) {
      Json changed = Json::object();
      for( const auto& [name, value] : object.at( "fields" ).items() ) {
         if( const auto& old = first.at( "fields" ).at( name ); old != value ) {
            changed[name] = { { "old", old }, { "new", value } };
         }
      }
      object.erase( "fields" );
      object["changed"] = changed;
      right += object.dump() + '\n';
   }
   if( decoded( arguments, input ).out != right ) {
      found( "other changes" );
   }
}

// Whether the input is taken as one dump of bytes, which has no lines.
bool isBinary( const DecodeArguments& arguments, const std::string& input ) {
   if( input.starts_with( "\x1f\x8b" ) || input.starts_with( "\x28\xb5\x2f\xfd" ) ) {
      return true; // compressed, whatever the form
   }
   // The first line decides that is neither blank nor a comment.
   std::string line;
   for( const auto& next :
        linesOf( input.substr( input.starts_with( "\xef\xbb\xbf" ) ? 3 : 0 ) ) ) {
      line = next;
      std::erase_if( line, []( char character ) {
         return character == ' ' || ( character >= '\t' && character <= '\r' );
      } );
      if( !line.empty() && line.front() != '#' ) {
         break;
      }
   }
   return arguments.format == Vorn::ImageFormat::automatic &&
          Vorn::shown( line, line.size() ) != line;
}

void run( const DecodeArguments& arguments, const std::string& input ) {
   const Outcome outcome = decoded( arguments, input );
   const auto objects = objectsIn( outcome.out );
   std::for_each( objects.begin(), objects.end(), requireRoundTrip );
   requireForms( arguments, input, outcome );
   if( arguments.pair && !objects.empty() && arguments.format <= Vorn::ImageFormat::bytes ) {
      requireChanges( arguments, input, objects );
   }
   DecodeArguments again;
   again.paths = { "-" };
   again.form = DecodeForm::json;
   again.printsEmpty = true;
   if( decoded( again, outcome.out ) != Outcome{ outcome.out, "", 0 } ) {
      found( "what is printed decodes to something else" );
   }
   if( isBinary( arguments, input ) ) {
      if( !outcome.error.empty() && !outcome.error.starts_with( "<stdin>:" ) ) {
         found( "the error has no place: " + outcome.error );
      }
      return;
   }
   // The lines before the one that ends a dump badly may be a whole dump.
   if( !outcome.error.empty() &&
       !decoded( arguments, linesBefore( outcome.error, input ) ).out.starts_with( outcome.out ) ) {
      found( "something of a bad image is printed" );
   }
   if( input.find( '\n' ) == std::string::npos ) {
      DecodeArguments argument = arguments;
      argument.paths.clear();
      argument.image = { input };
      if( decoded( argument ).out != outcome.out ) {
         found( "another image as an argument" );
      }
   }
}

// Ways to write an image.

std::string asDigits( const Image& image, FuzzedDataProvider& input ) {
   std::string text;
   for( std::size_t i = 0; i < image.size(); ) {
      const auto end = input.ConsumeIntegralInRange( i + 1, image.size() );
      // With 0x, the digits of four bytes would be a word, and those of the whole image a number.
      const bool mayHavePrefix = end != i + 4 && end - i < image.size();
      text += input.ConsumeBool() && mayHavePrefix ? " 0x" : " ";
      text += digitsOf( { &image[i], &image[i] + ( end - i ) } );
      i = end;
   }
   return text;
}

std::string asWords( const Image& image, FuzzedDataProvider& ) {
   std::string text;
   for( std::size_t i = 0; i < image.size(); i += 4 ) {
      text += " 0x" + digitsOf( { image[i + 3], image[i + 2], image[i + 1], image[i] } );
   }
   return text;
}

std::string asDump( const Image& image, FuzzedDataProvider& ) {
   std::string text;
   std::string last;
   const auto offset = [&]( std::size_t i ) {
      return digitsOf( { 0, 0, static_cast<U8>( i >> 8 ), static_cast<U8>( i ) } );
   };
   for( std::size_t i = 0; i < image.size(); i += 16 ) {
      std::string row;
      for( std::size_t j = i; j < std::min( i + 16, image.size() ); ++j ) {
         row += ' ' + digitsOf( { image[j] } );
      }
      if( row != last ) {
         text += '\n' + offset( i ) + ' ' + row + "  |" + std::string( row.size() / 3, '.' ) + '|';
      } else if( !text.ends_with( '*' ) ) {
         text += "\n*";
      }
      last = row;
   }
   return text + '\n' + offset( image.size() );
}

std::string asArray( const Image& image, FuzzedDataProvider& ) { return Json( image ).dump(); }

// Any images: of the own pair, or of any pairs after their names.
void runWritten( const DecodeArguments& arguments, FuzzedDataProvider& input ) {
   constexpr std::string ( *ways[] )( const Image&, FuzzedDataProvider& ) = { asDigits, asWords,
                                                                              asDump, asArray };
   std::string text;
   std::string images;
   bool areWhole = true;
   for( auto left = input.ConsumeIntegralInRange( 1, 3 ); left > 0; --left ) {
      const auto& pair = arguments.pair ? *arguments.pair : somePair( input );
      const std::size_t whole = Vorn::layoutOf( pair ).bytes();
      const std::size_t words = input.ConsumeIntegralInRange( std::size_t( 0 ), whole / 4 );
      auto image = input.ConsumeBytes<U8>( words == 0 ? whole : words * 4 );
      image.resize( words == 0 ? whole : words * 4 );
      // A dump leaves out rows that are repeated.
      for( std::size_t i = input.ConsumeBool() ? 16 : image.size(); i < image.size(); ++i ) {
         image[i] = image[i - 16];
      }
      areWhole = areWhole && image.size() >= whole;
      if( !arguments.pair ) {
         text += pair.table + ' ' + pair.chip + ' ' + pair.variant + ':';
      }
      text += input.PickValueInArray( ways )( image, input ) + '\n';
      image.resize( std::min( image.size(), whole ) );
      images += digitsOf( image ) + '\n';
   }

   std::string read;
   for( const auto& object : objectsIn( decoded( arguments, text ).out ) ) {
      read += object.at( "image" ).get<std::string>() + '\n';
   }
   if( areWhole ? read != images : !images.starts_with( read ) ) {
      found( "other images are read of " + Json( text ).dump() );
   }
   run( arguments, text );
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   using Vorn::ImageFormat;
   FuzzedDataProvider input( data, size );
   Vorn::DecodeArguments arguments;
   arguments.paths = { "-" };
   arguments.form = Vorn::DecodeForm::json;
   arguments.printsEmpty = true; // each image has its line
   // The choices are in the last bytes, after the text.
   if( input.ConsumeBool() ) {
      arguments.pair = Fuzz::somePair( input );
   }
   if( input.ConsumeBool() ) {
      Fuzz::runWritten( arguments, input );
      return 0;
   }
   arguments.format = input.PickValueInArray(
      { ImageFormat::automatic, ImageFormat::bytes, ImageFormat::words, ImageFormat::hexdump } );
   Fuzz::run( arguments, input.ConsumeRemainingBytesAsString() );
   return 0;
}
