// Images in memory that Python code owns, read where they lie.
#pragma once

#include <Vorn/Layout.h>

#include <Kelvar/Types.h>

#include <pybind11/pybind11.h>

#include <cstddef>
#include <span>

namespace Vorn::Python {

namespace py = pybind11;

// A buffer of bytes that is held as long as this lives. Made and destroyed with the GIL held.
class Buffer {
public:
   // `what` says what the object should be, for the message.
   Buffer( py::handle object, const char* what );
   Buffer( const Buffer& ) = delete;
   Buffer& operator=( const Buffer& ) = delete;
   ~Buffer() { PyBuffer_Release( &view_ ); }

   const Py_buffer& view() const { return view_; }
   const U8* data() const { return static_cast<const U8*>( view_.buf ); }

   // The bytes of a buffer in one piece; else an Error.
   std::span<const U8> bytes() const;

private:
   Py_buffer view_{};
};

// The images of a pair in a dump: bytes that hold one after another, or rows of them.
class Images {
public:
   Images( const Layout& layout, py::handle dump, py::handle stride );

   std::size_t rows() const { return rows_; }
   std::size_t stride() const { return stride_; }
   std::span<const U8> bytes() const { return bytes_; }

   // The bytes of `rows` images from `first` on.
   std::span<const U8> bytes( std::size_t first, std::size_t rows ) const;

private:
   void takeRows( const Layout& layout );

   Buffer buffer_;
   std::size_t size_; // of an image
   std::size_t rows_ = 0;
   std::size_t stride_ = 0;
   std::span<const U8> bytes_;
};

} // namespace Vorn::Python
