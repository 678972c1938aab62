// A JSON Schema of the records that `vorn program` takes.
#include "forms/Exports.h"

#include "forms/Json.h"

#include <Vorn/Pairs.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <limits>
#include <set>

namespace Vorn {

namespace {

constexpr U64 largestNumber = std::numeric_limits<U64>::max(); // that JSON writes without quotes

// Decimal digits of 2^width - 1.
std::string decimalOnes( U32 width ) {
   std::string digits = "0"; // the lowest first
   for( U32 bit = 0; bit < width; ++bit ) {
      unsigned carry = 1;
      for( char& digit : digits ) {
         const unsigned twice = 2 * static_cast<unsigned>( digit - '0' ) + carry;
         digit = static_cast<char>( '0' + twice % 10 );
         carry = twice / 10;
      }
      if( carry > 0 ) {
         digits += '1';
      }
   }
   return { digits.rbegin(), digits.rend() };
}

std::string times( std::size_t most ) { return "{0," + std::to_string( most ) + '}'; }

// One digit from `least` to `most`.
std::string digits( unsigned least, unsigned most ) {
   return least == most ? std::to_string( least )
                        : '[' + std::to_string( least ) + '-' + std::to_string( most ) + ']';
}

// Decimal numbers up to 2^width - 1, perhaps with an underscore after any digit.
std::string decimalPattern( U32 width ) {
   const std::string most = decimalOnes( width );
   std::string pattern = "0";
   if( most.size() > 1 ) {
      pattern += "|[1-9](_?[0-9])" + times( most.size() - 2 );
   }
   std::string same; // digits that the largest number begins with
   for( std::size_t i = 0; i < most.size(); ++i ) {
      const auto digit = static_cast<unsigned>( most[i] - '0' );
      const unsigned least = i == 0 ? 1 : 0;
      if( digit > least ) {
         const std::size_t rest = most.size() - 1 - i;
         pattern += '|' + same + digits( least, digit - 1 );
         pattern += rest > 0 ? "(_?[0-9]){" + std::to_string( rest ) + '}' : "";
      }
      same += most[i];
      same += i + 1 < most.size() ? "_?" : "";
   }
   return pattern + '|' + same;
}

// A pattern for the highest hexadecimal digit of a number, which has these bits of it.
std::string highestDigit( U32 bits ) {
   return bits == 1 ? "[01]" : bits == 2 ? "[0-3]" : bits == 3 ? "[0-7]" : "";
}

// A pattern for the texts of a value of that width. Addresses are there where the field holds all
// their bits.
std::string valuePattern( U32 width ) {
   const std::string hex = "[0-9a-fA-F]";
   const std::string octet = "(25[0-5]|2[0-4][0-9]|1[0-9][0-9]|[1-9]?[0-9])";
   const std::string ipv4 = octet + "(\\." + octet + "){3}";
   const std::string top = highestDigit( width % 4 );
   // What follows 0x or 0b neither begins nor ends with an underscore, nor are there two in a row.
   const std::string spelled = "(?=.)(?!_)(?!.*__)(?!.*_$)[0_]*";
   std::string pattern = "^(mask|" + decimalPattern( width );
   pattern += "|0[xX]" + spelled + ( top.empty() ? "" : '(' + top + "_?)?" ) + "([0-9a-fA-F]_?)" +
              times( width / 4 );
   pattern += "|0[bB]" + spelled + "([01]_?)" + times( width );
   if( width >= 32 ) {
      pattern += '|' + ipv4;
   }
   if( width >= 48 ) {
      for( const std::string separator : { ":", "-" } ) {
         pattern += '|' + hex + "{2}(" + separator + hex + "{2}){5}";
      }
      pattern += '|' + hex + "{4}(\\." + hex + "{4}){2}";
   }
   if( width >= 128 ) {
      const std::string group = hex + "{1,4}";
      pattern +=
         "|(" + group + ":){7}" + group + "|(" + group + ":){1,7}:|(" + group + ":){6}" + ipv4;
      for( unsigned before = 0; before < 7; ++before ) {
         const auto begin =
            before == 0 ? ":" : '(' + group + ":){" + std::to_string( before ) + '}';
         const auto rest = [&]( unsigned least, unsigned most ) {
            return "(:" + group + "){" + std::to_string( least ) + ',' + std::to_string( most ) +
                   '}';
         };
         pattern += '|' + begin + rest( 1, 7 - before );
         if( before < 6 ) {
            pattern += '|' + begin + rest( 0, 5 - before ) + ':' + ipv4;
         }
      }
      pattern += "|::";
   }
   return pattern + ")$";
}

Json indexSchema( U64 count ) {
   return { { "type", "integer" }, { "minimum", 0 }, { "maximum", count - 1 } };
}

// Of a place, which may be unknown.
Json placeSchema( U64 count ) {
   Json schema = indexSchema( count );
   schema["type"] = { "integer", "null" };
   return schema;
}

Json valueSchema( U32 width ) {
   Json schema;
   schema["type"] = { "integer", "string" };
   schema["minimum"] = 0;
   schema["maximum"] = width >= 64 ? largestNumber : ( U64( 1 ) << width ) - 1;
   schema["pattern"] = valuePattern( width );
   return schema;
}

std::string widthName( U32 width ) {
   return std::to_string( width ) + ( width == 1 ? "Bit" : "Bits" );
}

Json reference( const std::string& name ) { return { { "$ref", "#/$defs/" + name } }; }

// Which records are of the pair.
Json selectorOf( const Layout& layout ) {
   const Chip& chip = layout.chip();
   const auto number = static_cast<unsigned>( chip.number );
   Json properties;
   properties["table"]["const"] = layout.table();
   properties["chip"]["enum"] = { chip.name, number, std::to_string( number ) };
   Json required = { "table", "chip" };
   if( layout.info().hasVariants ) {
      properties["variant"]["const"] = layout.variant();
      if( layout.variant() != 0 ) {
         required.push_back( "variant" );
      }
   }
   return { { "properties", properties }, { "required", required } };
}

Json pairSchema( const Layout& layout, std::set<U32>& widths ) {
   const Hardware::PairInfo& info = layout.info();
   Json fields = Json::object();
   for( const Field& field : layout.fields() ) {
      Json one = reference( widthName( field.width ) );
      one["description"] = field.hardwareName;
      if( field.readOnly ) {
         one = { { "description", field.hardwareName },
                 { "const", layout.get( layout.blank(), field.name ) } };
      } else {
         widths.insert( field.width );
      }
      fields[std::string( field.name )] = one;
   }
   Json properties;
   properties["entry"] = placeSchema( info.entries );
   properties["array"] = placeSchema( info.arrayElements );
   properties["identifier"] = placeSchema( info.instanceCount );
   properties["fields"] = { { "properties", fields }, { "additionalProperties", false } };
   return { { "title", layout.pairText() }, { "properties", properties } };
}

template<class Value>
void addOnce( Json& list, const Value& value ) {
   if( std::find( list.begin(), list.end(), Json( value ) ) == list.end() ) {
      list.push_back( value );
   }
}

} // namespace

std::string recordSchema( std::span<const Layout> layouts ) {
   Json tables = Json::array();
   Json chips = Json::array();
   Json anyOf = Json::array();
   Json allOf = Json::array();
   Json definitions = Json::object();
   std::set<U32> widths;
   for( const Layout& layout : layouts ) {
      const auto pair = symbolOf( layout );
      addOnce( tables, layout.table() );
      const auto number = static_cast<unsigned>( layout.chip().number );
      addOnce( chips, layout.chip().name );
      addOnce( chips, number );
      addOnce( chips, std::to_string( number ) );
      const Json selector = reference( "is_" + pair );
      anyOf.push_back( selector );
      allOf.push_back( { { "if", selector }, { "then", reference( pair ) } } );
      definitions["is_" + pair] = selectorOf( layout );
      definitions[pair] = pairSchema( layout, widths );
   }
   for( const U32 width : widths ) {
      definitions[widthName( width )] = valueSchema( width );
   }

   Json properties;
   properties["table"]["enum"] = tables;
   properties["chip"]["enum"] = chips;
   properties["variant"] = indexSchema( 256 );
   for( const auto* const name : { "entry", "array", "identifier" } ) {
      properties[name] = { { "type", { "integer", "null" } }, { "minimum", 0 } };
   }
   properties["from"] = { { "type", "string" }, { "description", "an image to begin with" } };
   // What `vorn decode --json` and `vorn program` print more.
   properties["image"] = { { "type", { "string", "null" } },
                           { "description", "the image to begin with" } };
   properties["address"] = { { "type", { "integer", "string", "null" } } };
   for( const auto* const name : { "accessType", "destBlock" } ) {
      properties[name] = { { "type", { "integer", "null" } },
                           { "minimum", 0 },
                           { "maximum", 255 } };
   }
   properties["file"] = { { "type", "string" } };
   properties["fields"]["type"] = "object";

   Json schema;
   schema["$schema"] = "https://json-schema.org/draft/2020-12/schema";
   schema["title"] = "A record of `vorn program`: which entry to compose from which fields";
   schema["type"] = "object";
   schema["required"] = { "table", "chip", "fields" };
   schema["properties"] = properties;
   schema["additionalProperties"] = false;
   schema["anyOf"] = anyOf;
   schema["allOf"] = allOf;
   schema["$defs"] = definitions;
   return jsonText( schema, 3 ) + '\n';
}

} // namespace Vorn
