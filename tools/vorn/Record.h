// One line of `vorn program`: a JSON object that says which entry to compose from which fields.
#pragma once

#include "Chips.h"
#include "Plan.h"
#include "Values.h"

#include <Kelvar/Types.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Kept from line to line, so that its memory is allocated once.
class Record {
public:
   struct FieldValue {
      std::string name;
      std::string given; // the value's text, empty for a JSON number
      Value value;
   };

   // Takes on what the line says. Anything but such an object is an Error.
   void parse( std::string_view line );

   const std::string& table() const { return table_; }
   const Chip& chip() const { return *chip_; }
   U64 variant() const { return variant_; }
   const Place& place() const { return place_; }

   // In the order of the line.
   std::span<const FieldValue> fields() const { return std::span( fields_ ).first( fieldCount_ ); }

private:
   friend class RecordParser;

   std::string table_;
   const Chip* chip_ = nullptr;
   U64 variant_ = 0;
   Place place_;
   std::vector<FieldValue> fields_; // the first fieldCount_ are this line's
   std::size_t fieldCount_ = 0;
};

} // namespace Vorn
