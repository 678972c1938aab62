// Dumps in files, read into memory by the codec.
#include "Dumps.h"

#include "Arguments.h"
#include "PairLayout.h"

#include <Vorn/Chip.h>
#include <Vorn/Dump.h>
#include <Vorn/Error.h>
#include <Vorn/Suggest.h>
#include <Vorn/Text.h>

#include <pybind11/numpy.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace Vorn::Python {

namespace {

// What a file object's read() gives, piece by piece. Lives with the GIL held, is read without it.
class ObjectBytes : public ByteSource {
public:
   ObjectBytes( py::handle file, std::string name )
      : read_( file.attr( "read" ) ), name_( std::move( name ) ) {}

   std::size_t read( char* to, std::size_t size ) override {
      if( rest_.empty() ) {
         const py::gil_scoped_acquire acquired;
         take( read_( pieceSize ) );
      }
      const auto length = rest_.copy( to, size );
      rest_.remove_prefix( length );
      return length;
   }

   std::string name() const override { return name_; }

private:
   static constexpr std::size_t pieceSize = std::size_t{ 1 } << 18;

   void take( py::object piece ) {
      piece_ = std::move( piece );
      char* bytes = nullptr;
      Py_ssize_t size = 0;
      if( PyUnicode_Check( piece_.ptr() ) ) {
         rest_ = textOf( piece_, "what the file holds" );
      } else if( PyBytes_Check( piece_.ptr() ) &&
                 PyBytes_AsStringAndSize( piece_.ptr(), &bytes, &size ) == 0 ) {
         rest_ = { bytes, static_cast<std::size_t>( size ) };
      } else {
         throw Error( "what read() of " + name_ + " gives is " + kindOf( piece_ ) +
                      "; give a file that is open for reading" );
      }
   }

   py::object read_;
   std::string name_;
   py::object piece_;
   std::string_view rest_; // of the piece
};

// The entries of one layout.
struct Rows {
   Layout layout;
   std::vector<U8> images;
   std::vector<std::int64_t> entries, arrays, identifiers, addresses; // -1: not known
   U64 empty = 0;

   void add( const DumpEntry& entry ) {
      const auto known = []( auto number ) {
         return number ? static_cast<std::int64_t>( *number ) : -1;
      };
      const auto size = images.size();
      images.insert( images.end(), entry.image.begin(), entry.image.end() );
      images.resize( size + layout.bytes() );
      entries.push_back( known( entry.entry ) );
      arrays.push_back( known( entry.array ) );
      identifiers.push_back( known( entry.identifier ) );
      addresses.push_back( known( entry.address ) );
   }
};

// All that is in a dump. Read without the GIL.
class Dumps {
public:
   Dumps( const DumpOptions& options, bool isMany, bool takesEmpty )
      : reader_( options ), isMany_( isMany ), takesEmpty_( takesEmpty ) {
      if( reader_.own() ) {
         of( *reader_.own() );
      }
   }

   void read( ByteSource& bytes ) {
      reader_.begin( bytes );
      while( reader_.next() ) {
         const DumpEntry& entry = reader_.entry();
         if( !entry.doubt.empty() && doubts_.size() < mostDoubts &&
             told_.emplace( entry.doubt ).second ) {
            doubts_.push_back( reader_.place() + ": " + std::string( entry.doubt ) );
         }
         if( entry.isEmpty && !takesEmpty_ ) {
            ++of( *entry.layout ).empty;
            continue;
         }
         Rows& rows = of( *entry.layout );
         if( !isMany_ && rows_ && rows_ != &rows ) {
            throw Error( reader_.place(), "the image is one of " + rows.layout.pairText() +
                                             ", those before it of " + rows_->layout.pairText() +
                                             "; read_dumps() takes several pairs" );
         }
         rows_ = &rows;
         rows.add( entry );
      }
   }

