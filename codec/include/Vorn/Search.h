// Tables and fields by a part of one of their names.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Fields.h>

#include <string_view>
#include <vector>

namespace Vorn {

// Finds names from their beginning or middle. Neither case nor underscores count: "vlan_dom" finds
// vlanDomain. Make it once, and ask it often.
//
//    const Vorn::Search search;
//    for( const Vorn::FieldUse* use : search.find( "vlanDom" ).fields ) { ... use->table ... }
class VORN_API Search {
public:
   // Best first: whole names, then beginnings, then the rest; each in order of the tables.
   struct Found {
      std::vector<std::string_view> tables;
      std::vector<const FieldUse*> fields; // which live as long as the search
   };

   Search();

   // Tables and fields that have the text in a name, and fields with that identifier. A text that
   // finds nothing, or is empty, is an Error with the nearest right names.
   Found find( std::string_view text ) const;

private:
   std::vector<FieldUse> uses_;
};

} // namespace Vorn
