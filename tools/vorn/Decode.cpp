// `vorn decode`: the fields of one entry image.
#include "Decode.h"

#include "Arguments.h"
#include "Error.h"
#include "Plan.h"
#include "Text.h"
#include "Values.h"
#include "Verbs.h"

#include <Kelvar/BitBuf.h>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>

namespace Vorn {

namespace {

// Each piece has whole bytes, and may begin with 0x.
void appendBytes( std::vector<U8>& image, std::string_view piece ) {
   auto digits = piece;
   if( digits.starts_with( "0x" ) || digits.starts_with( "0X" ) ) {
      digits.remove_prefix( 2 );
   }
   constexpr std::string_view allowed = "0123456789abcdefABCDEF";
   if( digits.empty() || digits.size() % 2 != 0 ||
       digits.find_first_not_of( allowed ) != std::string_view::npos ) {
      throw Error( "bad image " + inQuotes( piece ) +
                   "; write two hexadecimal digits for each byte, entry byte 0 first" );
   }
   for( ; !digits.empty(); digits.remove_prefix( 2 ) ) {
      const std::string byte = "0x" + std::string( digits.substr( 0, 2 ) );
      image.push_back( static_cast<U8>( parseValue( byte, "image" ).words[0] ) );
   }
}

std::vector<U8> imageOf( const std::vector<std::string>& arguments ) {
   constexpr std::string_view blanks = " \t\n\r";
   std::vector<U8> image;
   for( const std::string_view argument : arguments ) {
      for( auto begin = argument.find_first_not_of( blanks ); begin != std::string_view::npos; ) {
         const auto end = std::min( argument.find_first_of( blanks, begin ), argument.size() );
         appendBytes( image, argument.substr( begin, end - begin ) );
         begin = argument.find_first_not_of( blanks, end );
      }
   }
   return image;
}

void requireAllFields( const Plan& plan, std::span<const U8> image ) {
   std::size_t needed = 0;
   for( const auto& field : plan.fields() ) {
      needed = std::max( needed, ( std::size_t( field.offset ) + field.width + 7 ) / 8 );
   }
   if( image.size() < needed ) {
      throw Error( "the image has " + std::to_string( image.size() ) + " bytes; the fields of " +
                   plan.pairText() + " need " + std::to_string( needed ) + ", a whole entry has " +
                   std::to_string( plan.imageBytes() ) );
   }
}

Value valueOf( const Plan::Field& field, std::span<const U8> image ) {
   Value value;
   getBuf( image.data(), static_cast<int>( image.size() ), value.bytes(),
           static_cast<int>( sizeof( value.words ) ), field.width, field.offset );
   value.measure();
   return value;
}

std::string jsonOf( const Plan& plan, std::span<const U8> image ) {
   nlohmann::ordered_json object;
   object["table"] = plan.table();
   object["chip"] = plan.chip().name;
   object["variant"] = plan.variant();
   auto& fields = object["fields"] = nlohmann::ordered_json::object();
   for( const auto& field : plan.fields() ) {
      fields[std::string( field.name )] = hexOf( valueOf( field, image ) );
   }
   return object.dump() + '\n';
}

std::string linesOf( const Plan& plan, std::span<const U8> image ) {
   std::vector<Plan::Field> fields( plan.fields().begin(), plan.fields().end() );
   std::stable_sort( fields.begin(), fields.end(),
                     []( const Plan::Field& left, const Plan::Field& right ) {
                        return left.offset < right.offset;
                     } );
   std::vector<std::vector<std::string>> rows{ { "offset", "width", "field", "value", "decimal" } };
   for( const auto& field : fields ) {
      const Value value = valueOf( field, image );
      rows.push_back( { std::to_string( field.offset ), std::to_string( field.width ),
                        std::string( field.name ), hexOf( value ),
                        field.width <= 64 ? std::to_string( value.words[0] ) : "" } );
   }
   constexpr Align columns[] = { Align::right, Align::right, Align::left, Align::left,
                                 Align::left };
   return columnsOf( columns, rows );
}

} // namespace

std::string decode( const DecodeArguments& arguments ) {
   const Plan plan( arguments.pair );
   const auto image = imageOf( arguments.image );
   requireAllFields( plan, image );
   return arguments.json ? jsonOf( plan, image ) : linesOf( plan, image );
}

Verb addDecode( CLI::App& commandLine ) {
   CLI::App* const verb = commandLine.add_subcommand( "decode", "Print the fields of an image" );
   const auto arguments = std::make_shared<DecodeArguments>();
   addPair( *verb, arguments->pair );
   verb->add_flag( "--json", arguments->json, "Print one JSON object" );
   verb->add_option( "HEX", arguments->image, "The image as hexadecimal digits" )->required();
   describe( *verb,
             "The image is two digits for each byte, entry byte 0 first, in one or several pieces, "
             "each with or without 0x before it. It has to reach to the end of the last field; "
             "bytes behind the entry are not looked at. A tag is shown like any field and not "
             "checked.\n\n"
             "With --json the fields are in their declared order, else by offset.\n\n" +
                chipTypesParagraph(),
             "  vorn decode TcamActionTable --chip BCM88690_B0 4523010000000000" );
   return { verb, [arguments]( Output& output ) { output.write( decode( *arguments ) ); } };
}

} // namespace Vorn
