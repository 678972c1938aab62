// The layout of a pair as Python sees it.
#pragma once

#include "Arguments.h"

#include <Vorn/Compose.h>
#include <Vorn/Layout.h>

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Vorn::Python {

class PairLayout {
public:
   PairLayout( py::handle table, py::handle chip, py::handle variant );
   explicit PairLayout( Layout layout );

   const Layout& layout() const { return layout_; }

   py::list fields() const { return py::list( names().fields ); }
   py::object field( py::handle name ) const;
   bool has( py::handle name ) const;
   py::list keys() const;
   py::dict tag() const;

   py::bytes encode( py::handle values, py::handle base, bool strict ) const;
   py::dict decode( py::handle image, py::handle names ) const;
   py::dict decodeBatch( py::handle dump, py::handle names, py::handle stride ) const;

   // Sets columns, given as pairs of a name and an array that fits the field, in rows of images,
   // each of which is a copy of `one` first unless that is None.
   void encodeColumns( py::array images, py::handle one, py::list columns, bool strict ) const;

   py::object address( py::handle entry, py::handle array, py::handle identifier ) const;

   std::string text() const; // "vorn.Layout('LifTable', 'BCM88690_B0', 0)"
   py::tuple arguments() const;

private:
   std::size_t positionOf( const Field& field ) const;
   py::object valueIn( std::span<const U8> image, const Field& field ) const;
   FieldValue fieldValueOf( py::handle name, py::handle value ) const;

   // Python's objects for the fields, by position.
   struct Names {
      std::vector<py::object> keys; // the interned names
      py::tuple fields;             // of vorn.Field
      py::dict all;                 // None for each key
   };
   const Names& names() const;

   Layout layout_;
   mutable std::optional<Names> names_; // made when they are first needed, with the GIL held
};

} // namespace Vorn::Python
