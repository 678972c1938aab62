// A program whose containers are those of the debug mode, which the library's aren't; one of its
// sources has the others.
#include "../support/Classes.h"

#include <Hardware/LifTable.h>
#include <Hardware/Registry.h>

#include <cstdio>
#include <string_view>
#include <vector>

#ifndef _GLIBCXX_DEBUG
#error "this source is about the debug mode"
#endif

bool plainContainersServe();

namespace {

bool right = true;
void expect( bool fact, const char* text ) {
   if( !fact ) {
      std::printf( "not so: %s\n", text );
      right = false;
   }
}
#define EXPECT( fact ) expect( fact, #fact )

} // namespace

int main() {
   const std::vector<std::string_view> names = Hardware::classNames();
   EXPECT( names.size() == Testing::classCount );
   EXPECT( !names.empty() && names.front() == "EgressPerPortTable" );
   EXPECT( !names.empty() && names.back() == "VttInPpPortConfig0" );

   std::size_t count = 0;
   for( const std::string_view name : names ) {
      const std::vector<Hardware::FieldInfo> fields = Hardware::classFields( name );
      for( const Hardware::FieldInfo& field : fields ) {
         count += !field.name.empty() && field.valueBits >= 8 && field.valueBits <= 512;
      }
   }
   EXPECT( count == Testing::fieldCount );
   EXPECT( Hardware::classFields( "LifTables" ).empty() );

   // No more than there is room for.
   std::string_view few[3];
   EXPECT( Hardware::classNames( few, 2 ) == Testing::classCount );
   EXPECT( few[1] == "EpniIsidTable" && few[2].empty() );
   Hardware::FieldInfo one[2] = {};
   EXPECT( Hardware::classFields( "TcamBankIpv4Tt", one, 1 ) > 1 );
   EXPECT( !one[0].name.empty() && one[1].name.empty() );

   // What else crosses the boundary by value is the same in both modes.
   const auto info = Hardware::pairInfo( "TcamActionTable", Hardware::BCM88650_B0, 0 );
   EXPECT( info && info->isTable && info->width == 1 && info->entries == 1024 );
   EXPECT( !Hardware::pairInfo( "TcamActionTable", 9, 0 ) );
   const auto address = Hardware::pairAddress( "TcamActionTable", Hardware::BCM88650_B0, 0 );
   EXPECT( address && address->entryStep == 1 );
   const auto view = Hardware::stringObj( "LifTable", Hardware::BCM88690_B0, 0 );
   auto owner = view;
   EXPECT( view.use_count() == 2 && view->len() == 80 );
   owner.reset();
   view->stringFieldIs( "vlanEditVid1", 100 );
   EXPECT( dynamic_cast<const Hardware::LifTable&>( *view ).vlanEditVid1() == 100 );
   EXPECT( Hardware::chipTypeVariantValid( "LifTable", Hardware::Software, 0 ) );

   EXPECT( plainContainersServe() );
   return right ? 0 : 1;
}