   std::vector<std::unique_ptr<Rows>>& all() { return all_; }
   const std::vector<std::string>& doubts() const { return doubts_; }

private:
   static constexpr std::size_t mostDoubts = 8;

   Rows& of( const Layout& layout ) {
      if( !last_ || !( last_->layout == layout ) ) {
         const auto found = std::find_if(
            all_.begin(), all_.end(), [&]( const auto& rows ) { return rows->layout == layout; } );
         if( found == all_.end() ) {
            all_.push_back( std::make_unique<Rows>( Rows{ layout, {}, {}, {}, {}, {} } ) );
            last_ = all_.back().get();
         } else {
            last_ = found->get();
         }
      }
      return *last_;
   }

   DumpReader reader_;
   bool isMany_;
   bool takesEmpty_;
   std::vector<std::unique_ptr<Rows>> all_;
   Rows* last_ = nullptr;
   const Rows* rows_ = nullptr; // of the last image
   std::set<std::string, std::less<>> told_;
   std::vector<std::string> doubts_;
};

ImageFormat formatOf( py::handle format ) {
   const auto name = textOf( format, "the format" );
   const auto names = imageFormatNames();
   const auto found = std::find( names.begin(), names.end(), name );
   if( found == names.end() ) {
      throw Error( "unknown format " + inQuotes( name ) + suggestion( name, names ) );
   }
   return static_cast<ImageFormat>( found - names.begin() );
}

DumpOptions optionsOf( const py::dict& given ) {
   const auto index = [&]( const char* name, U64 largest = 0xffffffff ) {
      return indexOf( given[name], name, largest );
   };
   DumpOptions options;
   if( !given["table"].is_none() ) {
      options.table = textOf( given["table"], "the table" );
   }
   if( !given["chip"].is_none() ) {
      options.chip = &chipOf( chipTextOf( given["chip"] ) );
   }
   if( !given["variant"].is_none() ) {
      options.variant = index( "variant", 0xff );
   }
   if( !given["stride"].is_none() ) {
      options.stride = index( "stride", 1 << 20 );
   }
   options.format = formatOf( given["format"] );
   options.hasFirst = !given["first_entry"].is_none();
   options.first = { options.hasFirst ? index( "first_entry" ) : 0, index( "array" ),
                     index( "identifier" ) };
   options.isStrict = given["strict"].cast<bool>();
   return options;
}

// The numbers as an array that owns them.
template<class Number>
py::array arrayOf( std::vector<Number>& numbers, std::vector<py::ssize_t> shape ) {
   auto owned = std::make_unique<std::vector<Number>>( std::move( numbers ) );
   Number* const data = owned->data();
   const py::capsule owner(
      owned.get(), []( void* vector ) { delete static_cast<std::vector<Number>*>( vector ); } );
   owned.release();
   return py::array( py::dtype::of<Number>(), std::move( shape ), data, owner );
}

} // namespace

py::tuple readDumps( py::handle file, const std::string& name, const py::dict& options,
                     bool isMany ) {
   ObjectBytes bytes( file, name );
   Dumps dumps( optionsOf( options ), isMany, options["empty"].cast<bool>() );
   {
      const py::gil_scoped_release released;
      dumps.read( bytes );
   }
   py::list made;
   for( const auto& rows : dumps.all() ) {
      const auto count = static_cast<py::ssize_t>( rows->entries.size() );
      const auto size = static_cast<py::ssize_t>( rows->layout.bytes() );
      made.append(
         py::make_tuple( PairLayout( rows->layout ), arrayOf( rows->images, { count, size } ),
                         arrayOf( rows->entries, { count } ), arrayOf( rows->arrays, { count } ),
                         arrayOf( rows->identifiers, { count } ),
                         arrayOf( rows->addresses, { count } ), rows->empty ) );
   }
   py::list doubts;
   for( const std::string& doubt : dumps.doubts() ) {
      doubts.append( py::str( doubt ) );
   }
   return py::make_tuple( made, doubts );
}

} // namespace Vorn::Python
