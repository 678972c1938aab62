// Dumps as Arrow streams: https://arrow.apache.org/docs/format/CStreamInterface.html
#include "ArrowStream.h"

#include "Arguments.h"

#include <Vorn/Columns.h>
#include <Vorn/Error.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <utility>

// The structures of the interface, which every implementation declares itself.
extern "C" {

struct ArrowSchema {
   const char* format;
   const char* name;
   const char* metadata;
   std::int64_t flags;
   std::int64_t n_children;
   ArrowSchema** children;
   ArrowSchema* dictionary;
   void ( *release )( ArrowSchema* );
   void* private_data;
};

struct ArrowArray {
   std::int64_t length;
   std::int64_t null_count;
   std::int64_t offset;
   std::int64_t n_buffers;
   std::int64_t n_children;
   const void** buffers;
   ArrowArray** children;
   ArrowArray* dictionary;
   void ( *release )( ArrowArray* );
   void* private_data;
};

struct ArrowArrayStream {
   int ( *get_schema )( ArrowArrayStream*, ArrowSchema* );
   int ( *get_next )( ArrowArrayStream*, ArrowArray* );
   const char* ( *get_last_error )( ArrowArrayStream* );
   void ( *release )( ArrowArrayStream* );
   void* private_data;
};
}

namespace Vorn::Python {

// The dump is released with the GIL held; a consumer may release a stream without it.
struct ArrowTable::State {
   Layout layout;
   std::vector<const Field*> fields;
   std::unique_ptr<Images> images;
   std::size_t batchRows;

   ~State() {
      const py::gil_scoped_acquire acquired;
      images.reset();
   }
};

namespace {

std::size_t wordsOf( const Field& field ) { return ( field.width + 63 ) / 64; }

std::size_t elementBytesOf( const Field& field ) {
   return field.width > 32 ? 8 : field.width > 16 ? 4 : field.width > 8 ? 2 : 1;
}

const char* formatOf( std::size_t elementBytes ) {
   return elementBytes == 8 ? "L" : elementBytes == 4 ? "I" : elementBytes == 2 ? "S" : "C";
}

// What a schema or an array owns. A consumer may take the children away, one by one.
template<class Node>
struct Owned {
   std::string format;
   std::string name;
   std::unique_ptr<U64[]> data;
   const void* buffers[2] = { nullptr, nullptr };
   std::vector<std::unique_ptr<Node>> children;
   std::vector<Node*> childPointers;

   ~Owned() {
      for( const auto& child : children ) {
         if( child->release ) {
            child->release( child.get() );
         }
      }
   }

   static void release( Node* node ) {
      delete static_cast<Owned*>( node->private_data );
      node->release = nullptr;
   }

   Node& addChild() {
      children.push_back( std::make_unique<Node>() );
      childPointers.push_back( children.back().get() );
      return *children.back();
   }

