// Whole images from the values of their fields, and the values from an image.
#pragma once

#include <Vorn/Export.h>
#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace Vorn {

// A field, by name, and its value.
struct FieldValue {
   std::string_view name;
   Value value;
};

// What happens if two values contradict each other in bits that their fields share: an Error that
// names both, or the later one wins.
enum class Overlap { refused, laterHolds };

// The image of an entry with these values, zero except for them and the tag, or otherwise as in the
// image `from`, which must be one of the pair. A field that is given twice, can't be set or is too
// narrow for its value is an Error. A tag field may be given with the value that it has.
//
//    const Vorn::Layout lif( "LifTable", "BCM88690_B0" );
//    const auto image = Vorn::compose( lif, { { "vsi", 2000 }, { "vlanEditVid1", 100 } } );
//    const auto other = Vorn::compose( lif, image, { { "vsi", 2001 } } );
VORN_API std::vector<U8> compose( const Layout& layout, std::span<const FieldValue> values,
                                  Overlap overlap = Overlap::refused );
VORN_API std::vector<U8> compose( const Layout& layout, std::span<const U8> from,
                                  std::span<const FieldValue> values,
                                  Overlap overlap = Overlap::refused );
VORN_API std::vector<U8> compose( const Layout& layout, std::initializer_list<FieldValue> values,
                                  Overlap overlap = Overlap::refused );
VORN_API std::vector<U8> compose( const Layout& layout, std::span<const U8> from,
                                  std::initializer_list<FieldValue> values,
                                  Overlap overlap = Overlap::refused );

// The values of all fields of the image, in declared order, tag fields included; the tag isn't
// checked. An image that ends before the last field does is an Error.
VORN_API std::vector<FieldValue> decompose( const Layout& layout, std::span<const U8> image );

// Fields and values that compose the image from a fresh entry, in declared order and as few as
// possible: a field that contains narrower ones is left out if these cover it. Bits of no field are
// left out. An image that isn't one of the pair is an Error.
VORN_API std::vector<FieldValue> settingsOf( const Layout& layout, std::span<const U8> image );

// Images of one pair, each composed field by field in memory that is allocated once.
class VORN_API Composer {
public:
   explicit Composer( Layout layout, Overlap overlap = Overlap::refused );

   const Layout& layout() const { return layout_; }

   // Starts over with a new entry, or with an image of the pair: another length or another tag is
   // an Error.
   void reset();
   void reset( std::span<const U8> from );

   // Starts over with an image of zeros, without the tag, like a memory that was never written.
   void clear();

   // The named field, to be set. One that can't be set, or is set already, is an Error.
   const Field& open( std::string_view name );

   // Whether the field is read-only and the image already holds the value: then it may be given,
   // although open() refuses the field.
   bool holds( std::string_view name, const Value& value ) const;

   // Sets a field returned by open(). A value too large for it, and one that contradicts an earlier
   // value if that is refused, are Errors. `given` is the text of the value, for the message.
   void set( const Field& field, const Value& value, std::string_view given = {} );

   // Sets all bits of a field returned by open().
   void fill( const Field& field ) { set( field, Value::onesOf( field.width ) ); }

   std::span<const U8> image() const { return image_; }

private:
   friend class RecordComposer;

   void requireAgreement( const Field& field, const Value& value ) const;

   Layout layout_;
   Overlap overlap_;
   std::vector<U8> blank_;
   std::vector<U8> image_;
   std::vector<const Field*> set_;
};

} // namespace Vorn
