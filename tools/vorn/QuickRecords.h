// The quick path of records: lines of JSON as `vorn program` usually gets them.
#pragma once

#include <Vorn/Record.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>

namespace Vorn {

// Composes the entries of plain lines as a RecordComposer does, several times faster, and leaves
// all other lines to it. Plain lines are objects of "table", "chip", "variant", "entry", "array",
// "identifier" and "fields", in any order, without anything that would be an Error.
class QuickRecords {
public:
   // Readable bytes that must follow the line, whatever they hold.
   static constexpr std::size_t padding = 64;

   QuickRecords();
   ~QuickRecords();
   QuickRecords( const QuickRecords& ) = delete;
   QuickRecords& operator=( const QuickRecords& ) = delete;

   // The entry of the line, valid until the next call; nothing where the line isn't plain.
   std::optional<Composed> compose( std::string_view line );

private:
   struct State;

   std::unique_ptr<State> state_; // none where vorn was built without the library for it
};

} // namespace Vorn
