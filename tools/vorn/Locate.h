// What lies at an address of a chip's S-channel.
#pragma once

#include "Plan.h"

#include <Kelvar/Types.h>

#include <memory>
#include <optional>
#include <vector>

namespace Vorn {

// A place of a memory that was asked for by address.
struct Found {
   const Plan* plan; // of the memory, which outlives this
   Place place;
   Address address;
};

// What the addresses of a few places of a memory tell of all of them: entry e of array element a
// lies at base + e * entryStep + a * arrayStep, in every instance.
class Memory {
public:
   // The pair has an address.
   explicit Memory( Plan plan );

   // In order of the instance, then of the array element.
   std::vector<Found> at( U32 address ) const;

   // The last place before the address and the first one behind it, in one of the instances.
   std::optional<Found> before( U32 address ) const;
   std::optional<Found> behind( U32 address ) const;

   // The destination blocks of the instances.
   std::vector<U8> blocks() const;

   // Leaves only the instances in this block; whether there are any.
   bool narrow( U8 destBlock );

private:
   U32 firstOf( U32 array ) const { return base_ + array * arrayStep_; }
   Found found( U64 entry, U64 array, U64 identifier ) const;

   std::unique_ptr<const Plan> plan_;
   U32 base_;
   U32 entryStep_ = 0;
   U32 arrayStep_ = 0;
   std::vector<U16> identifiers_; // of the instances
};

// The memories of a chip type that have an address, in registry order.
std::vector<Memory> memoriesOn( const Chip& chip );

} // namespace Vorn
