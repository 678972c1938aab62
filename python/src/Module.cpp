// The module _vorn: what Python calls, with its documentation.
#include "Arguments.h"
#include "ArrowStream.h"
#include "Dumps.h"
#include "Images.h"
#include "Net.h"
#include "PairLayout.h"

#include <Vorn/Chip.h>
#include <Vorn/Error.h>
#include <Vorn/Identify.h>
#include <Vorn/Locate.h>
#include <Vorn/Pairs.h>

#include <pybind11/pybind11.h>

#include <algorithm>
#include <exception>
#include <map>
#include <optional>
#include <string>

namespace Vorn::Python {

namespace {

using namespace pybind11::literals;

py::dict chips() {
   py::dict numbers;
   for( const Chip& chip : allChips() ) {
      numbers[py::str( chip.name )] = chip.number;
   }
   return numbers;
}

py::list tables() {
   py::list names;
   for( const auto table : allTables() ) {
      names.append( py::str( table.data(), table.size() ) );
   }
   return names;
}

py::list pairs( py::handle table ) {
   py::list result;
   for( const ChipVariants& chip : pairsOf( tableNamed( textOf( table, "the table" ) ) ) ) {
      for( const U32 variant : chip.variants ) {
         result.append( py::make_tuple( chip.chip, variant ) );
      }
   }
   return result;
}

py::list identify( py::handle chip, py::handle image ) {
   static auto& identifiers = *new std::map<U8, Identifier>;
   const Chip& found = chipOf( chipTextOf( chip ) );
   const Identifier& identifier = identifiers.try_emplace( found.number, found ).first->second;
   const Buffer buffer( image, "the image" );
   py::list layouts;
   for( const Layout& layout : identifier.layoutsOf( buffer.bytes() ) ) {
      layouts.append( PairLayout( layout ) );
   }
   if( layouts.empty() ) {
      identifier.refuse( buffer.bytes().size() );
   }
   return layouts;
}

U64 upTo( U64 largest, py::handle number, const char* name ) {
   const U64 index = indexOf( number, name, largest );
   if( index > largest ) {
      throw Error( std::string( name ) + ' ' + std::to_string( index ) +
                   " is out of range; it is at most " + std::to_string( largest ) );
   }
   return index;
}

py::list locateEntries( py::handle chip, py::handle address, py::handle block ) {
   const Chip& found = chipOf( chipTextOf( chip ) );
   const auto wanted = static_cast<U32>( upTo( 0xffffffff, address, "address" ) );
   std::optional<U8> destBlock;
   if( !block.is_none() ) {
      destBlock = static_cast<U8>( upTo( 0xff, block, "dest_block" ) );
   }
   const py::object make = py::module_::import( "vorn._types" ).attr( "Location" );
   py::list locations;
   for( const Location& location : locate( found, wanted, destBlock ) ) {
      const auto& [entry, array, identifier] = location.index;
      locations.append( make( PairLayout( location.layout ), entry, array, identifier ) );
   }
   return locations;
}

void raise( const char* type, const char* text ) {
   PyErr_SetString( py::object( py::module_::import( "vorn._types" ).attr( type ) ).ptr(), text );
}

void translate( std::exception_ptr pointer ) {
   try {
      if( pointer ) {
         std::rethrow_exception( pointer );
      }
   } catch( const Error& error ) {
      raise( "Error", error.what() );
   } catch( const Misuse& misuse ) {
      raise( "MisuseError", misuse.what() );
   }
}

void addLayout( py::module_& module ) {
   py::class_<PairLayout> layout( module, "Layout", R"(Layout(table, chip, variant=0)
--

The entries of a table on a chip type and variant: their fields, encoding and decoding.

The chip type is a name or a number. Layouts of the same pair are equal, have the same hash and can
be pickled; a layout never changes, and threads may share it.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> lif
vorn.Layout('LifTable', 'BCM88690_B0', 0)
>>> lif == vorn.Layout("LifTable", 10, 0)
True
)" );
   layout.def( py::init<py::handle, py::handle, py::handle>(), "table"_a, "chip"_a,
               "variant"_a = 0 );
   layout.def_property_readonly(
      "table",
      []( const PairLayout& self ) {
         const auto name = self.layout().table();
         return py::str( name.data(), name.size() );
      },
      R"(Name of the table.

>>> vorn.Layout("LifTable", 10).table
'LifTable'
)" );
   layout.def_property_readonly(
      "chip", []( const PairLayout& self ) { return self.layout().chip().name; },
      R"(Name of the chip type.

>>> vorn.Layout("LifTable", 10).chip
'BCM88690_B0'
)" );
   layout.def_property_readonly(
      "chip_number", []( const PairLayout& self ) { return self.layout().chip().number; },
      R"(Number of the chip type.

>>> vorn.Layout("LifTable", "BCM88690_B0").chip_number
10
)" );
   layout.def_property_readonly(
      "variant", []( const PairLayout& self ) { return self.layout().variant(); },
      R"(The variant.

>>> vorn.Layout("LifTable", "BCM88690_B0").variant
0
)" );
   layout.def_property_readonly(
      "size", []( const PairLayout& self ) { return self.layout().bytes(); },
      R"(The size of an entry in bytes.

>>> vorn.Layout("LifTable", "BCM88690_B0").size
80
)" );
   layout.def_property_readonly( "fields", &PairLayout::fields,
                                 R"(The fields of the pair in declared order, as a list of Field.

>>> [field.name for field in vorn.Layout("EvecFormatTable", 10).fields][:2]
['outerVidSource', 'innerPcpDeiSource']
)" );
   layout.def_property_readonly(
      "tag", &PairLayout::tag, R"(The values that distinguish an entry from those of other variants.

>>> vorn.Layout("LifTable", "BCM88690_B0").tag
{'resultType': 58}
)" );
   layout.def( "__getitem__", &PairLayout::field, "name"_a, R"(__getitem__(self, name, /)
--

The field with this name; a name that the pair lacks is an Error.

>>> vorn.Layout("LifTable", "BCM88690_B0")["vsi"].width
15
)" );
   layout.def( "__contains__", &PairLayout::has, "name"_a, R"(__contains__(self, name, /)
--

Whether the pair has a field with this name.

>>> "vsi" in vorn.Layout("LifTable", "BCM88690_B0")
True
)" );
   layout.def(
      "__iter__", []( const PairLayout& self ) { return py::iter( self.keys() ); },
      R"(__iter__(self, /)
--

The names of the fields in declared order.

>>> list(vorn.Layout("EvecFormatTable", 10))[:2]
['outerVidSource', 'innerPcpDeiSource']
)" );
   layout.def( "encode", &PairLayout::encode, "values"_a, "base"_a = py::none(), py::kw_only(),
               "strict"_a = true, R"(encode(self, values, base=None, *, strict=True)
--

The bytes of an entry with these values; the rest is zero except for the tag, or as in base.

A value is an int, or a str in a notation of vorn: "0x7d0", "10.0.0.1", or "mask" for all ones. Two
values that contradict each other in bits that their fields share are an Error; with strict=False
the later one wins.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> image = lif.encode({"vsi": 2000, "vlanEditVid1": 100})
>>> lif.decode(lif.encode({"vsi": 1}, base=image), fields=["vsi", "vlanEditVid1"])
{'vsi': 1, 'vlanEditVid1': 100}
>>> lif.encode({"vsi": 32768})
Traceback (most recent call last):
...
vorn.Error: value 32768 of field vsi is too large; its 15 bits in LifTable on BCM88690_B0 variant 0 hold at most 0x7fff
)" );
   layout.def( "decode", &PairLayout::decode, "image"_a, "fields"_a = py::none(),
               R"(decode(self, image, fields=None)
--

The values of all fields of an entry, or of those with these names, as a dict of ints.

Tag fields are included; the tag isn't checked. Bytes after the entry are ignored.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> lif.decode(bytes.fromhex("a00f") + bytes(78), fields=["vsi"])
{'vsi': 2000}
)" );
   layout.def( "decode_batch", &PairLayout::decodeBatch, "dump"_a, "fields"_a = py::none(),
               "stride"_a = py::none(), R"(decode_batch(self, dump, fields=None, stride=None)
--

The values of many entries: a dict with an array for each field, or for those with these names.

The dump is bytes, a memoryview, an mmap or the like, with the entries one after another or stride
bytes apart; or an (N, size) array of uint8. It is read in place. Arrays have the narrowest unsigned
type; a field of more than 64 bits has shape (N, words), the least significant word first. The
arrays of a large dump share memory that lives as long as any of them.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> dump = lif.encode({"vsi": 1}) + lif.encode({"vsi": 2})
>>> lif.decode_batch(dump, fields=["vsi"])
{'vsi': array([1, 2], dtype=uint16)}
)" );
   layout.def( "_encode_columns", &PairLayout::encodeColumns );
   layout.def(
      "arrow",
      []( const PairLayout& self, py::handle dump, py::handle fields, py::handle stride,
          py::handle batchRows ) {
         return ArrowTable( self.layout(), dump, fields, stride, batchRows );
      },
      "dump"_a, "fields"_a = py::none(), "stride"_a = py::none(), py::kw_only(),
      "batch_rows"_a = 65536,
      R"(arrow(self, dump, fields=None, stride=None, *, batch_rows=65536)
--

The columns of decode_batch() as an Arrow stream, in batches of at most batch_rows rows.

A field of more than 64 bits is a fixed-size list of its words.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> len(lif.arrow(lif.encode({}) * 3))
3
)" );
   layout.def( "address", &PairLayout::address, "entry"_a, "array"_a = 0, "identifier"_a = 0,
               R"(address(self, entry, array=0, identifier=0)
--

Where an entry of a given array element and instance lies on the chip's S-channel.

An index out of range is an Error, and so is a pair without an address.

>>> vorn.Layout("LifTable", "BCM88690_B0").address(4097)
Address(address=4097, access_type=10, dest_block=1)
)" );
   layout.def( "__eq__", []( const PairLayout& self, py::handle other ) -> py::object {
      if( !py::isinstance<PairLayout>( other ) ) {
         return py::reinterpret_borrow<py::object>( Py_NotImplemented );
      }
      return py::bool_( self.layout() == other.cast<const PairLayout&>().layout() );
   } );
   layout.def( "__hash__", []( const PairLayout& self ) { return py::hash( self.arguments() ); } );
   layout.def( "__repr__", &PairLayout::text );
   layout.def( "__reduce__", []( py::object self ) {
      return py::make_tuple( self.attr( "__class__" ), self.cast<const PairLayout&>().arguments() );
   } );
   // Those that need nothing but what is above.
   const auto methods = py::module_::import( "vorn._methods" );
   layout.attr( "encode_batch" ) = methods.attr( "encode_batch" );
   layout.attr( "frame" ) = methods.attr( "frame" );
}

void addArrow( py::module_& module ) {
   py::class_<ArrowTable> table( module, "ArrowTable",
                                 R"(A dump with Arrow's C stream interface, made by Layout.arrow().

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> lif.arrow(lif.encode({"vsi": 1})).__arrow_c_stream__()  # doctest: +ELLIPSIS
<capsule object "arrow_array_stream" at 0x...>
)" );
   table.def(
      "__arrow_c_stream__", []( const ArrowTable& self, py::handle ) { return self.stream(); },
      "requested_schema"_a = py::none(), R"(__arrow_c_stream__(self, requested_schema=None)
--

A capsule with an ArrowArrayStream, which begins at the first entry. A requested schema is
ignored.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> lif.arrow(lif.encode({})).__arrow_c_stream__()  # doctest: +ELLIPSIS
<capsule object "arrow_array_stream" at 0x...>
)" );
   table.def( "__arrow_c_schema__", &ArrowTable::schema, R"(__arrow_c_schema__(self)
--

A capsule with an ArrowSchema.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> lif.arrow(lif.encode({})).__arrow_c_schema__()  # doctest: +ELLIPSIS
<capsule object "arrow_schema" at 0x...>
)" );
   table.def( "__len__", &ArrowTable::rows, R"(__len__(self, /)
--

How many entries there are.

>>> lif = vorn.Layout("LifTable", "BCM88690_B0")
>>> len(lif.arrow(lif.encode({}) * 3))
3
)" );
}

} // namespace

PYBIND11_MODULE( _vorn, module ) {
   py::options options;
   options.disable_function_signatures();
   py::register_local_exception_translator( &translate );
   module.def( "chips", &chips, R"(chips()
--

The numbers of the chip types by their names.

>>> vorn.chips()["BCM88690_B0"]
10
)" );
   module.def( "tables", &tables, R"(tables()
--

The names of the tables and registers.

>>> vorn.tables()[:2]
['EgressPerPortTable', 'EpniIsidTable']
)" );
   module.def( "pairs", &pairs, "table"_a, R"(pairs(table)
--

The pairs of chip type and variant that a table has; only variant 0 if it ignores the variant.

>>> vorn.pairs("LifTable")[:2]
[(2, 0), (2, 1)]
)" );
   module.def( "identify", &identify, "chip"_a, "image"_a, R"(identify(chip, image)
--

The layouts of the pairs that an image may belong to, by its length and its tag.

The likeliest come first: those with the most matching bits of a tag.

>>> vorn.identify("BCM88690_B0", bytes.fromhex("4523010000000000"))[-1]
vorn.Layout('TcamActionTable', 'BCM88690_B0', 0)
)" );
   module.def( "locate", &locateEntries, "chip"_a, "address"_a, "dest_block"_a = py::none(),
               R"(locate(chip, address, dest_block=None)
--

The entries at an address of a chip's S-channel, or only those in one destination block.

An address at which nothing lies is an Error.

>>> vorn.locate("BCM88690_B0", 4097)[0]
Location(layout=vorn.Layout('LifTable', 'BCM88690_B0', 0), entry=4097, array=0, identifier=0)
)" );
   module.def( "_read_dumps", &readDumps );
   module.def( "_fail_assertion", &failAssertion );
   addArrow( module );
   addLayout( module );
}

} // namespace Vorn::Python
