// What programs were compiled with when the library itself returned the containers, and what the
// header gives without the debug mode.
#include "../support/Classes.h"

#include <Hardware/FieldId.h>
#include <Kelvar/Types.h>

#include <cstdio>
#include <string_view>
#include <vector>

namespace Earlier {

struct FieldInfo {
   U32 identifier;
   std::string_view name;
   U16 valueBits;
   bool readOnly;
};
std::vector<std::string_view> classNames() __asm__( "_ZN8Hardware10classNamesEv" );
std::vector<FieldInfo> classFields( std::string_view name ) __asm__(
   "_ZN8Hardware11classFieldsESt17basic_string_viewIcSt11char_traitsIcEE" );

} // namespace Earlier

#include <Hardware/Registry.h>

bool plainContainersServe() {
   const auto names = Hardware::classNames();
   std::size_t count = 0;
   for( const std::string_view name : names ) {
      const auto fields = Earlier::classFields( name );
      if( fields.size() != Hardware::classFields( name ).size() ) {
         return false;
      }
      count += fields.size();
   }
   const auto action = Earlier::classFields( "TcamActionTable" );
   return Earlier::classNames() == names && names.size() == Testing::classCount &&
          count == Testing::fieldCount && !action.empty() && action.front().name == "action" &&
          action.front().valueBits == 32 && !action.front().readOnly;
}
