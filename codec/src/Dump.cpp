// Dumps: many entries from bytes or text in any of the usual forms, each with its layout and place.
#include <Vorn/Dump.h>

#include "CsvText.h"
#include "DumpInput.h"
#include "DumpRows.h"
#include "ImageText.h"

#include <Vorn/Bits.h>
#include <Vorn/Locate.h>
#include <Vorn/Pairs.h>
#include <Vorn/Text.h>
#include <Vorn/Value.h>

#include <algorithm>
#include <array>
#include <exception>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

constexpr auto none = std::string_view::npos;
constexpr std::size_t longestStride = 1 << 20;

bool isZero( std::span<const U8> image ) {
   return std::all_of( image.begin(), image.end(), []( U8 byte ) { return byte == 0; } );
}

std::size_t neededBy( const Layout& layout ) {
   std::size_t end = 0;
   for( const Field& field : layout.fields() ) {
      end = std::max<std::size_t>( end, field.end() );
   }
   return ( end + 7 ) / 8;
}

unsigned bitsOf( std::span<const TagField> tag ) {
   unsigned bits = 0;
   for( const TagField& one : tag ) {
      bits += one.field.width;
   }
   return bits;
}

// Whether digits of this one piece may be bytes in their order or a number.
bool mayBeNumber( std::string_view text, ImageFormat format ) {
   constexpr std::size_t word = 10;
   return format == ImageFormat::automatic && text.size() > word &&
          ( text.starts_with( "0x" ) || text.starts_with( "0X" ) ) &&
          firstPiece( text ).size() == text.size();
}

// The pairs that an image may be of, by what its text says.
struct Candidates {
   std::vector<Layout> layouts;
   std::vector<std::size_t> needed; // up to the last field, for each of them
   bool isSaid = false;             // by the variant, too
   std::set<std::size_t> others;    // those already reported to fit a tag as well

   void add( Layout layout ) {
      needed.push_back( neededBy( layout ) );
      layouts.push_back( std::move( layout ) );
   }

   bool isLength( std::size_t index, std::size_t bytes ) const {
      const auto up = [&]( std::size_t to ) { return ( needed[index] + to - 1 ) / to * to; };
      return bytes == layouts[index].bytes() || bytes == up( 1 ) || bytes == up( 4 ) ||
             bytes == up( 8 );
   }

   bool isLength( std::size_t bytes ) const {
      for( std::size_t i = 0; i < layouts.size(); ++i ) {
         if( isLength( i, bytes ) ) {
            return true;
         }
      }
      return false;
   }

   bool fitsTag( std::span<const U8> image ) const {
      return std::any_of( layouts.begin(), layouts.end(), [&]( const Layout& layout ) {
         return !layout.tag().empty() && 8 * image.size() >= layout.tag().back().field.end() &&
                !layout.wrongTag( image );
      } );
   }

   bool hasTags() const {
      return std::any_of( layouts.begin(), layouts.end(),
                          []( const Layout& layout ) { return !layout.tag().empty(); } );
   }
};

// "no variant of LifTable on BCM88690_B0 has tag 0x17"
std::string noTagText( const Layout& layout, std::span<const U8> image ) {
   std::string text =
      "no variant of " + std::string( layout.table() ) + " on " + layout.chip().name + " has tag ";
   const auto tag = layout.tag();
   for( const TagField& one : tag ) {
      text += &one == tag.data() ? "" : ", ";
      text += tag.size() > 1 ? std::string( one.field.name ) + ' ' : "";
      text += hexOf( layout.get( image, one.field ) );
   }
   return text;
}

// The columns of CSV that are looked at.
constexpr std::array<std::string_view, 8> columnNames{ "image", "table", "chip",       "variant",
                                                       "entry", "array", "identifier", "address" };

// The bytes with which files begin, but no memory.
struct Magic {
   std::string_view bytes;
   std::string_view what;
};

using namespace std::string_view_literals;
constexpr std::array magics{
   Magic{ "\xfd"
          "7zXZ\0"sv,
          "is compressed with xz, to be decompressed with `xz -dc`" },
   Magic{ "\x1f\x8b\x08"sv, "is compressed with gzip, to be decompressed with `gzip -dc`" },
   Magic{ "\x28\xb5\x2f\xfd"sv, "is compressed with zstd, to be decompressed with `zstd -dc`" },
   Magic{ "BZh"sv, "is compressed with bzip2, to be decompressed with `bzip2 -dc`" },
   Magic{ "PK\3\4"sv, "is a zip archive, to be unpacked" },
   Magic{ "\x7f"
          "ELF"sv,
          "is a program or core file, not a memory" },
};

// Whether it is text of 16-bit characters, which a byte order mark begins.
bool isWideText( std::string_view bytes ) {
   constexpr std::size_t looked = 16;
   const bool isSmallEnd = bytes.starts_with( "\xff\xfe" );
   if( bytes.size() < looked || !( isSmallEnd || bytes.starts_with( "\xfe\xff" ) ) ) {
      return false;
   }
   for( std::size_t at = 2; at < looked; at += 2 ) {
      if( bytes[at + ( isSmallEnd ? 1 : 0 )] != 0 || bytes[at + ( isSmallEnd ? 0 : 1 )] == 0 ) {
         return false;
      }
   }
   return true;
}

// Requires that the bytes may be those of a memory.
void requireMemory( std::string_view bytes, const std::string& name ) {
   const auto refuse = [&]( std::string_view what ) {
      throw Error( name, "this " + std::string( what ) +
                            "; --image-format binary takes the bytes as they are" );
   };
   for( const Magic& magic : magics ) {
      if( bytes.starts_with( magic.bytes ) ) {
         refuse( magic.what );
      }
   }
   if( isWideText( bytes ) ) {
      refuse( "is text in UTF-16, to be saved as UTF-8" );
   }
}

