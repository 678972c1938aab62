// What Python code passes, as the codec takes it; what can't be taken is an Error in its words.
#pragma once

#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <pybind11/pybind11.h>

#include <string>
#include <string_view>
#include <vector>

namespace Vorn::Python {

namespace py = pybind11;

// The characters of a str, which must outlive the result. `what` says what it is for the message.
std::string_view textOf( py::handle text, const char* what );

// A chip type as the codec reads it: its name, or the digits of its number.
std::string chipTextOf( py::handle chip );

// An index, such as an entry or a variant.
U64 indexOf( py::handle number, const char* name, U64 largest );

// The value of a field from an int or from a text as `vorn` takes it.
Value valueOf( py::handle value, const Layout& layout, const Field& field );

// The value as an int.
py::object intOf( const Value& value, unsigned width );

// The fields with these names, or all fields for None.
std::vector<const Field*> fieldsOf( py::handle names, const Layout& layout );

// "a str", "an int".
std::string kindOf( py::handle object );

} // namespace Vorn::Python
