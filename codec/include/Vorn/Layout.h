// The entries of one pair of a table: which fields they have, and their values in images.
#pragma once

#include <Vorn/Bits.h>
#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Export.h>
#include <Vorn/Value.h>

#include <Hardware/Registry.h>
#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// A field of a pair. Its names live as long as the program.
struct Field {
   std::string_view name;         // as in the accessors: "vlanDomain"
   std::string_view hardwareName; // as in the hardware's documents: "VLAN_DOMAIN"
   U32 identifier;
   U32 offset;    // in bits of the entry; bit 0 is the lowest of byte 0
   U32 width;     // in bits, 1 to 512
   bool readOnly; // part of the tag, which every entry of the pair has

   U32 end() const { return offset + width; }
   bool overlaps( const Field& other ) const {
      return offset < other.end() && other.offset < end();
   }

   friend bool operator==( const Field&, const Field& ) = default;
};

// A field whose value is the same in every entry of a pair.
struct TagField {
   Field field;
   U64 value;

   friend bool operator==( const TagField&, const TagField& ) = default;
};

// Which entry of a memory: the numbers of the entry, the array element and the instance.
struct EntryIndex {
   U64 entry = 0;
   U64 array = 0;
   U64 identifier = 0; // of the instance

   friend bool operator==( const EntryIndex&, const EntryIndex& ) = default;
};

// Where an entry lies on the chip's S-channel.
struct Address {
   U32 schanAddress = 0;
   U8 accessType = 0;
   U8 destBlock = 0;

   friend bool operator==( const Address&, const Address& ) = default;
};

// The layout of a table's entries on one chip type and variant.
//
//    const Vorn::Layout lif( "LifTable", "BCM88690_B0", 0 );
//    std::vector<U8> image = lif.blank();
//    lif.set( image, "vsi", 2000 );
//    lif.get( image, "vsi" );            // 2000
//    lif.address( { .entry = 4097 } );   // where the entry lies
//
// A layout is computed once, when it is made, and never changes: copies share it, and threads may
// use it and its copies at the same time. Nothing here asserts or traces; bad input is an Error,
// and no image is changed.
//
// An image is the bytes of an entry, byte 0 first. It may be longer than the entry; no function
// touches bytes outside the words of the field, or beyond the image.
class VORN_API Layout {
public:
   // An unknown table, chip type or variant and a pair that the table lacks are Errors. The chip
   // type is given by its name or number: "BCM88690_B0", "10", 10, Hardware::BCM88690_B0.
   Layout( std::string_view table, std::string_view chip, U64 variant = 0 );
   Layout( std::string_view table, U64 chip, U64 variant = 0 );

   std::string_view table() const;
   const Chip& chip() const;
   U8 variant() const;

   // "LifTable on BCM88690_B0 variant 3"; without the variant if there is only one.
   std::string pairText() const;

   // Only the end of that: " variant 3" or nothing.
   std::string variantText() const;

   // What a memory or register of the pair looks like: `entries`, `arrayElements`, `instanceCount`
   // and so on.
   const Hardware::PairInfo& info() const;

   // The size of an entry in bytes.
   std::size_t bytes() const;

   // The fields of the pair in their declared order.
   std::span<const Field> fields() const;

   // The field of that name. A field that the pair lacks is an Error that says where it exists.
   const Field& field( std::string_view name ) const;

   // The same by its identifier.
   const Field& field( U32 identifier ) const;

   // The same, for setting it: a read-only field is an Error, too.
   const Field& settable( std::string_view name ) const;

   bool has( std::string_view name ) const;

   // The other fields that share bits with this one, in declared order.
   std::vector<Field> overlapping( std::string_view name ) const;

   // The constants that distinguish entries of the pair from others; none if a new entry is all
   // zero.
   std::span<const TagField> tag() const;

   // The first of them that the image doesn't hold; nothing if it holds all. An image that is too
   // short for them is an Error.
   std::optional<TagField> wrongTag( std::span<const U8> image ) const;

