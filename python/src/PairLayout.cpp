// The layout of a pair as Python sees it.
#include "PairLayout.h"

#include "Images.h"

#include <Vorn/Columns.h>
#include <Vorn/Compose.h>
#include <Vorn/Error.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <sys/mman.h>

namespace Vorn::Python {

namespace {

py::object textFrom( std::string_view text ) { return py::str( text.data(), text.size() ); }

// The same object for the same text, which makes a dictionary's keys quick.
py::object interned( std::string_view text ) {
   PyObject* const made = PyUnicode_InternFromString( std::string( text ).c_str() );
   if( !made ) {
      throw py::error_already_set();
   }
   return py::reinterpret_steal<py::object>( made );
}

void put( py::dict& dictionary, const py::object& key, const py::object& value ) {
   if( PyDict_SetItem( dictionary.ptr(), key.ptr(), value.ptr() ) != 0 ) {
      throw py::error_already_set();
   }
}

// The narrowest type for the field; a wide one has a row of words.
py::dtype typeOf( const Field& field ) {
   return field.width > 32   ? py::dtype::of<U64>()
          : field.width > 16 ? py::dtype::of<U32>()
          : field.width > 8  ? py::dtype::of<U16>()
                             : py::dtype::of<U8>();
}

std::vector<py::ssize_t> shapeOf( const Field& field, std::size_t rows ) {
   const auto length = static_cast<py::ssize_t>( rows );
   if( field.width > 64 ) {
      return { length, static_cast<py::ssize_t>( ( field.width + 63 ) / 64 ) };
   }
   return { length };
}

constexpr std::size_t hugePage = std::size_t{ 2 } << 20;

// A block of huge pages for the columns of a large batch: touching new memory page by page takes
// longer than decoding into it. The largest one that was given back is kept for the next batch; the
// system may take its pages until then. Made and given back with the GIL held.
struct Block {
   U8* data = nullptr;
   std::size_t bytes = 0;

   static Block& kept() {
      static Block block;
      return block;
   }

   static py::object make( std::size_t bytes ) {
      bytes = ( bytes + hugePage - 1 ) / hugePage * hugePage;
      auto block = std::make_unique<Block>();
      if( kept().bytes >= bytes && kept().bytes / 2 <= bytes ) {
         *block = std::exchange( kept(), {} );
      } else {
         *block = { static_cast<U8*>( std::aligned_alloc( hugePage, bytes ) ), bytes };
         if( !block->data ) {
            throw std::bad_alloc();
         }
         madvise( block->data, bytes, MADV_HUGEPAGE ); // where there are none, others do
      }
      const py::capsule owner( block.get(), []( void* given ) {
         const std::unique_ptr<Block> own( static_cast<Block*>( given ) );
         if( own->bytes > kept().bytes ) {
            std::swap( *own, kept() );
            madvise( kept().data, kept().bytes, MADV_FREE );
         }
         std::free( own->data );
      } );
      block.release();
      return owner;
   }
};

// Makes the columns of a batch, those of a large one in one block.
class ColumnMaker {
public:
   ColumnMaker( std::span<const Field* const> fields, std::size_t rows ) : rows_( rows ) {
      std::size_t bytes = 0;
      for( const Field* const field : fields ) {
         bytes += bytesOf( *field );
      }
      if( bytes < 2 * hugePage ) {
         return;
      }
      block_ = Block::make( bytes );
      next_ = py::reinterpret_borrow<py::capsule>( block_ ).get_pointer<Block>()->data;
   }

   py::array make( const Field& field ) {
      if( !next_ ) {
         return py::array( typeOf( field ), shapeOf( field, rows_ ) );
      }
      U8* const data = next_;
      next_ += bytesOf( field );
      return py::array( typeOf( field ), shapeOf( field, rows_ ), data, block_ );
   }

private:
   static constexpr std::size_t cacheLine = 64;

   std::size_t bytesOf( const Field& field ) const {
      const std::size_t words = ( field.width + 63 ) / 64;
      const std::size_t bytes =
         rows_ * words * static_cast<std::size_t>( typeOf( field ).itemsize() );
      return ( bytes + cacheLine - 1 ) / cacheLine * cacheLine;
   }

