// Views by table name: making one, testing whether a pair is valid, and the parts of a class.
//
//    auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
//    view->stringFieldIs( "vlanEditVid1", 100 );
#pragma once

#include <Hardware/ChipType.h>
#include <Hardware/Export.h>
#include <Kelvar/AsicBase.h>
#include <Kelvar/Types.h>
#include <Oru/String.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace Hardware {

// A new view of the named class over an entry of its own, zeroed and with the pair's tag stamped.
// An unknown name and an invalid pair are assertions.
HARDWARE_API HARDWARE_STANDARD_LIBRARY std::shared_ptr<Kelvar::AsicBase>
stringObj( Oru::String name, Hardware::ChipType chipType, U8 variant );

// Whether the named class has the pair. An unknown name is an assertion.
HARDWARE_API HARDWARE_STANDARD_LIBRARY bool
chipTypeVariantValid( Oru::String name, Hardware::ChipType chipType, U8 variant );

// Writes the names that the two functions above know, in registry order, to `names`, at most
// `capacity` of them. Returns how many there are.
HARDWARE_API std::size_t classNames( std::string_view* names, std::size_t capacity );

// The same names.
HARDWARE_OWN_CONTAINER inline std::vector<std::string_view> classNames() {
   std::vector<std::string_view> names( classNames( nullptr, 0 ) );
   classNames( names.data(), names.size() );
   return names;
}

// A field as its class declares it.
struct FieldInfo {
   U32 identifier;
   std::string_view name;
   U16 valueBits; // size of the getter's type in bits: 8 to 64, or 128, 256, 512 for a wide field
   bool readOnly; // a tag field, written by the constructor alone
};

// Writes the fields of the named class, in declared order, to `fields`, at most `capacity` of them.
// Returns how many it has; 0 for an unknown name.
HARDWARE_API std::size_t classFields( std::string_view name, FieldInfo* fields,
                                      std::size_t capacity );

// The same fields; empty for an unknown name.
HARDWARE_OWN_CONTAINER inline std::vector<FieldInfo> classFields( std::string_view name ) {
   std::vector<FieldInfo> fields( classFields( name, nullptr, 0 ) );
   classFields( name, fields.data(), fields.size() );
   return fields;
}

// What a memory or register looks like for one pair.
struct PairInfo {
   bool isTable;      // false for a register
   U16 width;         // size of one entry in 32-bit words
   U32 entries;       // valid `tableEntry` values are 0 to entries - 1; 1 for a register
   U32 arrayElements; // valid `arrayIndex` values are 0 to arrayElements - 1
   U16 fieldCount;    // fields that exist for this pair
   U16 instanceCount; // valid `identifier` values are 0 to instanceCount - 1
   bool hasVariants;  // false if the variant is ignored
   bool hasAddress;   // whether getSchanAddress yields an address
};

// Facts of one pair of the named class; empty for an unknown name or an invalid pair. Unlike the
// classes' own operations, it never asserts and never traces, so it accepts any input.
HARDWARE_API std::optional<PairInfo> pairInfo( std::string_view name, U32 chipType, U8 variant );

// Where a field lies in the entries of one pair.
struct PairField {
   U32 identifier;
   std::string_view name;         // as in the accessors
   std::string_view hardwareName; // as in the hardware's documents
   U16 offset;                    // in bits of the entry
   U16 width;                     // in bits, 1 to 512
   bool readOnly;
   U8 constant; // the value of a tag field in every entry of the pair; 0 for other fields
};

// Writes the fields that the pair has, in declared order, to `fields`, at most `capacity` of them.
// Returns how many the pair has; 0 for an unknown name or an invalid pair. Never asserts and never
// traces.
//
//    Hardware::PairField fields[8];
//    const std::size_t count = Hardware::pairFields( "TcamActionTable", 10, 0, fields, 8 );
HARDWARE_API std::size_t pairFields( std::string_view name, U32 chipType, U8 variant,
                                     PairField* fields, std::size_t capacity );

// Where the entries of one pair lie: schanAddress = base + tableEntry * entryStep + arrayIndex *
// arrayStep. Each pointer leads to an array with one number for each of the pair's instances.
struct PairAddress {
   U32 base;
   U32 entryStep;
   U32 arrayStep;
   const U8* accessTypes;
   const U8* destBlocks;
};

// The address of one pair of the named class; empty for an unknown name, an invalid pair and a pair
// without an address. Never asserts and never traces.
HARDWARE_API std::optional<PairAddress> pairAddress( std::string_view name, U32 chipType,
                                                     U8 variant );

} // namespace Hardware
