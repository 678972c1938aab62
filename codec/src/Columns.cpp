#include <Vorn/Columns.h>

#include "ColumnsKernels.h"

#include <Vorn/Bits.h>
#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Vorn {

namespace {

// Images and columns with this many bytes in all push one another out of any cache.
constexpr std::size_t largeBytes = std::size_t{ 16 } << 20;

struct Column {
   const Field* field;
   U8* data;
   std::size_t elements;
   std::size_t elementBytes;
   std::size_t elementsOfRow;

   std::size_t bytesOfRow() const { return elementsOfRow * elementBytes; }

   // A row is an image of the value.
   U64 bitsAt( std::size_t row, std::size_t offset, unsigned width ) const {
      return Detail::bitsAt( data + row * bytesOfRow(), bytesOfRow(), offset, width );
   }

   Value value( std::size_t row ) const {
      Value::Words words{};
      for( std::size_t word = 0; word < elementsOfRow; ++word ) {
         words[word] = bitsAt( row, 64 * word, static_cast<unsigned>( 8 * elementBytes ) );
      }
      return Value( words );
   }
};

// Up to 64 bits that a column's field shares with an earlier one's, or with the tag.
struct Shared {
   std::size_t column;
   std::optional<std::size_t> earlier; // else the tag's
   U32 offset;                         // in the image
   U32 width;
   U64 tag;
};

} // namespace

struct __attribute__( ( visibility( "hidden" ) ) ) Columns::State {
   Layout layout;
   Kernels::Transfer transfer{ layout.bytes() };
   std::vector<Column> columns{};
   std::vector<Shared> shared{};
   std::size_t rowBytes = layout.bytes();   // of an image and all columns
   std::optional<std::size_t> commonRows{}; // of every column, if they agree
   const Field* constant = nullptr;         // with a column that is constant
   const Field* readOnly = nullptr;         // that can't be set

   void addShared( const Field& other, std::optional<std::size_t> earlier, U64 tagValue );
   std::size_t rowsOf( std::size_t bytes, std::size_t stride ) const;
   void requireValues( std::size_t rows, Overlap overlap ) const;
   std::size_t tooLarge( std::size_t rows ) const;
   std::optional<std::size_t> contradicting( const Shared& bits, std::size_t rows ) const;
   [[noreturn]] void refuseRow( std::size_t row, Overlap overlap ) const;
   bool isLarge( std::size_t rows ) const { return rows * rowBytes >= largeBytes; }
};

// Notes the bits that the last column's field shares with `other`, an earlier column's or the
// tag's.
void Columns::State::addShared( const Field& other, std::optional<std::size_t> earlier,
                                U64 tagValue ) {
   const Field& field = *columns.back().field;
   const U32 begin = std::max( field.offset, other.offset );
   const U32 end = std::min( field.end(), other.end() );
   for( U32 offset = begin; offset < end; offset += 64 ) {
      const U64 tag = earlier ? 0 : tagValue >> ( begin - other.offset );
      shared.push_back(
         { columns.size() - 1, earlier, offset, std::min( end - offset, U32{ 64 } ), tag } );
   }
}

std::size_t Columns::State::rowsOf( std::size_t bytes, std::size_t stride ) const {
   if( stride < layout.bytes() ) {
      throw Error( "images that begin " + countOf( stride, "byte" ) +
                   " apart overlap; an entry of " + layout.pairText() + " has " +
                   std::to_string( layout.bytes() ) );
   }
   const std::size_t left = bytes % stride;
   if( left != 0 && left != layout.bytes() ) {
      throw Error( countOf( bytes, "byte" ) + " are no whole number of images; an entry of " +
                   layout.pairText() + " has " + std::to_string( layout.bytes() ) +
                   ( stride == layout.bytes()
                        ? std::string()
                        : ", and they begin " + std::to_string( stride ) + " apart" ) );
   }
   const std::size_t count = bytes / stride + ( left != 0 );
   if( count == commonRows ) {
      return count;
   }
   for( const Column& column : columns ) {
      if( column.elements != count * column.elementsOfRow ) {
         throw Error( "the column of field " + std::string( column.field->name ) + " has " +
                      countOf( column.elements, "element" ) + "; " + countOf( count, "image" ) +
                      " of " + layout.pairText() + " need " +
                      std::to_string( count * column.elementsOfRow ) );
      }
   }
   return count;
}

// The first row with a value that needs more bits than its field has; there must be one.
std::size_t Columns::State::tooLarge( std::size_t rows ) const {
   for( std::size_t row = 0; row < rows; ++row ) {
      for( const Column& column : columns ) {
         if( column.value( row ).bits() > column.field->width ) {
            return row;
         }
      }
   }
   return 0;
}

std::optional<std::size_t> Columns::State::contradicting( const Shared& bits,
                                                          std::size_t rows ) const {
   const auto bitsOf = [&]( std::size_t number, std::size_t row ) {
      const Column& column = columns[number];
      return column.bitsAt( row, bits.offset - column.field->offset, bits.width );
   };
   const U64 tag = bits.tag & ~U64{ 0 } >> ( 64 - bits.width );
   for( std::size_t row = 0; row < rows; ++row ) {
      if( bitsOf( bits.column, row ) != ( bits.earlier ? bitsOf( *bits.earlier, row ) : tag ) ) {
         return row;
      }
   }
   return std::nullopt;
}

