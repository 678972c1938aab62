// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#include "forms/ImagePrinter.h"

#include "Terminal.h"
#include "Text.h"
#include "forms/Json.h"

#include <Vorn/Error.h>
#include <Vorn/Fields.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <utility>

namespace Vorn {

namespace {

constexpr std::string_view placeColumns = "table,chip,variant,entry,array,identifier,address";

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
         row.back() = std::to_string( value.word( 0 ) );
      }
   }
   return row;
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
      file_ = jsonText( file );
      break;
   case DecodeForm::csv:
      file_ = cellOf( file );
      break;
   default:
      file_ = file;
   }
   chosen_.clear();
   last_ = nullptr;
}

std::string_view ImagePrinter::print( const Decoded& decoded ) {
   text_.clear();
   if( form_ == DecodeForm::text ) {
      printText( decoded, chosenOf( *decoded.entry.layout ) );
   } else if( !decoded.before.empty() ) {
      printChanges( decoded, chosenOf( *decoded.entry.layout ) );
   } else {
      printLine( decoded );
   }
   isFirst_ = false;
   return text_.text();
}

const EntryLine* ImagePrinter::lineFor( const Layout& layout ) {
   if( form_ == DecodeForm::text || ( form_ == DecodeForm::csv && !columns_ ) ) {
      return nullptr;
   }
   const Chosen& chosen = chosenOf( layout );
   return chosen.fits ? &*chosen.line : nullptr;
}

std::string_view ImagePrinter::header() {
   text_.clear();
   appendHeader();
   return text_.text();
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
   if( form_ == DecodeForm::text ) {
      if( !areChosen_ ) {
         std::stable_sort(
            chosen.fields.begin(), chosen.fields.end(),
            []( const Field* left, const Field* right ) { return left->offset < right->offset; } );
      }
      return chosen;
   }
   if( form_ == DecodeForm::csv && !areChosen_ ) {
      const auto missing = std::count( chosen.fields.begin(), chosen.fields.end(), nullptr );
      chosen.fits =
         chosen.fields.size() - static_cast<std::size_t>( missing ) == layout.fields().size();
   }
   std::string pair( layout.chip().name );
   const auto number = std::to_string( layout.variant() );
   if( form_ == DecodeForm::json ) {
      pair = R"("table":")" + std::string( layout.table() ) + R"(","chip":")" + pair +
             R"(","variant":)" + number;
   } else {
      const std::string between = form_ == DecodeForm::csv ? "," : " ";
      pair = std::string( layout.table() ) + between + pair + between + number;
   }
   if( form_ == DecodeForm::singleLine && !namesPair_ ) {
      pair.clear();
   }
   chosen.line.emplace( form_, layout, chosen.fields, hasFile_ ? file_ : std::string(), pair );
   return chosen;
}

void ImagePrinter::printText( const Decoded& decoded, const Chosen& chosen ) {
   const bool isComparison = !decoded.before.empty();
   std::string text = isFirst_ ? "" : "\n";
   std::string heading = namesPair_ ? decoded.entry.layout->pairText() : std::string();
   if( const auto place = placeText( decoded.entry ); !place.empty() ) {
      heading += ( heading.empty() ? "" : ", " ) + place;
   }
   text += heading.empty() ? "" : heading + '\n';
   std::vector<std::vector<std::string>> rows{ { "offset", "width", "field",
                                                 isComparison ? "old" : "value",
                                                 isComparison ? "new" : "decimal" } };
   for( const Field* const field : chosen.fields ) {
      if( isPrinted( decoded, *field ) ) {
         rows.push_back( rowOf( decoded, *field ) );
      }
   }
   if( rows.size() == 1 ) {
      text += isComparison ? "no field differs\n" : "no fields\n";
   } else {
      constexpr Align columns[] = { Align::right, Align::right, Align::left, Align::left,
                                    Align::left };
      text += tableOf( columns, rows );
   }
   if( !hasFile_ ) {
      text_.append( text );
      return;
   }
   for( std::string_view rest = text; !rest.empty(); ) {
      const auto line = rest.substr( 0, rest.find( '\n' ) + 1 );
      text_.append( file_ );
      text_.append( ":" );
      text_.append( line );
      rest.remove_prefix( line.size() );
   }
}

// A single line or an object of JSON with the fields that differ.
void ImagePrinter::printChanges( const Decoded& decoded, const Chosen& chosen ) {
   const bool isJson = form_ == DecodeForm::json;
   chosen.line->appendBegin( text_, decoded.entry );
   std::string text = isJson ? R"(,"changed":{)" : "";
   bool isFirst = !chosen.line->isBegun( decoded.entry );
   for( const Field* const field : chosen.fields ) {
      if( !isPrinted( decoded, *field ) ) {
         continue;
      }
      text += std::exchange( isFirst, false ) ? "" : isJson ? "," : " ";
      if( isJson ) {
         text.append( "\"" ).append( field->name ).append( R"(":{"old":)" );
         appendJsonValue( text, valueBefore( decoded, *field ) );
         text += R"(,"new":)";
         appendJsonValue( text, valueIn( decoded, *field ) );
         text += '}';
      } else {
         text.append( field->name ).append( "=" );
         appendHex( text, valueBefore( decoded, *field ) );
         text += "->";
         appendHex( text, valueIn( decoded, *field ) );
      }
   }
   text_.append( text );
   text_.append( isJson ? "}}\n" : "\n" );
}

void ImagePrinter::printLine( const Decoded& decoded ) {
   const Layout& layout = *decoded.entry.layout;
   if( form_ == DecodeForm::csv && !columns_ ) {
      auto variants = layoutsOn( layout.chip() );
      std::erase_if( variants, [&]( const Layout& one ) { return one.table() != layout.table(); } );
      provide( variants );
      chosen_.clear();
      last_ = nullptr;
   }
   const Chosen& chosen = chosenOf( layout );
   if( !chosen.fits ) {
      throw Error( "the image is of " + layout.pairText() +
                   ", whose fields are not those of the header; --csv takes the images of one "
                   "table and chip type, or those fields that --fields names" );
   }
   appendHeader();
   chosen.line->append( text_, decoded.entry );
}

// The header of CSV, once.
void ImagePrinter::appendHeader() {
   if( form_ != DecodeForm::csv || !columns_ || std::exchange( hasHeader_, true ) ) {
      return;
   }
   std::string text = hasFile_ ? "file," : "";
   text += placeColumns;
   for( const std::string_view name : *columns_ ) {
      text.append( "," ).append( name );
   }
   text_.append( text + '\n' );
}

} // namespace Vorn