// How a header of CSV looks that isn't one: its columns are separated by something else, or it has
// none for the image. Empty if the line is something else.
std::string flawOfHeader( std::string_view line ) {
   const auto hasName = [&]( char separator, std::span<const std::string_view> names ) {
      for( std::size_t at = 0; at <= line.size(); ) {
         const auto end = std::min( line.find( separator, at ), line.size() );
         auto cell = trimmed( line.substr( at, end - at ) );
         if( cell.size() > 1 && cell.starts_with( '"' ) && cell.ends_with( '"' ) ) {
            cell = cell.substr( 1, cell.size() - 2 );
         }
         if( std::find( names.begin(), names.end(), cell ) != names.end() ) {
            return true;
         }
         at = end + 1;
      }
      return false;
   };
   const auto image = std::span( columnNames ).first( 1 );
   if( line.find( ';' ) != none && hasName( ';', image ) ) {
      return "semicolons between the cells; write commas";
   }
   if( line.find( '\t' ) != none && hasName( '\t', image ) ) {
      return "tabs between the cells; write commas";
   }
   return line.find( ',' ) != none && hasName( ',', columnNames )
             ? "no column \"image\" in the header of CSV"
             : "";
}

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) DumpReader::State {
   explicit State( DumpOptions given );

   // How the input continues.
   enum class Mode { start, binary, stream, words, rows, lines, csv, arguments, ended };

   bool step();
   void detect();
   bool stepLine();
   bool stepCsv( std::string_view line );
   bool stepArgument();
   void beginBlock( Mode mode );
   bool stepBlock();
   bool feed();
   void feedMore();
   bool feedRow();
   void feedDigits( std::string_view text );
   bool emit();
   void doubtPlace();
   bool isPlaceDoubtful() const;
   bool finishBlock();
   void takeArguments( std::span<const std::string> arguments );

   struct TagBits {
      Detail::BitsReader bits;
      unsigned width;
      U64 value; // of the first layout that has them
   };

   void rememberLayouts();
   const Layout* plainLayoutOf( const U8* image ) const;
   DumpRun ahead( Runs runs );
   std::span<const U8> bytesAhead();
   std::span<const U8> linesAhead();
   void gather();
   bool canFeed() const;
   void cutToPlain( DumpRun& run, Runs runs );
   bool takePlaces( DumpRun& run ) const;
   void skip( std::size_t count );
   void take( const DumpRun& run, std::vector<U8>& images );

   Candidates& candidatesOf( const Image& image );
   Candidates& candidatesAt( U64 address, const Image& image );
   template<class FitsTag>
   void takeOrder( std::string_view text, FitsTag fitsTag );
   void takeImage( std::string_view text );
   void takeAnyImage( std::string_view text );
   bool stepPiece();
   bool isAnyLength( std::size_t bytes ) const;
   void settle( Candidates& candidates, bool mayBeEmpty );
   void chooseVariant( Candidates& candidates, std::span<const U8> image, bool mayBeEmpty );
   void takePlace( const Image& image );
   std::size_t entryBytes( const Candidates& candidates ) const;

   DumpOptions options_;
   DumpEntry entry_;
   std::string doubt_;
   std::string place_;
   Mode mode_ = Mode::ended;
   std::unique_ptr<DumpInput> input_;
   std::unique_ptr<ImageReader> reader_; // of the lines that are no dump
   std::vector<std::string> columns_;    // of CSV
   std::vector<std::string> arguments_;
   std::size_t argument_ = 0;
   std::string flaw_; // of the arguments
   Image image_;
   PlaceText said_;         // of the image's place
   bool areDigits_ = false; // image_ is a line of digits
   std::vector<U8> padded_;

   // A dump that is split.
   DumpRows rows_{ false };
   bool beginsRows_ = false;  // its two first lines show that
   Mode after_ = Mode::ended; // once it has ended
   std::string blockPlace_;   // of its first row
   std::vector<U8> pending_;
   std::size_t head_ = 0;    // of what is still to be split
   std::size_t skip_ = 0;    // bytes up to the next entry
   std::vector<U8> row_;     // the last one
   std::vector<U8> nextRow_; // to be fed after those that repeat the last one
   U64 repeats_ = 0;         // bytes
   U64 begin_ = 0;           // offset of its first row, until an entry has been returned
   U64 offset_ = 0;          // of the next entry in the dump
   U64 count_ = 0;           // entries of the dump
   U64 index_ = 0;           // of the next entry
   unsigned nibble_ = 16;    // a digit whose byte isn't complete; 16: none
   std::size_t line_ = 1;    // of a stream
   std::size_t column_ = 0;
   bool isComment_ = false;

   // What is read ahead.
   bool isAhead_ = false;         // ahead() has been called
   bool hasEnded_ = false;        // feed() has nothing more
   std::exception_ptr failure_;   // of feed(), once what came before it has been returned
   std::size_t lineLength_ = 0;   // of the lines that are read ahead, with their ends
   std::vector<U8> lineImages_;   // of these
   std::size_t lineHead_ = 0;     // of what hasn't been passed over
   std::size_t lineEnd_ = 0;      // of them
   std::vector<TagBits> tagBits_; // which decide the layout of an image
   std::vector<const Layout*>
      byTag_;              // null where there is none or a doubt; empty: only next() can decide
   bool isMixed_ = false;  // they aren't all the same
   bool isOneTag_ = false; // the one layout's tag decides instead
   std::vector<const Layout*> layouts_; // of the images that are read ahead

   std::map<std::array<std::string, 3>, Candidates> known_;
   std::map<U32, std::vector<Memory>> memories_; // by chip type
   Candidates* own_ = nullptr;
   std::vector<Layout> any_; // of the chip type, where the images may be of any of them
   bool isPiece_ = false;    // the last step has returned a part of a dump
   std::map<std::array<std::string, 3>, Candidates> locatedBy_;
};

DumpReader::State::State( DumpOptions given ) : options_( std::move( given ) ) {
   if( !options_.table.empty() && options_.chip ) {
      own_ = &candidatesOf( {} );
      if( options_.stride > 0 && options_.stride < entryBytes( *own_ ) ) {
         throw Error( "a stride of " + countOf( options_.stride, "byte" ) +
                      " is too short; an entry of " + own_->layouts.front().pairText() + " has " +
                      std::to_string( own_->layouts.front().bytes() ) );
      }
   }
   if( options_.stride > longestStride ) {
      throw Error( "a stride of " + countOf( options_.stride, "byte" ) +
                   " is too long; it is at most " + std::to_string( longestStride ) );
   }
}

// The pairs that the image may be of by what it says, or the options do.
Candidates& DumpReader::State::candidatesOf( const Image& image ) {
   if( own_ && !image.table.isGiven && !image.chip.isGiven && !image.variant.isGiven ) {
      return *own_;
   }
   const auto within = [&]( const Piece& piece, auto step ) -> decltype( auto ) {
      try {
         return step();
      } catch( const Error& error ) {
         throw BadText( piece.isGiven ? piece.at : image.at, error.message() );
      }
   };
   std::string table = image.table.isGiven ? image.table.text : options_.table;
   if( table.empty() || !( image.chip.isGiven || options_.chip ) ) {
      throw BadText( image.at, std::string( "the image doesn't say its " ) +
                                  ( table.empty() ? "table" : "chip type" ) +
                                  "; give TABLE and --chip, or write TABLE CHIP VARIANT and a "
                                  "colon before the image" );
   }
   if( image.table.isGiven && !options_.table.empty() && table != options_.table ) {
      throw BadText( image.table.at,
                     "the image is one of " + shown( table ) + ", not of " + options_.table );
   }
   const Chip& chip = within( image.chip, [&]() -> const Chip& {
      return image.chip.isGiven ? chipOf( image.chip.text ) : *options_.chip;
   } );
   if( options_.chip && chip.number != options_.chip->number ) {
      throw BadText( image.table.isGiven ? image.table.at : image.at,
                     "the image is one of " + chip.name + ", not of " + options_.chip->name );
   }
   std::optional<U64> variant = options_.variant;
   if( image.variant.isGiven ) {
      const U64 said =
         within( image.variant, [&] { return parseIndex( image.variant.text, "variant", 0xff ); } );
      if( variant && said != *variant && variantsOn( table, chip.number ) &&
          !variantsOn( table, chip.number )->any ) {
         throw BadText( image.table.isGiven ? image.table.at : image.at,
                        "the image is one of variant " + std::to_string( said ) +
                           ", not of variant " + std::to_string( *variant ) );
      }
      variant = said;
   }
   const std::array key{ table, chip.name, variant ? std::to_string( *variant ) : "" };
   if( const auto found = known_.find( key ); found != known_.end() ) {
      return found->second;
   }
   const auto pairs = variantsOn( table, chip.number );
   const Piece& reason = pairs                      ? image.variant
                         : pairsOf( table ).empty() ? image.table
                                                    : image.chip;
   Candidates made;
   made.isSaid = variant.has_value();
   within( reason, [&] {
      if( variant || !pairs ) {
         made.add( Layout( table, chip.number, variant.value_or( 0 ) ) );
         return;
      }
      for( const U32 one : pairs->variants ) {
         made.add( Layout( table, chip.number, one ) );
      }
      if( !made.hasTags() ) {
         made.layouts.erase( made.layouts.begin() + 1, made.layouts.end() );
         made.needed.resize( 1 );
      }
   } );
   return known_.emplace( key, std::move( made ) ).first->second;
}

