// Objects by name, whole entries, addresses, and the path of one entry, against hand-written code.
#include "Entries.h"
#include "Pairs.h"
#include "Row.h"

#include <Hardware/Registry.h>

#include <cstring>
#include <memory>

namespace Bench {
namespace {

using View = Hardware::LifTable;
using Pair = Floor::LifTable_10_0::Pair;

constexpr auto chip = static_cast<Hardware::ChipType>( Pair::chipType );
constexpr auto variant = static_cast<U8>( Pair::variant );

// Keeps a result, so that its computation can't be optimised away.
template<class Value>
void keep( const Value& value ) {
   __asm__ volatile( "" : : "r"( &value ) : "memory" );
}

// A row of calls that need no entry, repeated like those that do.
template<class Library, class Baseline>
Row repeated( Goal goal, const std::string& name, Library library, Baseline baseline ) {
   return { goal, name, entryCount,
            [library] {
               for( unsigned number = 0; number < entryCount; ++number ) {
                  library();
               }
            },
            [baseline] {
               for( unsigned number = 0; number < entryCount; ++number ) {
                  baseline();
               }
            } };
}

struct Address {
   U32 schanAddress = 0;
   U8 accessType = 0;
   U8 destBlock = 0;

   bool operator==( const Address& ) const = default;
};

constexpr U32 tableEntry = 4097;

void addObjectRow( Rows& rows ) {
   static_assert( sizeof( Floor::Object ) == sizeof( View::WithStorage ) );
   rows.rows.push_back( repeated(
      Goal::object, "stringObj", [] { keep( Hardware::stringObj( "LifTable", chip, variant ) ); },
      [] { keep( Floor::objectByName( "LifTable", Pair::chipType, Pair::variant ) ); } ) );
}

void addByHandRows( Rows& rows ) {
   Address library;
   Address floor;
   require( View::getSchanAddress( chip, variant, library.schanAddress, library.accessType,
                                   library.destBlock, 0, tableEntry, 0 ) &&
               Floor::LifTable_10_0::address( floor.schanAddress, floor.accessType, floor.destBlock,
                                              0, tableEntry, 0 ) &&
               library == floor,
            "getSchanAddress" );
   rows.rows.push_back( repeated(
      Goal::byHand, Pair::name() + " getSchanAddress",
      [] {
         Address address;
         keep( View::getSchanAddress( chip, variant, address.schanAddress, address.accessType,
                                      address.destBlock, 0, tableEntry, 0 ) );
         keep( address );
      },
      [] {
         Address address;
         keep( Floor::LifTable_10_0::address( address.schanAddress, address.accessType,
                                              address.destBlock, 0, tableEntry, 0 ) );
         keep( address );
      } ) );

   struct Sides {
      Views<View> views{ Pair::chipType, Pair::variant };
      Images<View::storageSize> images;
   };
   const auto sides = std::make_shared<Sides>();
   for( unsigned number = 0; number < entryCount; ++number ) {
      const View& view = sides->views[number];
      const Floor::Image& image = sides->images[number];
      std::memset( view.buf(), 0xff, 21 );
      std::memcpy( image.words, view.buf(), view.len() );
      require( view.getAllFields() == Floor::LifTable_10_0::allFields( image ), "getAllFields" );
      require( View::isLifTable( chip, view.buf(), view.len(), variant ) ==
                  Floor::LifTable_10_0::hasTag( reinterpret_cast<const U8*>( image.words ),
                                                View::storageSize ),
               "isLifTable" );
   }

   rows.rows.push_back( { Goal::byHand, Pair::name() + " getAllFields", entryCount,
                          [sides] {
                             forEach( sides->views,
                                      [&]( const View& view ) { keep( view.getAllFields() ); } );
                          },
                          [sides] {
                             forEach( sides->images, [&]( const Floor::Image& entry ) {
                                keep( Floor::LifTable_10_0::allFields( entry ) );
                             } );
                          } } );
   rows.rows.push_back(
      { Goal::byHand, Pair::name() + " isLifTable", entryCount,
        [sides] {
           forEach( sides->views, [&]( const View& view ) {
              keep( View::isLifTable( chip, view.buf(), view.len(), variant ) );
           } );
        },
        [sides] {
           forEach( sides->images, [&]( const Floor::Image& entry ) {
              keep( Floor::LifTable_10_0::hasTag( reinterpret_cast<const U8*>( entry.words ),
                                                  static_cast<U16>( entry.length ) ) );
           } );
        } } );
}

// A new object, its 21 narrow fields, the whole entry and its address.
struct Programmed {
   Raw1024 entry{};
   Address address;

   bool operator==( const Programmed& ) const = default;
};

Programmed programByLibrary() {
   Programmed result;
   const auto object = Hardware::stringObj( "LifTable", chip, variant );
   View& view = static_cast<View&>( *object );
   forEachField<Pair>( [&view]<class Field>( const char* ) {
      if constexpr( Field::settable && !Field::wide ) {
         ( view.*Field::set )( 1 );
      }
   } );
   result.entry = view.getAllFields();
   Address& address = result.address;
   object->getSchanAddress( address.schanAddress, address.accessType, address.destBlock, 0,
                            tableEntry, 0 );
   return result;
}

Programmed programByHand() {
   Programmed result;
   const auto object = Floor::objectByName( "LifTable", Pair::chipType, Pair::variant );
   const Floor::Image image = object->image();
   Floor::LifTable_10_0::stampTag( image );
   forEachField<Pair>( [&image]<class Field>( const char* ) {
      if constexpr( Field::settable && !Field::wide ) {
         Field::floorSet( image, 1 );
      }
   } );
   result.entry = Floor::LifTable_10_0::allFields( image );
   Address& address = result.address;
   Floor::LifTable_10_0::address( address.schanAddress, address.accessType, address.destBlock, 0,
                                  tableEntry, 0 );
   return result;
}

} // namespace

void addEntryRows( Rows& rows ) {
   addObjectRow( rows );
   addByHandRows( rows );
   require( programByLibrary() == programByHand(), "path of one entry" );
   rows.rows.push_back( repeated(
      Goal::path, "path of one entry", [] { keep( programByLibrary() ); },
      [] { keep( programByHand() ); } ) );
}

} // namespace Bench
