// What lies at an address of a chip's S-channel.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// An entry that was asked for by its address.
struct Location {
   Layout layout;
   EntryIndex index;
   Address address;
};

// What lies at an address of the chip type, or only in one destination block: in order of the
// tables, one location for each variant, instance and array element. If nothing does, an Error
// names the nearest entries around it.
//
//    for( const Vorn::Location& found : Vorn::locate( Vorn::chipOf( 10 ), 0x1101005, 6 ) ) { ... }
VORN_API std::vector<Location> locate( const Chip& chip, U32 address,
                                       std::optional<U8> destBlock = std::nullopt );

// The addresses of a memory: entry e of array element a lies at base + e * entryStep + a *
// arrayStep, in every instance.
class VORN_API Memory {
public:
   // The pair must have an address: info().hasAddress.
   explicit Memory( Layout layout );

   const Layout& layout() const { return layout_; }

   // No number of entries is stated: the memory counts as one of 4294967295 entries, and so covers
   // nearly every address, whatever else lies there.
   bool isUnbounded() const { return layout_.info().entries == 0xffffffff; }

   // In order of the instance, then of the array element.
   std::vector<Location> at( U32 address ) const;

   // The last entry before the address and the first one after it, in one of the instances.
   std::optional<Location> before( U32 address ) const;
   std::optional<Location> after( U32 address ) const;

   // The destination blocks of the instances.
   std::vector<U8> blocks() const;

   // Keeps only the instances in this block; returns whether there are any.
   bool narrow( U8 destBlock );

private:
   U32 firstOf( U32 array ) const { return base_ + array * arrayStep_; }
   Location locationOf( U64 entry, U64 array, U64 identifier ) const;

   Layout layout_;
   U32 base_;
   U32 entryStep_ = 0;
   U32 arrayStep_ = 0;
   std::vector<U16> identifiers_; // of the instances
};

// The memories of a chip type that have an address, in registry order.
VORN_API std::vector<Memory> memoriesOn( const Chip& chip );

// The addresses from `first` to `last`, both included.
struct AddressRange {
   U32 first;
   U32 last;

   U64 count() const { return U64( last ) - first + 1; }
};

// An address, or a range "0x1101000-0x110100f"; otherwise an Error.
VORN_API AddressRange parseAddresses( std::string_view text );

// The same as locate() for many addresses of one chip type.
//
//    const Vorn::Locator locator( Vorn::chipOf( 10 ) );
//    for( auto a = locator.next( range.first ); a && *a <= range.last; a = locator.next( *a + 1 ) )
class VORN_API Locator {
public:
   // `boundedOnly` leaves out the memories that are unbounded. A chip type or a block where no
   // memory is left is an Error.
   explicit Locator( const Chip& chip, std::optional<U8> destBlock = std::nullopt,
                     bool boundedOnly = false );

   std::span<const Memory> memories() const { return memories_; }

   // What lies at the address, or nothing.
   std::vector<Location> at( U32 address ) const;

   // The first address from this one on at which something lies.
   std::optional<U32> next( U64 address ) const;

   // Throws an Error with the nearest entries around addresses where nothing lies.
   [[noreturn]] void refuse( const AddressRange& range ) const;

private:
   std::vector<Memory> memories_;
   std::string where_;
};

} // namespace Vorn