// The pairs of which an entry lies at the address; sets where it lies.
Candidates& DumpReader::State::candidatesAt( U64 address, const Image& image ) {
   if( !image.chip.isGiven && !options_.chip ) {
      throw BadText( image.at, "the image has an address, but nothing says its chip type; give "
                               "--chip" );
   }
   const Chip& chip = image.chip.isGiven ? chipOf( image.chip.text ) : *options_.chip;
   if( address > 0xffffffff ) {
      throw BadText( said_.at, "address " + hexOf( address ) +
                                  " is out of range; it is at most "
                                  "0xffffffff" );
   }
   auto& memories = memories_[chip.number];
   if( memories.empty() ) {
      memories = memoriesOn( chip );
   }
   const std::string table = image.table.isGiven ? image.table.text : options_.table;
   std::optional<U64> variant = options_.variant;
   if( image.variant.isGiven ) {
      variant = parseIndex( image.variant.text, "variant", 0xff );
   }
   std::vector<Location> found;
   std::set<std::string_view> tables;
   bool isThere = false;
   for( const Memory& memory : memories ) {
      const Layout& layout = memory.layout();
      if( ( !table.empty() && layout.table() != table ) ||
          ( variant && layout.info().hasVariants && layout.variant() != *variant ) ) {
         continue;
      }
      const auto here = memory.at( static_cast<U32>( address ) );
      isThere = isThere || !here.empty();
      Candidates one;
      one.add( layout );
      // A tag distinguishes memories that claim one address, but an entry of zeroes has none.
      if( here.empty() || !one.isLength( image.bytes.size() ) ) {
         continue;
      }
      found.insert( found.end(), here.begin(), here.end() );
      tables.insert( layout.table() );
   }
   if( tables.size() > 1 ) {
      const auto fits = [&]( const Location& location ) {
         return !location.layout.tag().empty() && !location.layout.wrongTag( image.bytes );
      };
      if( std::any_of( found.begin(), found.end(), fits ) ) {
         std::erase_if( found, [&]( const Location& location ) { return !fits( location ); } );
         tables.clear();
         for( const Location& location : found ) {
            tables.insert( location.layout.table() );
         }
      }
   }
   if( tables.size() > 1 ) {
      std::string list;
      for( const std::string_view name : tables ) {
         const auto at = std::find_if( found.begin(), found.end(), [&]( const Location& location ) {
            return location.layout.table() == name;
         } );
         list += ( list.empty() ? "entry " : ", entry " ) + std::to_string( at->index.entry ) +
                 " of " + std::string( name );
      }
      throw BadText( image.at, "several memories of " + chip.name + " claim " + hexOf( address ) +
                                  ": " + list + "; give TABLE" );
   }
   if( found.empty() ) {
      if( !table.empty() ) {
         Candidates& all = candidatesOf( image );
         const Layout& first = all.layouts.front();
         first.requireFields( image.bytes );
         throw BadText(
            image.at,
            isThere ? "the image has " + countOf( image.bytes.size(), "byte" ) + "; an entry of " +
                         first.pairText() + " has " + std::to_string( first.bytes() )
                    : "no entry of " + first.pairText() + " lies at " + hexOf( address ) );
      }
      if( isThere ) {
         throw BadText( image.at, "no entry at " + hexOf( address ) + " on " + chip.name + " has " +
                                     countOf( image.bytes.size(), "byte" ) );
      }
      locate( chip, static_cast<U32>( address ) ); // ends with the nearest ones
   }
   std::string variants;
   for( const Location& location : found ) {
      variants += ' ' + std::to_string( location.layout.variant() );
   }
   auto& result = locatedBy_[{ std::string( found.front().layout.table() ), chip.name, variants }];
   if( result.layouts.empty() ) {
      result.isSaid = variant.has_value();
      for( const Location& location : found ) {
         if( result.layouts.empty() || !( result.layouts.back() == location.layout ) ) {
            result.add( location.layout );
         }
      }
      if( !result.hasTags() ) {
         result.layouts.erase( result.layouts.begin() + 1, result.layouts.end() );
         result.needed.resize( 1 );
      }
   }
   const EntryIndex& index = found.front().index;
   said_.entry = index.entry;
   said_.array = index.array;
   if( !said_.identifier && found.front().layout.info().instanceCount == 1 ) {
      said_.identifier = 0;
   }
   entry_.address = static_cast<U32>( address );
   return result;
}

std::size_t DumpReader::State::entryBytes( const Candidates& candidates ) const {
   const auto& layouts = candidates.layouts;
   const auto other = std::find_if( layouts.begin(), layouts.end(), [&]( const Layout& layout ) {
      return layout.bytes() != layouts.front().bytes();
   } );
   if( other != layouts.end() ) {
      throw Error( "the entries of " + layouts.front().pairText() + " have " +
                   std::to_string( layouts.front().bytes() ) + " bytes, those of variant " +
                   std::to_string( other->variant() ) + " have " +
                   std::to_string( other->bytes() ) + "; give --variant" );
   }
   return layouts.front().bytes();
}

// Where the text may be bytes in their order or a number, the tag decides.
template<class FitsTag>
void DumpReader::State::takeOrder( std::string_view text, FitsTag fitsTag ) {
   if( !mayBeNumber( text, options_.format ) ) {
      return;
   }
   const auto& bytes = image_.bytes;
   const std::vector<U8> number( bytes.rbegin(), bytes.rend() );
   const bool asBytes = fitsTag( bytes );
   const bool asNumber = fitsTag( number );
   if( number != bytes && asBytes == asNumber ) {
      throw BadText( image_.at, "0x and " + std::to_string( text.size() - 2 ) +
                                   " digits may be bytes in their order or one number, its "
                                   "highest digit first; say --image-format bytes or "
                                   "--image-format number" );
   }
   if( asNumber && !asBytes ) {
      image_.bytes = number;
   }
}

// Finds the layout of image_ and makes it the entry.
void DumpReader::State::settle( Candidates& candidates, bool mayBeEmpty ) {
   if( options_.format == ImageFormat::number ) {
      const std::size_t whole = candidates.layouts.front().bytes();
      while( image_.bytes.size() > whole && image_.bytes.back() == 0 ) {
         image_.bytes.pop_back();
      }
      if( !image_.bytes.empty() && image_.bytes.size() < whole ) {
         image_.bytes.resize( whole );
      }
   }
   if( !candidates.isLength( image_.bytes.size() ) ) {
      const Layout& first = candidates.layouts.front();
      throw BadText( image_.at, "the image has " + countOf( image_.bytes.size(), "byte" ) +
                                   "; the fields of " + first.pairText() + " need " +
                                   std::to_string( candidates.needed.front() ) +
                                   ", a whole entry has " + std::to_string( first.bytes() ) +
                                   ( areDigits_ ? "; --image-format stream takes digits whose "
                                                  "lines mean nothing"
                                                : "" ) );
   }
   chooseVariant( candidates, image_.bytes, mayBeEmpty );
   entry_.image = image_.bytes;
   takePlace( image_ );
}

