// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#include "forms/ImagePrinter.h"

#include "Terminal.h"
#include "Text.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <charconv>
#include <utility>
#include <vector>

#include <unistd.h>

namespace Vorn {

namespace {

constexpr std::size_t longestDecimal = 20;

void appendDecimal( std::string& text, U64 number ) {
   char digits[longestDecimal];
   text.append( digits, std::to_chars( std::begin( digits ), std::end( digits ), number ).ptr );
}

// Characters that a value takes in CSV at most.
std::size_t longestOf( unsigned width ) {
   return width <= 64 ? longestDecimal : 2 + ( width + 3 ) / 4;
}

bool isPrinted( const Decoded& decoded, const Field& field ) {
   return decoded.before.empty() || decoded.layout.value( decoded.image, field ) !=
                                       decoded.layout.value( decoded.before, field );
}

void appendValue( std::string& text, const Decoded& decoded, std::span<const U8> image,
                  const Field& field ) {
   appendHex( text, decoded.layout.value( image, field ) );
}

std::string valueOf( const Decoded& decoded, std::span<const U8> image, const Field& field ) {
   return hexOf( decoded.layout.value( image, field ) );
}

std::vector<std::string> rowOf( const Decoded& decoded, const Field& field ) {
   std::vector<std::string> row{ std::to_string( field.offset ), std::to_string( field.width ),
                                 std::string( field.name ) };
   const auto value = valueOf( decoded, decoded.image, field );
   if( !decoded.before.empty() ) {
      row.push_back( valueOf( decoded, decoded.before, field ) );
      row.push_back( value );
   } else {
      row.push_back( value );
      row.emplace_back();
      if( field.width <= 64 ) {
         appendDecimal( row.back(), decoded.layout.get( decoded.image, field ) );
      }
   }
   return row;
}

std::vector<Field> byOffset( const Layout& layout ) {
   std::vector<Field> fields( layout.fields().begin(), layout.fields().end() );
   std::stable_sort( fields.begin(), fields.end(), []( const Field& left, const Field& right ) {
      return left.offset < right.offset;
   } );
   return fields;
}

} // namespace

std::string_view ImagePrinter::print( const Decoded& decoded ) {
   text_.clear();
   switch( form_ ) {
   case DecodeForm::text:
      printText( decoded );
      break;
   case DecodeForm::singleLine:
      printSingleLine( decoded );
      break;
   case DecodeForm::json:
      printJson( decoded );
      break;
   case DecodeForm::csv:
      printCsv( decoded );
      break;
   }
   isFirst_ = false;
   return text_;
}

std::string_view ImagePrinter::finish( const Layout* layout ) {
   text_.clear();
   if( form_ == DecodeForm::csv && !columns_ && layout ) {
      printHeader( *layout );
   }
   return text_;
}

void ImagePrinter::printText( const Decoded& decoded ) {
   const bool isComparison = !decoded.before.empty();
   text_ += isFirst_ ? "" : "\n";
   if( namesPair_ ) {
      text_ += decoded.layout.pairText() + '\n';
   }
   std::vector<std::vector<std::string>> rows{ { "offset", "width", "field",
                                                 isComparison ? "old" : "value",
                                                 isComparison ? "new" : "decimal" } };
   for( const Field& field : byOffset( decoded.layout ) ) {
      if( isPrinted( decoded, field ) ) {
         rows.push_back( rowOf( decoded, field ) );
      }
   }
   if( rows.size() == 1 ) {
      text_ += isComparison ? "no field differs\n" : "no fields\n";
      return;
   }
   constexpr Align columns[] = { Align::right, Align::right, Align::left, Align::left,
                                 Align::left };
   text_ += tableOf( columns, rows );
}

void ImagePrinter::printSingleLine( const Decoded& decoded ) {
   if( namesPair_ ) {
      printPair( decoded.layout );
   }
   for( const Field& field : decoded.layout.fields() ) {
      if( isPrinted( decoded, field ) ) {
         text_ += text_.empty() ? "" : " ";
         text_.append( field.name ).append( "=" );
         if( !decoded.before.empty() ) {
            appendValue( text_, decoded, decoded.before, field );
            text_ += "->";
         }
         appendValue( text_, decoded, decoded.image, field );
      }
   }
   text_ += '\n';
}

// As the pair may stand before an image that is read.
void ImagePrinter::printPair( const Layout& layout ) {
   text_.append( layout.table() ).append( " " ).append( layout.chip().name ).append( " " );
   appendDecimal( text_, layout.variant() );
   text_ += ':';
}

void ImagePrinter::printJson( const Decoded& decoded ) {
   const Layout& layout = decoded.layout;
   text_.append( R"({"table":")" ).append( layout.table() );
   text_.append( R"(","chip":")" ).append( layout.chip().name );
   text_.append( R"(","variant":)" );
   appendDecimal( text_, layout.variant() );
   text_.append( R"(,"image":")" );
   appendHex( text_, decoded.image.first( std::min( decoded.image.size(), layout.bytes() ) ) );
   text_.append( decoded.before.empty() ? R"(","fields":{)" : R"(","changed":{)" );
   std::string_view between;
   for( const Field& field : layout.fields() ) {
      if( !isPrinted( decoded, field ) ) {
         continue;
      }
      text_.append( between ).append( "\"" ).append( field.name );
      between = ",";
      if( decoded.before.empty() ) {
         text_ += R"(":")";
         appendValue( text_, decoded, decoded.image, field );
         text_ += '"';
      } else {
         text_ += R"(":{"old":")";
         appendValue( text_, decoded, decoded.before, field );
         text_ += R"(","new":")";
         appendValue( text_, decoded, decoded.image, field );
         text_ += "\"}";
      }
   }
   text_ += "}}\n";
}

void ImagePrinter::printCsv( const Decoded& decoded ) {
   const Layout& layout = decoded.layout;
   if( !columns_ ) {
      printHeader( layout );
   } else if( columns_ != &layout && !( *columns_ == layout ) ) {
      throw Error( "the image is of " + layout.pairText() + ", those before it of " +
                   columns_->pairText() + "; --csv takes the images of one pair" );
   }
   char* out = row_.data();
   char* const end = out + row_.size();
   for( const Field& field : layout.fields() ) {
      if( out != row_.data() ) {
         *out++ = ',';
      }
      if( field.width <= 64 ) {
         const U64 number = layout.get( decoded.image, field );
         if( number < 10 ) {
            *out++ = static_cast<char>( '0' + number );
         } else {
            out = std::to_chars( out, end, number ).ptr;
         }
      } else {
         wide_.clear();
         appendHex( wide_, layout.value( decoded.image, field ) );
         out = std::copy( wide_.begin(), wide_.end(), out );
      }
   }
   *out++ = '\n';
   text_.append( row_.data(), out );
}

void ImagePrinter::printHeader( const Layout& layout ) {
   columns_ = &layout;
   std::size_t room = 1;
   for( const Field& field : layout.fields() ) {
      text_.append( text_.empty() ? "" : "," ).append( field.name );
      room += longestOf( field.width ) + 1;
   }
   text_ += '\n';
   row_.resize( room );
}

} // namespace Vorn