   // From here on the node owns `owned`.
   static void handOver( std::unique_ptr<Owned> owned, Node& node ) {
      node.n_children = static_cast<std::int64_t>( owned->children.size() );
      node.children = owned->childPointers.data();
      node.dictionary = nullptr;
      node.release = &Owned::release;
      node.private_data = owned.release();
   }
};

using OwnedSchema = Owned<ArrowSchema>;
using OwnedArray = Owned<ArrowArray>;

void schemaIs( ArrowSchema& schema, std::unique_ptr<OwnedSchema> owned, std::string format,
               std::string_view name ) {
   owned->format = std::move( format );
   owned->name = name;
   schema.format = owned->format.c_str();
   schema.name = owned->name.c_str();
   schema.metadata = nullptr;
   schema.flags = 0; // no value is missing
   OwnedSchema::handOver( std::move( owned ), schema );
}

void schemaOf( const ArrowTable::State& state, ArrowSchema& schema ) {
   auto all = std::make_unique<OwnedSchema>();
   for( const Field* const field : state.fields ) {
      auto own = std::make_unique<OwnedSchema>();
      std::string format = formatOf( elementBytesOf( *field ) );
      if( field->width > 64 ) {
         schemaIs( own->addChild(), std::make_unique<OwnedSchema>(), format, "word" );
         format = "+w:" + std::to_string( wordsOf( *field ) );
      }
      schemaIs( all->addChild(), std::move( own ), format, field->name );
   }
   schemaIs( schema, std::move( all ), "+s", "" );
}

void arrayIs( ArrowArray& array, std::unique_ptr<OwnedArray> owned, std::size_t length ) {
   array.length = static_cast<std::int64_t>( length );
   array.null_count = 0;
   array.offset = 0;
   owned->buffers[1] = owned->data.get();
   array.n_buffers = owned->data ? 2 : 1; // whether values are missing, and the values
   array.buffers = owned->buffers;
   OwnedArray::handOver( std::move( owned ), array );
}

void arrayOf( const ArrowTable::State& state, std::size_t first, ArrowArray& array ) {
   const std::size_t rows = std::min( state.batchRows, state.images->rows() - first );
   auto all = std::make_unique<OwnedArray>();
   Columns columns( state.layout );
   for( const Field* const field : state.fields ) {
      const std::size_t bytes = elementBytesOf( *field );
      const std::size_t elements = rows * wordsOf( *field );
      auto own = std::make_unique<OwnedArray>();
      own->data.reset( new U64[( elements * bytes + 7 ) / 8 + 1] );
      columns.add( field->name, static_cast<void*>( own->data.get() ), elements, bytes );
      if( field->width > 64 ) {
         auto list = std::make_unique<OwnedArray>();
         arrayIs( list->addChild(), std::move( own ), elements );
         own = std::move( list );
      }
      arrayIs( all->addChild(), std::move( own ), rows );
   }
   columns.decode( state.images->bytes( first, rows ), state.images->stride() );
   arrayIs( array, std::move( all ), rows );
}

struct Reading {
   std::shared_ptr<const ArrowTable::State> state;
   std::size_t row = 0;
   std::string error{};
};

Reading& readingOf( ArrowArrayStream* stream ) {
   return *static_cast<Reading*>( stream->private_data );
}

// Does a step of a stream, which must not throw.
template<class Step>
int tried( Reading& reading, Step step ) {
   try {
      step();
      return 0;
   } catch( const std::bad_alloc& ) {
      return ENOMEM;
   } catch( const std::exception& exception ) {
      reading.error = exception.what();
      return EINVAL;
   }
}

int getSchema( ArrowArrayStream* stream, ArrowSchema* schema ) {
   Reading& reading = readingOf( stream );
   return tried( reading, [&] { schemaOf( *reading.state, *schema ); } );
}

int getNext( ArrowArrayStream* stream, ArrowArray* array ) {
   Reading& reading = readingOf( stream );
   return tried( reading, [&] {
      array->release = nullptr; // the end
      if( reading.row < reading.state->images->rows() ) {
         arrayOf( *reading.state, reading.row, *array );
         reading.row += static_cast<std::size_t>( array->length );
      }
   } );
}

const char* getLastError( ArrowArrayStream* stream ) { return readingOf( stream ).error.c_str(); }

void releaseStream( ArrowArrayStream* stream ) {
   delete &readingOf( stream );
   stream->release = nullptr;
}

// A capsule that owns the structure, and what is in it unless a consumer has taken that out.
template<class Structure>
py::object capsuleOf( std::unique_ptr<Structure> structure, const char* name ) {
   PyObject* const capsule = PyCapsule_New( structure.get(), name, []( PyObject* object ) {
      auto* const own =
         static_cast<Structure*>( PyCapsule_GetPointer( object, PyCapsule_GetName( object ) ) );
      if( own->release ) {
         own->release( own );
      }
      delete own;
   } );
   if( !capsule ) {
      structure->release( structure.get() );
      throw py::error_already_set();
   }
   structure.release();
   return py::reinterpret_steal<py::object>( capsule );
}

} // namespace

ArrowTable::ArrowTable( const Layout& layout, py::handle dump, py::handle names, py::handle stride,
                        py::handle batchRows ) {
   const std::size_t rows = indexOf( batchRows, "batch_rows", ~U64( 0 ) );
   if( rows == 0 ) {
      throw Error( "batch_rows is 0; a batch has a row or more" );
   }
   auto fields = fieldsOf( names, layout );
   for( auto field = fields.begin(); field != fields.end(); ++field ) {
      if( std::find( fields.begin(), field, *field ) != field ) {
         throw Error( "field " + std::string( ( *field )->name ) + " has a column already" );
      }
   }
   state_.reset( new State{ layout, std::move( fields ),
                            std::make_unique<Images>( layout, dump, stride ), rows } );
}

std::size_t ArrowTable::rows() const { return state_->images->rows(); }

py::object ArrowTable::stream() const {
   auto stream = std::make_unique<ArrowArrayStream>();
   *stream = { &getSchema, &getNext, &getLastError, &releaseStream, new Reading{ state_ } };
   return capsuleOf( std::move( stream ), "arrow_array_stream" );
}

py::object ArrowTable::schema() const {
   auto schema = std::make_unique<ArrowSchema>();
   schemaOf( *state_, *schema );
   return capsuleOf( std::move( schema ), "arrow_schema" );
}

} // namespace Vorn::Python
