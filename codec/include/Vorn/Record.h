// Records: JSON objects that say which entry to compose from which fields.
#pragma once

#include <Vorn/Chip.h>
#include <Vorn/Compose.h>
#include <Vorn/Export.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace Vorn {

// One record, as RecordComposer reads it. Kept from line to line, so that its memory is allocated
// once.
class VORN_API Record {
public:
   enum class Key : U8 { table, chip, variant, entry, array, identifier, from, fields };
   static constexpr std::size_t keyCount = 8;

   struct FieldValue {
      std::string name;
      std::string given; // the value's text, empty for a JSON number
      Value value;       // without meaning where `given` is the word mask
      std::size_t token; // of the name; the value is the next one
   };

   // Parses the line. Anything but such an object is an Error.
   void parse( std::string_view line );

   bool has( Key key ) const { return tokens_[indexOf( key )] != 0; }
   const std::string& table() const { return table_; }
   const Chip& chip() const { return *chip_; }
   U64 variant() const { return number( Key::variant ); }
   EntryIndex index() const {
      return { number( Key::entry ), number( Key::array ), number( Key::identifier ) };
   }

   // The text of the image to begin with, where the line has one.
   const std::string& from() const { return from_; }

   // In the order of the line.
   std::span<const FieldValue> fields() const { return std::span( fields_ ).first( fieldCount_ ); }

   // What the next message is about: the value of a key of the line, the name of a field, or its
   // value.
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

// An entry that a record composes.
struct Composed {
   const Layout& layout;
   EntryIndex index;
   std::optional<Address> address; // nothing where the pair has none
   std::span<const U8> image;
};

// Composes an entry for each record:
//
//    {"table":"TcamActionTable","chip":"BCM88690_B0","entry":5,"fields":{"action":"0x12345"}}
//
//    Vorn::RecordComposer composer;
//    const Vorn::Composed entry = composer.compose( line );
//
// "table", "chip" and "fields" must be there; "variant", "entry", "array" and "identifier" are 0 if
// not given, "from" is an image to begin with. Values are numbers, texts as parseValue() takes
// them, or "mask". If two fields overlap, the later one wins.
class VORN_API RecordComposer {
public:
   // The entry of the line, valid until the next call. A bad line is an Error.
   Composed compose( std::string_view line );

   // Where in the line the last Error has its reason, in characters from 1. The line must still be
   // there.
   std::size_t column() const { return record_.column(); }

private:
   using PairKey = std::tuple<std::string_view, U8, U64>;

   Composer& composerOf();
   std::optional<Address> addressIn( const Layout& layout );
   void setField( Composer& composer, const Record::FieldValue& field );

   Record record_;
   std::map<PairKey, Composer> composers_; // of the pairs met so far
   std::map<PairKey, Composer>::iterator last_ = composers_.end();
};

// The record that composes the entry, as a line without its end: its settingsOf(), and as "from"
// the image itself where bits of no field are set. An image that isn't one of the pair is an Error.
VORN_API std::string recordOf( const Layout& layout, const EntryIndex& index,
                               std::span<const U8> image );

} // namespace Vorn
