// The fields of a view of the library that is known only as a `Kelvar::AsicBase&`.
#include <Vorn/View.h>

#include <Vorn/Error.h>

#include <Hardware/Tables.h>

#include <map>
#include <mutex>
#include <shared_mutex>
#include <tuple>
#include <typeindex>
#include <typeinfo>

namespace Vorn {

namespace {

// The members of a view, which the platform's base class declares protected.
struct Members : Kelvar::AsicBase {
   static U8* buf( const AsicBase& view ) { return view.*( &Members::buf_ ); }
   static U16 len( const AsicBase& view ) { return view.*( &Members::len_ ); }
   static U8 chipType( const AsicBase& view ) { return view.*( &Members::chipType_ ); }
   static U8 variant( const AsicBase& view ) { return view.*( &Members::variant_ ); }
};

std::string_view tableOf( const Kelvar::AsicBase& view ) {
   std::string_view table;
   Hardware::forEachClass( [&]( auto each ) {
      using View = typename decltype( each )::View;
      if( table.empty() && dynamic_cast<const View*>( &view ) != nullptr ) {
         table = each.name;
      }
   } );
   if( table.empty() ) {
      throw Error( "the view is of none of the library's classes" );
   }
   return table;
}

} // namespace

const Layout& layoutOf( const Kelvar::AsicBase& view ) {
   // Never destroyed: other destructors may run later. There are no more of them than pairs and
   // types of views.
   static auto& layouts = *new std::map<std::tuple<std::type_index, U8, U8>, Layout>;
   static auto& mutex = *new std::shared_mutex;
   const std::tuple key( std::type_index( typeid( view ) ), Members::chipType( view ),
                         Members::variant( view ) );
   {
      const std::shared_lock lock( mutex );
      const auto found = layouts.find( key );
      if( found != layouts.end() ) {
         return found->second;
      }
   }
   Layout layout( tableOf( view ), U64( Members::chipType( view ) ), Members::variant( view ) );
   const std::unique_lock lock( mutex );
   return layouts.emplace( key, std::move( layout ) ).first->second;
}

std::span<const U8> entryOf( const Kelvar::AsicBase& view ) {
   return { Members::buf( view ), Members::len( view ) };
}

Value valueOf( const Kelvar::AsicBase& view, std::string_view field ) {
   return layoutOf( view ).value( entryOf( view ), field );
}

Value valueOf( const Kelvar::AsicBase& view, U32 identifier ) {
   const Layout& layout = layoutOf( view );
   return layout.value( entryOf( view ), layout.field( identifier ) );
}

void setValue( Kelvar::AsicBase& view, std::string_view field, const Value& value ) {
   layoutOf( view ).set( { Members::buf( view ), Members::len( view ) }, field, value );
}

void setValue( Kelvar::AsicBase& view, U32 identifier, const Value& value ) {
   setValue( view, layoutOf( view ).field( identifier ).name, value );
}

} // namespace Vorn
