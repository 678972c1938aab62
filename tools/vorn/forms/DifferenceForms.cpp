// What changes from one pair to another, as text and as JSON.
#include "forms/DifferenceForms.h"

#include "Text.h"
#include "forms/Json.h"

#include <Vorn/Text.h>

namespace Vorn {

namespace {

// "3 -> 5", "3" where there is no other.
std::string arrow( std::optional<unsigned> from, std::optional<unsigned> to ) {
   if( !from || !to || *from == *to ) {
      return std::to_string( from ? *from : *to );
   }
   return std::to_string( *from ) + " -> " + std::to_string( *to );
}

std::optional<unsigned> offsetIn( const std::optional<Difference::Bits>& bits ) {
   return bits ? std::optional( bits->offset ) : std::nullopt;
}

std::optional<unsigned> widthIn( const std::optional<Difference::Bits>& bits ) {
   return bits ? std::optional( bits->width ) : std::nullopt;
}

std::string sideText( const Layout& layout ) { return layout.chip().name + layout.variantText(); }

Json sideJson( const Layout& layout ) {
   return { { "chip", layout.chip().name }, { "variant", layout.variant() } };
}

Json bitsJson( const std::optional<Difference::Bits>& bits ) {
   return bits ? Json{ { "offset", bits->offset }, { "width", bits->width } } : Json();
}

} // namespace

std::string differenceLines( const Layout& from, const Layout& to ) {
   const Difference difference = differenceOf( from, to );
   std::string text =
      std::string( from.table() ) + ": " + sideText( from ) + " -> " + sideText( to ) + '\n';
   if( difference.isNone() ) {
      return text + "no difference\n";
   }
   for( const auto& number : difference.numbers ) {
      text.append( number.name ).append( ": " ).append( arrow( number.from, number.to ) + '\n' );
   }
   if( !difference.fields.empty() ) {
      std::vector<std::vector<std::string>> rows{ { "change", "field", "bit", "width" } };
      for( const auto& field : difference.fields ) {
         rows.push_back( { field.change(), std::string( field.name ),
                           arrow( offsetIn( field.from ), offsetIn( field.to ) ),
                           arrow( widthIn( field.from ), widthIn( field.to ) ) } );
      }
      constexpr Align columns[] = { Align::left, Align::left, Align::left, Align::left };
      text += '\n' + columnsOf( columns, rows ) + '\n';
   }
   return text + countOf( difference.unchanged, "field" ) + " unchanged\n";
}

std::string differenceJson( const Layout& from, const Layout& to ) {
   const Difference difference = differenceOf( from, to );
   Json object;
   object["table"] = from.table();
   object["from"] = sideJson( from );
   object["to"] = sideJson( to );
   auto& numbers = object["numbers"] = Json::object();
   for( const auto& number : difference.numbers ) {
      numbers[std::string( number.name )] = { { "from", number.from }, { "to", number.to } };
   }
   auto& fields = object["fields"] = Json::array();
   for( const auto& field : difference.fields ) {
      fields.push_back( { { "name", field.name },
                          { "change", field.change() },
                          { "from", bitsJson( field.from ) },
                          { "to", bitsJson( field.to ) } } );
   }
   object["unchanged"] = difference.unchanged;
   return jsonText( object ) + '\n';
}

} // namespace Vorn
