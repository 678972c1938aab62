#include "forms/Json.h"

namespace Vorn {

std::string jsonText( const Json& value, int indent ) {
   return value.dump( indent, ' ', false, Json::error_handler_t::replace );
}

} // namespace Vorn
