// The rows that `hexdump -C`, `hexdump`, `xxd` and `od -tx` print: an offset and bytes.
#include "DumpRows.h"

#include "ImageText.h"

#include <Vorn/Images.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <system_error>
#include <utility>

namespace Vorn {

namespace {

constexpr auto none = std::string_view::npos;

bool isOffset( std::string_view piece ) {
   return piece.size() >= 6 && piece.size() <= 16 && isDigits( piece );
}

// As the programs print it that print offsets in this base.
std::string offsetText( U64 offset, int base ) {
   std::array<char, 22> digits{};
   const auto end = std::to_chars( digits.begin(), digits.end(), offset, base ).ptr;
   const std::string_view text( digits.data(), static_cast<std::size_t>( end - digits.data() ) );
   const std::size_t least = base != 16 ? 7 : offset >> 32 ? 16 : 8;
   return std::string( least - std::min( least, text.size() ), '0' ).append( text );
}

// Whether all pieces have that many digits, and there is one.
bool areGroups( std::string_view text, std::size_t digits ) {
   bool isThere = false;
   bool areAll = true;
   forEachPiece( text, 0, [&]( std::string_view piece, std::size_t ) {
      isThere = true;
      areAll = areAll && piece.size() == digits && isDigits( piece );
   } );
   return isThere && areAll;
}

// The number that the digits write; nothing if others are among them.
std::optional<U64> offsetIn( std::string_view digits, int base ) {
   U64 number = 0;
   const char* const end = digits.data() + digits.size();
   const auto [stop, error] = std::from_chars( digits.data(), end, number, base );
   return stop == end && error == std::errc() ? std::optional( number ) : std::nullopt;
}

// What `od` begins with.
bool isOdBegin( std::string_view offset ) { return offset == "0000000"; }

// The digits of each of its groups, if these are as `od -tx1`, `-tx4` or `-tx8` prints them.
std::size_t odDigitsOf( std::string_view groups ) {
   for( const std::size_t digits : { 2U, 8U, 16U } ) {
      if( areGroups( groups, digits ) ) {
         return digits;
      }
   }
   return 0;
}

// The groups without the characters that `od -tx1z` prints after them.
std::string_view withoutCharacters( std::string_view groups ) {
   const auto begin = groups.find( "  >" );
   return begin != none && groups.ends_with( '<' ) ? groups.substr( 0, begin ) : groups;
}

// Whether a row of `xxd -e -g2`: its groups are words, as the characters after them are those of
// the bytes with each two swapped. Where the characters begin isn't known if the row is padded and
// some of them are blanks.
bool areWordsOfXxd( std::string_view characters, std::span<const U8> bytes ) {
   if( !characters.starts_with( "  " ) ) {
      return false;
   }
   characters.remove_prefix( 2 );
   if( characters.size() > bytes.size() ) {
      characters.remove_prefix( skipBlanks( characters, 0 ) );
      if( characters.size() != bytes.size() ) {
         return false;
      }
   }
   const auto fit = [&]( std::size_t swap ) {
      for( std::size_t i = 0; i < characters.size(); ++i ) {
         const std::size_t at = i ^ swap;
         const U8 byte = at < bytes.size() ? bytes[at] : 0;
         const char shownAs = byte >= 0x20 && byte < 0x7f ? static_cast<char>( byte ) : '.';
         if( characters[i] != shownAs ) {
            return false;
         }
      }
      return true;
   };
   return !fit( 0 ) && fit( 1 );
}

std::string_view adviceOn( bool isXxd ) {
   return isXxd ? "; write lines as `xxd` prints them"
                : "; write lines as `hexdump -C` prints them";
}

} // namespace

DumpRows::Row DumpRows::rowOf( std::string_view line ) const {
   Row row;
   row.offset = firstPiece( line );
   row.rest = line.substr( row.offset.size() );
   if( row.offset.ends_with( ':' ) && isOffset( row.offset.substr( 0, row.offset.size() - 1 ) ) &&
       row.offset.size() > 8 ) {
      row.offset.remove_suffix( 1 );
      row.kind = Kind::xxd;
      const auto begin = skipBlanks( row.rest, 0 );
      const auto end = std::min( row.rest.find( "  ", begin ), row.rest.size() );
      row.characters = row.rest.substr( end );
      row.rest = row.rest.substr( 0, end );
      row.isSure = true;
      return row;
   }
   row.rest = withoutCharacters( row.rest );
   const auto bars = row.rest.find( '|' );
   const bool hasBars = bars != none && row.rest.size() > bars + 1 && row.rest.ends_with( '|' );
   row.rest = row.rest.substr( 0, bars );
   // Offsets of many digits stand before bytes of `hexdump -C`, too.
   const bool mayBeOd = row.offset.size() < 8 || ( lastBytes_ > 0 && kind_ == Kind::od );
   if( bars == none && areGroups( row.rest, 4 ) ) {
      row.kind = Kind::words;
   } else if( bars == none && mayBeOd && odDigitsOf( row.rest ) > 0 ) {
      row.kind = Kind::od;
   }
   row.isSure =
      isOffset( row.offset ) &&
      ( hasBars || ( row.kind == Kind::words && row.offset.size() == 7 && row.rest.size() <= 64 ) ||
        ( row.kind == Kind::od && isOdBegin( row.offset ) ) );
   return row;
}

// Nothing if it has wrong digits. The second row shows the base: `od` has octal offsets, or decimal
// ones, and hexadecimal ones of six digits.
std::optional<U64> DumpRows::offsetOf( const Row& row, bool isFirst ) {
   if( isFirst ) {
      base_ = row.kind == Kind::od && row.offset.size() == 7 ? 8 : 16;
      odDigits_ = row.kind == Kind::od ? odDigitsOf( row.rest ) : 0;
   } else if( due_ == firstBytes_ && row.offset.size() == 7 && kind_ != Kind::bytes ) {
      const auto fits = [&]( int base ) {
         const auto offset = offsetIn( row.offset, base );
         return offset && *offset >= due_ &&
                ( isRepeated_ ? ( *offset - due_ ) % firstBytes_ == 0 : *offset == due_ );
      };
      for( const int other : { 8, 10 } ) {
         base_ = !fits( base_ ) && fits( other ) ? other : base_;
      }
   }
   return offsetIn( row.offset, base_ );
}

void DumpRows::refuseOffset( const Row& row, std::size_t at ) const {
   throw BadText( at, "offset " + std::string( row.offset ) + " where " +
                         offsetText( due_, base_ ) + " is due" );
}

bool DumpRows::begins( std::string_view line ) const {
   if( isOdBegin( firstPiece( line ) ) &&
       areGroups( line.substr( firstPiece( line ).size() ), 6 ) ) {
      throw BadText( 0,
                     "octal numbers, as `od` prints them; print hexadecimal ones with `od -tx4`" );
   }
   return !line.empty() && ( isForced_ || rowOf( line ).isSure );
}

bool DumpRows::begin( std::string_view first, std::string_view second ) {
   const auto offset = firstPiece( first );
   const auto groups = withoutCharacters( first.substr( offset.size() ) );
   const auto digits = areGroups( groups, 4 ) ? 4 : odDigitsOf( groups );
   if( offset != "000000" || digits == 0 ) {
      return false;
   }
   U64 bytes = 0;
   forEachPiece( groups, 0, [&]( std::string_view, std::size_t ) { bytes += digits / 2; } );
   const auto next = firstPiece( second );
   return second == "*" || ( isOffset( next ) && offsetIn( next, 16 ) == bytes );
}

bool DumpRows::take( std::string_view line, std::size_t at, std::vector<U8>& bytes, U64& before ) {
   bytes.clear();
   before = 0;
   if( line == "*" && lastBytes_ > 0 ) {
      isRepeated_ = true;
      return true;
   }
   const Row row = rowOf( line );
   const bool isFirst = lastBytes_ == 0;
   if( !isOffset( row.offset ) ) {
      if( isFirst ) {
         throw BadText( at,
                        "bad offset " + inQuotes( row.offset ) + std::string( adviceOn( false ) ) );
      }
      finish( at );
      return false;
   }
   const bool isEnd = row.rest.empty() && row.kind != Kind::xxd;
   const auto read = offsetOf( row, isFirst );
   if( !read ) {
      refuseOffset( row, at );
   }
   const U64 offset = *read;
   if( isFirst ) {
      kind_ = row.kind;
      begin_ = due_ = offset;
   } else if( kind_ == Kind::xxd && ( row.kind != kind_ || ( offset == 0 && due_ > 0 ) ) ) {
      finish( at );
      return false;
   } else if( !isEnd && ( offset == 0 || ( row.kind != kind_ && !isForced_ ) ) ) {
      finish( at );
   }
   if( offset < due_ || ( offset > due_ && !isRepeated_ ) ) {
      refuseOffset( row, at );
   }
   if( !isEnd && !isFirst && lastBytes_ != firstBytes_ ) {
      throw BadText( at, "the line before it has " + std::to_string( lastBytes_ ) +
                            " bytes, the first one " + std::to_string( firstBytes_ ) +
                            "; only the last line may be shorter" );
   }
   before = offset - due_;
   due_ = offset;
   isRepeated_ = false;
   isComplete_ = isEnd;
   if( !isEnd ) {
      takeBytes( row, at + static_cast<std::size_t>( row.rest.data() - line.data() ), bytes );
      if( bytes.empty() ) {
         throw BadText( at + row.offset.size(), "no bytes after the offset" );
      }
      if( kind_ == Kind::xxd && areWordsOfXxd( row.characters, bytes ) ) {
         const auto begin = static_cast<std::size_t>( row.rest.data() - line.data() );
         throw BadText( at + begin + skipBlanks( row.rest, 0 ),
                        "words of two bytes, as `xxd -e -g2` prints them; print bytes with `xxd` "
                        "alone" );
      }
      lastBytes_ = bytes.size();
      firstBytes_ = isFirst ? lastBytes_ : firstBytes_;
      if( lastBytes_ > firstBytes_ ) {
         throw BadText( at, "the line has " + std::to_string( lastBytes_ ) +
                               " bytes, the first one " + std::to_string( firstBytes_ ) );
      }
      due_ += lastBytes_;
   }
   return true;
}

void DumpRows::takeBytes( const Row& row, std::size_t at, std::vector<U8>& bytes ) const {
   Image image;
   const std::size_t digits = kind_ == Kind::bytes   ? 2
                              : kind_ == Kind::words ? 4
                              : kind_ == Kind::od    ? odDigits_
                                                     : 0; // of `xxd` either
   forEachPiece( row.rest, at, [&]( std::string_view piece, std::size_t begin ) {
      const bool isPart =
         digits > 0 ? piece.size() == digits : piece.size() == 2 || piece.size() == 4;
      if( !isPart ) {
         const bool isWide = kind_ == Kind::xxd && piece.size() > 4 && isDigits( piece );
         throw BadText( begin, "bad byte " + inQuotes( piece ) +
                                  ( isWide ? "; groups of more than two bytes may be words; print "
                                             "them with `xxd` alone"
                                           : std::string( adviceOn( kind_ == Kind::xxd ) ) ) );
      }
      readDigits( piece, begin, ImageFormat::bytes, image );
   } );
   if( kind_ == Kind::words || kind_ == Kind::od ) {
      // These are numbers, of 16 bits those of `hexdump`.
      const std::size_t size = kind_ == Kind::words ? 2 : odDigits_ / 2;
      for( std::size_t i = 0; i + size <= image.bytes.size(); i += size ) {
         const auto number = image.bytes.begin() + static_cast<std::ptrdiff_t>( i );
         std::reverse( number, number + static_cast<std::ptrdiff_t>( size ) );
      }
   }
   bytes = std::move( image.bytes );
}

void DumpRows::finish( std::size_t at ) const {
   if( isRepeated_ ) {
      throw BadText( at, "no offset after \"*\"; a hexdump ends in the offset of its end" );
   }
   if( kind_ != Kind::xxd && !isComplete_ ) {
      throw BadText( at, "the hexdump is cut off: it ends without the offset of its end" );
   }
}

} // namespace Vorn
