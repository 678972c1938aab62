// The field identifiers: one number space shared by all classes, and the catalogue of their names.
#pragma once

#include <Hardware/Export.h>
#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <string_view>

namespace Hardware {

// A constant for each identifier: `FieldId::vlanDomain` is 351 in every class that has the field.
namespace FieldId {
#define HARDWARE_FIELD_ID( identifier, name, hardwareName ) inline constexpr U32 name = identifier;
#include <Hardware/fields/Catalogue.def>
} // namespace FieldId

struct CatalogueRow {
   U32 identifier;
   std::string_view name;         // as in the accessors: "vlanDomain"
   std::string_view hardwareName; // as in the hardware's documents: "VLAN_DOMAIN"
};

inline constexpr std::size_t catalogueSize = 0
#define HARDWARE_FIELD_ID( identifier, name, hardwareName ) +1
#include <Hardware/fields/Catalogue.def>
   ;

// All rows, in order of the identifier.
HARDWARE_API const std::array<CatalogueRow, catalogueSize>& fieldCatalogue();

} // namespace Hardware
