// Whole lines in and out: standard output through a buffer, and a file or standard input by line.
#pragma once

#include "Compression.h"

#include <Vorn/Dump.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace Vorn {

// Writes all of the text, and waits even if the descriptor is non-blocking. Returns 0, or the
// `errno` that says why it failed.
int writeAll( int descriptor, std::string_view text ) noexcept;

// Writes one line to standard error, after "vorn: ".
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

// Whether a word of the command line is a file that is there, or "-".
bool isInput( const std::string& word );

// The bytes of a file, or of standard input for "-", decompressed where they are compressed.
// Failures to open and to read are Errors.
class FileBytes : public ByteSource {
public:
   // `beforeRead` is called each time before more input is requested, which may take a wait.
   FileBytes( const std::string& path, std::function<void()> beforeRead );
   ~FileBytes() override;
   FileBytes( const FileBytes& ) = delete;
   FileBytes& operator=( const FileBytes& ) = delete;

   std::size_t read( char* to, std::size_t size ) override { return plain_.read( to, size ); }
   std::string name() const override { return raw_.name(); }

   // Whether a read returns without waiting for whoever writes the input.
   bool isReady() const;

   // How many bytes there are to read, 0 if that is unknown; and how many have been read. They
   // are those of the file, compressed where it is.
   U64 size() const { return raw_.size; }
   U64 bytesRead() const { return raw_.bytesRead; }

private:
   // The bytes as the file has them.
   struct Raw : public ByteSource {
      Raw( const std::string& path, std::function<void()> calledBeforeRead );
      ~Raw() override;

      std::size_t read( char* to, std::size_t length ) override;
      std::string name() const override { return shownPath; }

      std::string shownPath;
      std::function<void()> beforeRead;
      int descriptor;
      U64 size = 0;
      U64 bytesRead = 0;
   };

   Raw raw_;
   PlainBytes plain_{ raw_ };
};

// The lines of such bytes.
class LineReader : public FileBytes, public ByteLines {
public:
   LineReader( const std::string& path, std::function<void()> beforeRead );
   ~LineReader() override;
};

} // namespace Vorn
