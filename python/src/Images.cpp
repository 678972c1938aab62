// Images in memory that Python code owns, read where they lie.
#include "Images.h"

#include "Arguments.h"

#include <Vorn/Error.h>

#include <string>
#include <string_view>

namespace Vorn::Python {

namespace {

std::string count( std::size_t number, const char* what ) {
   return std::to_string( number ) + ' ' + what + ( number == 1 ? "" : "s" );
}

} // namespace

Buffer::Buffer( py::handle object, const char* what ) {
   if( !PyObject_CheckBuffer( object.ptr() ) ||
       PyObject_GetBuffer( object.ptr(), &view_, PyBUF_STRIDED_RO | PyBUF_FORMAT ) != 0 ) {
      PyErr_Clear();
      throw Error( std::string( what ) + " is " + kindOf( object ) +
                   "; give bytes, or an array of uint8" );
   }
   const std::string_view format = view_.format ? view_.format : "B";
   if( view_.itemsize != 1 || ( format != "B" && format != "b" && format != "c" ) ) {
      const std::string problem = std::string( what ) + " has elements of " +
                                  count( static_cast<std::size_t>( view_.itemsize ), "byte" ) +
                                  ", format \"" + std::string( format ) +
                                  "\"; give bytes, or an array of uint8";
      PyBuffer_Release( &view_ );
      throw Error( problem );
   }
}

std::span<const U8> Buffer::bytes() const {
   if( !PyBuffer_IsContiguous( &view_, 'C' ) ) {
      throw Error( "the bytes of the image don't lie one after another" );
   }
   return { data(), static_cast<std::size_t>( view_.len ) };
}

Images::Images( const Layout& layout, py::handle dump, py::handle stride )
   : buffer_( dump, "the dump" ), size_( layout.bytes() ), stride_( size_ ) {
   if( !stride.is_none() ) {
      stride_ = indexOf( stride, "stride", ~U64( 0 ) );
      if( buffer_.view().ndim == 2 ) {
         throw Error( "a dump of rows has a stride of its own; give bytes with stride" );
      }
      if( stride_ < size_ ) {
         throw Error( "images that begin " + count( stride_, "byte" ) +
                      " apart overlap; an entry of " + layout.pairText() + " has " +
                      std::to_string( size_ ) );
      }
   }
   const Py_buffer& view = buffer_.view();
   if( view.ndim == 2 ) {
      takeRows( layout );
      return;
   }
   if( view.ndim != 1 ) {
      throw Error( "the dump has " + count( static_cast<std::size_t>( view.ndim ), "dimension" ) +
                   "; give bytes, or rows of " + count( size_, "byte" ) );
   }
   bytes_ = buffer_.bytes();
   const std::size_t left = bytes_.size() % stride_;
   if( left != 0 && left < size_ ) {
      const std::string apart =
         stride_ == size_ ? "" : ", and they begin " + std::to_string( stride_ ) + " apart";
      throw Error( count( bytes_.size(), "byte" ) + " are no whole number of images; an entry of " +
                   layout.pairText() + " has " + std::to_string( size_ ) + apart );
   }
   rows_ = bytes_.size() / stride_ + ( left != 0 );
   bytes_ = bytes( 0, rows_ );
}

void Images::takeRows( const Layout& layout ) {
   const Py_buffer& view = buffer_.view();
   rows_ = static_cast<std::size_t>( view.shape[0] );
   const auto length = static_cast<std::size_t>( view.shape[1] );
   if( length != size_ ) {
      throw Error( "the dump has rows of " + count( length, "byte" ) + "; an entry of " +
                   layout.pairText() + " has " + std::to_string( size_ ) );
   }
   if( rows_ > 1 ) {
      if( view.strides[0] < static_cast<Py_ssize_t>( size_ ) ) {
         throw Error( "the rows of the dump overlap or descend; give a copy of it" );
      }
      stride_ = static_cast<std::size_t>( view.strides[0] );
   }
   if( rows_ > 0 && size_ > 1 && view.strides[1] != 1 ) {
      throw Error(
         "the bytes of a row of the dump don't lie one after another; give a copy of it" );
   }
   bytes_ = { buffer_.data(), rows_ == 0 ? 0 : ( rows_ - 1 ) * stride_ + size_ };
}

std::span<const U8> Images::bytes( std::size_t first, std::size_t rows ) const {
   return rows == 0 ? std::span<const U8>()
                    : bytes_.subspan( first * stride_, ( rows - 1 ) * stride_ + size_ );
}

} // namespace Vorn::Python
