// Typed accessors against the floor: field by field, all fields of a pair, and wide fields.
#include "PairBodies.h"
#include "Row.h"

#include <memory>

namespace Bench {
namespace {

// A value that fits a field of any width, and differs from what a fresh entry holds.
template<class Value>
constexpr Value someValue() {
   Value value{};
   if constexpr( std::is_integral_v<Value> ) {
      value = 1;
   } else {
      value.wordIs( 0, 0x0123456789abcdef );
   }
   return value;
}

template<class Pair, class Field>
void addAccessorRows( Rows& rows, Goal goal, const std::string& name ) {
   const auto sides = makeSides<Pair>();
   require( sidesAgree<Pair, Field>( *sides ), name );
   if constexpr( Field::settable ) {
      Row row = { goal, name + "Is", entryCount, {}, {} };
      row.library = [sides] {
         constexpr auto value = someValue<typename Field::Value>();
         forEach( sides->views, [&]( auto& view ) { ( view.*Field::set )( value ); } );
      };
      row.baseline = [sides] {
         constexpr auto value = someValue<typename Field::Value>();
         forEach( sides->images, [&]( auto& image ) { Field::floorSet( image, value ); } );
      };
      row.library();
      row.baseline();
      require( sidesAgree<Pair, Field>( *sides ), row.name );
      rows.rows.push_back( row );
   }
   Row row = { goal, name, entryCount, {}, {} };
   row.library = [sides] {
      forEach( sides->views,
               [&]( const auto& view ) { static_cast<void>( ( view.*Field::get )() ); } );
   };
   row.baseline = [sides] {
      forEach( sides->images,
               [&]( const auto& image ) { static_cast<void>( Field::floorGet( image ) ); } );
   };
   rows.rows.push_back( row );
}

template<class Pair>
void addPairRowsOf( Rows& rows ) {
   using Narrow = NarrowFields<Pair>;
   const auto sides = makeSides<Pair>();

   Row compose = { Goal::pair, Pair::name() + " compose", entryCount * Narrow::settable, {}, {} };
   compose.library = [sides] { Bench::compose<Pair>( sides->views ); };
   compose.baseline = [sides] { composeFloor<Pair>( sides->images ); };
   compose.library();
   compose.baseline();
   require( allSidesAgree<Pair>( *sides ), compose.name );
   rows.rows.push_back( compose );

   Row decode = { Goal::pair, Pair::name() + " decode", entryCount * Narrow::all, {}, {} };
   decode.library = [sides] { Bench::decode<Pair>( sides->views ); };
   decode.baseline = [sides] { decodeFloor<Pair>( sides->images ); };
   rows.rows.push_back( decode );
}

} // namespace

void addFieldRows( Rows& rows ) {
   forEachTypedPair( [&rows]<class Pair>() {
      forEachField<Pair>( [&rows]<class Field>( const char* name ) {
         if constexpr( !Field::wide ) {
            addAccessorRows<Pair, Field>( rows, Goal::field, Pair::name() + "." + name );
         }
      } );
   } );
}

void addPairRows( Rows& rows ) {
   forEachTypedPair( [&rows]<class Pair>() { addPairRowsOf<Pair>( rows ); } );
}

void addWideRows( Rows& rows ) {
   const auto addOf = [&rows]<class Pair>() {
      forEachField<Pair>( [&rows]<class Field>( const char* name ) {
         if constexpr( Field::wide ) {
            addAccessorRows<Pair, Field>( rows, Goal::wide, Pair::name() + "." + name );
         }
      } );
   };
   addOf.template operator()<Floor::TcamBankTable_10_0::Pair>();
   forEachTypedPair( addOf );
}

} // namespace Bench
