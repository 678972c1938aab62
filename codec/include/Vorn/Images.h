// Entry images read from text: bytes, 32-bit words, `hexdump -C` and JSON, one or many.
#pragma once

#include <Vorn/Error.h>
#include <Vorn/Export.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// How hexadecimal digits are taken. `automatic`: 0x and eight digits are a word, its lowest byte
// first, all other digits are bytes in their order. `number`: one number, its highest digit first.
// `stream`: bytes whose lines mean nothing. `binary`: no digits at all, the bytes themselves. The
// last two are for dumps; a single image is then read as `bytes`.
enum class ImageFormat { automatic, bytes, words, hexdump, number, stream, binary };

// Their names for people, in this order: "auto", "bytes", "words", "hexdump", "number", "stream",
// "binary".
VORN_API std::span<const std::string_view> imageFormatNames();

// Bad input at a known place of its line, in bytes from 0.
class VORN_API BadText : public Error {
public:
   BadText( std::size_t at, const std::string& message );
   ~BadText() override;

   std::size_t at() const { return at_; }

private:
   std::size_t at_;
};

// A piece of a line.
struct Piece {
   std::string text;
   std::size_t at = 0; // in bytes from the beginning of the line
   bool isGiven = false;
};

// An image, and what its text says about its pair.
struct Image {
   // A longer one is refused, so that input without an end cannot take all memory.
   static constexpr std::size_t longest = 1 << 20;

   std::vector<U8> bytes; // entry byte 0 first
   std::size_t at = 0;    // in bytes from the beginning of its line
   Piece table;
   Piece chip; // name or number
   Piece variant;
};

// Whether the text begins as JSON, which no other form of an image does.
VORN_API bool isJson( std::string_view text );

// The one image in `text`. Text that is no image is an Error; a blank text is an image of no bytes.
//
//    Vorn::imageOf( "a00f 0000" ).bytes;                 // a0 0f 00 00
//    Vorn::imageOf( "0x00000fa0" ).bytes;                // the same, as a 32-bit word
//    Vorn::imageOf( "LifTable 10 3: a00f0000" ).table;   // what it says of its pair
VORN_API Image imageOf( std::string_view text, ImageFormat format = ImageFormat::automatic );

// Checks that the pair given with the image, or the part of it that is given, is the layout's; an
// Error if not. The second checks the chip type alone.
VORN_API void requirePair( const Layout& layout, const Image& image );
VORN_API void requireChip( const Chip& chip, const Image& image );

// Where lines come from.
class VORN_API LineSource {
public:
   virtual ~LineSource();

   // Sets `line` to the next line without its end, valid until the next call; false at the end.
   virtual bool next( std::string_view& line ) = 0;

   // "images.txt:3", the place of the last line.
   virtual std::string place() const = 0;
};

// The lines of a text in memory, which must outlive this object.
class VORN_API TextLines : public LineSource {
public:
   // `name` stands for the text in places.
   TextLines( std::string_view text, std::string name );
   ~TextLines() override;

   bool next( std::string_view& line ) override;
   std::string place() const override;

private:
   std::string_view rest_;
   std::string name_;
   std::size_t number_ = 0;
};

// The images in the lines of a source, which must outlive this object. Blank lines are skipped.
//
//    Vorn::TextLines lines( text, "clipboard" );
//    Vorn::ImageReader reader( lines );
//    while( reader.next() ) { ... reader.image().bytes ... }
class VORN_API ImageReader {
public:
   explicit ImageReader( LineSource& lines, ImageFormat format = ImageFormat::automatic );

   // Reads the next image; false at the end. Text that is no image is an Error that names the line
   // and the column.
   bool next();

   // The image that next() has read, valid until the next call.
   const Image& image() const { return image_; }

   // "images.txt:3:17": the line of the image and the column of what begins `at` bytes after the
   // line's beginning. An image of several lines has one place, its own beginning.
   std::string place( std::size_t at ) const;

private:
   bool takeLine();
   void takeDump( std::string_view text, std::size_t at );

   LineSource& lines_;
   ImageFormat format_;
   Image image_;
   std::string_view line_;
   bool isEncoded_ = false; // the lines are those that `vorn encode` prints after "image:"
   std::string beginning_;  // of an image of several lines
};

// The layouts of images, by what each says of its pair. Each pair is looked up once.
class VORN_API ImageLayouts {
public:
   // Without `own`, each image has to say its pair; with it, an image that says another is refused.
   explicit ImageLayouts( std::optional<Layout> own = std::nullopt );

   // The layout that all images have, or null.
   const Layout* own() const { return own_; }

   // The layout of the image, which lives as long as this. What is wrong about its pair is a
   // BadText.
   const Layout& of( const Image& image );

private:
   using Texts = std::array<std::string, 3>;

   // A pair can be spelt in any number of ways: "1", "0x1", "0x01". Less than a megabyte of them is
   // kept.
   static constexpr std::size_t mostSpellings = 1024;
   static constexpr std::size_t longestSpelling = 128;

   const Layout& known( const Image& image );
   const Layout& find( const Image& image );
   const Layout& add( Layout layout );

   std::map<Texts, Layout> layouts_;      // by table, chip type and variant
   std::map<Texts, const Layout*> found_; // by what some of the images have said of their pairs
   const Layout* own_ = nullptr;
   Texts texts_;                  // what the last image said
   const Layout* last_ = nullptr; // and its layout
};

} // namespace Vorn
