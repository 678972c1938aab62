// The bytes and lines of a dump, with their places.
#pragma once

#include <Vorn/Dump.h>
#include <Vorn/Images.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Reads a source through a buffer, by bytes or by lines. Its lines are those of the text without a
// byte order mark and comments.
class DumpInput : public LineSource {
public:
   // A longer line is an Error, so that input without lines cannot take all memory.
   static constexpr std::size_t longestLine = 1 << 20;

   explicit DumpInput( ByteSource& source ) : source_( source ), buffer_( 1 << 17 ) {}

   // The first line that isn't blank, or as much of it as tells the form. It stays to be read.
   std::string_view firstLine();

   // Whether what firstLine() has looked at is text.
   bool isText();

   // The bytes that are there, or the next ones; none at the end. They count as read.
   std::string_view bytes();

   bool next( std::string_view& line ) override;
   std::string place() const override;

   // Hands out the last line once more.
   void back() { isAgain_ = true; }

   // The column of what begins `at` bytes after the beginning of the last line.
   std::string place( std::size_t at ) const;

   std::string name() const { return source_.name(); }

private:
   bool readMore();
   std::string_view withoutComment( std::string_view line ) const;

   ByteSource& source_;
   std::vector<char> buffer_;
   std::size_t begin_ = 0; // of what is read and not yet handed out
   std::size_t end_ = 0;
   std::size_t number_ = 0;
   std::string_view line_;
   bool isAgain_ = false;
   bool isFirst_ = true;
};

} // namespace Vorn
