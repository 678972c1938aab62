// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#include "forms/ImagePrinter.h"

#include "Terminal.h"
#include "Text.h"

#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <utility>

namespace Vorn {

namespace {

constexpr std::size_t longestDecimal = 20;

// The whole numbers that a double, and so a reader of JSON, holds exactly have at most these bits.
constexpr unsigned jsonBits = 53;

constexpr std::string_view placeColumns = "table,chip,variant,entry,array,identifier,address";

void appendDecimal( std::string& text, U64 number ) {
   char digits[longestDecimal];
   text.append( digits, std::to_chars( std::begin( digits ), std::end( digits ), number ).ptr );
}

Value valueIn( const Decoded& decoded, const Field& field ) {
   return decoded.entry.layout->value( decoded.entry.image, field );
}

Value valueBefore( const Decoded& decoded, const Field& field ) {
   return decoded.entry.layout->value( decoded.before, field );
}

bool isPrinted( const Decoded& decoded, const Field& field ) {
   return decoded.before.empty() || valueIn( decoded, field ) != valueBefore( decoded, field );
}

std::vector<std::string> rowOf( const Decoded& decoded, const Field& field ) {
   std::vector<std::string> row{ std::to_string( field.offset ), std::to_string( field.width ),
                                 std::string( field.name ) };
   const Value value = valueIn( decoded, field );
   if( !decoded.before.empty() ) {
      row.push_back( hexOf( valueBefore( decoded, field ) ) );
      row.push_back( hexOf( value ) );
   } else {
      row.push_back( hexOf( value ) );
      row.emplace_back();
      if( field.width <= 64 ) {
         appendDecimal( row.back(), value.word( 0 ) );
      }
   }
   return row;
}

bool isPlaceKnown( const DumpEntry& entry ) {
   return entry.entry || entry.array || entry.identifier || entry.address;
}

// "entry 5, array 2, address 0x1101005", as far as it is known. An array element or an instance 0
// is left out, as most tables have no other.
std::string placeText( const DumpEntry& entry ) {
   std::string text;
   const auto add = [&]( std::string_view name, const std::string& number ) {
      text.append( text.empty() ? "" : ", " ).append( name ).append( " " ).append( number );
   };
   if( entry.entry ) {
      add( "entry", std::to_string( *entry.entry ) );
   }
   if( entry.array && *entry.array > 0 ) {
      add( "array", std::to_string( *entry.array ) );
   }
   if( entry.identifier && *entry.identifier > 0 ) {
      add( "identifier", std::to_string( *entry.identifier ) );
   }
   if( entry.address ) {
      add( "address", hexOf( *entry.address ) );
   }
   return text;
}

// Calls take( name, number ) for the parts of the place. The address is the last of them.
template<class Take>
void forEachPart( const DumpEntry& entry, Take take ) {
   take( "entry", entry.entry );
   take( "array", entry.array );
   take( "identifier", entry.identifier );
}

// A cell of CSV: in quotes if it holds what would end it.
std::string cellOf( const std::string& text ) {
   if( text.find_first_of( ",\"\n\r" ) == std::string::npos ) {
      return text;
   }
   std::string cell = "\"";
   for( const char c : text ) {
      cell += c == '"' ? "\"\"" : std::string( 1, c );
   }
   return cell + '"';
}

} // namespace

void appendJsonValue( std::string& text, const Value& value ) {
   if( value.bits() <= jsonBits ) {
      appendDecimal( text, value.word( 0 ) );
   } else {
      text += '"';
      appendHex( text, value );
      text += '"';
   }
}

void ImagePrinter::choose( std::vector<std::string_view> fields ) {
   columns_ = std::move( fields );
   areChosen_ = true;
}

void ImagePrinter::provide( std::span<const Layout> layouts ) {
   if( form_ == DecodeForm::csv && !columns_ && !layouts.empty() ) {
      columns_ = fieldNamesIn( {}, layouts );
   }
}

void ImagePrinter::nameFile( const std::string& file ) {
   hasFile_ = true;
   switch( form_ ) {
   case DecodeForm::json:
      file_ =
         nlohmann::json( file ).dump( -1, ' ', false, nlohmann::json::error_handler_t::replace );
      break;
   case DecodeForm::csv:
      file_ = cellOf( file );
      break;
   default:
      file_ = file;
   }
}

std::string_view ImagePrinter::print( const Decoded& decoded ) {
   text_.clear();
   const Chosen& chosen = chosenOf( *decoded.entry.layout );
   switch( form_ ) {
   case DecodeForm::text:
      printText( decoded, chosen );
      break;
   case DecodeForm::singleLine:
      printSingleLine( decoded, chosen );
      break;
   case DecodeForm::json:
      printJson( decoded, chosen );
      break;
   case DecodeForm::csv:
      printCsv( decoded, chosen );
      break;
   }
   isFirst_ = false;
   return text_;
}

std::string_view ImagePrinter::finish() {
   text_.clear();
   if( form_ == DecodeForm::csv && columns_ && !hasHeader_ ) {
      printHeader();
   }
   return text_;
}

const ImagePrinter::Chosen& ImagePrinter::chosenOf( const Layout& layout ) {
   if( &layout != last_ ) {
      auto found = chosen_.find( &layout );
      if( found == chosen_.end() ) {
         found = chosen_.emplace( &layout, choiceOf( layout ) ).first;
      }
      last_ = &layout;
      lastChosen_ = &found->second;
   }
   return *lastChosen_;
}

ImagePrinter::Chosen ImagePrinter::choiceOf( const Layout& layout ) const {
   Chosen chosen;
   chosen.pair = layout.chip().name;
   const auto number = std::to_string( layout.variant() );
   if( form_ == DecodeForm::json ) {
      chosen.pair = R"("table":")" + std::string( layout.table() ) + R"(","chip":")" + chosen.pair +
                    R"(","variant":)" + number;
   } else {
      const std::string between = form_ == DecodeForm::csv ? "," : " ";
      chosen.pair = std::string( layout.table() ) + between + chosen.pair + between + number;
   }
   if( !columns_ ) {
      for( const Field& field : layout.fields() ) {
         chosen.fields.push_back( &field );
      }
   } else {
      for( const std::string_view name : *columns_ ) {
         const Field* const field = layout.has( name ) ? &layout.field( name ) : nullptr;
         if( field || form_ == DecodeForm::csv ) {
            chosen.fields.push_back( field );
         }
      }
   }
   if( form_ != DecodeForm::text ) {
      return chosen;
   }
   chosen.byOffset = chosen.fields;
   if( !areChosen_ ) {
      std::stable_sort(
         chosen.byOffset.begin(), chosen.byOffset.end(),
         []( const Field* left, const Field* right ) { return left->offset < right->offset; } );
   }
   return chosen;
}

