// Tables and fields by a part of a name: what is found, in which order, and what isn't.
#include "Pairs.h"

#include <Vorn/Search.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Testing::errorOf;

const Vorn::Search& search() {
   static const Vorn::Search made;
   return made;
}

std::vector<std::string> fieldsFor( std::string_view text ) {
   std::vector<std::string> names;
   for( const Vorn::FieldUse* const use : search().find( text ).fields ) {
      const auto name = std::string( use->name );
      if( names.empty() || names.back() != name ) {
         names.push_back( name );
      }
   }
   return names;
}

TEST( Search, FindsAFieldByAnyOfItsNames ) {
   const std::vector<std::string> only{ "vlanDomain" };
   for( const auto* const text : { "vlanDomain", "VLAN_DOMAIN", "vlan_dom", "ANDOMAI", "351" } ) {
      EXPECT_EQ( fieldsFor( text ), only ) << text;
   }
}

TEST( Search, PutsWholeNamesBeforeBeginningsBeforeTheRest ) {
   const auto names = fieldsFor( "vsi" );
   ASSERT_GE( names.size(), 3u );
   EXPECT_EQ( names.front(), "vsi" );
   std::size_t last = 0; // 0 for the whole name, 1 for a beginning, 2 for the rest
   for( const auto& name : names ) {
      const std::size_t rank = name == "vsi" ? 0 : name.starts_with( "vsi" ) ? 1 : 2;
      EXPECT_GE( rank, last ) << name;
      last = rank;
   }
}

TEST( Search, FindsTables ) {
   const auto found = search().find( "lif_t" );
   ASSERT_EQ( found.tables.size(), 1u );
   EXPECT_EQ( found.tables.front(), "LifTable" );
   EXPECT_EQ( search().find( "TABLE" ).tables.front(), "EgressPerPortTable" );
}

TEST( Search, RefusesWhatIsInNoName ) {
   EXPECT_EQ( errorOf( [] { search().find( "vlanDomian" ); } ),
              "no table or field has \"vlanDomian\" in its name; did you mean vlanDomain?" );
   EXPECT_EQ( errorOf( [] { search().find( "LifTabel" ); } ),
              "no table or field has \"LifTabel\" in its name; did you mean LifTable?" );
   EXPECT_EQ( errorOf( [] { search().find( "xyzzyxyzzy" ); } ),
              "no table or field has \"xyzzyxyzzy\" in its name" );
   EXPECT_EQ( errorOf( [] { search().find( "_" ); } ),
              "a name is missing; write a part of a table's or field's name" );
}

} // namespace
