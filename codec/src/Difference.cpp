// What changes in a table's entry from one pair of chip type and variant to another.
#include <Vorn/Difference.h>

#include <Vorn/Error.h>

#include <algorithm>

namespace Vorn {

namespace {

unsigned firstBit( const Difference::Field& field ) {
   return ( field.from ? field.from : field.to )->offset;
}

} // namespace

std::array<Number, 4> numbersOf( const Hardware::PairInfo& info ) {
   return { { { "words", info.width },
              { "entries", info.entries },
              { "arrayElements", info.arrayElements },
              { "instances", info.instanceCount } } };
}

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

Difference differenceOf( const Layout& from, const Layout& to ) {
   if( from.table() != to.table() ) {
      throw Error( from.pairText() + " and " + to.pairText() +
                   " are of two tables; compare pairs of one" );
   }
   Difference difference;
   const auto numbersFrom = numbersOf( from.info() );
   const auto numbersTo = numbersOf( to.info() );
   for( std::size_t i = 0; i < numbersFrom.size(); ++i ) {
      if( numbersFrom[i].value != numbersTo[i].value ) {
         difference.numbers.push_back(
            { numbersFrom[i].name, numbersFrom[i].value, numbersTo[i].value } );
      }
   }

   const auto bitsIn = []( const Layout& layout,
                           std::string_view name ) -> std::optional<Difference::Bits> {
      if( !layout.has( name ) ) {
         return std::nullopt;
      }
      const Field& field = layout.field( name );
      return Difference::Bits{ field.offset, field.width };
   };
   difference.unchanged = 0;
   for( const auto& field : Hardware::classFields( from.table() ) ) {
      const Difference::Field bits{ field.name, bitsIn( from, field.name ),
                                    bitsIn( to, field.name ) };
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

} // namespace Vorn
