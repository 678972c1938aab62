// Input that is compressed with gzip or zstd, recognised by the bytes that it begins with.
#pragma once

#include <Vorn/Dump.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace Vorn {

// One compressed format.
class Decompressor {
public:
   virtual ~Decompressor();

   // Takes what it can from the front of `input` and returns how many bytes it has written. It
   // takes all of the input, or writes something. What is no valid data is an Error.
   virtual std::size_t run( std::string_view& input, char* to, std::size_t size ) = 0;

   // Whether the data may end here.
   virtual bool isWhole() const = 0;
};

// The bytes of a source, decompressed where they are compressed. Data that is damaged or cut off is
// an Error, as is a format whose library wasn't there when vorn was built.
class PlainBytes : public ByteSource {
public:
   // The source must outlive this object.
   explicit PlainBytes( ByteSource& source );
   ~PlainBytes() override;

   std::size_t read( char* to, std::size_t size ) override;
   std::string name() const override { return source_.name(); }

private:
   static constexpr std::size_t inputSize = 1 << 17;

   void begin();
   std::size_t readPlain( char* to, std::size_t size );

   ByteSource& source_;
   bool isBegun_ = false;
   std::string_view format_; // "gzip"; empty where the bytes are plain
   std::unique_ptr<Decompressor> decompressor_;
   std::unique_ptr<std::array<char, inputSize>> buffer_; // none once plain bytes have left it
   std::string_view input_;                              // what is left in the buffer
};

} // namespace Vorn
