// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#pragma once

#include "Decoder.h"

#include <Kelvar/Types.h>

#include <span>
#include <string>
#include <string_view>

namespace Vorn {

enum class DecodeForm { text, singleLine, json, csv };

// An image to be printed.
struct Decoded {
   const Decoder& decoder;
   std::span<const U8> image;  // as it was given
   std::span<const U8> loaded; // by the decoder
   std::span<const U8> before; // the loaded image to compare with, of which only differences are
                               // printed; empty where there is none
};

class Printer {
public:
   // `namesPair`: the form for people and the single line say which pair an image is of.
   Printer( DecodeForm form, bool namesPair ) : form_( form ), namesPair_( namesPair ) {}

   // The lines for an image, valid until the next call. CSV has its header before the first row,
   // and an image of another pair than the first one's is an Error then.
   std::string_view print( const Decoded& decoded );

   // To be called at the end, with what an image would have been decoded by if there were no image:
   // the header that is still missing.
   std::string_view finish( const Decoder* decoder );

private:
   void printText( const Decoded& decoded );
   void printSingleLine( const Decoded& decoded );
   void printJson( const Decoded& decoded );
   void printCsv( const Decoded& decoded );
   void printHeader( const Decoder& decoder );
   void printPair( const Plan& plan );

   DecodeForm form_;
   bool namesPair_;
   bool isFirst_ = true;
   const Decoder* columns_ = nullptr; // whose fields the columns of CSV are
   std::string text_;
   std::string row_;  // room for a row of CSV
   std::string wide_; // a value that is too wide to be decimal
};

} // namespace Vorn
