// Any bytes as CSV for `vorn program`, and rows that are made with quotes, blanks and empty cells:
// each composes what the JSON record with the same keys composes, and where one of the two is
// refused, the other is.
//
// Only fields that contradict each other are refused in a row alone, as a model with one bool for
// each bit says.
#include "Finding.h"
#include "Notations.h"
#include "Vorn.h"
#include "vorn/QuickRecordsCheck.h"

#include <Vorn/Chip.h>
#include <Vorn/Rows.h>
#include <verbs/Program.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Fuzz {
namespace {

using Testing::Bits;

Outcome programmed( const std::string& input, bool areRows ) {
   Vorn::ProgramArguments arguments;
   if( areRows ) {
      arguments.rows.emplace();
   }
   return Fuzz::programmed( std::move( arguments ), input );
}

// Requires that the entries printed are printed again, and that before a bad row there is all of
// what comes before it and nothing else.
void run( const std::string& input ) {
   if( !isPlain( input ) ) {
      return;
   }
   const Outcome outcome = programmed( input, true );
   const Outcome right{ outcome.out, "", 0 };
   if( programmed( outcome.out, false ) != right ) {
      found( "the entries of rows aren't printed again" );
   }
   if( outcome.status != 0 && programmed( linesBefore( outcome.error, input ), true ) != right ) {
      found( "something of a bad row is printed" );
   }
}

constexpr std::string_view keys[] = { "table",  "chip",       "variant",  "entry", "array",
                                      "from",   "identifier", "image",    "file",  "address",
                                      "fields", "accessType", "destBlock" };

// What is right in no column but "file".
constexpr std::string_view wrongTexts[] = { "010", "1e3", "-1", "1.0", "\xc3\xa4", "a,b",
                                            "\"",  "#1",  " ",  "x y", "null" };

struct Cell {
   std::string text; // empty: says nothing
   Json value;       // in a record
};

// Whether fields of the record contradict each other or the tag.
bool contradicts( const Json& record ) {
   const auto layout = Vorn::layoutOf( pairIn( record ) );
   std::vector<std::optional<bool>> known( 8 * layout.bytes() );
   bool isFound = false;
   const auto say = [&]( const Vorn::Field& field, const Bits& value ) {
      for( unsigned i = 0; i < field.width; ++i ) {
         auto& bit = known[field.offset + i];
         isFound = isFound || bit.value_or( value[i] ) != value[i];
         bit = value[i];
      }
   };
   for( const auto& [field, value] : layout.tag() ) {
      say( field, Testing::toBits( value ) );
   }
   for( const auto& [name, given] : record.at( "fields" ).items() ) {
      const auto& field = layout.field( name );
      const auto text = given.is_string() ? given.get<std::string>() : given.dump();
      const Bits value =
         text == Vorn::maskWord ? Testing::lowOnes( field.width ) : numberIn( text ).value();
      // What an image that was printed holds already isn't set.
      if( !record.contains( "image" ) || text == Vorn::maskWord ||
          Testing::bitsAt( imageIn( record.at( "image" ) ), field.offset, field.width ) != value ) {
         say( field, value );
      }
   }
   return isFound;
}

// A table of CSV, and what its rows say as records.
class Sheet {
public:
   explicit Sheet( FuzzedDataProvider& input );

   void requireRight();

private:
   bool isKey( std::size_t column ) const;
   bool hasRepeats() const;
   Cell someCell( std::size_t column );
   std::string written( const std::string& text );
   std::string header();
   void requireRow();

