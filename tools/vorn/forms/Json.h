// JSON whose members keep their order.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace Vorn {

using Json = nlohmann::ordered_json;

// In one place, as what writes JSON costs a second to compile; over several lines if they are
// indented by so many blanks. Bytes that aren't UTF-8 become U+FFFD.
std::string jsonText( const Json& value, int indent = -1 );

} // namespace Vorn
