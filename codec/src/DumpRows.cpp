// The rows that `hexdump -C`, `hexdump`, `xxd` and `od -tx` print: an offset and bytes.
#include "DumpRows.h"

#include "ImageText.h"

#include <Vorn/Images.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <utility>

namespace Vorn {

namespace {

constexpr auto none = std::string_view::npos;

bool isOffset( std::string_view piece ) {
   return piece.size() >= 7 && piece.size() <= 16 && isDigits( piece );
}

std::string offsetText( U64 offset, bool isOctal ) {
   if( isOctal ) {
      std::string digits;
      for( ; offset > 0; offset >>= 3 ) {
         digits.insert( digits.begin(), static_cast<char>( '0' + ( offset & 7 ) ) );
      }
      constexpr std::size_t least = 7;
      return std::string( least - std::min( least, digits.size() ), '0' ) + digits;
   }
   std::array<U8, 8> bytes{};
   for( std::size_t i = 0; i < bytes.size(); ++i ) {
      bytes[i] = static_cast<U8>( offset >> ( 56 - 8 * i ) );
   }
   std::string text;
   appendHex( text, std::span( bytes ).subspan( offset >> 32 ? 0 : 4 ) );
   return text;
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

// The number that octal digits write; nothing if others are among them.
std::optional<U64> octalOf( std::string_view digits ) {
   U64 number = 0;
   for( const char digit : digits ) {
      if( digit < '0' || digit > '7' ) {
         return std::nullopt;
      }
      number = number << 3 | static_cast<U64>( digit - '0' );
   }
   return number;
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
      row.rest = row.rest.substr( 0, row.rest.find( "  ", begin ) );
      row.isSure = true;
      return row;
   }
   const auto bars = row.rest.find( '|' );
   const bool hasBars = bars != none && row.rest.size() > bars + 1 && row.rest.ends_with( '|' );
   row.rest = row.rest.substr( 0, bars );
   if( bars == none && areGroups( row.rest, 4 ) ) {
      row.kind = Kind::words;
   } else if( bars == none && row.offset.size() == 7 && odDigitsOf( row.rest ) > 0 ) {
      row.kind = Kind::od;
   }
   row.isSure =
      isOffset( row.offset ) &&
      ( hasBars || ( row.kind == Kind::words && row.offset.size() == 7 && row.rest.size() <= 64 ) ||
        ( row.kind == Kind::od && isOdBegin( row.offset ) ) );
   return row;
}

// In hexadecimal digits; those of `od` are octal, which the second row of `od -x` shows.
U64 DumpRows::offsetOf( const Row& row, bool isFirst ) {
   if( isFirst ) {
      isOctal_ = row.kind == Kind::od;
      odDigits_ = isOctal_ ? odDigitsOf( row.rest ) : 0;
   }
   const U64 number = numberOf( row.offset );
   const bool mayBeOctal =
      isOctal_ || ( kind_ == Kind::words && due_ == firstBytes_ && number != due_ );
   const auto octal = mayBeOctal ? octalOf( row.offset ) : std::nullopt;
   isOctal_ = isOctal_ || ( octal && !isFirst && *octal == due_ );
   return isOctal_ && octal ? *octal : number;
}

bool DumpRows::begins( std::string_view line ) const {
   if( isOdBegin( firstPiece( line ) ) &&
       areGroups( line.substr( firstPiece( line ).size() ), 6 ) ) {
      throw BadText( 0,
                     "octal numbers, as `od` prints them; print hexadecimal ones with `od -tx4`" );
   }
   return !line.empty() && ( isForced_ || rowOf( line ).isSure );
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
   const U64 offset = offsetOf( row, isFirst );
   if( isFirst ) {
      kind_ = row.kind;
      due_ = offset;
   } else if( kind_ == Kind::xxd && ( row.kind != kind_ || ( offset == 0 && due_ > 0 ) ) ) {
      finish( at );
      return false;
   } else if( !isEnd && ( offset == 0 || ( row.kind != kind_ && !isForced_ ) ) ) {
      finish( at );
   }
   if( offset < due_ || ( offset > due_ && !isRepeated_ ) ) {
      throw BadText( at, "offset " + std::string( row.offset ) + " where " +
                            offsetText( due_, isOctal_ ) + " is due" );
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
