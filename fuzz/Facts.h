// What the public queries say about all pairs of a class, asked once before the fuzzing begins.
#pragma once

#include "support/EveryClass.h"

#include <Hardware/Registry.h>

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Fuzz {

using Class = Testing::ClassAccessors;
using Field = Testing::FieldAccessors;
using Testing::Bits;
using View = Kelvar::AsicBase;

struct Place {
   unsigned offset = 0;
   unsigned width = 0; // 0: absent

   bool present() const { return width != 0; }
   unsigned bytes() const { return ( offset + width + 7 ) / 8; }
};

// What a fresh entry holds, whatever it held before.
struct Stamp {
   Place place;
   unsigned value;
};

struct Address {
   U32 address = 0;
   U8 accessType = 0;
   U8 destBlock = 0;

   bool operator==( const Address& ) const = default;
};

// A valid pair of chip type and variant.
struct Pair {
   Hardware::PairInfo info;
   std::vector<Place> places;        // by field, in declared order
   std::vector<std::size_t> present; // fields
   std::vector<Stamp> stamps;
   std::vector<Address> origins; // of entry 0, by identifier
   U32 entryStep = 0;
   U32 arrayStep = 0;
};

class Facts {
public:
   using Key = std::pair<U8, U8>; // chip type and variant

   explicit Facts( const Class& asked );

   // Null for an invalid pair.
   const Pair* find( Key key ) const;
   Key key( std::size_t number ) const { return keys_[number % keys_.size()]; }
   bool hasChip( U8 chipType ) const;

   // The expressions with which a view on this chip type refuses a field that its pair lacks, and
   // getAllFields and the statics an invalid pair.
   std::string absence( U8 chipType, std::size_t field ) const;
   std::string entryRefusal( U8 chipType ) const;
   std::string staticRefusal( U8 chipType ) const;

private:
   std::vector<U8> variantsWith( U8 chipType,
                                 const std::function<bool( const Pair& )>& wanted ) const;

   std::map<Key, Pair> pairs_;
   std::vector<Key> keys_;
};

} // namespace Fuzz
