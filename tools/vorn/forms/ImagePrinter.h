// Decoded images as text: a table for people, one line, JSON or a row of CSV.
#pragma once

#include "forms/EntryLine.h"

#include <Vorn/Dump.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// An image to be printed.
struct Decoded {
   const DumpEntry& entry;     // its image is as long as its fields need, at least
   std::span<const U8> before; // the image to compare with, of which only differences are printed;
                               // empty where there is none
};

// Prints decoded images in one form, one after another.
class ImagePrinter {
public:
   // `namesPair`: the form for people and the single line say which pair an image is of.
   ImagePrinter( DecodeForm form, bool namesPair ) : form_( form ), namesPair_( namesPair ) {}

   // Prints these fields alone, as far as a pair has them, in this order.
   void choose( std::vector<std::string_view> fields );

   // Makes the fields of these layouts the columns of CSV, where choose() hasn't.
   void provide( std::span<const Layout> layouts );

   // Names the file of the images that follow, where there are several.
   void nameFile( const std::string& file );

   // The lines for an image, valid until the next call. CSV has its header before the first row;
   // unless they are chosen or provided, its columns are the fields of the first image's table on
   // its chip type, and an image with other fields is an Error.
   std::string_view print( const Decoded& decoded );

   // What composes the same lines, but for the header of CSV, until the next file is named; null
   // where only print() does.
   const EntryLine* lineFor( const Layout& layout );

   // To be called before such lines, and at the end: the header that is still missing.
   std::string_view header();

private:
   // The fields of a pair that are printed, in their order.
   struct Chosen {
      std::vector<const Field*> fields; // by offset, for people; null in a column of CSV that the
                                        // pair lacks
      std::optional<EntryLine> line;
      bool fits = true; // into the columns of CSV
   };

   const Chosen& chosenOf( const Layout& layout );
   Chosen choiceOf( const Layout& layout ) const;
   void printText( const Decoded& decoded, const Chosen& chosen );
   void printChanges( const Decoded& decoded, const Chosen& chosen );
   void printLine( const Decoded& decoded );
   void appendHeader();

   DecodeForm form_;
   bool namesPair_;
   std::optional<std::vector<std::string_view>> columns_; // of CSV, or the chosen fields
   bool areChosen_ = false;
   bool hasFile_ = false;
   std::string file_; // as the form writes it
   bool isFirst_ = true;
   bool hasHeader_ = false;
   std::map<const Layout*, Chosen> chosen_;
   const Layout* last_ = nullptr;
   const Chosen* lastChosen_ = nullptr;
   TextBuffer text_;
};

} // namespace Vorn