void ImagePrinter::printText( const Decoded& decoded, const Chosen& chosen ) {
   const bool isComparison = !decoded.before.empty();
   text_ += isFirst_ ? "" : "\n";
   std::string heading = namesPair_ ? decoded.entry.layout->pairText() : std::string();
   if( const auto place = placeText( decoded.entry ); !place.empty() ) {
      heading += ( heading.empty() ? "" : ", " ) + place;
   }
   text_ += heading.empty() ? "" : heading + '\n';
   std::vector<std::vector<std::string>> rows{ { "offset", "width", "field",
                                                 isComparison ? "old" : "value",
                                                 isComparison ? "new" : "decimal" } };
   for( const Field* const field : chosen.byOffset ) {
      if( isPrinted( decoded, *field ) ) {
         rows.push_back( rowOf( decoded, *field ) );
      }
   }
   if( rows.size() == 1 ) {
      text_ += isComparison ? "no field differs\n" : "no fields\n";
   } else {
      constexpr Align columns[] = { Align::right, Align::right, Align::left, Align::left,
                                    Align::left };
      text_ += tableOf( columns, rows );
   }
   if( hasFile_ ) {
      std::string lines;
      for( std::string_view rest = text_; !rest.empty(); ) {
         const auto line = rest.substr( 0, rest.find( '\n' ) + 1 );
         lines.append( file_ ).append( ":" ).append( line );
         rest.remove_prefix( line.size() );
      }
      text_ = std::move( lines );
   }
}

