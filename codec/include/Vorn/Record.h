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

// One record, as RecordComposer reads it. Reuse it from line to line, so that its memory is
// allocated once.
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

   // Parses the line. Anything but a record is an Error.
   void parse( std::string_view line );

   bool has( Key key ) const { return tokens_[indexOf( key )] != 0; }
   const std::string& table() const { return table_; }
   const Chip& chip() const { return *chip_; }
   U64 variant() const { return numbers_.variant; }
   EntryIndex index() const { return { numbers_.entry, numbers_.array, numbers_.identifier }; }

   // The text of the image to begin with, where the line has one.
   const std::string& from() const { return from_; }

   // Whether that is the "image" of an entry that was printed: fields that already have their
   // values in it are no changes then.
   bool isPrinted() const { return numbers_.imageToken != 0; }

   // Where the line says the entry lies.
   std::optional<U32> address() const;
   std::optional<U8> accessType() const;
   std::optional<U8> destBlock() const;

   // In the order of the line.
   std::span<const FieldValue> fields() const { return std::span( fields_ ).first( fieldCount_ ); }

   // What the next message is about: the value of a key of the line, the name of a field, or its
   // value.
   void lookAt( Key key ) { token_ = tokens_[indexOf( key )]; }
   void lookAtName( const FieldValue& field ) { token_ = field.token; }
   void lookAtValue( const FieldValue& field ) { token_ = field.token + 1; }

   // Where that begins in the line, in characters from 1. After an Error of parse() it is the place
   // of what is wrong. The line must still exist.
   std::size_t column() const;

private:
   friend class RecordFill;
   friend class RecordParser;
   friend class RecordComposer;
   friend class RowComposer;

   // The numbers of the line, 0 where it lacks their key, and the tokens of further keys. Those
   // from `variant` to `identifier` lie where functions compiled into programs look for them.
   struct Numbers {
      U64 address = 0;
      U32 addressToken = 0;
      U32 imageToken = 0;
      U64 variant = 0;
      U64 entry = 0;
      U64 array = 0;
      U64 identifier = 0;
      U32 accessTypeToken = 0;
      U32 destBlockToken = 0;
      U32 fileToken = 0;
      U16 accessType = 0;
      U16 destBlock = 0;
   };

   static constexpr std::size_t indexOf( Key key ) { return static_cast<std::size_t>( key ); }

   std::string_view line_;
   std::string table_;
   const Chip* chip_ = nullptr;
   std::string from_;
   Numbers numbers_;
   std::vector<FieldValue> fields_; // the first fieldCount_ are this line's
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
//
// What `vorn decode --json` and `vorn program` print is taken, too: an "image" is the image to
// begin with, and fields that it holds already are no changes; "fields" may be missing then. An
// "address" says the entry where nothing else does; otherwise it, "accessType" and "destBlock" have
// to be those of the entry. A null counts as not given, and a tag that agrees is no Error.
class VORN_API RecordComposer {
public:
   // The entry of the line, valid until the next call. A bad line is an Error.
   Composed compose( std::string_view line );

   // Where in the line the reason for the last Error lies, in characters from 1. The line must
   // still exist.
   std::size_t column() const { return record_.column(); }

   // Makes column() point at what the line says about the place of its entry, for an Error about
   // that place.
   void lookAtPlace();

private:
   friend class RowComposer;

   using PairKey = std::tuple<std::string_view, U8, U64>;

   Composed composeRecord( Overlap overlap );
   Composer& composerOf();
   std::optional<Address> addressIn( const Layout& layout );
   void locate( const Layout& layout );
   void requirePlace( const std::optional<Address>& address );
   void begin( Composer& composer );
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
