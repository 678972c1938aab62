// The field values of images of one pair, extracted by places that are worked out once.
#pragma once

#include "Plan.h"
#include "Values.h"

#include <Kelvar/Types.h>

#include <cstddef>
#include <cstring>
#include <span>
#include <vector>

namespace Vorn {

class Decoder {
public:
   explicit Decoder( Plan plan );

   const Plan& plan() const { return plan_; }

   // The positions of the fields in order of their offset.
   std::span<const std::size_t> byOffset() const { return byOffset_; }

   // Copies the image to where the functions below read it. An image that doesn't reach to the end
   // of the last field is an Error.
   void load( std::span<const U8> image, std::vector<U8>& loaded ) const;

   // A field of up to 64 bits is narrow.
   bool isNarrow( std::size_t position ) const { return places_[position].mask != 0; }

   // The value of a narrow field, by its position in the plan's fields.
   U64 narrow( std::span<const U8> loaded, std::size_t position ) const {
      const Place& place = places_[position];
      U64 bits = wordAt( loaded, place.byte ) >> place.shift;
      if( place.isSplit ) {
         bits |= wordAt( loaded, place.byte + sizeof( U64 ) ) << ( 64 - place.shift );
      }
      return bits & place.mask;
   }

   // The value of any field.
   Value value( std::span<const U8> loaded, std::size_t position ) const;

private:
   // Where a narrow field lies: from bit `shift` of the word that begins at `byte`.
   struct Place {
      U64 mask = 0; // its bits, at bit 0
      U16 byte = 0;
      U8 shift = 0;
      bool isSplit = false; // goes on in the next word
   };

   static U64 wordAt( std::span<const U8> loaded, std::size_t byte ) {
      U64 word;
      std::memcpy( &word, loaded.data() + byte, sizeof( word ) );
      return word;
   }

   Plan plan_;
   std::vector<Place> places_; // by position
   std::vector<std::size_t> byOffset_;
   std::size_t needed_ = 0; // bytes up to the end of the last field
};

} // namespace Vorn
