// The forms in which a composed entry is printed.
#pragma once

#include <Vorn/Record.h>

#include <span>
#include <string>
#include <string_view>

namespace CLI {
class App;
}

namespace Vorn {

// Appends the entry in one form, with the end of its last line.
using EntryForm = void ( * )( std::string& text, const Composed& entry );

// The form of that name: "bytes", "words" and "json", which are one line, and "text" for people.
EntryForm formNamed( std::string_view name );

// The line of JSON without the image.
std::string addressLine( const Layout& layout, const EntryIndex& index, const Address& address );

// Adds --output, which takes one of the named forms; without it, the form is the first of them.
void addForm( CLI::App& verb, EntryForm& form, std::span<const std::string_view> names );

} // namespace Vorn
