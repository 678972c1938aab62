// What the public queries say about all pairs of a class.
#include "Facts.h"

#include <algorithm>

namespace Fuzz {

namespace {

Pair pairOf( const Class& asked, Facts::Key key, const Hardware::PairInfo& info ) {
   const auto chipType = static_cast<Hardware::ChipType>( key.first );
   Pair pair{ info, {}, {}, {}, {}, 0, 0 };
   std::vector<U8> zeros( asked.storageBytes, 0 );
   std::vector<U8> ones( asked.storageBytes, 0xff );
   const auto len = asked.storageBytes;
   const auto view = asked.make( chipType, zeros.data(), len, false, key.second );
   const auto other = asked.make( chipType, ones.data(), len, false, key.second );
   for( const Field& field : asked.fields ) {
      Place place;
      if( view->isFieldValid( field.identifier ) ) {
         place = { view->fieldOffset( field.identifier ), view->fieldWidth( field.identifier ) };
         pair.present.push_back( pair.places.size() );
         const U64 value = view->stringField( field.name, 0 );
         if( field.readOnly() && value == other->stringField( field.name, 0 ) ) {
            pair.stamps.push_back( { place, static_cast<unsigned>( value ) } );
         }
      }
      pair.places.push_back( place );
   }
   if( info.hasAddress ) {
      const auto ask = [&view]( U16 identifier, U32 entry, U16 element ) {
         Address found;
         view->getSchanAddress( found.address, found.accessType, found.destBlock, identifier, entry,
                                element );
         return found;
      };
      for( U16 identifier = 0; identifier < info.instanceCount; ++identifier ) {
         pair.origins.push_back( ask( identifier, 0, 0 ) );
      }
      const U32 origin = pair.origins.front().address;
      pair.entryStep = info.entries > 1 ? ask( 0, 1, 0 ).address - origin : 0;
      pair.arrayStep = info.arrayElements > 1 ? ask( 0, 0, 1 ).address - origin : 0;
   }
   return pair;
}

} // namespace

Facts::Facts( const Class& asked ) {
   for( unsigned chipType = 0; chipType < 256; ++chipType ) {
      for( unsigned variant = 0; variant < 256; ++variant ) {
         const Key key( static_cast<U8>( chipType ), static_cast<U8>( variant ) );
         if( const auto info = Hardware::pairInfo( asked.name, chipType, key.second ) ) {
            pairs_.emplace( key, pairOf( asked, key, *info ) );
            keys_.push_back( key );
         }
      }
   }
}

const Pair* Facts::find( Key key ) const {
   const auto found = pairs_.find( key );
   return found == pairs_.end() ? nullptr : &found->second;
}

bool Facts::hasChip( U8 chipType ) const {
   return !variantsWith( chipType, []( const Pair& ) { return true; } ).empty();
}

std::vector<U8> Facts::variantsWith( U8 chipType,
                                     const std::function<bool( const Pair& )>& wanted ) const {
   std::vector<U8> variants;
   const auto end = pairs_.upper_bound( { chipType, U8{ 0xff } } );
   for( auto pair = pairs_.lower_bound( { chipType, U8{ 0 } } ); pair != end; ++pair ) {
      if( wanted( pair->second ) ) {
         variants.push_back( pair->first.second );
      }
   }
   return variants;
}

std::string Facts::absence( U8 chipType, std::size_t field ) const {
   const auto variants = variantsWith(
      chipType, [field]( const Pair& pair ) { return pair.places[field].present(); } );
   return variants.size() == 1 ? "variant_ == " + std::to_string( variants.front() ) : "0";
}

std::string Facts::entryRefusal( U8 chipType ) const {
   const auto variants = variantsWith( chipType, []( const Pair& ) { return true; } );
   return variants.size() == 1 ? "variant_ == " + std::to_string( variants.front() ) : "0";
}

std::string Facts::staticRefusal( U8 chipType ) const {
   return entryRefusal( chipType ) == "variant_ == 0" ? "variant == 0" : "0";
}

} // namespace Fuzz
