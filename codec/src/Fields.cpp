// Fields over all tables: where one exists, by any of its names.
#include <Vorn/Fields.h>

#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>

#include <algorithm>

namespace Vorn {

namespace {

const Hardware::CatalogueRow& rowOf( std::string_view wanted ) {
   const auto number = numberIn( wanted );
   std::vector<std::string_view> names;
   for( const Hardware::CatalogueRow& row : Hardware::fieldCatalogue() ) {
      if( row.name == wanted || row.hardwareName == wanted ||
          ( number && *number == row.identifier ) ) {
         return row;
      }
      names.push_back( row.name );
   }
   if( number ) {
      throw Error( "no field has the identifier " + shown( wanted ) );
   }
   const auto near = nearest( wanted, names );
   throw Error( "no table has a field " + inQuotes( wanted ) +
                ( near ? "; did you mean " + std::string( *near ) + '?' : "" ) );
}

} // namespace

std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier ) {
   const Hardware::CatalogueRow& row = rowOf( nameOrIdentifier );
   std::vector<FieldUse> uses;
   for( const auto table : allTables() ) {
      for( const auto& field : Hardware::classFields( table ) ) {
         if( field.identifier == row.identifier ) {
            uses.push_back( { table, row.name, row.hardwareName, row.identifier, field.readOnly,
                              pairsWithField( table, row.identifier ) } );
         }
      }
   }
   return uses;
}

std::string_view hardwareNameOf( U32 identifier ) {
   const auto& catalogue = Hardware::fieldCatalogue();
   const auto found = std::lower_bound(
      catalogue.begin(), catalogue.end(), identifier,
      []( const Hardware::CatalogueRow& row, U32 wanted ) { return row.identifier < wanted; } );
   return found != catalogue.end() && found->identifier == identifier ? found->hardwareName
                                                                      : std::string_view();
}

} // namespace Vorn
