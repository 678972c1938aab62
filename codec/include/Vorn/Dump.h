// Dumps: many entries from bytes or text in any of the usual forms, each with its layout and place.
#pragma once

#include <Vorn/Chip.h>
#include <Vorn/Export.h>
#include <Vorn/Images.h>
#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Vorn {

// Where the bytes of a dump come from.
class VORN_API ByteSource {
public:
   virtual ~ByteSource();

   // Reads at most `size` bytes, at least one; 0 at the end.
   virtual std::size_t read( char* to, std::size_t size ) = 0;

   // What places begin with: "images.bin".
   virtual std::string name() const = 0;
};

// The bytes of a text in memory, which must outlive this object.
class VORN_API TextBytes : public ByteSource {
public:
   TextBytes( std::string_view text, std::string name );
   ~TextBytes() override;

   std::size_t read( char* to, std::size_t size ) override;
   std::string name() const override;

private:
   std::string_view rest_;
   std::string name_;
};

// The lines of bytes, read through a buffer. The source must outlive this object.
class VORN_API ByteLines : public LineSource {
public:
   // A longer line is an Error, so that input without lines cannot take all memory.
   static constexpr std::size_t longest = 1 << 20;

   explicit ByteLines( ByteSource& source );
   ~ByteLines() override;
   ByteLines( const ByteLines& ) = delete;
   ByteLines& operator=( const ByteLines& ) = delete;

   bool next( std::string_view& line ) override;
   std::string place() const override;

   // What has been read from the source and not yet been returned.
   std::string_view rest() const { return { buffer_.data() + begin_, end_ - begin_ }; }

   // Reads more into rest(), which may move; false at the end.
   bool readMore();

   // Returns all of rest(), which no longer belongs to any line.
   std::string_view takeRest();

   // Drops the first `bytes` of rest(), which hold `lines` lines.
   void skip( std::size_t bytes, std::size_t lines );

private:
   ByteSource& source_;
   std::vector<char> buffer_;
   std::size_t begin_ = 0; // of rest()
   std::size_t end_ = 0;
   std::size_t number_ = 0;
};

// What is known of a dump before it is read.
struct DumpOptions {
   std::string table;          // empty where each image says its own, or its address does
   const Chip* chip = nullptr; // null where each image says its own
   std::optional<U64> variant; // nothing: by the tag, 0 where the table has no tags
   ImageFormat format = ImageFormat::automatic;
   std::size_t stride = 0; // bytes from one entry to the next; 0: as many as an entry has
   EntryIndex first;       // of a dump without addresses
   bool isStrict = false;  // a doubt is an Error
   bool hasFirst = false;  // first is meant, even if it is 0 and the dump's offsets begin elsewhere
};

// An entry of a dump.
struct DumpEntry {
   const Layout* layout = nullptr; // lives as long as the reader
   std::span<const U8> image;      // all bytes of the entry, or those up to its last field
   std::optional<U64> entry;       // where it lies, as far as that is known
   std::optional<U64> array;
   std::optional<U64> identifier;
   std::optional<U32> address; // of the S-channel
   bool isEmpty = false;       // all zeroes, which fit no tag: it was never written
   std::string_view doubt; // what contradicts its layout or its place, for a warning; else empty
};

// Entries of a dump that lie one after another in memory.
struct DumpRun {
   const Layout* layout = nullptr;         // of all entries; null where they may differ
   std::span<const Layout* const> layouts; // then that of each, null for an empty one
   std::span<const U8> images;             // up to the last byte of the last entry
   std::size_t stride = 0;                 // bytes from one entry to the next
   std::size_t count = 0;
   std::optional<EntryIndex> first; // where the first entry lies; the others follow
   std::optional<U32> address;      // of the first entry, on the S-channel
   U32 addressStep = 0;             // from one entry to the next
   bool areEmpty = false;           // as DumpEntry::isEmpty
};

// Reads dumps entry by entry, in memory that doesn't grow with them.
//
//    Vorn::TextBytes bytes( text, "clipboard" );
//    Vorn::DumpReader reader( { .table = "LifTable", .chip = &Vorn::chipOf( 10 ) } );
//    reader.begin( bytes );
//    while( reader.next() ) { ... reader.entry().layout->get( reader.entry().image, "vsi" ) ... }
//
// With ImageFormat::automatic the first line decides the form. What isn't text is binary. The lines
// of `hexdump -C`, `hexdump`, `xxd` and `od -tx4` are dumps, whose bytes are split into entries,
// and so are binary and `stream`. Every other line is an image: digits, JSON, a row of CSV below a
// header that names an "image", perhaps with TABLE CHIP VARIANT or an address and a colon before
// it. "#" begins a comment.
class VORN_API DumpReader {
public:
   // An unknown table, chip type or variant is an Error, and so is a stride below an entry's bytes.
   explicit DumpReader( DumpOptions options );
   DumpReader( DumpReader&& other ) noexcept;
   DumpReader& operator=( DumpReader&& other ) noexcept;
   ~DumpReader();

   // Continues with these bytes, which must outlive the reading.
   void begin( ByteSource& bytes );

   // Reads the next entry; false at the end. Bad input is an Error that names the line and the
   // column, or the byte of a binary dump; the next call continues after it if it is clear where
   // the next entry begins, and otherwise returns false.
   bool next();

   // The entry that next() has read, valid until the next call.
   const DumpEntry& entry() const;

   // Where that entry begins: "images.txt:3:17" or "images.bin:0x550".
   std::string place() const;

   // Whether all entries of a run have one layout, or each has its own.
   enum class Runs { ofOneLayout, ofAny };

   // The entries that come next, as far as they are plain: whole images of own()'s table, which
   // next() would read without an Error and without a doubt. None where only next() can decide.
   // Valid until the next call. Fails as next() does.
   //
   //    for( auto run = reader.ahead(); run.count > 0 || reader.next(); run = reader.ahead() ) {
   //       ... all of run, or the one entry() ...
   //       reader.skip( run.count );
   //    }
   DumpRun ahead( Runs runs = Runs::ofOneLayout );

   // Skips the first `count` entries of the last ahead().
   void skip( std::size_t count );

   // Skips all entries of the last ahead() and moves their images to `images`, whose memory is
   // reused.
   void take( const DumpRun& run, std::vector<U8>& images );

   // Continues with the arguments of a command line: one image in any number of pieces, or an image
   // in each argument. Where both are possible, next() throws an Error. Their place() is empty.
   void begin( std::span<const std::string> arguments );

   // The layout of an image that states no pair and has no tag; null where there is none.
   const Layout* own() const;

   // Whether all images are of own(), whatever their tags.
   bool isOfOnePair() const;

   // The layouts among which the tag decides for an image that states no pair: own() first, then
   // those of the other variants; none where there is no own().
   std::span<const Layout> layouts() const;

private:
   friend class DumpIdentifier;
   struct State;

   // Reads images of any pair of the chip type: their entry() has no layout. Of a dump that is
   // split, next() returns the bytes in pieces of any length, with none at the end.
   void takeAnyPair();
   bool isPiece() const;

   std::unique_ptr<State> state_;
};

} // namespace Vorn