void DumpReader::State::chooseVariant( Candidates& candidates, std::span<const U8> image,
                                       bool mayBeEmpty ) {
   doubt_.clear();
   entry_.isEmpty = false;
   const auto& layouts = candidates.layouts;
   entry_.layout = &layouts.front();
   if( candidates.isSaid ) {
      if( const auto wrong = entry_.layout->wrongTag( image ) ) {
         if( mayBeEmpty && isZero( image ) ) {
            entry_.isEmpty = true;
            return;
         }
         doubt_ = "the image is not one of " + entry_.layout->pairText() + ": its tag " +
                  std::string( wrong->field.name ) + " is " +
                  hexOf( entry_.layout->get( image, wrong->field ) ) + ", not " +
                  hexOf( wrong->value );
         std::vector<U8> whole( image.begin(), image.end() );
         whole.resize( entry_.layout->bytes() );
         if( const auto owner = entry_.layout->variantOf( whole ) ) {
            doubt_ += ", as in variant " + std::to_string( owner->variant() );
         }
      }
   } else {
      unsigned best = 0;
      const Layout* other = nullptr;
      bool fits = false;
      for( std::size_t i = 0; i < layouts.size(); ++i ) {
         if( !candidates.isLength( i, image.size() ) || layouts[i].wrongTag( image ) ) {
            continue;
         }
         const unsigned bits = bitsOf( layouts[i].tag() ) + 1;
         if( bits > best ) {
            best = bits;
            entry_.layout = &layouts[i];
            other = nullptr;
         } else if( bits == best && bits > 1 && !other ) {
            other = &layouts[i];
         }
         fits = true;
      }
      if( !fits ) {
         if( mayBeEmpty && isZero( image ) ) {
            entry_.isEmpty = true;
            return;
         }
         throw BadText( image_.at, noTagText( *entry_.layout, image ) );
      }
      const auto same = [&] {
         const auto own = entry_.layout->fields();
         const auto theirs = other->fields();
         return std::equal( own.begin(), own.end(), theirs.begin(), theirs.end() );
      };
      if( other && !same() ) {
         doubt_ = "the tag of " + entry_.layout->pairText() + " is that of variant " +
                  std::to_string( other->variant() ) + ", too; --variant says which it is";
      }
   }
   if( options_.isStrict && !doubt_.empty() ) {
      throw BadText( image_.at, doubt_ );
   }
   entry_.doubt = doubt_;
}

// Says where the entry lies, as far as its image has said so.
void DumpReader::State::takePlace( const Image& image ) {
   const auto& [entry, array, identifier, address, at] = said_;
   entry_.entry = entry;
   entry_.array = array;
   entry_.identifier = identifier;
   if( entry && !entry_.address ) {
      entry_.array = array.value_or( 0 );
      entry_.identifier = identifier.value_or( 0 );
      try {
         const auto own = entry_.layout->address( { *entry, *entry_.array, *entry_.identifier } );
         if( own ) {
            entry_.address = own->schanAddress;
         }
         if( address && own && *address != own->schanAddress ) {
            throw Error( "address " + hexOf( *address ) + " is not that of entry " +
                         std::to_string( *entry ) + ", which is " + hexOf( own->schanAddress ) );
         }
      } catch( const Error& error ) {
         throw BadText( at ? at : image.at, error.message() );
      }
   }
}

// The same where it may be of any pair.
void DumpReader::State::takeAnyImage( std::string_view text ) {
   requireChip( any_.front().chip(), image_ );
   takeOrder( text, [&]( std::span<const U8> image ) {
      return std::any_of( any_.begin(), any_.end(), [&]( const Layout& layout ) {
         return !layout.tag().empty() && layout.bytes() == image.size() &&
                !layout.wrongTag( image );
      } );
   } );
   entry_.layout = nullptr;
   entry_.image = image_.bytes;
}

// Takes the image that `text` has written, which is image_ now.
void DumpReader::State::takeImage( std::string_view text ) {
   if( !any_.empty() ) {
      return takeAnyImage( text );
   }
   const bool isLocated = said_.address && !said_.entry;
   Candidates& candidates =
      isLocated ? candidatesAt( *said_.address, image_ ) : candidatesOf( image_ );
   takeOrder( text, [&]( std::span<const U8> image ) { return candidates.fitsTag( image ); } );
   areDigits_ = mode_ == Mode::lines && own_ && !text.empty() && !isJson( text ) &&
                text.find( ':' ) == none && text.find( '|' ) == none;
   settle( candidates, mode_ != Mode::arguments );
}

bool DumpReader::State::isAnyLength( std::size_t bytes ) const {
   return std::any_of( any_.begin(), any_.end(),
                       [&]( const Layout& layout ) { return layout.bytes() == bytes; } );
}

void DumpReader::State::detect() {
   mode_ = Mode::lines;
   beginsRows_ = false;
   switch( options_.format ) {
   case ImageFormat::binary:
      return beginBlock( Mode::binary );
   case ImageFormat::stream:
      return beginBlock( Mode::stream );
   default:
      break;
   }
   auto first = trimmed( input_->firstLine() );
   if( options_.format == ImageFormat::automatic && !input_->isText() ) {
      mode_ = Mode::ended;
      requireMemory( input_->rest(), input_->name() );
      return beginBlock( Mode::binary );
   }
   if( options_.format == ImageFormat::automatic && first.starts_with( "000000 " ) ) {
      const std::string copy( first ); // as reading more moves it
      beginsRows_ = DumpRows::begin( copy, trimmed( input_->secondLine() ) );
      first = trimmed( input_->firstLine() );
   }
   if( options_.format == ImageFormat::words && ( own_ || !any_.empty() ) ) {
      bool areWhole = true;
      std::size_t bytes = 0;
      forEachPiece( first, 0, [&]( std::string_view piece, std::size_t ) {
         const auto digits = piece.substr( piece.starts_with( "0x" ) ? 2 : 0 );
         areWhole = areWhole && digits.size() == 8 && isDigits( digits );
         bytes += 4;
      } );
      if( areWhole && bytes > 0 && !( own_ ? own_->isLength( bytes ) : isAnyLength( bytes ) ) ) {
         return beginBlock( Mode::words );
      }
   }
   const bool isQuoted = first.starts_with( '"' ); // as JSON may be, too
   if( ( isQuoted || !isJson( first ) ) && first.find( ':' ) == none ) {
      const auto isHeader = [&] {
         const auto cells = cellsOf( first );
         return std::any_of( cells.begin(), cells.end(),
                             []( const Piece& cell ) { return cell.text == columnNames[0]; } );
      };
      try {
         mode_ = isHeader() || !flawOfHeader( first ).empty() ? Mode::csv : mode_;
      } catch( const BadText& ) {
         mode_ = isQuoted ? mode_ : Mode::csv; // which says where it is
      }
      columns_.clear();
   }
}

bool DumpReader::State::stepLine() {
   std::string_view line;
   if( !input_->next( line ) ) {
      mode_ = Mode::ended;
      return false;
   }
   const auto text = trimmed( line );
   if( text.empty() ) {
      return false;
   }
   image_.at = static_cast<std::size_t>( text.data() - line.data() );
   try {
      if( mode_ == Mode::csv ) {
         if( !stepCsv( line ) ) {
            return false;
         }
      } else {
         rows_ = DumpRows( options_.format == ImageFormat::hexdump );
         if( std::exchange( beginsRows_, false ) || rows_.begins( text ) ) {
            input_->back();
            beginBlock( Mode::rows );
            return false;
         }
         const auto colon = text.find( ':' );
         const auto head = trimmed( text.substr( 0, colon ) );
         const bool isAddress = colon != none && head.starts_with( "0x" );
         if( isAddress && firstPiece( head ) == head && !isDigits( head.substr( 2 ) ) ) {
            parseNumber( head, "address" ); // which says what is wrong
         }
         if( isAddress && head.size() <= 18 && isDigits( head.substr( 2 ) ) ) {
            said_.address = numberOf( head.substr( 2 ) );
            said_.at = image_.at;
            const auto rest = trimmed( text.substr( colon + 1 ) );
            image_.at = static_cast<std::size_t>( rest.data() - line.data() );
            if( rest.empty() ) {
               throw BadText( said_.at, "no image after the address" );
            }
            readDigits( rest, image_.at, options_.format, image_ );
            takeImage( rest );
         } else if( text[0] == '{' ) {
            readJson( text, image_.at, options_.format, image_, &said_ );
            takeImage( {} );
         } else {
            input_->back();
            if( !reader_->next() ) {
               return false;
            }
            image_ = reader_->image();
            place_ = reader_->place( image_.at );
            try {
               takeImage( image_.table.isGiven ? std::string_view() : text );
            } catch( const BadText& bad ) {
               throw Error( reader_->place( bad.at() ), bad.message() );
            } catch( const Error& error ) {
               throw Error( place_, error.message() );
            }
            return true;
         }
      }
   } catch( const BadText& bad ) {
      throw Error( input_->place( bad.at() ), bad.message() );
   } catch( const Error& error ) {
      if( !error.place().empty() ) {
         throw;
      }
      throw Error( input_->place( image_.at ), error.message() );
   }
   place_ = input_->place( image_.at );
   return true;
}

