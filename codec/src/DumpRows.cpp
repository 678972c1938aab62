// The rows that `hexdump -C`, `hexdump` and `xxd` print: an offset and bytes.
#include "DumpRows.h"

#include "ImageText.h"

#include <Vorn/Images.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

namespace Vorn {

namespace {

constexpr auto none = std::string_view::npos;

bool isOffset( std::string_view piece ) {
   return piece.size() >= 7 && piece.size() <= 16 && isDigits( piece );
}

std::string offsetText( U64 offset ) {
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
   }
   row.isSure =
      isOffset( row.offset ) &&
      ( hasBars || ( row.kind == Kind::words && row.offset.size() == 7 && row.rest.size() <= 64 ) );
   return row;
}

bool DumpRows::begins( std::string_view line ) const {
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
   const U64 offset = numberOf( row.offset );
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
      throw BadText( at, "offset " + std::string( row.offset ) + " where " + offsetText( due_ ) +
                            " is due" );
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
   forEachPiece( row.rest, at, [&]( std::string_view piece, std::size_t begin ) {
      const bool isPart = kind_ == Kind::bytes   ? piece.size() == 2
                          : kind_ == Kind::words ? piece.size() == 4
                                                 : piece.size() == 2 || piece.size() == 4;
      if( !isPart ) {
         const bool isWide = kind_ == Kind::xxd && piece.size() > 4 && isDigits( piece );
         throw BadText( begin, "bad byte " + inQuotes( piece ) +
                                  ( isWide ? "; groups of more than two bytes may be words; print "
                                             "them with `xxd` alone"
                                           : std::string( adviceOn( kind_ == Kind::xxd ) ) ) );
      }
      readDigits( piece, begin, ImageFormat::bytes, image );
   } );
   if( kind_ == Kind::words ) {
      // `hexdump` prints words of 16 bits.
      for( std::size_t i = 0; i + 1 < image.bytes.size(); i += 2 ) {
         std::swap( image.bytes[i], image.bytes[i + 1] );
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
