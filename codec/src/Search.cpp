// Tables and fields by a part of one of their names.
#include <Vorn/Search.h>

#include "Letters.h"

#include <Vorn/Error.h>
#include <Vorn/Pairs.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <array>
#include <optional>
#include <string>

namespace Vorn {

namespace {

// How well a name matches; nothing where it doesn't.
enum class Rank { whole, beginning, middle };
constexpr std::array ranks{ Rank::whole, Rank::beginning, Rank::middle };

std::optional<Rank> rankOf( const std::string& wanted, std::string_view name ) {
   const std::string own = letters( name );
   const auto at = own.find( wanted );
   if( at == std::string::npos ) {
      return std::nullopt;
   }
   return own == wanted ? Rank::whole : at == 0 ? Rank::beginning : Rank::middle;
}

} // namespace

Search::Search() : uses_( usesOf( "*" ) ) {}

Search::Found Search::find( std::string_view text ) const {
   const std::string wanted = letters( text );
   if( wanted.empty() ) {
      throw Error( "a name is missing; write a part of a table's or field's name" );
   }
   const auto number = numberIn( text );
   const auto rank = [&]( const FieldUse& use ) -> std::optional<Rank> {
      if( number && *number == use.identifier ) {
         return Rank::whole;
      }
      const auto name = rankOf( wanted, use.name );
      const auto hardwareName = rankOf( wanted, use.hardwareName );
      return name && hardwareName ? std::min( *name, *hardwareName ) : name ? name : hardwareName;
   };
   Found found;
   for( const Rank wantedRank : ranks ) {
      for( const auto table : allTables() ) {
         if( rankOf( wanted, table ) == wantedRank ) {
            found.tables.push_back( table );
         }
      }
      for( const FieldUse& use : uses_ ) {
         if( rank( use ) == wantedRank ) {
            found.fields.push_back( &use );
         }
      }
   }
   if( found.tables.empty() && found.fields.empty() ) {
      std::vector<std::string_view> names( allTables().begin(), allTables().end() );
      for( const FieldUse& use : uses_ ) {
         names.push_back( use.name );
      }
      std::sort( names.begin(), names.end() );
      names.erase( std::unique( names.begin(), names.end() ), names.end() );
      const auto near = nearest( text, names );
      throw Error( "no table or field has " + inQuotes( text ) + " in its name" +
                   ( near ? "; did you mean " + std::string( *near ) + '?' : "" ) );
   }
   return found;
}

} // namespace Vorn