bool DumpReader::State::stepCsv( std::string_view line ) {
   const auto cells = cellsOf( line );
   if( columns_.empty() ) {
      const bool hasImage = std::any_of( cells.begin(), cells.end(), []( const Piece& cell ) {
         return cell.text == columnNames[0];
      } );
      if( const auto flaw = flawOfHeader( line ); !hasImage && !flaw.empty() ) {
         mode_ = Mode::ended;
         throw BadText( image_.at, flaw );
      }
      for( const Piece& cell : cells ) {
         const bool isKnown =
            std::find( columnNames.begin(), columnNames.end(), cell.text ) != columnNames.end();
         if( isKnown &&
             std::find( columns_.begin(), columns_.end(), cell.text ) != columns_.end() ) {
            throw BadText( cell.at, "a second column " + inQuotes( cell.text ) );
         }
         columns_.push_back( cell.text );
      }
      return false;
   }
   requireCells( cells, columns_.size() );
   for( std::size_t i = 0; i < cells.size(); ++i ) {
      const auto& name = columns_[i];
      const Piece& cell = cells[i];
      const auto number = [&] {
         try {
            return std::optional( parseIndex( cell.text, name, 0xffffffff ) );
         } catch( const Error& error ) {
            throw BadText( cell.at, error.message() );
         }
      };
      if( name == columnNames[0] ) {
         image_.at = cell.at;
         readDigits( cell.text, cell.at, options_.format, image_ );
      } else if( cell.isGiven ) {
         Piece* const piece = name == "table"     ? &image_.table
                              : name == "chip"    ? &image_.chip
                              : name == "variant" ? &image_.variant
                                                  : nullptr;
         if( piece ) {
            *piece = cell;
         }
         std::optional<U64>* const to = name == "entry"        ? &said_.entry
                                        : name == "array"      ? &said_.array
                                        : name == "identifier" ? &said_.identifier
                                        : name == "address"    ? &said_.address
                                                               : nullptr;
         if( to ) {
            *to = number();
            said_.at = cell.at;
         }
      }
   }
   takeImage( {} );
   return true;
}

// Begins a dump that is split into entries.
void DumpReader::State::beginBlock( Mode mode ) {
   after_ = mode == Mode::rows ? Mode::lines : Mode::ended;
   mode_ = mode;
   blockPlace_ = mode == Mode::rows ? input_->place( image_.at ) : std::string();
   pending_.clear();
   row_.clear();
   nextRow_.clear();
   head_ = skip_ = 0;
   index_ = options_.first.entry;
   repeats_ = begin_ = offset_ = count_ = 0;
   nibble_ = 16;
   line_ = 1;
   column_ = 0;
   isComment_ = false;
   hasEnded_ = false;
   failure_ = nullptr;
   if( !any_.empty() ) {
      return;
   }
   if( !own_ ) {
      mode_ = Mode::ended;
      image_.at = 0;
      Error missing( "a dump doesn't say its table; give TABLE and --chip" );
      throw mode == Mode::rows ? Error( input_->place( 0 ), missing.message() )
                               : Error( input_->name(), missing.message() );
   }
   try {
      entryBytes( *own_ );
   } catch( const Error& ) {
      mode_ = Mode::ended;
      throw;
   }
}

// Adds what comes next of the dump; false at its end.
bool DumpReader::State::feed() {
   if( head_ > 0 ) {
      pending_.erase( pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>( head_ ) );
      head_ = 0;
   }
   if( mode_ == Mode::rows ) {
      return feedRow();
   }
   if( mode_ == Mode::words ) {
      std::string_view line;
      if( !input_->next( line ) ) {
         return false;
      }
      try {
         image_.bytes.clear();
         if( trimmed( line ) == "*" ) {
            throw BadText( line.find( '*' ), "\"*\" stands for lines that were left out; print "
                                             "them with `od -v`" );
         }
         readDigits( line, 0, ImageFormat::words, image_ );
      } catch( const BadText& bad ) {
         throw Error( input_->place( bad.at() ), bad.message() );
      }
      pending_.insert( pending_.end(), image_.bytes.begin(), image_.bytes.end() );
      return true;
   }
   if( mode_ == Mode::binary && isAhead_ ) {
      // One entry at a time, so that those after it can be read ahead where they lie.
      const auto wanted = skip_ + own_->layouts.front().bytes();
      while( input_->rest().size() < wanted && input_->readMore() ) {
      }
      const auto bytes = input_->rest().substr( 0, wanted );
      const auto* const begin = reinterpret_cast<const U8*>( bytes.data() );
      pending_.insert( pending_.end(), begin, begin + bytes.size() );
      input_->skip( bytes.size(), 0 );
      return !bytes.empty();
   }
   const auto bytes = input_->bytes();
   if( bytes.empty() ) {
      if( nibble_ < 16 ) {
         throw Error( input_->name() + ':' + std::to_string( line_ ) + ':' +
                         std::to_string( column_ ),
                      "an odd number of digits; write two for each byte" );
      }
      return false;
   }
   if( mode_ == Mode::binary ) {
      const auto* const begin = reinterpret_cast<const U8*>( bytes.data() );
      pending_.insert( pending_.end(), begin, begin + bytes.size() );
   } else {
      feedDigits( bytes );
   }
   return true;
}

// Takes hexadecimal digits wherever they stand.
void DumpReader::State::feedDigits( std::string_view text ) {
   if( line_ == 1 && column_ == 0 ) {
      text = withoutMark( text );
   }
   for( const char c : text ) {
      ++column_;
      if( c == '\n' ) {
         ++line_;
         column_ = 0;
         isComment_ = false;
      } else if( isComment_ || c == '#' ) {
         isComment_ = true;
      } else if( isDigits( { &c, 1 } ) ) {
         const auto digit = static_cast<unsigned>( numberOf( { &c, 1 } ) );
         if( nibble_ < 16 ) {
            pending_.push_back( static_cast<U8>( nibble_ << 4 | digit ) );
            nibble_ = 16;
         } else {
            nibble_ = digit;
         }
      } else if( !isBlank( c ) ) {
         throw Error( input_->name() + ':' + std::to_string( line_ ) + ':' +
                         std::to_string( column_ ),
                      "bad digit " + inQuotes( { &c, 1 } ) +
                         "; a stream is hexadecimal digits, two for each byte, and blanks" );
      }
   }
}

bool DumpReader::State::feedRow() {
   if( repeats_ > 0 ) {
      // Enough for some entries at a time.
      for( std::size_t i = 0; i < 256 && repeats_ > 0; ++i ) {
         const auto part = std::min<U64>( repeats_, row_.size() );
         pending_.insert( pending_.end(), row_.begin(),
                          row_.begin() + static_cast<std::ptrdiff_t>( part ) );
         repeats_ -= part;
      }
      return true;
   }
   if( !nextRow_.empty() ) {
      pending_.insert( pending_.end(), nextRow_.begin(), nextRow_.end() );
      row_ = std::exchange( nextRow_, {} );
      return true;
   }
   if( rows_.isComplete() ) {
      return false;
   }
   std::string_view line;
   std::string_view text;
   try {
      if( !input_->next( line ) ) {
         rows_.finish( 0 );
         return false;
      }
      text = trimmed( line );
      if( text.empty() || !rows_.take( text, static_cast<std::size_t>( text.data() - line.data() ),
                                       nextRow_, repeats_ ) ) {
         if( text.empty() ) {
            rows_.finish( 0 );
         } else {
            input_->back();
         }
         return false;
      }
   } catch( const BadText& bad ) {
      throw Error( input_->place( bad.at() ), bad.message() );
   }
   begin_ = count_ == 0 ? rows_.begin() : begin_;
   return true;
}

