// Dumps in files, read into memory by the codec.
#pragma once

#include <pybind11/pybind11.h>

#include <string>

namespace Vorn::Python {

namespace py = pybind11;

// Reads an open file of Python to its end; `name` stands for it in messages. `options` are those of
// vorn.read_dump(), by name. Without `isMany` a second layout is an Error.
//
// The result is a list of what makes a vorn.Dump each, one for each layout in the order of their
// first entries, and a list of the first doubts as texts.
py::tuple readDumps( py::handle file, const std::string& name, const py::dict& options,
                     bool isMany );

} // namespace Vorn::Python
