// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#pragma once

#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <span>
#include <string>
#include <string_view>

namespace Vorn {

enum class DecodeForm { text, singleLine, json, csv };

// An image to be printed.
struct Decoded {
   const Layout& layout;       // of its pair
   std::span<const U8> image;  // as long as its fields need, at least
   std::span<const U8> before; // the image to compare with, of which only differences are printed;
                               // empty where there is none
};

class ImagePrinter {
public:
   // `namesPair`: the form for people and the single line say which pair an image is of.
   ImagePrinter( DecodeForm form, bool namesPair ) : form_( form ), namesPair_( namesPair ) {}

   // The lines for an image, valid until the next call. CSV has its header before the first row,
   // and an image of another pair than the first one's is an Error then.
   std::string_view print( const Decoded& decoded );

   // To be called at the end, with the layout that an image would have had if there were no image:
   // the header that is still missing.
   std::string_view finish( const Layout* layout );

private:
   void printText( const Decoded& decoded );
   void printSingleLine( const Decoded& decoded );
   void printJson( const Decoded& decoded );
   void printCsv( const Decoded& decoded );
   void printHeader( const Layout& layout );
   void printPair( const Layout& layout );

   DecodeForm form_;
   bool namesPair_;
   bool isFirst_ = true;
   const Layout* columns_ = nullptr; // whose fields the columns of CSV are
   std::string text_;
   std::string row_;  // room for a row of CSV
   std::string wide_; // a value that is too wide to be decimal
};

} // namespace Vorn
