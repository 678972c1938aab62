// Rows of CSV, each of which says which entry to compose from which fields.
#pragma once

#include <Vorn/Chip.h>
#include <Vorn/Export.h>
#include <Vorn/Record.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Vorn {

// What is known of the rows before they are read.
struct RowOptions {
   std::string table;          // empty where a column says it
   const Chip* chip = nullptr; // null where a column says it
   std::optional<U64> variant; // nothing: as a column says, else 0
};

// Composes an entry for each row of CSV, one row per line:
//
//    table,chip,entry,vsi,vlanEditVid1
//    LifTable,BCM88690_B0,4097,2000,100
//
//    Vorn::RowComposer composer;
//    composer.header( "table,chip,entry,vsi" );
//    const auto entry = composer.compose( "LifTable,BCM88690_B0,4097,2000" );
//
// The columns are keys of a record, which mean what they mean to a RecordComposer, and fields.
// Where a field has the name of a key, such as "entry", the first such column is the key. An empty
// cell says nothing. Values are what parseValue() takes, or "mask". Fields that contradict
// each other in bits that they share are an Error, because the order of columns means nothing.
class VORN_API RowComposer {
public:
   explicit RowComposer( RowOptions options = {} );
   RowComposer( RowComposer&& other ) noexcept;
   RowComposer& operator=( RowComposer&& other ) noexcept;
   ~RowComposer();

   // Takes the names of the columns; false if the line is blank or a comment, which begins with
   // "#". A column that is no key and no field, one that is given twice, and a header without what
   // a row needs are Errors.
   bool header( std::string_view line );

   // The entry of the row, valid until the next call; nothing if the line is blank or a comment, or
   // all of its cells are empty. A bad row is an Error.
   std::optional<Composed> compose( std::string_view line );

   // Where in the line the reason for the last Error lies, in characters from 1. The line must
   // still exist.
   std::size_t column() const;

   // Makes column() point at what the row says about the place of its entry, for an Error about
   // that place.
   void lookAtPlace();

private:
   struct State;

   std::unique_ptr<State> state_;
};

} // namespace Vorn
