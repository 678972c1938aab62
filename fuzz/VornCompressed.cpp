// Any bytes as a file that may be compressed, and compressed ones that are whole, put together, cut
// off or damaged: what is whole is what was compressed, and nothing is taken for something else.
// However a file is read, it holds the same.
#include "Finding.h"
#include "Pieces.h"

#include <Compression.h>
#include <Vorn/Error.h>

#include <fuzzer/FuzzedDataProvider.h>

#ifdef VORN_WITH_ZLIB
#include <zlib.h>
#endif
#ifdef VORN_WITH_ZSTD
#include <zstd.h>
#endif

#include <algorithm>
#include <string>
#include <string_view>

namespace Fuzz {
namespace {

// Few bytes may be compressed gigabytes.
constexpr std::size_t mostBytes = 1 << 19;

struct Contents {
   std::string bytes;
   std::string error;

   bool operator==( const Contents& ) const = default;
};

Contents contentsOf( std::string_view file, std::size_t piece, std::size_t wanted ) {
   Contents contents;
   Pieces source( file, piece, "file" );
   Vorn::PlainBytes bytes( source );
   std::string buffer( wanted, '\0' );
   try {
      while( contents.bytes.size() < mostBytes ) {
         const auto count =
            bytes.read( buffer.data(), std::min( wanted, mostBytes - contents.bytes.size() ) );
         if( count == 0 ) {
            break;
         }
         if( count > wanted ) {
            found( "more is read than there is room for" );
         }
         contents.bytes.append( buffer, 0, count );
      }
   } catch( const Vorn::Error& error ) {
      contents.error = error.what();
   }
   return contents;
}

#ifdef VORN_WITH_ZLIB
std::string gzipped( const std::string& text, int level ) {
   z_stream stream{};
   constexpr int withHeader = 16 + MAX_WBITS;
   deflateInit2( &stream, level, Z_DEFLATED, withHeader, 8, Z_DEFAULT_STRATEGY );
   std::string to( deflateBound( &stream, text.size() ), '\0' );
   std::string from = text;
   stream.next_in = reinterpret_cast<Bytef*>( from.data() );
   stream.avail_in = static_cast<uInt>( from.size() );
   stream.next_out = reinterpret_cast<Bytef*>( to.data() );
   stream.avail_out = static_cast<uInt>( to.size() );
   deflate( &stream, Z_FINISH );
   to.resize( stream.total_out );
   deflateEnd( &stream );
   return to;
}
#endif

#ifdef VORN_WITH_ZSTD
// With a checksum, as the program `zstd` writes it.
std::string zstandard( const std::string& text, int level ) {
   ZSTD_CCtx* const context = ZSTD_createCCtx();
   ZSTD_CCtx_setParameter( context, ZSTD_c_compressionLevel, level );
   ZSTD_CCtx_setParameter( context, ZSTD_c_checksumFlag, 1 );
   std::string to( ZSTD_compressBound( text.size() ), '\0' );
   to.resize( ZSTD_compress2( context, to.data(), to.size(), text.data(), text.size() ) );
   ZSTD_freeCCtx( context );
   return to;
}
#endif

std::string compressed( const std::string& text, bool asZstandard, int level ) {
#ifdef VORN_WITH_ZSTD
   if( asZstandard ) {
      return zstandard( text, level );
   }
#endif
#ifdef VORN_WITH_ZLIB
   return gzipped( text, level );
#else
   return asZstandard ? text : std::string();
#endif
}

void runCompressed( FuzzedDataProvider& input, std::size_t piece, std::size_t wanted ) {
   const bool asZstandard = input.ConsumeBool();
   std::string plain;
   std::string file;
   std::size_t lastBegin = 0;
   for( int parts = input.ConsumeIntegralInRange( 1, 3 ); parts > 0; --parts ) {
      std::string text = input.ConsumeRandomLengthString( 300 );
      const auto times = input.ConsumeIntegralInRange( 1, 40 );
      for( int i = 0; i < times; ++i ) {
         plain += text;
      }
      std::string repeated;
      for( int i = 0; i < times; ++i ) {
         repeated += text;
      }
      lastBegin = file.size();
      file += compressed( repeated, asZstandard, input.ConsumeIntegralInRange( 1, 9 ) );
   }
   if( contentsOf( file, piece, wanted ) != Contents{ plain, "" } ) {
      found( "what was compressed isn't what is read" );
   }
   constexpr std::size_t magic = 4;
   const auto at = input.ConsumeIntegralInRange( lastBegin + magic, file.size() - 1 );
   const auto cut = contentsOf( file.substr( 0, at ), piece, wanted );
   if( cut.error.find( "cut off" ) == std::string::npos || !plain.starts_with( cut.bytes ) ) {
      found( "what is cut off is taken: " + cut.error );
   }
   auto damaged = file;
   damaged[at] = static_cast<char>( damaged[at] ^ 1 << input.ConsumeIntegralInRange( 0, 7 ) );
   if( const auto read = contentsOf( damaged, piece, wanted );
       read.error.empty() && read.bytes != plain ) {
      found( "what is damaged is taken" );
   }
   if( const auto read = contentsOf( file + "x", piece, wanted ); read.error.empty() ) {
      found( "what follows is passed over" );
   }
}

} // namespace
} // namespace Fuzz

extern "C" int LLVMFuzzerTestOneInput( const U8* data, std::size_t size ) {
   using namespace Fuzz;
   FuzzedDataProvider input( data, size );
   const auto piece = input.ConsumeIntegralInRange<std::size_t>( 1, 2000 );
   const auto wanted = input.ConsumeIntegralInRange<std::size_t>( 1, 5000 );
#if defined( VORN_WITH_ZLIB ) && defined( VORN_WITH_ZSTD )
   if( input.ConsumeBool() ) {
      runCompressed( input, piece, wanted );
      return 0;
   }
#endif
   const std::string magic = input.PickValueInArray( { "", "\x1f\x8b\x08", "\x28\xb5\x2f\xfd" } );
   const std::string file = magic + input.ConsumeRemainingBytesAsString();
   const auto once = contentsOf( file, file.size() + 1, mostBytes );
   const auto again = contentsOf( file, piece, wanted );
   // The libraries may meet another flaw first.
   const bool isTaken = once.error.empty();
   if( isTaken != again.error.empty() || ( isTaken && once.bytes != again.bytes ) ) {
      found( "another reading: " + once.error + "; " + again.error );
   }
   const bool isPlain = !file.starts_with( "\x1f\x8b" ) && !file.starts_with( "\x28\xb5\x2f\xfd" );
   if( isPlain && once != Contents{ file, "" } ) {
      found( "plain bytes are not left as they are" );
   }
   return 0;
}