void ImagePrinter::printSingleLine( const Decoded& decoded, const Chosen& chosen ) {
   const DumpEntry& entry = decoded.entry;
   if( hasFile_ ) {
      text_.append( file_ ).append( ":" );
   }
   const std::size_t begin = text_.size();
   if( namesPair_ ) {
      text_ += chosen.pair;
   }
   if( isPlaceKnown( entry ) ) {
      const auto add = [&]( std::string_view name ) {
         text_.append( text_.size() > begin ? " " : "" ).append( name ).append( "=" );
      };
      forEachPart( entry, [&]( std::string_view name, const std::optional<U64>& number ) {
         if( number ) {
            add( name );
            appendDecimal( text_, *number );
         }
      } );
      if( entry.address ) {
         add( "address" );
         appendHex( text_, *entry.address );
      }
   }
   text_ += text_.size() > begin ? ":" : "";
   bool isFirst = text_.size() == begin;
   for( const Field* const field : chosen.fields ) {
      if( isPrinted( decoded, *field ) ) {
         text_.append( std::exchange( isFirst, false ) ? "" : " " );
         text_.append( field->name ).append( "=" );
         if( !decoded.before.empty() ) {
            appendHex( text_, valueBefore( decoded, *field ) );
            text_ += "->";
         }
         appendHex( text_, valueIn( decoded, *field ) );
      }
   }
   text_ += '\n';
}

void ImagePrinter::printJson( const Decoded& decoded, const Chosen& chosen ) {
   const DumpEntry& entry = decoded.entry;
   text_ += '{';
   if( hasFile_ ) {
      text_.append( R"("file":)" ).append( file_ ).append( "," );
   }
   text_ += chosen.pair;
   forEachPart( entry, [&]( std::string_view name, const std::optional<U64>& number ) {
      text_.append( ",\"" ).append( name ).append( "\":" );
      if( number ) {
         appendDecimal( text_, *number );
      } else {
         text_ += "null";
      }
   } );
   text_ += R"(,"address":)";
   if( entry.address ) {
      text_ += '"';
      appendHex( text_, *entry.address );
      text_ += '"';
   } else {
      text_ += "null";
   }
   text_.append( R"(,"image":")" );
   appendHex( text_, entry.image.first( std::min( entry.image.size(), entry.layout->bytes() ) ) );
   text_.append( decoded.before.empty() ? R"(","fields":{)" : R"(","changed":{)" );
   std::string_view between;
   for( const Field* const field : chosen.fields ) {
      if( !isPrinted( decoded, *field ) ) {
         continue;
      }
      text_.append( between ).append( "\"" ).append( field->name ).append( "\":" );
      between = ",";
      if( decoded.before.empty() ) {
         appendJsonValue( text_, valueIn( decoded, *field ) );
      } else {
         text_ += R"({"old":)";
         appendJsonValue( text_, valueBefore( decoded, *field ) );
         text_ += R"(,"new":)";
         appendJsonValue( text_, valueIn( decoded, *field ) );
         text_ += '}';
      }
   }
   text_ += "}}\n";
}

void ImagePrinter::printCsv( const Decoded& decoded, const Chosen& chosen ) {
   const DumpEntry& entry = decoded.entry;
   const Layout& layout = *entry.layout;
   if( !columns_ ) {
      auto variants = layoutsOn( layout.chip() );
      std::erase_if( variants, [&]( const Layout& one ) { return one.table() != layout.table(); } );
      provide( variants );
      chosen_.clear();
      last_ = nullptr;
      printCsv( decoded, chosenOf( layout ) );
      return;
   }
   if( !areChosen_ ) {
      const auto count = static_cast<std::size_t>(
         std::count_if( chosen.fields.begin(), chosen.fields.end(),
                        []( const Field* field ) { return field != nullptr; } ) );
      if( count < layout.fields().size() ) {
         throw Error( "the image is of " + layout.pairText() +
                      ", whose fields are not those of the header; --csv takes the images of one "
                      "table and chip type, or those fields that --fields names" );
      }
   }
   if( !hasHeader_ ) {
      printHeader();
   }
   if( hasFile_ ) {
      text_.append( file_ ).append( "," );
   }
   text_ += chosen.pair;
   forEachPart( entry, [&]( std::string_view, const std::optional<U64>& number ) {
      text_ += ',';
      if( number ) {
         appendDecimal( text_, *number );
      }
   } );
   text_ += ',';
   if( entry.address ) {
      appendHex( text_, *entry.address );
   }
   for( const Field* const field : chosen.fields ) {
      text_ += ',';
      if( !field ) {
         continue;
      }
      if( field->width <= 64 ) {
         appendDecimal( text_, layout.get( entry.image, *field ) );
      } else {
         appendHex( text_, layout.value( entry.image, *field ) );
      }
   }
   text_ += '\n';
}

void ImagePrinter::printHeader() {
   hasHeader_ = true;
   text_.append( hasFile_ ? "file," : "" ).append( placeColumns );
   for( const std::string_view name : *columns_ ) {
      text_.append( "," ).append( name );
   }
   text_ += '\n';
}

} // namespace Vorn