// The next entry of the dump, if all its bytes are there.
bool DumpReader::State::emit() {
   const auto skipped = std::min( skip_, pending_.size() - head_ );
   head_ += skipped;
   skip_ -= skipped;
   offset_ += skipped;
   const std::size_t bytes = own_->layouts.front().bytes();
   if( skip_ > 0 || pending_.size() - head_ < bytes ) {
      return false;
   }
   if( mode_ == Mode::rows && count_ == 0 && pending_.size() - head_ == bytes ) {
      return false; // Perhaps one image, wherever it lies: the next row decides.
   }
   const std::span<const U8> image( pending_.data() + head_, bytes );
   place_ = input_ ? input_->name() + ":" + hexOf( offset_ ) : std::string();
   head_ += bytes;
   offset_ += bytes;
   skip_ = options_.stride > 0 ? options_.stride - bytes : 0;
   ++count_;
   if( mode_ == Mode::arguments && pending_.size() == bytes ) {
      said_ = {}; // One image, wherever it lies.
   } else {
      said_ = { index_++, options_.first.array, options_.first.identifier, {}, 0 };
   }
   image_.at = 0;
   try {
      chooseVariant( *own_, image, true );
      entry_.image = image;
      takePlace( image_ );
      if( said_.entry ) {
         doubtPlace();
      }
   } catch( const Error& error ) {
      throw Error( place_, error.message() );
   }
   return true;
}

// Whether nothing says where a dump begins but its offsets, which don't begin at 0.
bool DumpReader::State::isPlaceDoubtful() const {
   return begin_ > 0 && !options_.hasFirst && options_.first.entry == 0;
}

// Doubts the place of the first entry of such a dump.
void DumpReader::State::doubtPlace() {
   if( !isPlaceDoubtful() ) {
      return;
   }
   const Layout& layout = own_->layouts.front();
   const U64 stride = options_.stride > 0 ? options_.stride : layout.bytes();
   const U64 entry = begin_ / stride;
   const U64 into = begin_ % stride;
   std::string text = "the dump begins at offset " + hexOf( begin_ );
   if( entry < layout.info().entries && into > 0 ) {
      text += ", " + countOf( into, "byte" ) + " into entry " + std::to_string( entry ) +
              ", but is taken from entry 0 on; --first-entry says which entry begins there";
   } else {
      text += ", but is taken from entry 0 on; --first-entry " +
              ( entry < layout.info().entries ? std::to_string( entry ) + " takes it by its offset"
                                              : "says which entry begins there" );
   }
   begin_ = 0;
   if( options_.isStrict ) {
      throw Error( text );
   }
   doubt_ += ( doubt_.empty() ? "" : "; " ) + text;
   entry_.doubt = doubt_;
}

// At the end of a dump: nothing may be left of it but one image that ends at its last field.
bool DumpReader::State::finishBlock() {
   const bool isRows = mode_ == Mode::rows || mode_ == Mode::arguments;
   mode_ = after_;
   const std::size_t left = pending_.size() - head_;
   const auto name = input_ ? input_->name() + ':' + hexOf( offset_ ) : std::string();
   if( left == 0 && ( count_ > 0 || !isRows ) ) {
      return false;
   }
   if( count_ == 0 && isRows ) {
      image_.bytes.assign( pending_.begin() + static_cast<std::ptrdiff_t>( head_ ),
                           pending_.end() );
      image_.at = 0;
      said_ = {};
      if( !( options_.first == EntryIndex() ) ) {
         said_ = { index_, options_.first.array, options_.first.identifier, {}, 0 };
      }
      place_ = blockPlace_;
      areDigits_ = false;
      try {
         settle( *own_, true );
      } catch( const Error& error ) {
         throw Error( place_, error.message() );
      }
      return true;
   }
   const std::size_t bytes = own_->layouts.front().bytes();
   throw Error( name, countOf( left, "byte" ) + ( left == 1 ? " is" : " are" ) +
                         " left over after " + countOf( count_, "entry", "entries" ) + " of " +
                         own_->layouts.front().pairText() + ", which have " +
                         std::to_string( bytes ) +
                         " bytes each; --stride says where entries lie "
                         "further apart" );
}

// Feeds once. An exception is thrown after everything before it has been returned.
void DumpReader::State::feedMore() {
   try {
      hasEnded_ = !feed();
   } catch( const Error& ) {
      failure_ = std::current_exception();
   }
}

// The bytes that come next of a dump whose entries may have any length; none at its end.
bool DumpReader::State::stepPiece() {
   head_ = pending_.size();
   bool isThere = true;
   try {
      while( isThere && head_ == pending_.size() ) {
         isThere = feed();
      }
   } catch( const Error& ) {
      mode_ = Mode::ended;
      throw;
   }
   if( !isThere ) {
      mode_ = after_;
   }
   entry_.layout = nullptr;
   entry_.image = isThere ? std::span<const U8>( pending_ ) : std::span<const U8>();
   isPiece_ = true;
   return true;
}

bool DumpReader::State::stepBlock() {
   if( !any_.empty() ) {
      return stepPiece();
   }
   while( !emit() ) {
      if( failure_ ) {
         mode_ = Mode::ended;
         std::rethrow_exception( std::exchange( failure_, nullptr ) );
      }
      if( hasEnded_ ) {
         return finishBlock();
      }
      feedMore();
   }
   return true;
}

void DumpReader::State::takeArguments( std::span<const std::string> arguments ) {
   arguments_.clear();
   argument_ = 0;
   std::string joined;
   bool areImages = arguments.size() > 1;
   for( const std::string& one : arguments ) {
      joined += one + ' ';
      if( isJson( trimmed( one ) ) ) {
         continue;
      }
      try {
         areImages =
            areImages && own_ && own_->isLength( imageOf( one, options_.format ).bytes.size() );
      } catch( const Error& ) {
         areImages = false;
      }
   }
   if( areImages && own_ ) {
      try {
         const auto whole = imageOf( joined, options_.format ).bytes.size();
         if( own_->isLength( whole ) ) {
            flaw_ = "may be one image of " + countOf( whole, "byte" ) + " or " +
                    std::to_string( arguments.size() ) +
                    " images; write one image as one argument, in quotes, or pipe the lines "
                    "into -";
         }
      } catch( const Error& ) {
         // Then they can't be one.
         flaw_.clear();
      }
   }
   if( areImages ) {
      arguments_.assign( arguments.begin(), arguments.end() );
   } else {
      arguments_.push_back( joined );
   }
}

