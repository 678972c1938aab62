// Entry images read from text: bytes, 32-bit words, `hexdump -C` and JSON, one or many.
#pragma once

#include "Io.h"

#include <Kelvar/Types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI {
class App;
}

namespace Vorn {

// How hexadecimal digits are taken. `automatic`: as they look, which imagesParagraphs() explains.
enum class ImageFormat { automatic, bytes, words, hexdump };

// Where the images are of a verb that takes them as IMAGE or from --file, to be called when the
// command line is parsed: the image "-" is the file "-". Neither of them, or both, is wrong usage.
void completeSource( std::vector<std::string>& image, std::string& path );

// Adds --image-format.
void addImageFormat( CLI::App& verb, ImageFormat& format );

// How an image may be written, for a person: paragraphs of a verb's help.
std::string imagesParagraphs();

// A piece of a line.
struct Piece {
   std::string text;
   std::size_t at = 0; // in bytes from the beginning of the line
   bool isGiven = false;
};

// An image, and what stands with it about the pair it is of.
struct Image {
   // A longer one is refused, so that input without an end cannot take all memory.
   static constexpr std::size_t longest = 1 << 20;

   std::vector<U8> bytes; // entry byte 0 first
   std::size_t at = 0;    // in bytes from the beginning of its line
   Piece table;
   Piece chip; // name or number
   Piece variant;
};

// The one image that `text` writes, as an argument of the command line. What is no image is an
// Error; a blank text is an image of no bytes.
Image imageOf( std::string_view text, ImageFormat format = ImageFormat::automatic );

// The images in the lines of a file, or of standard input for "-". Blank lines are skipped.
class ImageReader {
public:
   // `beforeRead` as for a LineReader.
   ImageReader( const std::string& path, ImageFormat format, std::function<void()> beforeRead );

   // Reads the next image; false at the end. What is no image is an Error that names the line and
   // the column.
   bool next();

   // The image that next() has read, valid until the next call.
   const Image& image() const { return image_; }

   // "images.txt:3:17": the line of the image and the column of what begins `at` bytes behind the
   // line's beginning. An image of several lines has one place, its own beginning.
   std::string place( std::size_t at ) const;

private:
   bool takeLine();
   void takeDump( std::string_view text, std::size_t at );

   LineReader lines_;
   ImageFormat format_;
   Image image_;
   std::string_view line_;
   bool isUnread_ = false;  // line_ was read and is not yet part of an image
   bool isEncoded_ = false; // the lines are those that `vorn encode` prints behind "image:"
   std::string beginning_;  // of an image of several lines
};

} // namespace Vorn
