// Entry images read from text: bytes, 32-bit words, `hexdump -C` and JSON, one or many.
#include <Vorn/Images.h>

#include "ImageText.h"

#include <Vorn/Pairs.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <array>
#include <utility>

namespace Vorn {

namespace {

constexpr auto none = std::string_view::npos;

// Where a part of the line begins in it.
std::size_t placeIn( std::string_view line, std::string_view part ) {
   return static_cast<std::size_t>( part.data() - line.data() );
}

// The lines of one `hexdump -C`, taken one after another.
class Dump {
public:
   explicit Dump( ImageFormat format ) : isForced_( format == ImageFormat::hexdump ) {}

   // Whether a dump begins with this line.
   bool begins( std::string_view line ) const {
      return isForced_ || ( line.ends_with( '|' ) && rowOf( line ).isSure );
   }

   // Takes a trimmed text that begins `at` bytes after the beginning of its line; false if it is no
   // part of the dump.
   bool take( std::string_view text, std::size_t at, Image& image ) {
      if( text == "*" && rowBytes_ > 0 ) {
         isRepeated_ = true;
         return true;
      }
      const Row row = rowOf( text );
      if( !isPart( row, at ) ) {
         finish( at );
         return false;
      }
      moveTo( row, at, image );
      isComplete_ = !row.hasMore;
      if( row.hasMore ) {
         takeBytes( row.bytes, at + row.offset.size(), image );
      }
      return true;
   }

   // Whether no further line can be part of it.
   bool isComplete() const { return isComplete_; }

   // To be called where the dump has no more lines.
   void finish( std::size_t at ) const {
      if( isRepeated_ ) {
         throw BadText( at, "no offset after \"*\"; a hexdump ends in the offset of its end" );
      }
   }

private:
   struct Row {
      std::string_view offset;
      bool hasMore;           // but for the last line, which is an offset alone
      std::string_view bytes; // up to the bars
      bool isSure;            // it has the bars, too
   };

   static Row rowOf( std::string_view text ) {
      const auto offset = firstPiece( text );
      const auto rest = text.substr( offset.size() );
      const auto bytes = rest.substr( 0, rest.find( '|' ) );
      const bool hasBars = rest.size() > bytes.size() + 1 && rest.ends_with( '|' );
      return { offset, !rest.empty(), bytes, isOffset( offset ) && hasBars };
   }

   static bool isOffset( std::string_view piece ) {
      return piece.size() >= 7 && piece.size() <= 16 && isDigits( piece );
   }

   bool isPart( const Row& row, std::size_t at ) const {
      const bool isFirst = rowBytes_ == 0;
      if( !isOffset( row.offset ) ) {
         if( isFirst ) {
            throw BadText( at, "bad offset " + inQuotes( row.offset ) +
                                  "; write lines as `hexdump -C` prints them" );
         }
         return false;
      }
      // A dump that has lost its last line may be followed by another, or by bytes.
      const U64 offset = numberOf( row.offset );
      const bool isAnother = row.hasMore ? offset == 0 || !( isForced_ || row.isSure )
                                         : offset != due_ && !isRepeated_ && row.offset.size() > 8;
      return isFirst || !isAnother;
   }

   // Fills up to the offset of the row with what a "*" stands for.
   void moveTo( const Row& row, std::size_t at, Image& image ) {
      const U64 offset = numberOf( row.offset );
      if( rowBytes_ == 0 ) {
         due_ = offset;
      }
      const U64 missing = offset - due_;
      if( offset < due_ || ( missing > 0 && !isRepeated_ ) ) {
         const U8 bytes[] = { static_cast<U8>( due_ >> 24 ), static_cast<U8>( due_ >> 16 ),
                              static_cast<U8>( due_ >> 8 ), static_cast<U8>( due_ ) };
         std::string due;
         appendHex( due, bytes );
         throw BadText( at, "offset " + std::string( row.offset ) + " where " + due + " is due" );
      }
      requireRoom( at, image, missing );
      for( U64 i = 0; i < missing; ++i ) {
         image.bytes.push_back( image.bytes[image.bytes.size() - rowBytes_] );
      }
      due_ = offset;
      isRepeated_ = false;
   }