bool DumpReader::State::stepArgument() {
   if( !flaw_.empty() ) {
      argument_ = arguments_.size();
      throw Error( "the arguments " + std::exchange( flaw_, {} ) );
   }
   if( argument_ == arguments_.size() ) {
      mode_ = Mode::ended;
      return false;
   }
   const std::string_view text = trimmed( arguments_[argument_++] );
   const auto colon = text.find( ':' );
   if( text.starts_with( '{' ) ) {
      readJson( text, 0, options_.format, image_, &said_ );
      takeImage( {} );
      return true;
   }
   if( const auto head = trimmed( text.substr( 0, colon ) );
       colon != none && head.starts_with( "0x" ) && head.size() <= 18 &&
       isDigits( head.substr( 2 ) ) ) {
      image_ = imageOf( text.substr( colon + 1 ), options_.format );
      said_.address = numberOf( head.substr( 2 ) );
      takeImage( trimmed( text.substr( colon + 1 ) ) );
      return true;
   }
   const bool isDump = DumpRows( options_.format == ImageFormat::hexdump )
                          .begins( trimmed( text.substr( 0, text.find( '\n' ) ) ) );
   if( isDump && own_ ) {
      input_ = nullptr;
      beginBlock( Mode::arguments );
      after_ = Mode::arguments;
      DumpRows rows( options_.format == ImageFormat::hexdump );
      for( auto rest = text; !rest.empty(); ) {
         const auto line = rest.substr( 0, rest.find( '\n' ) );
         rest.remove_prefix( std::min( line.size() + 1, rest.size() ) );
         const auto row = trimmed( line );
         std::vector<U8> bytes;
         U64 repeats = 0;
         if( row.empty() ) {
            continue;
         }
         if( rows.isComplete() || !rows.take( row, 0, bytes, repeats ) ) {
            throw Error( "the line " + inQuotes( row ) + " is no part of the hexdump before it" );
         }
         if( pending_.size() + repeats > Image::longest ) {
            throw Error( "the image is longer than " + std::to_string( Image::longest ) +
                         " bytes" );
         }
         for( std::size_t i = 0; i < repeats; ++i ) {
            pending_.push_back( row_[i % row_.size()] );
         }
         pending_.insert( pending_.end(), bytes.begin(), bytes.end() );
         row_ = bytes.empty() ? row_ : bytes;
      }
      rows.finish( 0 );
      begin_ = rows.begin();
      return emit() || finishBlock();
   }
   image_ = imageOf( text, options_.format );
   takeImage( text );
   return true;
}

// One step towards the next entry; whether it is there.
bool DumpReader::State::step() {
   switch( mode_ ) {
   case Mode::start:
      detect();
      return false;
   case Mode::lines:
   case Mode::csv:
      return stepLine();
   case Mode::arguments:
      if( head_ < pending_.size() ) {
         return emit() || finishBlock();
      }
      return stepArgument();
   default:
      return stepBlock();
   }
}

// Makes the table of what chooseVariant() says to each value of the tags.
void DumpReader::State::rememberLayouts() {
   constexpr unsigned mostBits = 10;
   const std::size_t size = own_->layouts.front().bytes();
   tagBits_.clear();
   byTag_.clear();
   std::vector<Field> fields;
   unsigned bits = 0;
   for( const Layout& layout : own_->layouts ) {
      if( layout.bytes() != size ) {
         return;
      }
      for( const TagField& tag : layout.tag() ) {
         const Field& field = tag.field;
         if( std::find( fields.begin(), fields.end(), field ) == fields.end() ) {
            fields.push_back( field );
            tagBits_.push_back( { { size, field.offset, field.width }, field.width, tag.value } );
            bits += field.width;
         }
      }
   }
   if( bits > mostBits && own_->layouts.size() == 1 ) {
      // Its own tag is all there is to look at.
      byTag_.push_back( nullptr );
      isMixed_ = isOneTag_ = true;
   }
   if( bits > mostBits ) {
      return;
   }
   std::vector<U8> image( size );
   for( U64 value = 0; value < U64( 1 ) << bits; ++value ) {
      U64 rest = value;
      for( const Field& field : fields ) {
         Detail::bitsAtAre( image.data(), image.size(), field.offset, field.width,
                            rest & ~U64( 0 ) >> ( 64 - field.width ) );
         rest >>= field.width;
      }
      try {
         chooseVariant( *own_, image, false );
         byTag_.push_back( entry_.doubt.empty() ? entry_.layout : nullptr );
      } catch( const Error& ) {
         byTag_.push_back( nullptr );
      }
      entry_.doubt = {};
   }
   isMixed_ = std::any_of( byTag_.begin(), byTag_.end(),
                           [&]( const Layout* layout ) { return layout != byTag_.front(); } );
}

// The layout of a whole image; null where chooseVariant() has to be asked.
const Layout* DumpReader::State::plainLayoutOf( const U8* image ) const {
   if( isOneTag_ ) {
      const bool isOwn = std::all_of( tagBits_.begin(), tagBits_.end(), [&]( const TagBits& tag ) {
         return tag.bits.read( image ) == tag.value;
      } );
      return isOwn ? &own_->layouts.front() : nullptr;
   }
   U64 value = 0;
   unsigned shift = 0;
   for( const TagBits& tag : tagBits_ ) {
      value |= tag.bits.read( image ) << shift;
      shift += tag.width;
   }
   return byTag_[static_cast<std::size_t>( value )];
}

// Feeds some entries' worth of a dump that is split.
void DumpReader::State::gather() {
   constexpr std::size_t enough = 1 << 15;
   const std::size_t needed = own_->layouts.front().bytes();
   while( !failure_ && !hasEnded_ ) {
      const std::size_t left = pending_.size() - head_;
      if( left >= enough || ( left >= needed && !canFeed() ) ) {
         return;
      }
      feedMore();
   }
}

// Whether feeding doesn't wait for more input.
bool DumpReader::State::canFeed() const {
   const auto rest = input_->rest();
   return repeats_ > 0 || !nextRow_.empty() || input_->isBack() ||
          ( mode_ == Mode::stream ? !rest.empty() : rest.find( '\n' ) != none );
}

// The bytes of a dump that is split, from an entry's first one.
std::span<const U8> DumpReader::State::bytesAhead() {
   const auto passed = [&] {
      const auto now = std::min( skip_, pending_.size() - head_ );
      head_ += now;
      skip_ -= now;
      offset_ += now;
   };
   passed();
   if( mode_ != Mode::binary || head_ < pending_.size() ) {
      if( mode_ != Mode::binary ) {
         gather();
         passed();
      }
      return std::span( pending_ ).subspan( head_ );
   }
   const auto wanted = skip_ + own_->layouts.front().bytes();
   while( input_->rest().size() < wanted && input_->readMore() ) {
   }
   const auto now = std::min( skip_, input_->rest().size() );
   input_->skip( now, 0 );
   skip_ -= now;
   offset_ += now;
   const auto rest = input_->rest();
   return { reinterpret_cast<const U8*>( rest.data() ), rest.size() };
}

// The images of the lines of digits that come next, of as many as have been read.
std::span<const U8> DumpReader::State::linesAhead() {
   constexpr std::size_t mostBytes = 1 << 17;
   const std::size_t bytes = own_->layouts.front().bytes();
   const auto left = [&] {
      return std::span( lineImages_ ).subspan( lineHead_, lineEnd_ - lineHead_ );
   };
   if( lineHead_ < lineEnd_ ) {
      return left();
   }
   lineHead_ = lineEnd_ = 0;
   const bool areBytes =
      options_.format == ImageFormat::automatic || options_.format == ImageFormat::bytes;
   if( !areBytes || input_->isBack() ) {
      return {};
   }
   auto rest = input_->rest();
   if( rest.size() <= 2 * bytes + 1 && rest.find( '\n' ) == none ) {
      input_->readMore();
      rest = input_->rest();
   }
   if( rest.size() <= 2 * bytes ) {
      return {};
   }
   const bool hasReturn = rest[2 * bytes] == '\r';
   lineLength_ = 2 * bytes + ( hasReturn ? 2 : 1 );
   const std::size_t count = std::min( rest.size() / lineLength_, mostBytes / bytes );
   if( lineImages_.size() < count * bytes ) {
      lineImages_.resize( count * bytes );
   }
   const char* line = rest.data();
   for( ; lineEnd_ < count * bytes; lineEnd_ += bytes, line += lineLength_ ) {
      const char* const end = line + lineLength_ - 1;
      if( *end != '\n' || ( hasReturn && end[-1] != '\r' ) ||
          !readHex( line, std::span( lineImages_ ).subspan( lineEnd_, bytes ) ) ) {
         break;
      }
   }
   if( lineEnd_ > 0 ) {
      // The rest of an image of several lines doesn't continue after these.
      reader_ = std::make_unique<ImageReader>( *input_, options_.format );
   }
   return left();
}

