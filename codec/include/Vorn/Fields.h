// Fields in all tables: where one exists, by any of its names.
#pragma once

#include <Vorn/Chip.h>
#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Pairs.h>

#include <Kelvar/Types.h>

#include <span>
#include <string>
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

// The uses of the field with this name, hardware name or identifier, in order of the tables. A
// field that no table has is an Error with the nearest right names. In a name, * stands for any
// characters and ? for any single one; the fields are then in order of their identifiers.
//
//    for( const Vorn::FieldUse& use : Vorn::usesOf( "VLAN_DOMAIN" ) ) { ... use.table ... }
//    Vorn::usesOf( "vlanEdit*" );
VORN_API std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier );

// The same on one chip type; a field that it lacks is an Error that says where the field exists.
VORN_API std::vector<FieldUse> usesOf( std::string_view nameOrIdentifier, const Chip& chip );

// Where a field lies, and the pairs of one table that have it there.
struct FieldPlace {
   U32 offset; // in bits
   U32 width;
   std::vector<ChipVariants> pairs; // in order of the chip type
};

// The places of a field in its table, in order of the first pair that has it there.
VORN_API std::vector<FieldPlace> placesOf( const FieldUse& use );

// The fields of a pair that a list names, "vsi,vlanEditVid1", in the order of the list. In a name,
// * and ? stand for other characters. A name that the pair lacks, one that is given twice and an
// empty one are BadTexts.
VORN_API std::vector<Field> fieldsIn( std::string_view list, const Layout& layout );

// The type of the getter of the table's field: "U16", or "Raw128" for a wide one; empty if the
// table has no such field.
VORN_API std::string typeOf( std::string_view table, U32 identifier );

// The names of the fields that a list names and any of the layouts has, in the order of the list;
// an empty list stands for all of them, in their declared order. What none of the layouts has, a
// name that is given twice and an empty one are BadTexts.
VORN_API std::vector<std::string_view> fieldNamesIn( std::string_view list,
                                                     std::span<const Layout> layouts );

// The name of the field with this identifier in the hardware's documents; empty if there is no
// such field.
VORN_API std::string_view hardwareNameOf( U32 identifier );

} // namespace Vorn
