// The forms in which a composed entry is printed.
#pragma once

#include "Plan.h"

#include <Kelvar/Types.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace Vorn {

struct Composed {
   const Plan& plan;
   Place place;
   std::optional<Address> address; // nothing where the pair has none
   std::span<const U8> image;
};

// Appends the entry in one form, with the end of its last line.
using Form = void ( * )( std::string& text, const Composed& entry );

// The form of that name: "bytes", "words" and "json", which are one line, and "text" for people.
Form formNamed( std::string_view name );

// The line of JSON without the image.
std::string placeLine( const Plan& plan, const Place& place, const Address& address );

// Adds --output, which takes one of the named forms; without it, the form is the first of them.
void addForm( CLI::App& verb, Form& form, std::span<const std::string_view> names );

} // namespace Vorn