// Leaves the entries that are plain, and whose places exist.
void DumpReader::State::cutToPlain( DumpRun& run, Runs runs ) {
   const auto& layouts = own_->layouts;
   const std::size_t bytes = layouts.front().bytes();
   const U8* const images = run.images.data();
   const auto isEmpty = [&]( const U8* image ) { return isZero( { image, bytes } ); };
   bool isAny = runs == Runs::ofAny && isMixed_;
   const Layout* const first = plainLayoutOf( images );
   layouts_.resize( isAny ? run.count : 0 );
   bool areSame = true;
   std::size_t count = 0;
   for( ; count < run.count; ++count ) {
      const U8* const image = images + count * run.stride;
      const Layout* const layout = plainLayoutOf( image );
      if( ( layout != first && !isAny ) || ( !layout && !isEmpty( image ) ) ) {
         break;
      }
      if( isAny ) {
         layouts_[count] = layout;
         areSame = areSame && layout == first;
      }
   }
   isAny = isAny && !areSame;
   run.count = count;
   run.areEmpty = !isAny && !first && count > 0;
   run.layout = isAny ? nullptr : run.areEmpty ? &layouts.front() : first;
   if( count > 0 && run.first && !takePlaces( run ) ) {
      return cutToPlain( run, Runs::ofOneLayout );
   }
   run.layouts = std::span( layouts_ ).first( isAny ? run.count : 0 );
}

// Leaves the entries whose places exist, and says their addresses; false where those depend on the
// layout.
bool DumpReader::State::takePlaces( DumpRun& run ) const {
   const auto mayBeOf = [&]( const Layout& layout ) {
      return !run.layout || &layout == run.layout;
   };
   U64 entries = ~U64( 0 );
   for( const Layout& layout : own_->layouts ) {
      entries = mayBeOf( layout ) ? std::min<U64>( entries, layout.info().entries ) : entries;
   }
   EntryIndex index = *run.first;
   run.count = index.entry < entries
                  ? static_cast<std::size_t>( std::min<U64>( run.count, entries - index.entry ) )
                  : 0;
   std::optional<std::array<std::optional<U32>, 2>> addresses; // of this entry and the next
   try {
      for( const Layout& layout : own_->layouts ) {
         if( !mayBeOf( layout ) ) {
            continue;
         }
         std::array<std::optional<U32>, 2> own;
         index.entry = run.first->entry;
         for( auto& one : own ) {
            if( const auto address =
                   index.entry < entries ? layout.address( index ) : std::nullopt ) {
               one = address->schanAddress;
            }
            ++index.entry;
         }
         if( addresses && addresses != own ) {
            return false;
         }
         addresses = own;
      }
      run.address = ( *addresses )[0];
      run.addressStep = ( *addresses )[1].value_or( 0 ) - run.address.value_or( 0 );
   } catch( const Error& ) {
      run.count = 0;
   }
   return true;
}

DumpRun DumpReader::State::ahead( Runs runs ) {
   DumpRun run;
   if( input_ && input_->hasFailed() && !failure_ ) {
      return run; // next() ends it
   }
   if( mode_ == Mode::start ) {
      detect();
   }
   const bool isBlock =
      mode_ == Mode::binary || mode_ == Mode::stream || mode_ == Mode::words || mode_ == Mode::rows;
   if( !own_ || beginsRows_ || !( isBlock || mode_ == Mode::lines ) ) {
      return run;
   }
   if( !std::exchange( isAhead_, true ) ) {
      rememberLayouts();
   }
   if( byTag_.empty() ) {
      return run;
   }
   const std::size_t bytes = own_->layouts.front().bytes();
   run.images = isBlock ? bytesAhead() : linesAhead();
   if( isBlock && isPlaceDoubtful() ) {
      run.images = {};
   }
   run.stride = isBlock && options_.stride > 0 ? options_.stride : bytes;
   if( run.images.size() < bytes ) {
      return run;
   }
   run.count = ( run.images.size() - bytes ) / run.stride + 1;
   if( isBlock ) {
      run.first = EntryIndex{ index_, options_.first.array, options_.first.identifier };
   }
   cutToPlain( run, runs );
   run.images =
      run.count > 0 ? run.images.first( ( run.count - 1 ) * run.stride + bytes ) : std::span<U8>();
   return run;
}

void DumpReader::State::skip( std::size_t count ) {
   if( count == 0 ) {
      return;
   }
   const std::size_t bytes = own_->layouts.front().bytes();
   if( mode_ == Mode::lines ) {
      lineHead_ += count * bytes;
      input_->skip( count * lineLength_, count );
      return;
   }
   const std::size_t stride = options_.stride > 0 ? options_.stride : bytes;
   const std::size_t passed = ( count - 1 ) * stride + bytes;
   if( head_ < pending_.size() ) {
      head_ += passed;
   } else {
      input_->skip( passed, 0 );
   }
   offset_ += passed;
   skip_ = stride - bytes;
   count_ += count;
   index_ += count;
}

void DumpReader::State::take( const DumpRun& run, std::vector<U8>& images ) {
   if( run.images.data() == lineImages_.data() && run.images.size() == lineEnd_ ) {
      images.swap( lineImages_ );
      images.resize( lineEnd_ );
   } else {
      images.assign( run.images.begin(), run.images.end() );
   }
   skip( run.count );
}

DumpReader::DumpReader( DumpOptions options )
   : state_( std::make_unique<State>( std::move( options ) ) ) {}

DumpReader::DumpReader( DumpReader&& other ) noexcept = default;
DumpReader& DumpReader::operator=( DumpReader&& other ) noexcept = default;
DumpReader::~DumpReader() = default;

void DumpReader::begin( ByteSource& bytes ) {
   state_->lineHead_ = state_->lineEnd_ = 0;
   state_->input_ = std::make_unique<DumpInput>( bytes );
   state_->reader_ = std::make_unique<ImageReader>( *state_->input_, state_->options_.format );
   state_->mode_ = State::Mode::start;
}

void DumpReader::begin( std::span<const std::string> arguments ) {
   state_->input_ = nullptr;
   state_->reader_ = nullptr;
   state_->pending_.clear();
   state_->head_ = 0;
   state_->takeArguments( arguments );
   state_->mode_ = State::Mode::arguments;
}

DumpRun DumpReader::ahead( Runs runs ) { return state_->ahead( runs ); }

void DumpReader::skip( std::size_t count ) { state_->skip( count ); }

void DumpReader::take( const DumpRun& run, std::vector<U8>& images ) {
   state_->take( run, images );
}

bool DumpReader::next() {
   state_->lineHead_ = state_->lineEnd_ = 0;
   if( state_->input_ && state_->input_->hasFailed() && !state_->failure_ ) {
      state_->mode_ = State::Mode::ended;
   }
   while( state_->mode_ != State::Mode::ended ) {
      state_->place_.clear();
      state_->said_ = {};
      state_->image_.bytes.clear();
      for( Piece* piece :
           { &state_->image_.table, &state_->image_.chip, &state_->image_.variant } ) {
         piece->isGiven = false;
      }
      state_->entry_.address.reset();
      state_->entry_.doubt = {};
      state_->isPiece_ = false;
      if( state_->step() ) {
         return true;
      }
   }
   return false;
}

void DumpReader::takeAnyPair() { state_->any_ = layoutsOn( *state_->options_.chip ); }

bool DumpReader::isPiece() const { return state_->isPiece_; }

const DumpEntry& DumpReader::entry() const { return state_->entry_; }

std::string DumpReader::place() const { return state_->place_; }

const Layout* DumpReader::own() const {
   return state_->own_ ? &state_->own_->layouts.front() : nullptr;
}

std::span<const Layout> DumpReader::layouts() const {
   return state_->own_ ? state_->own_->layouts : std::span<const Layout>();
}

bool DumpReader::isOfOnePair() const { return state_->own_ && state_->own_->layouts.size() == 1; }

} // namespace Vorn
