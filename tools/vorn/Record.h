// One line of `vorn program`: a JSON object that says which entry to compose from which fields.
#pragma once

#include "Chips.h"
#include "Plan.h"
#include "Values.h"

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Kept from line to line, so that its memory is allocated once.
class Record {
public:
   enum class Key : U8 { table, chip, variant, entry, array, identifier, from, fields };
   static constexpr std::size_t keyCount = 8;

   struct FieldValue {
      std::string name;
      std::string given; // the value's text, empty for a JSON number
      Value value;       // without meaning where `given` is the word mask
      std::size_t token; // of the name; the value is the next one
   };

   // Takes on what the line says. Anything but such an object is an Error.
   void parse( std::string_view line );

   bool has( Key key ) const { return tokens_[indexOf( key )] != 0; }
   const std::string& table() const { return table_; }
   const Chip& chip() const { return *chip_; }
   U64 variant() const { return number( Key::variant ); }
   Place place() const {
      return { number( Key::entry ), number( Key::array ), number( Key::identifier ) };
   }

   // The text of the image to begin with, where the line has one.
   const std::string& from() const { return from_; }

   // In the order of the line.
   std::span<const FieldValue> fields() const { return std::span( fields_ ).first( fieldCount_ ); }

   // What the next complaint would be about: the value of a key that the line has, the name of a
   // field, or its value.
   void lookAt( Key key ) { token_ = tokens_[indexOf( key )]; }
   void lookAtName( const FieldValue& field ) { token_ = field.token; }
   void lookAtValue( const FieldValue& field ) { token_ = field.token + 1; }

   // Where that begins in the line, in characters from 1. After an Error of parse() it is the place
   // of what is wrong. The line must still be there.
   std::size_t column() const;

private:
   friend class RecordParser;

   static constexpr std::size_t indexOf( Key key ) { return static_cast<std::size_t>( key ); }
   U64 number( Key key ) const { return numbers_[indexOf( key )]; }

   std::string_view line_;
   std::string table_;
   const Chip* chip_ = nullptr;
   std::string from_;
   std::array<U64, keyCount> numbers_{}; // 0 where the line lacks the key
   std::vector<FieldValue> fields_;      // the first fieldCount_ are this line's
   std::size_t fieldCount_ = 0;

   // Tokens are the names and values of the line, numbered from 1.
   std::array<std::size_t, keyCount> tokens_{}; // the value of each key; 0 where the line lacks it
   std::size_t token_ = 0;                      // what is looked at; 0 for what begins at byte_
   std::size_t byte_ = 0;
};

} // namespace Vorn
