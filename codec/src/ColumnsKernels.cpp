#include "ColumnsKernels.h"

#include <algorithm>
#include <cstring>

#ifdef __x86_64__
#include <cpuid.h>
#include <emmintrin.h>
#define VORN_AVX2 __attribute__( ( target( "avx2" ) ) )
#endif

#define VORN_INLINE __attribute__( ( always_inline ) ) inline

namespace Vorn::Kernels {

namespace {

constexpr U16 noSlot = 0xffff;
constexpr std::size_t lineBytes = 64; // of a cache

// Blocks have whole groups of rows.
constexpr std::size_t groupRows = 8;
constexpr std::size_t blockRows = 256;

// A block's words, a column for each slot.
class Block {
public:
   explicit Block( const Transfer& transfer )
      : rows_( std::min( blockRows,
                         words_.size() / std::max( transfer.slotCount(), 1u ) / 32 * 32 ) ) {}

   // None where the columns have no room.
   std::size_t rows() const { return rows_; }

   U32* column( unsigned slot ) { return &words_[slot * rows_]; }
   const U32* column( unsigned slot ) const { return &words_[slot * rows_]; }

   void clear( unsigned slots ) { std::fill_n( words_.data(), slots * rows_, U32{ 0 } ); }

private:
   alignas( lineBytes ) std::array<U32, 4096> words_;
   std::size_t rows_;
};

} // namespace

Transfer::Transfer( std::size_t imageBytes )
   : imageWords_( static_cast<unsigned>( imageBytes / 4 ) ), slots_( imageWords_, noSlot ) {}

U16 Transfer::slotOf( unsigned word ) {
   if( slots_[word] == noSlot ) {
      const unsigned first = word / 4 * 4;
      const bool four = first + 4 <= imageWords_;
      const unsigned count = four ? 4 : 1;
      const Window window = { static_cast<U16>( four ? first : word ),
                              static_cast<U16>( slotCount() ), four };
      windows_.push_back( window );
      for( unsigned number = 0; number < count; ++number ) {
         slots_[window.word + number] = static_cast<U16>( window.slot + number );
         kept_.push_back( ~U32{ 0 } );
      }
   }
   return slots_[word];
}

namespace {

// The bits of a run in the first, second and third word that it lies in.
VORN_INLINE U32 pieceOf( U64 bits, unsigned shift, unsigned number ) {
   switch( number ) {
   case 0:
      return static_cast<U32>( bits << shift );
   case 1:
      return static_cast<U32>( bits >> ( 32 - shift ) );
   default:
      return static_cast<U32>( bits >> 1 >> ( 63 - shift ) );
   }
}

// The run's bits at bit 0, and others above them. What repeated words bring in lies above.
VORN_INLINE U64 joined( U32 first, U32 second, U32 third, unsigned shift ) {
   const U64 low = first | static_cast<U64>( second ) << 32;
   return low >> shift | static_cast<U64>( third ) << 1 << ( 63 - shift );
}

template<class Value>
VORN_INLINE Value load( const U8* at ) {
   Value value;
   std::memcpy( &value, at, sizeof( value ) );
   return value;
}

template<class Value>
VORN_INLINE void store( U8* at, Value value ) {
   std::memcpy( at, &value, sizeof( value ) );
}

// Calls `act` with a zero of the unsigned type of that size.
template<class Act>
VORN_INLINE auto withType( unsigned elementBytes, const Act& act ) {
   switch( elementBytes ) {
   case 1:
      return act( U8{} );
   case 2:
      return act( U16{} );
   case 4:
      return act( U32{} );
   default:
      return act( U64{} );
   }
}

void own( Run& run, U64 bits ) {
   run.owned = bits;
   for( unsigned number = 0; number < Run::maxWords; ++number ) {
      run.kept[number] = ~pieceOf( bits, run.shift, number );
   }
}

} // namespace

void Transfer::add( unsigned offset, unsigned width, U8* data, unsigned elementBytes,
                    unsigned step ) {
   Run run{};
   run.shift = static_cast<U8>( offset % 32 );
   run.width = static_cast<U8>( width );
   run.elementBytes = static_cast<U8>( elementBytes );
   run.step = step;
   run.offset = offset;
   run.mask = ~U64{ 0 } >> ( 64 - width );
   run.data = data;
   const unsigned first = offset / 32;
   const unsigned last = ( offset + width - 1 ) / 32;
   usedBytes_ = std::max( usedBytes_, ( last + 1 ) * std::size_t{ 4 } );
   run.wordCount = static_cast<U8>( last - first + 1 );
   for( unsigned number = 0; number < Run::maxWords; ++number ) {
      const unsigned word = std::min( first + number, last );
      run.bytes[number] = static_cast<U16>( 4 * word );
      run.slots[number] = slotOf( word );
      if( number < run.wordCount ) {
         kept_[run.slots[number]] &= ~pieceOf( run.mask, run.shift, number );
      }
   }
   own( run, run.mask );
   for( Run& earlier : runs_ ) {
      const long begin = static_cast<long>( offset ) - static_cast<long>( earlier.offset );
      if( begin >= 0 && begin < 64 ) {
         own( earlier, earlier.owned & ~( run.mask << begin ) );
      } else if( begin < 0 && begin > -64 ) {
         own( earlier, earlier.owned & ~( run.mask >> -begin ) );
      }
   }
   runs_.push_back( run );
}

namespace {

// Rows one by one.

VORN_INLINE void decodeRows( const Transfer& transfer, const Images<const U8>& images,
                             std::size_t begin ) {
   for( std::size_t row = begin; row < images.rows; ++row ) {
      const U8* const image = images.first + row * images.stride;
      for( const Run& run : transfer.runs() ) {
         const U64 bits =
            joined( load<U32>( image + run.bytes[0] ), load<U32>( image + run.bytes[1] ),
                    load<U32>( image + run.bytes[2] ), run.shift ) &
            run.mask;
         U8* const element = run.element( row );
         withType( run.elementBytes,
                   [=]( auto zero ) { store( element, static_cast<decltype( zero )>( bits ) ); } );
      }
   }
}

VORN_INLINE U64 valueAt( const Run& run, std::size_t row ) {
   const U8* const element = run.element( row );
   return withType( run.elementBytes, [=]( auto zero ) {
      return static_cast<U64>( load<decltype( zero )>( element ) );
   } );
}

VORN_INLINE void encodeRows( const Transfer& transfer, const Images<U8>& images,
                             std::size_t begin ) {
   for( std::size_t row = begin; row < images.rows; ++row ) {
      U8* const image = images.first + row * images.stride;
      for( const Run& run : transfer.runs() ) {
         const U64 bits = valueAt( run, row ) & run.owned;
         const auto setWord = [&]( unsigned number ) {
            U8* const at = image + run.bytes[number];
            store( at,
                   ( load<U32>( at ) & run.kept[number] ) | pieceOf( bits, run.shift, number ) );
         };
         setWord( 0 );
         if( run.wordCount > 1 ) {
            setWord( 1 );
         }
         if( run.wordCount > 2 ) {
            setWord( 2 );
         }
      }
   }
}

// Blocks.

using Four = U32 __attribute__( ( vector_size( 16 ), aligned( 4 ), may_alias ) );

// Four rows of four words become four columns, and the other way round.
VORN_INLINE void transpose( Four ( &rows )[4] ) {
   const Four low01 = __builtin_shufflevector( rows[0], rows[1], 0, 4, 1, 5 );
   const Four high01 = __builtin_shufflevector( rows[0], rows[1], 2, 6, 3, 7 );
   const Four low23 = __builtin_shufflevector( rows[2], rows[3], 0, 4, 1, 5 );
   const Four high23 = __builtin_shufflevector( rows[2], rows[3], 2, 6, 3, 7 );
   rows[0] = __builtin_shufflevector( low01, low23, 0, 1, 4, 5 );
   rows[1] = __builtin_shufflevector( low01, low23, 2, 3, 6, 7 );
   rows[2] = __builtin_shufflevector( high01, high23, 0, 1, 4, 5 );
   rows[3] = __builtin_shufflevector( high01, high23, 2, 3, 6, 7 );
}

// `images` begins at the block's first row, and has those of the block.
VORN_INLINE void gather( const Transfer& transfer, const Images<const U8>& images, Block& block ) {
   for( const Window& window : transfer.windows() ) {
      const U8* image = images.first + 4UL * window.word;
      if( window.four ) {
         for( std::size_t row = 0; row < images.rows; row += 4 ) {
            Four rows[4];
            for( Four& words : rows ) {
               words = load<Four>( image );
               image += images.stride;
            }
            transpose( rows );
            for( unsigned number = 0; number < 4; ++number ) {
               *reinterpret_cast<Four*>( block.column( window.slot + number ) + row ) =
                  rows[number];
            }
         }
      } else {
         for( std::size_t row = 0; row < images.rows; ++row ) {
            block.column( window.slot )[row] = load<U32>( image );
            image += images.stride;
         }
      }
   }
}

VORN_INLINE void scatter( const Transfer& transfer, const Block& block, const Images<U8>& images ) {
   for( const Window& window : transfer.windows() ) {
      U8* image = images.first + 4UL * window.word;
      const U32* const keptWords = &transfer.kept()[window.slot];
      if( window.four ) {
         Four kept;
         std::memcpy( &kept, keptWords, sizeof( kept ) );
         for( std::size_t row = 0; row < images.rows; row += 4 ) {
            Four rows[4];
            for( unsigned number = 0; number < 4; ++number ) {
               rows[number] =
                  *reinterpret_cast<const Four*>( block.column( window.slot + number ) + row );
            }
            transpose( rows );
            for( const Four& words : rows ) {
               store( image, ( load<Four>( image ) & kept ) | words );
               image += images.stride;
            }
         }
      } else {
         for( std::size_t row = 0; row < images.rows; ++row ) {
            store( image, ( load<U32>( image ) & *keptWords ) | block.column( window.slot )[row] );
            image += images.stride;
         }
      }
   }
}

// Calls `act` for each row, in loops of constant counts, which any vector's length divides.
template<class Act>
VORN_INLINE void forEach( std::size_t rows, const Act& act ) {
   std::size_t row = 0;
   for( constexpr std::size_t many = 4 * groupRows; row + many <= rows; row += many ) {
      for( std::size_t number = 0; number < many; ++number ) {
         act( row + number );
      }
   }
   for( ; row < rows; row += groupRows ) {
      for( std::size_t number = 0; number < groupRows; ++number ) {
         act( row + number );
      }
   }
}

// Values of up to 32 bits, in as narrow a type as the column's.
template<class Value, bool inOneWord>
VORN_INLINE void decodeNarrow( const Run& run, const Block& block, Value* __restrict values,
                               std::size_t rows ) {
   const U32* __restrict const first = block.column( run.slots[0] );
   const U32* __restrict const second = block.column( run.slots[1] );
   const U32 mask = static_cast<U32>( run.mask );
   const unsigned shift = run.shift;
   const unsigned rise = ( 32 - shift ) % 32; // a run in two words doesn't begin with the first
   forEach( rows, [=]( std::size_t row ) {
      U32 bits = first[row] >> shift;
      if constexpr( !inOneWord ) {
         bits |= second[row] << rise;
      }
      values[row] = static_cast<Value>( bits & mask );
   } );
}

VORN_INLINE void decodeLong( const Run& run, const Block& block, U64* __restrict values,
                             std::size_t step, std::size_t rows ) {
   const U32* __restrict const first = block.column( run.slots[0] );
   const U32* __restrict const second = block.column( run.slots[1] );
   const U32* __restrict const third = block.column( run.slots[2] );
   const U64 mask = run.mask;
   const unsigned shift = run.shift;
   forEach( rows, [=]( std::size_t row ) {
      values[row * step] = joined( first[row], second[row], third[row], shift ) & mask;
   } );
}

VORN_INLINE void decodeRun( const Run& run, const Block& block, U8* data, std::size_t rows ) {
   if( run.step != 1 ) {
      decodeLong( run, block, reinterpret_cast<U64*>( data ), run.step, rows );
   } else if( run.width > 32 ) {
      decodeLong( run, block, reinterpret_cast<U64*>( data ), 1, rows );
   } else {
      withType( run.elementBytes, [&]( auto zero ) {
         using Value = decltype( zero );
         if( run.wordCount == 1 ) {
            decodeNarrow<Value, true>( run, block, reinterpret_cast<Value*>( data ), rows );
         } else {
            decodeNarrow<Value, false>( run, block, reinterpret_cast<Value*>( data ), rows );
         }
      } );
   }
}

// What has been decoded of a column's last line, which waits for the rest.
struct LineBegun {
   std::array<U8, lineBytes> bytes;
   std::size_t count = 0;
};

#ifdef __x86_64__
constexpr bool canStream = true;

// Copies a line to an aligned place past the cache.
VORN_INLINE void streamLine( U8* to, const U8* from ) {
   for( std::size_t at = 0; at < lineBytes; at += sizeof( __m128i ) ) {
      _mm_stream_si128( reinterpret_cast<__m128i*>( to + at ),
                        _mm_loadu_si128( reinterpret_cast<const __m128i*>( from + at ) ) );
   }
}

VORN_INLINE void finishStreams() { _mm_sfence(); }
#else
constexpr bool canStream = false;

VORN_INLINE void streamLine( U8* to, const U8* from ) { std::memcpy( to, from, lineBytes ); }

VORN_INLINE void finishStreams() {}
#endif

// Writes whole lines past the cache. The `bytes` that belong at `to` stand in `stage` from
// `lineBytes` on.
VORN_INLINE void stream( LineBegun& begun, U8* stage, U8* to, std::size_t bytes ) {
   const U8* const from = stage + lineBytes - begun.count;
   std::memcpy( stage + lineBytes - begun.count, begun.bytes.data(), begun.count );
   to -= begun.count;
   bytes += begun.count;
   const std::size_t head = // of the whole column
      std::min<std::size_t>( bytes, -reinterpret_cast<std::uintptr_t>( to ) % lineBytes );
   std::memcpy( to, from, head );
   std::size_t at = head;
   for( ; at + lineBytes <= bytes; at += lineBytes ) {
      streamLine( to + at, from + at );
   }
   begun.count = bytes - at;
   std::memcpy( begun.bytes.data(), from + at, begun.count );
}

// Fetches the share of the next block's rows that run `number` of the transfer stands for.
template<class Byte>
VORN_INLINE void fetchNext( const Transfer& transfer, const Images<Byte>& block, std::size_t rows,
                            std::size_t number ) {
   const std::size_t runs = transfer.runs().size();
   for( std::size_t row = rows * number / runs; row < rows * ( number + 1 ) / runs; ++row ) {
      const U8* const image = block.first + ( block.rows + row ) * block.stride;
      for( std::size_t at = 0; at < transfer.usedBytes(); at += lineBytes ) {
         __builtin_prefetch( image + at );
      }
   }
}

VORN_INLINE void decodeImages( const Transfer& transfer, const Images<const U8>& images,
                               bool large ) {
   const bool streams = canStream && large;
   const std::vector<Run>& runs = transfer.runs();
   std::vector<LineBegun> begun( streams ? runs.size() : 0 );
   alignas( lineBytes ) std::array<U8, lineBytes + blockRows * sizeof( U64 )> stage;
   Block block( transfer );
   const std::size_t grouped = block.rows() == 0 ? 0 : images.rows / groupRows * groupRows;
   for( std::size_t row = 0; row < grouped; row += block.rows() ) {
      const Images<const U8> some = { images.first + row * images.stride, images.stride,
                                      std::min( block.rows(), grouped - row ) };
      const std::size_t next = std::min( block.rows(), grouped - row - some.rows );
      gather( transfer, some, block );
      for( std::size_t number = 0; number < runs.size(); ++number ) {
         const Run& run = runs[number];
         U8* const data = run.element( row );
         if( streams && run.step == 1 ) {
            decodeRun( run, block, stage.data() + lineBytes, some.rows );
            stream( begun[number], stage.data(), data, some.rows * run.elementBytes );
         } else {
            decodeRun( run, block, data, some.rows );
         }
         if( large ) {
            fetchNext( transfer, some, next, number );
         }
      }
   }
   for( std::size_t number = 0; number < begun.size(); ++number ) {
      const LineBegun& line = begun[number];
      std::memcpy( runs[number].data + grouped * runs[number].elementBytes - line.count,
                   line.bytes.data(), line.count );
   }
   if( streams ) {
      finishStreams();
   }
   decodeRows( transfer, images, grouped );
}

// Adds the bits that one word of the image has of a run.
template<class Value, bool isFirst>
VORN_INLINE void encodeWord( const Value* __restrict values, std::size_t step, U64 ownedBits,
                             unsigned shift, U32* __restrict column, std::size_t rows ) {
   using Wide = std::conditional_t<sizeof( Value ) == 8, U64, U32>;
   const auto owned = static_cast<Wide>( ownedBits );
   forEach( rows, [=]( std::size_t row ) {
      const Wide bits = values[row * step] & owned;
      column[row] |=
         isFirst ? static_cast<U32>( bits ) << shift : static_cast<U32>( bits >> shift );
   } );
}

template<class Value>
VORN_INLINE void encodeValues( const Run& run, const Value* values, std::size_t step, Block& block,
                               std::size_t rows ) {
   encodeWord<Value, true>( values, step, run.owned, run.shift, block.column( run.slots[0] ),
                            rows );
   for( unsigned word = 1; word < run.wordCount; ++word ) {
      encodeWord<Value, false>( values, step, run.owned, 32 * word - run.shift,
                                block.column( run.slots[word] ), rows );
   }
}

VORN_INLINE void encodeRun( const Run& run, Block& block, std::size_t row, std::size_t rows ) {
   const U8* const data = run.element( row );
   if( run.step != 1 ) {
      encodeValues( run, reinterpret_cast<const U64*>( data ), run.step, block, rows );
   } else {
      withType( run.elementBytes, [&]( auto zero ) {
         using Value = decltype( zero );
         encodeValues( run, reinterpret_cast<const Value*>( data ), 1, block, rows );
      } );
   }
}

VORN_INLINE void encodeImages( const Transfer& transfer, const Images<U8>& images, bool large ) {
   Block block( transfer );
   const std::size_t grouped = block.rows() == 0 ? 0 : images.rows / groupRows * groupRows;
   for( std::size_t row = 0; row < grouped; row += block.rows() ) {
      const Images<U8> some = { images.first + row * images.stride, images.stride,
                                std::min( block.rows(), grouped - row ) };
      const std::size_t next = std::min( block.rows(), grouped - row - some.rows );
      block.clear( transfer.slotCount() );
      for( std::size_t number = 0; number < transfer.runs().size(); ++number ) {
         encodeRun( transfer.runs()[number], block, row, some.rows );
         if( large ) {
            fetchNext( transfer, some, next, number );
         }
      }
      scatter( transfer, block, some );
   }
   encodeRows( transfer, images, grouped );
}

// All bits that are set in any of a run's values.
VORN_INLINE U64 united( const Run& run, std::size_t rows ) {
   U64 all = 0;
   if( run.step != 1 ) {
      for( std::size_t row = 0; row < rows; ++row ) {
         all |= valueAt( run, row );
      }
      return all;
   }
   return withType( run.elementBytes, [&]( auto zero ) {
      using Value = decltype( zero );
      const auto* const values = reinterpret_cast<const Value*>( run.data );
      Value some = 0;
      for( std::size_t row = 0; row < rows; ++row ) {
         some = static_cast<Value>( some | values[row] );
      }
      return static_cast<U64>( some );
   } );
}

VORN_INLINE bool valuesFit( const Transfer& transfer, std::size_t rows ) {
   U64 tooHigh = 0;
   if( rows < groupRows ) {
      for( std::size_t row = 0; row < rows; ++row ) {
         for( const Run& run : transfer.runs() ) {
            tooHigh |= valueAt( run, row ) & ~run.mask;
         }
      }
   } else {
      for( const Run& run : transfer.runs() ) {
         tooHigh |= run.width != 8 * run.elementBytes ? united( run, rows ) & ~run.mask : 0;
      }
   }
   return tooHigh == 0;
}

// The instructions that every processor has.
void decodeBaseline( const Transfer& transfer, const Images<const U8>& images, bool large ) {
   decodeImages( transfer, images, large );
}
void encodeBaseline( const Transfer& transfer, const Images<U8>& images, bool large ) {
   encodeImages( transfer, images, large );
}
bool fitBaseline( const Transfer& transfer, std::size_t rows ) {
   return valuesFit( transfer, rows );
}

#ifdef VORN_AVX2

VORN_AVX2 void decodeAvx2( const Transfer& transfer, const Images<const U8>& images, bool large ) {
   decodeImages( transfer, images, large );
}
VORN_AVX2 void encodeAvx2( const Transfer& transfer, const Images<U8>& images, bool large ) {
   encodeImages( transfer, images, large );
}
VORN_AVX2 bool fitAvx2( const Transfer& transfer, std::size_t rows ) {
   return valuesFit( transfer, rows );
}

constexpr Routines withAvx2 = { decodeAvx2, encodeAvx2, fitAvx2 };

// Whether the processor has the instructions and the system keeps their registers. The compiler's
// __builtin_cpu_supports would bring an initialiser into the library.
bool hasAvx2() {
   unsigned a = 0;
   unsigned b = 0;
   unsigned c = 0;
   unsigned d = 0;
   if( __get_cpuid( 1, &a, &b, &c, &d ) == 0 || ( c & bit_OSXSAVE ) == 0 ) {
      return false;
   }
   __asm__( "xgetbv" : "=a"( a ), "=d"( d ) : "c"( 0 ) );
   constexpr unsigned vectorRegisters = 6;
   return ( a & vectorRegisters ) == vectorRegisters &&
          __get_cpuid_count( 7, 0, &a, &b, &c, &d ) != 0 && ( b & bit_AVX2 ) != 0;
}

#endif

} // namespace

const Routines baseline = { decodeBaseline, encodeBaseline, fitBaseline };

const Routines* avx2() {
#ifdef VORN_AVX2
   static const bool has = hasAvx2();
   return has ? &withAvx2 : nullptr;
#else
   return nullptr;
#endif
}

const Routines& best() {
#ifdef VORN_AVX2
   if( avx2() != nullptr ) {
      return withAvx2;
   }
#endif
   return baseline;
}

} // namespace Vorn::Kernels
