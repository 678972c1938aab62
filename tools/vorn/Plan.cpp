// What the registry knows of one pair of a table, asked once and kept for any number of entries.
#include "Plan.h"

#include "Error.h"
#include "Suggest.h"
#include "Text.h"

#include <algorithm>

namespace Vorn {

namespace {

// The registry's own text of the name, which lives as long as the program.
std::string_view tableNamed( std::string_view name ) {
   const auto names = Hardware::classNames();
   const auto found = std::find( names.begin(), names.end(), name );
   if( found == names.end() ) {
      throw Error( "unknown table " + inQuotes( name ) + suggestion( name, names ) );
   }
   return *found;
}

[[noreturn]] void refusePair( std::string_view table, const Chip& chip, U64 variant ) {
   const auto pairs = pairsOf( table );
   const auto found = std::find_if( pairs.begin(), pairs.end(), [&]( const ChipVariants& pair ) {
      return pair.chip == chip.number;
   } );
   if( found == pairs.end() ) {
      std::vector<U32> numbers;
      numbers.reserve( pairs.size() );
      for( const ChipVariants& pair : pairs ) {
         numbers.push_back( pair.chip );
      }
      throw Error( std::string( table ) + " does not exist on " + chip.name +
                   "; allowed: " + listOfChips( numbers ) );
   }
   throw Error( std::string( table ) + " has no variant " + std::to_string( variant ) + " on " +
                chip.name + "; allowed: " + ( found->any ? "0-255" : found->text() ) );
}

} // namespace

Plan::Plan( std::string_view table, const Chip& chip, U64 variant )
   : table_( tableNamed( table ) ), chip_( chip ) {
   std::optional<Hardware::PairInfo> info;
   if( variant <= 0xff ) {
      variant_ = static_cast<U8>( variant );
      info = Hardware::pairInfo( table_, chip_.number, variant_ );
   }
   if( !info ) {
      refusePair( table_, chip_, variant );
   }
   info_ = *info;
   view_ = Hardware::stringObj( table_, static_cast<Hardware::ChipType>( chip_.number ), variant_ );
   for( const auto& field : Hardware::classFields( table_ ) ) {
      if( view_->isFieldValid( field.identifier ) ) {
         positions_.emplace( field.name, fields_.size() );
         fields_.push_back( { field.identifier, field.name, view_->fieldOffset( field.identifier ),
                              view_->fieldWidth( field.identifier ), field.readOnly } );
      }
   }
}

Plan::Plan( const PairText& pair )
   : Plan( pair.table, chipOf( pair.chip ), parseIndex( pair.variant, "variant", 0xff ) ) {}

std::size_t Plan::settable( std::string_view name ) const {
   const auto found = positions_.find( name );
   if( found == positions_.end() || fields_[found->second].readOnly ) {
      refuseField( name );
   }
   return found->second;
}

void Plan::refuseField( std::string_view name ) const {
   std::vector<std::string_view> allowed;
   for( const Field& field : fields_ ) {
      if( !field.readOnly ) {
         allowed.push_back( field.name );
      }
   }
   if( positions_.contains( name ) ) {
      throw Error( "field " + std::string( name ) + " of " + pairText() +
                   " is read-only: it holds the entry's tag" );
   }
   for( const auto& field : Hardware::classFields( table_ ) ) {
      if( field.name == name ) {
         throw Error( "field " + std::string( name ) + " does not exist in " + pairText() +
                      ", only on chip types and variants " +
                      textOf( pairsWithField( table_, field.identifier ) ) +
                      suggestion( name, allowed ) );
      }
   }
   throw Error( "no field " + inQuotes( name ) + " in " + pairText() +
                suggestion( name, allowed ) );
}

std::optional<Address> Plan::address( const Place& place ) const {
   const auto check = [this]( const char* name, U64 given, U32 count ) {
      if( given >= count ) {
         throw Error( std::string( name ) + ' ' + std::to_string( given ) + " is out of range in " +
                      pairText() + "; allowed: 0" +
                      ( count > 1 ? " to " + std::to_string( count - 1 ) : "" ) );
      }
   };
   check( "entry", place.entry, info_.entries );
   check( "array", place.array, info_.arrayElements );
   check( "identifier", place.identifier, info_.instanceCount );
   if( !info_.hasAddress ) {
      return std::nullopt;
   }
   Address address;
   view_->getSchanAddress( address.schanAddress, address.accessType, address.destBlock,
                           static_cast<U16>( place.identifier ), static_cast<U32>( place.entry ),
                           static_cast<U16>( place.array ) );
   return address;
}

std::vector<Plan::TagField> Plan::tag() const {
   std::vector<TagField> tag;
   bool isStamped = false;
   for( const Field& field : fields_ ) {
      if( field.readOnly ) {
         const U64 value = view_->stringField( field.name, 0 );
         tag.push_back( { &field, value } );
         isStamped = isStamped || value != 0;
      }
   }
   return isStamped ? tag : std::vector<TagField>();
}

std::string Plan::pairText() const {
   return std::string( table_ ) + " on " + chip_.name + variantText();
}

std::string Plan::variantText() const {
   return variantsOn( table_, chip_.number )->variants.size() > 1
             ? " variant " + std::to_string( variant_ )
             : "";
}

std::vector<Plan> plansOn( const Chip& chip ) {
   std::vector<Plan> plans;
   for( const auto table : Hardware::classNames() ) {
      if( const auto pairs = variantsOn( table, chip.number ) ) {
         for( const U32 variant : pairs->variants ) {
            plans.emplace_back( table, chip, variant );
         }
      }
   }
   return plans;
}

} // namespace Vorn