   FuzzedDataProvider& input_;
   const Vorn::Layout& layout_;
   Vorn::RowOptions options_;
   std::vector<std::string> columns_;
   Vorn::RowComposer rows_;
   Vorn::RecordComposer records_;
   std::string text_;
};

Sheet::Sheet( FuzzedDataProvider& input ) : input_( input ), layout_( someLayout( input ) ) {
   if( input.ConsumeBool() ) {
      options_ = { std::string( layout_.table() ), &layout_.chip(), layout_.variant() };
   }
   const auto chosen = input.ConsumeIntegral<U16>();
   for( std::size_t i = 0; i < std::size( keys ); ++i ) {
      const bool isNeeded = options_.table.empty() && i < 3;
      if( keys[i] != "fields" && ( isNeeded || ( chosen >> i & 1 ) != 0 ) ) {
         columns_.emplace_back( keys[i] );
      }
   }
   const auto fields = layout_.fields();
   for( auto count = input.ConsumeIntegralInRange( 0, 6 ); count > 0; --count ) {
      columns_.emplace_back( someOf( input, fields ).name );
   }
   for( auto count = input.ConsumeIntegralInRange( 0, 3 ); count > 0 && !columns_.empty();
        --count ) {
      std::swap( someOf( input, columns_ ), columns_.back() );
   }
   rows_ = Vorn::RowComposer( options_ );
}

// A column that is called as a key is a key, but only the first one.
bool Sheet::isKey( std::size_t column ) const {
   const auto end = columns_.begin() + static_cast<std::ptrdiff_t>( column );
   return std::find( std::begin( keys ), std::end( keys ), *end ) != std::end( keys ) &&
          std::find( columns_.begin(), end, *end ) == end;
}

bool Sheet::hasRepeats() const {
   std::set<std::pair<bool, std::string>> seen;
   for( std::size_t i = 0; i < columns_.size(); ++i ) {
      if( !seen.emplace( isKey( i ), columns_[i] ).second ) {
         return true;
      }
   }
   return false;
}

Cell Sheet::someCell( std::size_t column ) {
   const auto kind = input_.ConsumeIntegralInRange( 0, 63 );
   if( kind == 0 ) {
      const std::string text( someOf( input_, wrongTexts ) );
      return { text, text };
   }
   const std::string& name = columns_[column];
   if( kind < 12 ) {
      return { "", nullptr };
   }
   const auto asText = []( const std::string& text ) { return Cell{ text, text }; };
   const auto asNumber = [&]( U64 number ) {
      return Cell{ kind % 2 == 0 ? std::to_string( number ) : Vorn::hexOf( number ), number };
   };
   const auto upTo = [&]( U64 end ) {
      return asNumber( input_.ConsumeIntegralInRange<U64>( 0, end ) );
   };
   if( !isKey( column ) ) {
      const auto width = layout_.has( name ) ? layout_.field( name ).width : 1;
      const Json value = someValue( input_, width );
      return { value.is_string() ? value.get<std::string>() : value.dump(), value };
   }
   if( name == "table" ) {
      return asText( std::string(
         kind == 12 && options_.table.empty() ? someLayout( input_ ).table() : layout_.table() ) );
   }
   if( name == "chip" ) {
      return asText( kind % 2 == 0 ? layout_.chip().name
                                   : std::to_string( layout_.chip().number ) );
   }
   if( name == "variant" ) {
      return asNumber( layout_.variant() );
   }
   if( name == "from" || name == "image" ) {
      const auto bytes = kind < 40 ? layout_.bytes() : 0;
      return asText( digitsOf( tagged( layout_, input_.ConsumeBytes<U8>( bytes ) ) ) );
   }
   if( name == "file" ) {
      return asText( "lab 3/dump" );
   }
   const auto address = layout_.address( {} );
   return name == "entry"        ? upTo( layout_.info().entries )
          : name == "array"      ? upTo( layout_.info().arrayElements )
          : name == "identifier" ? upTo( 2 )
          : !address             ? upTo( 2 )
          : name == "address"    ? asNumber( address->schanAddress + U64( kind % 3 ) )
          : name == "accessType" ? asNumber( address->accessType )
                                 : asNumber( address->destBlock );
}

// In quotes where it needs them, and where it doesn't.
std::string Sheet::written( const std::string& text ) {
   const auto blank = [&] { return input_.PickValueInArray( { "", "", "", " ", "\t" } ); };
   std::string cell = blank();
   if( text.find_first_of( ",\" #" ) == std::string::npos && input_.ConsumeBool() ) {
      cell += text;
   } else {
      cell += '"';
      for( const char c : text ) {
         cell.append( c == '"' ? 2 : 1, c );
      }
      cell += '"';
   }
   return cell + blank();
}

std::string Sheet::header() {
   std::string line;
   for( const std::string& name : columns_ ) {
      line += ( line.empty() ? "" : "," ) + written( name );
   }
   return line + ( input_.ConsumeBool() ? "\r" : "" );
}

void Sheet::requireRow() {
   Json record = Json::object();
   Json fields = Json::object();
   std::string line;
   bool isEmpty = true;
   for( std::size_t i = 0; i < columns_.size(); ++i ) {
      const auto [text, value] = someCell( i );
      line += ( i == 0 ? "" : "," ) + written( text );
      if( !text.empty() ) {
         isEmpty = false;
         ( isKey( i ) ? record : fields )[columns_[i]] = value;
      }
   }
   line += input_.ConsumeBool() ? "\r" : "";
   text_ += line + '\n';
   if( !options_.table.empty() ) {
      record.emplace( "table", options_.table );
      record.emplace( "chip", layout_.chip().name );
      record.emplace( "variant", layout_.variant() );
   }
   record["fields"] = fields;
   auto right = Testing::carefully( records_, record.dump() );
   if( right && contradicts( record ) ) {
      right.reset();
   }
   std::optional<std::string> made;
   try {
      const auto entry = rows_.compose( line );
      made = entry ? Testing::textOf( *entry ) : "";
   } catch( const Vorn::Error& ) {
      if( rows_.column() > line.size() + 1 ) {
         found( "the place is outside of the row" );
      }
   }
   if( made != ( isEmpty ? "" : right ) ) {
      found( "the row makes " + made.value_or( "an error" ) + ", the record " +
             right.value_or( "an error" ) + ": " + line + ' ' + record.dump() );
   }
}

void Sheet::requireRight() {
   if( columns_.empty() ) {
      return;
   }
   const std::string names = header();
   text_ = names + '\n';
   bool isTaken = true;
   try {
      rows_.header( names );
   } catch( const Vorn::Error& ) {
      isTaken = false;
   }
   if( isTaken == hasRepeats() ) {
      found( ( isTaken ? "taken: " : "refused: " ) + names );
   }
   for( auto count = input_.ConsumeIntegralInRange( 1, 6 ); isTaken && count > 0; --count ) {
      requireRow();
   }
   if( options_.table.empty() ) {
      run( text_ );
   }
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   FuzzedDataProvider input( data, size );
   // The choice is in the last byte, after the text.
   if( input.ConsumeBool() ) {
      Fuzz::Sheet( input ).requireRight();
   } else {
      Fuzz::run( input.ConsumeRemainingBytesAsString() );
   }
   return 0;
}
