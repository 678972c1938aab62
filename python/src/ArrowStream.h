// Dumps as Arrow streams.
#pragma once

#include "Images.h"

#include <Vorn/Layout.h>

#include <pybind11/pybind11.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace Vorn::Python {

// A dump whose columns Arrow's C stream interface passes on, some rows at a time. It can be read
// any number of times, by any thread.
class ArrowTable {
public:
   ArrowTable( const Layout& layout, py::handle dump, py::handle names, py::handle stride,
               py::handle batchRows );

   // A capsule with an ArrowArrayStream.
   py::object stream() const;

   // A capsule with an ArrowSchema.
   py::object schema() const;

   std::size_t rows() const;

   struct State;

private:
   std::shared_ptr<const State> state_;
};

} // namespace Vorn::Python
