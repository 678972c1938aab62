// The floor's objects by name.
#include "Floor.h"

#include <functional>
#include <unordered_map>

namespace Floor {

void nothingIs( const void* /*view*/, U32 /*value*/ ) {}
U32 nothing( const void* /*view*/ ) { return 0; }

Object::Object( U8 chipType, U8 variant )
   : words_( storage_ ), chipType_( chipType ), variant_( variant ),
     length_( sizeof storage_ ), storage_{} {}

Object::~Object() = default;

std::shared_ptr<Object> objectByName( const std::string& name, U8 chipType, U8 variant ) {
   using Make = std::function<std::shared_ptr<Object>( U8 chipType, U8 variant )>;
   static const auto makers = [] {
      std::unordered_map<std::string, Make> map;
      const auto make = []( U8 newChipType, U8 newVariant ) {
         return std::make_shared<Object>( newChipType, newVariant );
      };
#define HARDWARE_CLASS( name ) map.emplace( #name, make );
#include <Hardware/detail/Classes.def>
      return map;
   }();
   return makers.at( name )( chipType, variant );
}

} // namespace Floor
