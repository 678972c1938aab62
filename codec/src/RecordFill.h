// Fills a record key by key, for the readers of JSON and of CSV.
#pragma once

#include <Vorn/Record.h>

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace Vorn {

// The keys of a record: those of Record::Key, in its order, and those of what is printed.
enum class RecordKey : U8 {
   table,
   chip,
   variant,
   entry,
   array,
   identifier,
   from,
   fields,
   image,
   address,
   accessType,
   destBlock,
   file
};

inline constexpr std::array<std::string_view, 13> recordKeyNames{
   "table",  "chip",  "variant", "entry",      "array",     "identifier", "from",
   "fields", "image", "address", "accessType", "destBlock", "file"
};

constexpr std::string_view nameOf( RecordKey key ) {
   return recordKeyNames[static_cast<std::size_t>( key )];
}

class RecordFill {
public:
   explicit RecordFill( Record& record ) : record_( record ) {}

   // Forgets what the record says; it becomes that of the line.
   void begin( std::string_view line );

   // What the next message is about: a token, or what begins at a byte of the line.
   void lookAt( std::size_t token ) { record_.token_ = token; }
   void lookAtByte( std::size_t byte );

   // The key, whose value is this token. One that is given twice is an Error, and so are two images
   // to begin with.
   void open( RecordKey key, std::size_t token );

   // The key has a value that says nothing.
   void leave( RecordKey key ) { tokenIs( key, 0 ); }

   bool isGiven( RecordKey key );

   // The value of the key. A number may also be too large for it; `text` is swapped.
   void take( RecordKey key, U64 number );
   void take( RecordKey key, std::string& text );

   // A field whose name is this token; its value is still to come. `name` is swapped.
   Record::FieldValue& addField( std::string& name, std::size_t token );
   Record::FieldValue& lastField() { return record_.fields_[record_.fieldCount_ - 1]; }

   // The value of that field; `text` is swapped.
   void takeValue( std::string& text );

private:
   template<class Take>
   void withToken( RecordKey key, Take take );
   void tokenIs( RecordKey key, std::size_t token );

   Record& record_;
};

} // namespace Vorn
