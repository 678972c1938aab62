// Lines for decoded entries, composed straight into a buffer.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Layout.h>
#include <Vorn/Value.h>

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

enum class DecodeForm { text, singleLine, json, csv };

// Appends the value as JSON: a number up to 53 bits, which every reader holds, and a string of 0x
// and digits beyond.
void appendJsonValue( std::string& text, const Value& value );

// Text that grows at its end.
class TextBuffer {
public:
   std::string_view text() const { return { characters_.get(), size_ }; }
   std::size_t size() const { return size_; }
   bool empty() const { return size_ == 0; }
   void clear() { size_ = 0; }

   // Where the text goes on, with room for that many characters; what is written there becomes text
   // by endAt().
   char* room( std::size_t characters ) {
      if( capacity_ - size_ < characters ) {
         grow( characters );
      }
      return characters_.get() + size_;
   }
   void endAt( const char* end ) { size_ = static_cast<std::size_t>( end - characters_.get() ); }

   void append( std::string_view more ) {
      char* const to = room( more.size() );
      endAt( to + more.copy( to, more.size() ) );
   }

private:
   void grow( std::size_t characters );

   std::unique_ptr<char[]> characters_;
   std::size_t size_ = 0;
   std::size_t capacity_ = 0;
};

// A line for each entry of one layout. It never changes, and threads may use it at the same time.
class EntryLine {
public:
   // Of these fields in this order; null is a cell of CSV without a value. `pair` and `file` are
   // what the form begins its lines with; either may be missing.
   EntryLine( DecodeForm form, const Layout& layout, std::vector<const Field*> fields,
              std::string_view file, std::string_view pair );

   // The line of an entry of the layout, whose image is as long as its fields need, at least.
   void append( TextBuffer& text, const DumpEntry& entry ) const;

   // What it has before its fields alone.
   void appendBegin( TextBuffer& text, const DumpEntry& entry ) const;

   // Whether a single line has anything there, besides the name of the file.
   bool isBegun( const DumpEntry& entry ) const;

private:
   // Text of a few characters, which is copied with some more after it.
   struct Words {
      static constexpr std::size_t few = 8;
      static constexpr std::size_t most = 40;

      explicit Words( std::string_view text );
      char* write( char* to ) const;

      std::array<char, most> characters{};
      std::size_t size;
      std::string longer; // instead, where they don't suffice
   };

   struct Cell {
      Words before;
      FieldReader field;
      bool isDecimal;
   };

   char* writeBegin( char* to, const DumpEntry& entry ) const;
   char* writeValue( char* to, std::span<const U8> image, const Cell& cell ) const;

   DecodeForm form_;
   const Layout* layout_;
   Words begin_;
   bool hasPair_;
   std::vector<Cell> cells_;
   Words end_;
   std::size_t longest_; // characters
};

} // namespace Vorn
