// The accessors of every format of every class, and the facts that a class's cost is plotted
// against.
#include "Accessors.h"
#include "Row.h"

#include <Hardware/Registry.h>
#include <Hardware/Tables.h>

#include <memory>
#include <set>

namespace Bench {
namespace {

template<class View>
using Calls = std::vector<void ( * )( Views<View>& )>;

// Each accessor by itself, as in the rows of the fields: otherwise a format with more fields would
// appear slower, because they all need room in the processor's caches of instructions and branches.
constexpr unsigned callsInARow = 32;

template<class View>
void addRow( Rows& rows, std::vector<std::string>& names, const std::string& name,
             const std::shared_ptr<Views<View>>& views, const Calls<View>& calls ) {
   if( calls.empty() ) {
      return;
   }
   const auto body = [views, calls] {
      for( const auto call : calls ) {
         for( unsigned time = 0; time < callsInARow; ++time ) {
            call( *views );
         }
      }
   };
   const auto operations = static_cast<unsigned>( callsInARow * entryCount * calls.size() );
   rows.rows.push_back( { Goal::format, name, operations, body, {} } );
   names.push_back( name );
}

std::string pairName( const std::string& name, unsigned chipType, unsigned variant ) {
   return std::string( name )
      .append( "(" )
      .append( std::to_string( chipType ) )
      .append( "," )
      .append( std::to_string( variant ) )
      .append( ")" );
}

// A row of setters and a row of getters for the first pair of each format.
template<class View>
void addClass( Rows& rows, const std::string& name ) {
   const std::vector<Hardware::FieldInfo> fields = Hardware::classFields( name );
   ClassFacts facts;
   facts.name = name;
   facts.fields = static_cast<unsigned>( fields.size() );
   std::set<std::vector<U32>> formats;
   for( unsigned chipType = 0; chipType < 32; ++chipType ) {
      bool served = false;
      for( unsigned variant = 0; variant < 32; ++variant ) {
         if( !View::chipTypeVariantValid( static_cast<Hardware::ChipType>( chipType ),
                                          static_cast<U8>( variant ) ) ) {
            continue;
         }
         served = true;
         const auto views = std::make_shared<Views<View>>( chipType, variant );
         const View& view = ( *views )[0];
         std::vector<U32> format;
         for( const Hardware::FieldInfo& field : fields ) {
            const bool valid = view.isFieldValid( field.identifier );
            format.push_back( valid ? view.fieldOffset( field.identifier ) : ~U32{ 0 } );
            format.push_back( valid ? view.fieldWidth( field.identifier ) : 0 );
         }
         if( !formats.insert( format ).second ) {
            continue;
         }
         Calls<View> gets;
         Calls<View> sets;
         for( const Accessors<View>& accessor : accessorsOf<View>() ) {
            if( view.isFieldValid( accessor.identifier ) ) {
               gets.push_back( accessor.get );
               if( accessor.set != nullptr ) {
                  sets.push_back( accessor.set );
               }
            }
         }
         const std::string pair = pairName( name, chipType, variant );
         addRow( rows, facts.setters, pair + " setters", views, sets );
         addRow( rows, facts.getters, pair + " getters", views, gets );
      }
      facts.chipTypes += served;
   }
   facts.formats = static_cast<unsigned>( formats.size() );
   rows.classes.push_back( facts );
}

} // namespace

void addFormatRows( Rows& rows ) {
   Hardware::forEachClass( [&rows]( auto each ) {
      addClass<typename decltype( each )::View>( rows, std::string( each.name ) );
   } );
}

} // namespace Bench
