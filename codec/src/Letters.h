// Names as they are compared: ignoring case and underscores.
#pragma once

#include <string>
#include <string_view>

namespace Vorn {

// "VLAN_DOMAIN" and "vlanDomain" have the same letters, "vlandomain".
inline std::string letters( std::string_view name ) {
   std::string result;
   for( const char c : name ) {
      if( c != '_' ) {
         result += c >= 'A' && c <= 'Z' ? static_cast<char>( c - 'A' + 'a' ) : c;
      }
   }
   return result;
}

} // namespace Vorn
