// What changes in a table's entry from one pair of chip type and variant to another.
#include "Difference.h"

#include "Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace Vorn {

namespace {

using Json = nlohmann::ordered_json;

unsigned firstBit( const Difference::Field& field ) {
   return ( field.from ? field.from : field.to )->offset;
}

// "3 -> 5", "3" where there is no other.
std::string arrow( std::optional<unsigned> from, std::optional<unsigned> to ) {
   if( !from || !to || *from == *to ) {
      return std::to_string( from ? *from : *to );
   }
   return std::to_string( *from ) + " -> " + std::to_string( *to );
}

std::optional<unsigned> offsetIn( const std::optional<Format::Run>& bits ) {
   return bits ? std::optional( bits->offset ) : std::nullopt;
}

std::optional<unsigned> widthIn( const std::optional<Format::Run>& bits ) {
   return bits ? std::optional( bits->width ) : std::nullopt;
}

std::string fieldsText( std::size_t count ) {
   return std::to_string( count ) + ( count == 1 ? " field" : " fields" );
}

std::string sideText( const Plan& plan ) { return plan.chip().name + plan.variantText(); }

Json sideJson( const Plan& plan ) {
   return { { "chip", plan.chip().name }, { "variant", plan.variant() } };
}

Json bitsJson( const std::optional<Format::Run>& bits ) {
   return bits ? Json{ { "offset", bits->offset }, { "width", bits->width } } : Json();
}

} // namespace

std::string Difference::Field::change() const {
   if( !to ) {
      return "gone";
   }
   if( !from ) {
      return "new";
   }
   std::string moved = from->offset == to->offset ? "" : "moved";
   if( from->width == to->width ) {
      return moved;
   }
   return moved + ( moved.empty() ? "" : ", " ) +
          ( from->width < to->width ? "widened" : "narrowed" );
}

Difference differenceOf( const Plan& from, const Plan& to ) {
   Difference difference;
   const auto numbersFrom = numbersOf( from.info() );
   const auto numbersTo = numbersOf( to.info() );
   for( std::size_t i = 0; i < numbersFrom.size(); ++i ) {
      if( numbersFrom[i].value != numbersTo[i].value ) {
         difference.numbers.push_back(
            { numbersFrom[i].name, numbersFrom[i].value, numbersTo[i].value } );
      }
   }

   const auto bitsIn = []( const Plan& plan, U32 identifier ) -> std::optional<Format::Run> {
      const auto fields = plan.fields();
      const auto found = std::find_if( fields.begin(), fields.end(), [&]( const auto& field ) {
         return field.identifier == identifier;
      } );
      return found == fields.end() ? std::nullopt
                                   : std::optional( Format::Run{ found->offset, found->width } );
   };
   difference.unchanged = 0;
   for( const auto& field : Hardware::classFields( from.table() ) ) {
      const Difference::Field bits{ field.name, bitsIn( from, field.identifier ),
                                    bitsIn( to, field.identifier ) };
      if( bits.from != bits.to ) {
         difference.fields.push_back( bits );
      } else if( bits.from ) {
         ++difference.unchanged;
      }
   }
   std::stable_sort( difference.fields.begin(), difference.fields.end(),
                     []( const Difference::Field& left, const Difference::Field& right ) {
                        return firstBit( left ) < firstBit( right );
                     } );
   return difference;
}

std::string differenceLines( const Plan& from, const Plan& to ) {
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
   return text + fieldsText( difference.unchanged ) + " unchanged\n";
}

std::string differenceJson( const Plan& from, const Plan& to ) {
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
   return object.dump() + '\n';
}

} // namespace Vorn
