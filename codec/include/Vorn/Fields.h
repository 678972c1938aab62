// Fields over all tables: where one exists, by any of its names.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Pairs.h>

#include <Kelvar/Types.h>

#include <string_view>
#include <vector>

namespace Vorn {

// A field of a table, and the pairs that have it.
struct FieldUse {
   std::string_view table;
   std::string_view name;
   std::string_view hardwareName;
   U32 identifier;
   bool readOnly;
   std::vector<ChipVariants> pairs; // in order of the chip type
};

// Where the field is that has this name, hardware name or identifier, in order of the tables. One
// that no table has is an Error with the nearest right name.
//
//    for( const Vorn::FieldUse& use : Vorn::usesOf( "VLAN_DOMAIN" ) ) { ... use.table ... }
VORN_API std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier );

// The name of the field with this identifier in the hardware's documents; empty where there is no
// such field.
VORN_API std::string_view hardwareNameOf( U32 identifier );

} // namespace Vorn