   std::size_t rows_;
   U8* next_ = nullptr;
   py::object block_;
};

constexpr std::size_t rowsAtOnce = 2048;

std::size_t elementsOf( const py::array& array ) {
   return static_cast<std::size_t>( array.size() );
}
std::size_t elementBytesOf( const py::array& array ) {
   return static_cast<std::size_t>( array.itemsize() );
}

} // namespace

PairLayout::PairLayout( py::handle table, py::handle chip, py::handle variant )
   : PairLayout( Layout( textOf( table, "the table" ), chipTextOf( chip ),
                         indexOf( variant, "variant", 0xff ) ) ) {}

PairLayout::PairLayout( Layout layout ) : layout_( std::move( layout ) ) {}

const PairLayout::Names& PairLayout::names() const {
   if( !names_ ) {
      const py::object make = py::module_::import( "vorn._types" ).attr( "Field" );
      std::vector<py::object> keys;
      py::list made;
      for( const Field& field : layout_.fields() ) {
         keys.push_back( interned( field.name ) );
         made.append( make( keys.back(), interned( field.hardwareName ), field.identifier,
                            field.offset, field.width, field.readOnly ) );
      }
      py::dict all;
      for( const py::object& key : keys ) {
         put( all, key, py::none() );
      }
      // Another thread may have made them meanwhile, and look at them.
      if( !names_ ) {
         names_ = { std::move( keys ), py::tuple( made ), std::move( all ) };
      }
   }
   return *names_;
}

std::size_t PairLayout::positionOf( const Field& field ) const {
   return static_cast<std::size_t>( &field - layout_.fields().data() );
}

py::object PairLayout::field( py::handle name ) const {
   return names().fields[positionOf( layout_.field( textOf( name, "the name of a field" ) ) )];
}

bool PairLayout::has( py::handle name ) const {
   return PyUnicode_Check( name.ptr() ) && layout_.has( textOf( name, "the name of a field" ) );
}

py::list PairLayout::keys() const {
   py::list keys;
   for( const py::object& key : names().keys ) {
      keys.append( key );
   }
   return keys;
}

py::dict PairLayout::tag() const {
   py::dict values;
   for( const TagField& one : layout_.tag() ) {
      put( values, interned( one.field.name ), intOf( one.value, one.field.width ) );
   }
   return values;
}

FieldValue PairLayout::fieldValueOf( py::handle name, py::handle value ) const {
   const Field& field = layout_.field( textOf( name, "the name of a field" ) );
   return { field.name, valueOf( value, layout_, field ) };
}

py::bytes PairLayout::encode( py::handle values, py::handle base, bool strict ) const {
   if( !PyMapping_Check( values.ptr() ) || !py::hasattr( values, "items" ) ) {
      throw Error( "the values are " + kindOf( values ) +
                   "; give a dict of names of fields and their values" );
   }
   std::vector<FieldValue> given;
   for( const py::handle item : py::list( values.attr( "items" )() ) ) {
      const auto pair = py::reinterpret_borrow<py::tuple>( item );
      given.push_back( fieldValueOf( pair[0], pair[1] ) );
   }
   const Overlap overlap = strict ? Overlap::refused : Overlap::laterHolds;
   std::vector<U8> image;
   if( base.is_none() ) {
      image = compose( layout_, given, overlap );
   } else {
      const Buffer buffer( base, "the base" );
      image = compose( layout_, buffer.bytes(), given, overlap );
   }
   return { reinterpret_cast<const char*>( image.data() ), image.size() };
}

py::object PairLayout::valueIn( std::span<const U8> image, const Field& field ) const {
   return field.width <= 64 ? intOf( layout_.get( image, field ), 64 )
                            : intOf( layout_.value( image, field ), field.width );
}

py::dict PairLayout::decode( py::handle image, py::handle names ) const {
   const Buffer buffer( image, "the image" );
   const auto bytes = buffer.bytes();
   const auto& keys = this->names().keys;
   if( names.is_none() ) {
      layout_.requireFields( bytes );
      // A copy that has the keys needn't grow.
      auto result = py::reinterpret_steal<py::dict>( PyDict_Copy( this->names().all.ptr() ) );
      if( !result ) {
         throw py::error_already_set();
      }
      const auto fields = layout_.fields();
      for( std::size_t i = 0; i < fields.size(); ++i ) {
         put( result, keys[i], valueIn( bytes, fields[i] ) );
      }
      return result;
   }
   py::dict result;
   for( const Field* const field : fieldsOf( names, layout_ ) ) {
      put( result, keys[positionOf( *field )], valueIn( bytes, *field ) );
   }
   return result;
}

py::dict PairLayout::decodeBatch( py::handle dump, py::handle names, py::handle stride ) const {
   const Images images( layout_, dump, stride );
   Columns columns( layout_ );
   const auto& keys = this->names().keys;
   py::dict result;
   const auto fields = fieldsOf( names, layout_ );
   ColumnMaker maker( fields, images.rows() );
   for( const Field* const field : fields ) {
      py::array column = maker.make( *field );
      columns.add( field->name, column.mutable_data(), elementsOf( column ),
                   elementBytesOf( column ) );
      put( result, keys[positionOf( *field )], column );
   }
   const py::gil_scoped_release released;
   columns.decode( images.bytes(), images.stride() );
   return result;
}

void PairLayout::encodeColumns( py::array images, py::handle one, py::list given,
                                bool strict ) const {
   struct Column {
      std::string_view name;
      const U8* data;
      std::size_t elements;
      std::size_t elementBytes;
   };
   const std::size_t size = layout_.bytes();
   const std::size_t rows = elementsOf( images ) / size;
   const std::span bytes( static_cast<U8*>( images.mutable_data() ), rows * size );
   std::vector<Column> columns;
   for( const py::handle item : given ) {
      const auto pair = py::reinterpret_borrow<py::tuple>( item );
      const auto column = py::reinterpret_borrow<py::array>( pair[1] );
      columns.push_back( { textOf( pair[0], "the name of a field" ),
                           static_cast<const U8*>( column.data() ), elementsOf( column ),
                           elementBytesOf( column ) } );
   }
   const std::string image = one.is_none() ? std::string() : one.cast<std::string>();
   const Overlap overlap = strict ? Overlap::refused : Overlap::laterHolds;

   const py::gil_scoped_release released;
   const auto encode = [&]( std::size_t first, std::size_t count ) {
      Columns some( layout_ );
      for( const Column& column : columns ) {
         const std::size_t perRow = column.elements / rows;
         some.add( column.name,
                   static_cast<const void*>( column.data + first * perRow * column.elementBytes ),
                   count * perRow, column.elementBytes );
      }
      const auto part = bytes.subspan( first * size, count * size );
      for( std::size_t at = 0; !image.empty() && at < part.size(); at += size ) {
         std::memcpy( part.data() + at, image.data(), size );
      }
      some.encode( part, overlap );
   };
   try {
      // Some rows at a time, which are still in the cache when their fields are set.
      for( std::size_t first = 0; first < rows; first += rowsAtOnce ) {
         encode( first, std::min( rowsAtOnce, rows - first ) );
      }
   } catch( const Error& ) {
      encode( 0, rows ); // to name the row among all
      throw;
   }
}

py::object PairLayout::address( py::handle entry, py::handle array, py::handle identifier ) const {
   const EntryIndex index{ indexOf( entry, "entry", 0xffffffff ),
                           indexOf( array, "array", 0xffffffff ),
                           indexOf( identifier, "identifier", 0xffffffff ) };
   const auto found = layout_.address( index );
   if( !found ) {
      throw Error( layout_.pairText() + " has no address" );
   }
   return py::module_::import( "vorn._types" )
      .attr( "Address" )( found->schanAddress, found->accessType, found->destBlock );
}

py::tuple PairLayout::arguments() const {
   return py::make_tuple( textFrom( layout_.table() ), layout_.chip().name, layout_.variant() );
}

std::string PairLayout::text() const {
   return "vorn.Layout" + std::string( py::repr( arguments() ) );
}

} // namespace Vorn::Python
