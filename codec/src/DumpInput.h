// The bytes and lines of a dump, with their places.
#pragma once

#include <Vorn/Dump.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Vorn {

// The bytes and lines of a dump: those of the text without a byte order mark and comments.
class DumpInput : public ByteLines {
public:
   explicit DumpInput( ByteSource& source ) : ByteLines( source ), source_( source ) {}

   // The first line that isn't blank, or as much of it as tells the form. It stays to be read.
   std::string_view firstLine();

   // Whether what firstLine() has looked at is text.
   bool isText();

   // The bytes that are there, or the next ones; none at the end. They count as read.
   std::string_view bytes();

   bool next( std::string_view& line ) override;

   // Hands out the last line once more.
   void back() { isAgain_ = true; }

   // The column of what begins `at` bytes after the beginning of the last line.
   std::string place( std::size_t at ) const;
   using ByteLines::place;

   std::string name() const { return source_.name(); }

private:
   std::string_view withoutComment( std::string_view line ) const;

   ByteSource& source_;
   std::string_view line_;
   bool isAgain_ = false;
   bool isFirst_ = true;
};

} // namespace Vorn
