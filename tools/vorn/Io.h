// Whole lines in and out: standard output through a buffer, and a file or standard input by line.
#pragma once

#include <Vorn/Dump.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Vorn {

// Writes all of the text, and waits where the descriptor doesn't. Returns 0, or the `errno` that
// says why it failed.
int writeAll( int descriptor, std::string_view text ) noexcept;

// Tells the person at standard error something in one line, after "vorn: ".
void note( std::string_view message );

// Standard output, written when enough has gathered and at flush(). A failed write is an Error.
class Output {
public:
   // Takes whole lines, each with its end.
   void write( std::string_view lines );
   void flush();

private:
   static constexpr std::size_t enough = 1 << 16;

   std::string pending_;
};

// The bytes of a file, or of standard input for "-". Failures to open and to read are Errors.
class FileBytes : public ByteSource {
public:
   // `beforeRead` is called each time before more input is asked for, and may have to be waited
   // for.
   FileBytes( const std::string& path, std::function<void()> beforeRead );
   ~FileBytes() override;
   FileBytes( const FileBytes& ) = delete;
   FileBytes& operator=( const FileBytes& ) = delete;

   std::size_t read( char* to, std::size_t size ) override;
   std::string name() const override { return name_; }

   // How many bytes there are to read, 0 if only reading tells; and how many have been read.
   U64 size() const { return size_; }
   U64 bytesRead() const { return bytesRead_; }

private:
   std::string name_;
   std::function<void()> beforeRead_;
   int descriptor_;
   U64 size_ = 0;
   U64 bytesRead_ = 0;
};

// The lines of such bytes.
class LineReader : public FileBytes, public ByteLines {
public:
   LineReader( const std::string& path, std::function<void()> beforeRead );
   ~LineReader() override;
};

} // namespace Vorn
