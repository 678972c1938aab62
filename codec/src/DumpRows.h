// The rows that `hexdump -C`, `hexdump`, `xxd` and `od -tx` print: an offset and bytes.
#pragma once

#include <Kelvar/Types.h>

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Vorn {

// Takes the rows of one dump one after another. What is wrong is a BadText.
class DumpRows {
public:
   // `isForced`: all rows are taken for those of a dump. Otherwise only those that can't be
   // anything else.
   explicit DumpRows( bool isForced ) : isForced_( isForced ) {}

   // Whether a dump begins with this trimmed line.
   bool begins( std::string_view line ) const;

   // Whether a dump of `od -Ax` begins with these trimmed lines, the first of which alone might be
   // bytes.
   static bool begin( std::string_view first, std::string_view second );

   // Takes a trimmed line that begins `at` bytes after the beginning of its line; false if the dump
   // has ended before it. `bytes` gets the bytes of the row, `before` how many come before them,
   // which repeat those of the last row.
   bool take( std::string_view line, std::size_t at, std::vector<U8>& bytes, U64& before );

   // To be called where there are no more lines: that the dump is whole.
   void finish( std::size_t at ) const;

   // The offset of its first row.
   U64 begin() const { return begin_; }

   // Whether no further line can be part of it.
   bool isComplete() const { return isComplete_; }

private:
   enum class Kind { bytes, words, xxd, od };

   struct Row {
      std::string_view offset;
      std::string_view rest;       // its bytes, without the characters
      std::string_view characters; // of `xxd`, with the blanks before them
      Kind kind = Kind::bytes;
      bool isSure = false; // it is no line of anything else
   };

   std::optional<U64> offsetOf( const Row& row, bool isFirst );
   [[noreturn]] void refuseOffset( const Row& row, std::size_t at ) const;

   Row rowOf( std::string_view line ) const;
   void takeBytes( const Row& row, std::size_t at, std::vector<U8>& bytes ) const;

   bool isForced_;
   bool isComplete_ = false;
   bool isRepeated_ = false;  // "*" was the last line
   int base_ = 16;            // of the offsets
   std::size_t odDigits_ = 0; // of each of its groups
   Kind kind_ = Kind::bytes;
   U64 begin_ = 0;
   U64 due_ = 0;                // offset of the next line
   std::size_t firstBytes_ = 0; // of the first row
   std::size_t lastBytes_ = 0;
};

} // namespace Vorn
