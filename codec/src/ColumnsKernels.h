// How values move between entry images and columns, which have one row for each image.
//
// An image is taken as 32-bit words. Rows come in blocks, whose words are first turned into columns
// that stay in the first-level cache; each field is then a few shifts and a mask for all rows of a
// block, which the compiler vectorises. The few rows after the last whole group go one by one.
#pragma once

#include <Kelvar/Types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vorn::Kernels {

// A run of up to 64 bits of a field: all of it, or one of a wide field's 64-bit words.
struct Run {
   static constexpr unsigned maxWords = 3;

   std::array<U16, maxWords> bytes; // of the image where its words begin, the last one repeated
   std::array<U16, maxWords> slots; // the words' in a block
   std::array<U32, maxWords> kept;  // bits of the words that encoding it keeps
   U8 wordCount;
   U8 shift; // its lowest bit in the first word
   U8 width;
   U8 elementBytes; // of the column: 1, 2, 4 or 8
   U32 step;        // elements from a row to the next
   U32 offset;
   U64 mask;  // its bits, at bit 0
   U64 owned; // those that no later run sets as well
   U8* data;

   U8* element( std::size_t row ) const { return data + row * step * elementBytes; }
};

// Words of the image that are gathered and scattered at once: four that lie side by side, or one.
struct Window {
   U16 word;
   U16 slot;
   bool four;
};

// Which bits of an image go to which columns, or come from them.
class Transfer {
public:
   explicit Transfer( std::size_t imageBytes ); // a multiple of 4

   // Adds bits `offset` to `offset` + `width` - 1 of the image, which a column of elements of
   // `elementBytes` takes, from `data` on one every `step` elements.
   void add( unsigned offset, unsigned width, U8* data, unsigned elementBytes, unsigned step );

   const std::vector<Run>& runs() const { return runs_; }
   const std::vector<Window>& windows() const { return windows_; }
   unsigned slotCount() const { return static_cast<unsigned>( kept_.size() ); }

   // Of an image, up to the last that is read.
   std::size_t usedBytes() const { return usedBytes_; }

   // Of the word in each slot, the bits that no run has.
   const std::vector<U32>& kept() const { return kept_; }

private:
   U16 slotOf( unsigned word );

   unsigned imageWords_;
   std::size_t usedBytes_ = 0;
   std::vector<Run> runs_;
   std::vector<Window> windows_;
   std::vector<U16> slots_; // by word of the image
   std::vector<U32> kept_;
};

// Entry images in memory, `stride` bytes from one to the next.
template<class Byte>
struct Images {
   Byte* first;
   std::size_t stride;
   std::size_t rows;
};

// The same work with the instructions of different processors. `large` is for data that no cache
// holds: the next images are fetched ahead, and columns written past the cache.
struct Routines {
   void ( *decode )( const Transfer& transfer, const Images<const U8>& images, bool large );
   void ( *encode )( const Transfer& transfer, const Images<U8>& images, bool large );
   // Whether no value of the columns has more bits than its run.
   bool ( *fit )( const Transfer& transfer, std::size_t rows );
};

extern const Routines baseline;

// Null where this processor or this build has none.
const Routines* avx2();

// The quickest for this processor.
const Routines& best();

} // namespace Vorn::Kernels