   void takeBytes( std::string_view bytes, std::size_t at, Image& image ) {
      const std::size_t before = image.bytes.size();
      forEachPiece( bytes, at, [&]( std::string_view piece, std::size_t begin ) {
         if( piece.size() != 2 ) {
            throw BadText( begin, "bad byte " + inQuotes( piece ) +
                                     "; write lines as `hexdump -C` prints them" );
         }
         readDigits( piece, begin, ImageFormat::bytes, image );
      } );
      rowBytes_ = image.bytes.size() - before;
      if( rowBytes_ == 0 ) {
         throw BadText( at, "no bytes after the offset" );
      }
      due_ += rowBytes_;
      requireRoom( at, image, 0 );
   }

   static void requireRoom( std::size_t at, const Image& image, U64 more ) {
      if( more > Image::longest || image.bytes.size() + more > Image::longest ) {
         throw BadText( at,
                        "the image is longer than " + std::to_string( Image::longest ) + " bytes" );
      }
   }

   bool isForced_;
   bool isComplete_ = false;
   bool isRepeated_ = false;  // "*" was the last line
   U64 due_ = 0;              // offset of the next line
   std::size_t rowBytes_ = 0; // bytes of the last line
};

// Where `vorn encode` prints the image, and what it prints after it.
constexpr std::string_view imageLabel = "image";
constexpr std::string_view wordsLabel = "words";
constexpr std::array<std::string_view, 4> otherLabels{ wordsLabel, "address", "accessType",
                                                       "destBlock" };

// The colon after what a trimmed text has before its image: such a label, or the pair.
std::size_t colonIn( std::string_view text ) {
   const auto colon = text.find( ':' );
   if( colon == none || isJson( text ) || text.find( '|' ) < colon ) {
      return none;
   }
   const auto first = firstPiece( text.substr( 0, colon ) );
   return first.empty() || isDigits( first ) ? none : colon;
}

// Reads the pair from what stands before the colon.
void readPair( std::string_view head, std::size_t at, Image& image ) {
   if( image.table.isGiven ) {
      throw BadText( at, "a second pair, and no image after the first" );
   }
   constexpr std::array pieces{ &Image::table, &Image::chip, &Image::variant };
   std::size_t count = 0;
   forEachPiece( head, at, [&]( std::string_view piece, std::size_t begin ) {
      if( count == pieces.size() ) {
         throw BadText( begin, inQuotes( piece ) + " is too much before the colon; write TABLE "
                                                   "CHIP VARIANT: IMAGE" );
      }
      Piece& to = image.*pieces[count++];
      to.text = piece;
      to.at = begin;
      to.isGiven = true;
   } );
}

// Whether the text begins with a name rather than with digits.
bool isName( std::string_view text ) {
   const auto isLetter = []( char c ) {
      return ( c >= 'a' && c <= 'z' ) || ( c >= 'A' && c <= 'Z' );
   };
   // No name is longer; digits may be, and need not be looked at twice.
   constexpr std::size_t longest = 64;
   return isLetter( text[0] ) && !isDigits( firstPiece( text.substr( 0, longest ) ) );
}

// Reads the image from a trimmed text that is no dump.
void readText( std::string_view text, std::size_t at, ImageFormat format, Image& image ) {
   image.at = at;
   if( isJson( text ) ) {
      readJson( text, at, format, image );
      return;
   }
   if( isName( text ) ) {
      throw BadText( at, "bad image " + inQuotes( firstPiece( text ) ) +
                            "; write hexadecimal digits, perhaps with TABLE CHIP VARIANT and a "
                            "colon before them" );
   }
   readDigits( text, at, format, image );
}

// Reads the lines of an argument that is a dump.
void readDump( std::string_view text, ImageFormat format, Image& image ) {
   Dump dump( format );
   while( !text.empty() ) {
      const auto line = text.substr( 0, text.find( '\n' ) );
      text.remove_prefix( std::min( line.size() + 1, text.size() ) );
      const auto row = trimmed( line );
      if( !row.empty() && ( dump.isComplete() || !dump.take( row, 0, image ) ) ) {
         throw Error( "the line " + inQuotes( row ) + " is no part of the hexdump before it" );
      }
   }
   dump.finish( 0 );
}

void require( bool isRight, const std::string& said, const std::string& wanted ) {
   if( !isRight ) {
      throw Error( "the image is one of " + said + ", not of " + wanted );
   }
}

} // namespace

BadText::BadText( std::size_t at, const std::string& message ) : Error( message ), at_( at ) {}

BadText::~BadText() = default;

std::span<const std::string_view> imageFormatNames() {
   static constexpr std::array<std::string_view, 7> names{ "auto",   "bytes",  "words", "hexdump",
                                                           "number", "stream", "binary" };
   return names;
}

void requireChip( const Chip& chip, const Image& image ) {
   if( image.chip.isGiven ) {
      const Chip& said = chipOf( image.chip.text );
      require( said.number == chip.number, said.name, chip.name );
   }
}

void requirePair( const Layout& layout, const Image& image ) {
   if( image.table.isGiven ) {
      require( image.table.text == layout.table(), shown( image.table.text ),
               std::string( layout.table() ) );
   }
   requireChip( layout.chip(), image );
   if( image.variant.isGiven && layout.info().hasVariants ) {
      const U64 variant = parseIndex( image.variant.text, "variant", 0xff );
      require( variant == layout.variant(), "variant " + std::to_string( variant ),
               "variant " + std::to_string( layout.variant() ) );
   }
}

LineSource::~LineSource() = default;

TextLines::TextLines( std::string_view text, std::string name )
   : rest_( text ), name_( std::move( name ) ) {}

TextLines::~TextLines() = default;

bool TextLines::next( std::string_view& line ) {
   ++number_;
   const bool isThere = !rest_.empty();
   line = rest_.substr( 0, rest_.find( '\n' ) );
   rest_.remove_prefix( std::min( line.size() + 1, rest_.size() ) );
   return isThere;
}

std::string TextLines::place() const { return name_ + ':' + std::to_string( number_ ); }

Image imageOf( std::string_view text, ImageFormat format ) {
   Image image;
   auto rest = trimmed( text );
   if( rest.empty() ) {
      return image;
   }
   if( const auto colon = colonIn( rest ); colon != none ) {
      if( const auto head = rest.substr( 0, colon ); head != imageLabel && head != wordsLabel ) {
         readPair( head, 0, image );
      }
      rest = trimmed( rest.substr( colon + 1 ) );
   }
   if( rest.empty() ) {
      return image;
   }
   if( Dump( format ).begins( trimmed( rest.substr( 0, rest.find( '\n' ) ) ) ) ) {
      readDump( rest, format, image );
   } else {
      readText( rest, 0, format, image );
   }
   return image;
}

ImageReader::ImageReader( LineSource& lines, ImageFormat format )
   : lines_( lines ), format_( format ) {}

bool ImageReader::next() {
   image_.bytes.clear();
   for( Piece* piece : { &image_.table, &image_.chip, &image_.variant } ) {
      piece->isGiven = false;
   }
   beginning_.clear();
   while( lines_.next( line_ ) ) {
      try {
         if( takeLine() ) {
            return true;
         }
      } catch( const BadText& bad ) {
         beginning_.clear();
         throw Error( place( bad.at() ), bad.message() );
      }
   }
   if( !beginning_.empty() ) {
      throw Error( beginning_, "no image after the colon" );
   }
   return false;
}

std::string ImageReader::place( std::size_t at ) const {
   return beginning_.empty() ? lines_.place() + ':' + std::to_string( columnOf( line_, at ) )
                             : beginning_;
}

// Reads line_. Whether the image is complete now.
bool ImageReader::takeLine() {
   const auto line = trimmed( line_ );
   std::size_t begin = 0;
   if( const auto colon = colonIn( line ); colon != none ) {
      const auto head = line.substr( 0, colon );
      const bool isOther =
         std::find( otherLabels.begin(), otherLabels.end(), head ) != otherLabels.end();
      isEncoded_ = head == imageLabel || ( isEncoded_ && isOther );
      if( isEncoded_ && isOther ) {
         return false;
      }
      if( !isEncoded_ && head != wordsLabel ) {
         readPair( head, placeIn( line_, line ), image_ );
      }
      begin = skipBlanks( line, colon + 1 );
      if( begin == line.size() ) {
         beginning_ = place( placeIn( line_, line ) );
         return false;
      }
   } else if( line.empty() ) {
      return false;
   } else {
      isEncoded_ = false;
   }
   const auto text = line.substr( begin );
   const auto at = placeIn( line_, text );
   if( Dump( format_ ).begins( text ) ) {
      takeDump( text, at );
   } else {
      readText( text, at, format_, image_ );
   }
   return true;
}

void ImageReader::takeDump( std::string_view text, std::size_t at ) {
   if( beginning_.empty() ) {
      beginning_ = place( at );
   }
   Dump dump( format_ );
   dump.take( text, at, image_ );
   while( !dump.isComplete() ) {
      line_ = {};
      const bool isThere = lines_.next( line_ );
      const auto row = trimmed( line_ );
      const auto begin = isThere ? placeIn( line_, row ) : 0;
      if( !isThere ) {
         dump.finish( 0 );
      }
      if( !isThere || !dump.take( row, begin, image_ ) ) {
         throw BadText( begin, "the hexdump is cut off: it ends without the offset of its end" );
      }
   }
}

ImageLayouts::ImageLayouts( std::optional<Layout> own ) {
   if( own ) {
      own_ = last_ = &add( std::move( *own ) );
   }
}

const Layout& ImageLayouts::of( const Image& image ) {
   const std::array pieces{ &image.table, &image.chip, &image.variant };
   bool isLast = last_ != nullptr;
   for( std::size_t i = 0; i < pieces.size(); ++i ) {
      const std::string_view said = pieces[i]->isGiven ? pieces[i]->text : std::string_view();
      if( said != texts_[i] ) {
         texts_[i] = said;
         isLast = false;
      }
   }
   if( !isLast ) {
      last_ = nullptr;
      last_ = &known( image );
   }
   return *last_;
}

// The layout of the pair that texts_ say.
const Layout& ImageLayouts::known( const Image& image ) {
   if( const auto found = found_.find( texts_ ); found != found_.end() ) {
      return *found->second;
   }
   const Layout& layout = find( image );
   const auto& [table, chip, variant] = texts_;
   if( table.size() + chip.size() + variant.size() <= longestSpelling ) {
      if( found_.size() == mostSpellings ) {
         found_.clear();
      }
      found_.emplace( texts_, &layout );
   }
   return layout;
}

const Layout& ImageLayouts::find( const Image& image ) {
   // Does a step; its Errors are at `piece`.
   const auto within = [&]( const Piece& piece, auto step ) -> decltype( auto ) {
      try {
         return step();
      } catch( const Error& error ) {
         throw BadText( piece.isGiven ? piece.at : image.at, error.message() );
      }
   };
   if( own_ ) {
      within( image.table, [&] { requirePair( *own_, image ); } );
      return *own_;
   }
   if( !image.table.isGiven || !image.chip.isGiven ) {
      throw BadText( image.at, std::string( "the image doesn't say its " ) +
                                  ( image.table.isGiven ? "chip type" : "table" ) +
                                  "; give TABLE and --chip, or write TABLE CHIP VARIANT and a "
                                  "colon before the image" );
   }
   const std::string& table = image.table.text;
   const Chip& chip =
      within( image.chip, [&]() -> const Chip& { return chipOf( image.chip.text ); } );
   const U64 variant = within( image.variant, [&] {
      return image.variant.isGiven ? parseIndex( image.variant.text, "variant", 0xff ) : 0;
   } );
   const Piece& reason = variantsOn( table, chip.number ) ? image.variant
                         : pairsOf( table ).empty()       ? image.table
                                                          : image.chip;
   return add( within( reason, [&] { return Layout( table, chip.number, variant ); } ) );
}

const Layout& ImageLayouts::add( Layout layout ) {
   const std::array key{ std::string( layout.table() ), layout.chip().name,
                         std::to_string( layout.variant() ) };
   return layouts_.emplace( key, std::move( layout ) ).first->second;
}

} // namespace Vorn
