// Views by table name: making one, asking whether a pair is valid, and what a class consists of.
//
//    auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
//    view->stringFieldIs( "vlanEditVid1", 100 );
#pragma once

#include <Hardware/ChipType.h>
#include <Hardware/Export.h>
#include <Kelvar/AsicBase.h>
#include <Kelvar/Types.h>
#include <Oru/String.h>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Hardware {

// A new view of the named class over an entry of its own, zeroed and with the pair's tag stamped.
// An unknown name and an invalid pair are assertions.
HARDWARE_API std::shared_ptr<Kelvar::AsicBase> stringObj( Oru::String name,
                                                          Hardware::ChipType chipType, U8 variant );

// Whether the named class has the pair. An unknown name is an assertion.
HARDWARE_API bool chipTypeVariantValid( Oru::String name, Hardware::ChipType chipType, U8 variant );

// The names that the two functions above know, in registry order.
HARDWARE_API std::vector<std::string_view> classNames();

// A field as its class declares it.
struct FieldInfo {
   U32 identifier;
   std::string_view name;
   U16 valueBits; // size of the getter's type in bits: 8 to 64, or 128, 256, 512 for a wide field
   bool readOnly; // a tag field, written by the constructor alone
};

// The fields of the named class in their declared order; empty for an unknown name.
HARDWARE_API std::vector<FieldInfo> classFields( std::string_view name );

// What a memory or register looks like for one pair.
struct PairInfo {
   bool isTable;      // false for a register
   U16 width;         // size of one entry in 32-bit words
   U32 entries;       // valid `tableEntry` values are 0 to entries - 1; 1 for a register
   U32 arrayElements; // valid `arrayIndex` values are 0 to arrayElements - 1
   U16 fieldCount;    // fields that exist for this pair
   U16 instanceCount; // valid `identifier` values are 0 to instanceCount - 1
   bool hasVariants;  // false where the variant is not looked at
   bool hasAddress;   // whether getSchanAddress yields an address
};

// Facts of one pair of the named class; empty for an unknown name or an invalid pair. Unlike the
// classes' own operations it never asserts and never traces, so it can be asked about any input.
HARDWARE_API std::optional<PairInfo> pairInfo( std::string_view name, U32 chipType, U8 variant );

} // namespace Hardware
