// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#include "Printer.h"

#include "Error.h"
#include "Terminal.h"
#include "Text.h"

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

bool isPrinted( const Decoded& decoded, std::size_t position ) {
   if( decoded.before.empty() ) {
      return true;
   }
   const Decoder& decoder = decoded.decoder;
   return decoder.value( decoded.loaded, position ).words !=
          decoder.value( decoded.before, position ).words;
}

void appendValue( std::string& text, const Decoded& decoded, std::span<const U8> loaded,
                  std::size_t position ) {
   appendHex( text, decoded.decoder.value( loaded, position ) );
}

std::string valueOf( const Decoded& decoded, std::span<const U8> loaded, std::size_t position ) {
   return hexOf( decoded.decoder.value( loaded, position ) );
}

std::vector<std::string> rowOf( const Decoded& decoded, std::size_t position ) {
   const Plan::Field& field = decoded.decoder.plan().fields()[position];
   std::vector<std::string> row{ std::to_string( field.offset ), std::to_string( field.width ),
                                 std::string( field.name ) };
   const auto value = valueOf( decoded, decoded.loaded, position );
   if( !decoded.before.empty() ) {
      row.push_back( valueOf( decoded, decoded.before, position ) );
      row.push_back( value );
   } else {
      row.push_back( value );
      row.emplace_back();
      if( decoded.decoder.isNarrow( position ) ) {
         appendDecimal( row.back(), decoded.decoder.narrow( decoded.loaded, position ) );
      }
   }
   return row;
}

} // namespace

std::string_view Printer::print( const Decoded& decoded ) {
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

std::string_view Printer::finish( const Decoder* decoder ) {
   text_.clear();
   if( form_ == DecodeForm::csv && !columns_ && decoder ) {
      printHeader( *decoder );
   }
   return text_;
}

void Printer::printText( const Decoded& decoded ) {
   const bool isComparison = !decoded.before.empty();
   text_ += isFirst_ ? "" : "\n";
   if( namesPair_ ) {
      text_ += decoded.decoder.plan().pairText() + '\n';
   }
   std::vector<std::vector<std::string>> rows{ { "offset", "width", "field",
                                                 isComparison ? "old" : "value",
                                                 isComparison ? "new" : "decimal" } };
   for( const std::size_t position : decoded.decoder.byOffset() ) {
      if( isPrinted( decoded, position ) ) {
         rows.push_back( rowOf( decoded, position ) );
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

void Printer::printSingleLine( const Decoded& decoded ) {
   const auto fields = decoded.decoder.plan().fields();
   if( namesPair_ ) {
      printPair( decoded.decoder.plan() );
   }
   for( std::size_t position = 0; position < fields.size(); ++position ) {
      if( isPrinted( decoded, position ) ) {
         text_ += text_.empty() ? "" : " ";
         text_.append( fields[position].name ).append( "=" );
         if( !decoded.before.empty() ) {
            appendValue( text_, decoded, decoded.before, position );
            text_ += "->";
         }
         appendValue( text_, decoded, decoded.loaded, position );
      }
   }
   text_ += '\n';
}

// As the pair may stand before an image that is read.
void Printer::printPair( const Plan& plan ) {
   text_.append( plan.table() ).append( " " ).append( plan.chip().name ).append( " " );
   appendDecimal( text_, plan.variant() );
   text_ += ':';
}

void Printer::printJson( const Decoded& decoded ) {
   const Plan& plan = decoded.decoder.plan();
   text_.append( R"({"table":")" ).append( plan.table() );
   text_.append( R"(","chip":")" ).append( plan.chip().name );
   text_.append( R"(","variant":)" );
   appendDecimal( text_, plan.variant() );
   text_.append( R"(,"image":")" );
   appendHex( text_, decoded.image.first( std::min( decoded.image.size(), plan.imageBytes() ) ) );
   text_.append( decoded.before.empty() ? R"(","fields":{)" : R"(","changed":{)" );
   std::string_view between;
   for( std::size_t position = 0; position < plan.fields().size(); ++position ) {
      if( !isPrinted( decoded, position ) ) {
         continue;
      }
      text_.append( between ).append( "\"" ).append( plan.fields()[position].name );
      between = ",";
      if( decoded.before.empty() ) {
         text_ += R"(":")";
         appendValue( text_, decoded, decoded.loaded, position );
         text_ += '"';
      } else {
         text_ += R"(":{"old":")";
         appendValue( text_, decoded, decoded.before, position );
         text_ += R"(","new":")";
         appendValue( text_, decoded, decoded.loaded, position );
         text_ += "\"}";
      }
   }
   text_ += "}}\n";
}

void Printer::printCsv( const Decoded& decoded ) {
   const Decoder& decoder = decoded.decoder;
   if( !columns_ ) {
      printHeader( decoder );
   } else if( columns_ != &decoder ) {
      throw Error( "the image is of " + decoder.plan().pairText() + ", those before it of " +
                   columns_->plan().pairText() + "; --csv takes the images of one pair" );
   }
   char* out = row_.data();
   char* const end = out + row_.size();
   for( std::size_t position = 0; position < decoder.plan().fields().size(); ++position ) {
      if( position > 0 ) {
         *out++ = ',';
      }
      if( decoder.isNarrow( position ) ) {
         const U64 number = decoder.narrow( decoded.loaded, position );
         if( number < 10 ) {
            *out++ = static_cast<char>( '0' + number );
         } else {
            out = std::to_chars( out, end, number ).ptr;
         }
      } else {
         wide_.clear();
         appendHex( wide_, decoder.value( decoded.loaded, position ) );
         out = std::copy( wide_.begin(), wide_.end(), out );
      }
   }
   *out++ = '\n';
   text_.append( row_.data(), out );
}

void Printer::printHeader( const Decoder& decoder ) {
   columns_ = &decoder;
   std::size_t room = 1;
   for( const Plan::Field& field : decoder.plan().fields() ) {
      text_.append( text_.empty() ? "" : "," ).append( field.name );
      room += longestOf( field.width ) + 1;
   }
   text_ += '\n';
   row_.resize( room );
}

} // namespace Vorn
