// The bytes and lines of a dump, with their places.
#pragma once

#include <Vorn/Dump.h>

#include <cstddef>
#include <string>
#include <string_view>

namespace Vorn {

// A source that knows whether it has thrown, after which it can't be read further.
class DumpSource : public ByteSource {
public:
   explicit DumpSource( ByteSource& source ) : source_( source ) {}

   std::size_t read( char* to, std::size_t size ) override;
   std::string name() const override { return source_.name(); }

   bool hasFailed() const { return hasFailed_; }

private:
   ByteSource& source_;
   bool hasFailed_ = false;
};

// The bytes and lines of a dump: those of the text without a byte order mark and comments.
class DumpInput : private DumpSource, public ByteLines {
public:
   explicit DumpInput( ByteSource& source )
      : DumpSource( source ), ByteLines( static_cast<DumpSource&>( *this ) ) {}

   // The first line that isn't blank, or as much of it as decides the form. It isn't consumed.
   std::string_view firstLine();

   // The one after it, which may be cut off where it is long. What firstLine() has returned is not
   // valid any longer.
   std::string_view secondLine();

   // Whether what firstLine() has looked at is text.
   bool isText();

   // The bytes that are there, or the next ones; none at the end. They count as read.
   std::string_view bytes();

   bool next( std::string_view& line ) override;

   // Returns the last line once more.
   void back() { isAgain_ = true; }
   bool isBack() const { return isAgain_; }

   void skip( std::size_t bytes, std::size_t lines ) {
      ByteLines::skip( bytes, lines );
      isFirst_ = false;
   }

   // The column of what begins `at` bytes after the beginning of the last line.
   std::string place( std::size_t at ) const;
   using ByteLines::place;

   using DumpSource::hasFailed;
   using DumpSource::name;

private:
   bool nextLine();
   std::string_view withoutComment( std::string_view line ) const;

   std::string_view line_;
   bool isAgain_ = false;
   bool isFirst_ = true;
   bool isTooLong_ = false; // what comes up to the next end of a line
};

} // namespace Vorn
