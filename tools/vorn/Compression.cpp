// Input that is compressed with gzip or zstd, recognised by the bytes that it begins with.
#include "Compression.h"

#include <Vorn/Error.h>

#include <algorithm>
#include <new>

#ifdef VORN_WITH_ZLIB
#include <zlib.h>
#endif
#ifdef VORN_WITH_ZSTD
#include <zstd.h>
#endif

namespace Vorn {

namespace {

#ifdef VORN_WITH_ZLIB

class Gzip : public Decompressor {
public:
   Gzip() {
      constexpr int gzipAlone = 16;
      if( ::inflateInit2( &stream_, MAX_WBITS + gzipAlone ) != Z_OK ) {
         throw std::bad_alloc();
      }
   }
   Gzip( const Gzip& ) = delete;
   Gzip& operator=( const Gzip& ) = delete;
   ~Gzip() override { ::inflateEnd( &stream_ ); }

   std::size_t run( std::string_view& input, char* to, std::size_t size ) override {
      if( isAtEnd_ && !input.empty() ) {
         // Several files one after another count as one.
         ::inflateReset( &stream_ );
         isAtEnd_ = false;
      }
      // zlib takes its input by a pointer to what it doesn't change.
      stream_.next_in = reinterpret_cast<Bytef*>( const_cast<char*>( input.data() ) );
      stream_.avail_in = static_cast<uInt>( input.size() );
      stream_.next_out = reinterpret_cast<Bytef*>( to );
      stream_.avail_out = static_cast<uInt>( std::min<std::size_t>( size, 1 << 30 ) );
      const auto room = stream_.avail_out;
      const int status = isAtEnd_ ? Z_STREAM_END : ::inflate( &stream_, Z_NO_FLUSH );
      if( status == Z_MEM_ERROR ) {
         throw std::bad_alloc();
      }
      if( status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR ) {
         throw Error( stream_.msg ? stream_.msg : "invalid data" );
      }
      isAtEnd_ = status == Z_STREAM_END;
      input.remove_prefix( input.size() - stream_.avail_in );
      return room - stream_.avail_out;
   }

   bool isWhole() const override { return isAtEnd_; }

private:
   z_stream stream_{};
   bool isAtEnd_ = false;
};

#endif

#ifdef VORN_WITH_ZSTD

class Zstd : public Decompressor {
public:
   Zstd() {
      if( !stream_ ) {
         throw std::bad_alloc();
      }
   }

   std::size_t run( std::string_view& input, char* to, std::size_t size ) override {
      if( isAtEnd_ && input.empty() ) {
         return 0;
      }
      ZSTD_inBuffer in{ input.data(), input.size(), 0 };
      ZSTD_outBuffer out{ to, size, 0 };
      const std::size_t status = ::ZSTD_decompressStream( stream_.get(), &out, &in );
      if( ::ZSTD_isError( status ) ) {
         throw Error( ::ZSTD_getErrorName( status ) );
      }
      isAtEnd_ = status == 0;
      input.remove_prefix( in.pos );
      return out.pos;
   }

   bool isWhole() const override { return isAtEnd_; }

private:
   struct Free {
      void operator()( ZSTD_DStream* stream ) const { ::ZSTD_freeDStream( stream ); }
   };

   std::unique_ptr<ZSTD_DStream, Free> stream_{ ::ZSTD_createDStream() };
   bool isAtEnd_ = false;
};

#endif

using Make = std::unique_ptr<Decompressor> ( * )();

template<class Format>
std::unique_ptr<Decompressor> make() {
   return std::make_unique<Format>();
}

struct Format {
   std::string_view name;
   std::string_view magic;
   Make make; // null: vorn was built without it
};

constexpr Format formats[] = {
#ifdef VORN_WITH_ZLIB
   { "gzip", "\x1f\x8b\x08", make<Gzip> },
#else
   { "gzip", "\x1f\x8b\x08", nullptr },
#endif
#ifdef VORN_WITH_ZSTD
   { "zstd", "\x28\xb5\x2f\xfd", make<Zstd> },
#else
   { "zstd", "\x28\xb5\x2f\xfd", nullptr },
#endif
};

// The format that begins so. `isOpen`: more bytes may decide it.
const Format* formatOf( std::string_view begin, bool& isOpen ) {
   isOpen = false;
   for( const Format& format : formats ) {
      if( begin.starts_with( format.magic ) ) {
         return &format;
      }
      isOpen = isOpen || format.magic.starts_with( begin );
   }
   return nullptr;
}

} // namespace

Decompressor::~Decompressor() = default;

PlainBytes::PlainBytes( ByteSource& source ) : source_( source ) {}

PlainBytes::~PlainBytes() = default;

// Reads as much as decides the format.
void PlainBytes::begin() {
   buffer_ = std::make_unique<std::array<char, inputSize>>();
   const Format* format = nullptr;
   std::size_t count = 0;
   for( bool isOpen = true; isOpen; ) {
      const auto more = source_.read( buffer_->data() + count, inputSize - count );
      count += more;
      format = formatOf( { buffer_->data(), count }, isOpen );
      isOpen = isOpen && more > 0;
   }
   input_ = { buffer_->data(), count };
   isBegun_ = true;
   if( !format ) {
      return;
   }
   format_ = format->name;
   if( !format->make ) {
      throw Error( name(), "is compressed with " + std::string( format_ ) +
                              ", which this vorn was built without; decompress it first" );
   }
   decompressor_ = format->make();
}

// The next bytes as they are.
std::size_t PlainBytes::readPlain( char* to, std::size_t size ) {
   if( !buffer_ ) {
      return source_.read( to, size );
   }
   const auto count = input_.copy( to, size );
   input_.remove_prefix( count );
   if( input_.empty() ) {
      buffer_ = nullptr;
   }
   return count;
}

std::size_t PlainBytes::read( char* to, std::size_t size ) {
   if( !isBegun_ ) {
      begin();
   }
   if( !decompressor_ ) {
      return readPlain( to, size );
   }
   for( ;; ) {
      try {
         if( const auto count = decompressor_->run( input_, to, size ) ) {
            return count;
         }
      } catch( const Error& error ) {
         throw Error( name(),
                      "the " + std::string( format_ ) + " data is damaged: " + error.message() );
      }
      if( !input_.empty() ) {
         continue;
      }
      input_ = { buffer_->data(), source_.read( buffer_->data(), inputSize ) };
      if( input_.empty() ) {
         if( !decompressor_->isWhole() ) {
            throw Error( name(), "the " + std::string( format_ ) + " data is cut off" );
         }
         return 0;
      }
   }
}

} // namespace Vorn
