// Fields in all tables: where one exists, by any of its names.
#include <Vorn/Fields.h>

#include <Vorn/Error.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <Hardware/FieldId.h>
#include <Hardware/Registry.h>

#include <algorithm>
#include <set>
#include <string>

namespace Vorn {

namespace {

using Rows = std::vector<const Hardware::CatalogueRow*>;

bool isPattern( std::string_view text ) {
   return text.find_first_of( "*?" ) != std::string_view::npos;
}

// Goes back to the last * only, as what an earlier one stands for may stay as short as it is.
bool matches( std::string_view pattern, std::string_view name ) {
   std::size_t at = 0;
   std::size_t star = std::string_view::npos;
   std::size_t afterStar = 0; // where in the name what follows the star is tried
   for( std::size_t i = 0; i < name.size(); ) {
      if( at < pattern.size() && pattern[at] == '*' ) {
         star = at++;
         afterStar = i;
      } else if( at < pattern.size() && ( pattern[at] == '?' || pattern[at] == name[i] ) ) {
         ++at;
         ++i;
      } else if( star != std::string_view::npos ) {
         at = star + 1;
         i = ++afterStar;
      } else {
         return false;
      }
   }
   return pattern.find_first_not_of( '*', at ) == std::string_view::npos;
}

// The end of a message about a name that no field has.
std::string fieldSuggestion( std::string_view wanted ) {
   constexpr std::size_t most = 5;
   std::vector<std::string_view> names;
   for( const Hardware::CatalogueRow& row : Hardware::fieldCatalogue() ) {
      names.push_back( row.name );
   }
   const auto near = allNearest( wanted, names );
   if( !near.empty() ) {
      return "; did you mean " +
             listOf( std::span( near ).first( std::min( near.size(), most ) ), " or " ) + '?';
   }
   const std::string part = '*' + std::string( wanted ) + '*';
   std::erase_if( names, [&]( std::string_view name ) { return !matches( part, name ); } );
   if( wanted.empty() || names.empty() ) {
      return {};
   }
   return "; " + inQuotes( part ) + " matches " +
          ( names.size() > most ? std::to_string( names.size() ) + " fields" : listOf( names ) );
}

Rows rowsOf( std::string_view wanted ) {
   const auto number = numberIn( wanted );
   const bool asPattern = isPattern( wanted );
   Rows rows;
   for( const Hardware::CatalogueRow& row : Hardware::fieldCatalogue() ) {
      const bool isIt = asPattern
                           ? matches( wanted, row.name ) || matches( wanted, row.hardwareName )
                           : row.name == wanted || row.hardwareName == wanted ||
                                ( number && *number == row.identifier );
      if( isIt ) {
         rows.push_back( &row );
      }
   }
   if( rows.empty() ) {
      if( number ) {
         throw Error( "no field has the identifier " + shown( wanted ) );
      }
      if( asPattern ) {
         throw Error( "no field matches " + inQuotes( wanted ) );
      }
      if( !wanted.empty() && wanted[0] >= '0' && wanted[0] <= '9' ) {
         parseNumber( wanted, "identifier" ); // which says what is wrong; no name begins so
      }
      throw Error( "no table has a field " + inQuotes( wanted ) + fieldSuggestion( wanted ) );
   }
   return rows;
}

} // namespace

std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier ) {
   std::vector<FieldUse> uses;
   for( const Hardware::CatalogueRow* const row : rowsOf( nameOrIdentifier ) ) {
      for( const auto table : allTables() ) {
         for( const auto& field : Hardware::classFields( table ) ) {
            if( field.identifier == row->identifier ) {
               uses.push_back( { table, row->name, row->hardwareName, row->identifier,
                                 field.readOnly, pairsWithField( table, row->identifier ) } );
            }
         }
      }
   }
   return uses;
}

std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier, const Chip& chip ) {
   auto uses = usesOf( nameOrIdentifier );
   const auto all = uses;
   for( FieldUse& use : uses ) {
      std::erase_if( use.pairs,
                     [&]( const ChipVariants& pair ) { return pair.chip != chip.number; } );
   }
   std::erase_if( uses, []( const FieldUse& use ) { return use.pairs.empty(); } );
   if( uses.empty() ) {
      std::set<U32> chips;
      for( const FieldUse& use : all ) {
         for( const ChipVariants& pair : use.pairs ) {
            chips.insert( pair.chip );
         }
      }
      throw Error(
         ( isPattern( nameOrIdentifier ) ? "no field that matches " : "no table has the field " ) +
         inQuotes( nameOrIdentifier ) + ( isPattern( nameOrIdentifier ) ? " exists on " : " on " ) +
         chip.name + "; it exists on " + listOfChips( std::vector( chips.begin(), chips.end() ) ) );
   }
   return uses;
}