void Columns::State::requireValues( std::size_t rows, Overlap overlap ) const {
   if( !Kernels::best().fit( transfer, rows ) ) {
      refuseRow( tooLarge( rows ), overlap );
   }
   if( overlap == Overlap::refused ) {
      for( const Shared& bits : shared ) {
         if( const auto row = contradicting( bits, rows ) ) {
            refuseRow( *row, overlap );
         }
      }
   }
}

// Throws the Error that composing the row alone throws, with the number of the row.
void Columns::State::refuseRow( std::size_t row, Overlap overlap ) const {
   try {
      Composer composer( layout, overlap );
      for( const Column& column : columns ) {
         composer.set( *column.field, column.value( row ) );
      }
      throw Error( "its values change while they are read" );
   } catch( const Error& error ) {
      throw Error( "row " + std::to_string( row ), error.message() );
   }
}

Columns::Columns( Layout layout ) : state_( new State{ std::move( layout ) } ) {}
Columns::Columns( Columns&& other ) noexcept = default;
Columns& Columns::operator=( Columns&& other ) noexcept = default;
Columns::~Columns() = default;

const Layout& Columns::layout() const { return state_->layout; }

void Columns::add( std::string_view name, void* data, std::size_t elements,
                   std::size_t elementBytes ) {
   add( name, data, elements, elementBytes, false );
}

void Columns::add( std::string_view name, const void* data, std::size_t elements,
                   std::size_t elementBytes ) {
   add( name, data, elements, elementBytes, true );
}

void Columns::add( std::string_view name, const void* data, std::size_t elements,
                   std::size_t elementBytes, bool constant ) {
   State& state = *state_;
   const Field& field = state.layout.field( name );
   for( const Column& column : state.columns ) {
      if( column.field == &field ) {
         throw Error( "field " + std::string( name ) + " has a column already" );
      }
   }
   const bool wide = field.width > 64;
   const bool isSize =
      elementBytes == 1 || elementBytes == 2 || elementBytes == 4 || elementBytes == 8;
   if( !isSize || ( wide ? elementBytes != 8 : 8 * elementBytes < field.width ) ) {
      throw Error( "the column of field " + std::string( name ) + ", " +
                   std::to_string( field.width ) + " bits in " + state.layout.pairText() +
                   ", has elements of " + countOf( elementBytes, "byte" ) + "; allowed: " +
                   ( field.width <= 8    ? "U8, U16, U32, U64"
                     : field.width <= 16 ? "U16, U32, U64"
                     : field.width <= 32 ? "U32, U64"
                                         : "U64" ) );
   }
   // Only decode() writes through it, which requires that no column is constant.
   auto* const bytes = static_cast<U8*>( const_cast<void*>( data ) );
   if( reinterpret_cast<std::uintptr_t>( bytes ) % elementBytes != 0 ) {
      throw Error( "the column of field " + std::string( name ) +
                   " is not aligned to its elements of " + countOf( elementBytes, "byte" ) );
   }
   const std::size_t words = ( field.width + 63 ) / 64;
   state.columns.push_back( { &field, bytes, elements, elementBytes, words } );
   state.rowBytes += words * elementBytes;
   if( state.columns.size() == 1 && elements % words == 0 ) {
      state.commonRows = elements / words;
   } else if( state.commonRows && elements != *state.commonRows * words ) {
      state.commonRows.reset();
   }
   if( constant && !state.constant ) {
      state.constant = &field;
   }
   if( field.readOnly && !state.readOnly ) {
      state.readOnly = &field;
   }
   for( std::size_t word = 0; word < words; ++word ) {
      const auto done = static_cast<unsigned>( 64 * word );
      state.transfer.add( field.offset + done, std::min( field.width - done, 64u ),
                          bytes + word * elementBytes, static_cast<unsigned>( elementBytes ),
                          static_cast<unsigned>( words ) );
   }
   for( std::size_t earlier = 0; earlier + 1 < state.columns.size(); ++earlier ) {
      state.addShared( *state.columns[earlier].field, earlier, 0 );
   }
   for( const TagField& tag : state.layout.tag() ) {
      state.addShared( tag.field, std::nullopt, tag.value );
   }
}

void Columns::decode( std::span<const U8> images ) const {
   decode( images, state_->layout.bytes() );
}

void Columns::decode( std::span<const U8> images, std::size_t stride ) const {
   const std::size_t rows = state_->rowsOf( images.size(), stride );
   if( const Field* const constant = state_->constant ) {
      throw Error( "the column of field " + std::string( constant->name ) +
                   " is constant, and can't be decoded into" );
   }
   Kernels::best().decode( state_->transfer, { images.data(), stride, rows },
                           state_->isLarge( rows ) );
}

void Columns::encode( std::span<U8> images, Overlap overlap ) const {
   encode( images, state_->layout.bytes(), overlap );
}

void Columns::encode( std::span<U8> images, std::size_t stride, Overlap overlap ) const {
   const std::size_t rows = state_->rowsOf( images.size(), stride );
   if( state_->readOnly ) {
      state_->layout.settable( state_->readOnly->name );
   }
   state_->requireValues( rows, overlap );
   Kernels::best().encode( state_->transfer, { images.data(), stride, rows },
                           state_->isLarge( rows ) );
}

} // namespace Vorn
