// Access by identifier and by name, against the typed accessors.
#include "PairBodies.h"
#include "Row.h"

#include <Hardware/Registry.h>

#include <memory>
#include <string_view>
#include <unordered_map>

namespace Bench {
namespace {

using Pair = Floor::LifTable_10_0::Pair;

constexpr unsigned settable = entryCount * NarrowFields<Pair>::settable;
// Wide fields included.
constexpr unsigned all = entryCount * static_cast<unsigned>( std::size( Pair::names ) );

// Views from the registry, of which a caller knows only the base class.
class Objects {
public:
   Objects( unsigned chipType, unsigned variant ) {
      for( auto& object : objects_ ) {
         object = Hardware::stringObj( "LifTable", static_cast<Hardware::ChipType>( chipType ),
                                       static_cast<U8>( variant ) );
      }
   }

   Kelvar::AsicBase& operator[]( std::size_t number ) { return *objects_[number]; }

private:
   std::array<std::shared_ptr<Kelvar::AsicBase>, entryCount> objects_;
};

void addIdentifierRows( Rows& rows ) {
   using View = Hardware::LifTable;
   const auto views = std::make_shared<Views<View>>( Pair::chipType, Pair::variant );
   const auto objects = std::make_shared<Objects>( Pair::chipType, Pair::variant );

   Row set = { Goal::byIdentifier, Pair::name() + " setField64", settable, {}, {} };
   set.library = [objects] {
      forEach( *objects, [&]( Kelvar::AsicBase& view ) {
         forEachField<Pair>( [&view]<class Field>( const char* ) {
            if constexpr( Field::settable && !Field::wide ) {
               view.setField64( Field::identifier, 1 );
            }
         } );
      } );
   };
   set.baseline = [views] { compose<Pair>( *views ); };
   rows.rows.push_back( set );

   Row width = { Goal::byIdentifier, Pair::name() + " fieldWidth", all, {}, {} };
   width.library = [objects] {
      forEach( *objects, [&]( const Kelvar::AsicBase& view ) {
         forEachField<Pair>( [&view]<class Field>( const char* ) {
            static_cast<void>( view.fieldWidth( Field::identifier ) );
         } );
      } );
   };
   width.baseline = [views] {
      forEach( *views, [&]( const View& view ) {
         forEachField<Pair>(
            [&view]<class Field>( const char* ) { static_cast<void>( ( view.*Field::len )() ); } );
      } );
   };
   rows.rows.push_back( width );

   Row offset = { Goal::byIdentifier, Pair::name() + " fieldOffset", all, {}, {} };
   offset.library = [objects] {
      forEach( *objects, [&]( const Kelvar::AsicBase& view ) {
         forEachField<Pair>( [&view]<class Field>( const char* ) {
            static_cast<void>( view.fieldOffset( Field::identifier ) );
         } );
      } );
   };
   offset.baseline = [views] {
      forEach( *views, [&]( const View& view ) {
         forEachField<Pair>( [&view]<class Field>( const char* ) {
            static_cast<void>( ( view.*Field::offset )() );
         } );
      } );
   };
   rows.rows.push_back( offset );
}

// The map of a caller that compares names without the library.
int numberOf( std::string_view name ) {
   static const std::unordered_map<std::string_view, int> numbers = [] {
      std::unordered_map<std::string_view, int> map;
      int number = 0;
      Hardware::LifTable::forEachField(
         [&]( auto field ) { map.emplace( field.name, number++ ); } );
      return map;
   }();
   return numbers.find( name )->second;
}

// One field by name and by type, on a pair that has it.
template<auto get, auto set>
void addNameRows( Rows& rows, const char* fieldName, int number, unsigned chipType,
                  unsigned variant, const std::string& which ) {
   using View = Hardware::LifTable;
   const auto views = std::make_shared<Views<View>>( chipType, variant );
   const auto objects = std::make_shared<Objects>( chipType, variant );
   const auto name = std::make_shared<const Oru::String>( fieldName );
   require( numberOf( name->view() ) == number, which );

   Row read = { Goal::byName, "LifTable stringField, " + which + " name", entryCount, {}, {} };
   read.library = [objects, name] {
      forEach( *objects, [&]( const Kelvar::AsicBase& view ) {
         static_cast<void>( view.stringField( *name, 0 ) );
      } );
   };
   read.baseline = [views, name, number] {
      forEach( *views, [&]( const View& view ) {
         if( numberOf( name->view() ) == number ) {
            static_cast<void>( ( view.*get )() );
         }
      } );
   };
   rows.rows.push_back( read );

   Row write = { Goal::byName, "LifTable stringFieldIs, " + which + " name", entryCount, {}, {} };
   write.library = [objects, name] {
      forEach( *objects, [&]( Kelvar::AsicBase& view ) { view.stringFieldIs( *name, 1 ); } );
   };
   write.baseline = [views, name, number] {
      forEach( *views, [&]( View& view ) {
         if( numberOf( name->view() ) == number ) {
            ( view.*set )( 1 );
         }
      } );
   };
   rows.rows.push_back( write );
}

} // namespace

void addAccessRows( Rows& rows ) {
   using View = Hardware::LifTable;
   addIdentifierRows( rows );
   addNameRows<&View::terminationProfileMsb, &View::terminationProfileMsbIs>(
      rows, "terminationProfileMsb", 0, 4, 3, "first" );
   addNameRows<&View::statObjectCmd, &View::statObjectCmdIs>( rows, "statObjectCmd", 82, 10, 0,
                                                              "last" );
}

} // namespace Bench