   // The pair of the same table and chip type whose entries are as long as the image and whose tag
   // it holds, the first of several; nothing if there is none.
   std::optional<Layout> variantOf( std::span<const U8> image ) const;

   // A new entry of bytes() bytes: zero except for the tag.
   std::vector<U8> blank() const;

   // The value of a field of 64 bits or less; a wider one is an Error, and so is an image that ends
   // before the field does.
   U64 get( std::span<const U8> image, std::string_view name ) const {
      return get( image, field( name ) );
   }

   // The value of a field of any width. An image that ends before the field does is an Error.
   Value value( std::span<const U8> image, std::string_view name ) const {
      return value( image, field( name ) );
   }

   // Sets a field. A value too large for it, a read-only field, and an image that ends before the
   // field does are Errors.
   void set( std::span<U8> image, std::string_view name, const Value& value ) const {
      set( image, settable( name ), value );
   }

   // The same for a field of fields(), without looking it up.
   U64 get( std::span<const U8> image, const Field& field ) const {
      if( field.width - 1 > 63 || field.end() > 8 * image.size() ) [[unlikely]] {
         refuseGet( image.size(), field );
      }
      return Detail::bitsAt( image.data(), image.size(), field.offset, field.width );
   }
   Value value( std::span<const U8> image, const Field& field ) const;
   void set( std::span<U8> image, const Field& field, const Value& value ) const;

   // Throws an Error unless the value fits into the field. `given` is the text of the value, for
   // the message.
   void requireFits( const Field& field, const Value& value, std::string_view given = {} ) const;

   // Throws an Error if the image ends before the last field does.
   void requireFields( std::span<const U8> image ) const;

   // Throws an Error unless the image is as long as an entry and holds the tag; it names the
   // variant whose tag the image holds.
   void requireEntry( std::span<const U8> image ) const;

   // Where an entry lies; nothing if the pair has no address. An index out of range is an Error.
   std::optional<Address> address( const EntryIndex& index ) const;

   // The same pair.
   VORN_API friend bool operator==( const Layout& left, const Layout& right );

private:
   friend class FieldReader;
   struct State;

   Layout( std::string_view table, const Chip& chip, U64 variant );
   [[noreturn]] void refuseName( std::string_view name, bool forSetting ) const;
   [[noreturn]] void refuseGet( std::size_t bytes, const Field& field ) const;
   [[noreturn]] void refuseEnd( std::size_t bytes, const Field& field ) const;

   std::shared_ptr<const State> state_;
};

// Reads one field of many images, without working out each time where it lies. An image that ends
// before the last field of the layout is an Error.
//
//    const Vorn::FieldReader vsi( lif, lif.field( "vsi" ) );
//    for( const auto& image : images ) { ... vsi.get( image ) ... }
class VORN_API FieldReader {
public:
   // The field is one of the layout's.
   FieldReader( const Layout& layout, const Field& field );

   // The value of a field of 64 bits or less; the lowest 64 bits of a wider one.
   U64 get( std::span<const U8> image ) const {
      requireFields( image );
      return first_.read( image.data() );
   }

   // The value of a field of any width.
   Value value( std::span<const U8> image ) const {
      return more_.empty() ? Value( get( image ) ) : wideValue( image );
   }

private:
   void requireFields( std::span<const U8> image ) const {
      if( image.size() < needed_ ) [[unlikely]] {
         layout_.requireFields( image );
      }
   }
   Value wideValue( std::span<const U8> image ) const;

   Layout layout_;
   std::size_t needed_; // bytes of an image
   Detail::BitsReader first_;
   std::vector<Detail::BitsReader> more_; // 64 bits each, or what is left
};

// The layouts of all pairs of a chip type, in order of their tables; for a table that ignores the
// variant, the one of variant 0.
VORN_API std::vector<Layout> layoutsOn( const Chip& chip );

} // namespace Vorn
