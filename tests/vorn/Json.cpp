#include "Json.h"

#include <ostream>

namespace Testing {

Json parsed( std::string_view text ) { return Json::parse( text ); }

} // namespace Testing

namespace nlohmann {

void PrintTo( const ordered_json& value, std::ostream* out ) { *out << Vorn::jsonText( value ); }

} // namespace nlohmann
