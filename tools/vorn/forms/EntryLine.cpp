// Lines for decoded entries, composed straight into a buffer.
#include "forms/EntryLine.h"

#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace Vorn {

namespace {

constexpr std::size_t longestDecimal = 20;

// The whole numbers that a double, and so a reader of JSON, holds exactly have at most these bits.
constexpr unsigned jsonBits = 53;

// All that the place may take.
constexpr std::size_t longestPlace = 160;

bool isPlaceKnown( const DumpEntry& entry ) {
   return entry.entry || entry.array || entry.identifier || entry.address;
}

char* write( char* to, std::string_view text ) {
   std::memcpy( to, text.data(), text.size() );
   return to + text.size();
}

// Characters of a value, with 0x and quotes.
std::size_t longestValue( const Field& field ) {
   return std::max<std::size_t>( longestDecimal, field.width / 4 + 5 );
}

char* writeJson( char* to, const Value& value ) {
   if( value.bits() <= jsonBits ) {
      return writeDecimal( to, value.word( 0 ) );
   }
   *to++ = '"';
   to = writeHex( to, value );
   *to++ = '"';
   return to;
}

// Calls take( name, number ) for the parts of the place. The address is the last of them.
template<class Take>
void forEachPart( const DumpEntry& entry, Take take ) {
   take( "entry", entry.entry );
   take( "array", entry.array );
   take( "identifier", entry.identifier );
}

char* writeCsvPlace( char* to, const DumpEntry& entry ) {
   if( !isPlaceKnown( entry ) ) {
      return write( to, ",,,," );
   }
   forEachPart( entry, [&]( std::string_view, const std::optional<U64>& number ) {
      *to++ = ',';
      to = number ? writeDecimal( to, *number ) : to;
   } );
   *to++ = ',';
   return entry.address ? writeHex( to, *entry.address ) : to;
}

char* writeJsonPlace( char* to, const DumpEntry& entry ) {
   if( !isPlaceKnown( entry ) ) {
      return write( to, R"(,"entry":null,"array":null,"identifier":null,"address":null)" );
   }
   forEachPart( entry, [&]( std::string_view name, const std::optional<U64>& number ) {
      to = write( write( write( to, ",\"" ), name ), "\":" );
      to = number ? writeDecimal( to, *number ) : write( to, "null" );
   } );
   to = write( to, R"(,"address":)" );
   if( !entry.address ) {
      return write( to, "null" );
   }
   *to++ = '"';
   to = writeHex( to, *entry.address );
   *to++ = '"';
   return to;
}

char* writePlace( char* to, const DumpEntry& entry, bool isFirst ) {
   const auto name = [&]( std::string_view one ) {
      to = write( to, std::exchange( isFirst, false ) ? "" : " " );
      to = write( write( to, one ), "=" );
   };
   forEachPart( entry, [&]( std::string_view part, const std::optional<U64>& number ) {
      if( number ) {
         name( part );
         to = writeDecimal( to, *number );
      }
   } );
   if( entry.address ) {
      name( "address" );
      to = writeHex( to, *entry.address );
   }
   return to;
}

} // namespace

void appendJsonValue( std::string& text, const Value& value ) {
   char characters[longestDecimal + Value::maxBits / 4];
   text.append( characters, writeJson( characters, value ) );
}

void TextBuffer::grow( std::size_t characters ) {
   const std::size_t capacity = std::max( 2 * capacity_, size_ + characters );
   auto more = std::make_unique_for_overwrite<char[]>( capacity );
   std::copy_n( characters_.get(), size_, more.get() );
   characters_ = std::move( more );
   capacity_ = capacity;
}

EntryLine::Words::Words( std::string_view text ) : size( text.size() ) {
   if( size > most ) {
      longer = text;
   } else {
      text.copy( characters.data(), size );
   }
}

char* EntryLine::Words::write( char* to ) const {
   if( size <= few ) {
      std::memcpy( to, characters.data(), few );
      return to + size;
   }
   if( size <= most ) [[likely]] {
      std::memcpy( to, characters.data(), most );
      return to + size;
   }
   return Vorn::write( to, longer );
}

EntryLine::EntryLine( DecodeForm form, const Layout& layout, std::vector<const Field*> fields,
                      std::string_view file, std::string_view pair )
   : form_( form ), layout_( &layout ), begin_( {} ), hasPair_( !pair.empty() ), end_( {} ) {
   std::string begin;
   const bool isJson = form == DecodeForm::json;
   if( !file.empty() ) {
      begin = ( isJson ? R"("file":)" : "" ) + std::string( file ) +
              ( form == DecodeForm::singleLine ? ":" : "," );
   }
   begin_ = Words( ( isJson ? "{" : "" ) + begin + std::string( pair ) );
   longest_ = begin_.size + longestPlace + 2 * layout.bytes();
   std::string before;
   for( const Field* const field : fields ) {
      before += form == DecodeForm::csv          ? ","
                : cells_.empty()                 ? ""
                : form == DecodeForm::singleLine ? " "
                                                 : ",";
      if( !field ) {
         continue;
      }
      if( form != DecodeForm::csv ) {
         before += ( isJson ? "\"" : "" ) + std::string( field->name ) + ( isJson ? "\":" : "=" );
      }
      const unsigned mostDecimal = form == DecodeForm::csv ? 64 : isJson ? jsonBits : 0;
      cells_.push_back(
         { Words( before ), FieldReader( layout, *field ), field->width <= mostDecimal } );
      longest_ += before.size() + longestValue( *field );
      before.clear();
   }
   end_ = Words( before + ( isJson ? "}}\n" : "\n" ) );
   longest_ += end_.size + Words::most;
}

void EntryLine::append( TextBuffer& text, const DumpEntry& entry ) const {
   char* to = writeBegin( text.room( longest_ ), entry );
   if( form_ == DecodeForm::json ) {
      to = write( to, R"(,"fields":{)" );
   } else if( isBegun( entry ) && !cells_.empty() ) {
      *to++ = ' ';
   }
   for( const Cell& cell : cells_ ) {
      to = writeValue( cell.before.write( to ), entry.image, cell );
   }
   text.endAt( end_.write( to ) );
}

void EntryLine::appendBegin( TextBuffer& text, const DumpEntry& entry ) const {
   text.endAt( writeBegin( text.room( longest_ ), entry ) );
}

bool EntryLine::isBegun( const DumpEntry& entry ) const {
   return form_ == DecodeForm::singleLine && ( hasPair_ || isPlaceKnown( entry ) );
}

char* EntryLine::writeBegin( char* to, const DumpEntry& entry ) const {
   to = begin_.write( to );
   if( form_ == DecodeForm::csv ) {
      return writeCsvPlace( to, entry );
   }
   if( form_ == DecodeForm::json ) {
      to = write( writeJsonPlace( to, entry ), R"(,"image":")" );
      to = writeHex( to, entry.image.first( std::min( entry.image.size(), layout_->bytes() ) ) );
      *to++ = '"';
      return to;
   }
   if( isBegun( entry ) ) {
      to = writePlace( to, entry, !hasPair_ );
      *to++ = ':';
   }
   return to;
}

char* EntryLine::writeValue( char* to, std::span<const U8> image, const Cell& cell ) const {
   if( cell.isDecimal ) [[likely]] {
      return writeDecimal( to, cell.field.get( image ) );
   }
   const Value value = cell.field.value( image );
   return form_ == DecodeForm::json ? writeJson( to, value ) : writeHex( to, value );
}

} // namespace Vorn