std::vector<FieldPlace> placesOf( const FieldUse& use ) {
   std::vector<FieldPlace> places;
   for( const ChipVariants& pair : use.pairs ) {
      for( const U32 variant : pair.variants ) {
         const Layout layout( use.table, U64( pair.chip ), variant );
         const Field& field = layout.field( use.identifier );
         auto place = std::find_if( places.begin(), places.end(), [&]( const FieldPlace& other ) {
            return other.offset == field.offset && other.width == field.width;
         } );
         if( place == places.end() ) {
            place = places.insert( place, { field.offset, field.width, {} } );
         }
         if( place->pairs.empty() || place->pairs.back().chip != pair.chip ) {
            place->pairs.push_back( { pair.chip, {}, pair.any } );
         }
         place->pairs.back().variants.push_back( variant );
      }
   }
   return places;
}

namespace {

// Calls take( name, at ) for each name of the list; an Error of it becomes a BadText.
template<class Take>
void forEachName( std::string_view list, Take take ) {
   for( std::size_t at = 0; at <= list.size(); ) {
      const auto end = std::min( list.find( ',', at ), list.size() );
      auto name = list.substr( at, end - at );
      const auto first = std::min( name.find_first_not_of( ' ' ), name.size() );
      name = name.substr( first, name.find_last_not_of( ' ' ) + 1 - first );
      if( name.empty() ) {
         throw BadText( at, "a name is missing; write fields as vsi,vlanEditVid1" );
      }
      try {
         take( name );
      } catch( const Error& error ) {
         throw BadText( at + first, error.message() );
      }
      at = end + 1;
   }
}

[[noreturn]] void refuseTwice( std::string_view name ) {
   throw Error( "field " + std::string( name ) + " is given twice" );
}

[[noreturn]] void refusePattern( std::string_view pattern, const Layout& layout ) {
   throw Error( "no field of " + layout.pairText() + " matches " + inQuotes( pattern ) );
}

// The fields that any of the layouts has, in the declared order of each table.
std::vector<std::string_view> namesOf( std::span<const Layout> layouts ) {
   std::vector<std::string_view> names;
   std::set<std::string_view> tables;
   for( const Layout& first : layouts ) {
      if( !tables.insert( first.table() ).second ) {
         continue;
      }
      for( const auto& field : Hardware::classFields( first.table() ) ) {
         const bool isThere =
            std::any_of( layouts.begin(), layouts.end(), [&]( const Layout& one ) {
               return one.table() == first.table() && one.has( field.name );
            } );
         if( isThere && std::find( names.begin(), names.end(), field.name ) == names.end() ) {
            names.push_back( field.name );
         }
      }
   }
   return names;
}

} // namespace

std::vector<Field> fieldsIn( std::string_view list, const Layout& layout ) {
   std::vector<Field> fields;
   const auto add = [&]( const Field& field ) {
      const bool isNew = std::find( fields.begin(), fields.end(), field ) == fields.end();
      if( isNew ) {
         fields.push_back( field );
      }
      return isNew;
   };
   forEachName( list, [&]( std::string_view name ) {
      if( !isPattern( name ) ) {
         if( !add( layout.field( name ) ) ) {
            refuseTwice( name );
         }
         return;
      }
      std::size_t found = 0;
      for( const Field& field : layout.fields() ) {
         if( matches( name, field.name ) ) {
            add( field );
            ++found;
         }
      }
      if( found == 0 ) {
         refusePattern( name, layout );
      }
   } );
   return fields;
}

std::string typeOf( std::string_view table, U32 identifier ) {
   for( const auto& field : Hardware::classFields( table ) ) {
      if( field.identifier == identifier ) {
         return ( field.valueBits > 64 ? "Raw" : "U" ) + std::to_string( field.valueBits );
      }
   }
   return {};
}

std::vector<std::string_view> fieldNamesIn( std::string_view list,
                                            std::span<const Layout> layouts ) {
   const auto all = namesOf( layouts );
   if( list.empty() || layouts.empty() ) {
      return all;
   }
   std::vector<std::string_view> names;
   forEachName( list, [&]( std::string_view name ) {
      const bool isOne = !isPattern( name );
      std::size_t found = 0;
      for( const std::string_view own : all ) {
         if( isOne ? own != name : !matches( name, own ) ) {
            continue;
         }
         ++found;
         if( std::find( names.begin(), names.end(), own ) == names.end() ) {
            names.push_back( own );
         } else if( isOne ) {
            refuseTwice( name );
         }
      }
      if( found == 0 ) {
         isOne ? static_cast<void>( layouts.front().field( name ) )
               : refusePattern( name, layouts.front() );
      }
   } );
   return names;
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
