// Any bytes, and lines much like plain records, for the two parsers of `vorn program`: what the
// quick one takes the careful one has to take, too, with the same result. Both keep what they have
// seen in the lines before.
#include "Finding.h"
#include "Notations.h"
#include "Vorn.h"
#include "vorn/QuickRecordsCheck.h"

#include <Vorn/Chip.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Fuzz {
namespace {

using namespace std::string_view_literals;

void requireSame( const std::string& text ) {
   Vorn::QuickRecords quick;
   Vorn::RecordComposer careful;
   std::string padded( text.size() + Vorn::QuickRecords::padding, '9' );
   text.copy( padded.data(), text.size() );
   for( std::size_t begin = 0; begin < text.size(); ) {
      const auto end = std::min( text.find( '\n', begin ), text.size() );
      const auto line = std::string_view( padded ).substr( begin, end - begin );
      if( const auto entry = quick.compose( line ) ) {
         const auto made = Testing::textOf( *entry );
         const auto right = Testing::carefully( careful, line );
         if( made != right ) {
            found( "quickly " + made + ", carefully " + right.value_or( "refused" ) + ": " +
                   std::string( line ) );
         }
      }
      begin = end + 1;
   }
}

// A name and a value, both as JSON writes them.
using Member = std::pair<std::string, std::string>;
using Members = std::vector<Member>;

std::string asJson( std::string_view text ) { return '"' + std::string( text ) + '"'; }

std::string objectOf( const Members& members, std::string_view blank ) {
   std::string text = "{";
   for( const auto& [name, value] : members ) {
      text += text.size() > 1 ? "," : "";
      text.append( blank ).append( name ).append( blank ) += ':';
      text.append( blank ).append( value ).append( blank );
   }
   return text + '}';
}

// Values that are no plain numbers.
constexpr std::string_view values[] = { "-0",
                                        "-1",
                                        "0.0",
                                        "1.0",
                                        "1e3",
                                        "1E0",
                                        "01",
                                        "+1",
                                        "-",
                                        "null",
                                        "true",
                                        "{}",
                                        "[]",
                                        "[1]",
                                        "{\"a\":{\"b\":[{}]}}",
                                        "\"\"",
                                        "\" 1\"",
                                        "\"-0\"",
                                        "\"017\"",
                                        "\"1_0\"",
                                        "\"0x1_0\"",
                                        "\"0b11\"",
                                        "\"\\u0031\"",
                                        "\"mask\"",
                                        "\"m\\u0061sk\"",
                                        "\"Mask\"",
                                        "\"10.0.0.1\"",
                                        "\"::1\"",
                                        "\"00:00:00:00:00:01\"",
                                        "\"\xc3\xa4\"",
                                        "\"\xff\"",
                                        "\"\\ud800\"",
                                        "\"1\\u0000\"",
                                        "\"LifTable\"",
                                        "65536",
                                        "18446744073709551615",
                                        "18446744073709551616",
                                        "99999999999999999999999" };

constexpr std::string_view names[] = { "\"table\"",   "\"chip\"",     "\"variant\"", "\"entry\"",
                                       "\"array\"",   "\"fields\"",   "\"from\"",    "\"image\"",
                                       "\"address\"", "\"file\"",     "\"vsi\"",     "\"\"",
                                       "\"nothing\"", "\"\\u0076si\"" };

// Makes one thing different, perhaps.
void alter( Members& members, FuzzedDataProvider& input ) {
   const auto kind = input.ConsumeIntegralInRange( 0, 12 );
   if( members.empty() || kind > 5 ) {
      return;
   }
   Member& member = someOf( input, members );
   std::string& name = member.first;
   if( kind == 0 ) {
      std::swap( member, members.front() );
   } else if( kind == 1 ) {
      members.push_back( Member( member ) );
   } else if( kind == 2 ) {
      member.second = someOf( input, values );
   } else if( kind == 3 ) {
      name = someOf( input, names );
   } else if( kind == 4 ) {
      name.replace( 1, 1, "\\u00" + digitsOf( { static_cast<U8>( name[1] ) } ) );
   } else {
      members.erase( members.begin() + ( &member - members.data() ) );
   }
}

// The lines of a file have few of them.
struct Kind {
   const Vorn::Layout& layout;
   std::vector<const Vorn::Field*> fields;
   bool hasChipName;
   U8 keys; // a bit for each of those that may be missing
   std::string_view blank;
};

Kind someKind( FuzzedDataProvider& input ) {
   Kind kind{ someLayout( input ), {}, input.ConsumeBool(), input.ConsumeIntegral<U8>(), "" };
   const auto fields = kind.layout.fields();
   for( auto count = input.ConsumeIntegralInRange( 0, 12 ); count > 0; --count ) {
      kind.fields.push_back( &someOf( input, fields ) );
   }
   kind.blank = input.PickValueInArray( { ""sv, ""sv, " "sv, "\t\r"sv } );
   return kind;
}

std::string valueOf( const Vorn::Field& field, FuzzedDataProvider& input ) {
   const auto notation = input.ConsumeIntegralInRange( 0, 15 );
   if( notation == 0 ) {
      return someValue( input, field.width ).dump();
   }
   const auto number = input.ConsumeIntegralInRange<U64>(
      0, field.width < 64 ? ( U64( 1 ) << field.width ) - 1 : ~U64( 0 ) );
   return notation < 10   ? std::to_string( number )
          : notation < 15 ? asJson( Vorn::hexOf( number ) )
                          : asJson( Vorn::maskWord );
}

std::string someLine( const Kind& kind, FuzzedDataProvider& input ) {
   const Vorn::Layout& layout = kind.layout;
   Members members{ { asJson( "table" ), asJson( layout.table() ) },
                    { asJson( "chip" ), kind.hasChipName
                                           ? asJson( layout.chip().name )
                                           : std::to_string( layout.chip().number ) } };
   if( layout.variant() != 0 || ( kind.keys & 1 ) != 0 ) {
      members.emplace_back( asJson( "variant" ), std::to_string( layout.variant() ) );
   }
   const auto place = [&]( const char* name, unsigned key, U64 end ) {
      if( ( kind.keys >> key & 1 ) != 0 ) {
         const auto number = input.ConsumeIntegralInRange<U64>( 0, end );
         members.emplace_back( asJson( name ), std::to_string( number ) );
      }
   };
   place( "entry", 1, layout.info().entries );
   place( "array", 2, layout.info().arrayElements );
   place( "identifier", 3, 3 );
   Members fields;
   for( const Vorn::Field* const field : kind.fields ) {
      fields.emplace_back( asJson( field->name ), valueOf( *field, input ) );
   }
   alter( fields, input );
   members.emplace_back( asJson( "fields" ), objectOf( fields, kind.blank ) );
   std::swap( members.back(), members[kind.keys >> 4 & 1] );
   alter( members, input );
   auto line = objectOf( members, kind.blank );
   const auto twist = input.ConsumeIntegralInRange( 0, 15 );
   if( twist == 0 ) {
      line += input.PickValueInArray( { " "sv, "\r"sv, "x"sv, ","sv, "{}"sv, "\0"sv } );
   } else if( twist == 1 ) {
      line += line;
   } else if( twist == 2 ) {
      line = "\xef\xbb\xbf" + line;
   } else if( twist == 3 ) {
      someOf( input, line ) = input.ConsumeIntegral<char>();
   }
   return line + '\n';
}

std::string someLines( FuzzedDataProvider& input ) {
   const Kind kinds[] = { someKind( input ), someKind( input ) };
   std::string lines;
   while( input.remaining_bytes() > 0 ) {
      lines += someLine( someOf( input, kinds ), input );
   }
   return lines;
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   FuzzedDataProvider input( data, size );
   // The choice is in the last byte, after the text.
   Fuzz::requireSame( input.ConsumeBool() ? Fuzz::someLines( input )
                                          : input.ConsumeRemainingBytesAsString() );
   return 0;
}
